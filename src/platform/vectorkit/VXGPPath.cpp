#include "platform/vectorkit/VXGPPath.h"

#include "platform/geometry/VXPathData.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "platform/vectorkit/VXGPFont.h"
#include "platform/vectorkit/VXGPPaint.h"

#include <QPainterPathStroker>
#include <QTransform>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

QPointF Q(const TPointF &P)
{
  return QPointF(P.X, P.Y);
}

// The move points of the figures of Points that have segments but no length.
std::vector<TPointF> ZeroLengthFigures(const std::vector<TVXPathPoint> &Points)
{
  std::vector<TPointF> Result;
  std::size_t I = 0;
  while (I < Points.size()) {
    const TPointF Start = Points[I].Point;
    bool Collapsed = true;
    std::size_t J = I + 1;
    for (; J < Points.size() && Points[J].Kind != ppMove; ++J)
      Collapsed = Collapsed && Points[J].Point == Start;
    if (Collapsed && J > I + 1)
      Result.push_back(Start);
    I = J;
  }
  return Result;
}

TRectF FromQRect(const QRectF &R)
{
  return {float(R.left()), float(R.top()), float(R.right()), float(R.bottom())};
}

QPainterPath Stroke(const QPainterPath &Path, QPen Pen, float Flatness)
{
  VXLimitDashes(Pen, Path);
  QPainterPathStroker Stroker(Pen);
  if (Flatness > 0 && std::isfinite(Flatness))
    Stroker.setCurveThreshold(Flatness);
  return Stroker.createStroke(Path);
}

} // namespace

// --- path --------------------------------------------------------------------------------------

TVXGPPath::TVXGPPath(TVXGPCanvas *Canvas) : FCanvas(Canvas)
{
  FPath.setFillRule(Qt::OddEvenFill);
}

void TVXGPPath::Assign(const TVXPathData &Data)
{
  QPainterPath Result;
  const std::vector<TVXPathPoint> &Points = Data.Points();
  const std::size_t N = Points.size();
  for (std::size_t I = 0; I < N; ++I) {
    const TVXPathPoint &P = Points[I];
    switch (P.Kind) {
    case ppMove:
      Result.moveTo(Q(P.Point));
      break;
    case ppLine:
      Result.lineTo(Q(P.Point));
      break;
    case ppCubic:
      // Three cubic points in a row form one curve; a truncated triple ends in straight lines.
      if (I + 2 < N && Points[I + 1].Kind == ppCubic && Points[I + 2].Kind == ppCubic) {
        Result.cubicTo(Q(P.Point), Q(Points[I + 1].Point), Q(Points[I + 2].Point));
        I += 2;
      } else {
        Result.lineTo(Q(P.Point));
      }
      break;
    case ppClose:
      Result.closeSubpath();
      break;
    }
  }
  Result.setFillRule(Data.GetFillMode() == VXFillModeWinding ? Qt::WindingFill : Qt::OddEvenFill);
  FPath = Result;
  FZeroLengthFigures = vx::ZeroLengthFigures(Points);
}

void TVXGPPath::Assign(const TVXGPPath &Path)
{
  FPath = Path.FPath;
  FZeroLengthFigures = Path.FZeroLengthFigures;
}

std::unique_ptr<TVXGPPath> TVXGPPath::Clone(TVXGPCanvas *Canvas) const
{
  auto Result = std::make_unique<TVXGPPath>(Canvas ? Canvas : FCanvas);
  Result->FPath = FPath;
  Result->FZeroLengthFigures = FZeroLengthFigures;
  return Result;
}

void TVXGPPath::Clear()
{
  const Qt::FillRule Rule = FPath.fillRule();
  FPath.clear();
  FPath.setFillRule(Rule);
  FZeroLengthFigures.clear();
}

void TVXGPPath::MoveTo(const TPointF &P)
{
  FPath.moveTo(Q(P));
}

void TVXGPPath::LineTo(const TPointF &P)
{
  FPath.lineTo(Q(P));
}

void TVXGPPath::CurveTo(const TPointF &C1, const TPointF &C2, const TPointF &P)
{
  FPath.cubicTo(Q(C1), Q(C2), Q(P));
}

void TVXGPPath::ClosePath()
{
  FPath.closeSubpath();
}

