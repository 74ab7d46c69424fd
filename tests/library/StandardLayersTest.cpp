// Layers, viewports and images in both modes: the documented result without soStandardSVG, the
// browser's result with it, probed on small pictures.
#include "platform/vectorkit/VXGPLayer.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>

using namespace vx;

namespace {

class StandardLayers : public TPictureTest
{
protected:
  StandardLayers() : TPictureTest(40) {}
};

struct TOverlapCase
{
  const char *Name;
  const char *Body;
  // Two pixels that show the same colour when the element is composited as a whole.
  int X1, Y1, X2, Y2;
};

// Each picture has one translucent element whose painted parts overlap at (X2, Y2) only.
const TOverlapCase OverlapCases[] = {
    {"group", "<g opacity='0.5'><rect width='20' height='20' fill='red'/><rect x='10' width='20' height='20' "
              "fill='red'/></g>",
     5, 5, 15, 5},
    {"fill and stroke", "<rect x='5' y='5' width='20' height='20' fill='red' stroke='red' stroke-width='6' "
                        "opacity='0.5'/>",
     15, 15, 6, 15},
    {"use", "<defs><g id='t'><rect width='20' height='20' fill='red'/><rect x='10' width='20' height='20' "
            "fill='red'/></g></defs><use xlink:href='#t' opacity='0.5'/>",
     5, 5, 15, 5},
    {"nested svg", "<svg width='40' height='40' opacity='0.5'><rect width='20' height='20' fill='red'/>"
                   "<rect x='10' width='20' height='20' fill='red'/></svg>",
     5, 5, 15, 5},
};

TEST_F(StandardLayers, TranslucentElementsHideTheirOverlapsOnlyInStandardMode)
{
  for (const TOverlapCase &C : OverlapCases) {
    SCOPED_TRACE(C.Name);
    const QImage Documented = RenderIn(false, QString::fromUtf8(C.Body));
    EXPECT_LT(qAlpha(Documented.pixel(C.X1, C.Y1)), qAlpha(Documented.pixel(C.X2, C.Y2)));
    const QImage Standard = RenderIn(true, QString::fromUtf8(C.Body));
    EXPECT_EQ(Standard.pixel(C.X1, C.Y1), Standard.pixel(C.X2, C.Y2));
    EXPECT_NEAR(qAlpha(Standard.pixel(C.X1, C.Y1)), 128, 1);
  }
}

TEST_F(StandardLayers, OpacityOfNestedGroupsMultipliesOnce)
{
  const QString Body = QStringLiteral("<g opacity='0.5'><g opacity='0.5'><rect width='10' height='10' fill='red'/>"
                                      "</g></g>");
  EXPECT_NEAR(qAlpha(RenderIn(false, Body).pixel(5, 5)), 64, 1);
  EXPECT_NEAR(qAlpha(RenderIn(true, Body).pixel(5, 5)), 64, 1);
}

struct TBlendCase
{
  const char *Name;
  const char *Body;
  QRgb Documented, Standard;
};

// Lime under a blue square that blends at (15, 15); the square alone at (35, 35).
const TBlendCase BlendCases[] = {
    {"multiply", "<rect width='30' height='30' fill='lime'/><rect x='10' y='10' width='30' height='30' fill='blue' "
                 "style='mix-blend-mode:multiply'/>",
     Blue, 0xFF000000},
    {"screen", "<rect width='30' height='30' fill='lime'/><rect x='10' y='10' width='30' height='30' fill='blue' "
               "style='mix-blend-mode:screen'/>",
     Blue, 0xFF00FFFF},
    {"luminosity from a rule", "<style>.b{mix-blend-mode:luminosity}</style><rect width='30' height='30' "
                               "fill='lime'/><rect class='b' x='10' y='10' width='30' height='30' fill='blue'/>",
     Blue, 0xFF003000},
    {"an attribute is no declaration", "<rect width='30' height='30' fill='lime'/><rect x='10' y='10' width='30' "
                                       "height='30' fill='blue' mix-blend-mode='multiply'/>",
     Blue, Blue},
    {"an isolated group blends with nothing", "<rect width='30' height='30' fill='lime'/><g style='isolation:isolate'>"
                                              "<rect x='10' y='10' width='30' height='30' fill='blue' "
                                              "style='mix-blend-mode:multiply'/></g>",
     Blue, Blue},
};

TEST_F(StandardLayers, BlendModesOnlyInStandardMode)
{
  for (const TBlendCase &C : BlendCases) {
    SCOPED_TRACE(C.Name);
    const QString Body = QString::fromUtf8(C.Body);
    EXPECT_EQ(RenderIn(false, Body).pixel(15, 15), C.Documented);
    const QImage Standard = RenderIn(true, Body);
    const QRgb P = Standard.pixel(15, 15);
    EXPECT_NEAR(qRed(P), qRed(C.Standard), 2);
    EXPECT_NEAR(qGreen(P), qGreen(C.Standard), 2);
    EXPECT_NEAR(qBlue(P), qBlue(C.Standard), 2);
    EXPECT_EQ(Standard.pixel(35, 35), Blue);
  }
}

// The layer facility itself: the clip and the matrix of the canvas hold inside, states left open
// inside are closed by the layer, and a layer over the budget folds instead of allocating.
TEST(CanvasLayer, KeepsClipAndMatrixAndFoldsOverTheBudget)
{
  QImage Image(20, 20, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&Image);
    Canvas.IntersectClip(TRectF{0, 0, 10, 20});
    Canvas.SetMatrix(CreateTranslateVXMatrix(2, 0));
    Canvas.Brush().SetColor(0xFFFF0000);
    TVXGPLayer Layer(Canvas, 0.5f);
    ASSERT_TRUE(Layer.IsOffscreen());
    EXPECT_EQ(Layer.Pixels().width(), 10);
    Canvas.SaveState();
    Canvas.FillRect(TRectF{0, 0, 18, 10});
    Canvas.FillRect(TRectF{0, 0, 18, 10});
    Layer.Composite();
    EXPECT_EQ(Canvas.Painter()->worldTransform().dx(), 2);
  }
  EXPECT_EQ(Image.pixel(1, 5), NoColor);
  EXPECT_NEAR(qAlpha(Image.pixel(5, 5)), 128, 1);
  EXPECT_EQ(Image.pixel(15, 5), NoColor);

