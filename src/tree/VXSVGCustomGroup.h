#pragma once
// TSVGCustomGroup: the base of every element that holds other graphic elements (groups, defs,
// switch and, through the view-box class, the document, symbols, markers and patterns). Groups,
// markers and symbols share how they turn XML children into element objects.
#include "platform/rtl/VXExport.h"
#include "tree/VXSVGGraphicElement.h"

namespace vx {

// The child set of groups, defs, symbols, markers, patterns and documents.
VX_EXPORT TSVGElementTypes SVGGroupChildTypes();

class VX_EXPORT TSVGCustomGroup : public TSVGGraphicElement
{
public:
  using TSVGGraphicElement::TSVGGraphicElement;

  TSVGElementType SVGType() const override { return etGroup; }

  // The union of the element's own rectangle and its children's bounds, cached until a change.
  TRectF GetBoundsRect() const override;
  // Computed afresh under Matrix, never from the cache (which holds another space).
  TRectF GetBoundsRect(const TMatrix &Matrix) const override;
  void Change(TSVGElement *Element) override;
  void Reset() override;

protected:
  // Known tags become elements of the registered class, with the owner document as their owner;
  // an entity reference becomes a group that reads the entity's content; style elements feed the
  // owner's rule table.
  int ReadChild(const IXMLNode &Node) override;
  // Whether the standard road reads a link (a) as a plain group of its content.
  bool DrawsLinksAsGroups() const { return FollowsStandardSVG(); }
  // A group has no geometry of its own and is never hit by itself; with foFindGroups it stands for
  // the descendant that was hit (in nested groups the outermost answers). Both in
  // graphics/VXSVGHitTesting.cpp.
  TSVGGraphicElement *InternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                           const TRectF &Rect, TSVGFindOptions Options) override;
  TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                             const TRectF &Rect, TSVGFindOptions Options) override;

  mutable bool FCalcBR = true;
  mutable TRectF FBoundsRect;
};

} // namespace vx
