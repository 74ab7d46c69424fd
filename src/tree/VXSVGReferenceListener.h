#pragma once
// Listening to the element that a reference names. The listened element may be cleared (which
// forgets its listeners) or freed later without telling, so it is touched again only while the
// owner's id table still holds it under the id it had.
#include <QString>

namespace vx {

class TSVGElement;

class TSVGReferenceListener
{
public:
  // Listener hears of every change of Target (nil: of nothing) from now on.
  void Listen(TSVGElement &Listener, TSVGElement *Target);
  // Listener no longer hears of the element it listened to.
  void Stop(TSVGElement &Listener);
  TSVGElement *Listened() const { return FListened; }

private:
  TSVGElement *FListened = nullptr;
  QString FListenedID;
};

} // namespace vx
