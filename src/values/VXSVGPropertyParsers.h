#pragma once
// Parsers of single presentation properties: the text of one property to the value of its field.
// Style application calls them with the present field value as the default. None of them raises:
// text that makes no sense gives the default or value 0 of the enumeration, as each states.
//
// The inherit rule, shared by every parser with an IsInherited argument: the word "inherit" sets the
// flag, a blank text keeps it and anything else clears it; the text is read only when it is neither
// blank nor inherited, and the result is the default otherwise.
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

TSVGAlignmentBaseline ParseAlignmentBaseline(const QString &S, TSVGAlignmentBaseline Default, bool &IsInherited);
TSVGDominantBaseline ParseDominantBaseline(const QString &S, TSVGDominantBaseline Default, bool &IsInherited);
TSVGColorInterpolation ParseColorInterpolation(const QString &S, TSVGColorInterpolation Default,
                                               bool &IsInherited);
TSVGColorRendering ParseColorRendering(const QString &S, TSVGColorRendering Default, bool &IsInherited);
TSVGShapeRendering ParseShapeRendering(const QString &S, TSVGShapeRendering Default, bool &IsInherited);
TSVGTextRendering ParseTextRendering(const QString &S, TSVGTextRendering Default, bool &IsInherited);
TSVGDirection ParseDirection(const QString &S, TSVGDirection Default, bool &IsInherited);
TSVGGlyphOrientationHorizontal ParseGlyphOrientationHorizontal(const QString &S,
                                                               TSVGGlyphOrientationHorizontal Default,
                                                               bool &IsInherited);
TSVGGlyphOrientationVertical ParseGlyphOrientationVertical(const QString &S, TSVGGlyphOrientationVertical Default,
                                                           bool &IsInherited);
TSVGWritingMode ParseWritingMode(const QString &S, TSVGWritingMode Default, bool &IsInherited);
TSVGFillRule ParseFillRule(const QString &S, TSVGFillRule Default, bool &IsInherited);
TSVGVectorEffect ParseVectorEffect(const QString &S, TSVGVectorEffect Default, bool &IsInherited);
TSVGFontVariant ParseFontVariant(const QString &S, TSVGFontVariant Default, bool &IsInherited);
TSVGFontWeight ParseFontWeight(const QString &S, TSVGFontWeight Default, bool &IsInherited);

// --- keywords without inheritance ---------------------------------------------------------------

// An unknown word gives value 0.
TSVGTextPathMethod ParseTextPathMethod(const QString &S, TSVGTextPathMethod Default);
TSVGTextPathSpacing ParseTextPathSpacing(const QString &S, TSVGTextPathSpacing Default);
// An unknown word keeps the default.
TSVGMarkerUnit ParseMarkerUnit(const QString &S, TSVGMarkerUnit Default);
TSVGCoordinateSystemUnit ParseCoordinateSystemUnit(const QString &S, TSVGCoordinateSystemUnit Default);
TSVGGradientSpread ParseGradientSpread(const QString &S, TSVGGradientSpread Default);

// --- special members, all with the inherit rule -------------------------------------------------

// True only for "visible".
bool ParseVisible(const QString &S, bool Default, bool &IsInherited);
// False only for "none".
bool ParseDisplay(const QString &S, bool Default, bool &IsInherited);
// True for "visible" and "auto".
bool ParseOverflow(const QString &S, bool Default, bool &IsInherited);
// The platform cursor of the keyword; of a url("...") list the last item counts. Unknown: -1.
TCursor ParseCursor(const QString &S, TCursor Default, bool &IsInherited);
// "round", "square", anything else flat.
TVXGPLineCap ParseLineCap(const QString &S, TVXGPLineCap Default, bool &IsInherited);
// "bevel", "round", anything else miter.
TVXGPLineJoin ParseLineJoin(const QString &S, TVXGPLineJoin Default, bool &IsInherited);
float ParseMiterLimit(const QString &S, float Default, bool &IsInherited);
// "middle" and "end"; "start" and unknown words give the leading alignment.
TSVGTextAlign ParseTextAnchor(const QString &S, TSVGTextAlign Default, bool &IsInherited);
// Sets or clears the italic bit of Default; the other bits stay.
TVXGPFontStyles ParseFontStyle(const QString &S, TVXGPFontStyles Default, bool &IsInherited);
// One word only; a list of words counts as unknown and clears every decoration.
void ParseTextDecoration(const QString &S, TSVGFont &Font, bool &IsInherited);
// The comma list of families into Families, in one update, so a font's family handler runs once.
TStrings &ParseFontFamily(const QString &S, TStrings &Families, bool &IsInherited);
// Keywords, "larger"/"smaller" against ParentSize, or a length; "em" refers to the parent's size.
// Percent takes the element's percent factor as it is, without dividing by 100.
float ParseFontSize(const QString &S, float Default, float ParentSize, bool &IsInherited,
                    const TSVGUnitFactors &Factors);
// "auto" (kerning) or "normal" (spacing) set the automatic flag; otherwise a length. The inherited
// flag lives in the length. Factors is not needed: the length keeps its unit.
TSVGStylePropertyAutoLength &ParseKerning(const QString &S, TSVGStylePropertyAutoLength &Length,
                                          const TSVGUnitFactors &Factors);
TSVGStylePropertyAutoLength &ParseSpacing(const QString &S, TSVGStylePropertyAutoLength &Length,
                                          const TSVGUnitFactors &Factors);
// "baseline", "sub", "super" set the shift alone; anything else is read as a length or percentage.
TSVGBaselineShiftLength &ParseBaselineShift(const QString &S, TSVGBaselineShiftLength &Length);

// --- dashes ---------------------------------------------------------------------------------------

// The numbers of a dash list in pixels (percentages between Min and Max), with the unit and percent
// flag of each. An odd list is doubled, as SVG requires; IsPercent and Units keep one entry per
// written number.
std::vector<float> ParseDashes(const QString &S, std::vector<bool> &IsPercent, TSVGUnits &Units,
                               const TSVGUnitFactors &Factors, float Min, float Max);
// Which dash patterns draw: the documented rule leaves the pen solid for any entry of 0 or below;
// the standard one only for a negative entry or a pattern that adds up to 0, and keeps zeros.
enum TSVGDashRule : std::uint8_t { drPositiveEntries, drNonNegativeEntries };

// stroke-dasharray and stroke-dashoffset into Pen, updating both flags in Inherits; Rule decides
// which patterns draw.
void ParseDashArray(const QString &DashArray, const QString &DashOffset, TSVGPen &Pen, TSVGStyleProperties &Inherits,
                    const TSVGUnitFactors &Factors, TSVGDashRule Rule = drPositiveEntries);

QString SVGStrokeCapToString(TVXGPLineCap Cap);
// Empty for a join the canvas does not know.
QString SVGStrokeJoinToString(TVXGPLineJoin Join);

} // namespace vx
