#pragma once
// The "clipPath" element: a container of shapes that is never drawn and that provides the region
// which clips the elements naming it. The region is built from the children by
// TSVGGraphicElement::BuildClipRegion; this class owns it.
#include "tree/VXSVGGraphicElement.h"

#include <memory>

namespace vx {

class TSVGClipPath : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGClipPath)

public:
  using TSVGGraphicElement::TSVGGraphicElement;

  TSVGElementType SVGType() const override { return etClipPath; }
  // Descriptive elements, shapes, use and text.
  TSVGElementTypes ChildSVGTypes() const override;
  // A clip path is only ever used, never drawn, wherever it stands.
  bool DoShouldDraw() const override { return false; }
  // Empties the region and builds it again from the children in the clip path's own space (its
  // coordinates are always user space: clipPathUnits is not read). The first request makes the
  // region for Canvas; later ones reuse it.
  TVXGPRegion *GetClipPath(TVXGPCanvas &Canvas) override;

protected:
  // use, the shapes, path and text become children; anything else goes to the base.
  int ReadChild(const IXMLNode &Node) override;

private:
  std::unique_ptr<TVXGPRegion> FRegion;
};

} // namespace vx
