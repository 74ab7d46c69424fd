// What the shapes and the path give the path control generated for them: their geometry in their
// own user space, which the graphic element's DoModifyControl then takes to the panel's pixels.
#include "platform/geometry/VXPathData.h"
#include "shapes/VXSVGBasicShapes.h"
#include "shapes/VXSVGPath.h"

namespace vx {

namespace {

// The path data of Dest when it is the path control of a generation; else nil.
TVXPathData *GeneratedPathData(TPersistent *Dest)
{
  auto *Control = dynamic_cast<IVXPathShapeControl *>(Dest);
  return Control && dynamic_cast<IVXSVGPathControl *>(Dest) ? &Control->PathData() : nullptr;
}

} // namespace

void TSVGCircle::AssignTo(TPersistent *Dest) const
{
  if (TVXPathData *Data = GeneratedPathData(Dest))
    Data->AddEllipse(GetBoundsRect());
  TSVGGraphicElement::AssignTo(Dest);
}

void TSVGEllipse::AssignTo(TPersistent *Dest) const
{
  if (TVXPathData *Data = GeneratedPathData(Dest))
    Data->AddEllipse(GetBoundsRect());
  TSVGGraphicElement::AssignTo(Dest);
}

void TSVGRectangle::AssignTo(TPersistent *Dest) const
{
  if (TVXPathData *Data = GeneratedPathData(Dest))
    Data->AddRectangle(GetBoundsRect(), FRX->GetValue(), FRY->GetValue(), 15, 0);
  TSVGGraphicElement::AssignTo(Dest);
}

void TSVGLine::AssignTo(TPersistent *Dest) const
{
  if (TVXPathData *Data = GeneratedPathData(Dest)) {
    Data->MoveTo(TPointF{GetX(), GetY()});
    Data->LineTo(TPointF{FWidth->GetValue(), FHeight->GetValue()});
  }
  TSVGGraphicElement::AssignTo(Dest);
}

void TSVGPolyline::AssignTo(TPersistent *Dest) const
{
  if (!FPoints.empty())
    if (auto *Control = dynamic_cast<IVXPathShapeControl *>(Dest); Control && GeneratedPathData(Dest)) {
      Control->SetPathData(*CreatePath(IsClosed()));
      Control->SetFillMode(GetFillRule() == frEvenOdd ? VXFillModeAlternate : VXFillModeWinding);
    }
  TSVGGraphicElement::AssignTo(Dest);
}

void TSVGPath::AssignTo(TPersistent *Dest) const
{
  if (auto *Control = dynamic_cast<IVXPathShapeControl *>(Dest); Control && GeneratedPathData(Dest))
    Control->SetPathData(FData);
  TSVGGraphicElement::AssignTo(Dest);
}

} // namespace vx
