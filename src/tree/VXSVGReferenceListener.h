#pragma once
// Listening to the element that a reference names. The listened element may be cleared (which
// forgets its listeners), renamed or freed, so it is touched again only while it still counts this
// listener among its own.
#include "platform/rtl/VXExport.h"

namespace vx {

class TSVGElement;

class VX_EXPORT TSVGReferenceListener
{
public:
  // Listener hears of every change of Target (nil: of nothing) from now on.
  void Listen(TSVGElement &Listener, TSVGElement *Target);
  // Listener no longer hears of the element it listened to.
  void Stop(TSVGElement &Listener);
  TSVGElement *Listened() const { return FListened; }

private:
  TSVGElement *FListened = nullptr;
};

} // namespace vx