  // One byte a pixel, so the device is large but cheap; a layer over all of it would pass the budget.
  QImage Large(16384, 4200, QImage::Format_Alpha8);
  TVXGPCanvas Canvas(&Large);
  ASSERT_TRUE(Canvas.Painter()->isActive());
  TVXGPLayer Whole(Canvas, 0.5f);
  EXPECT_FALSE(Whole.IsOffscreen());
  EXPECT_DOUBLE_EQ(Canvas.Painter()->opacity(), 0.5);
  const TRectF Part{0, 0, 100, 100};
  TVXGPLayer Small(Canvas, 0.5f, true, &Part);
  EXPECT_TRUE(Small.IsOffscreen());
}

} // namespace

namespace {

struct TViewportCase
{
  const char *Name;
  const char *Body;
  // Probes: Inside shows red in standard mode, Outside shows nothing there.
  int InX, InY, OutX, OutY;
  QRgb DocumentedIn, DocumentedOut;
};

const TViewportCase ViewportCases[] = {
    {"a symbol is not drawn in place",
     "<symbol id='s'><rect width='10' height='10' fill='red'/></symbol><rect x='30' y='30' width='5' height='5' "
     "fill='red'/>",
     32, 32, 5, 5, Red, Red},
    {"use of a symbol maps its view box into the use's size",
     "<symbol id='s' viewBox='0 0 10 10'><rect width='10' height='10' fill='red'/></symbol>"
     "<use xlink:href='#s' x='20' y='20' width='20' height='20'/>",
     38, 38, 15, 15, Red, NoColor},
    {"nested svg at x and y, clipped to its size",
     "<svg x='10' y='10' width='10' height='10'><rect width='30' height='30' fill='red'/></svg>", 15, 15, 25, 25,
     Red, NoColor},
    {"use of an svg takes the use's size and clips to it",
     "<defs><svg id='s' viewBox='0 0 20 20'><rect width='30' height='30' fill='red'/></svg></defs>"
     "<use xlink:href='#s' width='10' height='10'/>",
     5, 5, 12, 12, Red, Red},
};

TEST_F(StandardLayers, ViewportsOfNestedSvgSymbolAndUse)
{
  for (const TViewportCase &C : ViewportCases) {
    SCOPED_TRACE(C.Name);
    const QString Body = QString::fromUtf8(C.Body);
    const QImage Documented = RenderIn(false, Body);
    EXPECT_EQ(Documented.pixel(C.InX, C.InY), C.DocumentedIn);
    EXPECT_EQ(Documented.pixel(C.OutX, C.OutY), C.DocumentedOut);
    const QImage Standard = RenderIn(true, Body);
    EXPECT_EQ(Standard.pixel(C.InX, C.InY), Red);
    EXPECT_EQ(Standard.pixel(C.OutX, C.OutY), NoColor);
  }
}

} // namespace

