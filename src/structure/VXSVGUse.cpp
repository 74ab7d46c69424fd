#include "structure/VXSVGUse.h"

#include "structure/VXSVGSymbol.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"

#include <algorithm>
#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGUse)

namespace {

const TSVGClassRegistration UseRegistration(etUse, TSVGUse::ClassInfo());

// How many targets are lent, one inside the other, on this thread.
thread_local int LendingDepth = 0;
// The targets whose bounds uses are measuring on this thread, innermost last.
thread_local std::vector<const TSVGElement *> MeasuredTargets;
// Uses that show uses can multiply: ten levels of ten copies each would be 10^10 targets. So the
// references followed inside one outermost reference are counted, and past this many a use shows
// nothing, as if it named no element. No real picture comes near it.
constexpr int MaxNestedReferences = 4096;
thread_local int NestedReferences = 0;

// Counts one more reference; false once the outermost reference has used up its allowance.
bool WithinReferenceBudget()
{
  if (LendingDepth == 0 && MeasuredTargets.empty()) {
    NestedReferences = 0;
    return true;
  }
  return ++NestedReferences <= MaxNestedReferences;
}

// Whether Target is From or one of From's ancestors (lent ones included).
bool IsWithin(const TSVGElement &Target, const TSVGElement &From)
{
  for (const TSVGElement *E = &From; E; E = E->Parent())
    if (E == &Target)
      return true;
  return false;
}

// Lends Target to Borrower by making Borrower its parent, and gives it back on the way out, also by
// an exception. The caller has made sure that Target does not contain Borrower, which would make the
// parent chain loop.
class TTargetLoan
{
public:
  TTargetLoan(TSVGGraphicElement &Target, TSVGElement &Borrower) : FTarget(Target), FSaved(Target.Parent())
  {
    Target.SetParent(&Borrower);
    ++LendingDepth;
  }
  ~TTargetLoan()
  {
    --LendingDepth;
    FTarget.SetParent(FSaved);
  }
  TTargetLoan(const TTargetLoan &) = delete;
  TTargetLoan &operator=(const TTargetLoan &) = delete;

private:
  TSVGGraphicElement &FTarget;
  TSVGElement *FSaved;
};

// Marks Target as being measured for its span, also on the way out by an exception.
class TMeasureScope
{
public:
  explicit TMeasureScope(const TSVGElement &Target) { MeasuredTargets.push_back(&Target); }
  ~TMeasureScope() { MeasuredTargets.pop_back(); }
  TMeasureScope(const TMeasureScope &) = delete;
  TMeasureScope &operator=(const TMeasureScope &) = delete;
};

// Symbols and documents map their view box into the use's rectangle instead of being moved.
bool IsViewportTarget(const TSVGGraphicElement &Target)
{
  return dynamic_cast<const TSVGDocument *>(&Target) || dynamic_cast<const TSVGSymbol *>(&Target);
}

// In standard mode a nested svg or symbol places and sizes its own viewport (taking this use's
// width and height), so the use only moves it by x and y, as any other target.
bool ViewportTargetPlacesItself(const TSVGGraphicElement &Target)
{
  const auto *Viewport = dynamic_cast<const TSVGCustomViewBox *>(&Target);
  return Viewport && Viewport->ViewportFollowsStandard();
}

} // namespace

TSVGUse::~TSVGUse()
{
  FListener.Stop(*this);
}

TSVGGraphicElement *TSVGUse::Target() const
{
  TSVGElement *Found = nullptr;
  if (!GetOwner() || FReference.isEmpty() || !GetOwner()->AllItems().TryGetValue(FReference, Found))
    return nullptr;
  return dynamic_cast<TSVGGraphicElement *>(Found);
}

void TSVGUse::SetReference(const QString &Value)
{
  if (Value == FReference)
    return;
  FReference = Value;
  FListener.Listen(*this, Target());
  Change(this);
}

void TSVGUse::NotifyListener(TSVGElement *Element)
{
  TSVGGraphicElement::NotifyListener(Element);
  if (Element && Element->ElementState().Contains(esDestroying))
    FReference.clear();
}

bool TSVGUse::DoShouldDraw() const
{
  if (!HasFeatures() || !HasExtensions() || !HasLanguages())
    return false;
  if (SeparatesDisplayFromVisibility() && !IsDisplayed())
    return false;
  const TSVGGraphicElement *Shown = Target();
  if (!Shown)
    return true;
  // While the target does not inherit visibility, its getter answers its own field.
  return Shown->Inherits().Value().Contains(ipVisibility) ? GetVisible() : Shown->GetVisible();
}

TSVGGraphicElement *TSVGUse::LendableTarget() const
{
  TSVGGraphicElement *Shown = Target();
  if (!Shown || IsWithin(*Shown, *this) || LendingDepth >= MaxUseNesting || !WithinReferenceBudget())
    return nullptr;
  return Shown;
}

TRectF TSVGUse::GetBoundsRect() const
{
  TRectF R = TSVGGraphicElement::GetBoundsRect();
  const TSVGGraphicElement *Shown = LendableTarget();
  // The target is not lent here, so a cycle shows as a target already being measured further out.
  if (!Shown || MeasuredTargets.size() >= std::size_t(MaxUseNesting) ||
      std::find(MeasuredTargets.begin(), MeasuredTargets.end(), Shown) != MeasuredTargets.end())
    return R;
  TRectF B;
  {
    TMeasureScope Measuring(*Shown);
    B = Shown->GetBoundsRect();
  }
  if (!IsViewportTarget(*Shown)) {
    const float X = GetX();
    const float Y = GetY();
    return TRectF{B.Left + X, B.Top + Y, B.Right + X, B.Bottom + Y};
  }
  R = TRectF{R.Left + B.Left, R.Top + B.Top, R.Right + B.Left, R.Bottom + B.Top};
  // An explicit width or height wins; a missing one comes from the target.
  if (R.Width() == 0)
    R.Right = R.Left + B.Width();
  if (R.Height() == 0)
    R.Bottom = R.Top + B.Height();
  return R;
}

