#include "tree/VXSVGCustomViewBox.h"

namespace vx {

void TSVGCustomViewBox::SetViewBox(const TRectF &Value, bool Specified)
{
  if (Value == FViewBox && Specified == FViewBoxSpecified)
    return;
  FViewBox = Value;
  FViewBoxSpecified = Specified;
  Change(this);
}

const TSVGCustomViewBox *TSVGCustomViewBox::GetNearestViewBox() const
{
  return FViewBoxSpecified ? this : TSVGCustomGroup::GetNearestViewBox();
}

void TSVGCustomViewBox::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Box = dynamic_cast<const TSVGCustomViewBox *>(Source)) {
    FViewBox = Box->FViewBox;
    FViewBoxSpecified = Box->FViewBoxSpecified;
  }
  TSVGCustomGroup::AssignProperties(Source);
}

} // namespace vx
