#pragma once
// The "use" element. It keeps no copy of what it shows: it keeps the id of its target and, for the
// span of each operation that needs the target (drawing, bounds under a matrix, hit testing),
// lends the target to itself by making itself the target's parent. Inheritance and everything else
// that walks upward then sees the use; afterwards the target gets its own parent back.
//
// A use that would show itself inside itself (naming itself or an ancestor, directly or through
// other uses) draws nothing, is never hit and adds nothing to bounds: the repetition is skipped
// where it is first met, before the target is lent, and the rest of the picture is drawn as usual.
// So the parent chain never loops and the stack never runs deep; a chain of uses deeper than
// MaxUseNesting is cut off the same way.
#include "tree/VXSVGGraphicElement.h"
#include "tree/VXSVGReferenceListener.h"

namespace vx {

class TSVGUse : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGUse)

public:
  // No real picture nests uses this deep; the uses beyond it are skipped like cycles.
  static constexpr int MaxUseNesting = 256;

  using TSVGGraphicElement::TSVGGraphicElement;
  // Leaves the target's listeners.
  ~TSVGUse() override;

  TSVGElementType SVGType() const override { return etUse; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }

  // The id of the target, without "#".
  const QString &Reference() const { return FReference; }
  // Moves this element from the old target's listeners to the new one's, so that the target's
  // destruction empties the reference. A loaded use has not joined any listeners.
  void SetReference(const QString &Value);
  // The element the reference names, when it is a graphic element in the owner's table; else nil.
  // Looked up at every call, so a target that appears later is found.
  TSVGGraphicElement *Target() const;
  // The use is the context of context-fill and context-stroke in what it shows.
  TSVGGraphicElement *PaintContext() const override { return const_cast<TSVGUse *>(this); }
  // Target, unless lending it would repeat it inside itself (or nest too deep): then nil.
  TSVGGraphicElement *LendableTarget() const;

  // A destroyed target leaves an empty reference, not a stale id.
  void NotifyListener(TSVGElement *Element) override;
  // The conditions, then the target's visibility, or this element's when the target inherits it.
  bool DoShouldDraw() const override;
  // The target's bounds moved by x and y; for a symbol or document, this element's rectangle at the
  // target's corner, its missing sides taken from the target.
  TRectF GetBoundsRect() const override;
  // With no size of its own, the target's bounds under Matrix, the target lent for the span.
  TRectF GetBoundsRect(const TMatrix &Matrix) const override;

  // The use's control, covering its bounds, with the lent target's controls generated inside it
  // where the target is drawn: moved by x and y, or mapped into the use's rectangle for a symbol
  // or a document.
  using TSVGGraphicElement::GenerateControls;
  IVXHostControl *GenerateControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                   const TSVGControlElementEvent &Callback) override;

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  // Draws the lent target, moved by x and y, or mapped into this element's rectangle for a symbol
  // or a document. True when there was a target.
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  // In a standard clip path a use adds its lent target, moved by x and y, when the target is a shape
  // or text; other targets (groups, symbols, images) add nothing.
  void AddStandardClipGeometry(TVXGPRegion &Region, const TMatrix &Matrix) override;
  // Hit tests the lent target the way it is drawn; a hit reports this element.
  TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                             const TRectF &Rect, TSVGFindOptions Options) override;

private:
  // The rectangle a symbol or document target maps into: this element's bounds under Matrix, which
  // already holds the element's transform.
  TRectF DeviceViewport(const TMatrix &Matrix) const;

  QString FReference;
  TSVGReferenceListener FListener;
};

} // namespace vx
