#include "platform/rtl/VXPropInfo.h"

#include <algorithm>

namespace vx {

TPropertyTable::TPropertyTable(const TPropertyTable *Inherited, std::initializer_list<TPropInfo> Own)
{
  if (Inherited)
    FRows = Inherited->FRows;
  FRows.insert(FRows.end(), Own.begin(), Own.end());
}

const TPropInfo *TPropertyTable::Find(const QString &Name) const
{
  auto It = std::find_if(FRows.begin(), FRows.end(), [&Name](const TPropInfo &Info) { return Info.Name == Name; });
  return It == FRows.end() ? nullptr : &*It;
}

} // namespace vx
