// The canvas: state tokens, matrix, fills, strokes (dashes, caps, joins), clips and modes, by pixel probes.
#include "PixelProbe.h"

#include "platform/geometry/VXPathData.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

namespace vx {
namespace {

using namespace test;

TEST(CanvasState, RestoreReturnsPenBrushFontMatrixAndClip)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    SolidBrush(C, Red);
    C.Pen().SetThickness(2);
    C.Font().SetSize(20);
    const int Token = C.SaveState();
    SolidBrush(C, Blue);
    C.Pen().SetThickness(7);
    C.Font().SetSize(5);
    C.SetMatrix(CreateTranslateVXMatrix(100, 100));
    C.IntersectClip({0, 0, 5, 5});
    C.RestoreState(Token);
    EXPECT_EQ(C.Brush().GetColor(), Red);
    EXPECT_EQ(C.Pen().GetThickness(), 2);
    EXPECT_EQ(C.Font().GetSize(), 20);
    EXPECT_TRUE(VXMatrixEquals(C.GetMatrix(), VXIdentityMatrix, 1e-6f));
    EXPECT_FALSE(C.HasClip());
    C.FillPath(RectPath(20, 20, 30, 30));
  });
  // Drawn with the restored brush, untranslated and unclipped.
  EXPECT_EQ(RedOf(Image, 25, 25), 255);
  EXPECT_TRUE(Painted(Image, 25, 25));
}

TEST(CanvasState, TokensNestAndAnOuterRestoreDropsInnerOnes)
{
  TRecordingCanvas C;
  SolidBrush(C, Red);
  const int Outer = C.SaveState();
  SolidBrush(C, Green);
  const int Inner = C.SaveState();
  SolidBrush(C, Blue);
  C.RestoreState(Inner);
  EXPECT_EQ(C.Brush().GetColor(), Green);
  const int Again = C.SaveState();
  EXPECT_EQ(Again, Inner);
  C.RestoreState(Outer);
  EXPECT_EQ(C.Brush().GetColor(), Red);
  // A token that was already dropped changes nothing.
  SolidBrush(C, White);
  C.RestoreState(Inner);
  EXPECT_EQ(C.Brush().GetColor(), White);
}

TEST(CanvasState, RestoreKeepsReferencesToTheCurrentPaintsValid)
{
  TRecordingCanvas C;
  TVXGPPen &Pen = C.Pen();
  const int Token = C.SaveState();
  Pen.SetThickness(9);
  C.RestoreState(Token);
  EXPECT_EQ(&Pen, &C.Pen());
  EXPECT_EQ(Pen.GetThickness(), 1);
}

TEST(CanvasMatrix, IdentityUnlessSet)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    EXPECT_TRUE(VXMatrixEquals(C.GetMatrix(), VXIdentityMatrix, 0));
    SolidBrush(C, Red);
    C.FillPath(RectPath(2, 2, 8, 8));
    C.SetMatrix(CreateTranslateVXMatrix(20, 0));
    C.FillPath(RectPath(2, 2, 8, 8));
  });
  EXPECT_TRUE(Painted(Image, 5, 5));
  EXPECT_TRUE(Painted(Image, 25, 5));
  EXPECT_TRUE(Empty(Image, 15, 5));
}

TEST(CanvasFill, FillModes)
{
  struct Case
  {
    int Mode;
    bool CentreFilled;
  };
  for (const Case &K : {Case{VXFillModeWinding, true}, Case{VXFillModeAlternate, false}}) {
    const QImage Image = Render(40, 40, [&](TVXGPCanvas &C) {
      SolidBrush(C, Red);
      // Two squares drawn in the same direction: winding fills the inner one, even-odd leaves a hole.
      TVXGPPath P;
      P.AddRectangle({0, 0, 40, 40});
      P.AddRectangle({10, 10, 30, 30});
      P.SetFillMode(K.Mode);
      C.FillPath(P);
    });
    EXPECT_TRUE(Painted(Image, 5, 5)) << K.Mode;
    EXPECT_EQ(Painted(Image, 20, 20), K.CentreFilled) << K.Mode;
  }
}

