#include "values/VXSVGPaint.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPropertyParsers.h"

#include <QStringList>

#include <cmath>

namespace vx {

namespace {

float ClampOpacity(float Value)
{
  return Value < 0 ? 0.0f : Value > 1 ? 1.0f : Value;
}

TVXGPColor WithOpacity(TVXGPColor Color, float Opacity)
{
  const auto Alpha = std::uint8_t(std::lrint(double(Opacity) * 255.0) & 0xFF);
  return (Color & 0x00FFFFFF) | (TVXGPColor(Alpha) << 24);
}

bool AskInherited(const TSVGIsInheritedEvent &Event, const TObject *Sender, TSVGStyleProperty aProperty)
{
  bool Result = false;
  if (Event)
    Event(const_cast<TObject *>(Sender), aProperty, Result);
  return Result;
}

} // namespace

// --- TSVGBrush ------------------------------------------------------------------------------------

TSVGBrush::TSVGBrush(TVXGPCanvas *Canvas, TVXGPBrushKind Kind, TVXGPColor Color) : TVXGPBrush(Canvas, Kind, Color)
{
}

void TSVGBrush::Assign(const TPersistent *Source)
{
  if (const auto *Brush = dynamic_cast<const TSVGBrush *>(Source)) {
    FDefaultOpacity = Brush->FDefaultOpacity;
    FOpacity = Brush->FOpacity;
    FURI = Brush->FURI;
  }
  TVXGPBrush::Assign(Source);
}

void TSVGBrush::Clear()
{
  SetColor(0xFF000000);
  FURI.clear();
  FOpacity = FDefaultOpacity;
  SetKind(bkSolid);
}

void TSVGBrush::SetKind(TVXGPBrushKind Value)
{
  if (Value != GetKind() && (Value == bkNone || Value == bkSolid))
    FURI.clear();
  TVXGPBrush::SetKind(Value);
}

void TSVGBrush::SetOpacity(float Value)
{
  Value = ClampOpacity(Value);
  if (Value == FOpacity)
    return;
  FOpacity = Value;
  Change();
}

void TSVGBrush::SetDefaultOpacity(float Value)
{
  FDefaultOpacity = ClampOpacity(Value);
}

void TSVGBrush::SetURI(const QString &Value)
{
  if (Value == FURI)
    return;
  FURI = Value;
  Change();
}

void TSVGBrush::UpdateColorOpacity()
{
  SetColor(WithOpacity(GetColor(), FOpacity));
}

bool TSVGBrush::GetIsInherited(TSVGStyleProperty aProperty) const
{
  return AskInherited(OnIsInherited, this, aProperty);
}

bool TSVGBrush::IsColorStored() const
{
  return GetColor() != GetDefaultColor() && !GetIsInherited(ipFill);
}

bool TSVGBrush::IsKindStored() const
{
  return GetKind() != GetDefaultKind();
}

bool TSVGBrush::IsOpacityStored() const
{
  return FOpacity != FDefaultOpacity && !GetIsInherited(ipFillOpacity);
}

// --- TSVGPen --------------------------------------------------------------------------------------

TSVGPen::TSVGPen(TVXGPCanvas *Canvas, TVXGPBrushKind Kind, TVXGPColor Color)
  : TVXGPPen(Canvas, Kind, Color), FSVGDashOffset(std::make_unique<TSVGLength>())
{
  FSVGDashOffset->OnChange = [this](TObject *Sender) { OffsetChange(Sender); };
  SetThickness(1);
  SetMiterLimit(4);
}

TSVGPen::~TSVGPen() = default;

void TSVGPen::Assign(const TPersistent *Source)
{
  if (const auto *Pen = dynamic_cast<const TSVGPen *>(Source)) {
    FOpacity = Pen->FOpacity;
    FDefaultOpacity = Pen->FDefaultOpacity;
    FURI = Pen->FURI;
    FSVGDashOffset->Assign(Pen->FSVGDashOffset.get());
    FThicknessIsPercent = Pen->FThicknessIsPercent;
    FThicknessPreferredUnit = Pen->FThicknessPreferredUnit;
    FDashArrayIsPercent = Pen->FDashArrayIsPercent;
    FDashArrayPreferredUnits = Pen->FDashArrayPreferredUnits;
  }
  TVXGPPen::Assign(Source);
}

void TSVGPen::Clear()
{
  SetKind(bkNone);
  SetColor(0xFF000000);
  SetDash(dsSolid);
  FThicknessPreferredUnit = suNone;
  FThicknessIsPercent = false;
  SetThickness(1);
  SetDashOffset(0);
  SetStartCap(lcFlat);
  SetEndCap(lcFlat);
  SetDashCap(lcFlat);
  SetMiterLimit(4);
  FSVGDashOffset->Clear();
  FDashArrayIsPercent.clear();
  FDashArrayPreferredUnits.clear();
  SetJoin(ljMiter);
  FURI.clear();
  FOpacity = FDefaultOpacity;
}

void TSVGPen::SetKind(TVXGPBrushKind Value)
{
  if (Value != GetKind() && (Value == bkNone || Value == bkSolid))
    FURI.clear();
  TVXGPPen::SetKind(Value);
}

void TSVGPen::SetOpacity(float Value)
{
  Value = ClampOpacity(Value);
  if (Value == FOpacity)
    return;
  FOpacity = Value;
  Change();
}

void TSVGPen::SetDefaultOpacity(float Value)
{
  FDefaultOpacity = ClampOpacity(Value);
}

void TSVGPen::SetURI(const QString &Value)
{
  if (Value == FURI)
    return;
  FURI = Value;
  Change();
}

void TSVGPen::UpdateColorOpacity()
{
  SetColor(WithOpacity(GetColor(), FOpacity));
}

void TSVGPen::SetSVGDashOffset(const TSVGLength *Value)
{
  FSVGDashOffset->Assign(Value);
}

void TSVGPen::OffsetChange(TObject *)
{
  Change();
}

TSVGUnitFactors TSVGPen::GetUnitFactors() const
{
  TSVGUnitFactors Factors = SVGUnitFactors;
  if (OnUnitFactors)
    OnUnitFactors(const_cast<TSVGPen *>(this), Factors);
  return Factors;
}

QString TSVGPen::GetCustomDashArray() const
{
  if (GetDash() != dsCustom)
    return QStringLiteral("none");
  const std::vector<float> &Pattern = GetDashPattern();
  QStringList Parts;
  for (std::size_t I = 0; I < Pattern.size(); ++I) {
    const bool IsPercent = I < FDashArrayIsPercent.size() && FDashArrayIsPercent[I];
    const TSVGUnit Unit = I < FDashArrayPreferredUnits.size() ? FDashArrayPreferredUnits[I] : suNone;
    Parts << SVGLengthToString(Pattern[I], IsPercent, Unit, QStringLiteral("0.###"), 0, 1);
  }
  return Parts.join(QLatin1Char(' '));
}

void TSVGPen::SetCustomDashArray(const QString &S)
{
  FDashArrayIsPercent.clear();
  FDashArrayPreferredUnits.clear();
  if (S.isEmpty() || S == QLatin1String("none")) {
    SetDash(dsSolid);
    return;
  }
  const std::vector<float> Dashes =
      ParseDashes(S, FDashArrayIsPercent, FDashArrayPreferredUnits, GetUnitFactors(), 0, 1);
  if (Dashes.empty()) {
    SetDash(dsSolid);
    return;
  }
  for (float Dash : Dashes)
    if (!(Dash > 0))
      return;
  SetCustomDash(Dashes, int(Dashes.size()) - 1, FSVGDashOffset->GetValue());
}

QString TSVGPen::GetDashArray() const
{
  const QString W = FormatFloat(QStringLiteral("0.##"), GetThickness());
  const QString W3 = FormatFloat(QStringLiteral("0.##"), double(GetThickness()) * 3);
  switch (GetDash()) {
  case dsSolid: return QStringLiteral("none");
  case dsDash: return QStringList{W3, W}.join(QLatin1Char(' '));
  case dsDot: return QStringList{W, W}.join(QLatin1Char(' '));
  case dsDashDot: return QStringList{W3, W, W, W}.join(QLatin1Char(' '));
  case dsDashDotDot: return QStringList{W3, W, W, W, W, W}.join(QLatin1Char(' '));
  case dsCustom: return GetCustomDashArray();
  }
  return QString();
}

bool TSVGPen::GetIsInherited(TSVGStyleProperty aProperty) const
{
  return AskInherited(OnIsInherited, this, aProperty);
}

bool TSVGPen::IsColorStored() const
{
  return GetColor() != GetDefaultColor() && !GetIsInherited(ipStroke);
}

bool TSVGPen::IsKindStored() const
{
  return GetKind() != GetDefaultKind();
}

bool TSVGPen::IsOpacityStored() const
{
  return FOpacity != FDefaultOpacity && !GetIsInherited(ipStrokeOpacity);
}

bool TSVGPen::IsStartCapStored() const
{
  return GetStartCap() != lcFlat && !GetIsInherited(ipStrokeLinecap);
}

bool TSVGPen::IsEndCapStored() const
{
  return GetEndCap() != lcFlat && !GetIsInherited(ipStrokeLinecap);
}

bool TSVGPen::IsDashCapStored() const
{
  return GetDashCap() != lcFlat && !GetIsInherited(ipStrokeLinecap);
}

bool TSVGPen::IsJoinStored() const
{
  return GetJoin() != ljMiter && !GetIsInherited(ipStrokeLineJoin);
}

bool TSVGPen::IsDashStored() const
{
  return GetDash() != dsSolid && !GetIsInherited(ipStrokeDasharray);
}

bool TSVGPen::IsMiterLimitStored() const
{
  return GetMiterLimit() != 4 && !GetIsInherited(ipStrokeMiterLimit);
}

bool TSVGPen::IsThicknessStored() const
{
  return GetThickness() != 1 && !GetIsInherited(ipStrokeWidth);
}

bool TSVGPen::IsSVGDashOffsetStored() const
{
  return FSVGDashOffset->Raw() != 0 && !GetIsInherited(ipStrokeDashOffset);
}

bool TSVGPen::IsCustomDashArrayStored() const
{
  return GetCustomDashArray() != QLatin1String("none");
}

// --- TSVGFont -------------------------------------------------------------------------------------

TSVGFont::TSVGFont(TVXGPCanvas *Canvas) : TVXGPFont(Canvas), FFamilies(std::make_unique<TStringList>())
{
  FFamilies->OnChange = [this](TObject *Sender) { FamiliesChanged(Sender); };
}

TSVGFont::~TSVGFont() = default;

void TSVGFont::Assign(const TPersistent *Source)
{
  if (const auto *Font = dynamic_cast<const TSVGFont *>(Source)) {
    FExtendStyles = Font->FExtendStyles;
    FFontVariant = Font->FFontVariant;
    FWeight = Font->FWeight;
    FSizePreferredUnit = Font->FSizePreferredUnit;
    FFamilies->Assign(Font->FFamilies.get());
  } else if (const auto *Font = dynamic_cast<const TVXGPFont *>(Source))
    FWeight = Font->GetStyle().Contains(fsBold) ? fwBold : fwNormal;
  TVXGPFont::Assign(Source);
}

void TSVGFont::Clear()
{
  FExtendStyles = TExtendedFontStyles();
  SetStyle(TVXGPFontStyles());
  SetSize(11);
  FFontVariant = fvNormal;
  FSizePreferredUnit = suNone;
  // Emptying the list is no reason to pick another name.
  TNotifyEvent Handler = std::move(FFamilies->OnChange);
  FFamilies->OnChange = nullptr;
  FFamilies->Clear();
  FFamilies->OnChange = std::move(Handler);
}

void TSVGFont::SetExtendStyles(TExtendedFontStyles Value)
{
  if (Value == FExtendStyles)
    return;
  FExtendStyles = Value;
  Change();
}

void TSVGFont::SetFontVariant(TSVGFontVariant Value)
{
  if (Value == FFontVariant)
    return;
  FFontVariant = Value;
  Change();
}

void TSVGFont::SetWeight(TSVGFontWeight Value)
{
  if (Value == FWeight)
    return;
  FWeight = Value;
  TVXGPFontStyles Style = GetStyle();
  switch (Value) {
  case fwNone:
    break;
  case fwNormal: case fwLighter: case fw100: case fw200: case fw300: case fw400: case fw500:
    Style.Exclude(fsBold);
    break;
  case fwBold: case fwBolder: case fw600: case fw700: case fw800: case fw900:
    Style.Include(fsBold);
    break;
  }
  SetStyle(Style);
  Change();
}

void TSVGFont::SetFamilies(const TStrings &Value)
{
  FFamilies->Assign(&Value);
}

QString TSVGFont::FamiliesToString() const
{
  QStringList Parts;
  for (int I = 0; I < FFamilies->Count(); ++I) {
    const QString Family = FFamilies->Get(I);
    Parts << (Family.contains(QLatin1Char(' ')) ? QLatin1Char('\'') + Family + QLatin1Char('\'') : Family);
  }
  return Parts.join(QStringLiteral(", "));
}

void TSVGFont::FamiliesChanged(TObject *)
{
  for (int I = 0; I < FFamilies->Count(); ++I) {
    const QString Family = FFamilies->Get(I);
    if (IsFontFamilyAvailable(Family))
      SetName(Family);
    if (SameText(Family, QStringLiteral("serif")) || SameText(Family, QStringLiteral("sans-serif")) ||
        SameText(Family, QStringLiteral("monospace")))
      break;
  }
}

bool TSVGFont::IsDecorated() const
{
  const TVXGPFontStyles Style = GetStyle();
  return Style.Contains(fsUnderline) || Style.Contains(fsStrikeOut) || FExtendStyles.Contains(fsOverline);
}

bool TSVGFont::GetIsInherited(TSVGStyleProperty aProperty) const
{
  return AskInherited(OnIsInherited, this, aProperty);
}

bool TSVGFont::IsNameStored() const
{
  return GetName() != QLatin1String("Tahoma") && !GetIsInherited(ipFontFamily);
}

bool TSVGFont::IsFontVariantStored() const
{
  return FFontVariant != fvNormal && !GetIsInherited(ipFontVariant);
}

bool TSVGFont::IsSizeStored() const
{
  return GetSize() != 11 && !GetIsInherited(ipFontSize);
}

bool TSVGFont::IsStyleStored() const
{
  return !GetStyle().Empty() && (!GetIsInherited(ipFontStyle) || !GetIsInherited(ipTextDecoration));
}

bool TSVGFont::IsWeightStored() const
{
  return FWeight != fwNormal && !GetIsInherited(ipFontWeight);
}

} // namespace vx
