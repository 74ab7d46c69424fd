#include "structure/VXSVGGradients.h"

#include "platform/rtl/VXSysUtils.h"
#include "structure/VXSVGObjectBox.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGColors.h"
#include "values/VXSVGLookups.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPropertyParsers.h"
#include "values/VXSVGTransforms.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <unordered_set>
#include <utility>
#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGLinearGradient)
VX_SVG_ELEMENT_CLASS_INFO(TSVGRadialGradient)
VX_SVG_ELEMENT_CLASS_INFO(TSVGGradientStop)

namespace {

const TSVGClassRegistration LinearGradientRegistration(etLinearGradient, TSVGLinearGradient::ClassInfo());
const TSVGClassRegistration RadialGradientRegistration(etRadialGradient, TSVGRadialGradient::ClassInfo());
const TSVGClassRegistration GradientStopRegistration(etGradientStop, TSVGGradientStop::ClassInfo());

// The distance between the last point of one pass over the stops and the first of the next: it
// makes the seam a hard step, and it is what ends the unrolling of stops that all sit at 0.
constexpr float SeamStep = 0.0001f;
// A bound on the points that reflect and repeat unroll: stops far below 0 would otherwise need
// millions of passes to reach 1. The stops left out would lie beyond what any picture shows apart.
constexpr int MaxUnrolledPoints = 65536;

// Sets a change event aside for a scope: building a cached value is not a change of it.
class TLentEvent
{
public:
  explicit TLentEvent(TNotifyEvent &Slot) : FSlot(Slot), FSaved(std::move(Slot)) { FSlot = nullptr; }
  ~TLentEvent() { FSlot = std::move(FSaved); }
  TLentEvent(const TLentEvent &) = delete;
  TLentEvent &operator=(const TLentEvent &) = delete;

private:
  TNotifyEvent &FSlot;
  TNotifyEvent FSaved;
};

// BeginUpdate/EndUpdate of a point list for a scope.
class TPointsUpdate
{
public:
  explicit TPointsUpdate(TVXGPGradientPoints &Points) : FPoints(Points) { FPoints.BeginUpdate(); }
  ~TPointsUpdate() { FPoints.EndUpdate(); }
  TPointsUpdate(const TPointsUpdate &) = delete;
  TPointsUpdate &operator=(const TPointsUpdate &) = delete;

private:
  TVXGPGradientPoints &FPoints;
};

// P as fractions of Rect; a side of length 0 gives 1.
TPointF Normalize(const TPointF &P, const TRectF &Rect)
{
  const float W = Rect.Width();
  const float H = Rect.Height();
  return {W != 0 ? (P.X - Rect.Left) / W : 1.0f, H != 0 ? (P.Y - Rect.Top) / H : 1.0f};
}

// A length that belongs to no view box: a percentage stays a fraction.
std::unique_ptr<TSVGLength> CreateBoxLength(float Value, bool IsPercent)
{
  return std::make_unique<TSVGLength>(Value, IsPercent, suNone);
}

} // namespace

// --- TSVGCustomGradient --------------------------------------------------------------------------

TSVGCustomGradient::TSVGCustomGradient(TSVGDocument *Owner) : TSVGGraphicElement(Owner) {}

TSVGCustomGradient::~TSVGCustomGradient()
{
  FListener.Stop(*this);
}

TSVGElementTypes TSVGCustomGradient::ChildSVGTypes() const
{
  return SVGDescriptiveElements | TSVGElementTypes{etGradientStop};
}

void TSVGCustomGradient::SetReference(const QString &Value)
{
  if (Value == FReference)
    return;
  FReference = Value;
  TSVGElement *Target = nullptr;
  if (!FReference.isEmpty() && GetOwner() && GetOwner()->AllItems().TryGetValue(FReference, Target) &&
      (Target == this || !dynamic_cast<TSVGGraphicElement *>(Target)))
    Target = nullptr;
  FListener.Listen(*this, Target);
  Change(this);
}

void TSVGCustomGradient::SetSpread(TSVGGradientSpread Value)
{
  if (Value == FSpread)
    return;
  FSpread = Value;
  GiveAttribute(gaSpread);
  FBrushChanged = FPenChanged = true;
  Change(this);
}

