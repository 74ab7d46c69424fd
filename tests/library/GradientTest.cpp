#include "platform/vectorkit/VXGPCanvas.h"
#include "structure/VXSVGGradients.h"
#include "tree/VXSVG.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QImage>

#include <vector>

using namespace vx;

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;
constexpr QRgb Purple = 0xFF800080; // half way between red and blue
constexpr QRgb Lime = 0xFF00FF00;
constexpr QRgb Clear = 0x00000000;

const char *const RedToBlue = "<stop offset='0' stop-color='red'/><stop offset='1' stop-color='blue'/>";

QString Svg(const QString &Body, int Size = 40)
{
  return QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                        "width='%1' height='%1' viewBox='0 0 %1 %1'>%2</svg>")
    .arg(Size)
    .arg(Body);
}

// Body with every "$" replaced by the red-to-blue stops.
QString WithStops(const char *Body)
{
  return QString::fromUtf8(Body).replace(QLatin1Char('$'), QString::fromUtf8(RedToBlue));
}

// The premultiplied pixels of Document drawn at one user unit per pixel.
QImage Render(TSVGDocument &Document, int Size = 40)
{
  QImage Image(Size, Size, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&Image);
    Document.Draw(Canvas, TRectF{0, 0, float(Size), float(Size)});
  }
  return Image;
}

QRgb PremultipliedPixel(const QImage &Image, int X, int Y)
{
  return reinterpret_cast<const QRgb *>(Image.constScanLine(Y))[X];
}

bool Near(QRgb A, QRgb B, int Tolerance)
{
  return std::abs(qAlpha(A) - qAlpha(B)) <= Tolerance && std::abs(qRed(A) - qRed(B)) <= Tolerance &&
         std::abs(qGreen(A) - qGreen(B)) <= Tolerance && std::abs(qBlue(A) - qBlue(B)) <= Tolerance;
}

struct TProbe
{
  int X, Y;
  QRgb Expected; // premultiplied
};

struct TDrawCase
{
  const char *Name;
  const char *Body; // "$" stands for the red-to-blue stops
  std::vector<TProbe> Probes;
};

