#include "platform/rtl/VXStringList.h"
#include "values/VXSVGFontShorthand.h"
#include "values/VXSVGPaint.h"
#include "values/VXSVGPropertyParsers.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

QString Q(const char *Text)
{
  return QString::fromUtf8(Text);
}

// Inherited flags before and after a call.
enum TInherit : std::uint8_t { Clear, Set };

} // namespace

TEST(PropertyParsers, KeywordsFollowTheInheritRule)
{
  struct Case { const char *Text; TInherit Before; TSVGFillRule Expected; TInherit After; };
  const Case Cases[] = {
    {"evenodd", Clear, frEvenOdd, Clear},
    {"  nonzero\t", Set, frNonZero, Clear},
    {"EVENODD", Clear, frNone, Clear},      // look-ups are case-sensitive: unknown gives 0
    {"bogus", Clear, frNone, Clear},
    {"", Clear, frEvenOdd, Clear},          // blank keeps the default
    {"", Set, frEvenOdd, Set},              // ... and the flag
    {"inherit", Clear, frEvenOdd, Set},
    {" inherit ", Clear, frEvenOdd, Set},
    {"Inherit", Clear, frNone, Clear},
  };
  for (const Case &C : Cases) {
    bool Inherited = C.Before == Set;
    EXPECT_EQ(ParseFillRule(Q(C.Text), frEvenOdd, Inherited), C.Expected) << C.Text;
    EXPECT_EQ(Inherited, C.After == Set) << C.Text;
  }
  bool Inherited = false;
  EXPECT_EQ(ParseAlignmentBaseline(Q("mathematical"), abAuto, Inherited), abNone);
  EXPECT_EQ(ParseFontWeight(Q("600"), fwNormal, Inherited), fw600);
  EXPECT_EQ(ParseGlyphOrientationVertical(Q("90deg"), ovAuto, Inherited), ov90Deg);
  EXPECT_EQ(ParseWritingMode(Q("tb"), wmNone, Inherited), wmTopBottom);
}

TEST(PropertyParsers, KeywordsWithoutInheritance)
{
  EXPECT_EQ(ParseTextPathMethod(Q("bogus"), tpmStretch), tpmNone);
  EXPECT_EQ(ParseTextPathMethod(Q(" "), tpmStretch), tpmStretch);
  EXPECT_EQ(ParseTextPathSpacing(Q("auto"), tpsExact), tpsAuto);
  EXPECT_EQ(ParseMarkerUnit(Q("bogus"), muUserSpaceOnUse), muUserSpaceOnUse);
  EXPECT_EQ(ParseMarkerUnit(Q("strokeWidth"), muUserSpaceOnUse), muStrokeWidth);
  EXPECT_EQ(ParseCoordinateSystemUnit(Q("inherit"), csuObjectBoundingBox), csuObjectBoundingBox);
  EXPECT_EQ(ParseCoordinateSystemUnit(Q(" userSpaceOnUse "), csuObjectBoundingBox), csuUserSpaceOnUse);
  EXPECT_EQ(ParseGradientSpread(Q("reflect"), gsPad), gsReflect);
  EXPECT_EQ(ParseGradientSpread(Q("mirror"), gsPad), gsPad);
}

TEST(PropertyParsers, BooleanMembers)
{
  struct Case { const char *Text; bool Visible, Display, Overflow; };
  // Default true for all three, so a false result always comes from the word.
  const Case Cases[] = {
    {"visible", true, true, true},  {"hidden", false, true, false}, {"collapse", false, true, false},
    {"none", false, false, false},  {"auto", false, true, true},    {"scroll", false, true, false},
    {"", true, true, true},         {"inherit", true, true, true},
  };
  for (const Case &C : Cases) {
    bool A = false, B = false, D = false;
    EXPECT_EQ(ParseVisible(Q(C.Text), true, A), C.Visible) << C.Text;
    EXPECT_EQ(ParseDisplay(Q(C.Text), true, B), C.Display) << C.Text;
    EXPECT_EQ(ParseOverflow(Q(C.Text), true, D), C.Overflow) << C.Text;
    EXPECT_EQ(A, QByteArray(C.Text) == "inherit");
  }
}

