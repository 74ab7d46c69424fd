// Text laid out in both modes: the documented rules without the option, browser layout (shaping,
// fallback, bidi, baselines) with soStandardSVG. The fonts are the conformance suite's, added to
// fontconfig for this program.
#include "platform/textengine/VXTextEngine.h"
#include "support/PictureTest.h"
#include "text/VXSVGText.h"

#include <gtest/gtest.h>

#include <QDir>

using namespace vx;

namespace {

class StandardTextTest : public TPictureTest, public ::testing::WithParamInterface<bool>
{
protected:
  StandardTextTest() : TPictureTest(200) {}

  static void SetUpTestSuite() { FontsFound = TVXTextEngine::AddFontFolder(QStringLiteral(VXSVG_SUITE_FONTS)); }
  void SetUp() override
  {
    if (!FontsFound)
      GTEST_SKIP() << "the conformance suite's fonts are not at " VXSVG_SUITE_FONTS;
  }

  bool Standard() const { return GetParam(); }
  void LoadText(const QString &Body)
  {
    TSVGOptions Options = Document.GetOptions();
    if (Standard())
      Options.Include(soStandardSVG);
    Document.SetOptions(Options);
    Load(QStringLiteral("<g font-family='Noto Sans' font-size='40'>%1</g>").arg(Body));
  }
  TRectF Ink(const char *Id) { return Element<TSVGCustomText>(Id).GetShape()->GetBounds(); }

