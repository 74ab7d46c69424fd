#pragma once
// Keyword look-ups: text to enumeration value. They are exact and case-sensitive, do not trim and
// answer value 0 of the enumeration for an unknown word; none of them raises.
#include "values/VXSVGVocabulary.h"

namespace vx {

TSVGElementType GetSVGElementType(const QString &S);
TSVGFeature GetSVGFeatureSupport(const QString &S);
TSVGStyleProperty GetSVGStyleProperty(const QString &S);
TSVGAlign GetSVGAlign(const QString &S);
TSVGAlignmentBaseline GetSVGAlignmentBaseline(const QString &S);
TSVGBaselineShift GetSVGBaselineShift(const QString &S);
TSVGDominantBaseline GetSVGDominantBaseline(const QString &S);
TSVGTextPathMethod GetSVGTextPathMethod(const QString &S);
TSVGTextPathSpacing GetSVGTextPathSpacing(const QString &S);
TSVGColorInterpolation GetSVGColorInterpolation(const QString &S);
TSVGColorRendering GetSVGColorRendering(const QString &S);
TSVGShapeRendering GetSVGShapeRendering(const QString &S);
TSVGTextRendering GetSVGTextRendering(const QString &S);
TSVGDirection GetSVGDirection(const QString &S);
TSVGWritingMode GetSVGWritingMode(const QString &S);
TSVGCursor GetSVGCursor(const QString &S);
TSVGFillRule GetSVGFillRule(const QString &S);
TSVGVectorEffect GetSVGVectorEffect(const QString &S);
TSVGMarkerUnit GetSVGMarkerUnit(const QString &S);
TSVGCoordinateSystemUnit GetSVGGradientUnit(const QString &S);
TSVGGradientSpread GetSVGGradientSpread(const QString &S);
TSVGGenericFontFamily GetSVGGenericFontFamily(const QString &S);
TSVGFontAbsSize GetSVGFontAbsSize(const QString &S);
TSVGFontWeight GetSVGFontWeight(const QString &S);
TSVGFontStyle GetSVGFontStyle(const QString &S);
TSVGFontVariant GetSVGFontVariant(const QString &S);
TSVGTextAnchor GetSVGTextAnchor(const QString &S);
TSVGTextDecoration GetSVGTextDecoration(const QString &S);

// A number of degrees, with or without a "deg" suffix, snapped to the nearest quarter turn (half to
// even); anything but 0, 90, 180 and 270 gives the none value.
TSVGGlyphOrientationHorizontal GetSVGGlyphOrientationHorizontal(const QString &S);
// As the horizontal form, but "auto" first.
TSVGGlyphOrientationVertical GetSVGGlyphOrientationVertical(const QString &S);

// The concrete font of a generic family name; empty for anything else.
QString GetSVGFontFamily(const QString &S);
// The first index whose size equals Size exactly. Index 0 holds 12 as well, so 12 answers fabNone.
TSVGFontAbsSize GetSVGFontAbsSize(float Size);
// The first keyword whose platform cursor number is Cursor; scrNone when there is none.
TSVGCursor GetSVGCursor(TCursor Cursor);
TSVGTextAnchor GetSVGTextAnchor(TSVGTextAlign Align);
// The canvas's text alignment: near 0, centre 1, far 2.
int GetTextAlign(TSVGTextAlign Align);

// The shared table look-up: the first entry from First on that equals S exactly, else 0.
int LookupSVGName(const QString *Table, int Count, int First, const QString &S);

} // namespace vx
