#include "shapes/VXSVGBasicShapes.h"
#include "structure/VXSVGGroups.h"
#include "support/PictureTest.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <QImage>

#include <memory>

using namespace vx;

namespace {

class Shapes : public TPictureTest
{
protected:
  QStringList Record(const QStringList &Names)
  {
    TRecordingCanvas Canvas(20, 20);
    Document.Draw(Canvas, TRectF{0, 0, 20, 20});
    return Canvas.Calls(Names);
  }
  static bool IsBlank(const QImage &Image)
  {
    for (int Y = 0; Y < Image.height(); ++Y)
      for (int X = 0; X < Image.width(); ++X)
        if (qAlpha(Image.pixel(X, Y)) != 0)
          return false;
    return true;
  }
};

// A rectangle whose cached path stays empty, so that drawing takes the direct road.
class TPathlessRectangle : public TSVGRectangle
{
public:
  using TSVGRectangle::TSVGRectangle;
  TVXGPPath *GetShape() override
  {
    FShape.Clear();
    return &FShape;
  }
};

struct TRadiiCase
{
  const char *Attributes;
  float RX, RY;
};

} // namespace

TEST_F(Shapes, CornerRadiiMirrorByPresenceAndAreCutSeparately)
{
  const TRadiiCase Cases[] = {
    {"width='10' height='10' rx='4'", 4, 4},
    {"width='10' height='10' ry='4'", 4, 4},
    {"width='10' height='10' rx='-3'", 0, 0},
    {"width='10' height='20' rx='8'", 5, 8},
    {"width='10' height='10' rx='8'", 5, 5},
    {"width='10' height='10'", 0, 0},
    {"width='10' height='10' rx='3' ry='2'", 3, 2},
    {"width='10' height='4' rx='3' ry='-1'", 3, 0},
    {"width='10' height='10' rx='' ry='2'", 0, 2},
  };
  for (const TRadiiCase &Case : Cases) {
    Load(QStringLiteral("<rect id='r' %1/>").arg(QString::fromUtf8(Case.Attributes)));
    auto &Rect = Element<TSVGRectangle>("r");
    EXPECT_FLOAT_EQ(Rect.RX().GetValue(), Case.RX) << Case.Attributes;
    EXPECT_FLOAT_EQ(Rect.RY().GetValue(), Case.RY) << Case.Attributes;
  }
}

TEST_F(Shapes, RadiusSettersClampTheirOwnRadiusOnly)
{
  Load(QStringLiteral("<rect id='r' width='10' height='6' rx='1' ry='1'/>"));
  auto &Rect = Element<TSVGRectangle>("r");
  Rect.SetRX(TSVGLength(9, false, suNone));
  EXPECT_FLOAT_EQ(Rect.RX().GetValue(), 5);
  EXPECT_FLOAT_EQ(Rect.RY().GetValue(), 1) << "setters do not mirror";
  Rect.SetRY(TSVGLength(-2, false, suNone));
  EXPECT_FLOAT_EQ(Rect.RY().GetValue(), 0);
  Rect.SetRY(TSVGLength(4, false, suNone));
  EXPECT_FLOAT_EQ(Rect.RY().GetValue(), 3);
}

