// The published properties of the value objects, which the binary component stream writes under
// the name of the element property that holds them ("Pen.Thickness", "Xu.Raw").
#include "platform/rtl/VXPropInfo.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGPaint.h"
#include "values/VXSVGViewBox.h"

namespace vx {

namespace {

const QString Single = QStringLiteral("Single");
const QString Boolean = QStringLiteral("Boolean");
const QString String = QStringLiteral("string");

template <typename C>
std::function<bool(const C &)> When(bool (C::*Predicate)() const)
{
  return [Predicate](const C &Instance) { return (Instance.*Predicate)(); };
}

} // namespace

// --- lengths ---

const TPropertyTable *TSVGLength::PublishedProperties() const
{
  using C = TSVGLength;
  static const TPropertyTable Table(nullptr, {
    PublishedValue<C>(QStringLiteral("aUnit"), tkEnumeration, QStringLiteral("TSVGUnit"), &C::Unit, &C::SetUnit,
                      When<C>(&C::IsUnitStored)),
    // Stored against the value the owner initialised the length with (x2 of a gradient is 100%).
    PublishedValue<C>(QStringLiteral("Raw"), tkFloat, Single, &C::Raw, &C::SetRaw,
                      std::function<bool(const C &)>([](const C &L) { return !(L.Raw() == L.DefaultRaw()); })),
    PublishedValue<C>(QStringLiteral("IsPercent"), tkBoolean, Boolean, &C::IsPercent, &C::SetIsPercent,
                      When<C>(&C::IsIsPercentStored)),
  });
  return &Table;
}

namespace {

const TPropertyTable &StylePropertyLengthTable()
{
  using C = TSVGStylePropertyLength;
  static const TPropertyTable Table(TSVGLength().PublishedProperties(), {
    PublishedValue<C>(QStringLiteral("ParentValue"), tkBoolean, Boolean, &C::IsParentValue, &C::SetParentValue,
                      When<C>(&C::IsParentValue)),
  });
  return Table;
}

} // namespace

const TPropertyTable *TSVGStylePropertyLength::PublishedProperties() const { return &StylePropertyLengthTable(); }

const TPropertyTable *TSVGStylePropertyAutoLength::PublishedProperties() const
{
  using C = TSVGStylePropertyAutoLength;
  static const TPropertyTable Table(&StylePropertyLengthTable(), {
    PublishedValue<C>(QStringLiteral("Automatic"), tkBoolean, Boolean, &C::IsAutomatic, &C::SetAutomatic,
                      std::function<bool(const C &)>([](const C &L) { return !L.IsAutomatic(); })),
  });
  return &Table;
}

const TPropertyTable *TSVGBaselineShiftLength::PublishedProperties() const
{
  using C = TSVGBaselineShiftLength;
  static const TPropertyTable Table(&StylePropertyLengthTable(), {
    PublishedValue<C>(QStringLiteral("Shift"), tkEnumeration, QStringLiteral("TSVGBaselineShift"), &C::GetShift,
                      &C::SetShift, StoredUnless<C>(&C::GetShift, bsBaseline)),
  });
  return &Table;
}

// --- paints and font ---

const TPropertyTable *TSVGBrush::PublishedProperties() const
{
  using C = TSVGBrush;
  static const TPropertyTable Table(nullptr, {
    PublishedValue<C>(QStringLiteral("Kind"), tkEnumeration, QStringLiteral("TVXGPBrushKind"), &C::GetKind,
                      &C::SetKind, When<C>(&C::IsKindStored)),
    PublishedValue<C>(QStringLiteral("Color"), tkInteger, QStringLiteral("TVXGPColor"), &C::GetColor, &C::SetColor,
                      When<C>(&C::IsColorStored)),
    PublishedValue<C>(QStringLiteral("Opacity"), tkFloat, Single, &C::GetOpacity, &C::SetOpacity,
                      When<C>(&C::IsOpacityStored)),
    PublishedValue<C>(QStringLiteral("URI"), tkString, String, &C::GetURI, &C::SetURI,
                      std::function<bool(const C &)>([](const C &B) { return !B.GetURI().isEmpty(); })),
  });
  return &Table;
}

const TPropertyTable *TSVGPen::PublishedProperties() const
{
  using C = TSVGPen;
  static const TPropertyTable Table(nullptr, {
    PublishedValue<C>(QStringLiteral("Opacity"), tkFloat, Single, &C::GetOpacity, &C::SetOpacity,
                      When<C>(&C::IsOpacityStored)),
    PublishedValue<C>(QStringLiteral("ThicknessIsPercent"), tkBoolean, Boolean, &C::GetThicknessIsPercent,
                      &C::SetThicknessIsPercent, StoredUnless<C>(&C::GetThicknessIsPercent, false)),
    PublishedValue<C>(QStringLiteral("ThicknessPreferredUnit"), tkEnumeration, QStringLiteral("TSVGUnit"),
                      &C::GetThicknessPreferredUnit, &C::SetThicknessPreferredUnit,
                      StoredUnless<C>(&C::GetThicknessPreferredUnit, suNone)),
    PublishedValue<C>(QStringLiteral("URI"), tkString, String, &C::GetURI, &C::SetURI,
                      std::function<bool(const C &)>([](const C &P) { return !P.GetURI().isEmpty(); })),
    PublishedObject<C>(QStringLiteral("SVGDashOffset"), QStringLiteral("TSVGLength"),
                       [](C &P) -> TSVGLength & { return *P.GetSVGDashOffset(); }, When<C>(&C::IsSVGDashOffsetStored)),
    PublishedValue<C>(QStringLiteral("CustomDashArray"), tkString, String, &C::GetCustomDashArray,
                      &C::SetCustomDashArray, When<C>(&C::IsCustomDashArrayStored)),
    PublishedValue<C>(QStringLiteral("Kind"), tkEnumeration, QStringLiteral("TVXGPBrushKind"), &C::GetKind,
                      &C::SetKind, When<C>(&C::IsKindStored)),
    PublishedValue<C>(QStringLiteral("StartCap"), tkEnumeration, QStringLiteral("TVXGPLineCap"), &C::GetStartCap,
                      &C::SetStartCap, When<C>(&C::IsStartCapStored)),
    PublishedValue<C>(QStringLiteral("EndCap"), tkEnumeration, QStringLiteral("TVXGPLineCap"), &C::GetEndCap,
                      &C::SetEndCap, When<C>(&C::IsEndCapStored)),
    PublishedValue<C>(QStringLiteral("DashCap"), tkEnumeration, QStringLiteral("TVXGPLineCap"), &C::GetDashCap,
                      &C::SetDashCap, When<C>(&C::IsDashCapStored)),
    PublishedValue<C>(QStringLiteral("Join"), tkEnumeration, QStringLiteral("TVXGPLineJoin"), &C::GetJoin,
                      &C::SetJoin, When<C>(&C::IsJoinStored)),
    PublishedValue<C>(QStringLiteral("Dash"), tkEnumeration, QStringLiteral("TVXGPDashStyle"), &C::GetDash,
                      &C::SetDash, When<C>(&C::IsDashStored)),
    PublishedValue<C>(QStringLiteral("MiterLimit"), tkFloat, Single, &C::GetMiterLimit, &C::SetMiterLimit,
                      When<C>(&C::IsMiterLimitStored)),
    PublishedValue<C>(QStringLiteral("Color"), tkInteger, QStringLiteral("TVXGPColor"), &C::GetColor, &C::SetColor,
                      When<C>(&C::IsColorStored)),
    PublishedValue<C>(QStringLiteral("Thickness"), tkFloat, Single, &C::GetThickness, &C::SetThickness,
                      When<C>(&C::IsThicknessStored)),
  });
  return &Table;
}

const TPropertyTable *TSVGFont::PublishedProperties() const
{
  using C = TSVGFont;
  static const TPropertyTable Table(nullptr, {
    PublishedValue<C>(QStringLiteral("ExtendStyles"), tkSet, QStringLiteral("TExtendedFontStyles"),
                      &C::GetExtendStyles, &C::SetExtendStyles,
                      std::function<bool(const C &)>([](const C &F) { return F.GetExtendStyles().Bits() != 0; })),
    PublishedValue<C>(QStringLiteral("SizePreferredUnit"), tkEnumeration, QStringLiteral("TSVGUnit"),
                      &C::GetSizePreferredUnit, &C::SetSizePreferredUnit,
                      StoredUnless<C>(&C::GetSizePreferredUnit, suNone)),
    PublishedValue<C>(QStringLiteral("FontVariant"), tkEnumeration, QStringLiteral("TSVGFontVariant"),
                      &C::GetFontVariant, &C::SetFontVariant, When<C>(&C::IsFontVariantStored)),
    PublishedObject<C>(QStringLiteral("Families"), QStringLiteral("TStrings"),
                       [](C &F) -> TStringList & { return F.Families(); },
                       std::function<bool(const C &)>([](const C &F) { return !F.Families().IsEmpty(); })),
    PublishedValue<C>(QStringLiteral("Name"), tkString, String, &C::GetName, &C::SetName, When<C>(&C::IsNameStored)),
    PublishedValue<C>(QStringLiteral("Size"), tkFloat, Single, &C::GetSize, &C::SetSize, When<C>(&C::IsSizeStored)),
    PublishedValue<C>(QStringLiteral("Style"), tkSet, QStringLiteral("TVXGPFontStyles"), &C::GetStyle, &C::SetStyle,
                      When<C>(&C::IsStyleStored)),
    PublishedValue<C>(QStringLiteral("Weight"), tkEnumeration, QStringLiteral("TSVGFontWeight"), &C::GetWeight,
                      &C::SetWeight, When<C>(&C::IsWeightStored)),
  });
  return &Table;
}

// --- view box and aspect ratio ---

const TPropertyTable *TSVGViewBox::PublishedProperties() const
{
  using C = TSVGViewBox;
  auto Length = [](const QString &Name, TSVGLength *(C::*Getter)() const) {
    return PublishedObject<C>(Name, QStringLiteral("TSVGLength"),
                              [Getter](C &Box) -> TSVGLength & { return *(Box.*Getter)(); });
  };
  static const TPropertyTable Table(nullptr, {
    Length(QStringLiteral("X"), &C::X),
    Length(QStringLiteral("Y"), &C::Y),
    Length(QStringLiteral("Width"), &C::Width),
    Length(QStringLiteral("Height"), &C::Height),
  });
  return &Table;
}

const TPropertyTable *TSVGPreserveAspectRatio::PublishedProperties() const
{
  using C = TSVGPreserveAspectRatio;
  static const TPropertyTable Table(nullptr, {
    PublishedValue<C>(QStringLiteral("Align"), tkEnumeration, QStringLiteral("TSVGAlign"), &C::GetAlign,
                      &C::SetAlign, When<C>(&C::IsAlignStored)),
    PublishedValue<C>(QStringLiteral("Defer"), tkBoolean, Boolean, &C::GetDefer, &C::SetDefer,
                      When<C>(&C::IsDeferStored)),
    PublishedValue<C>(QStringLiteral("Slice"), tkBoolean, Boolean, &C::GetSlice, &C::SetSlice,
                      When<C>(&C::IsSliceStored)),
  });
  return &Table;
}

} // namespace vx
