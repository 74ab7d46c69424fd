#include "tree/VXSVGGraphicElement.h"

#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGException.h"
#include "values/VXSVGTransforms.h"

#include <algorithm>

namespace vx {

namespace {

// Every property is inherited but the thirteen that SVG does not inherit by default.
constexpr TSVGStyleProperties DefaultInherits = TSVGStyleProperties::FromBits(0xeffe4fffce7e1);
// Every property from ipAlignmentBaseline to ipWritingMode.
constexpr TSVGStyleProperties DefaultAttributes = TSVGStyleProperties::FromBits(0xffffffffffffe);

} // namespace

TSVGGraphicElement::TSVGGraphicElement(TSVGDocument *Owner)
  : TSVGElement(Owner),
    FPen(std::make_unique<TSVGPen>(nullptr, bkNone, 0xFF000000)),
    FFont(std::make_unique<TSVGFont>()),
    FBrush(std::make_unique<TSVGBrush>(nullptr, bkSolid, 0xFF000000))
{
  FWidth = CreateLength(true);
  FHeight = CreateLength(false);
  FX = CreateLength(true);
  FY = CreateLength(false);
  FLetterSpacing = CreateStylePropertyAutoLength(ipLetterSpacing);
  FKerning = CreateStylePropertyAutoLength(ipKerning);
  FWordSpacing = CreateStylePropertyAutoLength(ipWordSpacing);
  FBaselineShift = std::make_unique<TSVGBaselineShiftLength>(ipBaselineShift);
  WireObjects();
  ResetToDefaults();
}

TSVGGraphicElement::~TSVGGraphicElement()
{
  BeforeDestruction();
  ClearChildren();
}

void TSVGGraphicElement::WireObjects()
{
  auto Propagate = [this](TObject *Sender) { PropagateObjectPropChange(Sender); };
  auto Changed = [this](TObject *Sender) { ObjectPropChange(Sender); };
  auto IsInherited = [this](TObject *, TSVGStyleProperty Property, bool &Inherited) {
    ResourceGetInherited(Property, Inherited);
  };
  FPen->OnChange = Propagate;
  FBrush->OnChange = Propagate;
  FFont->OnChange = Propagate;
  FInherits.OnChange = Propagate;
  FPen->OnIsInherited = IsInherited;
  FBrush->OnIsInherited = IsInherited;
  FFont->OnIsInherited = IsInherited;
  FPen->OnUnitFactors = [this](TObject *, TSVGUnitFactors &Factors) { Factors = GetUnitFactors(); };
  FStyle.OnChange = Changed;
  FPreferredStyles.OnChange = Changed;
  FBaselineShift->OnChange = Changed;
  FBaselineShift->OnUnitFactors = [this](TObject *, TSVGUnitFactors &Factors) { Factors = GetUnitFactors(); };
  WireInheritance(*FBaselineShift);
}

void TSVGGraphicElement::WireLength(TSVGLength &Length, bool UseWidthRange)
{
  Length.OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
  Length.OnUnitFactors = [this](TObject *, TSVGUnitFactors &Factors) { Factors = GetUnitFactors(); };
  if (UseWidthRange)
    Length.OnRange = [this](TSVGLength *L, float &Min, float &Max, bool &Use) { LengthRangeViewBoxWidth(L, Min, Max, Use); };
  else
    Length.OnRange = [this](TSVGLength *L, float &Min, float &Max, bool &Use) { LengthRangeViewBoxHeight(L, Min, Max, Use); };
}

void TSVGGraphicElement::WireInheritance(TSVGStylePropertyLength &Length)
{
  Length.OnGetInherited = [this](TSVGStylePropertyLength *L, bool &Inherited) {
    Inherited = FInherits.Value().Contains(L->StyleProperty());
  };
  Length.OnSetInherited = [this](TSVGStylePropertyLength *L, bool Inherited) {
    FInherits.SetSet(L->StyleProperty(), Inherited);
  };
  Length.OnGetParent = [this](TSVGStylePropertyLength *L, TSVGStylePropertyLength *&Parent) { Parent = ParentLength(L); };
}

std::unique_ptr<TSVGLength> TSVGGraphicElement::CreateLength(bool UseWidthRange)
{
  auto Length = std::make_unique<TSVGLength>();
  WireLength(*Length, UseWidthRange);
  return Length;
}

std::unique_ptr<TSVGStylePropertyLength> TSVGGraphicElement::CreateStylePropertyLength(TSVGStyleProperty Property)
{
  auto Length = std::make_unique<TSVGStylePropertyLength>(Property);
  WireLength(*Length, true);
  WireInheritance(*Length);
  return Length;
}

std::unique_ptr<TSVGStylePropertyAutoLength> TSVGGraphicElement::CreateStylePropertyAutoLength(TSVGStyleProperty Property)
{
  auto Length = std::make_unique<TSVGStylePropertyAutoLength>(Property);
  WireLength(*Length, true);
  WireInheritance(*Length);
  return Length;
}

TSVGStylePropertyLength *TSVGGraphicElement::ParentLength(const TSVGStylePropertyLength *Length) const
{
  if (!FGraphicParent)
    return nullptr;
  switch (Length->StyleProperty()) {
  case ipBaselineShift:
    return FGraphicParent->FBaselineShift.get();
  case ipKerning:
    return FGraphicParent->FKerning.get();
  case ipLetterSpacing:
    return FGraphicParent->FLetterSpacing.get();
  case ipWordSpacing:
    return FGraphicParent->FWordSpacing.get();
  default:
    return nullptr;
  }
}

void TSVGGraphicElement::LengthRangeViewBoxWidth(TSVGLength *, float &, float &Max, bool &Use) const
{
  const TSVGCustomViewBox *ViewBox = GetNearestViewBox();
  Use = ViewBox != nullptr;
  if (Use)
    Max = ViewBox->ViewBox().Width()->GetValue();
}

void TSVGGraphicElement::LengthRangeViewBoxHeight(TSVGLength *, float &, float &Max, bool &Use) const
{
  const TSVGCustomViewBox *ViewBox = GetNearestViewBox();
  Use = ViewBox != nullptr;
  if (Use)
    Max = ViewBox->ViewBox().Height()->GetValue();
}

void TSVGGraphicElement::ResourceGetInherited(TSVGStyleProperty Property, bool &Inherited) const
{
  Inherited = FInherits.Value().Contains(Property);
}

void TSVGGraphicElement::SetParent(TSVGElement *Parent)
{
  if (Parent == FParent)
    return;
  TSVGElement::SetParent(Parent);
  FGraphicParent = dynamic_cast<TSVGGraphicElement *>(Parent);
  Reset();
}

// --- inheritance -------------------------------------------------------------------------------

const TSVGGraphicElement *TSVGGraphicElement::InheritanceSource(TSVGStyleProperty Property) const
{
  const TSVGGraphicElement *Source = this;
  while (Source->FGraphicParent && Source->FInherits.Value().Contains(Property))
    Source = Source->FGraphicParent;
  return Source;
}

template <typename T>
void TSVGGraphicElement::StoreProperty(T TSVGGraphicElement::*Field, TSVGStyleProperty Property, T Value, T Resolved)
{
  if (Value == this->*Field && (!FInherits.Value().Contains(Property) || Resolved == Value))
    return;
  this->*Field = Value;
  FInherits.SetSet(Property, false);
  Change(this);
}

bool TSVGGraphicElement::GetVisible() const
{
  if (SeparatesDisplayFromVisibility())
    return InheritanceSource(ipVisibility)->FVisible;
  const TSVGGraphicElement *Source = this;
  while (Source->FGraphicParent && Source->FInherits.Value().Contains(ipDisplay) &&
         Source->FInherits.Value().Contains(ipVisibility))
    Source = Source->FGraphicParent;
  return Source->FVisible;
}

void TSVGGraphicElement::SetVisible(bool Value)
{
  StoreProperty(&TSVGGraphicElement::FVisible, ipVisibility, Value, GetVisible());
}

TVXGPColor TSVGGraphicElement::GetColor() const
{
  const TSVGGraphicElement *Source = InheritanceSource(ipColor);
  // Only the standard road tells a colour nobody gave from the field's value.
  if (ColorStartsBlack() && Source->FInherits.Value().Contains(ipColor))
    return 0xFF000000;
  return Source->FColor;
}

void TSVGGraphicElement::SetColor(TVXGPColor Value)
{
  StoreProperty(&TSVGGraphicElement::FColor, ipColor, Value, GetColor());
}

TSVGColorInterpolation TSVGGraphicElement::GetColorInterpolation() const
{
  return InheritanceSource(ipColorInterpolation)->FColorInterpolation;
}

void TSVGGraphicElement::SetColorInterpolation(TSVGColorInterpolation Value)
{
  StoreProperty(&TSVGGraphicElement::FColorInterpolation, ipColorInterpolation, Value, GetColorInterpolation());
}

TSVGColorRendering TSVGGraphicElement::GetColorRendering() const
{
  return InheritanceSource(ipColorRendering)->FColorRendering;
}

void TSVGGraphicElement::SetColorRendering(TSVGColorRendering Value)
{
  StoreProperty(&TSVGGraphicElement::FColorRendering, ipColorRendering, Value, GetColorRendering());
}

TCursor TSVGGraphicElement::GetCursor() const
{
  return InheritanceSource(ipCursor)->FCursor;
}

void TSVGGraphicElement::SetCursor(TCursor Value)
{
  if (Value == GetCursor())
    return;
  FCursor = Value;
  FInherits.SetSet(ipCursor, false);
  Change(this);
}

TSVGFillRule TSVGGraphicElement::GetClipRule() const
{
  return InheritanceSource(ipClipRule)->FClipRule;
}

void TSVGGraphicElement::SetClipRule(TSVGFillRule Value)
{
  StoreProperty(&TSVGGraphicElement::FClipRule, ipClipRule, Value, GetClipRule());
}

TSVGFillRule TSVGGraphicElement::GetFillRule() const
{
  return InheritanceSource(ipFillRule)->FFillRule;
}

void TSVGGraphicElement::SetFillRule(TSVGFillRule Value)
{
  StoreProperty(&TSVGGraphicElement::FFillRule, ipFillRule, Value, GetFillRule());
}

TSVGAlignmentBaseline TSVGGraphicElement::GetAlignmentBaseline() const
{
  return InheritanceSource(ipAlignmentBaseline)->FAlignmentBaseline;
}

void TSVGGraphicElement::SetAlignmentBaseline(TSVGAlignmentBaseline Value)
{
  StoreProperty(&TSVGGraphicElement::FAlignmentBaseline, ipAlignmentBaseline, Value, GetAlignmentBaseline());
}

TSVGDominantBaseline TSVGGraphicElement::GetDominantBaseline() const
{
  return InheritanceSource(ipDominantBaseline)->FDominantBaseline;
}

void TSVGGraphicElement::SetDominantBaseline(TSVGDominantBaseline Value)
{
  StoreProperty(&TSVGGraphicElement::FDominantBaseline, ipDominantBaseline, Value, GetDominantBaseline());
}

TSVGDirection TSVGGraphicElement::GetDirection() const
{
  return InheritanceSource(ipDirection)->FDirection;
}

void TSVGGraphicElement::SetDirection(TSVGDirection Value)
{
  StoreProperty(&TSVGGraphicElement::FDirection, ipDirection, Value, GetDirection());
}

TSVGGlyphOrientationHorizontal TSVGGraphicElement::GetGlyphOrientationHorizontal() const
{
  return InheritanceSource(ipGlyphOrientationHorizontal)->FGlyphOrientationHorizontal;
}

void TSVGGraphicElement::SetGlyphOrientationHorizontal(TSVGGlyphOrientationHorizontal Value)
{
  StoreProperty(&TSVGGraphicElement::FGlyphOrientationHorizontal, ipGlyphOrientationHorizontal, Value,
                GetGlyphOrientationHorizontal());
}

TSVGGlyphOrientationVertical TSVGGraphicElement::GetGlyphOrientationVertical() const
{
  return InheritanceSource(ipGlyphOrientationVertical)->FGlyphOrientationVertical;
}

void TSVGGraphicElement::SetGlyphOrientationVertical(TSVGGlyphOrientationVertical Value)
{
  StoreProperty(&TSVGGraphicElement::FGlyphOrientationVertical, ipGlyphOrientationVertical, Value,
                GetGlyphOrientationVertical());
}

TSVGWritingMode TSVGGraphicElement::GetWritingMode() const
{
  const TSVGGraphicElement *Source = InheritanceSource(ipWritingMode);
  return Source == this ? FWritingMode : Source->GetWritingMode();
}

void TSVGGraphicElement::SetWritingMode(TSVGWritingMode Value)
{
  StoreProperty(&TSVGGraphicElement::FWritingMode, ipWritingMode, Value, GetWritingMode());
}

float TSVGGraphicElement::GetOpacity() const
{
  return InheritanceSource(ipOpacity)->FOpacity;
}

void TSVGGraphicElement::SetOpacity(float Value)
{
  if (Value == FOpacity && (!FInherits.Value().Contains(ipOpacity) || GetOpacity() == Value))
    return;
  FOpacity = std::clamp(Value, 0.0f, 1.0f);
  Change(this);
}

float TSVGGraphicElement::GetAbsoluteOpacity() const
{
  if (GroupOpacityNeedsLayer())
    return 1;
  float Result = GetOpacity();
  for (const TSVGGraphicElement *Parent = FGraphicParent; Parent; Parent = Parent->FGraphicParent)
    Result *= Parent->GetOpacity();
  return Result;
}

TSVGShapeRendering TSVGGraphicElement::GetShapeRendering() const
{
  return InheritanceSource(ipShapeRendering)->FShapeRendering;
}

void TSVGGraphicElement::SetShapeRendering(TSVGShapeRendering Value)
{
  StoreProperty(&TSVGGraphicElement::FShapeRendering, ipShapeRendering, Value, GetShapeRendering());
}

TSVGTextAlign TSVGGraphicElement::GetTextAlign() const
{
  return InheritanceSource(ipTextAnchor)->FTextAlign;
}

void TSVGGraphicElement::SetTextAlign(TSVGTextAlign Value)
{
  StoreProperty(&TSVGGraphicElement::FTextAlign, ipTextAnchor, Value, GetTextAlign());
}

TSVGTextRendering TSVGGraphicElement::GetTextRendering() const
{
  return InheritanceSource(ipTextRendering)->FTextRendering;
}

void TSVGGraphicElement::SetTextRendering(TSVGTextRendering Value)
{
  StoreProperty(&TSVGGraphicElement::FTextRendering, ipTextRendering, Value, GetTextRendering());
}

TSVGVectorEffect TSVGGraphicElement::GetVectorEffect() const
{
  return InheritanceSource(ipVectorEffect)->FVectorEffect;
}

void TSVGGraphicElement::SetVectorEffect(TSVGVectorEffect Value)
{
  StoreProperty(&TSVGGraphicElement::FVectorEffect, ipVectorEffect, Value, GetVectorEffect());
}

bool TSVGGraphicElement::IsOverflow() const
{
  return InheritanceSource(ipOverflow)->FOverflow;
}

void TSVGGraphicElement::SetOverflow(bool Value)
{
  FClippingChanged = true;
  StoreProperty(&TSVGGraphicElement::FOverflow, ipOverflow, Value, IsOverflow());
}

void TSVGGraphicElement::SetMaskURI(const QString &Value)
{
  if (Value == FMaskURI)
    return;
  FMaskURI = Value;
  Change(this);
}

void TSVGGraphicElement::SetClipURI(const QString &Value)
{
  FClippingChanged = true;
  if (Value == FClipURI && !FInherits.Value().Contains(ipClipPath))
    return;
  FClipURI = Value;
  FInherits.SetSet(ipClipPath, false);
  Change(this);
}

QString TSVGGraphicElement::GetMarkerStartURI() const
{
  return InheritanceSource(ipMarkerStart)->FMarkerStartURI;
}

QString TSVGGraphicElement::GetMarkerMidURI() const
{
  return InheritanceSource(ipMarkerMid)->FMarkerMidURI;
}

QString TSVGGraphicElement::GetMarkerEndURI() const
{
  return InheritanceSource(ipMarkerEnd)->FMarkerEndURI;
}

const TSVGStylePropertiesSet &TSVGGraphicElement::GetPreferredStyles() const
{
  const TSVGGraphicElement *Source = this;
  while (Source->FParentPreferredStyles && Source->FGraphicParent)
    Source = Source->FGraphicParent;
  return Source->FPreferredStyles;
}

void TSVGGraphicElement::SetBrush(const TSVGBrush &Value)
{
  FBrush->Assign(&Value);
}

void TSVGGraphicElement::SetPen(const TSVGPen &Value)
{
  FPen->Assign(&Value);
}

void TSVGGraphicElement::SetFont(const TSVGFont &Value)
{
  FFont->Assign(&Value);
}

// --- transform and lengths ---------------------------------------------------------------------

void TSVGGraphicElement::SetMatrix(const TMatrix &Value)
{
  FMatrix = Value;
  Change(this);
}

QString TSVGGraphicElement::GetTransformMatrix() const
{
  return SVGTransformationToString(FMatrix);
}

void TSVGGraphicElement::SetTransformMatrix(const QString &Value)
{
  SetMatrix(ParseTransformation(Value));
}

float TSVGGraphicElement::GetX() const { return FX->GetValue(); }
float TSVGGraphicElement::GetXRaw() const { return FX->Raw(); }
float TSVGGraphicElement::GetY() const { return FY->GetValue(); }
float TSVGGraphicElement::GetYRaw() const { return FY->Raw(); }
float TSVGGraphicElement::GetWidth() const { return FWidth->GetValue(); }
float TSVGGraphicElement::GetWidthRaw() const { return FWidth->Raw(); }
float TSVGGraphicElement::GetHeight() const { return FHeight->GetValue(); }
float TSVGGraphicElement::GetHeightRaw() const { return FHeight->Raw(); }

void TSVGGraphicElement::SetX(float Value)
{
  FX->SetPixels(Value);
}

void TSVGGraphicElement::SetY(float Value)
{
  FY->SetPixels(Value);
}

void TSVGGraphicElement::SetWidth(float Value)
{
  FWidth->SetPixels(std::max(Value, 0.0f));
}

void TSVGGraphicElement::SetHeight(float Value)
{
  FHeight->SetPixels(std::max(Value, 0.0f));
}

TSVGUnitFactors TSVGGraphicElement::GetUnitFactors() const
{
  return WithFontFactors(TSVGElement::GetUnitFactors());
}

TSVGUnitFactors TSVGGraphicElement::WithFontFactors(TSVGUnitFactors Factors) const
{
  // During a load the font is not resolved yet; its own size is what the lengths of the element see.
  const float Size = ElementState().Contains(esReading) ? FFont->GetSize()
                                                         : const_cast<TSVGGraphicElement *>(this)->GetFont().GetSize();
  Factors[suFontSize] *= Size;
  Factors[suFontXHeight] *= Size * 0.5f;
  return Factors;
}

// --- bounds and baking -------------------------------------------------------------------------

TRectF TSVGGraphicElement::GetBoundsRect() const
{
  const float X = GetX();
  const float Y = GetY();
  return TRectF{X, Y, float(double(X) + GetWidth()), float(double(Y) + GetHeight())};
}

TRectF TSVGGraphicElement::GetBoundsRect(const TMatrix &Matrix) const
{
  return TSVGElement::GetBoundsRect(VXMatrixMultiply(FMatrix, Matrix));
}

void TSVGGraphicElement::SetBoundsRect(const TRectF &Rect)
{
  TSVGUpdateGuard Guard(*this);
  SetX(Rect.Left);
  SetY(Rect.Top);
  SetWidth(Rect.Width());
  SetHeight(Rect.Height());
}

void TSVGGraphicElement::BakeTransformation(const TMatrix &Matrix)
{
  TSVGUpdateGuard Guard(*this);
  InternalBakeTransformation(Matrix);
}

void TSVGGraphicElement::InternalBakeTransformation(const TMatrix &Matrix)
{
  const TMatrix Combined = VXMatrixMultiply(FMatrix, Matrix);
  DoBakeTransformation(Combined);
  BakeTransformationChildren(Combined);
  FMatrix = VXIdentityMatrix;
}

void TSVGGraphicElement::DoBakeTransformation(const TMatrix &)
{
}

void TSVGGraphicElement::BakeTransformationChildren(const TMatrix &Matrix)
{
  for (TSVGElement *Child : FItems)
    if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Child))
      Graphic->BakeTransformation(Matrix);
}

