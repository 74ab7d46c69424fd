#pragma once
// A published sub-object that the binary component stream writes as a collection: each item's
// properties as one list, behind the collection marker.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"

namespace vx {

class VX_EXPORT TStreamedCollection
{
public:
  virtual ~TStreamedCollection() = default;
  virtual int StreamedCount() const = 0;
  virtual const TPersistent &StreamedItem(int Index) const = 0;
  // Reading: the old items go, each new one is added before its properties are read, and the
  // collection hears when the last one is complete.
  virtual void StreamedClear() = 0;
  virtual TPersistent &StreamedAdd() = 0;
  virtual void StreamedLoaded() {}
};

} // namespace vx
