// Paints: gradients laid out over what is filled, stretched stops, radial focus, tiled bitmaps, images.
#include "PixelProbe.h"

#include "platform/vectorkit/VXGPBitmap.h"

#include <QBuffer>
#include <gtest/gtest.h>

#include <memory>

namespace vx {
namespace {

using namespace test;

void GradientBrush(TVXGPCanvas &C, TVXGPGradientStyle Style, std::initializer_list<TVXGPGradientPoint> Points)
{
  C.Brush().SetKind(bkGradient);
  TVXGPGradient &G = C.Brush().GetGradient();
  G.SetStyle(Style);
  G.Points().Clear();
  for (const TVXGPGradientPoint &P : Points)
    G.Points().Add(P.Offset, P.Color);
}

TEST(LinearGradient, PositionsAreFractionsOfWhatIsFilled)
{
  const QImage Image = Render(100, 20, [](TVXGPCanvas &C) {
    C.TrySmoothingMode(2);
    GradientBrush(C, gsLinear, {{0, Red}, {1, Blue}});
    C.FillPath(RectPath(0, 0, 20, 10));
    C.FillPath(RectPath(40, 0, 100, 10));
    // Start and End are fractions too: a vertical gradient.
    C.Brush().GetGradient().End().SetPoint({0, 1});
    C.FillPath(RectPath(0, 10, 100, 20));
  });
  for (int Left : {0, 40}) {
    const int Width = Left == 0 ? 20 : 60;
    EXPECT_GT(RedOf(Image, Left, 5), 230) << Left;
    EXPECT_GT(BlueOf(Image, Left + Width - 1, 5), 230) << Left;
    EXPECT_NEAR(RedOf(Image, Left + Width / 2, 5), 128, 16) << Left;
  }
  EXPECT_GT(RedOf(Image, 50, 10), 200);
  EXPECT_GT(BlueOf(Image, 50, 19), 200);
}

TEST(LinearGradient, StopsBeyondOneStretchTheGradient)
{
  const QImage Image = Render(40, 10, [](TVXGPCanvas &C) {
    // Offsets 0 and 2: the end of the box is only half-way from red to blue.
    GradientBrush(C, gsLinear, {{0, Red}, {2, Blue}});
    C.FillPath(RectPath(0, 0, 40, 10));
  });
  EXPECT_GT(RedOf(Image, 0, 5), 240);
  EXPECT_NEAR(RedOf(Image, 39, 5), 128, 12);
  EXPECT_NEAR(BlueOf(Image, 39, 5), 128, 12);
  EXPECT_NEAR(RedOf(Image, 20, 5), 192, 12);
}

TEST(LinearGradient, HardStepAtEqualOffsets)
{
  const QImage Image = Render(40, 10, [](TVXGPCanvas &C) {
    GradientBrush(C, gsLinear, {{0, Red}, {0.5f, Red}, {0.5f, Blue}, {1, Blue}});
    C.FillPath(RectPath(0, 0, 40, 10));
  });
  EXPECT_GT(RedOf(Image, 18, 5), 240);
  EXPECT_GT(BlueOf(Image, 21, 5), 240);
}

TEST(LinearGradient, NoPointsPaintNothingAndOnePointIsSolid)
{
  const QImage Image = Render(20, 10, [](TVXGPCanvas &C) {
    GradientBrush(C, gsLinear, {});
    C.FillPath(RectPath(0, 0, 10, 10));
    GradientBrush(C, gsLinear, {{0.3f, Green}});
    C.FillPath(RectPath(10, 0, 20, 10));
  });
  EXPECT_EQ(Alpha(Image, 5, 5), 0);
  EXPECT_EQ(Image.pixelColor(15, 5), QColor(0, 255, 0));
}

TEST(RadialGradient, OffsetZeroIsTheOuterEdge)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    GradientBrush(C, gsRadial, {{0, Blue}, {1, Red}});
    C.FillPath(RectPath(0, 0, 40, 40));
  });
  EXPECT_GT(RedOf(Image, 20, 20), 230);
  EXPECT_GT(BlueOf(Image, 20, 1), 230);
  EXPECT_GT(BlueOf(Image, 1, 1), 240);  // beyond the radius the outer colour pads
  EXPECT_NEAR(RedOf(Image, 20, 10), 128, 20);
}

