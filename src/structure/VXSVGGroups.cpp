#include "structure/VXSVGGroups.h"

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGGroup)
VX_SVG_ELEMENT_CLASS_INFO(TSVGDefs)
VX_SVG_ELEMENT_CLASS_INFO(TSVGSwitch)

namespace {

const TSVGClassRegistration GroupRegistration(etGroup, TSVGGroup::ClassInfo());
const TSVGClassRegistration DefsRegistration(etDefs, TSVGDefs::ClassInfo());
const TSVGClassRegistration SwitchRegistration(etSwitch, TSVGSwitch::ClassInfo());

} // namespace

TSVGElementTypes TSVGSwitch::ChildSVGTypes() const
{
  return SVGDescriptiveElements | SVGShapeElements |
         TSVGElementTypes{etDoc, etGroup, etImage, etUse, etText, etSwitch};
}

} // namespace vx
