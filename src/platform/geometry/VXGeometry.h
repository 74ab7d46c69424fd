#pragma once
// Points, rectangles, sizes and 3x3 matrices in 32-bit floats. Points are row vectors, so a
// translation sits in m31/m32 and VXMatrixMultiply(A, B) transforms by A first, then by B.
#include "platform/rtl/VXExport.h"

#include <vector>

namespace vx {

struct VX_EXPORT TPointF
{
  float X = 0, Y = 0;
  bool operator==(const TPointF &) const = default;
};

using TVXPoints = std::vector<TPointF>;

struct VX_EXPORT TSizeF
{
  float cx = 0, cy = 0;
  bool operator==(const TSizeF &) const = default;
};

struct VX_EXPORT TRectF
{
  float Left = 0, Top = 0, Right = 0, Bottom = 0;
  float Width() const { return Right - Left; }
  float Height() const { return Bottom - Top; }
  bool IsEmpty() const { return Right <= Left || Bottom <= Top; }
  bool operator==(const TRectF &) const = default;
};

// An integer rectangle of the host framework (controls, bitmaps).
struct VX_EXPORT TRect
{
  int Left = 0, Top = 0, Right = 0, Bottom = 0;
  int Width() const { return Right - Left; }
  int Height() const { return Bottom - Top; }
  bool operator==(const TRect &) const = default;
};

struct VX_EXPORT TMatrix
{
  float m11 = 1, m12 = 0, m13 = 0;
  float m21 = 0, m22 = 1, m23 = 0;
  float m31 = 0, m32 = 0, m33 = 1;
  bool operator==(const TMatrix &) const = default;
};

// A homogeneous point (x, y, w) for VXMatrixTransform.
struct VX_EXPORT TVXVector
{
  float X = 0, Y = 0, W = 1;
};

inline constexpr TMatrix VXIdentityMatrix{};

VX_EXPORT TMatrix VXMatrixMultiply(const TMatrix &A, const TMatrix &B);
// A length transformed by M: Length times the square root of the area scale of M, the usual
// measure of how M scales a stroke width.
VX_EXPORT float VXMatrixMultiply(float Length, const TMatrix &M);
VX_EXPORT bool VXMatrixEquals(const TMatrix &A, const TMatrix &B, float Tolerance);
VX_EXPORT TMatrix VXMatrixInvert(const TMatrix &M, bool *Invertible = nullptr);
VX_EXPORT float VXMatrixDeterminant(const TMatrix &M);
VX_EXPORT TMatrix CreateTranslateVXMatrix(float X, float Y);
VX_EXPORT TMatrix CreateScaleVXMatrix(float X, float Y);
VX_EXPORT TMatrix CreateRotationVXMatrix(float Radians);
// Rotation by Radians about Center.
VX_EXPORT TMatrix CreateRotationVXMatrix(const TPointF &Center, float Radians);
VX_EXPORT TVXVector VXVector(float X, float Y, float W = 1.0f);
VX_EXPORT TVXVector VXMatrixTransform(const TVXVector &V, const TMatrix &M);
VX_EXPORT TPointF VXMatrixTransformPoint(const TPointF &P, const TMatrix &M);
// The axis-aligned box around the four corners of R under M.
VX_EXPORT TRectF VXMatrixTransformRect(const TRectF &R, const TMatrix &M);

VX_EXPORT TPointF VXPoint(float X, float Y);
VX_EXPORT TRectF VXRect(float Left, float Top, float Right, float Bottom);
VX_EXPORT TRectF RectToVXRect(const TRect &R);
VX_EXPORT float VXRectWidth(const TRectF &R);
VX_EXPORT float VXRectHeight(const TRectF &R);
// Scales R to the largest size that fits Bounds with R's aspect ratio kept, centred in Bounds.
// With NoGrow, a rectangle that already fits keeps its size.
VX_EXPORT void FitRect(TRectF &R, const TRectF &Bounds, bool NoGrow);
// Moves R so that its centre is the centre of Bounds.
VX_EXPORT void RectCenter(TRectF &R, const TRectF &Bounds);
VX_EXPORT bool IntersectRect(TRectF &Result, const TRectF &A, const TRectF &B);
VX_EXPORT TRectF UnionRect(const TRectF &A, const TRectF &B);
VX_EXPORT void OffsetRect(TRectF &R, float DX, float DY);
VX_EXPORT bool PtInRect(const TRectF &R, const TPointF &P);

} // namespace vx
