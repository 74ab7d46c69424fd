#include "values/VXSVGLookups.h"

#include "platform/rtl/VXSysUtils.h"

#include <cmath>

namespace vx {

int LookupSVGName(const QString *Table, int Count, int First, const QString &S)
{
  for (int I = First; I < Count; ++I)
    if (Table[I] == S)
      return I;
  return 0;
}

namespace {

// An index that converts to whichever enumeration the caller returns.
struct TLookupResult
{
  int Value;
  template <typename E>
  operator E() const { return E(Value); }
};

template <std::size_t N>
TLookupResult Lookup(const std::array<QString, N> &Table, const QString &S, int First = 0)
{
  return {LookupSVGName(Table.data(), int(N), First, S)};
}

// Degrees snapped to a multiple of 90, or -1 when S is no number.
int QuarterTurns(const QString &S)
{
  QString T = S;
  if (EndsText(QStringLiteral("deg"), T))
    T.chop(3);
  float Degrees = 0;
  if (!TryStrToFloat(T, Degrees))
    return -1;
  const double Turns = std::nearbyint(double(Degrees) / 90.0);
  // Only 0 to 3 quarter turns mean anything; the check also keeps huge values out of the int cast.
  return Turns >= 0 && Turns <= 3 ? int(Turns) * 90 : -1;
}

} // namespace

TSVGElementType GetSVGElementType(const QString &S) { return Lookup(SVGElementTypeNames, S, 1); }
TSVGFeature GetSVGFeatureSupport(const QString &S) { return Lookup(SVGFeatures, S, 1); }
TSVGStyleProperty GetSVGStyleProperty(const QString &S) { return Lookup(SVGStylePropertyNames, S); }
TSVGAlign GetSVGAlign(const QString &S) { return Lookup(SVGAlignNames, S); }
TSVGAlignmentBaseline GetSVGAlignmentBaseline(const QString &S) { return Lookup(SVGAlignmentBaselines, S); }
TSVGBaselineShift GetSVGBaselineShift(const QString &S) { return Lookup(SVGBaselineShifts, S); }
TSVGDominantBaseline GetSVGDominantBaseline(const QString &S) { return Lookup(SVGDominantBaselines, S); }
TSVGTextPathMethod GetSVGTextPathMethod(const QString &S) { return Lookup(SVGTextPathMethods, S); }
TSVGTextPathSpacing GetSVGTextPathSpacing(const QString &S) { return Lookup(SVGTextPathSpacings, S); }
TSVGColorInterpolation GetSVGColorInterpolation(const QString &S) { return Lookup(SVGColorInterpolationNames, S); }
TSVGColorRendering GetSVGColorRendering(const QString &S) { return Lookup(SVGColorRenderingNames, S); }
TSVGShapeRendering GetSVGShapeRendering(const QString &S) { return Lookup(SVGShapeRenderingNames, S); }
TSVGTextRendering GetSVGTextRendering(const QString &S) { return Lookup(SVGTextRenderingNames, S); }
TSVGDirection GetSVGDirection(const QString &S) { return Lookup(SVGDirections, S); }
TSVGWritingMode GetSVGWritingMode(const QString &S) { return Lookup(SVGWritingModes, S); }
TSVGCursor GetSVGCursor(const QString &S) { return Lookup(SVGCursorNames, S); }
TSVGFillRule GetSVGFillRule(const QString &S) { return Lookup(SVGFillRules, S); }
TSVGVectorEffect GetSVGVectorEffect(const QString &S) { return Lookup(SVGVectorEffects, S); }
TSVGMarkerUnit GetSVGMarkerUnit(const QString &S) { return Lookup(SVGMarkerUnitNames, S); }
TSVGCoordinateSystemUnit GetSVGGradientUnit(const QString &S) { return Lookup(SVGCoordinateSystemUnits, S); }
TSVGGradientSpread GetSVGGradientSpread(const QString &S) { return Lookup(SVGGradientSpreads, S); }
TSVGGenericFontFamily GetSVGGenericFontFamily(const QString &S) { return Lookup(SVGGenericFontFamily, S); }
TSVGFontAbsSize GetSVGFontAbsSize(const QString &S) { return Lookup(SVGFontAbsSizes, S); }
TSVGFontWeight GetSVGFontWeight(const QString &S) { return Lookup(SVGFontWeights, S); }
TSVGFontStyle GetSVGFontStyle(const QString &S) { return Lookup(SVGFontStyles, S); }
TSVGFontVariant GetSVGFontVariant(const QString &S) { return Lookup(SVGFontVariants, S); }
TSVGTextAnchor GetSVGTextAnchor(const QString &S) { return Lookup(SVGTextAnchors, S); }
TSVGTextDecoration GetSVGTextDecoration(const QString &S) { return Lookup(SVGTextDecorations, S); }

TSVGGlyphOrientationHorizontal GetSVGGlyphOrientationHorizontal(const QString &S)
{
  switch (QuarterTurns(S)) {
  case 0: return oh0Deg;
  case 90: return oh90Deg;
  case 180: return oh180Deg;
  case 270: return oh270Deg;
  default: return ohNone;
  }
}

TSVGGlyphOrientationVertical GetSVGGlyphOrientationVertical(const QString &S)
{
  if (S == SVGGlyphOrientationVerticals[ovAuto])
    return ovAuto;
  switch (QuarterTurns(S)) {
  case 0: return ov0Deg;
  case 90: return ov90Deg;
  case 180: return ov180Deg;
  case 270: return ov270Deg;
  default: return ovNone;
  }
}

QString GetSVGFontFamily(const QString &S)
{
  return SVGGenericFont[GetSVGGenericFontFamily(S)];
}

TSVGFontAbsSize GetSVGFontAbsSize(float Size)
{
  for (std::size_t I = 0; I < SVGFontSizes.size(); ++I)
    if (SVGFontSizes[I] == Size)
      return TSVGFontAbsSize(I);
  return fabNone;
}

TSVGCursor GetSVGCursor(TCursor Cursor)
{
  for (std::size_t I = 0; I < SVGCursorMapping.size(); ++I)
    if (SVGCursorMapping[I] == Cursor)
      return TSVGCursor(I);
  return scrNone;
}

TSVGTextAnchor GetSVGTextAnchor(TSVGTextAlign Align)
{
  switch (Align) {
  case staCenter: return taMiddle;
  case staLeading: return taStart;
  case staTrailing: return taEnd;
  }
  return taNone;
}

int GetTextAlign(TSVGTextAlign Align)
{
  switch (Align) {
  case staCenter: return 1;
  case staLeading: return 0;
  case staTrailing: return 2;
  }
  return 0;
}

} // namespace vx
