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

  QImage RenderIn(bool Standard, const QString &Body)
  {
    TSVGOptions Options = DefaultSVGOptions;
    if (Standard)
      Options.Include(soStandardSVG);
    Document.SetOptions(Options);
    Load(Body);
    return Render();
  }
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