void TSVGCustomGradient::SetUnits(TSVGCoordinateSystemUnit Value)
{
  if (Value == FUnits)
    return;
  FUnits = Value;
  GiveAttribute(gaUnits);
  Change(this);
}

void TSVGCustomGradient::NotifyListener(TSVGElement *Element)
{
  TSVGGraphicElement::NotifyListener(Element);
  // The stops may come from the target.
  FBrushChanged = FPenChanged = true;
  if (Element && Element->ElementState().Contains(esDestroying))
    FReference.clear();
}

void TSVGCustomGradient::ElementNotification(TObject *Sender, TSVGElement *Item, TCollectionNotification Action)
{
  TSVGGraphicElement::ElementNotification(Sender, Item, Action);
  if (dynamic_cast<TSVGGradientStop *>(Item))
    FBrushChanged = FPenChanged = true;
}

void TSVGCustomGradient::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Gradient = dynamic_cast<const TSVGCustomGradient *>(Source)) {
    FSpread = Gradient->FSpread;
    FUnits = Gradient->FUnits;
    FGiven = Gradient->FGiven;
    SetReference(Gradient->FReference);
  }
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGCustomGradient::Clear()
{
  TSVGUpdateGuard Guard(*this);
  SetReference(QString());
  TSVGGraphicElement::Clear();
  FUnits = csuObjectBoundingBox;
  FSpread = gsPad;
  FGiven = {};
}

void TSVGCustomGradient::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  // The gradient's own transform replaces whatever "transform" gave.
  FMatrix = ParseTransformation(ParseAttrString(Node, QStringLiteral("gradientTransform")));
  // A loaded reference is stored as written: the gradient joins no listeners until a program sets it.
  FListener.Stop(*this);
  FReference = ParseURI(Node, QStringLiteral("href"), FReference, QStringLiteral("xlink"));
  FUnits = ParseCoordinateSystemUnit(ParseAttrString(Node, QStringLiteral("gradientUnits")), FUnits);
  FSpread = ParseGradientSpread(ParseAttrString(Node, QStringLiteral("spreadMethod")), FSpread);
  GiveLoadedAttributes(Node, {{gaUnits, QStringLiteral("gradientUnits")},
                              {gaTransform, QStringLiteral("gradientTransform")},
                              {gaSpread, QStringLiteral("spreadMethod")}});
}

void TSVGCustomGradient::GiveLoadedAttributes(
  const IXMLNode &Node, std::initializer_list<std::pair<TSVGGradientAttribute, QString>> Attributes)
{
  for (const auto &[Attribute, Name] : Attributes)
    if (Node.HasAttribute(Name))
      GiveAttribute(Attribute);
}

int TSVGCustomGradient::ReadChild(const IXMLNode &Node)
{
  if (GetSVGElementType(Node.LocalName()) != etGradientStop)
    return TSVGGraphicElement::ReadChild(Node);
  if (FItems.Count() >= MaxLoadedStops)
    return -1;
  auto *Stop = new TSVGGradientStop(GetOwner());
  try {
    return FItems.Add(Stop);
  } catch (...) {
    // A refused child is handed back detached; nobody else holds it.
    if (FItems.IndexOf(Stop) < 0)
      delete Stop;
    throw;
  }
}

TSVGCustomGradient *TSVGCustomGradient::ReferencedGradient() const
{
  TSVGElement *Target = nullptr;
  if (FReference.isEmpty() || !GetOwner() || !GetOwner()->AllItems().TryGetValue(FReference, Target))
    return nullptr;
  return dynamic_cast<TSVGCustomGradient *>(Target);
}

const TSVGCustomGradient &TSVGCustomGradient::StopSource() const
{
  // An href cycle (a -> b -> a, or a -> a) is cut where the chain comes back to a gradient already
  // seen: that reference is skipped, the gradient keeps its own stops, which are none, and the
  // paint draws nothing. No exception, so the rest of the picture is still drawn.
  std::unordered_set<const TSVGCustomGradient *> Seen{this};
  const TSVGCustomGradient *Source = this;
  while (Source->Count() == 0) {
    const TSVGCustomGradient *Next = Source->ReferencedGradient();
    if (!Next || !Seen.insert(Next).second)
      break;
    Source = Next;
  }
  return *Source;
}

