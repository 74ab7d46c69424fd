#pragma once
// The hash tables the document rests on.
//
// TVXDictionary<K,V> is an open-addressing table: one array of slots (capacity 0 or a power of two,
// at least 4), linear probing from the home slot `Hash and (Capacity - 1)`, growth to twice the size
// when the count reaches 3/4 of the capacity, and removal by shifting the rest of the probe run
// back, so that no tombstones exist. A slot whose hash code is -1 is free. Enumeration runs in slot
// order, which is the order of the table, not of insertion.
//
// TVXHashTable<K,V> adds a change event, update nesting and fast forward access by index;
// TVXStringHashTable<V> string keys and unique names; TVXStringObjectHashTable<V> object values.
// No table owns its values: an owner frees them from its value notification.
#include "platform/common/VXCollections.h"
#include "platform/rtl/VXClasses.h"
#include "platform/rtl/VXExceptions.h"
#include "platform/rtl/VXStringList.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <cstdint>
#include <functional>
#include <type_traits>
#include <utility>
#include <vector>

namespace vx {

// The hash of a string's UTF-16 code units, case-sensitive and the same on every run.
int VXStringHash(const QString &S);
// How far a search for a unique name got: the last candidate and its counter.
struct TVXUniqueNameProgress
{
  QString Suffix;
  QString Candidate;
  int Counter = 0;
};
// Name, or Name extended by Suffix (and a counter) until Exists says no; see GetUniqueName. With
// Progress the search resumes at the candidate where an earlier one for the same Name ended, and
// leaves the candidate it returns there.
QString VXUniqueName(const QString &Name, const QString &Suffix,
                     const std::function<bool(const QString &)> &Exists, TVXUniqueNameProgress *Progress = nullptr);
// Copies the Name=Value lines of Strings into a table through Put.
void VXAssignNameValues(const TStrings &Strings,
                        const std::function<void(const QString &, const QString &)> &Put);

template <typename K>
struct TVXEqualityComparer
{
  std::function<bool(const K &, const K &)> Equals;
  std::function<int(const K &)> GetHashCode;

  static TVXEqualityComparer Default()
  {
    if constexpr (std::is_same_v<K, QString>)
      return {[](const QString &A, const QString &B) { return A == B; }, &VXStringHash};
    else
      return {[](const K &A, const K &B) { return A == B; },
              [](const K &Key) { return int(std::hash<K>{}(Key)); }};
  }
};

template <typename K, typename V>
class TVXDictionary : public TPersistent
{
public:
  struct TItem
  {
    int HashCode = -1;
    K Key{};
    V Value{};
  };
  using TPair = std::pair<K, V>;

  explicit TVXDictionary(int Capacity = 0,
                         TVXEqualityComparer<K> Comparer = TVXEqualityComparer<K>::Default())
    : FComparer(std::move(Comparer))
  {
    if (Capacity < 0)
      throw EArgumentOutOfRangeException(QStringLiteral("Argument out of range"));
    SetCapacity(Capacity);
  }
  // Sends no notifications: an owner that keeps its values alive through them clears first.
  ~TVXDictionary() override = default;

  QString ClassName() const override { return QStringLiteral("TVXDictionary"); }

  int Count() const { return FCount; }
  int Capacity() const { return int(FItems.size()); }
  int GrowThreshold() const { return FGrowThreshold; }
  // N under the count fails; 0 stays 0, otherwise the smallest power of two at least N and 4.
  void SetCapacity(int N)
  {
    if (N < FCount)
      throw EArgumentOutOfRangeException(QStringLiteral("Argument out of range"));
    int Size = 0;
    if (N > 0) {
      Size = 4;
      while (Size < N)
        Size *= 2;
    }
    Rehash(Size);
  }
  void TrimExcess() { SetCapacity(FCount); }

  // The hash the table files Key under; never -1.
  int Hash(const K &Key) const
  {
    return int(((std::uint32_t(FComparer.GetHashCode(Key)) & 0x7FFFFFFFu) + 1) & 0x7FFFFFFFu);
  }

