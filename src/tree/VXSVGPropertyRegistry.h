#pragma once
// The published properties of element classes that add their own (shapes, paint servers, text):
// the module that defines a class registers its table next to the class, so the tree's streaming
// code never names them.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXPropInfo.h"
#include "tree/VXSVGClasses.h"

namespace vx {

// The table registered for Class, or nil.
VX_EXPORT const TPropertyTable *RegisteredSVGProperties(const TSVGElementClass &Class);

// Registers the table that Table answers (built on first use) for Class, for the life of the program.
class VX_EXPORT TSVGPropertiesRegistration
{
public:
  TSVGPropertiesRegistration(const TSVGElementClass &Class, const TPropertyTable &(*Table)());
};

} // namespace vx
