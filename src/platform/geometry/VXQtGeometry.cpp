#include "platform/geometry/VXQtGeometry.h"

namespace vx {

TRectF QRectToVXRect(const QRectF &Rect)
{
  return TRectF{float(Rect.left()), float(Rect.top()), float(Rect.right()), float(Rect.bottom())};
}

QRectF VXRectToQRect(const TRectF &Rect)
{
  return QRectF(QPointF(Rect.Left, Rect.Top), QPointF(Rect.Right, Rect.Bottom));
}

TMatrix QTransformToVX(const QTransform &T)
{
  return TMatrix{float(T.m11()), float(T.m12()), float(T.m13()), float(T.m21()), float(T.m22()),
                 float(T.m23()), float(T.m31()), float(T.m32()), float(T.m33())};
}

} // namespace vx
