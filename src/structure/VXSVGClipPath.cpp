#include "structure/VXSVGClipPath.h"

#include "tree/VXSVGDocument.h"
#include "values/VXSVGLookups.h"

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGClipPath)

namespace {

const TSVGClassRegistration ClipPathRegistration(etClipPath, TSVGClipPath::ClassInfo());

} // namespace

TSVGElementTypes TSVGClipPath::ChildSVGTypes() const
{
  return SVGDescriptiveElements | SVGShapeElements | TSVGElementTypes{etUse, etText};
}

TVXGPRegion *TSVGClipPath::GetClipPath(TVXGPCanvas &Canvas)
{
  if (!FRegion) {
    FRegion = std::make_unique<TVXGPRegion>(&Canvas);
    FClipPath = FRegion.get();
  }
  FRegion->MakeEmpty();
  // The clip's geometry does not depend on what it clips, so the area is a fixed placeholder. The
  // transform goes in as the starting matrix and BuildClipRegion composes it once more: that is
  // the space users of this region have always received.
  BuildClipRegion(*FRegion, FMatrix, VXRect(0, 0, 100, 100));
  return FRegion.get();
}

int TSVGClipPath::ReadChild(const IXMLNode &Node)
{
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  if (Type < etUse || Type > etText)
    return TSVGGraphicElement::ReadChild(Node);
  return AddChildOfType(Type, GetOwner());
}

} // namespace vx
