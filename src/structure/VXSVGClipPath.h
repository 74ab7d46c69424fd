#pragma once
// The "clipPath" element: a container of shapes that is never drawn and that provides the region
// which clips the elements naming it. The region is built from the children by
// TSVGGraphicElement::BuildClipRegion; this class owns it.
#include "platform/rtl/VXExport.h"
#include "tree/VXSVGGraphicElement.h"

#include <cstddef>
#include <memory>

namespace vx {

class VX_EXPORT TSVGClipPath : public TSVGGraphicElement
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
  // The standard region (Region starts empty): the children in the client's user space, or in its
  // bounding box for objectBoundingBox units, under the clip path's transform, cut by the clip
  // path's own clip-path. A clip path met again while it builds answers false, so the reference
  // that closes a cycle is skipped; so is one nested deeper than MaxNesting.
  bool BuildStandardClipRegion(TVXGPRegion &Region, TSVGGraphicElement &Client, const TMatrix &Matrix) override;

  static constexpr std::size_t MaxNesting = 16;

  // clipPathUnits, read, saved and copied on the standard road only: the classic one keeps user
  // space.
  TSVGCoordinateSystemUnit Units() const { return FUnits; }
  void SetUnits(TSVGCoordinateSystemUnit Value);

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  // use, the shapes, path and text become children; anything else goes to the base.
  int ReadChild(const IXMLNode &Node) override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  std::unique_ptr<TVXGPRegion> FRegion;
  TSVGCoordinateSystemUnit FUnits = csuUserSpaceOnUse;
};

} // namespace vx