// --- changes -----------------------------------------------------------------------------------

void TSVGGraphicElement::Change(TSVGElement *Element)
{
  FShapeCacheChanged = true;
  TSVGElement::Change(Element);
}

void TSVGGraphicElement::EnableChange()
{
  FBrushChanged = FPenChanged = FFontChanged = true;
  TSVGElement::EnableChange();
}

void TSVGGraphicElement::PropagateObjectPropChange(TObject *Sender)
{
  if (Sender == &FInherits)
    FBrushChanged = FPenChanged = FFontChanged = true;
  else if (dynamic_cast<TSVGBrush *>(Sender))
    FBrushChanged = true;
  else if (dynamic_cast<TSVGPen *>(Sender))
    FPenChanged = true;
  else if (dynamic_cast<TSVGFont *>(Sender))
    FFontChanged = true;
  TSVGElement::PropagateObjectPropChange(Sender);
}

void TSVGGraphicElement::Reset()
{
  TSVGElement::Reset();
  FBrushChanged = FPenChanged = FFontChanged = true;
  FClippingChanged = true;
  FShapeCacheChanged = true;
}

TVXGPPath *TSVGGraphicElement::GetShape()
{
  FShapeCacheChanged = false;
  return &FShape;
}

// --- copying and clearing ----------------------------------------------------------------------

