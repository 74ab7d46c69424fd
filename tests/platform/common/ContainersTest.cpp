#include "platform/common/VXAssignList.h"
#include "platform/common/VXDictionary.h"
#include "platform/common/VXPriorityList.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

using namespace vx;

namespace {

// Keys written "name@home" land on slot `home` (of a table of at least home + 1 slots); other keys
// hash as usual. This lays out collision runs at will.
TVXEqualityComparer<QString> HomeComparer()
{
  auto Comparer = TVXEqualityComparer<QString>::Default();
  Comparer.GetHashCode = [](const QString &Key) {
    const qsizetype At = Key.indexOf(QLatin1Char('@'));
    return At < 0 ? VXStringHash(Key) : Key.mid(At + 1).toInt() - 1;
  };
  return Comparer;
}

QStringList KeysInOrder(const TVXDictionary<QString, int> &Table)
{
  QStringList Result;
  for (const auto &Item : Table)
    Result.append(Item.Key);
  return Result;
}

struct TCounted : TObject
{
  explicit TCounted(int &Alive) : FAlive(Alive) { ++FAlive; }
  ~TCounted() override { --FAlive; }
  int &FAlive;
};

} // namespace

TEST(Dictionary, RemovalClosesCollisionRuns)
{
  struct Case { const char *Name; QStringList Keys; const char *Removed; QStringList Order; };
  const Case Cases[] = {
    {"middle of a run", {"a@3", "b@3", "c@3", "d@4", "e@7"}, "b@3", {"a@3", "c@3", "d@4", "e@7"}},
    {"head of a run", {"a@3", "b@3", "c@4"}, "a@3", {"b@3", "c@4"}},
    {"end of a run", {"a@3", "b@3", "c@3"}, "c@3", {"a@3", "b@3"}},
    {"entry at home stays", {"a@2", "b@2", "c@4", "d@4"}, "a@2", {"b@2", "c@4", "d@4"}},
    {"run across the end", {"x@7", "y@7", "z@0"}, "x@7", {"z@0", "y@7"}},
    {"wrapped entry at home", {"x@6", "y@6", "z@7", "w@0"}, "y@6", {"w@0", "x@6", "z@7"}},
    {"absent key", {"a@1", "b@1"}, "c@1", {"a@1", "b@1"}},
  };
  for (const Case &C : Cases) {
    TVXDictionary<QString, int> Table(8, HomeComparer());
    for (int I = 0; I < C.Keys.size(); ++I)
      Table.Add(C.Keys[I], I);
    Table.Remove(QString::fromLatin1(C.Removed));
    EXPECT_EQ(KeysInOrder(Table), C.Order) << C.Name;
    EXPECT_EQ(Table.Count(), C.Order.size()) << C.Name;
    for (const QString &Key : C.Order)
      EXPECT_EQ(Table.Items(Key), C.Keys.indexOf(Key)) << C.Name << " " << Key.toStdString();
    EXPECT_FALSE(Table.ContainsKey(QString::fromLatin1(C.Removed))) << C.Name;
  }
}

TEST(Dictionary, RandomOperationsAgreeWithAMap)
{
  // Five home slots for up to 64 keys: long runs that wrap, and removals everywhere in them.
  auto Comparer = TVXEqualityComparer<QString>::Default();
  Comparer.GetHashCode = [](const QString &Key) { return Key.toInt() % 5; };
  TVXDictionary<QString, int> Table(0, Comparer);
  std::map<int, int> Reference;
  std::mt19937 Random(7);
  for (int Step = 0; Step < 5000; ++Step) {
    const int Key = int(Random() % 64);
    const QString Name = QString::number(Key);
    if (Random() % 3 == 0) {
      Table.Remove(Name);
      Reference.erase(Key);
    } else {
      Table.AddOrSetValue(Name, Step);
      Reference[Key] = Step;
    }
    ASSERT_EQ(Table.Count(), int(Reference.size())) << Step;
    for (int Probe = 0; Probe < 64; ++Probe) {
      int Value = -1;
      const bool Found = Table.TryGetValue(QString::number(Probe), Value);
      const auto It = Reference.find(Probe);
      ASSERT_EQ(Found, It != Reference.end()) << "step " << Step << " key " << Probe;
      if (Found) {
        ASSERT_EQ(Value, It->second);
      }
    }
  }
}

