#pragma once
#include "Commands.h"

namespace vx {
class TSVGDocument;
}

namespace vx::cli {

// Loads FileName into Document. A missing file gives ExitUsage, a file the library refuses
// ExitLoadFailed; either way the reason is printed.
int LoadDocument(TSVGDocument &Document, const QString &FileName);

} // namespace vx::cli
