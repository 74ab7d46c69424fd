#include "platform/common/VXPriorityList.h"

#include <algorithm>

namespace vx {

void TPriorityList::Add(TObject *Object, int Priority)
{
  // Behind every item of the same or a lower priority, so that ties keep the order of entry.
  const auto Place = std::upper_bound(FItems.begin(), FItems.end(), Priority,
                                      [](int P, const TItem &I) { return P < I.Priority; });
  FItems.insert(Place, TItem{Object, Priority});
}

const TPriorityList::TItem &TPriorityList::Item(int Index) const
{
  if (Index < 0 || Index >= Count())
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  return FItems[Index];
}

TObject *TPriorityList::Items(int Index) const
{
  return Item(Index).Object;
}

int TPriorityList::Priorities(int Index) const
{
  return Item(Index).Priority;
}

} // namespace vx
