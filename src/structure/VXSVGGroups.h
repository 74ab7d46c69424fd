#pragma once
// The plain containers: the group "g", "defs" and "switch".
#include "tree/VXSVGCustomGroup.h"

namespace vx {

class TSVGGroup : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGGroup)

public:
  using TSVGCustomGroup::TSVGCustomGroup;
  TSVGElementType SVGType() const override { return etGroup; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }
};

class TSVGDefs : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGDefs)

public:
  using TSVGCustomGroup::TSVGCustomGroup;
  TSVGElementType SVGType() const override { return etDefs; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }
};

class TSVGSwitch : public TSVGCustomGroup
{
  VX_SVG_ELEMENT_CLASS(TSVGSwitch)

public:
  using TSVGCustomGroup::TSVGCustomGroup;
  TSVGElementType SVGType() const override { return etSwitch; }
  TSVGElementTypes ChildSVGTypes() const override;
};

} // namespace vx