TEST(Dictionary, GrowthAndCapacity)
{
  struct Case { int Adds; int Capacity; int Threshold; };
  const Case Cases[] = {{0, 0, 0}, {1, 4, 3}, {3, 4, 3}, {4, 8, 6}, {6, 8, 6}, {7, 16, 12}, {13, 32, 24}};
  for (const Case &C : Cases) {
    TVXDictionary<QString, int> Table;
    for (int I = 0; I < C.Adds; ++I)
      Table.Add(QString::number(I), I);
    EXPECT_EQ(Table.Capacity(), C.Capacity) << C.Adds;
    EXPECT_EQ(Table.GrowThreshold(), C.Threshold) << C.Adds;
    for (int I = 0; I < C.Adds; ++I)
      EXPECT_EQ(Table.Items(QString::number(I)), I);
  }

  TVXDictionary<QString, int> Table(5);
  EXPECT_EQ(Table.Capacity(), 8);
  for (int I = 0; I < 4; ++I)
    Table.Add(QString::number(I), I);
  EXPECT_THROW(Table.SetCapacity(3), EArgumentOutOfRangeException);
  Table.TrimExcess();
  EXPECT_EQ(Table.Capacity(), 4) << "a full table";
  EXPECT_FALSE(Table.ContainsKey(QStringLiteral("absent")));
  Table.Add(QStringLiteral("4"), 4);
  EXPECT_EQ(Table.Capacity(), 8);
}

TEST(Dictionary, DuplicateAddLeavesTheTableUnchanged)
{
  TVXDictionary<QString, int> Table;
  int Notifications = 0;
  Table.OnKeyNotify = [&](TObject *, const QString &, TCollectionNotification) { ++Notifications; };
  for (int I = 0; I < 3; ++I)
    Table.Add(QString::number(I), I);
  const QStringList Before = KeysInOrder(Table);
  Notifications = 0;
  EXPECT_THROW(Table.Add(QStringLiteral("1"), 99), EListError);
  EXPECT_EQ(Table.Capacity(), 4) << "no growth for a refused key, though the table is at its threshold";
  EXPECT_EQ(Table.Count(), 3);
  EXPECT_EQ(Table.Items(QStringLiteral("1")), 1);
  EXPECT_EQ(KeysInOrder(Table), Before);
  EXPECT_EQ(Notifications, 0);
}

TEST(Dictionary, NotificationsAndOwnershipByTheListener)
{
  TVXStringObjectHashTable<TCounted> Table;
  int Alive = 0;
  QStringList Log;
  Table.OnValueNotify = [&](TObject *, TCounted *const &Value, TCollectionNotification Action) {
    Log.append(QString::number(int(Action)));
    if (Action == cnRemoved)
      delete Value;
  };
  Table.Add(QStringLiteral("a"), new TCounted(Alive));
  Table.Add(QStringLiteral("b"), new TCounted(Alive));
  Table.AddOrSetValue(QStringLiteral("a"), new TCounted(Alive));
  EXPECT_EQ(Alive, 2) << "the replaced value was removed";
  EXPECT_EQ(Log, QStringList({"0", "0", "1", "0"}));

  TCounted *Kept = Table.ExtractPair(QStringLiteral("b")).second;
  ASSERT_NE(Kept, nullptr);
  EXPECT_EQ(Alive, 2) << "extraction does not end the value's life";
  EXPECT_EQ(Log.last(), QStringLiteral("2"));
  delete Kept;

  Table.Add(QStringLiteral("c"), new TCounted(Alive));
  EXPECT_EQ(Table.Elements(QStringLiteral("c"))->FAlive, 2);
  EXPECT_EQ(Table.Elements(QStringLiteral("missing")), nullptr);
  Table.Clear();
  EXPECT_EQ(Alive, 0) << "clearing tells of every removal";
  EXPECT_EQ(Table.Capacity(), 0);
}

