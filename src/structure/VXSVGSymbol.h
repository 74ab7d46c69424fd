#pragma once
// The "symbol" element: a viewport container that is drawn in place by its parent's walk and
// through "use". In standard mode it is drawn only through "use", keeps the rectangle it was given
// and has no transform of its own.
#include "platform/rtl/VXExport.h"
#include "tree/VXSVGCustomViewBox.h"

namespace vx {

class VX_EXPORT TSVGSymbol : public TSVGCustomViewBox
{
  VX_SVG_ELEMENT_CLASS(TSVGSymbol)

public:
  using TSVGCustomViewBox::TSVGCustomViewBox;
  TSVGElementType SVGType() const override { return etSymbol; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }

  // As for any viewport, except that a view box derived from the contents counts as specified.
  TRectF GetBoundsRect() const override;
  using TSVGCustomViewBox::GetBoundsRect;
  // Whether a symbol is drawn only where a use shows it, not in its place in the tree.
  bool DrawnOnlyThroughUse() const { return FollowsStandardSVG(); }
  bool DoShouldDraw() const override;
  TMatrix ViewportTransform() const override { return VXIdentityMatrix; }

protected:
  // The rectangle follows the view box, with width and height taking each other's place.
  void DoLoadFromXML(const IXMLNode &Node) override;
  // The view box and aspect ratio, then the rectangle.
  void DoSaveToXML(const IXMLNode &Node) override;
};

} // namespace vx
