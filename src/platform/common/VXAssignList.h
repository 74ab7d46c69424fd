#pragma once
// TVXAssignList<T>: an ordered list of object pointers that tells a listener of every item that
// comes or goes, and that can own its items.
//
// An owning list frees an item when it is removed (Remove, Delete, Clear, replacement through
// SetItems, destruction) and never when it is extracted: Extract hands the item back to the
// caller. The listener hears of a removal before the item is freed. A listener may change the list
// while it is being told of an addition (for example extract a refused item and throw); the list
// holds no position across the call.
#include "platform/rtl/VXExport.h"
#include "platform/common/VXCollections.h"
#include "platform/rtl/VXClasses.h"

#include <QString>

#include <utility>
#include <vector>

namespace vx {

template <typename T>
class VX_EXPORT TVXAssignList : public TPersistent
{
public:
  using TItems = std::vector<T *>;

  explicit TVXAssignList(bool OwnsObjects = false) : FOwnsObjects(OwnsObjects) {}
  // Frees owned items without telling the listener: the owner is going away.
  ~TVXAssignList() override
  {
    if (FOwnsObjects)
      for (T *Item : FItems)
        delete Item;
  }

  QString ClassName() const override { return QStringLiteral("TVXAssignList"); }

  bool OwnsObjects() const { return FOwnsObjects; }
  void SetOwnsObjects(bool Value) { FOwnsObjects = Value; }

  int Count() const { return int(FItems.size()); }
  bool IsEmpty() const { return FItems.empty(); }
  T *Items(int Index) const { return FItems[CheckIndex(Index)]; }
  T *operator[](int Index) const { return Items(Index); }
  // Replaces the item at Index; the old one is removed (and freed by an owning list).
  void SetItems(int Index, T *Item)
  {
    T *Old = FItems[CheckIndex(Index)];
    FItems[Index] = Item;
    Notify(Old, cnRemoved);
    Notify(Item, cnAdded);
  }
  T *First() const { return Items(0); }
  T *Last() const { return Items(Count() - 1); }

  int Add(T *Item)
  {
    FItems.push_back(Item);
    const int Index = Count() - 1;
    Notify(Item, cnAdded);
    return Index;
  }
  void Insert(int Index, T *Item)
  {
    if (Index < 0 || Index > Count())
      IndexError(Index);
    FItems.insert(FItems.begin() + Index, Item);
    Notify(Item, cnAdded);
  }
  int IndexOf(const T *Item) const
  {
    for (std::size_t I = 0; I < FItems.size(); ++I)
      if (FItems[I] == Item)
        return int(I);
    return -1;
  }
  bool Contains(const T *Item) const { return IndexOf(Item) >= 0; }

  // Remove and Delete end the list's hold on the item; Remove returns its old index or -1.
  int Remove(const T *Item)
  {
    const int Index = IndexOf(Item);
    if (Index >= 0)
      Delete(Index);
    return Index;
  }
  void Delete(int Index)
  {
    T *Item = FItems[CheckIndex(Index)];
    FItems.erase(FItems.begin() + Index);
    Notify(Item, cnRemoved);
  }
  // Takes Item out without freeing it; nil when it is not in the list.
  T *Extract(const T *Item)
  {
    const int Index = IndexOf(Item);
    if (Index < 0)
      return nullptr;
    T *Found = FItems[Index];
    FItems.erase(FItems.begin() + Index);
    Notify(Found, cnExtracted);
    return Found;
  }
  // Empties the list first, then tells of each removal in the old order.
  void Clear()
  {
    TItems Old;
    Old.swap(FItems);
    for (T *Item : Old)
      Notify(Item, cnRemoved);
  }
  void Move(int CurIndex, int NewIndex)
  {
    T *Item = FItems[CheckIndex(CurIndex)];
    CheckIndex(NewIndex);
    FItems.erase(FItems.begin() + CurIndex);
    FItems.insert(FItems.begin() + NewIndex, Item);
  }
  void Exchange(int Index1, int Index2) { std::swap(FItems[CheckIndex(Index1)], FItems[CheckIndex(Index2)]); }

  typename TItems::const_iterator begin() const { return FItems.begin(); }
  typename TItems::const_iterator end() const { return FItems.end(); }

  // Copies the item pointers of another list of the same kind, after clearing this one. The items
  // are shared, so at most one of the two lists may own them.
  void Assign(const TPersistent *Source) override
  {
    if (auto *List = dynamic_cast<const TVXAssignList<T> *>(Source)) {
      if (List == this)
        return;
      Clear();
      for (T *Item : List->FItems)
        Add(Item);
      return;
    }
    TPersistent::Assign(Source);
  }

  TCollectionNotifyEvent<T *> OnNotify;

protected:
  // Tells the listener, then frees a removed item when the list owns its items.
  virtual void Notify(T *Item, TCollectionNotification Action)
  {
    if (OnNotify)
      OnNotify(this, Item, Action);
    if (FOwnsObjects && Action == cnRemoved)
      delete Item;
  }

private:
  int CheckIndex(int Index) const
  {
    if (Index < 0 || Index >= Count())
      IndexError(Index);
    return Index;
  }
  [[noreturn]] static void IndexError(int Index)
  {
    throw EArgumentOutOfRangeException(QStringLiteral("Argument out of range (index %1)").arg(Index));
  }

  TItems FItems;
  bool FOwnsObjects;
};

} // namespace vx
