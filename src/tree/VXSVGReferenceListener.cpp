#include "tree/VXSVGReferenceListener.h"

#include "tree/VXSVGElement.h"

namespace vx {

void TSVGReferenceListener::Listen(TSVGElement &Listener, TSVGElement *Target)
{
  Stop(Listener);
  if (!Target)
    return;
  Target->ChangeNotification(&Listener);
  FListened = Target;
}

void TSVGReferenceListener::Stop(TSVGElement &Listener)
{
  if (FListened && Listener.IsListeningTo(FListened))
    FListened->RemoveChangeNotification(&Listener);
  FListened = nullptr;
}

} // namespace vx
