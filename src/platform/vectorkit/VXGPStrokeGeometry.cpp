#include "platform/vectorkit/VXGPStrokeGeometry.h"

namespace vx {

namespace {

// How far a control point may stray from the chord, as a share of the chord's squared length,
// for the curve still to count as straight: a few thousandths of the chord, below a pixel on any
// curve a picture draws.
constexpr double StraightSlop = 1e-5;

// Whether C lies on the segment A -> B, within the slop, and between its ends.
bool OnChord(const QPointF &A, const QPointF &B, const QPointF &C)
{
  const QPointF AB = B - A, AC = C - A;
  const double Length2 = QPointF::dotProduct(AB, AB);
  if (!(Length2 > 0))
    return false;
  const double T = QPointF::dotProduct(AC, AB) / Length2;
  if (T < 0 || T > 1)
    return false;
  const double Cross = AB.x() * AC.y() - AB.y() * AC.x();
  return Cross * Cross / Length2 <= Length2 * StraightSlop;
}

// Whether element I of Path starts a cubic whose control points lie on its chord.
bool IsStraightCubic(const QPainterPath &Path, int I)
{
  if (I < 1 || I + 2 >= Path.elementCount() || !Path.elementAt(I).isCurveTo())
    return false;
  const QPointF P0 = Path.elementAt(I - 1), P3 = Path.elementAt(I + 2);
  return OnChord(P0, P3, Path.elementAt(I)) && OnChord(P0, P3, Path.elementAt(I + 1));
}

} // namespace

QPainterPath VXStraightenLinearCubics(const QPainterPath &Path)
{
  bool Found = false;
  for (int I = 0; I < Path.elementCount() && !Found; ++I)
    Found = IsStraightCubic(Path, I);
  if (!Found)
    return Path;
  QPainterPath Result;
  Result.setFillRule(Path.fillRule());
  for (int I = 0; I < Path.elementCount(); ++I) {
    const QPainterPath::Element E = Path.elementAt(I);
    if (E.isMoveTo()) {
      Result.moveTo(E);
    } else if (E.isLineTo()) {
      Result.lineTo(E);
    } else if (E.isCurveTo()) {
      if (IsStraightCubic(Path, I))
        Result.lineTo(Path.elementAt(I + 2));
      else
        Result.cubicTo(E, Path.elementAt(I + 1), Path.elementAt(I + 2));
      I += 2;
    }
  }
  return Result;
}

QPainterPath VXZeroLengthCaps(const std::vector<TPointF> &Points, const QPen &Pen)
{
  QPainterPath Result;
  if (Pen.capStyle() == Qt::FlatCap || !(Pen.widthF() > 0))
    return Result;
  const double Half = Pen.widthF() / 2;
  for (const TPointF &P : Points) {
    const QPointF C(P.X, P.Y);
    if (Pen.capStyle() == Qt::RoundCap)
      Result.addEllipse(C, Half, Half);
    else
      Result.addRect(QRectF(C.x() - Half, C.y() - Half, 2 * Half, 2 * Half));
  }
  return Result;
}

} // namespace vx
