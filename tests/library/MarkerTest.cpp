#include "structure/VXSVGMarker.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>

#include <cmath>
#include <numbers>
#include <vector>

using namespace vx;

namespace {

// Markers drawn into a 40 by 40 document, one unit per pixel.
class Markers : public TPictureTest
{
protected:
  Markers() : TPictureTest(40) {}

  QString Hit(float X, float Y)
  {
    QImage Image(40, 40, QImage::Format_ARGB32_Premultiplied);
    TVXGPCanvas Canvas(&Image);
    const TSVGGraphicElement *Found = Document.ElementAtPos(Canvas, TPointF{X, Y}, TRectF{0, 0, 40, 40}, {});
    return Found ? Found->ID() : QString();
  }
  QByteArray Saved(bool Compact)
  {
    TSVGOptions Options = Document.GetOptions();
    if (Compact)
      Options.Include(soCompactExport);
    else
      Options.Exclude(soCompactExport);
    Document.SetOptions(Options);
    QBuffer Buffer;
    Buffer.open(QIODevice::WriteOnly);
    Document.SaveToStream(Buffer);
    return Buffer.data();
  }
};

// A red bar six units long along the marker's x axis, two wide, its left end on the vertex.
const char Arrow[] = "<marker id='m' markerUnits='userSpaceOnUse' overflow='visible' orient='auto'>"
                     "<rect x='0' y='-1' width='6' height='2' fill='red'/></marker>";
const char FixedArrow[] = "<marker id='m' markerUnits='userSpaceOnUse' overflow='visible' orient='45'>"
                          "<rect x='0' y='-1' width='6' height='2' fill='red'/></marker>";
// Two by two squares centred on their vertex: red at the start, blue in the middle, lime at the end.
const char Squares[] = "<marker id='s' markerUnits='userSpaceOnUse' refX='1' refY='1' markerWidth='2' "
                       "markerHeight='2'><rect width='2' height='2' fill='red'/></marker>"
                       "<marker id='i' markerUnits='userSpaceOnUse' refX='1' refY='1' markerWidth='2' "
                       "markerHeight='2'><rect width='2' height='2' fill='blue'/></marker>"
                       "<marker id='e' markerUnits='userSpaceOnUse' refX='1' refY='1' markerWidth='2' "
                       "markerHeight='2'><rect width='2' height='2' fill='lime'/></marker>";
const char AllThree[] = "fill='none' marker-start='url(#s)' marker-mid='url(#i)' marker-end='url(#e)'";
// A three by three red square whose corner is on the vertex, in the marker's own units.
const char Square[] = "<marker id='q' markerUnits='%1'><rect width='3' height='3' fill='red'/></marker>";

struct TProbe
{
  int X, Y;
  QRgb Expected;
};

struct TMarkerCase
{
  const char *Name;
  QString Body;
  std::vector<TProbe> Probes;
};

QString With(const char *Markers, const char *Shape)
{
  return QString::fromUtf8(Markers) + QString::fromUtf8(Shape);
}

QString Shape(const char *Format)
{
  return QString::fromUtf8(Format).arg(QString::fromUtf8(AllThree));
}

TEST_F(Markers, AreDrawnAtTheVerticesOfEveryShape)
{
  const TMarkerCase Cases[] = {
    {"a line turns its end marker along itself",
     With(Arrow, "<line x1='5' y1='5' x2='5' y2='25' stroke='black' marker-end='url(#m)'/>"),
     {{5, 28, Red}, {8, 25, NoColor}}},
    {"a line's start marker faces the line",
     With(Arrow, "<line x1='5' y1='25' x2='25' y2='25' marker-start='url(#m)'/>"), {{8, 25, Red}, {5, 28, NoColor}}},
    {"a fixed angle is drawn as angle 0",
     With(FixedArrow, "<line x1='5' y1='5' x2='5' y2='25' stroke='black' marker-end='url(#m)'/>"),
     {{8, 25, Red}, {5, 28, NoColor}}},
    {"a curve's ends face along their control points",
     With(Arrow, "<path d='M5,20 C5,5 35,5 35,20' fill='none' marker-start='url(#m)' marker-end='url(#m)'/>"),
     {{5, 16, Red}, {35, 23, Red}, {8, 20, NoColor}, {38, 20, NoColor}}},
    {"the join of two curves faces between its control points",
     With(Arrow, "<path d='M5,30 C5,10 15,10 20,10 C25,10 35,10 35,30' fill='none' marker-mid='url(#m)'/>"),
     {{23, 10, Red}, {20, 13, NoColor}}},
    {"a mid vertex turns by the bisector",
     With(Arrow, "<polyline points='5,25 20,25 20,10' fill='none' marker-mid='url(#m)'/>"),
     {{22, 22, Red}, {23, 25, NoColor}, {19, 22, NoColor}}},
    {"a polyline gets start, mid and end markers",
     With(Squares, Shape("<polyline points='5,5 20,5 35,5 35,20' %1/>").toUtf8().constData()),
     {{5, 5, Red}, {20, 5, Blue}, {35, 5, Blue}, {35, 20, Lime}}},
    {"a polygon gets them at its points, not at the closing one",
     With(Squares, Shape("<polygon points='5,5 20,5 35,5 35,20' %1/>").toUtf8().constData()),
     {{5, 5, Red}, {20, 5, Blue}, {35, 5, Blue}, {35, 20, Lime}}},
    {"a path gets them at its vertices",
     With(Squares, Shape("<path d='M5,5 H20 H35 V20' %1/>").toUtf8().constData()),
     {{5, 5, Red}, {20, 5, Blue}, {35, 5, Blue}, {35, 20, Lime}}},
    {"a line has no mid vertex",
     With(Squares, Shape("<line x1='5' y1='5' x2='35' y2='5' %1/>").toUtf8().constData()),
     {{5, 5, Red}, {35, 5, Lime}, {20, 5, NoColor}}},
    {"two points and only a mid marker draw nothing",
     With(Squares, "<polyline points='5,5 35,5' fill='none' marker-mid='url(#i)'/>"),
     {{5, 5, NoColor}, {35, 5, NoColor}}},
    {"equal first points take the direction of the next different one",
     With(Arrow, "<polyline points='5,5 5,5 5,25' fill='none' marker-start='url(#m)'/>"),
     {{5, 8, Red}, {8, 5, NoColor}}},
    {"all points equal give no start and no end marker",
     With(Arrow, "<polyline points='5,5 5,5 5,5' fill='none' marker-start='url(#m)' marker-end='url(#m)'/>"),
     {{7, 5, NoColor}, {5, 7, NoColor}}},
    {"a repeated neighbour leaves an automatic mid marker out",
     With(Arrow, "<polyline points='5,5 20,5 20,5 20,30' fill='none' marker-mid='url(#m)'/>"),
     {{23, 5, NoColor}, {20, 8, NoColor}}},
    {"the marker property sets all three",
     With(Squares, "<polyline points='5,5 20,5 35,5' fill='none' style='marker: url(#i)'/>"),
     {{5, 5, Blue}, {20, 5, Blue}, {35, 5, Blue}}},
    {"a marker reference to another kind of element is skipped",
     With(Squares, "<rect id='r' width='1' height='1' fill='none'/>"
                   "<polyline points='5,5 20,5 35,5' fill='none' marker-start='url(#r)' marker-end='url(#e)'/>"),
     {{5, 5, NoColor}, {35, 5, Lime}}},
  };
  for (const TMarkerCase &Case : Cases) {
    SCOPED_TRACE(Case.Name);
    Load(Case.Body);
    const QImage Image = Render();
    for (const TProbe &Probe : Case.Probes)
      EXPECT_EQ(Image.pixel(Probe.X, Probe.Y), Probe.Expected) << "at " << Probe.X << ", " << Probe.Y;
  }
}

// The placement browsers use (standard mode); StandardStrokeTest.cpp holds the documented one.
TEST_F(Markers, UnitsReferencePointAndViewBoxPlaceTheContentsInStandardMode)
{
  Document.SetOptions(Document.GetOptions() | soStandardSVG);
  const char *const Path = "<path d='M20,20 H30' stroke='none' stroke-width='2' marker-start='url(#q)'/>";
  const TMarkerCase Cases[] = {
    {"strokeWidth units scale the contents by the stroke",
     QString::fromUtf8(Square).arg(QStringLiteral("strokeWidth")) + QString::fromUtf8(Path),
     {{21, 21, Red}, {25, 25, Red}, {27, 27, NoColor}}},
    {"userSpaceOnUse units keep the contents as they are",
     QString::fromUtf8(Square).arg(QStringLiteral("userSpaceOnUse")) + QString::fromUtf8(Path),
     {{21, 21, Red}, {24, 24, NoColor}}},
    {"the reference point lands on the vertex",
     QStringLiteral("<marker id='q' markerUnits='userSpaceOnUse' refX='2' refY='2' markerWidth='4' markerHeight='4'>"
                    "<rect width='4' height='4' fill='red'/></marker>") +
       QString::fromUtf8(Path),
     {{18, 18, Red}, {21, 21, Red}, {23, 23, NoColor}, {17, 17, NoColor}}},
    {"the view box maps into the marker's width and height",
     QStringLiteral("<marker id='q' markerUnits='userSpaceOnUse' viewBox='0 0 10 10' markerWidth='4' "
                    "markerHeight='4'><rect width='10' height='10' fill='red'/></marker>") +
       QString::fromUtf8(Path),
     {{23, 23, Red}, {25, 25, NoColor}}},
    {"the reference point is in view box units",
     QStringLiteral("<marker id='q' markerUnits='userSpaceOnUse' viewBox='0 0 10 10' refX='5' refY='5' "
                    "markerWidth='4' markerHeight='4'><rect width='10' height='10' fill='red'/></marker>") +
       QString::fromUtf8(Path),
     {{18, 18, Red}, {21, 21, Red}, {23, 23, NoColor}}},
    {"contents beyond the viewport are clipped",
     QStringLiteral("<marker id='q' markerUnits='userSpaceOnUse' markerWidth='3' markerHeight='3'>"
                    "<rect x='-5' y='-5' width='20' height='20' fill='red'/></marker>") +
       QString::fromUtf8(Path),
     {{21, 21, Red}, {24, 24, NoColor}, {19, 19, NoColor}}},
    {"visible overflow is not clipped",
     QStringLiteral("<marker id='q' markerUnits='userSpaceOnUse' markerWidth='3' markerHeight='3' "
                    "overflow='visible'><rect x='-5' y='-5' width='20' height='20' fill='red'/></marker>") +
       QString::fromUtf8(Path),
     {{24, 24, Red}, {16, 16, Red}}},
    {"a marker without width draws nothing, whatever its overflow",
     QStringLiteral("<marker id='q' markerUnits='userSpaceOnUse' markerWidth='0' overflow='visible'>"
                    "<rect width='3' height='3' fill='red'/></marker>") +
       QString::fromUtf8(Path),
     {{21, 21, NoColor}}},
    {"a stroke width of 0 collapses the marker",
     QString::fromUtf8(Square).arg(QStringLiteral("strokeWidth")) +
       QStringLiteral("<path d='M20,20 H30' stroke='black' stroke-width='0' marker-start='url(#q)'/>"),
     {{21, 21, NoColor}}},
  };
  for (const TMarkerCase &Case : Cases) {
    SCOPED_TRACE(Case.Name);
    Load(Case.Body);
    const QImage Image = Render();
    for (const TProbe &Probe : Case.Probes)
      EXPECT_EQ(Image.pixel(Probe.X, Probe.Y), Probe.Expected) << "at " << Probe.X << ", " << Probe.Y;
  }
}

// The point is taken as the offset of the reference point: the turn is about its opposite.
TEST_F(Markers, AngleTransformationTurnsAboutTheOppositeOfItsPoint)
{
  const TMatrix M = TSVGMarker::CreateAngleTransformation(TPointF{10, 0}, float(std::numbers::pi / 2));
  const TPointF Centre = VXMatrixTransformPoint(TPointF{-10, 0}, M);
  const TPointF Turned = VXMatrixTransformPoint(TPointF{-9, 0}, M);
  EXPECT_NEAR(Centre.X, -10, 1e-5);
  EXPECT_NEAR(Centre.Y, 0, 1e-5);
  EXPECT_NEAR(Turned.X, -10, 1e-5);
  EXPECT_NEAR(Turned.Y, 1, 1e-5);
}

TEST_F(Markers, AreHitOnPolylinesAndPathsButNotOnLines)
{
  const char *const Marker = "<marker id='q' markerUnits='userSpaceOnUse' refX='2' refY='2' markerWidth='4' "
                             "markerHeight='4'><rect id='inside' width='4' height='4'/></marker>";
  Load(QString::fromUtf8(Marker) + QStringLiteral("<polyline id='p' points='5,5 15,5' stroke='black' "
                                                  "marker-start='url(#q)'/>"));
  EXPECT_EQ(Hit(4, 6.5f), QStringLiteral("p"));
  EXPECT_EQ(Hit(10, 10), QString());
  Load(QString::fromUtf8(Marker) + QStringLiteral("<path id='p' d='M5,5 H15' stroke='black' marker-end='url(#q)'/>"));
  EXPECT_EQ(Hit(16, 6.5f), QStringLiteral("p"));
  EXPECT_EQ(Hit(4, 6.5f), QString());
  Load(QString::fromUtf8(Marker) + QStringLiteral("<line id='l' x1='5' y1='5' x2='15' y2='5' stroke='black' "
                                                  "marker-start='url(#q)'/>"));
  EXPECT_EQ(Hit(4, 6.5f), QString());
}

TEST_F(Markers, MarkersThatDrawThemselvesEnd)
{
  const char *const Cases[] = {
    "<marker id='a' overflow='visible'><path d='M0,0 H5' stroke='black' marker-start='url(#a)'/></marker>",
    "<marker id='a' overflow='visible'><path d='M0,0 H5' stroke='black' marker-start='url(#b)'/></marker>"
    "<marker id='b' overflow='visible'><path d='M0,0 V5' stroke='black' marker-end='url(#a)'/></marker>",
  };
  for (const char *Markers : Cases) {
    SCOPED_TRACE(Markers);
    Load(QString::fromUtf8(Markers) + QStringLiteral("<path id='p' d='M5,5 H30' stroke='black' marker-start='url(#a)'/>"
                                                     "<rect x='35' y='35' width='5' height='5' fill='red'/>"));
    QElapsedTimer Timer;
    Timer.start();
    EXPECT_EQ(Render().pixel(37, 37), Red);
    EXPECT_EQ(Hit(5, 7), QString());
    EXPECT_LT(Timer.elapsed(), 2000);
  }
}

TEST_F(Markers, SaveAndLoadKeepTheMarker)
{
  Load(QStringLiteral("<marker id='m' refX='1' refY='2' markerWidth='5' markerHeight='6' viewBox='0 0 10 12' "
                      "markerUnits='userSpaceOnUse' orient='auto'><rect width='2' height='2'/></marker>"
                      "<marker id='f' orient='45'/>"
                      "<path d='M5,5 H30' stroke='black' marker-end='url(#m)'/>"));
  const QImage Before = Render();
  const QByteArray Text = Saved(false);
  TSVGDocument Reloaded;
  Reloaded.LoadFromText(QString::fromUtf8(Text));
  auto *Marker = dynamic_cast<TSVGMarker *>(Reloaded.AllItems().Elements(QStringLiteral("m")));
  ASSERT_NE(Marker, nullptr) << Text.constData();
  EXPECT_FLOAT_EQ(Marker->RefX().GetValue(), 1);
  EXPECT_FLOAT_EQ(Marker->RefY().GetValue(), 2);
  EXPECT_FLOAT_EQ(Marker->MarkerWidth().GetValue(), 5);
  EXPECT_FLOAT_EQ(Marker->MarkerHeight().GetValue(), 6);
  EXPECT_EQ(Marker->Units(), muUserSpaceOnUse);
  EXPECT_TRUE(Marker->AutomaticOrientation());
  EXPECT_TRUE(Marker->IsViewBoxSpecified());
  auto *Fixed = dynamic_cast<TSVGMarker *>(Reloaded.AllItems().Elements(QStringLiteral("f")));
  ASSERT_NE(Fixed, nullptr);
  EXPECT_NE(Fixed->Orientation(), 0.0f);
  EXPECT_TRUE(Text.contains("markerUnits=\"strokeWidth\"")) << "the default unit is written too";

  QImage After(40, 40, QImage::Format_ARGB32_Premultiplied);
  After.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&After);
    Reloaded.Draw(Canvas, TRectF{0, 0, 40, 40});
  }
  EXPECT_EQ(After, Before);
  // A compact save loses the fixed angle, which is never drawn anyway, and every length of 0: a
  // size of 0 comes back as the default.
  Element<TSVGMarker>("m").MarkerWidth().SetValue(0);
  const QByteArray Compact = Saved(true);
  EXPECT_FALSE(Compact.contains("orient=\"0.")) << Compact.constData();
  TSVGDocument Again;
  Again.LoadFromText(QString::fromUtf8(Compact));
  auto *Collapsed = dynamic_cast<TSVGMarker *>(Again.AllItems().Elements(QStringLiteral("m")));
  ASSERT_NE(Collapsed, nullptr);
  EXPECT_EQ(Collapsed->MarkerWidth().GetValue(), 3);
}

TEST_F(Markers, CopiesTakeEveryProperty)
{
  Load(QStringLiteral("<marker id='m' refX='1' refY='2' markerWidth='5' markerHeight='6' "
                      "markerUnits='userSpaceOnUse' orient='auto'/>"));
  std::unique_ptr<TSVGElement> Copy(Element<TSVGMarker>("m").Clone(&Document));
  const auto &Marker = dynamic_cast<const TSVGMarker &>(*Copy);
  EXPECT_FLOAT_EQ(Marker.RefY().GetValue(), 2);
  EXPECT_FLOAT_EQ(Marker.MarkerHeight().GetValue(), 6);
  EXPECT_EQ(Marker.Units(), muUserSpaceOnUse);
  EXPECT_TRUE(Marker.AutomaticOrientation());
  Copy->Clear();
  EXPECT_FLOAT_EQ(Marker.MarkerWidth().GetValue(), 3);
  EXPECT_EQ(Marker.Units(), muStrokeWidth);
}

} // namespace
