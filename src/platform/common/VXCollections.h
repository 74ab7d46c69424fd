#pragma once
// What the containers tell their listeners when an item comes or goes.
#include "platform/rtl/VXClasses.h"

#include <cstdint>
#include <functional>

namespace vx {

// Removal ends the container's hold on an item (an owning container frees it); extraction hands
// the item back to the caller, who then owns it.
enum TCollectionNotification : std::uint8_t { cnAdded, cnRemoved, cnExtracted };

template <typename T>
using TCollectionNotifyEvent =
  std::function<void(TObject *Sender, const T &Item, TCollectionNotification Action)>;

} // namespace vx