void TVXGPPath::AddRectangle(const TRectF &Rect, float Rx, float Ry, int Corners, int CornerType)
{
  (void)CornerType; // the round corner is the only corner type
  const float L = std::min(Rect.Left, Rect.Right), R = std::max(Rect.Left, Rect.Right);
  const float T = std::min(Rect.Top, Rect.Bottom), B = std::max(Rect.Top, Rect.Bottom);
  const float X = std::clamp(std::isfinite(Rx) ? Rx : 0.0f, 0.0f, (R - L) / 2);
  const float Y = std::clamp(std::isfinite(Ry) ? Ry : 0.0f, 0.0f, (B - T) / 2);
  if (X <= 0 || Y <= 0 || (Corners & 15) == 0) {
    FPath.addRect(QRectF(L, T, R - L, B - T));
    return;
  }
  // Clockwise from the top-left corner; each rounded corner is a quarter of an ellipse.
  const bool TL = Corners & 1, TR = Corners & 2, BR = Corners & 4, BL = Corners & 8;
  FPath.moveTo(TL ? L + X : L, T);
  if (TR)
    FPath.arcTo(QRectF(R - 2 * X, T, 2 * X, 2 * Y), 90, -90);
  else
    FPath.lineTo(R, T);
  if (BR)
    FPath.arcTo(QRectF(R - 2 * X, B - 2 * Y, 2 * X, 2 * Y), 0, -90);
  else
    FPath.lineTo(R, B);
  if (BL)
    FPath.arcTo(QRectF(L, B - 2 * Y, 2 * X, 2 * Y), 270, -90);
  else
    FPath.lineTo(L, B);
  if (TL)
    FPath.arcTo(QRectF(L, T, 2 * X, 2 * Y), 180, -90);
  FPath.closeSubpath();
}

void TVXGPPath::AddEllipse(const TRectF &R)
{
  FPath.addEllipse(QRectF(QPointF(R.Left, R.Top), QPointF(R.Right, R.Bottom)).normalized());
}

void TVXGPPath::AddPolygon(const TVXPoints &Points, int High)
{
  const int Last = std::min(High, int(Points.size()) - 1);
  if (Last < 0)
    return;
  FPath.moveTo(Q(Points[0]));
  for (int I = 1; I <= Last; ++I)
    FPath.lineTo(Q(Points[std::size_t(I)]));
  FPath.closeSubpath();
}

void TVXGPPath::AddText(const TPointF &Point, const QString &Text, const TVXGPFont &Font,
                        const TVXGPStringFormat *Format)
{
  (void)Format; // a single unwrapped line needs nothing of the format
  const TVXTextShaper Shaper(Font);
  const QPainterPath Glyphs = Shaper.Outline(Text, {Point.X, Point.Y + Shaper.Ascent()});
  const Qt::FillRule Rule = FPath.fillRule();
  FPath.addPath(Glyphs);
  FPath.setFillRule(Rule);
}

void TVXGPPath::ApplyMatrix(const TMatrix &M)
{
  const QTransform T = VXToQTransform(M);
  FPath = T.map(FPath);
  for (TPointF &P : FZeroLengthFigures) {
    const QPointF Mapped = T.map(Q(P));
    P = {float(Mapped.x()), float(Mapped.y())};
  }
}

void TVXGPPath::Translate(float DX, float DY)
{
  FPath.translate(DX, DY);
  for (TPointF &P : FZeroLengthFigures)
    P = {P.X + DX, P.Y + DY};
}

void TVXGPPath::Append(const TVXGPPath &Path, bool Connect)
{
  const Qt::FillRule Rule = FPath.fillRule();
  if (Connect)
    FPath.connectPath(Path.FPath);
  else
    FPath.addPath(Path.FPath);
  FPath.setFillRule(Rule);
  FZeroLengthFigures.insert(FZeroLengthFigures.end(), Path.FZeroLengthFigures.begin(), Path.FZeroLengthFigures.end());
}

void TVXGPPath::Widen(float Flatness)
{
  if (FCanvas)
    Widen(FCanvas->Pen(), Flatness);
  else
    Widen(TVXGPPen(), Flatness);
}

void TVXGPPath::Widen(const TVXGPPen &Pen, float Flatness)
{
  FPath = Stroke(FPath, Pen.CreateQOutlinePen(), Flatness);
  FPath.setFillRule(Qt::WindingFill);
}