TEST(RadialGradient, ScaleIsRadiiInHalfSizesAndFocusMoves)
{
  const QImage Image = Render(80, 40, [](TVXGPCanvas &C) {
    GradientBrush(C, gsRadial, {{0, Blue}, {1, Red}});
    // A wide box: radii (0.5 x 80 / 2, 1 x 40 / 2), a circle of 20 around (40, 20); the focus
    // 0.2 of the width left of the centre, at (24, 20).
    C.Brush().GetGradient().RadialTransform().Scale().SetPoint({0.5f, 1});
    C.Brush().GetGradient().RadialTransform().FocalOffset().SetPoint({-0.2f, 0});
    C.FillPath(RectPath(0, 0, 80, 40));
  });
  EXPECT_GT(RedOf(Image, 24, 20), 200);
  EXPECT_GT(BlueOf(Image, 65, 20), 240);
  EXPECT_GT(RedOf(Image, 35, 20), RedOf(Image, 45, 20) + 30);
}

TEST(RadialGradient, OffsetsBelowZeroStretchTheRadius)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    // Offset -1 lies as far beyond the outer edge as the focus lies inside it.
    GradientBrush(C, gsRadial, {{-1, Blue}, {1, Red}});
    C.FillPath(RectPath(0, 0, 40, 40));
  });
  EXPECT_GT(RedOf(Image, 20, 20), 240);
  EXPECT_NEAR(RedOf(Image, 20, 0), 128, 16);
}

TEST(BitmapBrush, TilesFromTheCanvasOrigin)
{
  auto Tile = std::make_shared<TVXGPBitmap>(4, 4);
  Tile->GetCanvas().Brush().SetColor(Red);
  Tile->GetCanvas().FillRect({0, 0, 2, 4});
  Tile->GetCanvas().Brush().SetColor(Blue);
  Tile->GetCanvas().FillRect({2, 0, 4, 4});
  const QImage Image = Render(16, 8, [&](TVXGPCanvas &C) {
    C.Brush().SetBitmap(Tile);
    C.Brush().SetKind(bkBitmap);
    C.FillPath(RectPath(0, 0, 16, 4));
    C.FillPath(RectPath(1, 4, 16, 8));
  });
  for (int X : {1, 5, 13})
    EXPECT_EQ(Image.pixelColor(X, 1), QColor(255, 0, 0)) << X;
  for (int X : {2, 7, 14})
    EXPECT_EQ(Image.pixelColor(X, 1), QColor(0, 0, 255)) << X;
  EXPECT_EQ(Image.pixelColor(2, 5), QColor(0, 0, 255));
}

TEST(PenPaint, GradientStrokeIsLaidOutOverThePath)
{
  const QImage Image = Render(40, 10, [](TVXGPCanvas &C) {
    SolidPen(C, Green, 4);
    C.Pen().SetKind(bkGradient);
    C.Pen().GetBrush().GetGradient().Points().Add(0, Red);
    C.Pen().GetBrush().GetGradient().Points().Add(1, Blue);
    C.DrawLine({0, 5}, {40, 5});
  });
  EXPECT_GT(RedOf(Image, 1, 5), 230);
  EXPECT_GT(BlueOf(Image, 38, 5), 230);
}

QImage Quadrants()
{
  QImage Q(2, 2, QImage::Format_ARGB32);
  Q.setPixelColor(0, 0, Qt::red);
  Q.setPixelColor(1, 0, Qt::green);
  Q.setPixelColor(0, 1, Qt::blue);
  Q.setPixelColor(1, 1, Qt::white);
  return Q;
}

TEST(DrawImage, SourceAndDestinationRectanglesAndAlpha)
{
  TVXGPBitmap Bitmap;
  Bitmap.SetImage(Quadrants());
  const QImage Image = Render(40, 20, [&](TVXGPCanvas &C) {
    C.DrawImage(Bitmap, {0, 0, 10, 10}, {1, 0, 2, 1}, 1, guPixel);
    C.DrawImage(Bitmap, {10, 0, 20, 10}, {1, 0, 2, 1}, 0.5f, guPixel);
    C.DrawImage(Bitmap, {20, 0, 40, 20}, 1);
  });
  EXPECT_EQ(Image.pixelColor(5, 5), QColor(0, 255, 0));
  EXPECT_NEAR(Alpha(Image, 15, 5), 128, 2);
  EXPECT_EQ(Image.pixelColor(21, 1), QColor(255, 0, 0));
  EXPECT_EQ(Image.pixelColor(38, 18), QColor(255, 255, 255));
}

