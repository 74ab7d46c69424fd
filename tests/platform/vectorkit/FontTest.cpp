// Fonts and text: design metrics, measurement, layout of FillText. Relations, not glyph pixels.
#include "PixelProbe.h"

#include <gtest/gtest.h>

namespace vx {
namespace {

using namespace test;

const QString DejaVu = QStringLiteral("DejaVu Sans");

TEST(Font, DesignMetricsAreWholeFontUnits)
{
  TVXGPFont Font;
  Font.SetName(DejaVu);
  EXPECT_EQ(Font.GetEmHeight(), 2048);
  EXPECT_GT(Font.GetCellAscent(), Font.GetCellDescent());
  EXPECT_GT(Font.GetCellDescent(), 0);
  EXPECT_LT(Font.GetCellAscent(), Font.GetEmHeight());
  // The size scales pixels, not the design metrics.
  const int Ascent = Font.GetCellAscent();
  Font.SetSize(100);
  EXPECT_EQ(Font.GetCellAscent(), Ascent);
}

TEST(Font, FamilyAvailabilityAndAssign)
{
  EXPECT_TRUE(TVXGPFont::IsFontFamilyAvailable(DejaVu));
  EXPECT_TRUE(TVXGPFont::IsFontFamilyAvailable(QStringLiteral("dejavu sans")));
  EXPECT_FALSE(TVXGPFont::IsFontFamilyAvailable(QStringLiteral("No Such Family")));

  TVXGPFont A, B;
  A.SetName(DejaVu);
  A.SetSize(17);
  A.SetStyle({fsBold, fsUnderline});
  A.GetBrush().SetColor(Red);
  int Changes = 0;
  B.OnChange = [&](TObject *) { ++Changes; };
  B.Assign(&A);
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(B.GetName(), DejaVu);
  EXPECT_EQ(B.GetSize(), 17);
  EXPECT_TRUE(B.GetStyle().Contains(fsUnderline));
  EXPECT_EQ(B.GetBrush().GetColor(), Red);
}

class TextCanvas : public testing::Test
{
protected:
  QImage Image{10, 10, QImage::Format_ARGB32_Premultiplied};
  TVXGPCanvas Canvas{&Image};