TEST_F(Shapes, BoundsPerClass)
{
  Load(QStringLiteral("<circle id='circle' cy='6' r='2' x='100' width='100'/>"
                      "<ellipse id='ellipse' cx='10' cy='10' rx='4' ry='2'/>"
                      "<rect id='rect' x='1' y='2' width='3' height='4'/>"
                      "<line id='vertical' x1='5' y1='2' x2='5' y2='9'/>"
                      "<line id='backwards' x1='8' y1='3' x2='2' y2='3'/>"
                      "<line id='dot' x1='4' y1='4' x2='4' y2='4'/>"
                      "<polyline id='polyline' points='3,9 1,4 7,2'/>"
                      "<polyline id='empty'/>"
                      "<polygon id='polygon' points='-1,-2 4,5'/>"));
  const struct
  {
    const char *Id;
    TRectF Bounds;
  } Cases[] = {
    {"circle", {-2, 4, 2, 8}},       {"ellipse", {6, 8, 14, 12}},   {"rect", {1, 2, 4, 6}},
    {"vertical", {5, 2, 6, 9}},     {"backwards", {8, 3, 2, 4}},   {"dot", {4, 4, 5, 5}},
    {"polyline", {1, 2, 7, 9}},     {"empty", {0, 0, 0, 0}},       {"polygon", {-1, -2, 4, 5}},
  };
  for (const auto &Case : Cases) {
    const TRectF B = Element(Case.Id).GetBoundsRect();
    EXPECT_EQ(B, Case.Bounds) << Case.Id << ": " << B.Left << ' ' << B.Top << ' ' << B.Right << ' ' << B.Bottom;
  }
  EXPECT_FLOAT_EQ(Element("vertical").GetWidth(), 0) << "the widened bounds do not change the width";
  EXPECT_FLOAT_EQ(Element("vertical").GetHeight(), 7);
  EXPECT_FLOAT_EQ(Element("backwards").GetWidth(), 6);
}

TEST_F(Shapes, SizeSettersKeepEachShapeConsistent)
{
  Load(QStringLiteral("<circle id='c' cx='10' cy='10' r='2'/><line id='l' x1='2' y1='3' x2='4' y2='4'/>"));
  auto &Circle = Element("c");
  Circle.SetWidth(5);
  EXPECT_EQ(Circle.GetBoundsRect(), (TRectF{5, 5, 15, 15}));
  Circle.SetHeight(3);
  EXPECT_FLOAT_EQ(Circle.GetWidth(), 3);
  Document.FindElement<TSVGCircle>(QStringLiteral("c"))->SetRadius(TSVGLength(4, false, suNone));
  EXPECT_EQ(Circle.GetBoundsRect(), (TRectF{6, 6, 14, 14})) << "the named radius sets its copy too";

  auto &Line = Element("l");
  Line.SetWidth(10);
  Line.SetHeight(1);
  EXPECT_EQ(Line.GetBoundsRect(), (TRectF{2, 3, 12, 4})) << "the end point moves relative to the start";
}

TEST_F(Shapes, CachedShapeIsRebuiltAfterAChange)
{
  Load(QStringLiteral("<circle id='c' cx='10' cy='10' r='2'/><polygon id='p' points='0,0 4,0 4,4'/>"));
  auto &Circle = Element("c");
  TVXGPPath *Shape = Circle.GetShape();
  ASSERT_GT(Shape->Count(), 0);
  EXPECT_EQ(Shape->GetBounds(), (TRectF{8, 8, 12, 12}));
  Circle.SetWidth(4);
  EXPECT_EQ(Circle.GetShape(), Shape) << "one cached path per element";
  EXPECT_EQ(Shape->GetBounds(), (TRectF{6, 6, 14, 14}));

  auto &Polygon = Element<TSVGPolygon>("p");
  Polygon.SetPolygon(QStringLiteral("1,1 9,1 9,9 1,9"));
  EXPECT_EQ(Polygon.GetShape()->GetBounds(), (TRectF{1, 1, 9, 9}));
  EXPECT_EQ(Polygon.GetPolygon(), QStringLiteral("1,1 9,1 9,9 1,9"));
  EXPECT_THROW(Polygon.SetPolygon(QStringLiteral("1,1 x,2")), EConvertError);
  EXPECT_EQ(Polygon.Points().size(), 4u) << "a bad text keeps the points";
}