TEST(PropertyParsers, CursorsCapsJoinsAnchorsAndStyles)
{
  bool Inherited = false;
  EXPECT_EQ(ParseCursor(Q("pointer"), 0, Inherited), -21);
  EXPECT_EQ(ParseCursor(Q("url(\"hand.cur\"), crosshair"), 0, Inherited), -3);
  EXPECT_EQ(ParseCursor(Q("URL(\"a.cur\"),  wait "), 0, Inherited), -11);
  EXPECT_EQ(ParseCursor(Q("url(\"hand.cur\")"), 0, Inherited), -1);
  EXPECT_EQ(ParseCursor(Q("bogus"), 0, Inherited), -1);
  EXPECT_EQ(ParseCursor(Q(""), -4, Inherited), -4);

  EXPECT_EQ(ParseLineCap(Q("round"), lcFlat, Inherited), lcRound);
  EXPECT_EQ(ParseLineCap(Q("square"), lcFlat, Inherited), lcSquare);
  EXPECT_EQ(ParseLineCap(Q("butt"), lcRound, Inherited), lcFlat);
  EXPECT_EQ(ParseLineCap(Q("bogus"), lcRound, Inherited), lcFlat);
  EXPECT_EQ(ParseLineJoin(Q("bevel"), ljMiter, Inherited), ljBevel);
  EXPECT_EQ(ParseLineJoin(Q("round"), ljMiter, Inherited), ljRound);
  EXPECT_EQ(ParseLineJoin(Q("bogus"), ljRound, Inherited), ljMiter);
  EXPECT_EQ(ParseLineJoin(Q("inherit"), ljRound, Inherited), ljRound);
  EXPECT_TRUE(Inherited);

  // The printers invert the parsers, and the anchor forms print as their plain caps.
  for (TVXGPLineCap Cap : {lcFlat, lcSquare, lcRound}) {
    bool Flag = false;
    EXPECT_EQ(ParseLineCap(SVGStrokeCapToString(Cap), lcTriangle, Flag), Cap);
  }
  EXPECT_EQ(SVGStrokeCapToString(lcNoAnchor), Q("butt"));
  EXPECT_EQ(SVGStrokeCapToString(lcSquareAnchor), Q("square"));
  EXPECT_EQ(SVGStrokeCapToString(lcTriangle), Q("round"));
  for (TVXGPLineJoin Join : {ljMiter, ljBevel, ljRound}) {
    bool Flag = false;
    EXPECT_EQ(ParseLineJoin(SVGStrokeJoinToString(Join), ljMiterClipped, Flag), Join);
  }
  EXPECT_EQ(SVGStrokeJoinToString(ljMiterClipped), Q("miter"));
  EXPECT_EQ(SVGStrokeJoinToString(TVXGPLineJoin(9)), QString());

  Inherited = false;
  EXPECT_EQ(ParseMiterLimit(Q("8.5"), 4, Inherited), 8.5f);
  EXPECT_EQ(ParseMiterLimit(Q("8px"), 4, Inherited), 4.0f);
  EXPECT_EQ(ParseMiterLimit(Q("inherit"), 4, Inherited), 4.0f);
  EXPECT_TRUE(Inherited);

  Inherited = false;
  EXPECT_EQ(ParseTextAnchor(Q("middle"), staLeading, Inherited), staCenter);
  EXPECT_EQ(ParseTextAnchor(Q("end"), staLeading, Inherited), staTrailing);
  EXPECT_EQ(ParseTextAnchor(Q("bogus"), staTrailing, Inherited), staLeading);
  EXPECT_EQ(ParseTextAnchor(Q(""), staTrailing, Inherited), staTrailing);

  const TVXGPFontStyles Bold{fsBold};
  const TVXGPFontStyles BoldItalic{fsBold, fsItalic};
  EXPECT_EQ(ParseFontStyle(Q("italic"), Bold, Inherited), BoldItalic);
  EXPECT_EQ(ParseFontStyle(Q("oblique"), Bold, Inherited), BoldItalic);
  EXPECT_EQ(ParseFontStyle(Q("normal"), BoldItalic, Inherited), Bold);
  EXPECT_EQ(ParseFontStyle(Q("bogus"), BoldItalic, Inherited), Bold);
  EXPECT_EQ(ParseFontStyle(Q("inherit"), BoldItalic, Inherited), BoldItalic);
}

