#include "tree/VXSVGReferenceListener.h"

#include "tree/VXSVGDocument.h"

namespace vx {

void TSVGReferenceListener::Listen(TSVGElement &Listener, TSVGElement *Target)
{
  Stop(Listener);
  if (!Target)
    return;
  Target->ChangeNotification(&Listener);
  FListened = Target;
  FListenedID = Target->ID();
}

void TSVGReferenceListener::Stop(TSVGElement &Listener)
{
  TSVGElement *Held = nullptr;
  if (FListened && Listener.GetOwner() && Listener.GetOwner()->AllItems().TryGetValue(FListenedID, Held) &&
      Held == FListened)
    FListened->RemoveChangeNotification(&Listener);
  FListened = nullptr;
  FListenedID.clear();
}

} // namespace vx