  // Fails with EListError for a key already present, and leaves the table as it was.
  void Add(const K &Key, const V &Value)
  {
    const int HashCode = Hash(Key);
    if (GetBucketIndex(Key, HashCode) >= 0)
      DuplicateError();
    if (FCount >= FGrowThreshold)
      Grow();
    DoAdd(~GetBucketIndex(Key, HashCode), HashCode, Key, Value);
  }
  void AddOrSetValue(const K &Key, const V &Value)
  {
    const int HashCode = Hash(Key);
    const int Index = GetBucketIndex(Key, HashCode);
    if (Index >= 0)
      DoSetValue(Index, Value);
    else
      Add(Key, Value);
  }
  void Remove(const K &Key) { DoRemove(Key, Hash(Key), cnRemoved); }
  // Takes the pair out without ending the value's life; a pair of defaults when Key is absent.
  TPair ExtractPair(const K &Key)
  {
    const int Index = GetBucketIndex(Key, Hash(Key));
    if (Index < 0)
      return TPair(Key, V{});
    TPair Result(FItems[Index].Key, FItems[Index].Value);
    DoRemove(Key, FItems[Index].HashCode, cnExtracted);
    return Result;
  }
  // Empties the table to capacity 0 first, then tells of every pair's removal in slot order.
  virtual void Clear()
  {
    std::vector<TItem> Old;
    Old.swap(FItems);
    FCount = 0;
    FGrowThreshold = 0;
    for (TItem &Item : Old)
      if (Item.HashCode != -1) {
        KeyNotify(Item.Key, cnRemoved);
        ValueNotify(Item.Value, cnRemoved);
      }
  }

  bool TryGetValue(const K &Key, V &Value) const
  {
    const int Index = GetBucketIndex(Key, Hash(Key));
    if (Index < 0)
      return false;
    Value = FItems[Index].Value;
    return true;
  }
  bool ContainsKey(const K &Key) const { return GetBucketIndex(Key, Hash(Key)) >= 0; }
  bool ContainsValue(const V &Value) const
  {
    for (const TItem &Item : FItems)
      if (Item.HashCode != -1 && Item.Value == Value)
        return true;
    return false;
  }
  // The value under Key; EListError when it is absent. SetItems changes a present key only.
  V Items(const K &Key) const
  {
    const int Index = GetBucketIndex(Key, Hash(Key));
    if (Index < 0)
      NotFoundError();
    return FItems[Index].Value;
  }
  void SetItems(const K &Key, const V &Value)
  {
    const int Index = GetBucketIndex(Key, Hash(Key));
    if (Index < 0)
      NotFoundError();
    DoSetValue(Index, Value);
  }

  std::vector<TPair> ToArray() const
  {
    std::vector<TPair> Result;
    Result.reserve(FCount);
    for (const TItem &Item : FItems)
      if (Item.HashCode != -1)
        Result.emplace_back(Item.Key, Item.Value);
    return Result;
  }
  std::vector<K> Keys() const
  {
    std::vector<K> Result;
    for (const TItem &Item : FItems)
      if (Item.HashCode != -1)
        Result.push_back(Item.Key);
    return Result;
  }
  std::vector<V> Values() const
  {
    std::vector<V> Result;
    for (const TItem &Item : FItems)
      if (Item.HashCode != -1)
        Result.push_back(Item.Value);
    return Result;
  }

  // Enumerates the used slots in slot order, as items with Key and Value.
  class const_iterator
  {
  public:
    const_iterator(const std::vector<TItem> &Items, std::size_t Index) : FItems(&Items), FIndex(Index)
    {
      Skip();
    }
    const TItem &operator*() const { return (*FItems)[FIndex]; }
    const TItem *operator->() const { return &(*FItems)[FIndex]; }
    const_iterator &operator++()
    {
      ++FIndex;
      Skip();
      return *this;
    }
    bool operator==(const const_iterator &Other) const { return FIndex == Other.FIndex; }

  private:
    void Skip()
    {
      while (FIndex < FItems->size() && (*FItems)[FIndex].HashCode == -1)
        ++FIndex;
    }
    const std::vector<TItem> *FItems;
    std::size_t FIndex;
  };
  const_iterator begin() const { return const_iterator(FItems, 0); }
  const_iterator end() const { return const_iterator(FItems, FItems.size()); }

  // Copies the pairs of a table of the same kind, after clearing this one.
  void Assign(const TPersistent *Source) override
  {
    if (auto *Table = dynamic_cast<const TVXDictionary<K, V> *>(Source)) {
      if (Table == this)
        return;
      Clear();
      for (const TItem &Item : *Table)
        AddOrSetValue(Item.Key, Item.Value);
      return;
    }
    TPersistent::Assign(Source);
  }

  TCollectionNotifyEvent<K> OnKeyNotify;
  TCollectionNotifyEvent<V> OnValueNotify;

protected:
  // The slot of Key, or the complement of the free slot where it would go; the lowest integer for
  // a table without slots, and for a full table that lacks the key.
  int GetBucketIndex(const K &Key, int HashCode) const
  {
    const int Length = Capacity();
    if (Length == 0)
      return INT32_MIN;
    int Index = HashCode & (Length - 1);
    for (int Probes = 0; Probes < Length; ++Probes) {
      const TItem &Item = FItems[Index];
      if (Item.HashCode == -1)
        return ~Index;
      if (Item.HashCode == HashCode && FComparer.Equals(Item.Key, Key))
        return Index;
      Index = (Index + 1) & (Length - 1);
    }
    return INT32_MIN;
  }