TEST(CanvasFill, OpacityMultipliesAndKindNoneDrawsNothing)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    SolidBrush(C, Red);
    C.FillPath(RectPath(0, 0, 10, 10), 0.5f);
    C.FillPath(RectPath(10, 0, 20, 10), 0);
    C.Brush().SetColor(0x80FF0000);
    C.FillPath(RectPath(20, 0, 30, 10), 0.5f);
    C.Brush().SetKind(bkNone);
    C.FillPath(RectPath(30, 0, 40, 10));
  });
  EXPECT_NEAR(Alpha(Image, 5, 5), 128, 2);
  EXPECT_EQ(Alpha(Image, 15, 5), 0);
  EXPECT_NEAR(Alpha(Image, 25, 5), 64, 2);
  EXPECT_EQ(Alpha(Image, 35, 5), 0);
}

TEST(CanvasStroke, PenWidthIsInDeviceUnits)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    SolidPen(C, Blue, 6);
    C.DrawLine({0, 20}, {40, 20});
  });
  EXPECT_TRUE(Painted(Image, 20, 17));
  EXPECT_TRUE(Painted(Image, 20, 22));
  EXPECT_TRUE(Empty(Image, 20, 16));
  EXPECT_TRUE(Empty(Image, 20, 23));
}

TEST(CanvasStroke, DashesAndOffsetAreInUnitsOfThePenWidth)
{
  struct Case
  {
    const char *Name;
    std::vector<float> Dashes;
    float Offset;
    TVXGPDashStyle Stock;
    std::vector<int> On, Off;
  };
  const Case Cases[] = {
    // Width 2: dash 8 px, gap 4 px.
    {"custom", {4, 2}, 0, dsCustom, {1, 6, 13, 18}, {9, 10, 21, 22}},
    // Offset 2 widths (4 px) starts half-way into the first dash.
    {"offset", {4, 2}, 2, dsCustom, {1, 9, 14}, {5, 6, 17, 18}},
    // The stock dash: 3 widths on, 1 off.
    {"stock dash", {}, 0, dsDash, {1, 4, 9}, {7, 15}},
  };
  for (const Case &K : Cases) {
    const QImage Image = Render(40, 10, [&](TVXGPCanvas &C) {
      SolidPen(C, Blue, 2);
      if (K.Stock == dsCustom)
        C.Pen().SetCustomDash(K.Dashes, int(K.Dashes.size()) - 1, K.Offset);
      else
        C.Pen().SetDash(K.Stock);
      C.DrawLine({0, 5}, {40, 5});
    });
    for (int X : K.On)
      EXPECT_TRUE(Painted(Image, X, 5)) << K.Name << " x=" << X;
    for (int X : K.Off)
      EXPECT_TRUE(Empty(Image, X, 5)) << K.Name << " x=" << X;
  }
}

TEST(CanvasStroke, HairThinDashesOverALongPathFinish)
{
  const QImage Image = Render(20, 20, [](TVXGPCanvas &C) {
    SolidPen(C, Blue, 1e-12f);
    C.Pen().SetCustomDash({1, 1}, 1, 0);
    TVXGPPath P;
    for (int I = 0; I < 100; ++I) {
      P.MoveTo({0, float(I % 20)});
      P.LineTo({1e6f, float(I % 20)});
    }
    C.DrawPath(P);
  });
  EXPECT_EQ(Image.width(), 20);
}

TEST(CanvasStroke, Caps)
{
  struct Case
  {
    TVXGPLineCap Cap;
    bool BeyondEnd, BeyondCorner;
  };
  // A horizontal line from x 12 to 28 of width 8; probes 3 px before the start, on the axis and 3 px off it.
  for (const Case &K : {Case{lcFlat, false, false}, Case{lcSquare, true, true}, Case{lcRound, true, false}}) {
    const QImage Image = Render(40, 40, [&](TVXGPCanvas &C) {
      SolidPen(C, Blue, 8);
      C.Pen().SetStartCap(K.Cap);
      C.Pen().SetEndCap(K.Cap);
      C.DrawLine({12, 20}, {28, 20});
    });
    EXPECT_EQ(Painted(Image, 9, 20), K.BeyondEnd) << int(K.Cap);
    EXPECT_EQ(Painted(Image, 9, 23), K.BeyondCorner) << int(K.Cap);
    EXPECT_TRUE(Painted(Image, 20, 23)) << int(K.Cap);
  }
}