void TSVGCustomGradient::SetGradientPoints(TVXGPGradientPoints &Points, int Direction)
{
  StopSource().FillPoints(Points, Direction);
}

void TSVGCustomGradient::FillPoints(TVXGPGradientPoints &Points, int Direction) const
{
  TPointsUpdate Update(Points);
  Points.Clear();
  if (Count() == 0)
    return;
  if (FSpread != gsReflect && FSpread != gsRepeat) {
    AppendStops(Points, false, Direction);
    return;
  }
  int Step = Direction;
  float Last = AppendStops(Points, false, Step);
  float Before = -std::numeric_limits<float>::infinity();
  // Each pass must move the end forward; one that cannot (no stops, or an offset so far from 0
  // that the seam step is lost in rounding) ends the unrolling.
  while (1.0f > Last && Last > Before && Points.GetCount() < MaxUnrolledPoints) {
    if (FSpread == gsReflect)
      Step = -Step;
    Before = Last;
    Last = AppendStops(Points, true, Step);
  }
}

float TSVGCustomGradient::StopOffset(int Index) const
{
  if (Index < 0 || Index >= Count())
    return 0.0f;
  const auto *Stop = dynamic_cast<const TSVGGradientStop *>(FItems[Index]);
  return Stop ? Stop->Offset() : 0.0f;
}

float TSVGCustomGradient::AppendStops(TVXGPGradientPoints &Points, bool Continuing, int Step) const
{
  float Result = 0;
  bool First = true;
  for (int I = Step == 1 ? 0 : Count() - 1; I >= 0 && I < Count(); I += Step) {
    auto *Stop = dynamic_cast<TSVGGradientStop *>(FItems[I]);
    if (!Stop)
      continue;
    const float Previous = Points.GetCount() > 0 ? Points.GetPoint(Points.GetCount() - 1).Offset : 0.0f;
    float Offset = Stop->Offset();
    if (Continuing && First) {
      Offset = Previous + SeamStep;
      First = false;
    } else if (Continuing) {
      // The step between two points is the distance between their stops.
      Offset = Previous + std::abs(Stop->Offset() - StopOffset(I - Step));
    }
    Points.Add(Offset, Stop->GetStopBrush().GetColor());
    Result = Offset;
    if (Continuing && Offset >= 1.0f)
      break;
  }
  return Result;
}

void TSVGCustomGradient::UpdateBrushGradient(TVXGPGradientStyle Style)
{
  if (!FBrushChanged)
    return;
  TLentEvent Quiet(FBrush->OnChange);
  TVXGPGradient &Gradient = FBrush->GetGradient();
  Gradient.SetStyle(Style);
  TVXGPGradientPoints &Points = Gradient.Points();
  SetGradientPoints(Points, 1);
  if (Style == gsRadial) {
    // Unrolled from the centre outward first and turned round afterwards: unrolling last to first
    // would start the repeated passes at the centre's end and scramble the rings.
    TPointsUpdate Update(Points);
    std::vector<TVXGPGradientPoint> Outward;
    for (int I = 0; I < Points.GetCount(); ++I)
      Outward.push_back(Points.GetPoint(I));
    Points.Clear();
    for (auto P = Outward.rbegin(); P != Outward.rend(); ++P)
      Points.Add(1.0f - P->Offset, P->Color);
  }
  FBrushChanged = false;
}

void TSVGCustomGradient::AddStops(const TVXGPGradientPoints &Points)
{
  for (int I = 0; I < Points.GetCount(); ++I) {
    auto *Stop = new TSVGGradientStop(GetOwner());
    try {
      FItems.Add(Stop);
    } catch (...) {
      if (FItems.IndexOf(Stop) < 0)
        delete Stop;
      throw;
    }
    Stop->SetOffset(Points.GetPoint(I).Offset);
    Stop->GetStopBrush().SetColor(Points.GetPoint(I).Color);
  }
}

std::unique_ptr<TVXGPGradient> TSVGCustomGradient::GetGradient(const TMatrix &Matrix, const TRectF &Rect)
{
  auto Result = std::make_unique<TVXGPGradient>();
  Result->Assign(&GetBrush(Matrix, Rect).GetGradient());
  return Result;
}

