#pragma once
// TSet<E>: a set over a small enumeration, one machine word of bits, as the documented set types are.
#include "platform/rtl/VXExport.h"

#include <cstdint>
#include <initializer_list>
#include <type_traits>

namespace vx {

template <typename E, typename Word = std::uint64_t>
class VX_EXPORT TSet
{
  static_assert(std::is_enum_v<E>, "TSet holds enumeration values");

public:
  constexpr TSet() = default;
  constexpr TSet(E Value) : FBits(Bit(Value)) {}
  constexpr TSet(std::initializer_list<E> Values)
  {
    for (E Value : Values)
      FBits |= Bit(Value);
  }
  static constexpr TSet FromBits(Word Bits)
  {
    TSet Result;
    Result.FBits = Bits;
    return Result;
  }

  constexpr bool Contains(E Value) const { return (FBits & Bit(Value)) != 0; }
  constexpr void Include(E Value) { FBits |= Bit(Value); }
  constexpr void Exclude(E Value) { FBits &= ~Bit(Value); }
  constexpr bool Empty() const { return FBits == 0; }
  constexpr Word Bits() const { return FBits; }

  constexpr TSet operator|(TSet Other) const { return FromBits(FBits | Other.FBits); }
  constexpr TSet operator&(TSet Other) const { return FromBits(FBits & Other.FBits); }
  constexpr TSet operator-(TSet Other) const { return FromBits(FBits & ~Other.FBits); }
  constexpr TSet &operator|=(TSet Other) { FBits |= Other.FBits; return *this; }
  constexpr TSet &operator&=(TSet Other) { FBits &= Other.FBits; return *this; }
  constexpr TSet &operator-=(TSet Other) { FBits &= ~Other.FBits; return *this; }
  constexpr bool operator==(const TSet &) const = default;
  // True when every member of Other is a member of this set.
  constexpr bool ContainsAll(TSet Other) const { return (FBits & Other.FBits) == Other.FBits; }

private:
  static constexpr Word Bit(E Value) { return Word(1) << static_cast<unsigned>(Value); }
  Word FBits = 0;
};

} // namespace vx