void TSVGGraphicElement::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Graphic = dynamic_cast<const TSVGGraphicElement *>(Source)) {
    auto *Other = const_cast<TSVGGraphicElement *>(Graphic);
    FStyle.Assign(&Graphic->FStyle);
    FInherits.Assign(&Graphic->FInherits);
    FPreferredStyles.Assign(&Graphic->FPreferredStyles);
    FParentPreferredStyles = Graphic->FParentPreferredStyles;
    FBrush->Assign(&Other->GetBrush());
    FPen->Assign(&Other->GetPen());
    FFont->Assign(&Other->GetFont());
    FX->Assign(Graphic->FX.get());
    FY->Assign(Graphic->FY.get());
    FWidth->Assign(Graphic->FWidth.get());
    FHeight->Assign(Graphic->FHeight.get());
    FLetterSpacing->Assign(Graphic->FLetterSpacing.get());
    FKerning->Assign(Graphic->FKerning.get());
    FWordSpacing->Assign(Graphic->FWordSpacing.get());
    FBaselineShift->Assign(Graphic->FBaselineShift.get());
    FVisible = Graphic->FVisible;
    FColor = Graphic->FColor;
    FFillKeyword = Graphic->FFillKeyword;
    FDisplayed = Graphic->FDisplayed;
    FStrokeKeyword = Graphic->FStrokeKeyword;
    FCursor = Graphic->FCursor;
    FMatrix = Graphic->FMatrix;
    FClipURI = Graphic->FClipURI;
    FMaskURI = Graphic->FMaskURI;
    FClipRect = Graphic->FClipRect;
    FTextAlign = Graphic->GetTextAlign();
    FClipRule = Graphic->GetClipRule();
    FFillRule = Graphic->GetFillRule();
    FOpacity = Graphic->GetOpacity();
    FOverflow = Graphic->IsOverflow();
    FBlendMode = Graphic->FBlendMode;
    FIsolated = Graphic->FIsolated;
    FPaintOrder = Graphic->FPaintOrder;
    FMarkerStartURI = Graphic->GetMarkerStartURI();
    FMarkerMidURI = Graphic->GetMarkerMidURI();
    FMarkerEndURI = Graphic->GetMarkerEndURI();
    FColorInterpolation = Graphic->GetColorInterpolation();
    FColorRendering = Graphic->GetColorRendering();
    FTextRendering = Graphic->GetTextRendering();
    FShapeRendering = Graphic->GetShapeRendering();
    FVectorEffect = Graphic->GetVectorEffect();
    FOpacityPreferredUnit = Graphic->FOpacityPreferredUnit;
    FGlyphOrientationHorizontal = Graphic->GetGlyphOrientationHorizontal();
    FGlyphOrientationVertical = Graphic->GetGlyphOrientationVertical();
    FWritingMode = Graphic->GetWritingMode();
    FDirection = Graphic->GetDirection();
    FAlignmentBaseline = Graphic->GetAlignmentBaseline();
    FDominantBaseline = Graphic->GetDominantBaseline();
  }
  TSVGElement::AssignProperties(Source);
}

