#pragma once
// Numbers, units and lengths as attribute text: parsers that fall back to a default instead of
// failing, and printers that write a length in the unit it was read in. Pixels are computed through
// unit factors that the caller supplies (the element's own, or SVGUnitFactors).
#include "platform/rtl/VXExport.h"
#include "values/VXSVGVocabulary.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace vx {

class IXMLNode;
class TSVGLength;
class TSVGLengths;

using TSVGNumbers = std::vector<float>;

// The value that the words "Infinity" and "-Infinity" stand for in number and length text.
inline constexpr float SVGInfinity = 100000000.0f;

// Trims S and applies the inherit rule; then reads a number, "Infinity" or "-Infinity" (any case).
// Text that is not a number, units included, gives Default.
VX_EXPORT float ParseNumber(const QString &S, float Default, bool &IsInherited);
// Splits S as a number list; token i falls back to Defaults[i], or 0 beyond them.
VX_EXPORT TSVGNumbers ParseNumbers(const QString &S, const TSVGNumbers &Defaults);
// As above for the attribute Name; empty when the attribute is absent.
VX_EXPORT TSVGNumbers ParseNumbers(const IXMLNode &Node, const QString &Name, const TSVGNumbers &Defaults);
// Splits at each of the Delimiters characters, keeping empty tokens, and then once more at the first
// sign inside a token that does not follow an exponent letter: "10-5" gives "10" and "-5", "1e-5"
// stays whole, "1-2-3" gives "1" and "-2-3". Callers clean the result with CleanArray.
VX_EXPORT QStringList SplitNumbers(const QString &S, const QString &Delimiters);

// The unit of a length from its last two characters. Loose on purpose: suffixes match without case,
// and a "%" in either position means percent.
VX_EXPORT TSVGUnit GetSVGUnit(const QString &S);

// Lengths in pixels: the number times the factor of its unit. Blank text gives Default and leaves
// aUnit alone; a text that fails as a number gives Default times the factor of the unit it named.
VX_EXPORT float ParseLength(const QString &S, float Default, bool &IsInherited, TSVGUnit &aUnit,
                  const TSVGUnitFactors &Factors);
// Without the inherit rule; this form knows "Infinity".
VX_EXPORT float ParseLength(const QString &S, float Default, TSVGUnit &aUnit, const TSVGUnitFactors &Factors);
// Reads S into Length in its written unit (no factor applied); blank text changes nothing.
VX_EXPORT TSVGLength *ParseLength(const QString &S, TSVGLength *Length);
VX_EXPORT float ParseLength(const IXMLNode &Node, const QString &Name, float Default, TSVGUnit &aUnit,
                  const TSVGUnitFactors &Factors);
VX_EXPORT float ParseLength(const IXMLNode &Node, const QString &Name, float Default, bool &IsInherited, TSVGUnit &aUnit,
                  const TSVGUnitFactors &Factors);

// As ParseLength, but a percentage gives Min + (Max - Min) * P / 100.
VX_EXPORT float ParsePercent(const QString &S, float Default, bool &IsInherited, TSVGUnit &aUnit,
                   const TSVGUnitFactors &Factors, float Min, float Max);
VX_EXPORT float ParsePercent(const QString &S, float Default, TSVGUnit &aUnit, const TSVGUnitFactors &Factors, float Min,
                   float Max);
// A percentage as a fraction of 1.
VX_EXPORT float ParsePercent(const QString &S, float Default, TSVGUnit &aUnit, const TSVGUnitFactors &Factors);
// Into an object: "50%" with Min 0 and Max 1 stores raw 0.5, unit suPercent, IsPercent.
VX_EXPORT TSVGLength *ParsePercent(const QString &S, TSVGLength *Length, bool &IsInherited, float Min, float Max);
VX_EXPORT TSVGLength *ParsePercent(const QString &S, TSVGLength *Length, float Min, float Max);
// The attribute forms hand the attribute text on, or return what was passed in when it is absent.
VX_EXPORT float ParsePercent(const IXMLNode &Node, const QString &Name, float Default, bool &IsInherited, TSVGUnit &aUnit,
                   const TSVGUnitFactors &Factors, float Min, float Max);
VX_EXPORT float ParsePercent(const IXMLNode &Node, const QString &Name, float Default, TSVGUnit &aUnit,
                   const TSVGUnitFactors &Factors, float Min, float Max);
VX_EXPORT TSVGLength *ParsePercent(const IXMLNode &Node, const QString &Name, TSVGLength *Length, bool &IsInherited,
                         float Min, float Max);
VX_EXPORT TSVGLength *ParsePercent(const IXMLNode &Node, const QString &Name, TSVGLength *Length, float Min, float Max);

// Fills Lengths from a list: surplus items go, existing items are reused, new ones are added.
VX_EXPORT TSVGLengths *ParseLengths(const QString &S, TSVGLengths *Lengths, float Min, float Max);
// Untouched when the attribute is absent.
VX_EXPORT TSVGLengths *ParseLengths(const IXMLNode &Node, const QString &Name, TSVGLengths *Lengths, float Min, float Max);

// An angle in radians: degrees by default, "<n> grad" and "<n> rad" with the unit apart from the
// number. "auto" sets IsAuto; text that fails gives Default unconverted.
VX_EXPORT float ParseAngle(const QString &S, float Default, bool &IsAuto);

// Pixels expressed in aUnit; percent means times 100.
VX_EXPORT float PixelsToSVGUnit(float Pixels, TSVGUnit aUnit, const TSVGUnitFactors &Factors);

// Value by a pattern such as "0.###", followed by the unit's suffix; pixels are written bare.
VX_EXPORT QString SVGNumberToString(float Value, TSVGUnit aUnit, const QString &Format);
VX_EXPORT QString SVGNumbersToString(const TSVGNumbers &Numbers, const QString &Format, const QString &Separator);
// A percentage (IsPercent) is a fraction of Min..Max and is printed as the value in that range.
VX_EXPORT QString SVGLengthToString(float Value, bool IsPercent, TSVGUnit aUnit, const QString &Format, float Min, float Max);
VX_EXPORT QString SVGLengthToString(const TSVGLength &Length, const QString &Format, float Min, float Max);
// Items of a list always print against 0..1, whatever Min and Max say: raw 0.5 in percent prints
// "0.5%", the stored fraction rather than the percentage.
VX_EXPORT QString SVGLengthsToString(const TSVGLengths &Lengths, const QString &Format, float Min, float Max,
                           const QString &Separator);

} // namespace vx