#include "support/Gzip.h"

#include <QBuffer>

namespace {

// A PNG of Width by Height whose left half is red and right half blue, as base 64.
QString PngBase64(int Width, int Height)
{
  QImage Picture(Width, Height, QImage::Format_ARGB32);
  Picture.fill(Qt::blue);
  for (int Y = 0; Y < Height; ++Y)
    for (int X = 0; X < Width / 2; ++X)
      Picture.setPixel(X, Y, Red);
  QByteArray Bytes;
  QBuffer Buffer(&Bytes);
  Buffer.open(QIODevice::WriteOnly);
  Picture.save(&Buffer, "PNG");
  return QString::fromLatin1(Bytes.toBase64());
}

// An SVG picture of 2 by 2 units, its left half red.
const QByteArray HalfRedSVG = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 2 2'>"
                              "<rect width='1' height='2' fill='red'/></svg>";

struct TImageCase
{
  const char *Name;
  QString Body;
  // Red in standard mode; (NoX, NoY) shows no red there.
  int RedX, RedY, NoX, NoY;
  bool DrawnWhenDocumented;
};

TEST_F(StandardLayers, ImagesAsBrowsersPlaceThem)
{
  const QString Svg = QString::fromLatin1(HalfRedSVG.toBase64());
  const QString Svgz = QString::fromLatin1(test::Gzip(HalfRedSVG).toBase64());
  const TImageCase Cases[] = {
      {"an svg picture is drawn as vectors, sharp at the target size",
       QStringLiteral("<image width='40' height='40' xlink:href='data:image/svg+xml;base64,%1'/>").arg(Svg), 19, 20,
       20, 20, true},
      {"a raster without width and height takes its own size",
       QStringLiteral("<image xlink:href='data:image/png;base64,%1'/>").arg(PngBase64(8, 4)), 3, 1, 3, 6, false},
      {"a data URI without a media type is recognised by its content",
       QStringLiteral("<image width='40' height='40' xlink:href='data:;base64,%1'/>").arg(PngBase64(2, 2)), 5, 5, 35,
       5, false},
      {"svgz", QStringLiteral("<image width='40' height='40' xlink:href='data:image/svg+xml;base64,%1'/>").arg(Svgz),
       5, 5, 35, 5, false},
  };
  for (const TImageCase &C : Cases) {
    SCOPED_TRACE(C.Name);
    const QImage Standard = RenderIn(true, C.Body);
    EXPECT_EQ(Standard.pixel(C.RedX, C.RedY), Red);
    EXPECT_NE(Standard.pixel(C.NoX, C.NoY), Red);
    const QImage Documented = RenderIn(false, C.Body);
    EXPECT_EQ(qRed(Documented.pixel(C.RedX, C.RedY)) > 0, C.DrawnWhenDocumented);
  }
}

TEST_F(StandardLayers, ImageRenderingOptimizeSpeedScalesWithoutSmoothing)
{
  const QString Body = QStringLiteral("<image width='40' height='20' %1 xlink:href='data:image/png;base64,%2'/>");
  const QImage Sharp = RenderIn(true, Body.arg(QStringLiteral("image-rendering='optimizeSpeed'"), PngBase64(2, 1)));
  EXPECT_EQ(Sharp.pixel(18, 10), Red);
  EXPECT_EQ(Sharp.pixel(21, 10), Blue);
  const QImage Smooth = RenderIn(true, Body.arg(QString(), PngBase64(2, 1)));
  EXPECT_NE(Smooth.pixel(18, 10), Red);
}

} // namespace