void TSVGGraphicElement::ResetToDefaults()
{
  SetAttributes(DefaultAttributes);
  FMatrix = VXIdentityMatrix;
  FOpacity = 1;
  FVisible = true;
  FColor = 0;
  FBrush->Clear();
  FPen->Clear();
  FFont->Clear();
  FCursor = 0;
  FTextAlign = TSVGTextAlign(1);
  FClipRule = frNonZero;
  FFillRule = frNonZero;
  FClipRect = TRectF{};
  FOverflow = true;
  FBlendMode = bmNormal;
  FIsolated = false;
  FStyleBlendMode.clear();
  FPaintOrder.clear();
  FStyleIsolation.clear();
  FColorInterpolation = sciSRGB;
  FColorRendering = clrnAuto;
  FTextRendering = txrnAuto;
  FShapeRendering = srnAuto;
  FVectorEffect = veNone;
  FOpacityPreferredUnit = suNone;
  FGlyphOrientationHorizontal = TSVGGlyphOrientationHorizontal(1);
  FGlyphOrientationVertical = TSVGGlyphOrientationVertical(1);
  FWritingMode = TSVGWritingMode(1);
  FDirection = TSVGDirection(1);
  FAlignmentBaseline = TSVGAlignmentBaseline(1);
  FDominantBaseline = TSVGDominantBaseline(1);
  FInherits.SetValue(DefaultInherits);
  FPreferredStyles.SetValue(TSVGStyleProperties{});
  FBrushChanged = FPenChanged = FFontChanged = FClippingChanged = FShapeCacheChanged = true;
  FLetterSpacing->Clear();
  FKerning->Clear();
  FWordSpacing->Clear();
  FBaselineShift->Clear();
  FClipURI.clear();
  FMaskURI.clear();
  FMarkerStartURI.clear();
  FMarkerMidURI.clear();
  FMarkerEndURI.clear();
  FFillKeyword = FStrokeKeyword = pkAbsent;
  FDisplayed = true;
}