  virtual void DoAdd(int Index, int HashCode, const K &Key, const V &Value)
  {
    FItems[Index] = TItem{HashCode, Key, Value};
    ++FCount;
    KeyNotify(Key, cnAdded);
    ValueNotify(Value, cnAdded);
  }
  virtual void DoSetValue(int Index, const V &Value)
  {
    const V Old = FItems[Index].Value;
    FItems[Index].Value = Value;
    ValueNotify(Old, cnRemoved);
    ValueNotify(Value, cnAdded);
  }
  // Frees Key's slot and closes the probe run behind it by shifting back every entry whose home
  // slot does not lie between the gap and the entry's own slot. Returns false when Key is absent.
  virtual bool DoRemove(const K &Key, int HashCode, TCollectionNotification Action)
  {
    int Gap = GetBucketIndex(Key, HashCode);
    if (Gap < 0)
      return false;
    const K OldKey = FItems[Gap].Key;
    const V OldValue = FItems[Gap].Value;
    const int Mask = Capacity() - 1;
    for (int Index = (Gap + 1) & Mask; FItems[Index].HashCode != -1; Index = (Index + 1) & Mask) {
      const int Home = FItems[Index].HashCode & Mask;
      if (!InCircularRange(Gap, Home, Index)) {
        FItems[Gap] = std::move(FItems[Index]);
        Gap = Index;
      }
    }
    FItems[Gap] = TItem();
    --FCount;
    KeyNotify(OldKey, Action);
    ValueNotify(OldValue, Action);
    return true;
  }

  virtual void KeyNotify(const K &Key, TCollectionNotification Action)
  {
    if (OnKeyNotify)
      OnKeyNotify(this, Key, Action);
  }
  virtual void ValueNotify(const V &Value, TCollectionNotification Action)
  {
    if (OnValueNotify)
      OnValueNotify(this, Value, Action);
  }

  const std::vector<TItem> &Slots() const { return FItems; }

  [[noreturn]] static void DuplicateError() { throw EListError(QStringLiteral("Duplicates not allowed")); }
  [[noreturn]] static void NotFoundError() { throw EListError(QStringLiteral("Item not found")); }

private:
  // True when Item lies in the circular range from Bottom + 1 up to and including TopInc.
  static bool InCircularRange(int Bottom, int Item, int TopInc)
  {
    return (Bottom < Item && Item <= TopInc) || (TopInc < Bottom && Item > Bottom) ||
           (TopInc < Bottom && Item <= TopInc);
  }

  void Grow() { Rehash(Capacity() == 0 ? 4 : Capacity() * 2); }

  // Re-files every entry by its stored hash into N slots, without notifications.
  void Rehash(int N)
  {
    if (N == Capacity())
      return;
    std::vector<TItem> Old(N);
    Old.swap(FItems);
    FGrowThreshold = (N >> 1) + (N >> 2);
    for (TItem &Item : Old)
      if (Item.HashCode != -1) {
        int Index = Item.HashCode & (N - 1);
        while (FItems[Index].HashCode != -1)
          Index = (Index + 1) & (N - 1);
        FItems[Index] = std::move(Item);
      }
  }

  int FCount = 0;
  TVXEqualityComparer<K> FComparer;
  int FGrowThreshold = 0;
  std::vector<TItem> FItems;
};

template <typename K, typename V>
class TVXHashTable : public TVXDictionary<K, V>
{
  using TBase = TVXDictionary<K, V>;

public:
  using typename TBase::TItem;
  using typename TBase::TPair;
  using TBase::TBase;

  QString ClassName() const override { return QStringLiteral("TVXHashTable"); }

  // While updates are open OnChange stays silent; closing the last sends one change.
  void BeginUpdate() { ++FUpdating; }
  void EndUpdate()
  {
    if (--FUpdating == 0)
      Change();
  }
  bool Updating() const { return FUpdating > 0; }

  bool IsEmpty() const { return this->Count() == 0; }
  // The value under Key, or a default value when it is absent.
  V Get(const K &Key) const
  {
    V Value{};
    this->TryGetValue(Key, Value);
    return Value;
  }
  // Stores Value under Key and returns what was there before (a default value if nothing was).
  V Put(const K &Key, const V &Value)
  {
    V Previous{};
    this->TryGetValue(Key, Previous);
    this->AddOrSetValue(Key, Value);
    return Previous;
  }
  bool ContainsItem(const V &Value) const { return this->ContainsValue(Value); }