bool TSVGCustomGradient::PaintServerBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Rect,
                                          TVXGPBrush &Target)
{
  if (LaysOutByStandardRules())
    return StandardBrush(Client, VXObjectBoundingBox(Client, Rect), Target);
  const std::unique_ptr<TVXGPGradient> Gradient = GetGradient(Matrix, Rect);
  Target.SetGradient(Gradient.get());
  Target.SetKind(bkGradient);
  return true;
}

// --- TSVGLinearGradient --------------------------------------------------------------------------

TSVGLinearGradient::TSVGLinearGradient(TSVGDocument *Owner)
  : TSVGCustomGradient(Owner), FX1(CreateVectorLength()), FY1(CreateVectorLength()), FX2(CreateVectorLength()),
    FY2(CreateVectorLength())
{
  TLentEvent Quiet(FX2->OnChange);
  FX2->Initialize(1.0f, false, suNone);
}

TSVGLinearGradient::~TSVGLinearGradient() = default;

std::unique_ptr<TSVGLength> TSVGLinearGradient::CreateVectorLength()
{
  std::unique_ptr<TSVGLength> Length = CreateBoxLength(0.0f, false);
  Length->OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
  Length->OnUnitFactors = [this](TObject *, TSVGUnitFactors &Factors) { Factors = GetUnitFactors(); };
  return Length;
}

void TSVGLinearGradient::WriteVector()
{
  TLentEvent Quiet(FBrush->OnChange);
  TVXGPGradient &Gradient = FBrush->GetGradient();
  Gradient.Start().SetPoint({FX1->GetValue(), FY1->GetValue()});
  Gradient.End().SetPoint({FX2->GetValue(), FY2->GetValue()});
}

void TSVGLinearGradient::SetX1(const TSVGLength &Value)
{
  FX1->Assign(&Value);
  GiveAttribute(gaX1);
  TLentEvent Quiet(FBrush->OnChange);
  FBrush->GetGradient().Start().SetX(FX1->GetPixels());
}

void TSVGLinearGradient::SetY1(const TSVGLength &Value)
{
  FY1->Assign(&Value);
  GiveAttribute(gaY1);
  TLentEvent Quiet(FBrush->OnChange);
  FBrush->GetGradient().Start().SetY(FY1->GetPixels());
}

void TSVGLinearGradient::SetX2(const TSVGLength &Value)
{
  FX2->Assign(&Value);
  GiveAttribute(gaX2);
  TLentEvent Quiet(FBrush->OnChange);
  FBrush->GetGradient().End().SetX(FX2->GetPixels());
}

void TSVGLinearGradient::SetY2(const TSVGLength &Value)
{
  FY2->Assign(&Value);
  GiveAttribute(gaY2);
  TLentEvent Quiet(FBrush->OnChange);
  FBrush->GetGradient().End().SetY(FY2->GetPixels());
}

void TSVGLinearGradient::Assign(const TPersistent *Source)
{
  const auto *Gradient = dynamic_cast<const TVXGPGradient *>(Source);
  if (!Gradient) {
    TSVGCustomGradient::Assign(Source);
    return;
  }
  TSVGUpdateGuard Guard(*this);
  Clear();
  SetUnits(csuObjectBoundingBox);
  FX1->SetAsUnit(suNone, Gradient->Start().X());
  FY1->SetAsUnit(suNone, Gradient->Start().Y());
  FX2->SetAsUnit(suNone, Gradient->End().X());
  FY2->SetAsUnit(suNone, Gradient->End().Y());
  WriteVector();
  AddStops(Gradient->Points());
}

void TSVGLinearGradient::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Linear = dynamic_cast<const TSVGLinearGradient *>(Source)) {
    SetX1(*Linear->FX1);
    SetY1(*Linear->FY1);
    SetX2(*Linear->FX2);
    SetY2(*Linear->FY2);
  }
  TSVGCustomGradient::AssignProperties(Source);
}

void TSVGLinearGradient::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomGradient::Clear();
  FX1->Clear();
  FX2->Initialize(1.0f, false, suNone);
  FY1->Clear();
  FY2->Clear();
}