TEST_F(Shapes, EmptyGeometryHasNoShapeAndDrawsNothing)
{
  Load(QStringLiteral("<circle id='zero' cx='10' cy='10' r='0' stroke='blue'/>"
                      "<circle id='none' cx='10' cy='10' stroke='blue'/>"
                      "<ellipse id='flat' cx='10' cy='10' rx='5' stroke='blue'/>"
                      "<rect id='thin' x='2' y='2' width='0' height='10' stroke='blue'/>"
                      "<rect id='negative' x='2' y='2' width='-5' height='10'/>"
                      "<line id='dot' x1='4' y1='4' x2='4' y2='4' stroke='blue'/>"
                      "<polyline id='nopoints' stroke='blue'/>"));
  for (const char *Id : {"zero", "none", "flat", "dot", "nopoints"})
    EXPECT_EQ(Element(Id).GetShape()->Count(), 0) << Id;
  EXPECT_GT(Element("thin").GetShape()->Count(), 0) << "the rectangle path is made whatever the size";
  EXPECT_TRUE(Record({"FillPath", "DrawPath", "FillRect", "DrawRect", "DrawLine"}).isEmpty());
  EXPECT_TRUE(IsBlank(Render()));
}

TEST_F(Shapes, FillInsideStrokeOnTheOutline)
{
  Load(QStringLiteral("<rect x='4' y='4' width='12' height='12' fill='red' stroke='blue' stroke-width='2'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(10, 10), Red);
  EXPECT_EQ(Image.pixel(4, 10), Blue);
  EXPECT_EQ(Image.pixel(10, 15), Blue);
  EXPECT_EQ(Image.pixel(1, 1), NoColor);
  EXPECT_EQ(Image.pixel(18, 10), NoColor);
  const QStringList Names = Record({"FillPath", "DrawPath"});
  ASSERT_EQ(Names.size(), 2);
  EXPECT_TRUE(Names[0].startsWith(QStringLiteral("FillPath"))) << "fill before stroke";
}

TEST_F(Shapes, RoundedCornersLeaveTheCornerEmpty)
{
  Load(QStringLiteral("<rect x='0' y='0' width='20' height='20' rx='8' fill='red'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(0, 0), NoColor);
  EXPECT_EQ(Image.pixel(10, 0), Red);
  EXPECT_EQ(Image.pixel(10, 10), Red);
}

TEST_F(Shapes, TransformMovesTheShape)
{
  Load(QStringLiteral("<g transform='translate(10,0)'><rect x='0' y='0' width='5' height='5' fill='red'/></g>"
                      "<circle cx='0' cy='0' r='3' fill='blue' transform='translate(5,15) scale(2)'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(12, 2), Red);
  EXPECT_EQ(Image.pixel(2, 2), NoColor);
  EXPECT_EQ(Image.pixel(5, 15), Blue);
  EXPECT_EQ(Image.pixel(9, 15), Blue) << "the radius is scaled too";
  EXPECT_EQ(Image.pixel(12, 15), NoColor);
}

TEST_F(Shapes, PolygonIsClosedPolylineIsLeftOpen)
{
  // A stroke only: the closing edge from (18,18) back to (2,2) passes the centre.
  const QString Points = QStringLiteral("points='2,2 18,2 18,18' fill='none' stroke='blue' stroke-width='2'");
  Load(QStringLiteral("<polygon %1/>").arg(Points));
  EXPECT_EQ(Render().pixel(10, 10), Blue);
  Load(QStringLiteral("<polyline %1/>").arg(Points));
  EXPECT_EQ(Render().pixel(10, 10), NoColor);
  EXPECT_EQ(Render().pixel(10, 2), Blue);

  Load(QStringLiteral("<polyline points='2,2 18,2 18,18' fill='red'/>"));
  EXPECT_EQ(Render().pixel(15, 5), Red) << "an open polyline still fills its area";
}

TEST_F(Shapes, FillRuleEvenOddLeavesTheHole)
{
  const QString Rings = QStringLiteral("points='2,2 18,2 18,18 2,18 2,2 6,6 14,6 14,14 6,14 6,6'");
  Load(QStringLiteral("<polygon %1 fill='red' fill-rule='evenodd'/>").arg(Rings));
  QImage Image = Render();
  EXPECT_EQ(Image.pixel(10, 10), NoColor);
  EXPECT_EQ(Image.pixel(4, 10), Red);
  Load(QStringLiteral("<polygon %1 fill='red'/>").arg(Rings));
  EXPECT_EQ(Render().pixel(10, 10), Red) << "non-zero fills the inner ring of the same direction";
}

TEST_F(Shapes, OpacitiesMultiplyDownTheTree)
{
  Load(QStringLiteral("<g opacity='0.5'><rect x='0' y='0' width='20' height='20' fill='blue' fill-opacity='0.5'"
                      " stroke='red' stroke-opacity='0.8'/></g>"));
  const QImage Image = Render();
  EXPECT_NEAR(qAlpha(Image.pixel(10, 10)), 64, 2);
  EXPECT_EQ(qBlue(qUnpremultiply(Image.pixel(10, 10))), 255);
  const QStringList Calls = Record({"FillPath", "DrawPath"});
  ASSERT_EQ(Calls.size(), 2);
  EXPECT_TRUE(Calls[0].contains(QStringLiteral("opacity=0.25"))) << Calls[0].toStdString();
  EXPECT_TRUE(Calls[1].contains(QStringLiteral("opacity=0.4"))) << Calls[1].toStdString();
}

TEST_F(Shapes, LinesAreStrokedNeverFilled)
{
  Load(QStringLiteral("<line x1='10' y1='2' x2='10' y2='18' stroke='blue' stroke-width='2' fill='red'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(10, 10), Blue);
  EXPECT_EQ(Image.pixel(9, 10), Blue);
  EXPECT_EQ(Image.pixel(12, 10), NoColor);
  EXPECT_EQ(Image.pixel(10, 19), NoColor);
}

TEST_F(Shapes, OnlyDescriptiveChildren)
{
  Load(QStringLiteral("<circle id='c' r='2'><title>dot</title><desc>a small dot</desc></circle>"));
  EXPECT_EQ(Element("c").Title(), QStringLiteral("dot"));
  Load(QStringLiteral("<rect id='r'><circle r='2'/></rect>"));
  EXPECT_EQ(Element("r").Count(), 0) << "a shape inside a shape is passed over";
}

TEST_F(Shapes, ClearAndCopiesCarryTheOwnFields)
{
  Load(QStringLiteral("<rect id='r' width='10' height='10' rx='3'/><polyline id='p' points='1,2 3,4'/>"));
  auto &Rect = Element<TSVGRectangle>("r");
  const std::unique_ptr<TSVGElement> RectCopy(Rect.Clone(nullptr));
  EXPECT_FLOAT_EQ(dynamic_cast<TSVGRectangle &>(*RectCopy).RY().GetValue(), 3);
  Rect.Clear();
  EXPECT_FLOAT_EQ(Rect.RX().GetValue(), 0);
  EXPECT_FLOAT_EQ(Rect.GetWidth(), 0);

  auto &Polyline = Element<TSVGPolyline>("p");
  const std::unique_ptr<TSVGElement> Copy(Polyline.Clone(nullptr));
  Polyline.Clear();
  EXPECT_TRUE(Polyline.Points().empty());
  EXPECT_EQ(Polyline.GetShape()->Count(), 0);
  auto &Kept = dynamic_cast<TSVGPolyline &>(*Copy);
  EXPECT_EQ(Kept.Points(), (TVXPoints{{1, 2}, {3, 4}})) << "the copy has points of its own";
  EXPECT_EQ(Kept.GetClass().Name, QStringLiteral("TSVGPolyline"));
}

TEST_F(Shapes, PolylinePathsAreClosedOnRequest)
{
  Load(QStringLiteral("<polyline id='p' points='1,1 5,1 5,5'/>"));
  auto &Polyline = Element<TSVGPolyline>("p");
  const std::unique_ptr<TVXPathData> Open = Polyline.CreatePath(false);
  const std::unique_ptr<TVXPathData> Closed = Polyline.CreatePath(true);
  ASSERT_EQ(Open->GetCount(), 3);
  EXPECT_EQ(Open->GetPoint(0).Kind, ppMove);
  EXPECT_EQ(Open->GetPoint(2).Kind, ppLine);
  ASSERT_EQ(Closed->GetCount(), 4);
  EXPECT_EQ(Closed->GetPoint(3).Kind, ppClose);
}

TEST_F(Shapes, RectangleWithoutCachedPathDrawsThroughTheCanvasMatrix)
{
  TPathlessRectangle Rect(nullptr);
  Rect.SetBoundsRect(TRectF{1, 2, 5, 8});
  Rect.SetRX(TSVGLength(1, false, suNone));
  TSVGPen Pen;
  Pen.SetKind(bkSolid);
  Rect.SetPen(Pen);
  TRecordingCanvas Canvas(20, 20);
  Rect.Draw(CreateScaleVXMatrix(2, 2), Canvas, TRectF{0, 0, 20, 20});
  const QStringList Calls = Canvas.Calls({"SetPen", "SetMatrix", "FillRect", "DrawRect"});
  ASSERT_EQ(Calls.size(), 6) << Calls.join(QLatin1Char('\n')).toStdString();
  EXPECT_TRUE(Calls[0].startsWith(QStringLiteral("SetPen"))) << "the frame's pen";
  EXPECT_TRUE(Calls[1].startsWith(QStringLiteral("SetPen"))) << "a scaling stroke is set before the matrix";
  EXPECT_EQ(Calls[2], QStringLiteral("SetMatrix(2,0,0,2,0,0)"));
  EXPECT_EQ(Calls[3], QStringLiteral("FillRect(1,2,5,8 r=1,0 corners=15 opacity=1 type=0)"));
  EXPECT_TRUE(Calls[4].startsWith(QStringLiteral("DrawRect(1,2,5,8 r=1,0")));
  EXPECT_EQ(Calls[5], QStringLiteral("SetMatrix(1,0,0,1,0,0)")) << "the canvas matrix is put back";
  EXPECT_EQ(qAlpha(Canvas.Image().pixel(6, 10)), 255) << "the fill lands under the scaled matrix";
}

TEST_F(Shapes, DirectPointsDrawFillsOnlyWithABrush)
{
  Load(QStringLiteral("<polygon id='p' points='1,1 9,1 9,9' fill='none' stroke='blue'/>"));
  auto &Polygon = Element<TSVGPolygon>("p");
  TRecordingCanvas Canvas(20, 20);
  Polygon.DrawPoints(CreateTranslateVXMatrix(10, 0), Canvas, TRectF{0, 0, 20, 20}, true);
  const QStringList Calls = Canvas.Calls({"FillPath", "DrawPath"});
  ASSERT_EQ(Calls.size(), 1);
  EXPECT_TRUE(Calls[0].contains(QStringLiteral("bounds=11,1,19,9"))) << Calls[0].toStdString();
}

TEST_F(Shapes, MalformedGeometryLoadsOrFailsCleanly)
{
  const char *Bodies[] = {
    "<circle r='abc' cx='1e39'/>",
    "<circle r='-5' fill='red'/>",
    "<ellipse rx='50%' ry='-1'/>",
    "<rect width='1e30' height='1e30' rx='1e30' fill='red'/>",
    "<rect width='10' height='10' rx='50%'/>",
    "<line x1='Infinity' y1='0' x2='-Infinity' y2='0' stroke='blue'/>",
    "<polyline points='1'/>",
    "<polygon points='1,2,3' fill='red'/>",
    "<polygon points='1,x'/>",
  };
  for (const char *Body : Bodies) {
    try {
      Load(QString::fromUtf8(Body));
    } catch (const Exception &) {
      continue;
    }
    EXPECT_NO_THROW(Render()) << Body;
  }
}
