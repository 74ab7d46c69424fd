#include "values/VXSVGLength.h"

#include "values/VXSVGNumbers.h"

#include <cmath>

namespace vx {

// --- TSVGLength ---------------------------------------------------------------------------------

TSVGLength::TSVGLength(float Value, bool IsPercent, TSVGUnit aUnit)
  : FDefaultIsPercent(IsPercent), FRaw(Value), FIsPercent(IsPercent), FUnit(aUnit)
{
}

TSVGUnitFactors TSVGLength::GetUnitFactors() const
{
  TSVGUnitFactors Factors = SVGUnitFactors;
  if (OnUnitFactors)
    OnUnitFactors(const_cast<TSVGLength *>(this), Factors);
  return Factors;
}

float TSVGLength::GetPixels() const
{
  return float(double(FRaw) * double(GetUnitFactors()[FUnit]));
}

void TSVGLength::SetPixels(float Value)
{
  const float New = float(double(Value) / double(GetUnitFactors()[FUnit]));
  // The old pixels are compared with the new raw number: for units with a factor of 1 this is the
  // plain change test, for others it reports a change more often than needed, which is harmless.
  if (GetPixels() == New)
    return;
  FRaw = New;
  Change();
}

float TSVGLength::GetAsUnit(TSVGUnit aUnit) const
{
  const TSVGUnitFactors Factors = GetUnitFactors();
  return float(double(FRaw) * double(Factors[FUnit]) / double(Factors[aUnit]));
}

void TSVGLength::SetAsUnit(TSVGUnit aUnit, float Value)
{
  FUnit = aUnit;
  FRaw = Value;
  FIsPercent = aUnit == suPercent;
  Change();
}

float TSVGLength::GetPercentValue(float Min, float Max) const
{
  return FIsPercent ? (Max - Min) * FRaw + Min : FRaw;
}

float TSVGLength::GetValue() const
{
  float Value = GetPixels();
  if (!FIsPercent)
    return Value;
  float Min = 0.0f;
  float Max = 1.0f;
  bool DoRange = true;
  if (OnRange)
    OnRange(const_cast<TSVGLength *>(this), Min, Max, DoRange);
  if (DoRange)
    Value = (Max - Min) * Value + Min;
  return Value;
}

void TSVGLength::SetValue(float Value)
{
  SetPixels(Value);
}

void TSVGLength::SetUnit(TSVGUnit aUnit)
{
  if (aUnit != FUnit)
    SetAsUnit(aUnit, GetAsUnit(aUnit));
}

void TSVGLength::SetRaw(float Value)
{
  if (FRaw == Value)
    return;
  FRaw = Value;
  Change();
}

void TSVGLength::SetIsPercent(bool Value)
{
  if (FIsPercent == Value)
    return;
  FIsPercent = Value;
  Change();
}

bool TSVGLength::IsRawStored() const
{
  return FRaw != 0.0f || std::isnan(FRaw);
}

void TSVGLength::Initialize(float Value, bool IsPercent, TSVGUnit aUnit)
{
  FRaw = Value;
  FIsPercent = IsPercent;
  FDefaultIsPercent = IsPercent;
  FDefaultRaw = Value;
  FUnit = aUnit;
  Change();
}

void TSVGLength::Clear()
{
  FRaw = 0.0f;
  FIsPercent = FDefaultIsPercent;
  FUnit = suNone;
  Change();
}

void TSVGLength::Assign(const TPersistent *Source)
{
  const auto *Length = dynamic_cast<const TSVGLength *>(Source);
  if (!Length) {
    TPersistent::Assign(Source);
    return;
  }
  FRaw = Length->FRaw;
  FIsPercent = Length->FIsPercent;
  FDefaultIsPercent = Length->FDefaultIsPercent;
  FUnit = Length->FUnit;
  Change();
}

TSVGLength *TSVGLength::CreateEmpty() const
{
  return new TSVGLength();
}

TSVGLength *TSVGLength::Clone() const
{
  std::unique_ptr<TSVGLength> Result(CreateEmpty());
  Result->Assign(this);
  return Result.release();
}

QString TSVGLength::ToString(const QString &Format, float Min, float Max) const
{
  return SVGNumberToString(GetPercentValue(Min, Max), FUnit, Format);
}

void TSVGLength::Change()
{
  if (OnChange)
    OnChange(this);
}

// --- TSVGStylePropertyLength --------------------------------------------------------------------

TSVGStylePropertyLength::TSVGStylePropertyLength(TSVGStyleProperty StyleProperty) : FStyleProperty(StyleProperty)
{
}

bool TSVGStylePropertyLength::IsParentValue() const
{
  // Only an owner that can also find the parent knows the truth; without one the own flag holds.
  if (OnGetInherited && OnGetParent)
    OnGetInherited(const_cast<TSVGStylePropertyLength *>(this), FInherited);
  return FInherited;
}

void TSVGStylePropertyLength::SetParentValue(bool Value)
{
  if (Value == IsParentValue())
    return;
  FInherited = Value;
  if (OnSetInherited)
    OnSetInherited(this, Value);
  Change();
}

TSVGStylePropertyLength *TSVGStylePropertyLength::GetParentValue() const
{
  TSVGStylePropertyLength *Parent = nullptr;
  if (OnGetParent)
    OnGetParent(const_cast<TSVGStylePropertyLength *>(this), Parent);
  // A length that names itself as its parent would recurse forever.
  return Parent == this ? nullptr : Parent;
}

float TSVGStylePropertyLength::GetValue() const
{
  const float Value = TSVGLength::GetValue();
  if (IsParentValue())
    if (const TSVGStylePropertyLength *Parent = GetParentValue())
      return Parent->GetValue();
  return Value;
}

void TSVGStylePropertyLength::SetValue(float Value)
{
  // Setting the number it already holds matters only when it ends an inherited state that shows
  // another value.
  if (FRaw == Value && (!IsParentValue() || GetValue() == Value))
    return;
  SetParentValue(false);
  TSVGLength::SetValue(Value);
}

void TSVGStylePropertyLength::Clear()
{
  TSVGLength::Clear();
  SetParentValue(false);
}

void TSVGStylePropertyLength::Assign(const TPersistent *Source)
{
  if (const auto *Length = dynamic_cast<const TSVGStylePropertyLength *>(Source))
    SetParentValue(Length->IsParentValue());
  TSVGLength::Assign(Source);
}

TSVGLength *TSVGStylePropertyLength::CreateEmpty() const
{
  return new TSVGStylePropertyLength(FStyleProperty);
}

// --- TSVGStylePropertyAutoLength ----------------------------------------------------------------

TSVGStylePropertyAutoLength::TSVGStylePropertyAutoLength(TSVGStyleProperty StyleProperty)
  : TSVGStylePropertyLength(StyleProperty)
{
}

void TSVGStylePropertyAutoLength::Clear()
{
  TSVGStylePropertyLength::Clear();
  FAutomatic = true;
}

void TSVGStylePropertyAutoLength::Assign(const TPersistent *Source)
{
  if (const auto *Length = dynamic_cast<const TSVGStylePropertyAutoLength *>(Source))
    FAutomatic = Length->FAutomatic;
  TSVGStylePropertyLength::Assign(Source);
}

bool TSVGStylePropertyAutoLength::IsAutomatic() const
{
  if (IsParentValue())
    if (const auto *Parent = dynamic_cast<const TSVGStylePropertyAutoLength *>(GetParentValue()))
      return Parent->IsAutomatic();
  return FAutomatic;
}

void TSVGStylePropertyAutoLength::SetAutomatic(bool Value)
{
  if (FAutomatic == Value && (!IsParentValue() || IsAutomatic() == Value))
    return;
  FAutomatic = Value;
  SetParentValue(false);
  Change();
}

TSVGLength *TSVGStylePropertyAutoLength::CreateEmpty() const
{
  return new TSVGStylePropertyAutoLength(FStyleProperty);
}

// --- TSVGBaselineShiftLength --------------------------------------------------------------------

TSVGBaselineShiftLength::TSVGBaselineShiftLength(TSVGStyleProperty StyleProperty)
  : TSVGStylePropertyLength(StyleProperty)
{
}

void TSVGBaselineShiftLength::Clear()
{
  TSVGStylePropertyLength::Clear();
  FShift = bsBaseline;
}

void TSVGBaselineShiftLength::Assign(const TPersistent *Source)
{
  if (const auto *Length = dynamic_cast<const TSVGBaselineShiftLength *>(Source))
    FShift = Length->FShift;
  TSVGStylePropertyLength::Assign(Source);
}

TSVGBaselineShift TSVGBaselineShiftLength::GetShift() const
{
  if (IsParentValue())
    if (const auto *Parent = dynamic_cast<const TSVGBaselineShiftLength *>(GetParentValue()))
      return Parent->GetShift();
  return FShift;
}

void TSVGBaselineShiftLength::SetShift(TSVGBaselineShift Value)
{
  if (FShift == Value && (!IsParentValue() || GetShift() == Value))
    return;
  FShift = Value;
  SetParentValue(false);
  Change();
}

TSVGLength *TSVGBaselineShiftLength::CreateEmpty() const
{
  return new TSVGBaselineShiftLength(FStyleProperty);
}

// --- TSVGLengths --------------------------------------------------------------------------------

TSVGLength *TSVGLengths::Items(int Index) const
{
  if (Index < 0 || Index >= Count())
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  return FItems[std::size_t(Index)].get();
}

int TSVGLengths::Add(TSVGLength *Item)
{
  FItems.emplace_back(Item);
  return Count() - 1;
}

void TSVGLengths::Delete(int Index)
{
  Items(Index);
  FItems.erase(FItems.begin() + Index);
}

TSVGLengths *TSVGLengths::Clone(TSVGLengths *Target) const
{
  if (Target == this)
    return Target;
  std::unique_ptr<TSVGLengths> Created;
  if (!Target) {
    Created = std::make_unique<TSVGLengths>();
    Target = Created.get();
  } else
    Target->Clear();
  for (const auto &Item : FItems)
    Target->Add(Item->Clone());
  Created.release();
  return Target;
}

} // namespace vx