  static inline bool FontsFound = false;
};

// Widths of the outlines of two whole texts that differ only where the documented rules and the
// browsers' differ: kerning pairs, a blank measured as a hyphen, spacing, hidden spans.
struct TWidthCase
{
  const char *Name, *Text, *Other;
  bool DocumentedEqual, StandardEqual;
};

const TWidthCase WidthCases[] = {
  {"KerningPair", "<text id='a' x='10' y='100'>AVAVAV</text>",
   "<text id='a' x='10' y='100' style='font-kerning:none'>AVAVAV</text>", true, false},
  {"BlankAdvance", "<text id='a' x='10' y='100'>i i</text>", "<text id='a' x='10' y='100'>i-i</text>", true, false},
  // A percentage of spacing is of the viewport's width (200).
  {"PercentLetterSpacing", "<text id='a' x='10' y='100' letter-spacing='5%'>II</text>",
   "<text id='a' x='10' y='100' letter-spacing='10'>II</text>", false, true},
  {"PercentKerningKeepsPairs", "<text id='a' x='10' y='100' kerning='10%'>AVAVAV</text>",
   "<text id='a' x='10' y='100'>AVAVAV</text>", false, true},
  {"HiddenSpanTakesNoRoom", "<text id='a' x='10' y='100'>I<tspan display='none'>WW</tspan>I</text>",
   "<text id='a' x='10' y='100'>II</text>", false, true},
};

TEST_P(StandardTextTest, WidthsFollowTheShapedAdvances)
{
  for (const TWidthCase &Case : WidthCases) {
    LoadText(QString::fromUtf8(Case.Text));
    const float First = Element<TSVGCustomText>("a").GetBoundsRect().Width();
    LoadText(QString::fromUtf8(Case.Other));
    const float Second = Element<TSVGCustomText>("a").GetBoundsRect().Width();
    const bool Equal = std::abs(First - Second) < 0.01f;
    EXPECT_EQ(Equal, Standard() ? Case.StandardEqual : Case.DocumentedEqual) << Case.Name;
  }
}

TEST_P(StandardTextTest, BaselineSitsAtY)
{
  LoadText(QStringLiteral("<text id='a' x='10' y='100'>H</text>"));
  // The documented baseline sits half a unit above y.
  EXPECT_NEAR(Ink("a").Bottom, Standard() ? 100.0f : 99.5f, 0.05f);
}

TEST_P(StandardTextTest, AnchorsCentreTheChunkOnItsAdvances)
{
  LoadText(QStringLiteral("<text id='a' x='100' y='100' text-anchor='middle'>II<tspan id='b'>II</tspan></text>"));
  const float Middle = (Ink("a").Left + Ink("b").Right) / 2;
  if (Standard()) {
    EXPECT_NEAR(Middle, 100, 0.5f);
  }
  EXPECT_LT(Ink("a").Right, Ink("b").Left);
}

TEST_P(StandardTextTest, RightToLeftRunsRunRightToLeft)
{
  // The first Arabic letter stands right of the second; the documented pen always moves right.
  LoadText(QStringLiteral("<text x='20' y='100' font-family='Amiri'><tspan id='a'>\u0628</tspan>"
                          "<tspan id='b'>\u0627</tspan></text>"));
  EXPECT_EQ(Ink("a").Left > Ink("b").Left, Standard());
}

TEST_P(StandardTextTest, ArabicLettersJoin)
{
  LoadText(QStringLiteral("<text id='a' x='20' y='100' font-family='Amiri'>\u0628\u0628\u0628</text>"
                          "<text id='b' x='20' y='150' font-family='Amiri'>\u0628</text>"));
  // Joined medial forms are narrower than three isolated letters.
  EXPECT_EQ(Ink("a").Width() < 3 * Ink("b").Width() - 1, Standard());
}

TEST_P(StandardTextTest, BaselineShiftsAddUpThroughNestedSpans)
{
  LoadText(QStringLiteral("<text x='20' y='100'>H<tspan id='a' baseline-shift='10'>H"
                          "<tspan id='b' baseline-shift='10'>H</tspan></tspan></text>"));
  if (Standard()) {
    EXPECT_NEAR(Ink("a").Bottom, 90, 0.05f);
    EXPECT_NEAR(Ink("b").Bottom, 80, 0.05f);
  } else {
    EXPECT_NEAR(Ink("a").Bottom, Ink("b").Bottom, 0.05f);
  }
}

TEST_P(StandardTextTest, UnderlineRunsUnderTheWholeAdvance)
{
  LoadText(QStringLiteral("<text id='a' x='20' y='100' text-decoration='underline'>ii</text>"
                          "<text id='b' x='20' y='100'>ii</text>"));
  EXPECT_GT(Ink("a").Bottom, Ink("b").Bottom + 1);
  EXPECT_LT(Ink("a").Left, Ink("b").Left);
}

TEST_P(StandardTextTest, TextLengthStretchesTheSpacing)
{
  LoadText(QStringLiteral("<text id='a' x='20' y='100' textLength='150'>IIII</text>"));
  // The last glyph's own advance stays: the ink ends its side bearing short of the length.
  if (Standard()) {
    EXPECT_NEAR(Ink("a").Right, 170, 6);
  } else {
    EXPECT_LT(Ink("a").Right, 100);
  }
}

TEST_P(StandardTextTest, TextOnAPathFollowsIt)
{
  LoadText(QStringLiteral("<path id='p' d='M 20 100 L 180 100'/>"
                          "<text><textPath id='a' xlink:href='#p'>III</textPath></text>"));
  EXPECT_NEAR(Ink("a").Bottom, Standard() ? 100.0f : 99.5f, 0.6f);
  EXPECT_GT(Ink("a").Left, 20);
}

INSTANTIATE_TEST_SUITE_P(Modes, StandardTextTest, ::testing::Values(false, true),
                         [](const auto &Info) { return Info.param ? "Standard" : "Documented"; });

TEST(TextEngineTest, CharactersFallBackToAFontThatHasThem)
{
  if (!TVXTextEngine::AddFontFolder(QStringLiteral(VXSVG_SUITE_FONTS)))
    GTEST_SKIP() << "the conformance suite's fonts are missing";
  TVXFontQuery Query;
  Query.Families = {QStringLiteral("Noto Sans")};
  const TVXFontFacePtr Primary = TVXTextEngine::MatchFont(Query);
  ASSERT_TRUE(Primary->IsValid());
  EXPECT_EQ(Primary->Family(), QStringLiteral("Noto Sans"));
  EXPECT_FALSE(Primary->HasCharacter(U'\u65E5'));
  const TVXFontFacePtr Fallback = TVXTextEngine::FallbackFont(U'\u65E5', Query);
  ASSERT_TRUE(Fallback);
  EXPECT_TRUE(Fallback->HasCharacter(U'\u65E5'));
  // A character outside the 16-bit range is one glyph, not two halves.
  const QString Text = QString::fromUcs4(U"\U0001D400", 1);
  EXPECT_EQ(TVXTextEngine::Shape(Text, {{0, int(Text.size()), TVXTextEngine::FallbackFont(U'\U0001D400', Query),
                                         Query}})
              .size(),
            std::size_t(1));
}

} // namespace