TSVGBrush &TSVGLinearGradient::GetBrush(const TMatrix &, const TRectF &)
{
  UpdateBrushGradient(gsLinear);
  return *FBrush;
}

std::unique_ptr<TVXGPGradient> TSVGLinearGradient::GetGradient(const TMatrix &Matrix, const TRectF &Rect)
{
  WriteVector();
  std::unique_ptr<TVXGPGradient> Result = TSVGCustomGradient::GetGradient(Matrix, Rect);
  if (FUnits != csuUserSpaceOnUse || Rect.Width() == 0 || Rect.Height() == 0)
    return Result;
  // The gradient's own transform moves the vector only; the element's matrix moves both.
  const TMatrix VectorMatrix = VXMatrixMultiply(FMatrix, Matrix);
  const TRectF Box = VXMatrixTransformRect(Rect, Matrix);
  const TPointF P1 = VXMatrixTransformPoint(Result->Start().GetPoint(), VectorMatrix);
  const TPointF P2 = VXMatrixTransformPoint(Result->End().GetPoint(), VectorMatrix);
  TLentEvent Quiet(Result->OnChange);
  Result->Start().SetPoint(Normalize(P1, Box));
  Result->End().SetPoint(Normalize(P2, Box));
  return Result;
}

void TSVGLinearGradient::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomGradient::DoLoadFromXML(Node);
  ParsePercent(Node, QStringLiteral("x1"), FX1.get(), 0.0f, 1.0f);
  ParsePercent(Node, QStringLiteral("y1"), FY1.get(), 0.0f, 1.0f);
  ParsePercent(Node, QStringLiteral("x2"), FX2.get(), 0.0f, 1.0f);
  ParsePercent(Node, QStringLiteral("y2"), FY2.get(), 0.0f, 1.0f);
  GiveLoadedAttributes(Node, {{gaX1, QStringLiteral("x1")},
                              {gaY1, QStringLiteral("y1")},
                              {gaX2, QStringLiteral("x2")},
                              {gaY2, QStringLiteral("y2")}});
}

// --- TSVGRadialGradient --------------------------------------------------------------------------

TSVGRadialGradient::TSVGRadialGradient(TSVGDocument *Owner)
  : TSVGCustomGradient(Owner), FFocalX(CreateBoxLength(0.0f, false)), FFocalY(CreateBoxLength(0.0f, false)),
    FFocalRadius(CreateBoxLength(0.0f, false))
{
  for (TSVGLength *Length : {FX.get(), FY.get(), FWidth.get(), FHeight.get()}) {
    TLentEvent Quiet(Length->OnChange);
    Length->Initialize(0.5f, true, suNone);
  }
  for (TSVGLength *Length : {FFocalX.get(), FFocalY.get(), FFocalRadius.get()}) {
    Length->OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
    Length->OnUnitFactors = [this](TObject *, TSVGUnitFactors &Factors) { Factors = GetUnitFactors(); };
  }
}

TSVGRadialGradient::~TSVGRadialGradient() = default;

void TSVGRadialGradient::InitializeGeometry()
{
  for (TSVGLength *Length : {FX.get(), FY.get(), FWidth.get(), FHeight.get()})
    Length->Initialize(0.5f, true, suNone);
  FFocalX->Clear();
  FFocalY->Clear();
  FFocalRadius->Clear();
  FFocalXSpecified = false;
  FFocalYSpecified = false;
}

void TSVGRadialGradient::SetFocalXSpecified(bool Value)
{
  if (Value == FFocalXSpecified)
    return;
  FFocalXSpecified = Value;
  Change(this);
}

void TSVGRadialGradient::SetFocalYSpecified(bool Value)
{
  if (Value == FFocalYSpecified)
    return;
  FFocalYSpecified = Value;
  Change(this);
}

