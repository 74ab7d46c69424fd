#pragma once
// The plain containers: the group "g", "defs" (never drawn by itself) and "switch" (draws the first
// child whose conditions hold).
#include "tree/VXSVGCustomGroup.h"

namespace vx {

class TSVGGroup : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGGroup)

public:
  using TSVGCustomGroup::TSVGCustomGroup;
  TSVGElementType SVGType() const override { return etGroup; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }

protected:
  // Also writes the rectangle a program may have given the group.
  void DoSaveToXML(const IXMLNode &Node) override;
};

class TSVGDefs : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGDefs)

public:
  using TSVGCustomGroup::TSVGCustomGroup;
  TSVGElementType SVGType() const override { return etDefs; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }
  // Definitions are drawn only where something refers to them, never by the walk of the tree.
  bool DoShouldDraw() const override { return false; }
};

class TSVGSwitch : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGSwitch)

public:
  using TSVGCustomGroup::TSVGCustomGroup;
  TSVGElementType SVGType() const override { return etSwitch; }
  TSVGElementTypes ChildSVGTypes() const override;
  // The conditions of the switch itself; its visibility is not asked, the chosen child answers for its own.
  bool DoShouldDraw() const override;
  // Generates the controls of the child that would be drawn, and of no other.
  void GenerateChildControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                             const TSVGControlElementEvent &Callback) override;

protected:
  // Draws the first graphic child whose conditions hold, and nothing else.
  void DrawChildren(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  TSVGGraphicElement *SelectedChild() const;
};

} // namespace vx
