// The standard road of reading presentation: colours, paints and opacities as CSS reads them. Text
// that is not valid leaves the property as it was, as if the declaration were not there.
#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGNumbers.h"

namespace vx {

namespace {

bool IsInheritKeyword(const QString &T)
{
  return T == QLatin1String("inherit");
}

} // namespace

void TSVGGraphicElement::ApplyCSSColorStyle(const QString &Text)
{
  const QString T = Trim(Text);
  // currentColor on color itself is the parent's colour.
  if (IsInheritKeyword(T) || T == QLatin1String("currentColor")) {
    FInherits.SetSet(ipColor, true);
    return;
  }
  TVXGPColor Color = 0;
  if (T.isEmpty() || !TryParseCSSColor(T, Color))
    return;
  FColor = Color;
  FInherits.SetSet(ipColor, false);
}

template <typename TPaint>
void TSVGGraphicElement::ApplyCSSPaintStyle(const QString &Text, TSVGStyleProperty Property, TPaint &Paint,
                                            TSVGPaintKeyword &Keyword)
{
  const QString T = Trim(Text);
  if (IsInheritKeyword(T)) {
    FInherits.SetSet(Property, true);
    return;
  }
  TSVGCSSPaint Value;
  if (T.isEmpty() || !TryParseCSSPaint(T, Value))
    return;
  // A reference without a fallback paints nothing unless its paint server takes over.
  const bool Paints = Value.Keyword != pkNone && Value.Keyword != pkAbsent;
  Paint.SetKind(Paints ? bkSolid : bkNone);
  if (Value.Keyword == pkColor)
    Paint.SetColor(Value.Color);
  Paint.SetURI(Value.URI);
  Keyword = Value.Keyword == pkColor ? pkAbsent : Value.Keyword;
  FInherits.SetSet(Property, false);
}

template void TSVGGraphicElement::ApplyCSSPaintStyle(const QString &, TSVGStyleProperty, TSVGBrush &,
                                                     TSVGPaintKeyword &);
template void TSVGGraphicElement::ApplyCSSPaintStyle(const QString &, TSVGStyleProperty, TSVGPen &,
                                                     TSVGPaintKeyword &);

TSVGPaintKeyword TSVGGraphicElement::PaintKeyword(TSVGStyleProperty Property) const
{
  const TSVGGraphicElement *Source = InheritanceSource(Property);
  return Property == ipFill ? Source->FFillKeyword : Source->FStrokeKeyword;
}

float TSVGGraphicElement::ParseOpacityStyle(const QString &Text, float Default, bool &IsInherited) const
{
  if (!ReadsPaintAsCSS())
    return ParseNumber(Text, Default, IsInherited);
  const QString T = Trim(Text);
  float Opacity = Default;
  if (IsInheritKeyword(T))
    IsInherited = true;
  else if (!T.isEmpty() && TryParseCSSOpacity(T, Opacity))
    IsInherited = false;
  return IsInherited ? Default : Opacity;
}

} // namespace vx
