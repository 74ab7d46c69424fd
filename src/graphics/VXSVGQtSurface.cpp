// The graphic element's Qt face: drawing through any QPainter, the view matrix and bounds as Qt
// types, and hit testing without a canvas of the caller's.
#include "platform/geometry/VXQtGeometry.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "platform/vectorkit/VXGPPaint.h"
#include "tree/VXSVGGraphicElement.h"

#include <QImage>
#include <QPainter>
#include <QRect>

namespace vx {

namespace {

// Qt's right and bottom are the last pixel inside; the library's lie one beyond it.
TRect QRectToVXIntRect(const QRect &Rect)
{
  return TRect{Rect.left(), Rect.top(), Rect.left() + Rect.width(), Rect.top() + Rect.height()};
}

} // namespace

void TSVGGraphicElement::Draw(QPainter &Painter, const QRectF &Rect)
{
  TVXGPCanvas Canvas(&Painter);
  Draw(Canvas, QRectToVXRect(Rect));
}

void TSVGGraphicElement::Draw(QPainter &Painter, const QRect &Rect)
{
  Draw(GetViewMatrix(QRectToVXIntRect(Rect)), Painter, Rect);
}

void TSVGGraphicElement::Draw(const TMatrix &Matrix, QPainter &Painter, const QRect &Rect)
{
  TVXGPCanvas Canvas(&Painter);
  Draw(Matrix, Canvas, RectToVXRect(QRectToVXIntRect(Rect)));
}

QTransform TSVGGraphicElement::ViewTransform(const QRectF &Rect) const
{
  return VXToQTransform(GetViewMatrix(QRectToVXRect(Rect)));
}

QRectF TSVGGraphicElement::BoundingRect() const
{
  return VXRectToQRect(GetBoundsRect());
}

QRectF TSVGGraphicElement::BoundingRect(const QTransform &Transform) const
{
  return VXRectToQRect(GetBoundsRect(QTransformToVX(Transform)));
}

TSVGGraphicElement *TSVGGraphicElement::ElementAtPos(const QPointF &Point, const QRectF &Rect, TSVGFindOptions Options)
{
  // Nothing is painted: the canvas only carries the pen and the clip of the tests.
  QImage Scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Scratch);
  return ElementAtPos(Canvas, QPointToVXPoint(Point), QRectToVXRect(Rect), Options);
}

} // namespace vx
