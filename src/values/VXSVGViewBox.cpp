#include "values/VXSVGViewBox.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLookups.h"

#include <QStringList>

#include <cmath>

namespace vx {

// --- TSVGViewBox ----------------------------------------------------------------------------------

TSVGViewBox::TSVGViewBox()
  : FWidth(std::make_unique<TSVGLength>()), FHeight(std::make_unique<TSVGLength>()),
    FY(std::make_unique<TSVGLength>()), FX(std::make_unique<TSVGLength>())
{
  for (TSVGLength *Length : {FX.get(), FY.get(), FWidth.get(), FHeight.get()})
    Length->OnChange = [this](TObject *Sender) { Changed(Sender); };
}

TSVGViewBox::TSVGViewBox(const TRectF &Rect) : TSVGViewBox()
{
  SetRect(Rect);
}

TSVGViewBox::TSVGViewBox(float Left, float Top, float Right, float Bottom) : TSVGViewBox()
{
  SetRect(TRectF{Left, Top, Right, Bottom});
}

TSVGViewBox::~TSVGViewBox() = default;

void TSVGViewBox::BeginUpdate()
{
  ++FUpdateCount;
}

void TSVGViewBox::EndUpdate()
{
  --FUpdateCount;
  if (FUpdateCount == 0)
    Change();
}

void TSVGViewBox::Changed(TObject *)
{
  Change();
}

void TSVGViewBox::Change()
{
  if (FUpdateCount > 0)
    return;
  FSpecified = true;
  if (OnChange)
    OnChange(this);
}

void TSVGViewBox::Clear()
{
  BeginUpdate();
  FX->Clear();
  FY->Clear();
  FWidth->Clear();
  FHeight->Clear();
  FSpecified = false;
  EndUpdate();
}

void TSVGViewBox::Assign(const TPersistent *Source)
{
  const auto *Box = dynamic_cast<const TSVGViewBox *>(Source);
  if (!Box) {
    TPersistent::Assign(Source);
    return;
  }
  BeginUpdate();
  FX->Assign(Box->FX.get());
  FY->Assign(Box->FY.get());
  FWidth->Assign(Box->FWidth.get());
  FHeight->Assign(Box->FHeight.get());
  FSpecified = Box->FSpecified;
  EndUpdate();
}

TRectF TSVGViewBox::GetRect() const
{
  const float X = FX->GetValue();
  const float Y = FY->GetValue();
  return TRectF{X, Y, X + FWidth->GetValue(), Y + FHeight->GetValue()};
}

void TSVGViewBox::SetRect(const TRectF &Rect)
{
  BeginUpdate();
  FX->SetValue(Rect.Left);
  FY->SetValue(Rect.Top);
  FWidth->SetValue(Rect.Right - Rect.Left);
  FHeight->SetValue(Rect.Bottom - Rect.Top);
  EndUpdate();
}

float TSVGViewBox::GetLeft() const
{
  return FX->GetValue();
}

float TSVGViewBox::GetTop() const
{
  return FY->GetValue();
}

float TSVGViewBox::GetRight() const
{
  return FX->GetValue() + FWidth->GetValue();
}

float TSVGViewBox::GetBottom() const
{
  return FY->GetValue() + FHeight->GetValue();
}

void TSVGViewBox::SetLeft(float Value)
{
  FX->SetValue(Value);
}

void TSVGViewBox::SetTop(float Value)
{
  FY->SetValue(Value);
}

void TSVGViewBox::SetRight(float Value)
{
  FWidth->SetValue(std::fabs(Value - FX->GetValue()));
}

void TSVGViewBox::SetBottom(float Value)
{
  FHeight->SetValue(std::fabs(Value - FY->GetValue()));
}

TSVGUnitFactorsEvent TSVGViewBox::GetOnUnitFactors() const
{
  return FX->OnUnitFactors;
}

void TSVGViewBox::SetOnUnitFactors(const TSVGUnitFactorsEvent &Event)
{
  for (TSVGLength *Length : {FX.get(), FY.get(), FWidth.get(), FHeight.get()})
    Length->OnUnitFactors = Event;
}

TSVGUnitFactors TSVGViewBox::GetUnitFactors() const
{
  return FX->GetUnitFactors();
}

QString TSVGViewBox::ToString(const QString &Format, float Min, float Max) const
{
  return FX->ToString(Format, Min, Max) + QLatin1Char(' ') + FY->ToString(Format, Min, Max) + QLatin1Char(' ') +
         FWidth->ToString(Format, Min, Max) + QLatin1Char(' ') + FHeight->ToString(Format, Min, Max);
}

// --- TSVGPreserveAspectRatio ----------------------------------------------------------------------

TSVGPreserveAspectRatio::TSVGPreserveAspectRatio(TSVGAlign Align, bool Defer, bool Slice)
  : FAlign(Align), FDefer(Defer), FSlice(Slice), FDefaultSlice(Slice), FDefaultAlign(Align), FDefaultDefer(Defer)
{
}

void TSVGPreserveAspectRatio::Clear()
{
  FAlign = FDefaultAlign;
  FDefer = FDefaultDefer;
  FSlice = FDefaultSlice;
  Change();
}

void TSVGPreserveAspectRatio::Assign(const TPersistent *Source)
{
  const auto *Ratio = dynamic_cast<const TSVGPreserveAspectRatio *>(Source);
  if (!Ratio) {
    TPersistent::Assign(Source);
    return;
  }
  FAlign = Ratio->FAlign;
  FDefer = Ratio->FDefer;
  FSlice = Ratio->FSlice;
  FDefaultSlice = Ratio->FDefaultSlice;
  FDefaultAlign = Ratio->FDefaultAlign;
  FDefaultDefer = Ratio->FDefaultDefer;
  Change();
}

void TSVGPreserveAspectRatio::SetAlign(TSVGAlign Value)
{
  if (Value == FAlign)
    return;
  FAlign = Value;
  Change();
}

void TSVGPreserveAspectRatio::SetDefer(bool Value)
{
  if (Value == FDefer)
    return;
  FDefer = Value;
  Change();
}

void TSVGPreserveAspectRatio::SetSlice(bool Value)
{
  if (Value == FSlice)
    return;
  FSlice = Value;
  Change();
}

QString TSVGPreserveAspectRatio::ToString(bool OmitMeet) const
{
  QString Result = FDefer ? QStringLiteral("defer ") : QString();
  Result += SVGAlignNames[FAlign];
  if (FSlice)
    Result += QStringLiteral(" slice");
  else if (!OmitMeet)
    Result += QStringLiteral(" meet");
  return Result;
}

void TSVGPreserveAspectRatio::Change()
{
  if (OnChange)
    OnChange(this);
}

// --- parser ---------------------------------------------------------------------------------------

void ParseAspectRatio(const QString &S, TSVGPreserveAspectRatio &AspectRatio)
{
  const QStringList Tokens = CleanArray(SplitString(Trim(S), QStringLiteral(" ")));
  if (Tokens.isEmpty())
    return;
  // "defer" only counts when an align word follows it.
  AspectRatio.SetDefer(Tokens.size() >= 2 && Tokens[0] == QLatin1String("defer"));
  const qsizetype First = AspectRatio.GetDefer() ? 1 : 0;
  AspectRatio.SetAlign(GetSVGAlign(Tokens[First]));
  AspectRatio.SetSlice(Tokens.size() > First + 1 && Tokens[First + 1] == QLatin1String("slice"));
}

} // namespace vx
