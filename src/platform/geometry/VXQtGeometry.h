#pragma once
// The library's rectangles and matrices as Qt's, and back, for the Qt face of the classes.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"

#include <QPointF>
#include <QRectF>
#include <QTransform>

namespace vx {

VX_EXPORT TRectF QRectToVXRect(const QRectF &Rect);
VX_EXPORT QRectF VXRectToQRect(const TRectF &Rect);
// Row vectors in both, so the entries map one to one (VXToQTransform goes the other way).
VX_EXPORT TMatrix QTransformToVX(const QTransform &Transform);
inline TPointF QPointToVXPoint(const QPointF &Point) { return TPointF{float(Point.x()), float(Point.y())}; }

} // namespace vx