void TSVGGraphicElement::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGElement::Clear();
  FStyle.Clear();
  FShape.Clear();
  FWidth->Clear();
  FHeight->Clear();
  FX->Clear();
  FY->Clear();
  ResetToDefaults();
}

bool TSVGGraphicElement::IsStored(TSVGStyleProperty Property, const QString &Value) const
{
  return Value != DefaultSVGStylePropertyValues[Property];
}

// --- reading children --------------------------------------------------------------------------

void TSVGGraphicElement::ReadChildren(const IXMLNode &Node)
{
  // Walk by siblings: indexed access into the DOM's child list costs a walk of its own.
  for (IXMLNode Child = Node.ChildNodes().First(); Child; Child = Child.NextSibling()) {
    const int Index = ReadChild(Child);
    if (Index > -1)
      FItems[Index]->LoadFromXML(Child);
  }
}

int TSVGGraphicElement::ReadChild(const IXMLNode &Node)
{
  const QString Name = Node.LocalName();
  if (Name.isEmpty())
    return -1;
  if (Name == QLatin1String("desc")) {
    FDescription.SetText(Node.Text());
  } else if (Name == QLatin1String("title")) {
    FTitle = Node.Text();
  } else if (Name == QLatin1String("namedview") || Name == QLatin1String("perspective") ||
             Name == QLatin1String("filter")) {
    // Editor and filter elements are passed over whatever the options say.
  } else if (!GetOptions().Contains(soSkipUnknownXML)) {
    throw ESVGException(Format(SUnknownSVGElement, {NodeTypeName(Node.NodeType()), Name}));
  }
  return -1;
}

} // namespace vx
