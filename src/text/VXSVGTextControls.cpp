// What a text gives the control generated for it: a copy of itself to draw, and its place.
#include "text/VXSVGText.h"

#include <algorithm>
#include <cmath>

namespace vx {

void TSVGText::AssignTo(TPersistent *Dest) const
{
  if (auto *Control = dynamic_cast<IVXSVGTextControl *>(Dest)) {
    auto &Self = const_cast<TSVGText &>(*this);
    std::unique_ptr<TSVGText> Copy(static_cast<TSVGText *>(Clone(nullptr)));
    // The copy has no parent to inherit from: it takes the paints and the font as resolved here.
    Copy->SetBrush(Self.GetBrush());
    Copy->SetPen(Self.GetPen());
    Copy->SetFont(Self.GetFont());
    Copy->Inherits().SetValue(TSVGStyleProperties());
    Copy->SetMatrix(VXIdentityMatrix);
    Control->SetSVGText(std::move(Copy));
  }
  if (auto *Shape = dynamic_cast<IVXShapeControl *>(Dest))
    Shape->SetClipChildren(false);
  TSVGCustomText::AssignTo(Dest);
}

void TSVGText::DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                               const TSVGControlElementEvent &Callback)
{
  TSVGCustomText::DoModifyControl(Control, Matrix, Rect, Callback);
  auto *TextControl = dynamic_cast<IVXSVGTextControl *>(&Control->HostComponent());
  if (!TextControl)
    return;
  // The bounds of a text are those of its ink only roughly (before the first layout, an estimate
  // from the font size): a margin of a quarter of the font keeps descenders and strokes inside.
  const TRectF B = GetBoundsRect();
  const float Margin = std::max(2.0f, GetFont().GetSize() / 4);
  const TRectF Device = VXMatrixTransformRect(
      TRectF{B.Left - Margin, B.Top - Margin, B.Right + Margin, B.Bottom + Margin}, Matrix);
  const TRectF Placed{std::floor(Device.Left), std::floor(Device.Top), std::ceil(Device.Right),
                      std::ceil(Device.Bottom)};
  Control->SetBoundsRect(Placed);
  TextControl->SetTextMatrix(VXMatrixMultiply(Matrix, CreateTranslateVXMatrix(-Placed.Left, -Placed.Top)));
}

} // namespace vx