TEST(CanvasStroke, FiguresWithoutLengthGetTheirCapsAsDots)
{
  struct Case
  {
    TVXGPLineCap Cap;
    bool Centre, Corner;
  };
  // "M 20 20 L 20 20 M 30 30 Z", width 8: probes at a centre and 3.5 px off it diagonally.
  for (const Case &K : {Case{lcFlat, false, false}, Case{lcSquare, true, true}, Case{lcRound, true, false}}) {
    const QImage Image = Render(40, 40, [&](TVXGPCanvas &C) {
      SolidPen(C, Blue, 8);
      C.Pen().SetStartCap(K.Cap);
      TVXPathData Data;
      Data.SetPathString(QStringLiteral("M 20 20 L 20 20 M 30 30 Z"));
      TVXGPPath P;
      P.Assign(Data);
      P.Translate(-10, -10);
      C.DrawPath(P);
    });
    for (int At : {10, 20}) {
      EXPECT_EQ(Painted(Image, At, At), K.Centre) << int(K.Cap) << " at " << At;
      EXPECT_EQ(Painted(Image, At + 3, At + 3), K.Corner) << int(K.Cap) << " at " << At;
    }
  }
}

TEST(CanvasStroke, ACubicOnItsChordStrokesAsItsChord)
{
  // Control points a hair beside the ends: the square caps stand across the line, not along x.
  const QImage Image = Render(40, 40, [&](TVXGPCanvas &C) {
    SolidPen(C, Blue, 8);
    C.Pen().SetStartCap(lcSquare);
    TVXGPPath P;
    P.MoveTo({10, 30});
    P.CurveTo({10.05f, 30}, {30, 10}, {30.05f, 10});
    C.DrawPath(P);
  });
  EXPECT_TRUE(Painted(Image, 8, 32));
  EXPECT_TRUE(Empty(Image, 6, 26));
}

TEST(CanvasStroke, Joins)
{
  struct Case
  {
    const char *Name;
    TVXGPLineJoin Join;
    float MiterLimit;
    bool TipPainted, RoundTopPainted;
  };
  // A sharp V with its apex at (20, 14), stroke width 6: the miter reaches about 6.7 px above the
  // apex (ratio 2.24), a round join 3 px, a bevel about 1.3 px.
  const Case Cases[] = {
    {"miter", ljMiter, 4, true, true},
    {"miter over its limit becomes a bevel", ljMiter, 2, false, false},
    {"round", ljRound, 4, false, true},
    {"bevel", ljBevel, 4, false, false},
  };
  for (const Case &K : Cases) {
    const QImage Image = Render(40, 40, [&](TVXGPCanvas &C) {
      SolidPen(C, Blue, 6);
      C.Pen().SetJoin(K.Join);
      C.Pen().SetMiterLimit(K.MiterLimit);
      TVXGPPath P;
      P.MoveTo({5, 44});
      P.LineTo({20, 14});
      P.LineTo({35, 44});
      C.DrawPath(P);
    });
    EXPECT_EQ(Painted(Image, 20, 9), K.TipPainted) << K.Name;
    EXPECT_EQ(Painted(Image, 20, 11), K.RoundTopPainted) << K.Name;
  }
}

TEST(CanvasClip, RectanglesAndRegionsIntersect)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    SolidBrush(C, Red);
    C.IntersectClip({0, 0, 30, 30});
    TVXGPPath Disc;
    Disc.AddEllipse({10, 10, 40, 40});
    TVXGPRegion Region(&C);
    Region.Combine(Disc, cmIntersect);
    C.IntersectClip(Region);
    C.FillPath(RectPath(0, 0, 40, 40));
  });
  EXPECT_TRUE(Painted(Image, 25, 25));
  EXPECT_TRUE(Empty(Image, 35, 25));  // outside the rectangle
  EXPECT_TRUE(Empty(Image, 11, 11));  // outside the disc
  EXPECT_TRUE(Empty(Image, 5, 5));
}

TEST(CanvasClip, TakenInThePresentMatrixAndUnionAndInfiniteRegions)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    SolidBrush(C, Red);
    C.SetMatrix(CreateTranslateVXMatrix(20, 0));
    C.IntersectClip({0, 0, 10, 10});
    C.SetMatrix(VXIdentityMatrix);
    C.CombineClip({0, 30, 10, 40}, cmUnion);
    C.IntersectClip(TVXGPRegion(&C));  // an infinite region clips nothing
    C.FillPath(RectPath(0, 0, 40, 40));
  });
  EXPECT_TRUE(Painted(Image, 25, 5));
  EXPECT_TRUE(Painted(Image, 5, 35));
  EXPECT_TRUE(Empty(Image, 5, 5));
  EXPECT_TRUE(Empty(Image, 35, 35));
}

