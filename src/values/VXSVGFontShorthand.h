#pragma once
// The CSS "font" shorthand as browsers read it: optional style, variant, weight and stretch
// keywords, then a size with an optional line height, then the family list.
#include "platform/rtl/VXExport.h"

#include <QString>

#include <utility>
#include <vector>

namespace vx {

// The longhand declarations, name and value, that Text stands for: every font longhand the
// shorthand does not name goes back to "normal". Empty when Text is no valid shorthand (a system
// font keyword, no size, or no family), which leaves the font as it was.
VX_EXPORT std::vector<std::pair<QString, QString>> ExpandFontShorthand(const QString &Text);

} // namespace vx
