#pragma once
// Parsers of single presentation properties: the text of one property to the value of its field.
// Style application calls them with the present field value as the default. None of them raises:
// text that makes no sense gives the default or value 0 of the enumeration, as each states.
//
// The inherit rule, shared by every parser with an IsInherited argument: the word "inherit" sets the
// flag, a blank text keeps it and anything else clears it; the text is read only when it is neither
// blank nor inherited, and the result is the default otherwise.
#include "platform/rtl/VXExport.h"
#include "platform/vectorkit/VXGPFont.h"
#include "platform/vectorkit/VXGPPaint.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

#include <vector>

namespace vx {

class TStrings;
class TSVGBaselineShiftLength;
class TSVGFont;
class TSVGPen;
class TSVGStylePropertyAutoLength;

// --- keywords with the inherit rule: an unknown word gives value 0, not the default -------------

VX_EXPORT TSVGAlignmentBaseline ParseAlignmentBaseline(const QString &S, TSVGAlignmentBaseline Default, bool &IsInherited);
VX_EXPORT TSVGDominantBaseline ParseDominantBaseline(const QString &S, TSVGDominantBaseline Default, bool &IsInherited);
VX_EXPORT TSVGColorInterpolation ParseColorInterpolation(const QString &S, TSVGColorInterpolation Default,
                                               bool &IsInherited);
VX_EXPORT TSVGColorRendering ParseColorRendering(const QString &S, TSVGColorRendering Default, bool &IsInherited);
VX_EXPORT TSVGShapeRendering ParseShapeRendering(const QString &S, TSVGShapeRendering Default, bool &IsInherited);
VX_EXPORT TSVGTextRendering ParseTextRendering(const QString &S, TSVGTextRendering Default, bool &IsInherited);
VX_EXPORT TSVGDirection ParseDirection(const QString &S, TSVGDirection Default, bool &IsInherited);
VX_EXPORT TSVGGlyphOrientationHorizontal ParseGlyphOrientationHorizontal(const QString &S,
                                                               TSVGGlyphOrientationHorizontal Default,
                                                               bool &IsInherited);
VX_EXPORT TSVGGlyphOrientationVertical ParseGlyphOrientationVertical(const QString &S, TSVGGlyphOrientationVertical Default,
                                                           bool &IsInherited);
VX_EXPORT TSVGWritingMode ParseWritingMode(const QString &S, TSVGWritingMode Default, bool &IsInherited);
VX_EXPORT TSVGFillRule ParseFillRule(const QString &S, TSVGFillRule Default, bool &IsInherited);
VX_EXPORT TSVGVectorEffect ParseVectorEffect(const QString &S, TSVGVectorEffect Default, bool &IsInherited);
VX_EXPORT TSVGFontVariant ParseFontVariant(const QString &S, TSVGFontVariant Default, bool &IsInherited);
VX_EXPORT TSVGFontWeight ParseFontWeight(const QString &S, TSVGFontWeight Default, bool &IsInherited);

// --- keywords without inheritance ---------------------------------------------------------------

// An unknown word gives value 0.
VX_EXPORT TSVGTextPathMethod ParseTextPathMethod(const QString &S, TSVGTextPathMethod Default);
VX_EXPORT TSVGTextPathSpacing ParseTextPathSpacing(const QString &S, TSVGTextPathSpacing Default);
// An unknown word keeps the default.
VX_EXPORT TSVGMarkerUnit ParseMarkerUnit(const QString &S, TSVGMarkerUnit Default);
VX_EXPORT TSVGCoordinateSystemUnit ParseCoordinateSystemUnit(const QString &S, TSVGCoordinateSystemUnit Default);
VX_EXPORT TSVGGradientSpread ParseGradientSpread(const QString &S, TSVGGradientSpread Default);

// --- special members, all with the inherit rule -------------------------------------------------

// True only for "visible".
VX_EXPORT bool ParseVisible(const QString &S, bool Default, bool &IsInherited);
// False only for "none".
VX_EXPORT bool ParseDisplay(const QString &S, bool Default, bool &IsInherited);
// True for "visible" and "auto".
VX_EXPORT bool ParseOverflow(const QString &S, bool Default, bool &IsInherited);
// The platform cursor of the keyword; of a url("...") list the last item counts. Unknown: -1.
VX_EXPORT TCursor ParseCursor(const QString &S, TCursor Default, bool &IsInherited);
// "round", "square", anything else flat.
VX_EXPORT TVXGPLineCap ParseLineCap(const QString &S, TVXGPLineCap Default, bool &IsInherited);
// "bevel", "round", anything else miter.
VX_EXPORT TVXGPLineJoin ParseLineJoin(const QString &S, TVXGPLineJoin Default, bool &IsInherited);
VX_EXPORT float ParseMiterLimit(const QString &S, float Default, bool &IsInherited);
// "middle" and "end"; "start" and unknown words give the leading alignment.
VX_EXPORT TSVGTextAlign ParseTextAnchor(const QString &S, TSVGTextAlign Default, bool &IsInherited);
// Sets or clears the italic bit of Default; the other bits stay.
VX_EXPORT TVXGPFontStyles ParseFontStyle(const QString &S, TVXGPFontStyles Default, bool &IsInherited);
// One word only; a list of words counts as unknown and clears every decoration.
VX_EXPORT void ParseTextDecoration(const QString &S, TSVGFont &Font, bool &IsInherited);
// The comma list of families into Families, in one update, so a font's family handler runs once.
VX_EXPORT TStrings &ParseFontFamily(const QString &S, TStrings &Families, bool &IsInherited);
// Keywords, "larger"/"smaller" against ParentSize, or a length; "em" refers to the parent's size.
// Percent takes the element's percent factor as it is, without dividing by 100.
VX_EXPORT float ParseFontSize(const QString &S, float Default, float ParentSize, bool &IsInherited,
                    const TSVGUnitFactors &Factors);
// "auto" (kerning) or "normal" (spacing) set the automatic flag; otherwise a length. The inherited
// flag lives in the length. Factors is not needed: the length keeps its unit.
VX_EXPORT TSVGStylePropertyAutoLength &ParseKerning(const QString &S, TSVGStylePropertyAutoLength &Length,
                                          const TSVGUnitFactors &Factors);
VX_EXPORT TSVGStylePropertyAutoLength &ParseSpacing(const QString &S, TSVGStylePropertyAutoLength &Length,
                                          const TSVGUnitFactors &Factors);
// "baseline", "sub", "super" set the shift alone; anything else is read as a length or percentage.
VX_EXPORT TSVGBaselineShiftLength &ParseBaselineShift(const QString &S, TSVGBaselineShiftLength &Length);

// --- dashes ---------------------------------------------------------------------------------------

// The numbers of a dash list in pixels (percentages between Min and Max), with the unit and percent
// flag of each. An odd list is doubled, as SVG requires; IsPercent and Units keep one entry per
// written number.
VX_EXPORT std::vector<float> ParseDashes(const QString &S, std::vector<bool> &IsPercent, TSVGUnits &Units,
                               const TSVGUnitFactors &Factors, float Min, float Max);
// Which dash patterns draw: the documented rule leaves the pen solid for any entry of 0 or below;
// the standard one only for a negative entry or a pattern that adds up to 0, and keeps zeros.
enum TSVGDashRule : std::uint8_t { drPositiveEntries, drNonNegativeEntries };

// stroke-dasharray and stroke-dashoffset into Pen, updating both flags in Inherits; Rule decides
// which patterns draw.
VX_EXPORT void ParseDashArray(const QString &DashArray, const QString &DashOffset, TSVGPen &Pen, TSVGStyleProperties &Inherits,
                    const TSVGUnitFactors &Factors, TSVGDashRule Rule = drPositiveEntries);

VX_EXPORT QString SVGStrokeCapToString(TVXGPLineCap Cap);
// Empty for a join the canvas does not know.
VX_EXPORT QString SVGStrokeJoinToString(TVXGPLineJoin Join);

} // namespace vx
