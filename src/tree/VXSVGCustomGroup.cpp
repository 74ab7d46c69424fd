#include "tree/VXSVGCustomGroup.h"

#include "tree/VXSVGDocument.h"
#include "values/VXSVGLookups.h"

namespace vx {

TSVGElementTypes SVGGroupChildTypes()
{
  return SVGDescriptiveElements | SVGShapeElements | SVGStructuralElements | SVGGradientElements |
         TSVGElementTypes{etImage, etText, etSwitch, etStyle, etClipPath, etMarker, etScript, etPattern};
}

int TSVGCustomGroup::AddChildOfType(TSVGElementType Type, TSVGDocument *Owner)
{
  const TSVGElementClass *Class = SVGClasses()[Type];
  if (!Class)
    return -1;
  TSVGElement *Child = Class->Create(Owner);
  try {
    return FItems.Add(Child);
  } catch (...) {
    // A refused child is handed back detached; nobody else holds it.
    if (FItems.IndexOf(Child) < 0)
      delete Child;
    throw;
  }
}

int TSVGCustomGroup::ReadChild(const IXMLNode &Node)
{
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  if (Type == etNone) {
    if (Node.NodeType() == ntEntityRef)
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
