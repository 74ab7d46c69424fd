// What an image element gives the control generated for it: its bitmap and its rectangle.
#include "platform/vectorkit/VXGPBitmap.h"
#include "structure/VXSVGImage.h"

namespace vx {

void TSVGImage::AssignTo(TPersistent *Dest) const
{
  if (auto *Control = dynamic_cast<IVXImageControl *>(Dest); Control && FBitmap)
    Control->SetPicture(*FBitmap);
  TSVGCustomViewBox::AssignTo(Dest);
}

void TSVGImage::DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                                const TSVGControlElementEvent &Callback)
{
  TSVGGraphicElement::DoModifyControl(Control, Matrix, Rect, Callback);
  Control->SetBoundsRect(VXMatrixTransformRect(GetBoundsRect(), Matrix));
}

} // namespace vx
