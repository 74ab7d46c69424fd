#include "values/VXSVGLookups.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>

using namespace vx;

namespace {

std::uint32_t Bits(float Value)
{
  return std::bit_cast<std::uint32_t>(Value);
}

} // namespace

TEST(Vocabulary, LookupsAreExactAndAnswerZeroForUnknownWords)
{
  EXPECT_EQ(GetSVGElementType(QStringLiteral("rect")), etRectangle);
  EXPECT_EQ(GetSVGElementType(QStringLiteral("Rect")), etNone);
  EXPECT_EQ(GetSVGElementType(QString()), etNone) << "the search starts behind the empty entry";
  EXPECT_EQ(GetSVGElementType(QStringLiteral("linearGradient")), etLinearGradient);
  EXPECT_EQ(GetSVGElementType(QStringLiteral(" rect")), etNone) << "no trimming";
  EXPECT_EQ(GetSVGStyleProperty(QString()), ipNone);
  EXPECT_EQ(GetSVGStyleProperty(QStringLiteral("stroke-dashoffset")), ipStrokeDashOffset);
  EXPECT_EQ(GetSVGStyleProperty(QStringLiteral("writing-mode")), ipWritingMode);
  EXPECT_EQ(GetSVGAlign(QStringLiteral("none")), saNone);
  EXPECT_EQ(GetSVGAlign(QStringLiteral("bogus")), saNone);
  EXPECT_EQ(GetSVGAlign(QStringLiteral("xMaxYMax")), saXMaxYMax);
  EXPECT_EQ(GetSVGAlignmentBaseline(QStringLiteral("mathematical")), abNone);
  EXPECT_EQ(GetSVGAlignmentBaseline(QStringLiteral("mathematica")), abMathematical);
  EXPECT_EQ(GetSVGDominantBaseline(QStringLiteral("mathematical")), dbMathematical);
  EXPECT_EQ(GetSVGFontWeight(QStringLiteral("700")), fw700);
  EXPECT_EQ(GetSVGGradientUnit(QStringLiteral("userSpaceOnUse")), csuUserSpaceOnUse);
  EXPECT_EQ(GetSVGFeatureSupport(QStringLiteral("http://www.w3.org/TR/SVG11/feature#Gradient")), sfGradient);
  EXPECT_EQ(GetSVGFeatureSupport(QStringLiteral("Unknown")), sfUnknown);
}

TEST(Vocabulary, EveryNameTableReadsBackThroughItsLookup)
{
  for (int I = 1; I < SVGElementTypeCount; ++I)
    EXPECT_EQ(GetSVGElementType(SVGElementTypeNames[I]), I) << qPrintable(SVGElementTypeNames[I]);
  for (int I = 1; I < SVGStylePropertyCount; ++I)
    EXPECT_EQ(GetSVGStyleProperty(SVGStylePropertyNames[I]), I) << qPrintable(SVGStylePropertyNames[I]);
  for (int I = 1; I < int(SVGCursorNames.size()); ++I)
    EXPECT_EQ(GetSVGCursor(SVGCursorNames[I]), I);
}

TEST(Vocabulary, NumericTablesKeepTheirFloatBits)
{
  const std::uint32_t UnitBits[] = {0x3F800000, 0x3F800000, 0x3FAA9FBE, 0x417FEF9E, 0x4071EB85,
                                    0x42173333, 0x42C00000, 0x3F800000, 0x3F800000, 0x3F800000};
  for (int I = 0; I < SVGUnitCount; ++I)
    EXPECT_EQ(Bits(SVGUnitFactors[I]), UnitBits[I]) << I;
  const std::uint32_t SizeBits[] = {0x41400000, 0x40DE38E4, 0x41055555, 0x41200000,
                                    0x41400000, 0x41666666, 0x418A3D71, 0x41A5E354};
  for (int I = 0; I < 8; ++I)
    EXPECT_EQ(Bits(SVGFontSizes[I]), SizeBits[I]) << I;
  EXPECT_EQ(GetSVGFontAbsSize(12.0f), fabNone) << "index 0 also holds 12";
  EXPECT_EQ(GetSVGFontAbsSize(10.0f), fabSmall);
  EXPECT_EQ(GetSVGFontAbsSize(11.0f), fabNone);
}