void TSVGRadialGradient::Assign(const TPersistent *Source)
{
  const auto *Gradient = dynamic_cast<const TVXGPGradient *>(Source);
  if (!Gradient) {
    TSVGCustomGradient::Assign(Source);
    return;
  }
  TSVGUpdateGuard Guard(*this);
  Clear();
  SetUnits(csuObjectBoundingBox);
  const TVXGPRadialTransform &Radial = Gradient->RadialTransform();
  FFocalX->SetAsUnit(suNone, Radial.Center().X());
  FX->SetAsUnit(suNone, Radial.Center().X());
  FFocalY->SetAsUnit(suNone, Radial.Center().Y());
  FY->SetAsUnit(suNone, Radial.Center().Y());
  FWidth->SetAsUnit(suNone, Radial.Scale().X() / 2.0f);
  FHeight->Assign(FWidth.get());
  AddStops(Gradient->Points());
}

void TSVGRadialGradient::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Radial = dynamic_cast<const TSVGRadialGradient *>(Source)) {
    FFocalX->Assign(Radial->FFocalX.get());
    FFocalY->Assign(Radial->FFocalY.get());
    FFocalRadius->Assign(Radial->FFocalRadius.get());
    FFocalXSpecified = Radial->FFocalXSpecified;
    FFocalYSpecified = Radial->FFocalYSpecified;
  }
  TSVGCustomGradient::AssignProperties(Source);
}

void TSVGRadialGradient::Clear()
{
  TSVGUpdateGuard Guard(*this);
  // The inherited Clear empties the lengths, so the 50 per cent defaults come after it.
  TSVGCustomGradient::Clear();
  InitializeGeometry();
}

TSVGBrush &TSVGRadialGradient::GetBrush(const TMatrix &, const TRectF &)
{
  UpdateBrushGradient(gsRadial);
  return *FBrush;
}

std::unique_ptr<TVXGPGradient> TSVGRadialGradient::GetGradient(const TMatrix &Matrix, const TRectF &Rect)
{
  std::unique_ptr<TVXGPGradient> Result = TSVGCustomGradient::GetGradient(Matrix, Rect);
  TLentEvent Quiet(Result->OnChange);
  // A percentage, or a plain number in (0, 1], is a fraction of the box; the units do not matter.
  auto BoxCoordinate = [&Rect](bool Horizontal, bool UseFirst, bool FirstIsPercent, bool SecondIsPercent, float First,
                               float Second) {
    const float Value = UseFirst ? First : Second;
    const bool IsPercent = UseFirst ? FirstIsPercent : SecondIsPercent;
    if (!IsPercent && !(Value > 0 && Value <= 1))
      return Value;
    return Horizontal ? Rect.Left + Rect.Width() * Value : Rect.Top + Rect.Height() * Value;
  };
  const TMatrix &M = FMatrix;
  TVXGPRadialTransform &Radial = Result->RadialTransform();

  const float Cx = BoxCoordinate(true, false, FFocalX->IsPercent(), FX->IsPercent(), FFocalX->GetPixels(),
                                 FX->GetPixels());
  const float Cy = BoxCoordinate(false, false, FFocalY->IsPercent(), FY->IsPercent(), FFocalY->GetPixels(),
                                 FY->GetPixels());
  const TPointF Center = Normalize(VXMatrixTransformPoint({Cx, Cy}, M), Rect);
  Radial.Center().SetPoint(Center);

  if (FFocalXSpecified || FFocalYSpecified) {
    // A focal coordinate left out takes the middle of the box, not the centre's coordinate.
    const float Fx = BoxCoordinate(true, FFocalXSpecified, FFocalX->IsPercent(), true, FFocalX->GetPixels(), 0.5f);
    const float Fy = BoxCoordinate(false, FFocalYSpecified, FFocalY->IsPercent(), true, FFocalY->GetPixels(), 0.5f);
    const TPointF Focus = Normalize(VXMatrixTransformPoint({Fx, Fy}, M), Rect);
    Radial.FocalOffset().SetPoint({Focus.X - Center.X, Focus.Y - Center.Y});
  }

  const float W = Rect.Width();
  const float H = Rect.Height();
  if (std::abs(W) > 0 && std::abs(H) > 0) {
    const float Pixels = FWidth->GetPixels();
    float R = Pixels;
    if (FWidth->IsPercent())
      R = Pixels < 1.0f ? Pixels * W : Pixels / 0.5f * W;
    const TPointF A = VXMatrixTransformPoint({R, 0}, M);
    const TPointF B = VXMatrixTransformPoint({0, 0}, M);
    const float D = std::hypot(A.X - B.X, A.Y - B.Y);
    Radial.Scale().SetPoint({D / (W / 2.0f), D / (H / 2.0f)});
  }
  return Result;
}