  // Indexed access in enumeration order. A forward run costs no more than one enumeration.
  const TItem &PairByIndex(int Index) const
  {
    if (Index < 0 || Index >= this->Count())
      throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
    const auto &Items = this->Slots();
    int Position = 0, Slot = 0;
    if (FCachedIndex >= 0 && FCachedIndex <= Index) {
      Position = FCachedIndex;
      Slot = FCachedItemIndex;
    }
    for (;; ++Slot)
      if (Items[Slot].HashCode != -1 && Position++ == Index)
        break;
    FCachedIndex = Index;
    FCachedItemIndex = Slot;
    return Items[Slot];
  }
  V ItemByIndex(int Index) const { return PairByIndex(Index).Value; }
  K KeyByIndex(int Index) const { return PairByIndex(Index).Key; }

  void Clear() override
  {
    TBase::Clear();
    ClearCache();
    Change();
  }

  TNotifyEvent OnChange;

protected:
  void DoAdd(int Index, int HashCode, const K &Key, const V &Value) override
  {
    TBase::DoAdd(Index, HashCode, Key, Value);
    ClearCache();
    Change();
  }
  void DoSetValue(int Index, const V &Value) override
  {
    TBase::DoSetValue(Index, Value);
    ClearCache();
    Change();
  }
  bool DoRemove(const K &Key, int HashCode, TCollectionNotification Action) override
  {
    if (!TBase::DoRemove(Key, HashCode, Action))
      return false;
    ClearCache();
    Change();
    return true;
  }

  virtual void Change()
  {
    if (FUpdating <= 0 && OnChange)
      OnChange(this);
  }
  void ClearCache() const
  {
    FCachedIndex = -1;
    FCachedItemIndex = -1;
  }

private:
  int FUpdating = 0;
  mutable int FCachedIndex = -1;
  mutable int FCachedItemIndex = -1;
};

template <typename V>
class TVXStringHashTable : public TVXHashTable<QString, V>
{
  using TBase = TVXHashTable<QString, V>;

public:
  using TBase::TBase;

  QString ClassName() const override { return QStringLiteral("TVXStringHashTable"); }

  // Name when it is free, else Name with a blank and Suffix, then " (1)", " (2)" ... Each round cuts
  // at the first Suffix and keeps the blank before it, so the blanks grow by one per round:
  // "a", "a Copy", "a  Copy (1)", "a   Copy (2)".
  // While nothing is removed every candidate found taken stays taken, so a later search for the same
  // Name resumes where the last one ended: many copies of one name cost no rescans.
  QString GetUniqueName(const QString &Name, const QString &Suffix) const
  {
    FProgressSuffixes.insert(Suffix);
    return VXUniqueName(Name, Suffix, [this](const QString &Key) { return this->ContainsKey(Key); },
                        &FUniqueNameProgress[Name]);
  }
  // The enumeration index of Key, or -1.
  int Indices(const QString &Key) const
  {
    int Index = 0;
    for (const auto &Item : *this) {
      if (Item.Key == Key)
        return Index;
      ++Index;
    }
    return -1;
  }

  // A table of texts also takes the Name=Value lines of a string list.
  void Assign(const TPersistent *Source) override
  {
    if constexpr (std::is_same_v<V, QString>)
      if (auto *Strings = dynamic_cast<const TStrings *>(Source)) {
        this->BeginUpdate();
        try {
          this->Clear();
          VXAssignNameValues(*Strings, [this](const QString &N, const QString &Value) {
            this->AddOrSetValue(N, Value);
          });
        } catch (...) {
          this->EndUpdate();
          throw;
        }
        this->EndUpdate();
        return;
      }
    TBase::Assign(Source);
  }
  void Clear() override
  {
    FUniqueNameProgress.clear();
    FProgressSuffixes.clear();
    TBase::Clear();
  }

protected:
  bool DoRemove(const QString &Key, int HashCode, TCollectionNotification Action) override
  {
    if (!TBase::DoRemove(Key, HashCode, Action))
      return false;
    ForgetProgressThrough(Key);
    return true;
  }

private:
  // A search for Name only tries Name and names holding its suffix, so freeing another key leaves
  // the progress of every search valid.
  void ForgetProgressThrough(const QString &Key)
  {
    FUniqueNameProgress.remove(Key);
    for (const QString &Suffix : FProgressSuffixes)
      if (Key.contains(Suffix)) {
        FUniqueNameProgress.clear();
        FProgressSuffixes.clear();
        return;
      }
  }

  // Per name, where the last unique-name search ended, and the suffixes those searches used.
  mutable QHash<QString, TVXUniqueNameProgress> FUniqueNameProgress;
  mutable QSet<QString> FProgressSuffixes;
};

template <typename V>
class TVXStringObjectHashTable : public TVXStringHashTable<V *>
{
  using TBase = TVXStringHashTable<V *>;

public:
  using TBase::TBase;

  QString ClassName() const override { return QStringLiteral("TVXStringObjectHashTable"); }

  // The object under Key, or nil.
  V *Elements(const QString &Key) const { return this->Get(Key); }
};

} // namespace vx
