#pragma once
// Paths and regions of the canvas over QPainterPath. Coordinates are those of the canvas (device
// units while its matrix is the identity).
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"

#include <QPainterPath>
#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

namespace vx {

class TVXGPCanvas;
class TVXGPFont;
class TVXGPPen;
class TVXGPStringFormat;
class TVXPathData;

// How a region or the clip is combined with a path, rectangle or region.
enum TVXGPCombineMode : std::uint8_t { cmReplace, cmIntersect, cmUnion, cmXor, cmExclude, cmComplement };

// Fill modes as the path takes them: 1 non-zero winding, 0 even-odd.
inline constexpr int VXFillModeAlternate = 0;
inline constexpr int VXFillModeWinding = 1;

class VX_EXPORT TVXGPPath
{
public:
  // The canvas, when given, supplies the pen of Widen and the clip of IsVisiblePathPoint.
  explicit TVXGPPath(TVXGPCanvas *Canvas = nullptr);
  TVXGPPath(const TVXGPPath &) = default;
  TVXGPPath &operator=(const TVXGPPath &) = default;
  virtual ~TVXGPPath() = default;

  TVXGPCanvas *GetCanvas() const { return FCanvas; }
  // Takes the figures and the fill mode of Data or Path; the canvas stays.
  void Assign(const TVXPathData &Data);
  void Assign(const TVXGPPath &Path);
  // A copy on Canvas, or on this path's canvas when Canvas is nullptr. The caller owns it.
  std::unique_ptr<TVXGPPath> Clone(TVXGPCanvas *Canvas = nullptr) const;

  void Clear();
  // Number of points, three per cubic segment.
  // Qt keeps a lone move element in a cleared path that carries a fill rule; that is no point.
  int Count() const { return FPath.isEmpty() ? 0 : FPath.elementCount(); }
  int GetCount() const { return Count(); }
  // Batching brackets of the path interface; a QPainterPath needs none, so they do nothing.
  void BeginUpdate() {}
  void EndUpdate() {}

  void MoveTo(const TPointF &P);
  void LineTo(const TPointF &P);
  void CurveTo(const TPointF &C1, const TPointF &C2, const TPointF &P);
  void ClosePath();
  // A plain rectangle when Rx or Ry is 0; otherwise rounded with radii Rx, Ry clamped to half the
  // sides. Corners (bits 1 top-left, 2 top-right, 4 bottom-right, 8 bottom-left) picks the rounded
  // corners; CornerType 0 is the round corner, the only one this layer draws.
  void AddRectangle(const TRectF &R, float Rx = 0, float Ry = 0, int Corners = 15, int CornerType = 0);
  void AddEllipse(const TRectF &R);
  // Points[0..High] as one closed figure.
  void AddPolygon(const TVXPoints &Points, int High);
  // Glyph outlines of Text, the top of the line cell at Point, so that the baseline lies at the
  // font's cell ascent below it. Format (may be nullptr) is accepted for its flags only.
  void AddText(const TPointF &Point, const QString &Text, const TVXGPFont &Font, const TVXGPStringFormat *Format);

  void ApplyMatrix(const TMatrix &M);
  void Translate(float DX, float DY);
  // Adds the figures of Path; Connect joins its first figure to the present one by a line.
  void Append(const TVXGPPath &Path, bool Connect);
  // Replaces the path by the outline of its stroke with Pen (with the canvas pen in the first form,
  // a 1-unit solid pen without a canvas). Flatness bounds the error of curve flattening.
  void Widen(float Flatness);
  void Widen(const TVXGPPen &Pen, float Flatness);

  TRectF GetBounds() const;
  int GetFillMode() const { return FPath.fillRule() == Qt::WindingFill ? VXFillModeWinding : VXFillModeAlternate; }
  void SetFillMode(int Mode);

  // Inside the filled area, and inside the clip of Canvas when one is given.
  bool IsVisiblePathPoint(const TPointF &P, const TVXGPCanvas *Canvas = nullptr) const;
  // On the stroke that Pen would draw (width, joins, caps and dashes), and inside the clip of
  // Canvas when one is given.
  bool IsOutlineVisiblePathPoint(const TPointF &P, const TVXGPPen &Pen, const TVXGPCanvas *Canvas = nullptr) const;

  const QPainterPath &QPath() const { return FPath; }
  QPainterPath &QPath() { return FPath; }
  // Where the figures without length of the assigned path data stand ("M 5 5 L 5 5"): Qt keeps
  // no trace of them, yet a stroke with round or square caps draws a dot there.
  const std::vector<TPointF> &ZeroLengthFigures() const { return FZeroLengthFigures; }

private:
  TVXGPCanvas *FCanvas;
  QPainterPath FPath;
  std::vector<TPointF> FZeroLengthFigures;
};

// An area for clipping, kept as a path. A new region is infinite (it clips nothing) until it is
// made empty or combined.
class VX_EXPORT TVXGPRegion
{
public:
  explicit TVXGPRegion(TVXGPCanvas *Canvas = nullptr);
  TVXGPRegion(const TVXGPRegion &) = default;
  TVXGPRegion &operator=(const TVXGPRegion &) = default;
  virtual ~TVXGPRegion() = default;

  TVXGPCanvas *GetCanvas() const { return FCanvas; }
  void MakeEmpty();
  void MakeInfinite();
  void Combine(const TVXGPPath &Path, TVXGPCombineMode Mode);
  void Combine(const TRectF &R, TVXGPCombineMode Mode);
  void Combine(const TVXGPRegion &Region, TVXGPCombineMode Mode);
  void Transform(const TMatrix &M);

  // No area: an empty path or one with a flat bounding box. An infinite region is not empty.
  bool IsEmpty() const;
  bool IsInfinite() const { return FInfinite; }
  TRectF GetBounds() const;
  bool IsVisible(const TPointF &P) const;
  // The area as a path; meaningless while the region is infinite.
  const QPainterPath &QPath() const { return FPath; }

private:
  TVXGPCanvas *FCanvas;
  QPainterPath FPath;
  bool FInfinite = true;

  void CombinePath(const QPainterPath &Other, bool OtherInfinite, TVXGPCombineMode Mode);
};

} // namespace vx
