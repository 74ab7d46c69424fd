#pragma once
// Keyword look-ups: text to enumeration value. They are exact and case-sensitive, do not trim and
// answer value 0 of the enumeration for an unknown word; none of them raises.
#include "platform/rtl/VXExport.h"
#include "values/VXSVGVocabulary.h"

namespace vx {

VX_EXPORT TSVGElementType GetSVGElementType(const QString &S);
VX_EXPORT TSVGFeature GetSVGFeatureSupport(const QString &S);
VX_EXPORT TSVGStyleProperty GetSVGStyleProperty(const QString &S);
VX_EXPORT TSVGAlign GetSVGAlign(const QString &S);
VX_EXPORT TSVGAlignmentBaseline GetSVGAlignmentBaseline(const QString &S);
VX_EXPORT TSVGBaselineShift GetSVGBaselineShift(const QString &S);
VX_EXPORT TSVGDominantBaseline GetSVGDominantBaseline(const QString &S);
VX_EXPORT TSVGTextPathMethod GetSVGTextPathMethod(const QString &S);
VX_EXPORT TSVGTextPathSpacing GetSVGTextPathSpacing(const QString &S);
VX_EXPORT TSVGColorInterpolation GetSVGColorInterpolation(const QString &S);
VX_EXPORT TSVGColorRendering GetSVGColorRendering(const QString &S);
VX_EXPORT TSVGShapeRendering GetSVGShapeRendering(const QString &S);
VX_EXPORT TSVGTextRendering GetSVGTextRendering(const QString &S);
VX_EXPORT TSVGDirection GetSVGDirection(const QString &S);
VX_EXPORT TSVGWritingMode GetSVGWritingMode(const QString &S);
VX_EXPORT TSVGCursor GetSVGCursor(const QString &S);
VX_EXPORT TSVGFillRule GetSVGFillRule(const QString &S);
VX_EXPORT TSVGVectorEffect GetSVGVectorEffect(const QString &S);
VX_EXPORT TSVGMarkerUnit GetSVGMarkerUnit(const QString &S);
VX_EXPORT TSVGCoordinateSystemUnit GetSVGGradientUnit(const QString &S);
VX_EXPORT TSVGGradientSpread GetSVGGradientSpread(const QString &S);
VX_EXPORT TSVGGenericFontFamily GetSVGGenericFontFamily(const QString &S);
VX_EXPORT TSVGFontAbsSize GetSVGFontAbsSize(const QString &S);
VX_EXPORT TSVGFontWeight GetSVGFontWeight(const QString &S);
VX_EXPORT TSVGFontStyle GetSVGFontStyle(const QString &S);
VX_EXPORT TSVGFontVariant GetSVGFontVariant(const QString &S);
VX_EXPORT TSVGTextAnchor GetSVGTextAnchor(const QString &S);
VX_EXPORT TSVGTextDecoration GetSVGTextDecoration(const QString &S);

// A number of degrees, with or without a "deg" suffix, snapped to the nearest quarter turn (half to
// even); anything but 0, 90, 180 and 270 gives the none value.
VX_EXPORT TSVGGlyphOrientationHorizontal GetSVGGlyphOrientationHorizontal(const QString &S);
// As the horizontal form, but "auto" first.
VX_EXPORT TSVGGlyphOrientationVertical GetSVGGlyphOrientationVertical(const QString &S);

// The concrete font of a generic family name; empty for anything else.
VX_EXPORT QString GetSVGFontFamily(const QString &S);
// The first index whose size equals Size exactly. Index 0 holds 12 as well, so 12 answers fabNone.
VX_EXPORT TSVGFontAbsSize GetSVGFontAbsSize(float Size);
// The first keyword whose platform cursor number is Cursor; scrNone when there is none.
VX_EXPORT TSVGCursor GetSVGCursor(TCursor Cursor);
VX_EXPORT TSVGTextAnchor GetSVGTextAnchor(TSVGTextAlign Align);
// The canvas's text alignment: near 0, centre 1, far 2.
VX_EXPORT int GetTextAlign(TSVGTextAlign Align);

// The shared table look-up: the first entry from First on that equals S exactly, else 0.
VX_EXPORT int LookupSVGName(const QString *Table, int Count, int First, const QString &S);

} // namespace vx
