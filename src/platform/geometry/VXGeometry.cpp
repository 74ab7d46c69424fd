#include "platform/geometry/VXGeometry.h"

#include <algorithm>
#include <cmath>

namespace vx {

float VXMatrixMultiply(float Length, const TMatrix &M)
{
  const double Area = std::abs(double(M.m11) * M.m22 - double(M.m12) * M.m21);
  return float(Length * std::sqrt(Area));
}

TMatrix VXMatrixMultiply(const TMatrix &A, const TMatrix &B)
{
  // Row vectors: p * A * B, so A acts first.
  TMatrix R;
  R.m11 = A.m11 * B.m11 + A.m12 * B.m21 + A.m13 * B.m31;
  R.m12 = A.m11 * B.m12 + A.m12 * B.m22 + A.m13 * B.m32;
  R.m13 = A.m11 * B.m13 + A.m12 * B.m23 + A.m13 * B.m33;
  R.m21 = A.m21 * B.m11 + A.m22 * B.m21 + A.m23 * B.m31;
  R.m22 = A.m21 * B.m12 + A.m22 * B.m22 + A.m23 * B.m32;
  R.m23 = A.m21 * B.m13 + A.m22 * B.m23 + A.m23 * B.m33;
  R.m31 = A.m31 * B.m11 + A.m32 * B.m21 + A.m33 * B.m31;
  R.m32 = A.m31 * B.m12 + A.m32 * B.m22 + A.m33 * B.m32;
  R.m33 = A.m31 * B.m13 + A.m32 * B.m23 + A.m33 * B.m33;
  return R;
}

bool VXMatrixEquals(const TMatrix &A, const TMatrix &B, float Tolerance)
{
  const float *PA = &A.m11, *PB = &B.m11;
  for (int I = 0; I < 9; ++I)
    if (!(std::fabs(PA[I] - PB[I]) <= Tolerance))
      return false;
  return true;
}

float VXMatrixDeterminant(const TMatrix &M)
{
  return M.m11 * (M.m22 * M.m33 - M.m23 * M.m32) - M.m12 * (M.m21 * M.m33 - M.m23 * M.m31) +
         M.m13 * (M.m21 * M.m32 - M.m22 * M.m31);
}

TMatrix VXMatrixInvert(const TMatrix &M, bool *Invertible)
{
  const double Det = VXMatrixDeterminant(M);
  const bool Ok = std::isfinite(Det) && std::fabs(Det) > 1e-20;
  if (Invertible)
    *Invertible = Ok;
  if (!Ok)
    return VXIdentityMatrix;
  const double D = 1.0 / Det;
  TMatrix R;
  R.m11 = float((M.m22 * M.m33 - M.m23 * M.m32) * D);
  R.m12 = float((M.m13 * M.m32 - M.m12 * M.m33) * D);
  R.m13 = float((M.m12 * M.m23 - M.m13 * M.m22) * D);
  R.m21 = float((M.m23 * M.m31 - M.m21 * M.m33) * D);
  R.m22 = float((M.m11 * M.m33 - M.m13 * M.m31) * D);
  R.m23 = float((M.m13 * M.m21 - M.m11 * M.m23) * D);
  R.m31 = float((M.m21 * M.m32 - M.m22 * M.m31) * D);
  R.m32 = float((M.m12 * M.m31 - M.m11 * M.m32) * D);
  R.m33 = float((M.m11 * M.m22 - M.m12 * M.m21) * D);
  return R;
}

TMatrix CreateTranslateVXMatrix(float X, float Y)
{
  TMatrix R;
  R.m31 = X;
  R.m32 = Y;
  return R;
}

TMatrix CreateScaleVXMatrix(float X, float Y)
{
  TMatrix R;
  R.m11 = X;
  R.m22 = Y;
  return R;
}

TMatrix CreateRotationVXMatrix(float Radians)
{
  const float C = std::cos(Radians), S = std::sin(Radians);
  TMatrix R;
  R.m11 = C;
  R.m12 = S;
  R.m21 = -S;
  R.m22 = C;
  return R;
}

TMatrix CreateRotationVXMatrix(const TPointF &Center, float Radians)
{
  TMatrix R = CreateTranslateVXMatrix(-Center.X, -Center.Y);
  R = VXMatrixMultiply(R, CreateRotationVXMatrix(Radians));
  return VXMatrixMultiply(R, CreateTranslateVXMatrix(Center.X, Center.Y));
}

TVXVector VXVector(float X, float Y, float W)
{
  return {X, Y, W};
}

TVXVector VXMatrixTransform(const TVXVector &V, const TMatrix &M)
{
  return {V.X * M.m11 + V.Y * M.m21 + V.W * M.m31, V.X * M.m12 + V.Y * M.m22 + V.W * M.m32,
          V.X * M.m13 + V.Y * M.m23 + V.W * M.m33};
}

TPointF VXMatrixTransformPoint(const TPointF &P, const TMatrix &M)
{
  return {P.X * M.m11 + P.Y * M.m21 + M.m31, P.X * M.m12 + P.Y * M.m22 + M.m32};
}

TPointF VXPoint(float X, float Y)
{
  return {X, Y};
}

TRectF VXRect(float Left, float Top, float Right, float Bottom)
{
  return {Left, Top, Right, Bottom};
}

TRectF RectToVXRect(const TRect &R)
{
  return {float(R.Left), float(R.Top), float(R.Right), float(R.Bottom)};
}

float VXRectWidth(const TRectF &R)
{
  return R.Right - R.Left;
}

float VXRectHeight(const TRectF &R)
{
  return R.Bottom - R.Top;
}

void FitRect(TRectF &R, const TRectF &Bounds, bool NoGrow)
{
  const float W = R.Width(), H = R.Height(), BW = Bounds.Width(), BH = Bounds.Height();
  if (W <= 0 || H <= 0) {
    R = VXRect(Bounds.Left, Bounds.Top, Bounds.Left, Bounds.Top);
    return;
  }
  float Scale = std::min(BW / W, BH / H);
  if (NoGrow && Scale > 1)
    Scale = 1;
  R = VXRect(0, 0, W * Scale, H * Scale);
  RectCenter(R, Bounds);
}

void RectCenter(TRectF &R, const TRectF &Bounds)
{
  const float W = R.Width(), H = R.Height();
  R.Left = Bounds.Left + (Bounds.Width() - W) / 2;
  R.Top = Bounds.Top + (Bounds.Height() - H) / 2;
  R.Right = R.Left + W;
  R.Bottom = R.Top + H;
}

bool IntersectRect(TRectF &Result, const TRectF &A, const TRectF &B)
{
  Result = VXRect(std::max(A.Left, B.Left), std::max(A.Top, B.Top), std::min(A.Right, B.Right),
                  std::min(A.Bottom, B.Bottom));
  if (Result.IsEmpty()) {
    Result = TRectF{};
    return false;
  }
  return true;
}

TRectF UnionRect(const TRectF &A, const TRectF &B)
{
  if (A.IsEmpty())
    return B;
  if (B.IsEmpty())
    return A;
  return VXRect(std::min(A.Left, B.Left), std::min(A.Top, B.Top), std::max(A.Right, B.Right),
                std::max(A.Bottom, B.Bottom));
}

void OffsetRect(TRectF &R, float DX, float DY)
{
  R.Left += DX;
  R.Right += DX;
  R.Top += DY;
  R.Bottom += DY;
}

bool PtInRect(const TRectF &R, const TPointF &P)
{
  return P.X >= R.Left && P.X < R.Right && P.Y >= R.Top && P.Y < R.Bottom;
}

TRectF VXMatrixTransformRect(const TRectF &R, const TMatrix &M)
{
  const TPointF Corners[] = {VXMatrixTransformPoint({R.Left, R.Top}, M), VXMatrixTransformPoint({R.Right, R.Top}, M),
                             VXMatrixTransformPoint({R.Right, R.Bottom}, M),
                             VXMatrixTransformPoint({R.Left, R.Bottom}, M)};
  TRectF Box{Corners[0].X, Corners[0].Y, Corners[0].X, Corners[0].Y};
  for (const TPointF &P : Corners) {
    Box.Left = std::min(Box.Left, P.X);
    Box.Top = std::min(Box.Top, P.Y);
    Box.Right = std::max(Box.Right, P.X);
    Box.Bottom = std::max(Box.Bottom, P.Y);
  }
  return Box;
}

} // namespace vx
