#include "platform/geometry/VXGeometry.h"
#include "platform/geometry/VXTransform.h"

#include <gtest/gtest.h>

#include <numbers>

using namespace vx;

namespace {

void ExpectPoint(const TPointF &P, float X, float Y, const char *What)
{
  EXPECT_NEAR(P.X, X, 1e-4) << What;
  EXPECT_NEAR(P.Y, Y, 1e-4) << What;
}

} // namespace

TEST(Matrix, MultiplyAppliesTheLeftFactorFirst)
{
  const TMatrix Scale = CreateScaleVXMatrix(2, 3);
  const TMatrix Move = CreateTranslateVXMatrix(10, 20);
  ExpectPoint(VXMatrixTransformPoint({1, 1}, VXMatrixMultiply(Scale, Move)), 12, 23, "scale then move");
  ExpectPoint(VXMatrixTransformPoint({1, 1}, VXMatrixMultiply(Move, Scale)), 22, 63, "move then scale");
  bool Invertible = false;
  const TMatrix Inverse = VXMatrixInvert(VXMatrixMultiply(Scale, Move), &Invertible);
  EXPECT_TRUE(Invertible);
  EXPECT_TRUE(VXMatrixEquals(VXMatrixMultiply(VXMatrixMultiply(Scale, Move), Inverse), VXIdentityMatrix, 1e-5f));
  VXMatrixInvert(CreateScaleVXMatrix(0, 1), &Invertible);
  EXPECT_FALSE(Invertible);
}

TEST(Matrix, PositiveRotationTurnsXTowardsYDown)
{
  const float Quarter = float(std::numbers::pi / 2);
  ExpectPoint(VXMatrixTransformPoint({1, 0}, CreateRotationVXMatrix(Quarter)), 0, 1, "x axis");
  ExpectPoint(VXMatrixTransformPoint({0, 1}, CreateRotationVXMatrix(Quarter)), -1, 0, "y axis");
  ExpectPoint(VXMatrixTransformPoint({11, 10}, CreateRotationVXMatrix({10, 10}, Quarter)), 10, 11, "about a centre");
  ExpectPoint(VXMatrixTransformPoint({10, 10}, CreateRotationVXMatrix({10, 10}, 1.3f)), 10, 10, "centre stays");
}

TEST(Matrix, FitRectKeepsAspectAndCentres)
{
  struct Case { TRectF R, Bounds; bool NoGrow; TRectF Expected; };
  const Case Cases[] = {
    {{0, 0, 20, 10}, {0, 0, 100, 100}, false, {0, 25, 100, 75}},
    {{0, 0, 10, 20}, {0, 0, 100, 100}, false, {25, 0, 75, 100}},
    {{0, 0, 20, 10}, {0, 0, 100, 100}, true, {40, 45, 60, 55}},
    {{0, 0, 400, 100}, {10, 10, 110, 110}, true, {10, 47.5f, 110, 72.5f}},
    {{5, 5, 5, 10}, {0, 0, 100, 100}, false, {0, 0, 0, 0}},
  };
  for (const Case &C : Cases) {
    TRectF R = C.R;
    FitRect(R, C.Bounds, C.NoGrow);
    EXPECT_EQ(R, C.Expected) << C.R.Width() << "x" << C.R.Height() << " nogrow " << C.NoGrow;
  }
  TRectF R{100, 100, 110, 120};
  RectCenter(R, {0, 0, 50, 50});
  EXPECT_EQ(R, (TRectF{20, 15, 30, 35}));
}

TEST(Transform, ScalesRotatesThenMovesAndReportsChanges)
{
  TVXTransform T;
  int Changes = 0, SizeChanges = 0;
  T.OnChanged = [&](TObject *) { ++Changes; };
  T.OnChangeSize = [&](TObject *) { ++SizeChanges; };
  T.Scale().SetPoint({2, 2});
  T.SetRotationAngle(90);
  T.Position().SetX(100);
  T.Position().SetX(100);
  EXPECT_EQ(Changes, 3);
  EXPECT_EQ(SizeChanges, 1);
  ExpectPoint(VXMatrixTransformPoint({1, 0}, T.Matrix()), 100, 2, "scaled, turned, moved");

  TVXTransform Copy;
  Copy.Assign(&T);
  EXPECT_TRUE(VXMatrixEquals(Copy.Matrix(), T.Matrix(), 1e-6f));
  TVXPosition P;
  EXPECT_THROW(P.Assign(&T), EConvertError);
}