TRectF TSVGUse::GetBoundsRect(const TMatrix &Matrix) const
{
  const TRectF R = TSVGGraphicElement::GetBoundsRect(Matrix);
  if (R.Width() > 0 && R.Height() > 0)
    return R;
  TSVGGraphicElement *Shown = LendableTarget();
  if (!Shown)
    return R;
  const TMatrix M = VXMatrixMultiply(CreateTranslateVXMatrix(GetX(), GetY()), VXMatrixMultiply(FMatrix, Matrix));
  TTargetLoan Loan(*Shown, const_cast<TSVGUse &>(*this));
  return Shown->GetBoundsRect(M);
}

TRectF TSVGUse::DeviceViewport(const TMatrix &Matrix) const
{
  // Matrix already holds this element's transform: GetBoundsRect(Matrix) would apply it twice.
  return TSVGElement::GetBoundsRect(Matrix);
}

bool TSVGUse::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  TSVGGraphicElement *Shown = LendableTarget();
  if (!Shown)
    return false;
  if (IsViewportTarget(*Shown) && !ViewportTargetPlacesItself(*Shown)) {
    // The target's Draw multiplies in its own view matrix once more; both steps belong to the mapping.
    const TRectF Viewport = DeviceViewport(Matrix);
    TTargetLoan Loan(*Shown, *this);
    Shown->Draw(Shown->GetViewMatrix(Matrix, Viewport), Canvas, Viewport);
  } else {
    TTargetLoan Loan(*Shown, *this);
    Shown->Draw(VXMatrixMultiply(CreateTranslateVXMatrix(GetX(), GetY()), Matrix), Canvas, Rect);
  }
  return true;
}

IVXHostControl *TSVGUse::GenerateControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                          const TSVGControlElementEvent &Callback)
{
  IVXHostControl *Control = CreateControl(Parent);
  if (!Control)
    return nullptr;
  AssignTo(&Control->HostComponent());
  const TMatrix Combined = VXMatrixMultiply(FMatrix, Matrix);
  const TRectF Bounds = DeviceViewport(Combined);
  Control->SetBoundsRect(TRectF{Bounds.Left, Bounds.Top, Bounds.Left + std::max(1.0f, Bounds.Width()),
                                Bounds.Top + std::max(1.0f, Bounds.Height())});
  if (Callback)
    Callback(this, Control);
  TSVGGraphicElement *Shown = LendableTarget();
  if (!Shown)
    return Control;
  TTargetLoan Loan(*Shown, *this);
  if (IsViewportTarget(*Shown) && !ViewportTargetPlacesItself(*Shown))
    Shown->GenerateControls(Control, Shown->GetViewMatrix(Combined, Bounds), Bounds, Callback);
  else
    Shown->GenerateControls(Control, VXMatrixMultiply(CreateTranslateVXMatrix(GetX(), GetY()), Combined), Rect,
                            Callback);
  return Control;
}

void TSVGUse::AddStandardClipGeometry(TVXGPRegion &Region, const TMatrix &Matrix)
{
  TSVGGraphicElement *Shown = LendableTarget();
  if (!Shown || !(SVGShapeElements | TSVGElementTypes{etText}).Contains(Shown->SVGType()))
    return;
  TTargetLoan Loan(*Shown, *this);
  Shown->AddToStandardClipRegion(Region, VXMatrixMultiply(CreateTranslateVXMatrix(GetX(), GetY()), Matrix));
}

TSVGGraphicElement *TSVGUse::DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                    const TRectF &Rect, TSVGFindOptions Options)
{
  TSVGGraphicElement *Shown = LendableTarget();
  if (!Shown)
    return nullptr;
  TSVGGraphicElement *Found = nullptr;
  if (IsViewportTarget(*Shown)) {
    const TRectF Viewport = DeviceViewport(Matrix);
    TTargetLoan Loan(*Shown, *this);
    Found = Shown->ElementAtPos(Shown->GetViewMatrix(Matrix, Viewport), Canvas, Point, Viewport, Options);
  } else {
    TTargetLoan Loan(*Shown, *this);
    Found = Shown->ElementAtPos(VXMatrixMultiply(CreateTranslateVXMatrix(GetX(), GetY()), Matrix), Canvas, Point,
                                Rect, Options);
  }
  return Found ? DoOnElementFound(this) : nullptr;
}

void TSVGUse::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Other = dynamic_cast<const TSVGUse *>(Source))
    SetReference(Other->FReference);
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGUse::Clear()
{
  SetReference(QString());
  TSVGGraphicElement::Clear();
}

void TSVGUse::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  // Stored as read: a loaded use joins its target's listeners only through SetReference.
  FReference = ParseURI(Node, QStringLiteral("href"), QString(), QStringLiteral("xlink"));
}

void TSVGUse::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  SaveBoundsLengths(Node);
  if (!FReference.isEmpty())
    Node.SetAttributeNS(QStringLiteral("href"), XLinkNamespaceURI, QLatin1Char('#') + FReference);
}

} // namespace vx
