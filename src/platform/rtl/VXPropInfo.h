#pragma once
// Published properties: each class that publishes properties holds one static TPropertyTable
// (its parent class's table first, then its own rows) and answers it from PublishedProperties. A
// row names the property, its kind and type, and reads, writes and tells whether the value is to
// be stored, all through QVariant: integers and enumeration ordinals as int, floats as double,
// sets as their bits (qulonglong), strings as QString, sub-objects and component references as
// TPersistent pointers. The binary component stream, generated controls and copying walk these
// tables; nothing else needs reflection.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"
#include "platform/rtl/VXSet.h"

#include <QMetaType>
#include <QStringList>
#include <QVariant>

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <type_traits>
#include <utility>
#include <vector>

Q_DECLARE_METATYPE(vx::TPersistent *)

namespace vx {

enum TTypeKind : std::uint8_t { tkInteger, tkFloat, tkBoolean, tkString, tkEnumeration, tkSet, tkClass, tkComponent };

struct VX_EXPORT TPropInfo
{
  QString Name;
  TTypeKind Kind = tkInteger;
  QString TypeName;
  // The names of the values of an enumeration, or of the members of a set, by ordinal.
  QStringList ValueNames;
  std::function<QVariant(const TPersistent &)> Get;
  // Empty for a sub-object, which is written into through its own table or Assign.
  std::function<void(TPersistent &, const QVariant &)> Set;
  // Empty: always stored.
  std::function<bool(const TPersistent &)> Stored;

  bool IsStored(const TPersistent &Instance) const { return !Stored || Stored(Instance); }
  // The name of an enumeration value (empty when out of range).
  QString ValueName(int Ordinal) const { return ValueNames.value(Ordinal); }
};

class VX_EXPORT TPropertyTable
{
public:
  TPropertyTable(const TPropertyTable *Inherited, std::initializer_list<TPropInfo> Own);

  int Count() const { return int(FRows.size()); }
  const TPropInfo &operator[](int Index) const { return FRows.at(std::size_t(Index)); }
  // Nil when no row has that name (compared exactly).
  const TPropInfo *Find(const QString &Name) const;
  std::vector<TPropInfo>::const_iterator begin() const { return FRows.begin(); }
  std::vector<TPropInfo>::const_iterator end() const { return FRows.end(); }

private:
  std::vector<TPropInfo> FRows;
};

// --- conversions between property values and QVariant ---

template <typename V>
QVariant ToPropVariant(const V &Value)
{
  if constexpr (std::is_enum_v<V>)
    return QVariant(int(Value));
  else if constexpr (std::is_floating_point_v<V>)
    return QVariant(double(Value));
  else if constexpr (requires { Value.Bits(); })
    return QVariant(qulonglong(Value.Bits()));
  else
    return QVariant::fromValue(Value);
}

template <typename V>
V FromPropVariant(const QVariant &Value)
{
  if constexpr (std::is_enum_v<V>)
    return V(Value.toInt());
  else if constexpr (std::is_floating_point_v<V>)
    return V(Value.toDouble());
  else if constexpr (requires { V::FromBits(0); })
    return V::FromBits(decltype(V().Bits())(Value.toULongLong()));
  else
    return Value.value<V>();
}

// A row for a value property of class C read by Getter and written by Setter (member functions).
// Stored is a predicate on C; without one the value is always stored.
template <typename C, typename G, typename S>
TPropInfo PublishedValue(const QString &Name, TTypeKind Kind, const QString &TypeName, G Getter, S Setter,
                         std::function<bool(const C &)> Stored = {}, const QStringList &ValueNames = {})
{
  using V = std::decay_t<std::invoke_result_t<G, const C &>>;
  TPropInfo Info;
  Info.Name = Name;
  Info.Kind = Kind;
  Info.TypeName = TypeName;
  Info.ValueNames = ValueNames;
  Info.Get = [Getter](const TPersistent &Instance) {
    return ToPropVariant<V>(std::invoke(Getter, static_cast<const C &>(Instance)));
  };
  Info.Set = [Setter](TPersistent &Instance, const QVariant &Value) {
    std::invoke(Setter, static_cast<C &>(Instance), FromPropVariant<V>(Value));
  };
  if (Stored)
    Info.Stored = [Stored](const TPersistent &Instance) { return Stored(static_cast<const C &>(Instance)); };
  return Info;
}

// A stored-when predicate: the value differs from Default.
template <typename C, typename G, typename V>
std::function<bool(const C &)> StoredUnless(G Getter, V Default)
{
  return [Getter, Default](const C &Instance) { return !(std::invoke(Getter, Instance) == Default); };
}

// A row for a sub-object that the instance owns (a transform, a string list): Getter answers a
// reference to it, and a reader assigns into it.
template <typename C, typename G>
TPropInfo PublishedObject(const QString &Name, const QString &TypeName, G Getter,
                          std::function<bool(const C &)> Stored = {})
{
  TPropInfo Info;
  Info.Name = Name;
  Info.Kind = tkClass;
  Info.TypeName = TypeName;
  Info.Get = [Getter](const TPersistent &Instance) {
    const TPersistent &Object = std::invoke(Getter, const_cast<C &>(static_cast<const C &>(Instance)));
    return QVariant::fromValue(const_cast<TPersistent *>(&Object));
  };
  if (Stored)
    Info.Stored = [Stored](const TPersistent &Instance) { return Stored(static_cast<const C &>(Instance)); };
  return Info;
}

// A row for a reference to another component (not owned), of type R.
template <typename C, typename R, typename G, typename S>
TPropInfo PublishedReference(const QString &Name, const QString &TypeName, G Getter, S Setter)
{
  TPropInfo Info;
  Info.Name = Name;
  Info.Kind = tkComponent;
  Info.TypeName = TypeName;
  Info.Get = [Getter](const TPersistent &Instance) {
    return QVariant::fromValue(static_cast<TPersistent *>(std::invoke(Getter, static_cast<const C &>(Instance))));
  };
  Info.Set = [Setter](TPersistent &Instance, const QVariant &Value) {
    std::invoke(Setter, static_cast<C &>(Instance), dynamic_cast<R *>(Value.value<TPersistent *>()));
  };
  Info.Stored = [Getter](const TPersistent &Instance) {
    return std::invoke(Getter, static_cast<const C &>(Instance)) != nullptr;
  };
  return Info;
}

} // namespace vx
