#pragma once
// TPriorityList: objects kept in ascending order of a priority, equal priorities in the order they
// were added. The list does not own its objects.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"

#include <vector>

namespace vx {

class VX_EXPORT TPriorityList
{
public:
  void Add(TObject *Object, int Priority);
  int Count() const { return int(FItems.size()); }
  // Fails with EListError for an index out of range.
  TObject *Items(int Index) const;
  TObject *operator[](int Index) const { return Items(Index); }
  int Priorities(int Index) const;
  void Clear() { FItems.clear(); }

private:
  struct TItem
  {
    TObject *Object;
    int Priority;
  };
  const TItem &Item(int Index) const;
  std::vector<TItem> FItems;
};

} // namespace vx
