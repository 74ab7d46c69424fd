// The document's Qt face: drawing into a QImage or through any QPainter.
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDocument.h"

#include <QPainter>

namespace vx {

QImage TSVGDocument::Render(const QSize &Size)
{
  TVXGPBitmap Bitmap(Size.width(), Size.height());
  TVXGPCanvas &Canvas = Bitmap.GetCanvas();
  Canvas.Clear(0);
  Draw(Canvas, TRectF{0, 0, float(Size.width()), float(Size.height())});
  return Bitmap.Image();
}

} // namespace vx