TEST(PropertyParsers, FontSizes)
{
  TSVGUnitFactors Factors = SVGUnitFactors;
  Factors[suPercent] = 0.1f; // an element with a parent size of 10 answers this
  struct Case { const char *Text; float Expected; };
  const Case Cases[] = {
    {"large", 14.4f}, {"medium", 12.0f}, {"xx-small", 6.9444447f}, {"larger", 12.0f}, {"smaller", 10.0f / 1.2f},
    {"2em", 20.0f}, {"12pt", 15.996f}, {"16", 16.0f}, {"16px", 16.0f}, {"1in", 96.0f}, {"150%", 15.0f},
    {"bogus", 7.0f}, {"xmm", 7.0f * 3.78f}, {"Large", 7.0f}, {"", 7.0f}, {"inherit", 7.0f},
  };
  for (const Case &C : Cases) {
    bool Inherited = false;
    EXPECT_FLOAT_EQ(ParseFontSize(Q(C.Text), 7, 10, Inherited, Factors), C.Expected) << C.Text;
  }
}

TEST(PropertyParsers, TextDecorationActsOnTheFont)
{
  struct Case { const char *Text; bool Underline, StrikeOut; TExtendedFontStyles Extended; };
  const Case Cases[] = {
    {"none", false, false, {}},
    {"underline", true, false, {}},
    {"overline", false, false, {fsOverline}},
    {"line-through", false, true, {}},
    {"blink", true, false, {fsBlink}},
    {"underline overline", false, false, {}},
  };
  for (const Case &C : Cases) {
    TSVGFont Font;
    Font.SetStyle({fsBold, fsUnderline, fsStrikeOut});
    Font.SetExtendStyles({fsOverline, fsBlink});
    bool Inherited = false;
    ParseTextDecoration(Q(C.Text), Font, Inherited);
    EXPECT_EQ(Font.GetStyle().Contains(fsUnderline), C.Underline) << C.Text;
    EXPECT_EQ(Font.GetStyle().Contains(fsStrikeOut), C.StrikeOut) << C.Text;
    EXPECT_TRUE(Font.GetStyle().Contains(fsBold)) << C.Text;
    EXPECT_EQ(Font.GetExtendStyles(), C.Extended) << C.Text;
  }
  TSVGFont Font;
  Font.SetStyle({fsUnderline});
  bool Inherited = false;
  ParseTextDecoration(Q("inherit"), Font, Inherited);
  EXPECT_TRUE(Inherited);
  EXPECT_EQ(Font.GetStyle(), TVXGPFontStyles{fsUnderline});
}

TEST(PropertyParsers, FontFamiliesAreSplitAtCommasOnly)
{
  struct Case { const char *Text; QStringList Expected; };
  const Case Cases[] = {
    {"Arial", {"Arial"}},
    {" Times New Roman , serif", {"Times New Roman", "serif"}},
    {"\"DejaVu Sans\", sans-serif", {"DejaVu Sans", "sans-serif"}},
    {"serif, \"Liberation Serif\"", {"serif", "Liberation Serif"}},
    {"'Liberation Serif'", {"'Liberation Serif'"}},
    {"a,,b,", {"a", "b"}},
  };
  for (const Case &C : Cases) {
    TStringList Families;
    Families.Add(Q("old"));
    bool Inherited = false;
    ParseFontFamily(Q(C.Text), Families, Inherited);
    EXPECT_EQ(Families.ToStringList(), C.Expected) << C.Text;
  }
  TStringList Families;
  Families.Add(Q("kept"));
  bool Inherited = false;
  ParseFontFamily(Q("inherit"), Families, Inherited);
  EXPECT_TRUE(Inherited);
  EXPECT_EQ(Families.ToStringList(), QStringList{Q("kept")});
}