TEST(DrawImage, HighQualityInterpolationAveragesWhenShrinking)
{
  // One white pixel in every 4 x 4 block: shrunk four times, an area average is 1/16 white, while
  // point sampling (bilinear or nearest) falls between the white pixels and sees black.
  QImage Dots(40, 40, QImage::Format_ARGB32);
  for (int Y = 0; Y < 40; ++Y)
    for (int X = 0; X < 40; ++X)
      Dots.setPixelColor(X, Y, X % 4 == 0 && Y % 4 == 0 ? Qt::white : Qt::black);
  TVXGPBitmap Bitmap;
  Bitmap.SetImage(Dots);
  struct Case
  {
    int Mode;
    int Low, High;
  };
  for (const Case &K : {Case{VXInterpolationModeHighQualityBicubic, 10, 22}, Case{VXInterpolationModeNearestNeighbor, 0, 0},
                        Case{0, 0, 0}}) {
    const QImage Image = Render(10, 10, [&](TVXGPCanvas &C) {
      C.SetInterpolationMode(K.Mode);
      C.DrawImage(Bitmap, {0, 0, 10, 10}, 1);
    });
    EXPECT_GE(RedOf(Image, 5, 5), K.Low) << K.Mode;
    EXPECT_LE(RedOf(Image, 5, 5), K.High) << K.Mode;
  }
}

TEST(Bitmap, RefusesAbsurdSizesWithAClearException)
{
  TVXGPBitmap Bitmap;
  EXPECT_THROW(Bitmap.SetSize(VXMaxBitmapSide + 1, 1), EInvalidGraphicOperation);
  EXPECT_THROW(Bitmap.SetSize(1, -1), EInvalidGraphicOperation);
  EXPECT_THROW(Bitmap.SetSize(VXMaxBitmapSide, VXMaxBitmapSide), EInvalidGraphicOperation);
  try {
    TVXGPBitmap Huge(20000, 20000);
    FAIL();
  } catch (const EInvalidGraphicOperation &E) {
    EXPECT_TRUE(E.Message().contains(QStringLiteral("20000 x 20000")));
  }
  Bitmap.SetSize(0, 5);
  EXPECT_TRUE(Bitmap.IsEmpty());
  // An empty bitmap still has a canvas that can be drawn on.
  Bitmap.GetCanvas().Clear(Red);
}

TEST(Bitmap, PngRoundTripAndLoadFailures)
{
  TVXGPBitmap Bitmap(3, 2);
  Bitmap.GetCanvas().Clear(Blue);
  QBuffer Buffer;
  Buffer.open(QIODevice::ReadWrite);
  Bitmap.SaveToStream(Buffer);
  Buffer.seek(0);
  TVXGPBitmap Copy;
  Copy.LoadFromStream(Buffer);
  EXPECT_EQ(Copy.GetWidth(), 3);
  EXPECT_EQ(Copy.GetHeight(), 2);
  EXPECT_EQ(Copy.Image().pixelColor(2, 1), QColor(0, 0, 255));
  EXPECT_THROW(Copy.LoadFromFile(QStringLiteral("/nonexistent/picture.png")), EFOpenError);
  QBuffer Garbage;
  Garbage.setData("not an image");
  Garbage.open(QIODevice::ReadOnly);
  EXPECT_THROW(Copy.LoadFromStream(Garbage), EReadError);
  EXPECT_EQ(Copy.GetWidth(), 3);  // a failed load keeps the pixels
}

TEST(Bitmap, AssignCopiesPixelsAndEndsTheOldCanvas)
{
  TVXGPBitmap A(2, 2), B(5, 5);
  A.GetCanvas().Clear(Green);
  B.GetCanvas().Clear(Red);
  B.Assign(&A);
  EXPECT_EQ(B.GetWidth(), 2);
  B.GetCanvas().FillRect({0, 0, 1, 1});
  EXPECT_EQ(B.Image().pixelColor(0, 0), QColor(0, 0, 0));
  EXPECT_EQ(A.Image().pixelColor(0, 0), QColor(0, 255, 0));
}

} // namespace
} // namespace vx