TEST(Vocabulary, GlyphOrientationsSnapHalfToEven)
{
  struct Case { const char *Text; TSVGGlyphOrientationVertical Vertical; TSVGGlyphOrientationHorizontal Horizontal; };
  const Case Cases[] = {
    {"90", ov90Deg, oh90Deg}, {"90deg", ov90Deg, oh90Deg}, {"100DEG", ov90Deg, oh90Deg}, {"45", ov0Deg, oh0Deg},
    {"135", ov180Deg, oh180Deg}, {"225", ov180Deg, oh180Deg}, {"270", ov270Deg, oh270Deg}, {"360", ovNone, ohNone},
    {"-90", ovNone, ohNone}, {"auto", ovAuto, ohNone}, {"deg", ovNone, ohNone}, {"x", ovNone, ohNone}, {"1e30deg", ovNone, ohNone}, {"-1e30", ovNone, ohNone},
  };
  for (const Case &C : Cases) {
    EXPECT_EQ(GetSVGGlyphOrientationVertical(QString::fromLatin1(C.Text)), C.Vertical) << C.Text;
    EXPECT_EQ(GetSVGGlyphOrientationHorizontal(QString::fromLatin1(C.Text)), C.Horizontal) << C.Text;
  }
}

TEST(Vocabulary, FontsCursorsAndAnchors)
{
  EXPECT_EQ(GetSVGFontFamily(QStringLiteral("monospace")), QStringLiteral("Courier New"));
  EXPECT_EQ(GetSVGFontFamily(QStringLiteral("sans-serif")), QStringLiteral("Tahoma"));
  EXPECT_TRUE(GetSVGFontFamily(QStringLiteral("Arial")).isEmpty());
  EXPECT_EQ(GetSVGCursor(TCursor(-1)), scrNone);
  EXPECT_EQ(GetSVGCursor(TCursor(0)), scrAuto);
  EXPECT_EQ(GetSVGCursor(TCursor(-8)), scrNW_resize);
  EXPECT_EQ(GetSVGCursor(TCursor(-6)), scrNE_resize);
  EXPECT_EQ(GetSVGCursor(TCursor(-7)), scrN_resize);
  EXPECT_EQ(GetSVGCursor(TCursor(-9)), scrE_resize);
  EXPECT_EQ(GetSVGCursor(TCursor(-99)), scrNone);
  EXPECT_EQ(GetSVGTextAnchor(staCenter), taMiddle);
  EXPECT_EQ(GetSVGTextAnchor(staTrailing), taEnd);
  EXPECT_EQ(GetTextAlign(staCenter), 1);
  EXPECT_EQ(GetTextAlign(staLeading), 0);
  EXPECT_EQ(GetTextAlign(staTrailing), 2);
}

TEST(Vocabulary, ConstantSetsAndDefaults)
{
  EXPECT_FALSE(SVGAllElements.Contains(etNone));
  EXPECT_TRUE(SVGAllElements.Contains(etPattern));
  EXPECT_TRUE(SVGContainerElements.Contains(etSymbol));
  EXPECT_FALSE(SVGContainerElements.Contains(etUse));
  EXPECT_TRUE(SVGStructuralElements.Contains(etUse));
  EXPECT_TRUE(SVGPaintingStyleProperties.Contains(ipVectorEffect));
  EXPECT_FALSE(SVGPaintingStyleProperties.Contains(ipOpacity));
  EXPECT_EQ(DefaultSVGStylePropertyValues[ipFont], QStringLiteral("???"));
  EXPECT_EQ(DefaultSVGStylePropertyValues[ipStrokeMiterLimit], QStringLiteral("4"));
  EXPECT_TRUE(DefaultSVGStylePropertyValues[ipColor].isEmpty());
  EXPECT_EQ(DefaultSVGOptions, (TSVGOptions{soSkipUnknownXML, soUseLocaleForLanguage, soApplyClipping,
                                             soCompactExport, soExportUnknownXML,
                                             soExportOptimizedBinaryStyleProperties, soFMXRadialGradientPatch}));
  EXPECT_FALSE(SVGFeatureSupport[sfPattern]);
  EXPECT_FALSE(SVGFeatureSupport[sfText]);
  EXPECT_TRUE(SVGFeatureSupport[sfBasicText]);
  EXPECT_TRUE(SVGFeatureSupport[sfClip]);
  EXPECT_FALSE(SVGFeatureSupport[sfAnimationEventsAttribute]);
  EXPECT_EQ(SVGVisibility[false], QStringLiteral("hidden"));
}