TEST(PropertyParsers, ParsingFamiliesIntoAFontPicksTheNameOnce)
{
  TSVGFont Font;
  int Changes = 0;
  Font.OnChange = [&Changes](TObject *) { ++Changes; };
  bool Inherited = false;
  ParseFontFamily(Q("NoSuchFont, 'DejaVu Sans', \"DejaVu Sans\", sans-serif"), Font.Families(), Inherited);
  EXPECT_EQ(Font.GetName(), Q("DejaVu Sans"));
  EXPECT_EQ(Changes, 1) << "one update, one name change";
}

TEST(PropertyParsers, KerningSpacingAndBaselineShift)
{
  TSVGStylePropertyAutoLength Kerning(ipKerning);
  Kerning.SetAutomatic(false);
  Kerning.SetRaw(3);
  ParseKerning(Q("auto"), Kerning, SVGUnitFactors);
  EXPECT_TRUE(Kerning.IsAutomatic());
  EXPECT_EQ(Kerning.Raw(), 3.0f) << "the number stays";
  ParseKerning(Q("2mm"), Kerning, SVGUnitFactors);
  EXPECT_FALSE(Kerning.IsAutomatic());
  EXPECT_EQ(Kerning.Raw(), 2.0f);
  EXPECT_EQ(Kerning.Unit(), suMillimeters);
  ParseKerning(Q("inherit"), Kerning, SVGUnitFactors);
  EXPECT_TRUE(Kerning.IsParentValue());
  ParseKerning(Q(""), Kerning, SVGUnitFactors);
  EXPECT_TRUE(Kerning.IsParentValue()) << "blank keeps the inherited flag";

  TSVGStylePropertyAutoLength Spacing(ipLetterSpacing);
  ParseSpacing(Q("auto"), Spacing, SVGUnitFactors);
  EXPECT_FALSE(Spacing.IsAutomatic()) << "spacing knows normal, not auto";
  ParseSpacing(Q("normal"), Spacing, SVGUnitFactors);
  EXPECT_TRUE(Spacing.IsAutomatic());

  struct Case { const char *Text; TSVGBaselineShift Shift; float Raw; bool IsPercent; };
  const Case Cases[] = {
    {"50%", bsPercentage, 0.5f, true}, {"5", bsLength, 5.0f, false}, {"sub", bsSubscript, 7.0f, false},
    {"super", bsSuperscript, 7.0f, false}, {"baseline", bsBaseline, 7.0f, false}, {"bogus", bsLength, 7.0f, false},
  };
  for (const Case &C : Cases) {
    TSVGBaselineShiftLength Shift(ipBaselineShift);
    Shift.SetRaw(7);
    ParseBaselineShift(Q(C.Text), Shift);
    EXPECT_EQ(Shift.GetShift(), C.Shift) << C.Text;
    EXPECT_FLOAT_EQ(Shift.Raw(), C.Raw) << C.Text;
    EXPECT_EQ(Shift.IsPercent(), C.IsPercent) << C.Text;
  }
}

TEST(PropertyParsers, DashListsDoubleWhenOdd)
{
  struct Case { const char *Text; std::vector<float> Dashes; TSVGUnits Units; std::vector<bool> Percents; };
  const Case Cases[] = {
    {"1 2 3", {1, 2, 3, 1, 2, 3}, {suNone, suNone, suNone}, {false, false, false}},
    {"4,2", {4, 2}, {suNone, suNone}, {false, false}},
    {"10-5", {10, -5}, {suNone, suNone}, {false, false}},
    {"1e1 2", {10, 2}, {suNone, suNone}, {false, false}},
    {"1mm", {3.78f, 3.78f}, {suMillimeters}, {false}},
    {"50% 2px", {0.5f, 2}, {suPercent, suPixels}, {true, false}},
    {" , ", {}, {}, {}},
    {"x 2", {0, 2}, {suNone, suNone}, {false, false}},
  };
  for (const Case &C : Cases) {
    std::vector<bool> Percents{true};
    TSVGUnits Units{suInches};
    const std::vector<float> Dashes = ParseDashes(Q(C.Text), Percents, Units, SVGUnitFactors, 0, 1);
    ASSERT_EQ(Dashes.size(), C.Dashes.size()) << C.Text;
    for (std::size_t I = 0; I < Dashes.size(); ++I)
      EXPECT_FLOAT_EQ(Dashes[I], C.Dashes[I]) << C.Text << " #" << I;
    EXPECT_EQ(Units, C.Units) << C.Text;
    EXPECT_EQ(Percents, C.Percents) << C.Text;
  }
}

