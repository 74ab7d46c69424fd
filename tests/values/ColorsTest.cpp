#include "platform/rtl/VXExceptions.h"
#include "values/VXSVGColors.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

constexpr TVXGPColor Default = 0x12345678;
constexpr TVXGPColor Current = 0xFF0000AA;

TVXGPColor Parse(const QString &S)
{
  bool IsNone = false;
  bool IsInherited = false;
  return ParseColor(S, Default, IsNone, IsInherited, Current);
}

} // namespace

TEST(Colors, ParseColorForms)
{
  const struct
  {
    const char *Text;
    TVXGPColor Expected;
  } Cases[] = {
      {"#f00", 0xFFFF0000},
      {"#FF0000", 0xFFFF0000},
      {"# f 0 0", 0xFFFF0000},          // blanks and punctuation inside are dropped
      {" #0a0B0c ", 0xFF0A0B0C},
      {"#80112233", 0x80112233},        // eight digits carry their own alpha
      {"#12345", 0x0FF12345},           // five digits are read as they stand
      {"rgb(255, 0, 0)", 0xFFFF0000},
      {"RGB(100%,0%,0%)", 0xFFFF0000},
      {"rgb(50%,0,0)", 0xFF7F0000},     // 127.5 is cut, not rounded
      {"rgb(300,0,0)", 0xFF2C0000},     // no clamping: 300 wraps to 44
      {"rgb(-1,256,0)", 0xFFFF0000},
      {"rgb(0,0,-10%)", 0xFF0000E7},    // -25.5 cuts to -25, which wraps to 231
      {"rgb(1,2)", 0xFF010200},         // a missing component is 0
      {"rgb(1,2,3,4)", 0xFF010203},     // extra components are dropped
      {"red", 0xFFFF0000},
      {"ReD", 0xFFFF0000},
      {"lightGoldenrodYellow", 0xFFFAFAD2},
      {"currentColor", Current},
      {"CurrentColor", Default},        // the keyword is exact
      {"bogus", Default},
      {"rgba(1,2,3,0.5)", Default},
      {"hsl(0,100%,50%)", Default},
      {"url(#g)", Default},
      {"rgb(1,2,3", Default},
      {"", Default},
      {"none", Default},
      {"inherit", Default},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(Parse(QString::fromUtf8(Case.Text)), Case.Expected) << Case.Text;
}

TEST(Colors, MalformedNumbersRaiseConversionErrors)
{
  const char *Texts[] = {"#ggg", "#12x456", "rgb(a,0,0)", "rgb(1.5,0,0)", "rgb(x%,0,0)", "rgb()",
                         "#0123456789abcdef0", "rgb(1,2,3,z)"};
  for (const char *Text : Texts)
    EXPECT_THROW(Parse(QString::fromUtf8(Text)), EConvertError) << Text;
}

TEST(Colors, FlagsFollowTheWords)
{
  const struct
  {
    const char *Text;
    bool NoneBefore, InheritedBefore;
    bool NoneAfter, InheritedAfter;
  } Cases[] = {
      {"none", false, false, true, false},
      {"", true, true, true, true},        // empty text keeps everything
      {"inherit", true, false, true, true},
      {"red", true, true, false, false},   // a real colour clears both
      {"bogus", true, false, false, false},
      {"currentColor", true, false, true, false},
      {"  ", true, false, false, false},   // blank but not empty goes on to the name lookup
      {"  ", true, true, true, true},      // ...unless it keeps an inherited state
  };
  for (const auto &Case : Cases) {
    bool IsNone = Case.NoneBefore;
    bool IsInherited = Case.InheritedBefore;
    ParseColor(QString::fromUtf8(Case.Text), Default, IsNone, IsInherited, Current);
    EXPECT_EQ(IsNone, Case.NoneAfter) << '"' << Case.Text << '"';
    EXPECT_EQ(IsInherited, Case.InheritedAfter) << '"' << Case.Text << '"';
  }
}

TEST(Colors, PrintingUsesNamesAndDropsAlpha)
{
  const struct
  {
    TVXGPColor Color;
    const char *Text;
  } Cases[] = {
      {0, "#000000"},
      {0xFF000000, "black"},
      {0xFFFF0000, "red"},
      {0xFF00FFFF, "aqua"}, // the first of two names with the same value
      {0xFF123456, "#123456"},
      {0x80112233, "#112233"},
      {0x80FF0000, "#ff0000"},
  };
  for (const auto &Case : Cases)
    EXPECT_EQ(SVGColorToString(Case.Color), QString::fromUtf8(Case.Text)) << std::hex << Case.Color;
}

TEST(Colors, EveryOpaqueColourRoundTrips)
{
  const TVXGPColor Colors[] = {0xFF000000, 0xFFFFFFFF, 0xFF123456, 0xFFABCDEF, 0xFF00FFFF, 0xFF808080, 0xFFFAFAD2};
  for (TVXGPColor Color : Colors)
    EXPECT_EQ(Parse(SVGColorToString(Color)), Color) << std::hex << Color;
  // Every keyword reads, prints, and reads back as the same colour.
  const char *Names[] = {"aliceblue", "cyan", "darkgrey", "fuchsia", "magenta", "grey", "yellowgreen", "teal"};
  for (const char *Name : Names) {
    TVXGPColor Color = 0;
    ASSERT_TRUE(SVGColorNameToColor(QString::fromUtf8(Name), Color)) << Name;
    EXPECT_EQ(Parse(SVGColorToString(Color)), Color) << Name;
  }
  TVXGPColor Unused = 0;
  EXPECT_FALSE(SVGColorNameToColor(QStringLiteral("red "), Unused));
  EXPECT_FALSE(SVGColorNameToColor(QString(40, u'a'), Unused));
}

TEST(Colors, OpacityAndGrayscale)
{
  EXPECT_EQ(SetColorOpacity(0xFF112233, 0.5f), 0x80112233u) << "127.5 rounds to the even 128";
  EXPECT_EQ(SetColorOpacity(0x00112233, 1.0f), 0xFF112233u);
  EXPECT_EQ(SetColorOpacity(0xFF112233, 0.0f), 0x00112233u);
  EXPECT_EQ(SVGColorToGrayscale(0xFF808080), 0xFF808080u);
  EXPECT_EQ(SVGColorToGrayscale(0xFFFFFFFF), 0xFFFFFFFFu);
  EXPECT_EQ(SVGColorToGrayscale(0x80FF0000), 0x804C4C4Cu) << "red weighs 0.299, alpha stays";
  EXPECT_EQ(SVGColorToGrayscale(0x0000FF00), 0x00969696u);
}
