#include "platform/xml/VXXmlDom.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGNumbers.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace vx;

namespace {

IXMLNode LoadRoot(const char *Xml)
{
  static IXMLDocument Document;
  Document = LoadXMLData(QString::fromUtf8(Xml));
  return Document.DocumentElement();
}

QStringList Split(const QString &S)
{
  return CleanArray(SplitNumbers(S, SVGListDelimiters));
}

} // namespace

TEST(Numbers, SplitNumbersBreaksAtTheFirstSignThatIsNoExponentSign)
{
  const struct
  {
    const char *Text;
    QStringList Tokens;
  } Cases[] = {
      {"10-5,3", {"10", "-5", "3"}},
      {"1e-5", {"1e-5"}},
      {"1E+5", {"1E+5"}},
      {"1-2-3", {"1", "-2-3"}},       // only the first sign splits
      {"1e-5-3", {"1e-5-3"}},         // behind an exponent sign nothing more is looked for
      {"-1-2", {"-1", "-2"}},         // a leading sign belongs to the number
      {"5+6", {"5", "+6"}},
      {"1\t2", {"1\t2"}},             // a tab is no separator
      {" 1 ,, 2\r\n3 ", {"1", "2", "3"}},
      {"", {}},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(Split(QString::fromUtf8(Case.Text)), Case.Tokens) << Case.Text;
  EXPECT_EQ(SplitNumbers(QStringLiteral("1,,2"), SVGListDelimiters), QStringList({"1", "", "2"}))
      << "empty tokens stay until CleanArray";
}

TEST(Numbers, ParseNumberAndTheInheritRule)
{
  const struct
  {
    const char *Text;
    bool InheritedBefore;
    float Expected;
    bool InheritedAfter;
  } Cases[] = {
      {"3", true, 3.0f, false},
      {" 2.5e1 ", false, 25.0f, false},
      {"Infinity", false, 100000000.0f, false},
      {"infinity", false, 100000000.0f, false},
      {"-INFINITY", false, -100000000.0f, false},
      {"+Infinity", false, 7.0f, false},
      {"5px", false, 7.0f, false},          // a unit makes a number fail
      {"inherit", false, 7.0f, true},
      {"", true, 7.0f, true},               // blank keeps the flag
      {"\t\x01", true, 7.0f, true},         // control characters trim away
      {"", false, 7.0f, false},
      {"1e39", false, 7.0f, false},         // beyond the float range
  };
  for (const auto &Case : Cases) {
    bool IsInherited = Case.InheritedBefore;
    EXPECT_EQ(ParseNumber(QString::fromUtf8(Case.Text), 7.0f, IsInherited), Case.Expected) << Case.Text;
    EXPECT_EQ(IsInherited, Case.InheritedAfter) << Case.Text;
  }
}

TEST(Numbers, ParseNumbersFallsBackPerToken)
{
  EXPECT_EQ(ParseNumbers(QStringLiteral("10-5,3 x y"), {0, 0, 0, 7}), TSVGNumbers({10, -5, 3, 7, 0}));
  EXPECT_EQ(ParseNumbers(QStringLiteral("1\t2"), {9}), TSVGNumbers({9}));
  EXPECT_EQ(ParseNumbers(QStringLiteral("inherit 2"), {}), TSVGNumbers({0, 2})) << "no inherit in lists";
  const IXMLNode Root = LoadRoot(R"(<svg a="1 2"/>)");
  EXPECT_EQ(ParseNumbers(Root, QStringLiteral("a"), {}), TSVGNumbers({1, 2}));
  EXPECT_TRUE(ParseNumbers(Root, QStringLiteral("b"), {5}).empty());
}

TEST(Numbers, GetSVGUnitIsLoose)
{
  const struct
  {
    const char *Text;
    TSVGUnit Unit;
  } Cases[] = {
      {"", suNone}, {"px", suPixels}, {"PX", suPixels}, {"pt", suPoints}, {"Pc", suPicas}, {"mm", suMillimeters},
      {"cm", suCentimeters}, {"in", suInches}, {"em", suFontSize}, {"ex", suFontXHeight}, {"%", suPercent},
      {"5%", suPercent}, {"%x", suPercent}, {"12", suNone}, {"x", suNone},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(GetSVGUnit(QString::fromUtf8(Case.Text)), Case.Unit) << Case.Text;
}

TEST(Numbers, ParseLengthAppliesTheFactorOfTheWrittenUnit)
{
  const struct
  {
    const char *Text;
    float Default;
    float Pixels;
    TSVGUnit Unit;
  } Cases[] = {
      {"2in", 0, 192.0f, suInches},
      {"5", 0, 5.0f, suNone},
      {" 3PX ", 0, 3.0f, suPixels},
      {"x", 2, 2.0f, suNone},
      {"xmm", 2, float(2.0 * double(SVGUnitFactors[suMillimeters])), suMillimeters}, // default times factor
      {"1.5cm", 0, float(1.5 * double(SVGUnitFactors[suCentimeters])), suCentimeters},
      {"-1e1pt", 0, float(-10.0 * double(SVGUnitFactors[suPoints])), suPoints},
      {"50%", 0, 50.0f, suPercent},
      {"%x", 4, 4.0f, suPercent},
      {"Infinity", 0, 100000000.0f, suNone},
      {"2 in", 9, 192.0f, suInches}, // blanks around the number are allowed
  };
  for (const auto &Case : Cases) {
    TSVGUnit Unit = suPicas;
    EXPECT_FLOAT_EQ(ParseLength(QString::fromUtf8(Case.Text), Case.Default, Unit, SVGUnitFactors), Case.Pixels)
        << Case.Text;
    EXPECT_EQ(Unit, Case.Unit) << Case.Text;
  }
}

TEST(Numbers, ParseLengthWithInheritFlag)
{
  TSVGUnit Unit = suPicas;
  bool IsInherited = false;
  EXPECT_EQ(ParseLength(QStringLiteral("Infinity"), 4, IsInherited, Unit, SVGUnitFactors), 4.0f)
      << "this form does not know Infinity";
  EXPECT_EQ(ParseLength(QStringLiteral("Infinity"), 4, Unit, SVGUnitFactors), 100000000.0f);

  Unit = suPicas;
  EXPECT_EQ(ParseLength(QStringLiteral(" inherit "), 4, IsInherited, Unit, SVGUnitFactors), 4.0f);
  EXPECT_TRUE(IsInherited);
  EXPECT_EQ(Unit, suPicas) << "an inherited value leaves the unit alone";
  EXPECT_EQ(ParseLength(QStringLiteral(""), 4, IsInherited, Unit, SVGUnitFactors), 4.0f);
  EXPECT_TRUE(IsInherited);
  EXPECT_EQ(ParseLength(QStringLiteral("2em"), 4, IsInherited, Unit, {1, 1, 1, 1, 1, 1, 1, 16, 8, 1}), 32.0f);
  EXPECT_FALSE(IsInherited);
  EXPECT_EQ(Unit, suFontSize);
}

TEST(Numbers, ParsePercentTakesItsShareOfTheRange)
{
  const struct
  {
    const char *Text;
    float Min, Max;
    float Expected;
    TSVGUnit Unit;
  } Cases[] = {
      {"50%", 0, 1, 0.5f, suPercent},
      {"50%", 10, 20, 15.0f, suPercent},
      {"-50%", 0, 200, -100.0f, suPercent},
      {"150%", 0, 1, 1.5f, suPercent}, // no clamping
      {"%x", 0, 1, 3.0f, suPercent},   // the default, unscaled
      {"2in", 0, 1, 192.0f, suInches},
      {"7", 0, 1, 7.0f, suNone},
  };
  for (const auto &Case : Cases) {
    TSVGUnit Unit = suNone;
    EXPECT_FLOAT_EQ(ParsePercent(QString::fromUtf8(Case.Text), 3, Unit, SVGUnitFactors, Case.Min, Case.Max),
                    Case.Expected)
        << Case.Text;
    EXPECT_EQ(Unit, Case.Unit) << Case.Text;
  }
  TSVGUnit Unit = suNone;
  EXPECT_FLOAT_EQ(ParsePercent(QStringLiteral("25%"), 3, Unit, SVGUnitFactors), 0.25f);
  bool IsInherited = false;
  EXPECT_EQ(ParsePercent(QStringLiteral("inherit"), 3, IsInherited, Unit, SVGUnitFactors, 0, 1), 3.0f);
  EXPECT_TRUE(IsInherited);
}

TEST(Numbers, ParseIntoLengthObjects)
{
  TSVGLength Length(1, false, suInches);
  ParseLength(QStringLiteral("xmm"), &Length);
  EXPECT_EQ(Length.Unit(), suMillimeters);
  EXPECT_FLOAT_EQ(Length.GetPixels(), 96.0f) << "a failed number keeps the converted size";

  ParsePercent(QStringLiteral("50%"), &Length, 0, 1);
  EXPECT_EQ(Length.Raw(), 0.5f);
  EXPECT_EQ(Length.Unit(), suPercent);
  EXPECT_TRUE(Length.IsPercent());

  ParsePercent(QStringLiteral("  "), &Length, 0, 1);
  EXPECT_EQ(Length.Raw(), 0.5f) << "blank text changes nothing";

  ParseLength(QStringLiteral("-Infinity"), &Length);
  EXPECT_EQ(Length.Raw(), -100000000.0f);
  EXPECT_FALSE(Length.IsPercent());

  bool IsInherited = false;
  ParsePercent(QStringLiteral("inherit"), &Length, IsInherited, 0, 1);
  EXPECT_TRUE(IsInherited);
  EXPECT_EQ(Length.Raw(), -100000000.0f);

  const IXMLNode Root = LoadRoot(R"(<svg x="3cm"/>)");
  ParsePercent(Root, QStringLiteral("x"), &Length, 0, 1);
  EXPECT_EQ(Length.Raw(), 3.0f);
  EXPECT_EQ(Length.Unit(), suCentimeters);
  ParsePercent(Root, QStringLiteral("y"), &Length, 0, 1);
  EXPECT_EQ(Length.Raw(), 3.0f) << "an absent attribute leaves the object";
  TSVGUnit Unit = suPicas;
  EXPECT_EQ(ParseLength(Root, QStringLiteral("y"), 6, Unit, SVGUnitFactors), 6.0f);
  EXPECT_EQ(Unit, suPicas);
}

TEST(Numbers, ParseLengthsReusesShrinksAndGrowsTheList)
{
  TSVGLengths Lengths;
  ParseLengths(QStringLiteral("1 2mm 50%"), &Lengths, 0, 1);
  ASSERT_EQ(Lengths.Count(), 3);
  TSVGLength *const First = Lengths[0];
  EXPECT_EQ(Lengths[1]->Unit(), suMillimeters);
  EXPECT_EQ(Lengths[2]->Raw(), 0.5f);

  ParseLengths(QStringLiteral("4,5-6"), &Lengths, 0, 1);
  ASSERT_EQ(Lengths.Count(), 3);
  EXPECT_EQ(Lengths[0], First) << "items are reused";
  EXPECT_EQ(Lengths[0]->Raw(), 4.0f);
  EXPECT_EQ(Lengths[2]->Raw(), -6.0f);
  EXPECT_FALSE(Lengths[2]->IsPercent());

  ParseLengths(QStringLiteral("8"), &Lengths, 0, 1);
  ASSERT_EQ(Lengths.Count(), 1);
  EXPECT_EQ(Lengths[0]->Raw(), 8.0f);
  ParseLengths(QString(), &Lengths, 0, 1);
  EXPECT_EQ(Lengths.Count(), 0);
}

TEST(Numbers, ParseAngleInRadians)
{
  const double Pi = std::numbers::pi;
  const struct
  {
    const char *Text;
    float Expected;
    bool IsAuto;
  } Cases[] = {
      {"90", float(Pi / 2), false},
      {"100 grad", float(Pi / 2), false},
      {"100 GRAD", float(Pi / 2), false},
      {"1 rad", 1.0f, false},
      {"90 deg", float(Pi / 2), false},
      {"90 turns", float(Pi / 2), false}, // any other unit word means degrees
      {"90deg", 5.0f, false},             // the unit must stand apart
      {"auto", 5.0f, true},
      {"", 5.0f, true},                   // blank keeps IsAuto
  };
  for (const auto &Case : Cases) {
    bool IsAuto = true;
    EXPECT_FLOAT_EQ(ParseAngle(QString::fromUtf8(Case.Text), 5.0f, IsAuto), Case.Expected) << Case.Text;
    EXPECT_EQ(IsAuto, Case.IsAuto) << Case.Text;
  }
}

TEST(Numbers, PrintersWriteTheUnitButNeverPixels)
{
  const QString F = QStringLiteral("0.###");
  EXPECT_EQ(SVGNumberToString(1.5f, suPixels, F), QStringLiteral("1.5"));
  EXPECT_EQ(SVGNumberToString(1.5f, suNone, F), QStringLiteral("1.5"));
  EXPECT_EQ(SVGNumberToString(1.5f, suMillimeters, F), QStringLiteral("1.5mm"));
  EXPECT_EQ(SVGNumberToString(50, suPercent, F), QStringLiteral("50%"));
  EXPECT_EQ(SVGNumberToString(1.23456f, suFontSize, F), QStringLiteral("1.235em"));
  EXPECT_EQ(SVGNumbersToString({1, 2.5f, -3}, F, QStringLiteral(",")), QStringLiteral("1,2.5,-3"));
  EXPECT_EQ(SVGNumbersToString({}, F, QStringLiteral(",")), QString());
  EXPECT_EQ(SVGLengthToString(0.5f, true, suPercent, F, 0, 100), QStringLiteral("50%"));
  EXPECT_EQ(SVGLengthToString(0.5f, false, suPercent, F, 0, 100), QStringLiteral("0.5%"));
  EXPECT_FLOAT_EQ(PixelsToSVGUnit(192, suInches, SVGUnitFactors), 2.0f);
  EXPECT_FLOAT_EQ(PixelsToSVGUnit(0.5f, suPercent, SVGUnitFactors), 50.0f);
  EXPECT_FLOAT_EQ(PixelsToSVGUnit(3, suPixels, SVGUnitFactors), 3.0f);
}

TEST(Numbers, LengthTextRoundTrips)
{
  // Attributes read percentages against 0..1 and print them against 0..100.
  const char *Texts[] = {"10mm", "2.5in", "50%", "-3", "0.125em", "12pt", "1.5ex", "7pc", "0.001cm"};
  for (const char *Text : Texts) {
    TSVGLength Length;
    ParsePercent(QString::fromUtf8(Text), &Length, 0, 1);
    EXPECT_EQ(SVGLengthToString(Length, QStringLiteral("0.###"), 0, 100), QString::fromUtf8(Text)) << Text;
  }
  // A list prints every item against 0..1, so a percentage shows its stored fraction.
  TSVGLengths Lengths;
  ParseLengths(QStringLiteral("10mm 50% 3"), &Lengths, 0, 1);
  EXPECT_EQ(SVGLengthsToString(Lengths, QStringLiteral("0.###"), 0, 100, QStringLiteral(" ")),
            QStringLiteral("10mm 0.5% 3"));
}
