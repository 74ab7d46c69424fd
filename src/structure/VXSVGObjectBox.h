#pragma once
// The box that paint servers in bounding-box units span, by the standard rules.
#include "tree/VXSVGGraphicElement.h"

namespace vx {

// The box of what Element draws: its shape's, which a line without height leaves without height,
// or Bounds when it has no shape of its own (text, use, groups).
inline TRectF VXObjectBoundingBox(TSVGGraphicElement &Element, const TRectF &Bounds)
{
  const TVXGPPath *Shape = Element.GetShape();
  return Shape && Shape->Count() > 0 ? Shape->GetBounds() : Bounds;
}

} // namespace vx
