#pragma once
// Length value objects. A length keeps the number and the unit it was written in, so that a saved
// document shows what was loaded; pixels are computed on demand through unit factors and, for
// percentages, a range, both supplied by the owner through events. The objects know nothing of the
// element tree: inheritance is asked for through events as well.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace vx {

class TSVGLength;
class TSVGStylePropertyLength;

// Fills in the factors that hold where the length lives.
using TSVGUnitFactorsEvent = std::function<void(TObject *Sender, TSVGUnitFactors &UnitFactors)>;
// Supplies the range that a percentage is a fraction of; clearing DoRange leaves the fraction as is.
using TSVGLengthRangeEvent = std::function<void(TSVGLength *Sender, float &Min, float &Max, bool &DoRange)>;
// Asks the owner whether the property is inherited; the owner may rewrite IsInherited.
using TSVGLengthGetInheritedEvent = std::function<void(TSVGStylePropertyLength *Sender, bool &IsInherited)>;
using TSVGLengthSetInheritedEvent = std::function<void(TSVGStylePropertyLength *Sender, bool IsInherited)>;
// Finds the same length on the parent element, or leaves Parent null.
using TSVGLengthParentEvent = std::function<void(TSVGStylePropertyLength *Sender, TSVGStylePropertyLength *&Parent)>;

class VX_EXPORT TSVGLength : public TPersistent
{
public:
  // All zero, not a percentage, no unit.
  TSVGLength() = default;
  // Sets the value without reporting a change; IsPercent is also what Clear restores.
  TSVGLength(float Value, bool IsPercent, TSVGUnit aUnit);
  QString ClassName() const override { return QStringLiteral("TSVGLength"); }
  // Published for the binary component stream (values/VXSVGValueProperties.cpp).
  const TPropertyTable *PublishedProperties() const override;

  // The value in user units: the pixels, and for a percentage its share of the range that OnRange
  // supplies (0..1 when nobody answers).
  virtual float GetValue() const;
  virtual void SetValue(float Value);
  // Sets all fields and reports a change.
  virtual void Initialize(float Value, bool IsPercent, TSVGUnit aUnit);
  // Back to zero, no unit, and the percent flag given at construction.
  virtual void Clear();
  // A new object of the same class carrying this value; the caller owns it. Events are not copied.
  virtual TSVGLength *Clone() const;
  // Copies value, unit and percent flags from another length and reports a change.
  void Assign(const TPersistent *Source) override;
  virtual QString ToString(const QString &Format, float Min, float Max) const;

  TSVGUnitFactors GetUnitFactors() const;
  float GetPixels() const;
  void SetPixels(float Value);
  // The same size expressed in aUnit.
  float GetAsUnit(TSVGUnit aUnit) const;
  // Sets number and unit together and always reports a change.
  void SetAsUnit(TSVGUnit aUnit, float Value);
  // A percentage as its value in Min..Max, anything else as the raw number.
  float GetPercentValue(float Min, float Max) const;

  TSVGUnit Unit() const { return FUnit; }
  // Keeps the size and converts the number to the new unit.
  void SetUnit(TSVGUnit aUnit);
  float Raw() const { return FRaw; }
  void SetRaw(float Value);
  bool IsPercent() const { return FIsPercent; }
  void SetIsPercent(bool Value);
  bool DefaultIsPercent() const { return FDefaultIsPercent; }
  // The value Initialize gave: the one a stream need not repeat.
  float DefaultRaw() const { return FDefaultRaw; }

  // Which values a persisted form writes.
  bool IsUnitStored() const { return FUnit != suNone && FUnit != suPixels; }
  bool IsRawStored() const;
  bool IsIsPercentStored() const { return FIsPercent != FDefaultIsPercent; }

  TNotifyEvent OnChange;
  TSVGLengthRangeEvent OnRange;
  TSVGUnitFactorsEvent OnUnitFactors;

protected:
  virtual void Change();
  // A fresh object of this class with the construction parameters of this one; Clone assigns into it.
  virtual TSVGLength *CreateEmpty() const;

