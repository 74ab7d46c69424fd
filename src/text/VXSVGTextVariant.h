#pragma once
// The case changes of font-variant, shared by measuring, both drawing roads and text on a path.
#include "platform/rtl/VXExport.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

namespace vx {

// Ch as Variant shows it. Small caps turn a lower-case letter into a capital (the caller draws it
// smaller). Title case capitalises the first letter or digit after white space; Capitalize carries
// that state from one character to the next and starts true.
VX_EXPORT QChar VariantChar(TSVGFontVariant Variant, QChar Ch, bool &Capitalize);
// Text as measured under Variant: upper, lower or title case; small caps measure as written.
VX_EXPORT QString VariantText(TSVGFontVariant Variant, const QString &Text);
// Whether Variant draws Ch as a small capital.
VX_EXPORT bool IsSmallCap(TSVGFontVariant Variant, QChar Ch);

} // namespace vx