TEST(CanvasClip, ClipObjectReplacesAndResets)
{
  const QImage Image = Render(40, 40, [](TVXGPCanvas &C) {
    SolidBrush(C, Red);
    C.Clip().SetBounds({0, 0, 10, 10});
    C.Clip().Combine({30, 30, 40, 40}, cmReplace);
    EXPECT_EQ(C.Clip().GetBounds(), (TRectF{30, 30, 40, 40}));
    EXPECT_FALSE(C.Clip().IsVisible({5, 5}));
    C.FillPath(RectPath(0, 0, 40, 40));
    C.Clip().Reset();
    C.FillPath(RectPath(0, 20, 10, 30));
  });
  EXPECT_TRUE(Empty(Image, 5, 5));
  EXPECT_TRUE(Painted(Image, 35, 35));
  EXPECT_TRUE(Painted(Image, 5, 25));
}

TEST(CanvasFill, AbsurdCoordinatesDoNotCrash)
{
  const QImage Image = Render(20, 20, [](TVXGPCanvas &C) {
    SolidBrush(C, Red);
    SolidPen(C, Blue, 3);
    TVXGPPath P;
    P.MoveTo({-1e30f, -1e30f});
    P.LineTo({1e30f, 5});
    P.LineTo({5, 1e30f});
    P.ClosePath();
    C.FillPath(P);
    C.DrawPath(P);
    C.Pen().SetThickness(1e30f);
    C.DrawLine({0, 0}, {10, 10});
  });
  EXPECT_EQ(Image.width(), 20);
}

TEST(CanvasClip, ClearFillsInsideTheClipOnly)
{
  const QImage Image = Render(20, 20, [](TVXGPCanvas &C) {
    C.Clear(Green);
    C.IntersectClip({0, 0, 10, 20});
    C.SetMatrix(CreateScaleVXMatrix(3, 3));
    C.Clear(0x00000000);
  });
  EXPECT_EQ(Alpha(Image, 5, 5), 0);
  EXPECT_EQ(Image.pixelColor(15, 5), QColor(0, 255, 0));
}

TEST(CanvasModes, SmoothingZeroAndOneAreAliased)
{
  for (int Mode : {0, 1, 2, 4}) {
    const QImage Image = Render(20, 20, [&](TVXGPCanvas &C) {
      EXPECT_TRUE(C.TrySmoothingMode(Mode));
      SolidBrush(C, Red);
      TVXGPPath P;
      P.AddPolygon({{0, 0}, {20, 0}, {0, 20}}, 2);
      C.FillPath(P);
    });
    int Partial = 0;
    for (int X = 0; X < 20; ++X)
      for (int Y = 0; Y < 20; ++Y)
        Partial += Alpha(Image, X, Y) > 10 && Alpha(Image, X, Y) < 245;
    EXPECT_EQ(Partial > 0, Mode >= 2) << Mode;
  }
}

TEST(CanvasModes, ModesAreRecordedAndRestored)
{
  TRecordingCanvas C;
  EXPECT_FALSE(C.TrySmoothingMode(9));
  const int Token = C.SaveState();
  C.TrySmoothingMode(4);
  C.SetInterpolationMode(7);
  C.SetCompositingQuality(3);
  C.SetTextRenderingHint(4);
  C.RestoreState(Token);
  EXPECT_EQ(C.GetSmoothingMode(), 0);
  EXPECT_EQ(C.GetInterpolationMode(), 0);
  EXPECT_EQ(C.GetCompositingQuality(), 0);
  EXPECT_EQ(C.GetTextRenderingHint(), 0);
  EXPECT_NEAR(C.GetPixelsPerInchX(), 96, 1);
}

TEST(RecordingCanvas, LogsCallsInOrderWithArguments)
{
  TRecordingCanvas C;
  const int Token = C.SaveState();
  C.FillRect({1, 2, 3, 4}, 0.5f);
  C.DrawLine({0, 0}, {5, 5}, 1);
  C.RestoreState(Token);
  EXPECT_EQ(C.Names(), (QStringList{"SaveState", "FillRect", "DrawLine", "RestoreState"}));
  EXPECT_EQ(C.Calls({"FillRect"}), QStringList{"FillRect(1,2,3,4 r=0,0 corners=15 opacity=0.5 type=0)"});
}

} // namespace
} // namespace vx
