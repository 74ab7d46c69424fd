// Colours and paint in both modes: the classic reading (color starts transparent, currentColor is
// read where it is written, an unknown paint is black or fails the load) and the CSS one of
// soStandardSVG. Pixel probes at the centre of a 20 by 20 picture.
#include "support/PictureTest.h"
#include "values/VXSVGCSSValues.h"

#include <optional>

namespace vx {

namespace {

constexpr QRgb Black = 0xFF000000;

class StandardPaint : public TPictureTest
{
protected:
  // The centre pixel of Body drawn in one mode; nullopt when the load fails.
  std::optional<QRgb> Centre(bool Standard, const char *Body)
  {
    Document.SetOptions(Standard ? DefaultSVGOptions | TSVGOptions{soStandardSVG} : DefaultSVGOptions);
    try {
      Load(QString::fromUtf8(Body));
    } catch (const std::exception &) {
      return std::nullopt;
    }
    return Render().pixel(10, 10);
  }
};

} // namespace

TEST_F(StandardPaint, PaintsAsBrowsersDoOnlyInStandardMode)
{
  struct Case {
    const char *Body;
    std::optional<QRgb> Classic, Standard; // nullopt: the load fails
  };
  const Case Cases[] = {
      // The icon case: no color anywhere.
      {"<rect width='20' height='20' fill='currentColor'/>", NoColor, Black},
      {"<g fill='currentColor'><g color='lime'><rect width='20' height='20'/></g></g>", NoColor, Lime},
      {"<g color='lime'><rect width='20' height='20' fill='currentColor' color='inherit'/></g>", Lime, Lime},
      {"<rect width='20' height='20' fill='url(#missing) #00ff00'/>", Black, Lime},
      {"<rect width='20' height='20' fill='url(#missing)'/>", Black, NoColor},
      {"<rect id='r' width='20' height='20' fill='url(#r) none'/>", Black, NoColor},
      {"<rect width='20' height='20' fill='hsl(120, 100%, 50%)'/>", Black, Lime},
      {"<rect width='20' height='20' fill='rgb(0 255 0)'/>", std::nullopt, Lime},
      {"<rect width='20' height='20' fill='#0f0f'/>", NoColor, Lime},
      {"<rect width='20' height='20' fill='transparent'/>", Black, NoColor},
      {"<g fill='red'><rect width='20' height='20' fill='#qqq'/></g>", std::nullopt, Red},
      {"<rect width='20' height='20' fill='red' fill-opacity='0%'/>", Red, NoColor},
      {"<g visibility='hidden'><rect width='20' height='20' visibility='visible'/></g>", NoColor, Black},
      {"<g display='none'><rect width='20' height='20' display='inline'/></g>", NoColor, NoColor},
      {"<a><rect width='20' height='20' fill='lime'/></a>", NoColor, Lime},
      {"<defs><rect id='p' width='20' height='20' fill='context-fill'/></defs><use xlink:href='#p' fill='lime'/>",
       Black, Lime},
      {"<rect width='20' height='20' fill='context-fill'/>", Black, NoColor},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(C.Body);
    EXPECT_EQ(Centre(false, C.Body), C.Classic);
    EXPECT_EQ(Centre(true, C.Body), C.Standard);
  }
}

TEST(CSSValues, ReadsColoursAsCSSColor4)
{
  struct Case {
    const char *Text;
    std::optional<TVXGPColor> Color;
  };
  const Case Cases[] = {
      {"#0A0A", 0xAA00AA00},         {"#00800080", 0x80008000},  {"Green", 0xFF008000},
      {"rgb(0, 128, 0)", 0xFF008000}, {"rgb(0 128 0 / 0.5)", 0x80008000}, {"rgb(-10%, 50%, 120%)", 0xFF0080FF},
      {"rgba(0, 127, 0, 2)", 0xFF007F00}, {"rgb(0.8, 127.5, 14.2)", 0xFF01800E}, {"hsl(999, 100%, 25%)", 0xFF530080},
      {"hsla(120, 100%, 25%, 0.5)", 0x80008000}, {"transparent", 0x00000000},
      {"#", std::nullopt},            {"#qqq", std::nullopt},      {"rgba(0, 50%, 0, 0.5)", std::nullopt},
      {"rgba(0, 127, 0, 50%)", std::nullopt}, {"red icc-color(a, 0.1)", std::nullopt}, {"currentColor", std::nullopt},
  };
  for (const Case &C : Cases) {
    TVXGPColor Color = 0x12345678;
    EXPECT_EQ(TryParseCSSColor(QString::fromUtf8(C.Text), Color), C.Color.has_value()) << C.Text;
    if (C.Color)
      EXPECT_EQ(Color, *C.Color) << C.Text;
  }
}

TEST(CSSValues, ReadsPaintsOpacitiesAndOrigins)
{
  TSVGCSSPaint Paint;
  ASSERT_TRUE(TryParseCSSPaint(QStringLiteral("url('#g') currentColor"), Paint));
  EXPECT_TRUE(Paint.HasReference);
  EXPECT_EQ(Paint.URI, QStringLiteral("g"));
  EXPECT_EQ(Paint.Keyword, pkCurrentColor);
  ASSERT_TRUE(TryParseCSSPaint(QStringLiteral("url(other.svg#g)"), Paint));
  EXPECT_TRUE(Paint.URI.isEmpty());
  EXPECT_EQ(Paint.Keyword, pkAbsent);
  ASSERT_TRUE(TryParseCSSPaint(QStringLiteral("context-stroke"), Paint));
  EXPECT_EQ(Paint.Keyword, pkContextStroke);
  EXPECT_FALSE(TryParseCSSPaint(QStringLiteral("url(#g) context-fill"), Paint));
  EXPECT_FALSE(TryParseCSSPaint(QStringLiteral("url(#g"), Paint));

  float Opacity = 0;
  EXPECT_TRUE(TryParseCSSOpacity(QStringLiteral("50%"), Opacity));
  EXPECT_FLOAT_EQ(Opacity, 0.5f);
  EXPECT_TRUE(TryParseCSSOpacity(QStringLiteral("2"), Opacity));
  EXPECT_FLOAT_EQ(Opacity, 1.0f);
  EXPECT_FALSE(TryParseCSSOpacity(QStringLiteral("half"), Opacity));

  float X = 0, Y = 0;
  EXPECT_TRUE(TryParseTransformOrigin(QStringLiteral("bottom"), 200, 100, X, Y));
  EXPECT_EQ(std::make_pair(X, Y), std::make_pair(100.0f, 100.0f));
  EXPECT_TRUE(TryParseTransformOrigin(QStringLiteral("25% top"), 200, 100, X, Y));
  EXPECT_EQ(std::make_pair(X, Y), std::make_pair(50.0f, 0.0f));
  EXPECT_TRUE(TryParseTransformOrigin(QStringLiteral("top 5px"), 200, 100, X, Y));
  EXPECT_EQ(std::make_pair(X, Y), std::make_pair(5.0f, 0.0f));
  EXPECT_FALSE(TryParseTransformOrigin(QStringLiteral("middle"), 200, 100, X, Y));
}

} // namespace vx
