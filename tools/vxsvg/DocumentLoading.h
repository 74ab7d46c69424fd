#pragma once
#include "Commands.h"

namespace vx {
class TSVGDocument;
}

namespace vx::cli {

// Whether documents are loaded under soStandardSVG (the program's default) or with the classic
// behaviour (--compatible).
void SetStandardMode(bool On);
// Lets the pictures loaded from now on name files inside Folder, beside their own folder's.
void AllowFolder(const QString &Folder);

// Loads FileName ("-" for the standard input) into Document, in the mode SetStandardMode chose. A missing file gives ExitUsage, a file the library refuses
// ExitLoadFailed; either way the reason is printed.
int LoadDocument(TSVGDocument &Document, const QString &FileName);

} // namespace vx::cli
