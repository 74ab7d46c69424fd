#include "platform/geometry/VXPathData.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace vx;

namespace {

// Kinds as letters: M move, L line, C cubic point, Z close.
std::string Kinds(const TVXPathData &P)
{
  std::string S;
  for (const TVXPathPoint &Pt : P.Points())
    S += "MLCZ"[Pt.Kind];
  return S;
}

TVXPathData Parse(const char *Text)
{
  TVXPathData P;
  P.SetPathString(QString::fromLatin1(Text));
  return P;
}

} // namespace

TEST(PathData, ParsesAndPrintsRealPathStrings)
{
  struct Case { const char *Text; const char *Kinds; const char *Printed; };
  const Case Cases[] = {
    {"", "", ""},
    {"M10 20L30 40", "ML", "M10 20L30 40"},
    {"m10,20 l5,5 5,5z", "MLLZ", "M10 20L15 25L20 30Z"},
    {"M0 0 10 0 10 10", "MLL", "M0 0L10 0L10 10"},
    {"M1-2L3-4", "ML", "M1 -2L3 -4"},
    {"M.5.5L1.5.5", "ML", "M0.5 0.5L1.5 0.5"},
    {"M1e1 2E-1l1e+1 0", "ML", "M10 0.2L20 0.2"},
    {"M0 0H10V5h-5v-5", "MLLLL", "M0 0L10 0L10 5L5 5L5 0"},
    {"M0 0C1 2 3 4 5 6S9 10 11 12", "MCCCCCC", "M0 0C1 2 3 4 5 6C7 8 9 10 11 12"},
    {"M0 0Q3 3 6 0T12 0", "MCCCCCC", "M0 0C2 2 4 2 6 0C8 -2 10 -2 12 0"},
    {"M0 0z l10 0", "MZML", "M0 0ZM0 0L10 0"},
    {"M0 0 L10 0 X 5 5", "ML", "M0 0L10 0"},
    {"M0 0 L10", "M", "M0 0"},
    {"L10 10", "", ""},
    {"M0 0 a1 1 0 0110 10", "MCCCCCC", nullptr},
  };
  for (const Case &C : Cases) {
    const TVXPathData P = Parse(C.Text);
    EXPECT_EQ(Kinds(P), C.Kinds) << C.Text;
    if (C.Printed) {
      EXPECT_EQ(P.GetPathString().toStdString(), C.Printed) << C.Text;
    }
  }
}

TEST(PathData, ArcsEndWhereTheyShouldAndFollowTheCircle)
{
  // Two half circles of radius 10 centred on (10, 0).
  const TVXPathData P = Parse("M0 0A10 10 0 0 1 20 0A10 10 0 0 1 0 0Z");
  const TPointF &End = P.GetPoint(P.GetCount() - 2).Point;
  EXPECT_NEAR(End.X, 0, 1e-4);
  EXPECT_NEAR(End.Y, 0, 1e-4);
  EXPECT_NEAR(P.GetLength(), 2 * std::numbers::pi * 10, 0.01);
  const TRectF B = P.GetBounds();
  EXPECT_NEAR(B.Top, -10, 0.1);
  EXPECT_NEAR(B.Bottom, 10, 0.1);
  // Radii too small are scaled up to reach the end point: a half circle of radius 5.
  EXPECT_NEAR(Parse("M0 0A1 1 0 0 1 10 0").GetLength(), std::numbers::pi * 5, 0.01);
  // A zero radius draws a straight line.
  EXPECT_EQ(Kinds(Parse("M0 0A0 5 0 0 1 10 0")), "ML");
}

TEST(PathData, LengthMatchesAnalyticValues)
{
  EXPECT_NEAR(Parse("M0 0L3 4").GetLength(), 5, 1e-9);
  EXPECT_NEAR(Parse("M0 0H10V10H0Z").GetLength(), 40, 1e-9);
  EXPECT_NEAR(Parse("M0 0L3 4M100 100L100 110").GetLength(), 15, 1e-9) << "a move adds nothing";
  EXPECT_NEAR(Parse("M0 0C1 0 2 0 3 0").GetLength(), 3, 1e-6) << "straight cubic";
  // Quadratic y = x^2/20 from 0 to 10 as a curve: analytic arc length.
  const double A = 1.0;
  const double Analytic = 0.5 * (std::sqrt(1 + A * A) * A + std::asinh(A)) * 10;
  EXPECT_NEAR(Parse("M0 0Q5 0 10 5").GetLength(), Analytic, 1e-3);
}

TEST(PathData, ShapesFlattenAndDistances)
{
  TVXPathData P;
  int Changes = 0;
  P.OnChange = [&](TVXPathData *) { ++Changes; };
  P.AddRectangle({0, 0, 10, 20});
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(Kinds(P), "MLLLZ");
  EXPECT_EQ(P.GetPoint(2).Point, (TPointF{10, 20}));
  P.Clear();
  P.AddRectangle({0, 0, 100, 50}, 10, 10);
  EXPECT_EQ(P.GetBounds(), (TRectF{0, 0, 100, 50}));
  EXPECT_NEAR(P.GetLength(), 2 * (80 + 30) + 2 * std::numbers::pi * 10, 0.01);
  P.Clear();
  P.AddEllipse({0, 0, 20, 20});
  EXPECT_NEAR(P.GetLength(), 2 * std::numbers::pi * 10, 0.02);
  P.ApplyMatrix(CreateTranslateVXMatrix(5, 5));
  EXPECT_EQ(P.GetBounds(), (TRectF{5, 5, 25, 25}));

  P.Flatten(0.25f);
  for (const TVXPathPoint &Pt : P.Points())
    EXPECT_NE(Pt.Kind, ppCubic);
  EXPECT_EQ(P.Points().back().Kind, ppClose);
  EXPECT_NEAR(P.GetLength(), 2 * std::numbers::pi * 10, 0.5);

  const TVXPathData Two = Parse("M0 0L10 0L10 10M20 0L25 0");
  const TVXPolygons Polys = Two.ToPolygons();
  const TVXPathData::TDistances D = Two.GetDistances();
  ASSERT_EQ(Polys.size(), 2u);
  ASSERT_EQ(D.size(), 2u);
  EXPECT_EQ(D[0], (std::vector<float>{0, 10, 20}));
  EXPECT_EQ(D[1], (std::vector<float>{20, 25})) << "distances run on across figures";
}

TEST(PathData, UpdatesBatchTheChangeEvent)
{
  TVXPathData P;
  int Changes = 0;
  P.OnChange = [&](TVXPathData *) { ++Changes; };
  P.BeginUpdate();
  P.MoveTo({0, 0});
  P.BeginUpdate();
  P.LineTo({1, 1});
  P.EndUpdate();
  EXPECT_EQ(Changes, 0);
  P.EndUpdate();
  EXPECT_EQ(Changes, 1);
  TVXPathData Copy(P);
  EXPECT_EQ(Kinds(Copy), "ML");
}
