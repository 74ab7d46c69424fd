#pragma once
// The "mask" element, read on the standard road only (the classic road passes "mask" over as an
// unknown name and draws no masks). Like a clip path it is never drawn where it stands: an element
// whose mask property names it hands its whole draw to DrawMasked. The mask draws the element into
// one offscreen layer and its own contents into another, both at device resolution over the part
// of the mask region that the current clip leaves, turns the second into coverage (luminance, or
// alpha for mask-type "alpha") and composites the element once through it.
//
// Hostile input: a mask asked for again while it is at work (a cycle through the mask property of
// the mask or of its contents) declines there, so that one reference counts as absent and the rest
// draws. Masks nest at most MaxNesting deep, and the layers of the masks at work share a budget of
// MaxLayerPixels: a layer that would go beyond it is drawn at a lower resolution, never allocated
// larger.
#include "platform/rtl/VXExport.h"
#include "tree/VXSVGCustomGroup.h"

#include <cstddef>
#include <cstdint>

class QImage;

namespace vx {

class VX_EXPORT TSVGMask : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGMask)

public:
  static constexpr std::size_t MaxNesting = 8;
  static constexpr std::int64_t MaxLayerPixels = std::int64_t(1) << 23;

  // x and y -10%, width and height 120%, of the masked element's bounding box.
  explicit TSVGMask(TSVGDocument *Owner);

  TSVGElementType SVGType() const override { return etMask; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }
  bool DoShouldDraw() const override { return false; }
  // Never hit where it stands, and it takes no room in its container.
  TSVGGraphicElement *ElementAtPos(const TMatrix &, TVXGPCanvas &, const TPointF &, const TRectF &,
                                   TSVGFindOptions) override
  {
    return nullptr;
  }
  using TSVGCustomGroup::ElementAtPos;
  TRectF GetBoundsRect() const override { return TRectF{}; }
  TRectF GetBoundsRect(const TMatrix &) const override { return TRectF{}; }

  // maskUnits (default objectBoundingBox) place the region, maskContentUnits (default
  // userSpaceOnUse) the contents.
  TSVGCoordinateSystemUnit Units() const { return FUnits; }
  void SetUnits(TSVGCoordinateSystemUnit Value);
  TSVGCoordinateSystemUnit ContentUnits() const { return FContentUnits; }
  void SetContentUnits(TSVGCoordinateSystemUnit Value);
  // mask-type "alpha": coverage is the contents' alpha instead of their luminance.
  bool IsAlphaMask() const { return FAlphaMask; }
  void SetAlphaMask(bool Value);

  // The mask region in the masked element's user space, for that element's bounding box Box.
  TRectF MaskRegion(const TRectF &Box) const;

  bool DrawMasked(TSVGGraphicElement &Client, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  // Writes x, y, width and height, and the units and mask type that differ from the defaults.
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  // Fills Coverage (Alpha8, the layer's size) with this mask's coverage for a client whose bounding
  // box is Box and whose user space ToLayer maps into the layer: the contents drawn inside the
  // region, cut by the mask's own mask, turned into luminance or alpha.
  void RenderCoverage(QImage &Coverage, const TRectF &Box, const TMatrix &ToLayer, const TRectF &Rect);
  void SetDefaultRegion();

  TSVGCoordinateSystemUnit FUnits = csuObjectBoundingBox;
  TSVGCoordinateSystemUnit FContentUnits = csuUserSpaceOnUse;
  bool FAlphaMask = false;
};

} // namespace vx
