#include "text/VXSVGTextVariant.h"

namespace vx {

QChar VariantChar(TSVGFontVariant Variant, QChar Ch, bool &Capitalize)
{
  switch (Variant) {
  case fvSmallCaps:
    return Ch.isLower() ? Ch.toUpper() : Ch;
  case fvUpperCase:
    return Ch.toUpper();
  case fvLowerCase:
    return Ch.toLower();
  case fvTitleCase: {
    QChar Result;
    if (Capitalize && Ch.isLetterOrNumber()) {
      Result = Ch.toUpper();
      Capitalize = false;
    } else {
      Result = Ch.toLower();
    }
    if (Ch.isSpace())
      Capitalize = true;
    return Result;
  }
  default:
    return Ch;
  }
}

QString VariantText(TSVGFontVariant Variant, const QString &Text)
{
  switch (Variant) {
  case fvUpperCase:
    return Text.toUpper();
  case fvLowerCase:
    return Text.toLower();
  case fvTitleCase: {
    QString Result = Text;
    bool Capitalize = true;
    for (QChar &Ch : Result)
      Ch = VariantChar(Variant, Ch, Capitalize);
    return Result;
  }
  default:
    return Text;
  }
}

bool IsSmallCap(TSVGFontVariant Variant, QChar Ch)
{
  return Variant == fvSmallCaps && Ch.isLower();
}

} // namespace vx
