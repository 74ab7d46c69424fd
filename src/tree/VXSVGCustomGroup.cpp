#include "tree/VXSVGCustomGroup.h"

#include "tree/VXSVGDocument.h"
#include "values/VXSVGLookups.h"

namespace vx {

TSVGElementTypes SVGGroupChildTypes()
{
  return SVGDescriptiveElements | SVGShapeElements | SVGStructuralElements | SVGGradientElements |
         TSVGElementTypes{etImage, etText, etSwitch, etStyle, etClipPath, etMarker, etScript, etPattern, etMask};
}

namespace {

// The first non-empty rectangle takes over, so an empty own rectangle at the origin does not drag
// the origin into the bounds.
void Accumulate(TRectF &Bounds, const TRectF &Child)
{
  Bounds = Bounds.IsEmpty() ? Child : UnionRect(Bounds, Child);
}

} // namespace

TRectF TSVGCustomGroup::GetBoundsRect() const
{
  if (FCalcBR) {
    FBoundsRect = TSVGGraphicElement::GetBoundsRect();
    for (const TSVGElement *Child : FItems)
      Accumulate(FBoundsRect, Child->GetBoundsRect());
    FCalcBR = false;
  }
  return FBoundsRect;
}

TRectF TSVGCustomGroup::GetBoundsRect(const TMatrix &Matrix) const
{
  FBoundsRect = TSVGGraphicElement::GetBoundsRect(Matrix);
  const TMatrix Combined = VXMatrixMultiply(FMatrix, Matrix);
  for (const TSVGElement *Child : FItems)
    Accumulate(FBoundsRect, Child->GetBoundsRect(Combined));
  FCalcBR = true;
  return FBoundsRect;
}

void TSVGCustomGroup::Change(TSVGElement *Element)
{
  FCalcBR = true;
  TSVGGraphicElement::Change(Element);
}

void TSVGCustomGroup::Reset()
{
  FCalcBR = true;
  TSVGGraphicElement::Reset();
}

int TSVGCustomGroup::ReadChild(const IXMLNode &Node)
{
  const TSVGElementType Type = ChildNodeType(Node);
  if (Type == etNone) {
    if (Node.NodeType() == ntEntityRef || (DrawsLinksAsGroups() && Node.LocalName() == QLatin1String("a")))
      return AddChildOfType(etGroup, GetOwner());
    return TSVGGraphicElement::ReadChild(Node);
  }
  if (Type == etStyle) {
    if (GetOwner())
      GetOwner()->ReadStyles(Node);
    return -1;
  }
  return AddChildOfType(Type, GetOwner());
}

} // namespace vx