  bool FDefaultIsPercent = false;
  float FDefaultRaw = 0.0f;
  float FRaw = 0.0f;
  bool FIsPercent = false;
  TSVGUnit FUnit = suNone;
};

// A length that a presentation property can inherit from the same property of the parent element.
class VX_EXPORT TSVGStylePropertyLength : public TSVGLength
{
public:
  explicit TSVGStylePropertyLength(TSVGStyleProperty StyleProperty);
  QString ClassName() const override { return QStringLiteral("TSVGStylePropertyLength"); }
  const TPropertyTable *PublishedProperties() const override;

  // The parent's value while the property is inherited and a parent is found.
  float GetValue() const override;
  void SetValue(float Value) override;
  void Clear() override;
  void Assign(const TPersistent *Source) override;

  virtual TSVGStylePropertyLength *GetParentValue() const;
  // Whether the value is taken from the parent; the owner is asked when it can also find the parent.
  bool IsParentValue() const;
  void SetParentValue(bool Value);
  TSVGStyleProperty StyleProperty() const { return FStyleProperty; }

  TSVGLengthGetInheritedEvent OnGetInherited;
  TSVGLengthSetInheritedEvent OnSetInherited;
  TSVGLengthParentEvent OnGetParent;

protected:
  TSVGLength *CreateEmpty() const override;

  TSVGStyleProperty FStyleProperty;
  // Rewritten by the owner whenever IsParentValue asks it.
  mutable bool FInherited = false;
};

// A length that a keyword ("auto", "normal") may stand in for.
class VX_EXPORT TSVGStylePropertyAutoLength : public TSVGStylePropertyLength
{
public:
  explicit TSVGStylePropertyAutoLength(TSVGStyleProperty StyleProperty);
  QString ClassName() const override { return QStringLiteral("TSVGStylePropertyAutoLength"); }
  const TPropertyTable *PublishedProperties() const override;

  void Clear() override;
  void Assign(const TPersistent *Source) override;

  // The parent's flag while inherited, else the own one.
  bool IsAutomatic() const;
  void SetAutomatic(bool Value);

protected:
  TSVGLength *CreateEmpty() const override;

  bool FAutomatic = true;
};

// The baseline-shift property: a keyword shift, or a length when the shift is bsLength or bsPercentage.
class VX_EXPORT TSVGBaselineShiftLength : public TSVGStylePropertyLength
{
public:
  explicit TSVGBaselineShiftLength(TSVGStyleProperty StyleProperty);
  QString ClassName() const override { return QStringLiteral("TSVGBaselineShiftLength"); }
  const TPropertyTable *PublishedProperties() const override;

  void Clear() override;
  void Assign(const TPersistent *Source) override;

  // The parent's shift while inherited, else the own one.
  TSVGBaselineShift GetShift() const;
  void SetShift(TSVGBaselineShift Value);

protected:
  TSVGLength *CreateEmpty() const override;

  TSVGBaselineShift FShift = bsBaseline;
};

// An owning list of lengths.
class VX_EXPORT TSVGLengths
{
public:
  TSVGLengths() = default;
  TSVGLengths(const TSVGLengths &) = delete;
  TSVGLengths &operator=(const TSVGLengths &) = delete;

  int Count() const { return int(FItems.size()); }
  TSVGLength *Items(int Index) const;
  TSVGLength *operator[](int Index) const { return Items(Index); }
  // Takes ownership; returns the index.
  int Add(TSVGLength *Item);
  void Delete(int Index);
  void Clear() { FItems.clear(); }

  // Clones every item into Target, which is emptied first, or into a new list when Target is null.
  // The caller owns a new list.
  TSVGLengths *Clone(TSVGLengths *Target = nullptr) const;

private:
  std::vector<std::unique_ptr<TSVGLength>> FItems;
};

} // namespace vx