void TSVGRadialGradient::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomGradient::DoLoadFromXML(Node);
  const std::pair<TSVGLength *, QString> Geometry[] = {
    {FX.get(), QStringLiteral("cx")}, {FY.get(), QStringLiteral("cy")}, {FWidth.get(), QStringLiteral("r")}};
  for (const auto &[Length, Name] : Geometry) {
    Length->Initialize(0.5f, true, suNone);
    ParsePercent(Node, Name, Length, 0.0f, 1.0f);
  }
  FHeight->Assign(FWidth.get());
  FFocalXSpecified = Node.HasAttribute(QStringLiteral("fx"));
  FFocalX->Clear();
  ParsePercent(Node, QStringLiteral("fx"), FFocalX.get(), 0.0f, 1.0f);
  FFocalYSpecified = Node.HasAttribute(QStringLiteral("fy"));
  FFocalY->Clear();
  ParsePercent(Node, QStringLiteral("fy"), FFocalY.get(), 0.0f, 1.0f);
  FFocalRadius->Clear();
  ParsePercent(Node, QStringLiteral("fr"), FFocalRadius.get(), 0.0f, 1.0f);
  GiveLoadedAttributes(Node, {{gaCX, QStringLiteral("cx")},
                              {gaCY, QStringLiteral("cy")},
                              {gaR, QStringLiteral("r")},
                              {gaFX, QStringLiteral("fx")},
                              {gaFY, QStringLiteral("fy")},
                              {gaFR, QStringLiteral("fr")}});
}

// --- TSVGGradientStop ----------------------------------------------------------------------------

TSVGGradientStop::TSVGGradientStop(TSVGDocument *Owner)
  : TSVGGraphicElement(Owner), FStopBrush(std::make_unique<TSVGBrush>(nullptr, bkSolid, 0xFF000000))
{
  FStopBrush->OnChange = [this](TObject *Sender) { PropagateObjectPropChange(Sender); };
}

TSVGGradientStop::~TSVGGradientStop() = default;

TSVGBrush &TSVGGradientStop::GetStopBrush()
{
  if (FStopBrushChanged && FStopBrush->GetOpacity() < 1.0f) {
    TLentEvent Quiet(FStopBrush->OnChange);
    FStopBrush->UpdateColorOpacity();
    FStopBrushChanged = false;
  }
  return *FStopBrush;
}

void TSVGGradientStop::PropagateObjectPropChange(TObject *Sender)
{
  if (Sender == FStopBrush.get())
    FStopBrushChanged = true;
  TSVGGraphicElement::PropagateObjectPropChange(Sender);
}

void TSVGGradientStop::ApplyStyle(const TSVGStyle &Style)
{
  TSVGGraphicElement::ApplyStyle(Style);
  // The stop properties are not inherited by default and the stop keeps no inherit mark of its
  // own for them: "inherit" leaves the present value, and FInherits is not touched.
  bool Inherited = false;
  bool IsNone = FStopBrush->GetKind() == bkNone;
  FStopBrush->SetColor(
    ParseColor(StopPropertyText(Style, ipStopColor), FStopBrush->GetColor(), IsNone, Inherited, GetColor()));
  if (FStopBrush->GetKind() != bkNone)
    FStopBrush->SetKind(bkSolid);
  Inherited = false;
  const QString Opacity = StopPropertyText(Style, ipStopOpacity);
  float Percent = 0;
  if (ReadsStopByStandardRules() && Trim(Opacity).endsWith(QLatin1Char('%')) &&
      TryStrToFloat(Trim(Opacity).chopped(1), Percent))
    FStopBrush->SetOpacity(std::clamp(Percent / 100.0f, 0.0f, 1.0f));
  else
    FStopBrush->SetOpacity(ParseNumber(Opacity, FStopBrush->GetOpacity(), Inherited));
}