TRectF TVXGPPath::GetBounds() const
{
  return FromQRect(FPath.boundingRect());
}

void TVXGPPath::SetFillMode(int Mode)
{
  FPath.setFillRule(Mode == VXFillModeWinding ? Qt::WindingFill : Qt::OddEvenFill);
}

bool TVXGPPath::IsVisiblePathPoint(const TPointF &P, const TVXGPCanvas *Canvas) const
{
  return FPath.contains(Q(P)) && (!Canvas || Canvas->IsVisibleClipPoint(P));
}

bool TVXGPPath::IsOutlineVisiblePathPoint(const TPointF &P, const TVXGPPen &Pen, const TVXGPCanvas *Canvas) const
{
  if (Canvas && !Canvas->IsVisibleClipPoint(P))
    return false;
  QPen Outline = Pen.CreateQOutlinePen();
  // A pen of width 0 draws one pixel; it is hit within that pixel.
  if (Outline.widthF() <= 0)
    Outline.setWidthF(1);
  QPainterPath Stroked = Stroke(FPath, Outline, 0);
  Stroked.setFillRule(Qt::WindingFill);
  return Stroked.contains(Q(P));
}

// --- region ------------------------------------------------------------------------------------

namespace {

// The extent that stands for "everything" when an infinite region must become a path.
const QRectF InfiniteRect(-4194304, -4194304, 8388608, 8388608);

QPainterPath InfinitePath()
{
  QPainterPath P;
  P.addRect(InfiniteRect);
  return P;
}

} // namespace

TVXGPRegion::TVXGPRegion(TVXGPCanvas *Canvas) : FCanvas(Canvas) {}

void TVXGPRegion::MakeEmpty()
{
  FPath = QPainterPath();
  FInfinite = false;
}

void TVXGPRegion::MakeInfinite()
{
  FPath = QPainterPath();
  FInfinite = true;
}

void TVXGPRegion::CombinePath(const QPainterPath &Other, bool OtherInfinite, TVXGPCombineMode Mode)
{
  switch (Mode) {
  case cmReplace:
    FPath = Other;
    FInfinite = OtherInfinite;
    return;
  case cmIntersect:
    if (OtherInfinite)
      return;
    FPath = FInfinite ? Other : FPath.intersected(Other);
    FInfinite = false;
    return;
  case cmUnion:
    if (FInfinite || OtherInfinite) {
      MakeInfinite();
      return;
    }
    FPath = FPath.united(Other);
    return;
  case cmXor:
  case cmExclude:
  case cmComplement:
    break;
  }
  const QPainterPath A = FInfinite ? InfinitePath() : FPath;
  const QPainterPath B = OtherInfinite ? InfinitePath() : Other;
  if (Mode == cmXor)
    FPath = A.united(B).subtracted(A.intersected(B));
  else if (Mode == cmExclude)
    FPath = A.subtracted(B);
  else
    FPath = B.subtracted(A);
  FInfinite = false;
}

void TVXGPRegion::Combine(const TVXGPPath &Path, TVXGPCombineMode Mode)
{
  CombinePath(Path.QPath(), false, Mode);
}

void TVXGPRegion::Combine(const TRectF &R, TVXGPCombineMode Mode)
{
  QPainterPath P;
  P.addRect(QRectF(QPointF(R.Left, R.Top), QPointF(R.Right, R.Bottom)).normalized());
  CombinePath(P, false, Mode);
}

void TVXGPRegion::Combine(const TVXGPRegion &Region, TVXGPCombineMode Mode)
{
  CombinePath(Region.FPath, Region.FInfinite, Mode);
}

void TVXGPRegion::Transform(const TMatrix &M)
{
  if (!FInfinite)
    FPath = VXToQTransform(M).map(FPath);
}

bool TVXGPRegion::IsEmpty() const
{
  if (FInfinite)
    return false;
  const QRectF B = FPath.boundingRect();
  return FPath.isEmpty() || !(B.width() > 0) || !(B.height() > 0);
}

TRectF TVXGPRegion::GetBounds() const
{
  return FromQRect(FInfinite ? InfiniteRect : FPath.boundingRect());
}

bool TVXGPRegion::IsVisible(const TPointF &P) const
{
  return FInfinite || FPath.contains(Q(P));
}

} // namespace vx