TEST(PropertyParsers, DashArrayIntoThePen)
{
  struct Case { const char *DashArray; const char *DashOffset; TVXGPDashStyle Dash; std::vector<float> Pattern; };
  const Case Cases[] = {
    {"5 2", "", dsCustom, {5, 2}},
    {"5", "1", dsCustom, {5, 5}},
    {"5 0", "", dsSolid, {}},           // one zero entry turns the pattern off
    {"5 -1 2", "", dsSolid, {}},
    {"none", "", dsSolid, {}},
    {"", "", dsDot, {}},                // blank leaves the pen as it is
    {"inherit", "", dsDot, {}},
  };
  for (const Case &C : Cases) {
    TSVGPen Pen;
    Pen.SetDash(dsDot);
    TSVGStyleProperties Inherits;
    ParseDashArray(Q(C.DashArray), Q(C.DashOffset), Pen, Inherits, SVGUnitFactors);
    EXPECT_EQ(Pen.GetDash(), C.Dash) << C.DashArray;
    if (C.Dash == dsCustom) {
      EXPECT_EQ(Pen.GetDashPattern(), C.Pattern) << C.DashArray;
    }
    EXPECT_EQ(Inherits.Contains(ipStrokeDasharray), QByteArray(C.DashArray) == "inherit") << C.DashArray;
  }

  TSVGPen Pen;
  TSVGStyleProperties Inherits{ipStrokeDasharray, ipStrokeDashOffset};
  ParseDashArray(Q(""), Q(""), Pen, Inherits, SVGUnitFactors);
  EXPECT_EQ(Inherits, (TSVGStyleProperties{ipStrokeDasharray, ipStrokeDashOffset})) << "blank keeps both flags";
  ParseDashArray(Q("3 1"), Q("2"), Pen, Inherits, SVGUnitFactors);
  EXPECT_TRUE(Inherits.Empty());
  EXPECT_EQ(Pen.GetSVGDashOffset()->Raw(), 2.0f);
  EXPECT_EQ(Pen.GetDashOffset(), 2.0f);
  ParseDashArray(Q("3mm 10%"), Q(""), Pen, Inherits, SVGUnitFactors);
  EXPECT_EQ(Pen.GetDashArrayPreferredUnits(), (TSVGUnits{suMillimeters, suPercent}));
  EXPECT_EQ(Pen.GetDashArrayIsPercent(), (std::vector<bool>{false, true}));
}

TEST(PropertyParsers, FontShorthandSetsEveryLonghand)
{
  // Expected: style, variant, weight, stretch, size and family; empty for text that is no shorthand.
  const struct
  {
    const char *Text;
    std::vector<const char *> Values;
  } Cases[] = {
    {"50px 'Noto Sans'", {"normal", "normal", "normal", "normal", "50px", "'Noto Sans'"}},
    {"italic bold small-caps condensed 12pt/1.5 serif, sans-serif",
     {"italic", "small-caps", "bold", "condensed", "12pt", "serif, sans-serif"}},
    {"normal 600 2em / 3 Times New Roman", {"normal", "normal", "600", "normal", "2em", "Times New Roman"}},
    {"caption", {}},
    {"bold 12px", {}},
    {"bold serif", {}},
  };
  const char *const Names[] = {"font-style", "font-variant", "font-weight", "font-stretch", "font-size", "font-family"};
  for (const auto &Case : Cases) {
    const auto Longhands = ExpandFontShorthand(QString::fromLatin1(Case.Text));
    ASSERT_EQ(Longhands.size(), Case.Values.size()) << Case.Text;
    for (std::size_t I = 0; I < Longhands.size(); ++I) {
      EXPECT_EQ(Longhands[I].first, QLatin1String(Names[I])) << Case.Text;
      EXPECT_EQ(Longhands[I].second, QLatin1String(Case.Values[I])) << Case.Text;
    }
  }
}