TEST(HashTable, ChangesIndexedAccessAndUniqueNames)
{
  TVXStringHashTable<QString> Table;
  int Changes = 0;
  Table.OnChange = [&](TObject *) { ++Changes; };
  Table.BeginUpdate();
  for (const char *Key : {"a", "b", "c", "d", "e"})
    Table.Add(QString::fromLatin1(Key), QString::fromLatin1(Key).toUpper());
  EXPECT_EQ(Changes, 0);
  Table.EndUpdate();
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(Table.Put(QStringLiteral("a"), QStringLiteral("A2")), QStringLiteral("A"));
  EXPECT_EQ(Table.Put(QStringLiteral("f"), QStringLiteral("F")), QString());
  EXPECT_EQ(Changes, 3);

  // Indexed access walks the enumeration order, forward and backward alike.
  const QStringList Order = [&] {
    QStringList Keys;
    for (const auto &Item : Table)
      Keys.append(Item.Key);
    return Keys;
  }();
  for (int I = 0; I < Table.Count(); ++I)
    EXPECT_EQ(Table.KeyByIndex(I), Order[I]);
  for (int I = Table.Count() - 1; I >= 0; --I) {
    EXPECT_EQ(Table.KeyByIndex(I), Order[I]);
    EXPECT_EQ(Table.Indices(Order[I]), I);
  }
  Table.Remove(Order[0]);
  EXPECT_EQ(Table.KeyByIndex(0), Order[1]) << "the position cache follows changes";
  EXPECT_THROW(Table.ItemByIndex(Table.Count()), EListError);

  struct Case { QStringList Present; const char *Name; const char *Unique; };
  const Case Cases[] = {
    {{}, "a", "a"},
    {{"a"}, "a", "a Copy"},
    {{"a", "a Copy"}, "a", "a  Copy (1)"},
    {{"a", "a Copy", "a  Copy (1)"}, "a", "a   Copy (2)"},
    {{"a Copy"}, "a Copy", "a  Copy (1)"},
    {{"Copy"}, "Copy", " Copy (1)"},
  };
  for (const Case &C : Cases) {
    TVXStringHashTable<int> Names;
    for (const QString &Name : C.Present)
      Names.Add(Name, 0);
    EXPECT_EQ(Names.GetUniqueName(QString::fromLatin1(C.Name), QStringLiteral("Copy")),
              QString::fromLatin1(C.Unique)) << C.Name;
  }
  // Searches resume where the last one for the same name ended, until a copy is freed again.
  TVXStringHashTable<int> Names;
  Names.Add(QStringLiteral("a"), 0);
  Names.Add(QStringLiteral("b"), 0);
  for (int I = 0; I < 3; ++I)
    Names.Add(Names.GetUniqueName(QStringLiteral("a"), QStringLiteral("Copy")), 0);
  EXPECT_TRUE(Names.ContainsKey(QStringLiteral("a   Copy (2)")));
  Names.Remove(QStringLiteral("b"));
  EXPECT_EQ(Names.GetUniqueName(QStringLiteral("a"), QStringLiteral("Copy")), QStringLiteral("a    Copy (3)"));
  Names.Remove(QStringLiteral("a Copy"));
  EXPECT_EQ(Names.GetUniqueName(QStringLiteral("a"), QStringLiteral("Copy")), QStringLiteral("a Copy"));
}