// Probes are taken where the expected colour is within a few per cent of the exact one.
const TDrawCase DrawCases[] = {
  {"pad keeps the end colours beyond the vector",
   "<linearGradient id='g' x1='0.25' x2='0.75'>$</linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{2, 20, Red}, {20, 20, Purple}, {37, 20, Blue}}},
  {"repeat starts the stops over up to the end of the vector",
   "<linearGradient id='g' spreadMethod='repeat'><stop offset='0' stop-color='red'/>"
   "<stop offset='0.5' stop-color='blue'/></linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{1, 20, Red}, {18, 20, Blue}, {21, 20, Red}, {38, 20, Blue}}},
  {"reflect runs the stops back",
   "<linearGradient id='g' spreadMethod='reflect'><stop offset='0' stop-color='red'/>"
   "<stop offset='0.5' stop-color='blue'/></linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{1, 20, Red}, {19, 20, Blue}, {21, 20, Blue}, {38, 20, Red}}},
  {"bounding-box units follow the shape",
   "<linearGradient id='g'>$</linearGradient><rect x='20' width='20' height='40' fill='url(#g)'/>",
   {{10, 20, Clear}, {21, 20, Red}, {38, 20, Blue}}},
  {"user space is the coordinates of the drawing",
   "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='0' x2='40'>$</linearGradient>"
   "<rect x='20' width='20' height='40' fill='url(#g)'/>",
   {{21, 20, Purple}, {38, 20, Blue}}},
  {"gradientTransform moves the vector in user space",
   "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='0' x2='20' gradientTransform='translate(20,0)'>$"
   "</linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{10, 20, Red}, {30, 20, Purple}, {38, 20, Blue}}},
  {"user space under a scaled group",
   "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='0' x2='20'>$</linearGradient>"
   "<g transform='scale(2)'><rect width='20' height='20' fill='url(#g)'/></g>",
   {{1, 20, Red}, {20, 20, Purple}, {38, 20, Blue}}},
  {"radial runs from the centre to the edge",
   "<radialGradient id='g'>$</radialGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{20, 20, Red}, {10, 20, Purple}, {1, 20, Blue}, {20, 1, Blue}, {0, 0, Blue}}},
  {"radial focal point",
   "<radialGradient id='g' fx='0.2'>$</radialGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{8, 20, Red}, {36, 20, Blue}}},
  {"radial repeat rings",
   "<radialGradient id='g' spreadMethod='repeat'><stop offset='0' stop-color='red'/>"
   "<stop offset='0.5' stop-color='blue'/></radialGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{20, 20, Red}, {29, 20, Blue}, {31, 20, Red}}},
  {"stops through href, coordinates of the referring gradient",
   "<linearGradient id='a'>$</linearGradient><linearGradient id='b' xlink:href='#a' x1='0.5'/>"
   "<rect width='40' height='40' fill='url(#b)'/>",
   {{10, 20, Red}, {38, 20, Blue}}},
  {"own stops win over href",
   "<linearGradient id='a'>$</linearGradient><linearGradient id='b' xlink:href='#a'>"
   "<stop offset='0' stop-color='lime'/></linearGradient><rect width='40' height='40' fill='url(#b)'/>",
   {{1, 20, Lime}, {38, 20, Lime}}},
  {"stroke with a gradient",
   "<linearGradient id='g'>$</linearGradient>"
   "<rect x='4' y='4' width='32' height='32' fill='none' stroke='url(#g)' stroke-width='8'/>",
   {{1, 20, Red}, {38, 20, Blue}, {20, 20, Clear}}},
  {"stop-opacity fades the stop",
   "<linearGradient id='g'><stop offset='0' stop-color='red'/><stop offset='1' stop-color='red' stop-opacity='0'/>"
   "</linearGradient><rect width='40' height='40' fill='url(#g)'/>",
   {{1, 20, Red}, {20, 20, 0x80800000}, {39, 20, Clear}}},
  {"a group's gradient fill is laid out over each child",
   "<linearGradient id='g'>$</linearGradient>"
   "<g fill='url(#g)'><rect width='20' height='40'/><rect x='20' width='20' height='40'/></g>",
   {{1, 20, Red}, {18, 20, Blue}, {21, 20, Red}, {38, 20, Blue}}},
  {"stop colours from a style sheet, the style attribute and a percentage offset",
   "<style>.mid { stop-color: lime }</style><linearGradient id='g'><stop offset='0' style='stop-color:red'/>"
   "<stop class='mid' offset='50%'/><stop offset='1' stop-color='blue'/></linearGradient>"
   "<rect width='40' height='40' fill='url(#g)'/>",
   {{0, 20, Red}, {20, 20, Lime}, {39, 20, Blue}}},
  {"a gradient inside the element it fills",
   "<g fill='url(#g)'><linearGradient id='g'>$</linearGradient><rect width='40' height='40'/></g>",
   {{1, 20, Red}, {38, 20, Blue}}},
};

TEST(GradientDraw, PixelProbes)
{
  for (const TDrawCase &Case : DrawCases) {
    TSVGDocument Document;
    Document.LoadFromText(Svg(WithStops(Case.Body)));
    const QImage Image = Render(Document);
    for (const TProbe &Probe : Case.Probes) {
      const QRgb Actual = PremultipliedPixel(Image, Probe.X, Probe.Y);
      EXPECT_TRUE(Near(Actual, Probe.Expected, 40))
        << Case.Name << " at " << Probe.X << "," << Probe.Y << ": got " << std::hex << Actual << ", expected "
        << Probe.Expected;
    }
  }
}

TEST(GradientDraw, HrefCyclesDrawNothingAndEnd)
{
  const char *const Cycles[] = {
    "<linearGradient id='a' xlink:href='#b'/><linearGradient id='b' xlink:href='#a'/>",
    "<linearGradient id='a' xlink:href='#a'/>",
    "<radialGradient id='a' xlink:href='#c'/><linearGradient id='b' xlink:href='#a'/>"
    "<radialGradient id='c' xlink:href='#b' spreadMethod='repeat'/>",
  };
  for (const char *Defs : Cycles) {
    TSVGDocument Document;
    Document.LoadFromText(Svg(QString::fromUtf8(Defs) + QStringLiteral("<rect width='40' height='40' "
                                                                      "fill='url(#a)' stroke='url(#a)'/>")));
    QElapsedTimer Timer;
    Timer.start();
    const QImage Image = Render(Document);
    EXPECT_LT(Timer.elapsed(), 1000) << Defs;
    for (const TProbe &Probe : {TProbe{20, 20, Clear}, TProbe{0, 0, Clear}})
      EXPECT_EQ(PremultipliedPixel(Image, Probe.X, Probe.Y), Probe.Expected) << Defs;
  }
}

// --- points --------------------------------------------------------------------------------------

struct TPoint
{
  float Offset;
  QRgb Color;
};

std::vector<TPoint> PointsOf(const TVXGPGradientPoints &Points)
{
  std::vector<TPoint> Result;
  for (int I = 0; I < Points.GetCount(); ++I)
    Result.push_back({Points.GetPoint(I).Offset, Points.GetPoint(I).Color});
  return Result;
}

class GradientPoints : public ::testing::Test
{
protected:
  TSVGCustomGradient &Load(const QString &Defs)
  {
    Document.LoadFromText(Svg(Defs));
    return *dynamic_cast<TSVGCustomGradient *>(Document.AllItems().Elements(QStringLiteral("g")));
  }
  std::vector<TPoint> Points(const QString &Defs, int Direction = 1)
  {
    TVXGPGradientPoints Result;
    Load(Defs).SetGradientPoints(Result, Direction);
    return PointsOf(Result);
  }
  void ExpectPoints(const std::vector<TPoint> &Actual, const std::vector<TPoint> &Expected, const char *Name)
  {
    ASSERT_EQ(Actual.size(), Expected.size()) << Name;
    for (std::size_t I = 0; I < Actual.size(); ++I) {
      EXPECT_NEAR(Actual[I].Offset, Expected[I].Offset, 1e-5) << Name << " point " << I;
      EXPECT_EQ(Actual[I].Color, Expected[I].Color) << Name << " point " << I;
    }
  }

  TSVGDocument Document;
};

TEST_F(GradientPoints, SpreadMethodsUnrollIntoStops)
{
  struct TCase
  {
    const char *Name;
    const char *Defs;
    int Direction;
    std::vector<TPoint> Expected;
  };
  const TCase Cases[] = {
    {"pad", "<linearGradient id='g'>$</linearGradient>", 1, {{0, Red}, {1, Blue}}},
    {"pad, last to first", "<linearGradient id='g'>$</linearGradient>", -1, {{1, Blue}, {0, Red}}},
    {"offsets kept as written, unsorted",
     "<linearGradient id='g'><stop offset='0.7' stop-color='red'/><stop offset='0.2' stop-color='blue'/>"
     "</linearGradient>",
     1,
     {{0.7f, Red}, {0.2f, Blue}}},
    {"repeat with a hard seam",
     "<linearGradient id='g' spreadMethod='repeat'><stop offset='0' stop-color='red'/>"
     "<stop offset='0.5' stop-color='blue'/></linearGradient>",
     1,
     {{0, Red}, {0.5f, Blue}, {0.5001f, Red}, {1.0001f, Blue}}},
    {"reflect turns each pass",
     "<linearGradient id='g' spreadMethod='reflect'><stop offset='0' stop-color='red'/>"
     "<stop offset='0.4' stop-color='blue'/></linearGradient>",
     1,
     {{0, Red}, {0.4f, Blue}, {0.4001f, Blue}, {0.8001f, Red}, {0.8002f, Red}, {1.2002f, Blue}}},
    {"a full range needs no second pass",
     "<linearGradient id='g' spreadMethod='repeat'>$</linearGradient>", 1, {{0, Red}, {1, Blue}}},
    {"stop-opacity folded into the colour",
     "<linearGradient id='g'><stop offset='0' stop-color='lime' stop-opacity='0.5'/></linearGradient>",
     1,
     {{0, 0x8000FF00}}},
    {"href chain to the stops", "<linearGradient id='a'>$</linearGradient><linearGradient id='b' xlink:href='#a'/>"
     "<radialGradient id='g' xlink:href='#b'/>", 1, {{0, Red}, {1, Blue}}},
    {"a reference to something else is ignored", "<rect id='r'/><linearGradient id='g' xlink:href='#r'/>", 1, {}},
    {"an href cycle gives no stops",
     "<linearGradient id='b' xlink:href='#g'/><linearGradient id='g' xlink:href='#b'/>", 1, {}},
  };
  for (const TCase &Case : Cases) {
    Document.Clear();
    ExpectPoints(Points(WithStops(Case.Defs), Case.Direction), Case.Expected, Case.Name);
  }
}

TEST_F(GradientPoints, UnrollingEndsForStopsThatBarelyMove)
{
  struct TCase
  {
    const char *Stops;
    int MinCount, MaxCount;
  };
  // All offsets at 0 end only through the seam step of each pass; a stop far below 0 cannot reach
  // 1 that way at all, and the unrolling gives up instead of hanging.
  const TCase Cases[] = {
    {"<stop offset='0' stop-color='red'/><stop offset='0' stop-color='blue'/>", 19000, 21000},
    {"<stop offset='0.3' stop-color='red'/>", 6990, 7010},
    {"<stop offset='-100000000' stop-color='red'/>", 1, 65536 + 1},
    {"<stop offset='-5' stop-color='red'/><stop offset='-5' stop-color='blue'/>", 1, 65536 + 2},
  };
  for (const char *Spread : {"repeat", "reflect"}) {
    for (const TCase &Case : Cases) {
      Document.Clear();
      QElapsedTimer Timer;
      Timer.start();
      const std::vector<TPoint> Result =
        Points(QStringLiteral("<linearGradient id='g' spreadMethod='%1'>%2</linearGradient>")
                 .arg(QString::fromUtf8(Spread), QString::fromUtf8(Case.Stops)));
      EXPECT_LT(Timer.elapsed(), 1000) << Case.Stops;
      EXPECT_GE(int(Result.size()), Case.MinCount) << Spread << " " << Case.Stops;
      EXPECT_LE(int(Result.size()), Case.MaxCount) << Spread << " " << Case.Stops;
    }
  }
}

TEST_F(GradientPoints, RadialBrushHasReversedMirroredStops)
{
  struct TCase
  {
    const char *Defs;
    std::vector<TPoint> Expected;
  };
  const TCase Cases[] = {
    {"<radialGradient id='g'>$</radialGradient>", {{0, Blue}, {1, Red}}},
    {"<radialGradient id='g' spreadMethod='repeat'><stop offset='0' stop-color='red'/>"
     "<stop offset='0.5' stop-color='blue'/></radialGradient>",
     {{-0.0001f, Blue}, {0.4999f, Red}, {0.5f, Blue}, {1, Red}}},
  };
  for (const TCase &Case : Cases) {
    Document.Clear();
    TSVGCustomGradient &Gradient = Load(WithStops(Case.Defs));
    const TVXGPGradient &Result = Gradient.GetBrush(VXIdentityMatrix, TRectF{0, 0, 10, 10}).GetGradient();
    EXPECT_EQ(Result.GetStyle(), gsRadial);
    ExpectPoints(PointsOf(Result.Points()), Case.Expected, Case.Defs);
  }
}

TEST_F(GradientPoints, AddingAStopRebuildsThePoints)
{
  TSVGCustomGradient &Gradient = Load(WithStops("<linearGradient id='g'>$</linearGradient>"));
  const TRectF Rect{0, 0, 10, 10};
  EXPECT_EQ(Gradient.GetGradient(VXIdentityMatrix, Rect)->Points().GetCount(), 2);
  auto *Stop = new TSVGGradientStop(&Document);
  Gradient.Items().Add(Stop);
  Stop->SetOffset(0.5f);
  EXPECT_EQ(Gradient.GetGradient(VXIdentityMatrix, Rect)->Points().GetCount(), 3);
  Gradient.Items().Remove(Stop);
  EXPECT_EQ(Gradient.GetGradient(VXIdentityMatrix, Rect)->Points().GetCount(), 2);
}

// --- coordinates ---------------------------------------------------------------------------------

class GradientCoordinates : public GradientPoints
{
protected:
  std::unique_ptr<TVXGPGradient> Gradient(const char *Defs, const TRectF &Rect,
                                          const TMatrix &Matrix = VXIdentityMatrix)
  {
    Document.Clear();
    return Load(WithStops(Defs)).GetGradient(Matrix, Rect);
  }
};

void ExpectPoint(const TPointF &Actual, const TPointF &Expected, const char *What, const char *Name)
{
  EXPECT_NEAR(Actual.X, Expected.X, 1e-4) << Name << ": " << What << ".x";
  EXPECT_NEAR(Actual.Y, Expected.Y, 1e-4) << Name << ": " << What << ".y";
}

TEST_F(GradientCoordinates, LinearVector)
{
  struct TCase
  {
    const char *Name;
    const char *Defs;
    TRectF Rect;
    TMatrix Matrix;
    TPointF Start, End;
  };
  const TMatrix Scale2 = CreateScaleVXMatrix(2, 2);
  const TCase Cases[] = {
    {"default runs across the box", "<linearGradient id='g'/>", {0, 0, 10, 10}, VXIdentityMatrix, {0, 0}, {1, 0}},
    {"bounding box ignores gradientTransform", "<linearGradient id='g' gradientTransform='rotate(90)' y2='1'/>",
     {0, 0, 10, 10}, VXIdentityMatrix, {0, 0}, {1, 1}},
    {"user space as fractions of the rectangle",
     "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='10' y1='5' x2='30' y2='5'/>", {10, 0, 50, 20},
     VXIdentityMatrix, {0, 0.25f}, {0.5f, 0.25f}},
    {"user space under the element's matrix",
     "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='0' x2='10'/>", {0, 0, 20, 20}, Scale2, {0, 0},
     {0.5f, 0}},
    {"gradientTransform applies to the vector only",
     "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='0' x2='10' gradientTransform='translate(5)'/>",
     {0, 0, 20, 20}, VXIdentityMatrix, {0.25f, 0}, {0.75f, 0}},
    {"a rectangle without width stays unnormalised",
     "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='10' x2='30'/>", {5, 0, 5, 20}, VXIdentityMatrix,
     {10, 0}, {30, 0}},
  };
  for (const TCase &Case : Cases) {
    const auto Result = Gradient(Case.Defs, Case.Rect, Case.Matrix);
    EXPECT_EQ(Result->GetStyle(), gsLinear) << Case.Name;
    ExpectPoint(Result->Start().GetPoint(), Case.Start, "start", Case.Name);
    ExpectPoint(Result->End().GetPoint(), Case.End, "end", Case.Name);
  }
}

TEST_F(GradientCoordinates, RadialCentreFocusAndRadius)
{
  struct TCase
  {
    const char *Name;
    const char *Defs;
    TRectF Rect;
    TPointF Center, FocalOffset, Scale;
  };
  const TCase Cases[] = {
    {"defaults on a wide box", "<radialGradient id='g'/>", {0, 0, 40, 20}, {0.5f, 0.5f}, {0, 0}, {1, 2}},
    {"a plain 0.5 in user space is half of the box",
     "<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='0.5' cy='0.5' r='10'/>", {10, 10, 50, 50},
     {0.5f, 0.5f}, {0, 0}, {0.5f, 0.5f}},
    {"fx alone puts the focus at the box's middle height",
     "<radialGradient id='g' cy='0.2' fx='0.25'/>", {0, 0, 40, 40}, {0.5f, 0.2f}, {-0.25f, 0.3f}, {1, 1}},
    {"user-space centre and radius through gradientTransform",
     "<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='10' cy='10' r='10' gradientTransform='scale(2)'/>",
     {0, 0, 40, 40}, {0.5f, 0.5f}, {0, 0}, {1, 1}},
    {"user-space focus inside the box",
     "<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='20' cy='20' r='20' fx='10' fy='20'/>",
     {0, 0, 40, 40}, {0.5f, 0.5f}, {-0.25f, 0}, {1, 1}},
  };
  for (const TCase &Case : Cases) {
    const auto Result = Gradient(Case.Defs, Case.Rect);
    EXPECT_EQ(Result->GetStyle(), gsRadial) << Case.Name;
    ExpectPoint(Result->RadialTransform().Center().GetPoint(), Case.Center, "centre", Case.Name);
    ExpectPoint(Result->RadialTransform().FocalOffset().GetPoint(), Case.FocalOffset, "focal offset", Case.Name);
    ExpectPoint(Result->RadialTransform().Scale().GetPoint(), Case.Scale, "scale", Case.Name);
  }
}

// --- tree ----------------------------------------------------------------------------------------

TEST(GradientTree, ReferenceListensToItsTargetUntilEitherGoes)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg(WithStops("<defs id='d'><linearGradient id='a'>$</linearGradient>"
                                      "<linearGradient id='b'/><linearGradient id='c'/></defs>")));
  TSVGElement *Defs = Document.AllItems().Elements(QStringLiteral("d"));
  auto *A = Document.AllItems().Elements(QStringLiteral("a"));
  auto *B = dynamic_cast<TSVGLinearGradient *>(Document.AllItems().Elements(QStringLiteral("b")));
  auto *C = dynamic_cast<TSVGLinearGradient *>(Document.AllItems().Elements(QStringLiteral("c")));
  B->SetReference(QStringLiteral("a"));
  C->SetReference(QStringLiteral("a"));
  EXPECT_TRUE(A->Listeners().Contains(B));
  EXPECT_EQ(B->GetGradient(VXIdentityMatrix, TRectF{0, 0, 10, 10})->Points().GetCount(), 2);

  // A listener that goes away leaves the target's list.
  Defs->Items().Remove(C);
  EXPECT_EQ(A->Listeners().Count(), 1);

  // A target that goes away empties the reference and the borrowed stops.
  Defs->Items().Remove(A);
  EXPECT_TRUE(B->Reference().isEmpty());
  EXPECT_EQ(B->GetGradient(VXIdentityMatrix, TRectF{0, 0, 10, 10})->Points().GetCount(), 0);
}

TEST(GradientTree, LoadsAttributesAndTakesNoRoomInItsGroup)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg(QStringLiteral(
    "<g id='grp'><radialGradient id='r' cx='30' cy='30' r='50' fx='1' gradientUnits='userSpaceOnUse' "
    "spreadMethod='reflect' xlink:href='#x'><stop id='s' offset='60%' stop-color='#00f' stop-opacity='2'/>"
    "</radialGradient><rect x='10' y='10' width='5' height='5'/></g>")));
  auto *Radial = dynamic_cast<TSVGRadialGradient *>(Document.AllItems().Elements(QStringLiteral("r")));
  ASSERT_NE(Radial, nullptr);
  EXPECT_EQ(Radial->Units(), csuUserSpaceOnUse);
  EXPECT_EQ(Radial->Spread(), gsReflect);
  EXPECT_EQ(Radial->Reference(), QStringLiteral("x"));
  EXPECT_TRUE(Radial->FocalXSpecified());
  EXPECT_FALSE(Radial->FocalYSpecified());
  EXPECT_FLOAT_EQ(Radial->Radius().Raw(), 50);
  EXPECT_FALSE(Radial->ShouldDraw());
  auto *Stop = dynamic_cast<TSVGGradientStop *>(Document.AllItems().Elements(QStringLiteral("s")));
  ASSERT_NE(Stop, nullptr);
  EXPECT_FLOAT_EQ(Stop->Offset(), 0.6f);
  EXPECT_EQ(Stop->GetStopBrush().GetColor(), Blue);
  const TRectF Bounds = Document.AllItems().Elements(QStringLiteral("grp"))->GetBoundsRect();
  EXPECT_EQ(Bounds, (TRectF{10, 10, 15, 15}));
}

TEST(GradientTree, CopyAndCanvasGradientRoundTrip)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg(WithStops("<linearGradient id='a' x1='0.1' spreadMethod='repeat'>$</linearGradient>")));
  auto *Source = dynamic_cast<TSVGLinearGradient *>(Document.AllItems().Elements(QStringLiteral("a")));
  const auto Canvas = Source->GetGradient(VXIdentityMatrix, TRectF{0, 0, 10, 10});

  TSVGLinearGradient FromCanvas(nullptr);
  FromCanvas.Assign(Canvas.get());
  const auto Again = FromCanvas.GetGradient(VXIdentityMatrix, TRectF{0, 0, 10, 10});
  EXPECT_FLOAT_EQ(Again->Start().X(), 0.1f);
  ASSERT_EQ(Again->Points().GetCount(), 2);
  EXPECT_EQ(Again->Points().GetPoint(1).Color, Blue);

  std::unique_ptr<TSVGElement> Copy(Source->Clone(&Document));
  auto *Linear = dynamic_cast<TSVGLinearGradient *>(Copy.get());
  ASSERT_NE(Linear, nullptr);
  EXPECT_EQ(Linear->Spread(), gsRepeat);
  EXPECT_FLOAT_EQ(Linear->X1().Raw(), 0.1f);
  EXPECT_EQ(Linear->Count(), 2);
}

} // namespace
