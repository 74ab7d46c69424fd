#include "platform/rtl/VXExceptions.h"
#include "platform/rtl/VXSet.h"
#include "platform/rtl/VXSysUtils.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>

using namespace vx;

TEST(NumberText, TryStrToFloatAcceptsTheNumberGrammar)
{
  struct Case { const char *Text; bool Ok; float Value; };
  const Case Cases[] = {
    {"1", true, 1}, {" 2.5 ", true, 2.5f}, {"-3", true, -3}, {"+4", true, 4}, {".5", true, 0.5f},
    {"5.", true, 5}, {"1e3", true, 1000}, {"1E-2", true, 0.01f}, {"-1.5e+2", true, -150},
    {"\t7\n", true, 7}, {"1e-60", true, 0},
    {"", false, 0}, {" ", false, 0}, {".", false, 0}, {"e5", false, 0}, {"1e", false, 0},
    {"1.2.3", false, 0}, {"10px", false, 0}, {"50%", false, 0}, {"1,5", false, 0}, {"--1", false, 0},
    {"1e39", false, 0}, {"Infinity", false, 0}, {"NaN", false, 0}, {"0x10", false, 0}, {"1 2", false, 0},
  };
  for (const Case &C : Cases) {
    float Value = -99;
    EXPECT_EQ(TryStrToFloat(QString::fromLatin1(C.Text), Value), C.Ok) << C.Text;
    EXPECT_FLOAT_EQ(Value, C.Ok ? C.Value : -99.0f) << C.Text << " (output left alone on failure)";
  }
  EXPECT_THROW(StrToFloat(QStringLiteral("abc")), EConvertError);
}

TEST(NumberText, FormatFloatPatterns)
{
  struct Case { const char *Pattern; double Value; const char *Text; };
  const Case Cases[] = {
    {"0.###", 1.0, "1"}, {"0.###", 1.5, "1.5"}, {"0.###", 1.23456, "1.235"}, {"0.###", -0.0001, "0"},
    {"0.###", 0.0005, "0.001"}, {"0.###", -2.25, "-2.25"}, {"0.##", 3.14159, "3.14"},
    {"0.##", 100, "100"}, {"0.00", 1.5, "1.50"}, {"0", 2.5, "3"}, {"0.###", 123456789.0, "123456789"},
  };
  for (const Case &C : Cases)
    EXPECT_EQ(FormatFloat(QString::fromLatin1(C.Pattern), C.Value), QString::fromLatin1(C.Text))
        << C.Pattern << " " << C.Value;
}

TEST(NumberText, FloatToStrShowsFifteenDigitsOfTheValue)
{
  EXPECT_EQ(FloatToStr(double(0.1f)), QStringLiteral("0.100000001490116"));
  EXPECT_EQ(FloatToStr(0.1), QStringLiteral("0.1"));
  EXPECT_EQ(FloatToStr(1), QStringLiteral("1"));
  EXPECT_EQ(FloatToStr(-12.5), QStringLiteral("-12.5"));
  EXPECT_EQ(FloatToStr(0), QStringLiteral("0"));
  EXPECT_EQ(FloatToStr(100000), QStringLiteral("100000"));
  EXPECT_EQ(FloatToStr(0.00001), QStringLiteral("0.00001"));
  EXPECT_EQ(FloatToStr(0.000001), QStringLiteral("1E-6"));
  EXPECT_EQ(FloatToStr(1.5e-10), QStringLiteral("1.5E-10"));
  EXPECT_EQ(FloatToStr(1e15), QStringLiteral("1E15"));
  EXPECT_EQ(FloatToStr(123456789012345.0), QStringLiteral("123456789012345"));
}

TEST(NumberText, IntegersAndFormat)
{
  int Value = 0;
  EXPECT_TRUE(TryStrToInt(QStringLiteral(" -42 "), Value));
  EXPECT_EQ(Value, -42);
  EXPECT_FALSE(TryStrToInt(QStringLiteral("4.2"), Value));
  EXPECT_FALSE(TryStrToInt(QStringLiteral("99999999999"), Value));
  EXPECT_THROW(StrToInt(QStringLiteral("x")), EConvertError);
  EXPECT_EQ(StrToIntDef(QStringLiteral("x"), 7), 7);
  EXPECT_EQ(Format(QStringLiteral("Unknown SVG element <%s> in document: %s"), {QStringLiteral("foo"), QStringLiteral("a.svg")}),
            QStringLiteral("Unknown SVG element <foo> in document: a.svg"));
  EXPECT_EQ(Format(QStringLiteral("Invalid scaling values: %f and %f"), {1.0, 2.5}),
            QStringLiteral("Invalid scaling values: 1.00 and 2.50"));
  EXPECT_EQ(Format(QStringLiteral("%d%%"), {50LL}), QStringLiteral("50%"));
  EXPECT_THROW(Format(QStringLiteral("%s %s"), {QStringLiteral("one")}), EConvertError);
}

TEST(Strings, TrimAndAsciiCase)
{
  EXPECT_EQ(Trim(QString::fromUtf8("\x01 \tabc\r\n\x1f")), QStringLiteral("abc"));
  EXPECT_EQ(Trim(QString::fromUtf8("\xC2\xA0x")), QString::fromUtf8("\xC2\xA0x")) << "only codes <= 32 go";
  EXPECT_TRUE(SameText(QStringLiteral("RGB("), QStringLiteral("rgb(")));
  EXPECT_FALSE(SameText(QString::fromUtf8("\xC3\xA9"), QString::fromUtf8("\xC3\x89"))) << "ASCII only";
  EXPECT_TRUE(StartsText(QStringLiteral("url(#"), QStringLiteral("URL(#a)")));
  EXPECT_TRUE(EndsText(QStringLiteral("DEG"), QStringLiteral("90deg")));
  EXPECT_LT(CompareText(QStringLiteral("abc"), QStringLiteral("ABD")), 0);
}

namespace {
enum TColorKind : std::uint8_t { ckRed, ckGreen, ckBlue, ckLast = 63 };
}

TEST(Sets, MembershipAndArithmetic)
{
  TSet<TColorKind> S{ckRed, ckLast};
  EXPECT_TRUE(S.Contains(ckLast));
  EXPECT_FALSE(S.Contains(ckGreen));
  S.Include(ckGreen);
  S.Exclude(ckRed);
  EXPECT_EQ(S, (TSet<TColorKind>{ckGreen, ckLast}));
  EXPECT_TRUE((S | ckBlue).ContainsAll(S));
  EXPECT_TRUE((S - S).Empty());
}