  void SetUp() override
  {
    Canvas.Font().SetName(DejaVu);
    Canvas.Font().SetSize(20);
  }
};

TEST_F(TextCanvas, WidthsCountBlanksAndScaleWithTheSize)
{
  const float W = Canvas.TextWidth(QStringLiteral("Hello"));
  EXPECT_GT(W, 40);
  EXPECT_LT(W, 80);
  EXPECT_GT(Canvas.TextWidth(QStringLiteral("Hello ")), W + 4);
  EXPECT_GT(Canvas.TextWidth(QStringLiteral(" ")), 0);
  EXPECT_EQ(Canvas.TextWidth(QString()), 0);
  Canvas.Font().SetSize(40);
  EXPECT_NEAR(Canvas.TextWidth(QStringLiteral("Hello")), 2 * W, 1e-3);
}

TEST_F(TextCanvas, TightWidthIsTheInk)
{
  const float Tight = Canvas.TextWidthTight(QStringLiteral("l"));
  EXPECT_GT(Tight, 0);
  EXPECT_LT(Tight, Canvas.TextWidth(QStringLiteral("l")));
  EXPECT_EQ(Canvas.TextWidthTight(QStringLiteral("   ")), 0);
  EXPECT_NEAR(Canvas.TextWidthTight(QStringLiteral("l ")), Tight, 1e-3);
}

TEST_F(TextCanvas, ExtentAndMeasureWithTheTypographicFormat)
{
  const TSizeF E = Canvas.TextExtentF(QStringLiteral("ab "));
  EXPECT_NEAR(E.cx, Canvas.TextWidth(QStringLiteral("ab ")), 1e-3);
  EXPECT_NEAR(E.cy, Canvas.Font().GetLineSpacing(), 1e-3);
  EXPECT_GT(E.cy, 20);

  const auto Format = TVXGPStringFormat::GenericTypographic();
  TRectF R{5, 7, 5, 7};
  Canvas.MeasureText(R, QStringLiteral("ab "), Format.get());
  // Trailing blanks count only with sfMeasureTrailingSpaces.
  EXPECT_NEAR(R.Width(), Canvas.TextWidth(QStringLiteral("ab")), 1e-3);
  EXPECT_NEAR(R.Height(), E.cy, 1e-3);
  EXPECT_EQ(R.Left, 5);
  Format->SetFlags(Format->GetFlags() | TVXGPStringFormatFlags(sfMeasureTrailingSpaces));
  R = {0, 0, 0, 0};
  Canvas.MeasureText(R, QStringLiteral("ab "), Format.get());
  EXPECT_NEAR(R.Width(), E.cx, 1e-3);
}

TEST_F(TextCanvas, MeasureWrapsAtBlanksInAWideEnoughRectangle)
{
  const float Word = Canvas.TextWidth(QStringLiteral("word"));
  TRectF R{0, 0, Word * 1.5f, 0};
  Canvas.MeasureText(R, QStringLiteral("word word word"), nullptr);
  EXPECT_NEAR(R.Height(), 3 * Canvas.Font().GetLineSpacing(), 1e-3);
  EXPECT_NEAR(R.Width(), Word, 1e-3);
}

QRect InkRect(const QImage &Image)
{
  QRect Ink;
  for (int Y = 0; Y < Image.height(); ++Y)
    for (int X = 0; X < Image.width(); ++X)
      if (Alpha(Image, X, Y) > 0)
        Ink |= QRect(X, Y, 1, 1);
  return Ink;
}

TEST(FillText, DrawsInTheFontBrushAlignedInTheRectangle)
{
  for (TVXGPStringAlignment Align : {saNear, saCenter, saFar}) {
    const QImage Image = Render(120, 40, [&](TVXGPCanvas &C) {
      C.Font().SetName(DejaVu);
      C.Font().SetSize(20);
      C.Font().GetBrush().SetColor(Blue);
      SolidBrush(C, Red);  // the canvas brush is not the text fill
      C.FillText({60, 5, 60, 5}, QStringLiteral("Hi"), false, 1, {sfNoClip}, Align, saNear);
    });
    const QRect Ink = InkRect(Image);
    ASSERT_FALSE(Ink.isNull());
    const int Centre = Ink.left() + Ink.width() / 2;
    if (Align == saNear)
      EXPECT_GE(Ink.left(), 60);
    else if (Align == saFar)
      EXPECT_LE(Ink.right(), 60);
    else
      EXPECT_NEAR(Centre, 60, 2);
    EXPECT_GE(Ink.top(), 5);
    EXPECT_GT(BlueOf(Image, Ink.center().x(), Ink.center().y()) + BlueOf(Image, Ink.left() + 2, Ink.center().y()), 0);
    EXPECT_EQ(RedOf(Image, Ink.left() + 2, Ink.center().y()), 0);
  }
}

TEST(FillText, BaselineOfTheLayoutRectangleAndClipping)
{
  // The rectangle of a run drawn at the origin: from -ascent to descent, so the baseline is y 30.
  const QImage Image = Render(120, 60, [](TVXGPCanvas &C) {
    C.Font().SetName(DejaVu);
    C.Font().SetSize(20);
    const float A = 20.0f * C.Font().GetCellAscent() / C.Font().GetEmHeight();
    const float D = 20.0f * C.Font().GetCellDescent() / C.Font().GetEmHeight();
    const auto Format = TVXGPStringFormat::GenericTypographic();
    C.SetMatrix(CreateTranslateVXMatrix(10, 30));
    C.FillText({0, -A, 100, D}, QStringLiteral("HHH"), Format.get(), 1);
    // Without sfNoClip the text is cut at the rectangle.
    Format->SetFlags({});
    C.SetMatrix(CreateTranslateVXMatrix(10, 55));
    C.FillText({0, -A, 8, D}, QStringLiteral("HHH"), Format.get(), 1);
  });
  QImage Top = Image.copy(0, 0, 120, 32);
  const QRect Ink = InkRect(Top);
  EXPECT_NEAR(Ink.bottom(), 29, 1);
  const QRect Clipped = InkRect(Image.copy(0, 35, 120, 25));
  EXPECT_LE(Clipped.right(), 18);
}

TEST(FillText, StyleDecorationsAddLines)
{
  auto InkHeight = [](TVXGPFontStyles Style) {
    const QImage Image = Render(100, 40, [&](TVXGPCanvas &C) {
      C.Font().SetName(DejaVu);
      C.Font().SetSize(20);
      C.Font().SetStyle(Style);
      C.FillText({0, 0, 0, 0}, QStringLiteral("ooo"), nullptr, 1);
    });
    return InkRect(Image);
  };
  const QRect Plain = InkHeight({});
  const QRect Underlined = InkHeight({fsUnderline});
  EXPECT_GT(Underlined.bottom(), Plain.bottom());
  EXPECT_EQ(InkHeight({fsStrikeOut}).bottom(), Plain.bottom());
}

} // namespace
} // namespace vx