QString TSVGGradientStop::StopPropertyText(const TSVGStyle &Style, TSVGStyleProperty Property) const
{
  const QString Text = Style.StyleProp(Property);
  const QString Inherit = QStringLiteral("inherit");
  if (!ReadsStopByStandardRules() || Trim(Text) != Inherit)
    return Text;
  // The property is not inherited, so the parent's value is the one it was given, or the initial one.
  if (const auto *Graphic = dynamic_cast<const TSVGGraphicElement *>(Parent())) {
    const QString Given = Graphic->Style().StyleProp(Property);
    if (!Trim(Given).isEmpty() && Trim(Given) != Inherit)
      return Given;
  }
  return DefaultSVGStylePropertyValues[Property];
}

void TSVGGradientStop::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Stop = dynamic_cast<const TSVGGradientStop *>(Source))
    FStopBrush->Assign(Stop->FStopBrush.get());
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGGradientStop::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGGraphicElement::Clear();
  FStopBrush->Clear();
  FStopBrushChanged = true;
}

void TSVGGradientStop::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  FX->Clear();
  ParsePercent(Node, QStringLiteral("offset"), FX.get(), 0.0f, 1.0f);
  // An offset is a number or a percentage: one with another unit is no offset.
  if (ReadsStopByStandardRules() && FX->Unit() != suNone && FX->Unit() != suPercent)
    FX->Clear();
}

} // namespace vx

namespace vx {

void TSVGCustomGradient::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  if (!VXMatrixEquals(FMatrix, VXIdentityMatrix, 1e-5f)) {
    // The base wrote the matrix as "transform"; a gradient calls it gradientTransform.
    Node.RemoveAttribute(QStringLiteral("transform"));
    SaveAttrString(Node, QStringLiteral("gradientTransform"), SVGTransformationToString(FMatrix), false, true);
  }
  SaveAttrString(Node, QStringLiteral("gradientUnits"), SVGCoordinateSystemUnits[FUnits],
                 FUnits != csuUserSpaceOnUse, true);
  if (!FReference.isEmpty())
    Node.SetAttributeNS(QStringLiteral("href"), XLinkNamespaceURI, QLatin1Char('#') + FReference);
  SaveAttrString(Node, QStringLiteral("spreadMethod"), SVGGradientSpreads[FSpread], FSpread == gsPad, true);
}

void TSVGLinearGradient::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomGradient::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  const QString Format = GetFormatStr();
  auto Length = [&](const QString &Name, const TSVGLength &Value, float Default) {
    SaveAttrString(Node, Name, Value.ToString(Format, 0, 100), Compact && Value.Raw() == Default, true);
  };
  Length(QStringLiteral("x1"), *FX1, 0);
  Length(QStringLiteral("y1"), *FY1, 0);
  Length(QStringLiteral("x2"), *FX2, 1);
  Length(QStringLiteral("y2"), *FY2, 0);
}

void TSVGRadialGradient::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomGradient::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  const QString Format = GetFormatStr();
  auto Length = [&](const QString &Name, const TSVGLength &Value, bool Omit) {
    SaveAttrString(Node, Name, Value.ToString(Format, 0, 100), Omit, true);
  };
  Length(QStringLiteral("cx"), *FX, Compact && FX->Raw() == 0.5f);
  Length(QStringLiteral("cy"), *FY, Compact && FY->Raw() == 0.5f);
  Length(QStringLiteral("r"), *FWidth, Compact && FWidth->Raw() == 0.5f);
  Length(QStringLiteral("fx"), *FFocalX, !FFocalXSpecified);
  Length(QStringLiteral("fy"), *FFocalY, !FFocalYSpecified);
  Length(QStringLiteral("fr"), *FFocalRadius, !FGiven.Contains(gaFR));
}

void TSVGGradientStop::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  SaveLength(Node, QStringLiteral("offset"), *FX, 100, IsCompactXML());
  SaveColorStyleProperty(Node, ipStopColor, FStopBrush->GetKind(), FStopBrush->GetColor(), FStopBrush->GetURI());
  SaveStyleProperty(Node, ipStopOpacity, SVGNumberToString(FStopBrush->GetOpacity(), suNone, GetFormatStr()),
                    DefaultSVGStylePropertyValues[ipStopOpacity], FPreferredStyles.GetSet(ipStopOpacity),
                    FInherits.GetSet(ipStopOpacity), true);
}

} // namespace vx
