#pragma once
// The reader of style-sheet text: it cuts a sheet into rules and hands each selector of a group,
// with the declarations of its block, to the caller, who builds one rule per selector.
#include "platform/rtl/VXExport.h"

#include <QString>

#include <functional>

namespace vx {

// Comments are removed first. Each "selectors { declarations }" block gives one AddRule call per
// non-empty selector of its comma-separated group, with the selector trimmed and the declarations
// as written. A block without its "}" ends the sheet and is dropped. At-rules get no treatment of
// their own: "@media x { a { ... } }" reads as the selector "@media x" with the text up to the
// first "}". Runs in time linear in the length of Text.
VX_EXPORT void ParseStyleSheet(const QString &Text,
                     const std::function<void(const QString &Selector, const QString &Declarations)> &AddRule);

} // namespace vx