TEST(HashTable, AssignFromTablesAndStringLists)
{
  TVXStringHashTable<QString> Source;
  Source.Add(QStringLiteral("fill"), QStringLiteral("red"));
  TVXStringHashTable<QString> Copy;
  Copy.Add(QStringLiteral("old"), QString());
  Copy.Assign(&Source);
  EXPECT_EQ(Copy.Count(), 1);
  EXPECT_EQ(Copy.Get(QStringLiteral("fill")), QStringLiteral("red"));

  TStringList Lines({"stroke=blue", "fill=green", "stroke=black"});
  Copy.Assign(&Lines);
  EXPECT_EQ(Copy.Count(), 2);
  EXPECT_EQ(Copy.Get(QStringLiteral("stroke")), QStringLiteral("black")) << "a later line wins";
  TStringList Foreign;
  EXPECT_THROW(TVXStringHashTable<int>().Assign(&Foreign), EConvertError);
}

TEST(AssignList, OwningListFreesOnRemovalNotOnExtraction)
{
  int Alive = 0;
  QStringList Log;
  {
    TVXAssignList<TCounted> List(true);
    List.OnNotify = [&](TObject *, TCounted *const &Item, TCollectionNotification Action) {
      // Told while the item is still alive, after the list has changed.
      Log.append(QStringLiteral("%1:%2:%3").arg(List.IndexOf(Item)).arg(int(Action)).arg(Item->FAlive));
    };
    TCounted *A = new TCounted(Alive), *B = new TCounted(Alive), *C = new TCounted(Alive);
    List.Add(A);
    List.Add(B);
    List.Insert(0, C);
    EXPECT_EQ(List.IndexOf(A), 1);
    EXPECT_EQ(List.Extract(B), B);
    EXPECT_EQ(List.Extract(B), nullptr);
    EXPECT_EQ(Alive, 3);
    List.Remove(A);
    EXPECT_EQ(Alive, 2);
    EXPECT_EQ(Log, QStringList({"0:0:3", "1:0:3", "0:0:3", "-1:2:3", "-1:1:3"}));
    delete B;
    List.Add(new TCounted(Alive));
    List.Clear();
    EXPECT_EQ(Alive, 0);
    List.OnNotify = nullptr;
    List.Add(new TCounted(Alive));
  }
  EXPECT_EQ(Alive, 0) << "an owning list frees what it still holds";
}

TEST(AssignList, RefusingAnItemFromTheListener)
{
  int Alive = 0;
  TVXAssignList<TCounted> List(true);
  TCounted Kept(Alive);
  List.OnNotify = [&](TObject *, TCounted *const &Item, TCollectionNotification Action) {
    if (Action == cnAdded && Item == &Kept) {
      List.Extract(Item);
      throw EInvalidOperation(QStringLiteral("refused"));
    }
  };
  List.Add(new TCounted(Alive));
  EXPECT_THROW(List.Add(&Kept), EInvalidOperation);
  EXPECT_EQ(List.Count(), 1);
  EXPECT_FALSE(List.Contains(&Kept));

  TVXAssignList<TCounted> View;
  View.Assign(&List);
  EXPECT_EQ(View.Count(), 1);
  EXPECT_EQ(View[0], List[0]);
  EXPECT_THROW(View.Items(1), EArgumentOutOfRangeException);
}

TEST(PriorityList, AscendingWithTiesInOrderOfEntry)
{
  TObject Objects[6];
  const int Priorities[] = {999, 10, 0, 10, 101, 0};
  TPriorityList List;
  for (int I = 0; I < 6; ++I)
    List.Add(&Objects[I], Priorities[I]);
  const int Expected[] = {2, 5, 1, 3, 4, 0};
  ASSERT_EQ(List.Count(), 6);
  for (int I = 0; I < 6; ++I) {
    EXPECT_EQ(List[I], &Objects[Expected[I]]) << I;
    EXPECT_EQ(List.Priorities(I), Priorities[Expected[I]]);
  }
  EXPECT_THROW(List.Items(6), EListError);
}
