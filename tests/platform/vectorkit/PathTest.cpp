// Paths and regions: conversion from path data, rectangles, hit tests with pens and clips, region algebra.
#include "PixelProbe.h"

#include "platform/geometry/VXPathData.h"

#include <gtest/gtest.h>

namespace vx {
namespace {

using namespace test;

TEST(Path, AssignsPathDataWithCurvesAndFillMode)
{
  TVXPathData Data;
  Data.SetPathString(QStringLiteral("M0 0 L10 0 C10 5 5 10 0 10 Z"));
  Data.SetFillMode(VXFillModeAlternate);
  TVXGPPath P;
  P.Assign(Data);
  EXPECT_EQ(P.GetFillMode(), VXFillModeAlternate);
  // Move, line, three curve points, and the closing line back to the start.
  EXPECT_GE(P.Count(), 5);
  const TRectF B = P.GetBounds();
  EXPECT_FLOAT_EQ(B.Right, 10);
  EXPECT_FLOAT_EQ(B.Bottom, 10);
  EXPECT_TRUE(P.IsVisiblePathPoint({5, 3}));
  EXPECT_FALSE(P.IsVisiblePathPoint({9.5f, 9.5f}));
}

TEST(Path, CloneKeepsFiguresAndTakesTheNewCanvas)
{
  TVXGPPath P;
  P.AddEllipse({0, 0, 10, 20});
  P.SetFillMode(VXFillModeWinding);
  QImage Image(4, 4, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Image);
  const auto C = P.Clone(&Canvas);
  EXPECT_EQ(C->GetCanvas(), &Canvas);
  EXPECT_EQ(C->Count(), P.Count());
  EXPECT_EQ(C->GetFillMode(), VXFillModeWinding);
  C->ApplyMatrix(CreateScaleVXMatrix(2, 1));
  EXPECT_FLOAT_EQ(C->GetBounds().Right, 20);
  EXPECT_FLOAT_EQ(P.GetBounds().Right, 10);
}

TEST(Path, RoundedRectangleCornersAndRadiiClamped)
{
  struct Case
  {
    const char *Name;
    float Rx, Ry;
    int Corners;
    bool TopLeftCut, BottomRightCut;
  };
  const Case Cases[] = {
    {"plain", 0, 0, 15, false, false},
    {"all rounded", 5, 5, 15, true, true},
    {"top-left only", 5, 5, 1, true, false},
    {"radius beyond half the side", 100, 100, 15, true, true},
    {"one radius zero", 5, 0, 15, false, false},
  };
  for (const Case &K : Cases) {
    TVXGPPath P;
    P.AddRectangle({0, 0, 20, 10}, K.Rx, K.Ry, K.Corners, 0);
    EXPECT_EQ(!P.IsVisiblePathPoint({0.5f, 0.5f}), K.TopLeftCut) << K.Name;
    EXPECT_EQ(!P.IsVisiblePathPoint({19.5f, 9.5f}), K.BottomRightCut) << K.Name;
    EXPECT_TRUE(P.IsVisiblePathPoint({10, 5})) << K.Name;
    EXPECT_EQ(P.GetBounds(), (TRectF{0, 0, 20, 10})) << K.Name;
  }
}

TEST(Path, PolygonAppendTranslateAndWiden)
{
  TVXGPPath P;
  P.AddPolygon({{0, 0}, {10, 0}, {10, 10}, {99, 99}}, 2);
  EXPECT_EQ(P.GetBounds(), (TRectF{0, 0, 10, 10}));
  TVXGPPath Q;
  Q.AddRectangle({0, 0, 1, 1});
  Q.Translate(20, 20);
  P.Append(Q, false);
  EXPECT_EQ(P.GetBounds(), (TRectF{0, 0, 21, 21}));

  TVXGPPath Line;
  Line.MoveTo({0, 0});
  Line.LineTo({10, 0});
  TVXGPPen Pen;
  Pen.SetThickness(4);
  Line.Widen(Pen, 0.25f);
  const TRectF B = Line.GetBounds();
  EXPECT_NEAR(B.Top, -2, 1e-3);
  EXPECT_NEAR(B.Bottom, 2, 1e-3);
  EXPECT_TRUE(Line.IsVisiblePathPoint({5, 1.5f}));
}

TEST(Path, WidenUsesTheCanvasPen)
{
  QImage Image(4, 4, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Image);
  Canvas.Pen().SetThickness(6);
  TVXGPPath Line(&Canvas);
  Line.MoveTo({0, 0});
  Line.LineTo({10, 0});
  Line.Widen(0.25f);
  EXPECT_NEAR(Line.GetBounds().Bottom, 3, 1e-3);
}

TEST(Path, AddTextPutsTheBaselineAtTheCellAscent)
{
  TVXGPFont Font;
  Font.SetName(QStringLiteral("DejaVu Sans"));
  Font.SetSize(40);
  TVXGPPath P;
  P.AddText({10, 100}, QStringLiteral("H"), Font, nullptr);
  const TRectF B = P.GetBounds();
  const float Ascent = 40.0f * Font.GetCellAscent() / Font.GetEmHeight();
  EXPECT_NEAR(B.Bottom, 100 + Ascent, 0.05);
  EXPECT_GT(B.Top, 100);
  EXPECT_GT(B.Left, 10);
  EXPECT_LT(B.Right, 10 + 40);
}

TEST(HitTest, VisiblePointHonoursTheCanvasClip)
{
  QImage Image(40, 40, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Image);
  Canvas.IntersectClip({0, 0, 10, 40});
  const TVXGPPath P = RectPath(0, 0, 40, 40);
  EXPECT_TRUE(P.IsVisiblePathPoint({5, 5}, &Canvas));
  EXPECT_FALSE(P.IsVisiblePathPoint({20, 5}, &Canvas));
  EXPECT_TRUE(P.IsVisiblePathPoint({20, 5}, nullptr));
  TVXGPPen Pen;
  EXPECT_FALSE(P.IsOutlineVisiblePathPoint({40, 20}, Pen, &Canvas));
  EXPECT_TRUE(P.IsOutlineVisiblePathPoint({40, 20}, Pen, nullptr));
}

TEST(HitTest, OutlineUsesWidthCapsJoinsAndDashes)
{
  struct Case
  {
    const char *Name;
    float Width;
    TVXGPLineCap Cap;
    TVXGPLineJoin Join;
    TPointF Point;
    bool Hit;
  };
  // An open corner: (0, 20) to (20, 20) to (20, 40).
  const Case Cases[] = {
    {"within half the width", 6, lcFlat, ljMiter, {10, 22.5f}, true},
    {"beyond half the width", 6, lcFlat, ljMiter, {10, 24}, false},
    {"flat cap ends at the end point", 6, lcFlat, ljMiter, {-1, 20}, false},
    {"square cap reaches beyond", 6, lcSquare, ljMiter, {-2, 20}, true},
    {"round cap reaches beyond on the axis", 6, lcRound, ljMiter, {-2.5f, 20}, true},
    {"round cap misses the corner", 6, lcRound, ljMiter, {-2.5f, 22.5f}, false},
    {"miter join fills the corner", 6, lcFlat, ljMiter, {22.5f, 17.5f}, true},
    {"bevel join cuts the corner", 6, lcFlat, ljBevel, {22.5f, 17.5f}, false},
    {"round join", 6, lcFlat, ljRound, {21.5f, 18.5f}, true},
  };
  TVXGPPath P;
  P.MoveTo({0, 20});
  P.LineTo({20, 20});
  P.LineTo({20, 40});
  for (const Case &K : Cases) {
    TVXGPPen Pen;
    Pen.SetThickness(K.Width);
    Pen.SetStartCap(K.Cap);
    Pen.SetEndCap(K.Cap);
    Pen.SetJoin(K.Join);
    EXPECT_EQ(P.IsOutlineVisiblePathPoint(K.Point, Pen), K.Hit) << K.Name;
  }
  TVXGPPen Dashed;
  Dashed.SetThickness(2);
  Dashed.SetCustomDash({2, 2}, 1, 0);
  EXPECT_TRUE(P.IsOutlineVisiblePathPoint({1, 20}, Dashed));
  EXPECT_FALSE(P.IsOutlineVisiblePathPoint({5, 20}, Dashed));
}

TEST(Region, UnionIntersectTransformAndEmptiness)
{
  TVXGPRegion R;
  EXPECT_TRUE(R.IsInfinite());
  EXPECT_FALSE(R.IsEmpty());
  R.MakeEmpty();
  EXPECT_TRUE(R.IsEmpty());
  R.Combine(RectPath(0, 0, 10, 10), cmUnion);
  R.Combine(RectPath(20, 0, 30, 10), cmUnion);
  EXPECT_FALSE(R.IsEmpty());
  EXPECT_TRUE(R.IsVisible({5, 5}));
  EXPECT_TRUE(R.IsVisible({25, 5}));
  EXPECT_FALSE(R.IsVisible({15, 5}));

  TVXGPRegion I = R;
  I.Combine(RectPath(5, 0, 25, 10), cmIntersect);
  EXPECT_TRUE(I.IsVisible({7, 5}));
  EXPECT_FALSE(I.IsVisible({2, 5}));
  I.Combine(RectPath(100, 100, 110, 110), cmIntersect);
  EXPECT_TRUE(I.IsEmpty());

  R.Transform(CreateTranslateVXMatrix(0, 50));
  EXPECT_TRUE(R.IsVisible({5, 55}));
  EXPECT_FALSE(R.IsVisible({5, 5}));
  // A union with an infinite region covers everything; an intersection with one changes nothing.
  TVXGPRegion Everything;
  R.Combine(Everything, cmIntersect);
  EXPECT_FALSE(R.IsVisible({5, 5}));
  R.Combine(Everything, cmUnion);
  EXPECT_TRUE(R.IsInfinite());
}

TEST(Region, ExcludeXorAndComplement)
{
  TVXGPRegion A;
  A.Combine(RectPath(0, 0, 20, 10), cmReplace);
  TVXGPRegion X = A, E = A, C = A;
  TVXGPRegion B;
  B.Combine(RectPath(10, 0, 30, 10), cmReplace);
  X.Combine(B, cmXor);
  E.Combine(B, cmExclude);
  C.Combine(B, cmComplement);
  EXPECT_TRUE(X.IsVisible({5, 5}) && !X.IsVisible({15, 5}) && X.IsVisible({25, 5}));
  EXPECT_TRUE(E.IsVisible({5, 5}) && !E.IsVisible({15, 5}) && !E.IsVisible({25, 5}));
  EXPECT_TRUE(!C.IsVisible({5, 5}) && !C.IsVisible({15, 5}) && C.IsVisible({25, 5}));
}

} // namespace
} // namespace vx
