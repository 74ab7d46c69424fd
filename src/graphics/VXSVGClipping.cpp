// Clip paths and masks of graphic elements: the clip-path reference becomes a device-space region
// that narrows the canvas clip for the element and everything it draws; the mask reference hands
// the element's whole draw to the mask element, which composites it through its luminance.
//
// Clip paths have two roads side by side. The classic one unites the visible geometry of the clip
// path and its descendants, lets an empty region clip nothing and ignores clip-path inside clip
// paths. The standard one (UsesStandardClipPaths) follows SVG 1.1: TSVGClipPath builds the region
// for the client, each child adds itself cut by its own clip-path, and an empty region hides all.
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGCustomGroup.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGAttributes.h"

namespace vx {

namespace {

void SetClipFillMode(TVXGPPath &Path, TSVGFillRule Rule)
{
  if (Rule == frNonZero)
    Path.SetFillMode(VXFillModeWinding);
  else if (Rule == frEvenOdd)
    Path.SetFillMode(VXFillModeAlternate);
}

// The element of type Type that Owner's table holds under URI, or nil.
TSVGGraphicElement *ReferencedElement(const TSVGDocument *Owner, const QString &URI, TSVGElementType Type)
{
  TSVGElement *Found = nullptr;
  if (URI.isEmpty() || !Owner || !Owner->AllItems().TryGetValue(URI, Found) || !Found || Found->SVGType() != Type)
    return nullptr;
  return dynamic_cast<TSVGGraphicElement *>(Found);
}

// The first non-empty rectangle takes over, so that an empty one at the origin adds nothing.
void Accumulate(TRectF &Bounds, const TRectF &Other)
{
  if (Other.IsEmpty() && Other.Left == 0 && Other.Top == 0)
    return;
  Bounds = Bounds.IsEmpty() && Bounds.Left == 0 && Bounds.Top == 0 ? Other : UnionRect(Bounds, Other);
}

} // namespace

// --- clip paths -------------------------------------------------------------------------------------

TSVGGraphicElement *TSVGGraphicElement::GetClipURIElement() const
{
  const TSVGGraphicElement *Source = this;
  // Up the chain of inherited clip-path bits, without recursion.
  while (Source->FGraphicParent && Source->FInherits.Value().Contains(ipClipPath))
    Source = Source->FGraphicParent;
  return ReferencedElement(Source->GetOwner(), Source->FClipURI, etClipPath);
}

void TSVGGraphicElement::PerformClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (!GetOptions().Contains(soApplyClipping))
    return;
  if (UsesStandardClipPaths()) {
    PerformStandardClipping(Matrix, Canvas);
    return;
  }
  TSVGGraphicElement *Clip = GetClipURIElement();
  if (!Clip)
    return;
  TVXGPRegion Region(&Canvas);
  Region.MakeEmpty();
  Clip->BuildClipRegion(Region, VXIdentityMatrix, Rect);
  // A clip path without visible content clips nothing.
  if (Region.IsEmpty())
    return;
  Region.Transform(Matrix);
  Canvas.IntersectClip(Region);
}

void TSVGGraphicElement::PerformStandardClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas)
{
  // clip-path is not inherited: only the element's own reference counts, for the element and
  // everything it draws. The root document looks the reference up in its own table.
  TSVGGraphicElement *Clip = ReferencedElement(OwnerOfCopies(), FClipURI, etClipPath);
  if (!Clip)
    return;
  TVXGPRegion Region(&Canvas);
  Region.MakeEmpty();
  // An empty region hides everything; a reference skipped as a cycle clips nothing.
  if (Clip->BuildStandardClipRegion(Region, *this, Matrix))
    Canvas.IntersectClip(Region);
}

void TSVGGraphicElement::BuildClipRegion(TVXGPRegion &Region, const TMatrix &Matrix, const TRectF &Rect)
{
  if (!IsEnabled())
    return;
  const TMatrix Combined = VXMatrixMultiply(FMatrix, Matrix);
  if (TVXGPPath *Shape = GetShape(); Shape && Shape->Count() > 0) {
    // The clip rule goes onto the cached shape itself; drawing sets its own fill mode on a copy.
    SetClipFillMode(*Shape, GetClipRule());
    const std::unique_ptr<TVXGPPath> Copy = Shape->Clone();
    Copy->ApplyMatrix(Combined);
    Region.Combine(*Copy, cmUnion);
  }
  for (TSVGElement *Child : FItems)
    if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Child); Graphic && Graphic->GetVisible())
      Graphic->BuildClipRegion(Region, Combined, Rect);
}

bool TSVGGraphicElement::BuildStandardClipRegion(TVXGPRegion &, TSVGGraphicElement &, const TMatrix &)
{
  return false;
}

void TSVGGraphicElement::AddToStandardClipRegion(TVXGPRegion &Region, const TMatrix &Matrix)
{
  if (!ShouldDraw())
    return;
  const TMatrix Combined = VXMatrixMultiply(FMatrix, Matrix);
  TVXGPRegion Own(Region.GetCanvas());
  Own.MakeEmpty();
  AddStandardClipGeometry(Own, Combined);
  if (Own.IsEmpty())
    return;
  if (TSVGGraphicElement *Clip = ReferencedElement(GetOwner(), FClipURI, etClipPath)) {
    TVXGPRegion Cut(Region.GetCanvas());
    Cut.MakeEmpty();
    if (Clip->BuildStandardClipRegion(Cut, *this, Combined))
      Own.Combine(Cut, cmIntersect);
  }
  Region.Combine(Own, cmUnion);
}

void TSVGGraphicElement::AddStandardClipGeometry(TVXGPRegion &Region, const TMatrix &Matrix)
{
  // A hidden element adds nothing of its own; its children may still be visible.
  if (TVXGPPath *Shape = GetVisible() ? GetShape() : nullptr; Shape && Shape->Count() > 0) {
    const std::unique_ptr<TVXGPPath> Copy = Shape->Clone();
    SetClipFillMode(*Copy, GetClipRule());
    Copy->ApplyMatrix(Matrix);
    Region.Combine(*Copy, cmUnion);
  }
  for (TSVGElement *Child : FItems)
    if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Child))
      Graphic->AddToStandardClipRegion(Region, Matrix);
}

TRectF TSVGGraphicElement::ObjectBoundingBox() const
{
  // A shape's geometry is its path: the stored rectangle of a line holds its end point, not its size.
  // The path is a cache of the element: making it does not change what the element is.
  if (SVGShapeElements.Contains(SVGType()))
    if (const TVXGPPath *Shape = const_cast<TSVGGraphicElement *>(this)->GetShape(); Shape && Shape->Count() > 0)
      return Shape->GetBounds();
  if (!dynamic_cast<const TSVGCustomGroup *>(this))
    return GetBoundsRect();
  TRectF Result;
  for (const TSVGElement *Child : FItems)
    if (const auto *Graphic = dynamic_cast<const TSVGGraphicElement *>(Child); Graphic && Graphic->ShouldDraw())
      Accumulate(Result, Graphic->GetBoundsRect(VXIdentityMatrix));
  return Result;
}

TVXGPRegion *TSVGGraphicElement::GetClipPath(TVXGPCanvas &Canvas)
{
  // Resolved at every request rather than kept from the last one: the region lives in the clip path
  // element, which may have gone or changed since.
  if (FGraphicParent && FInherits.Value().Contains(ipClipPath))
    FClipPath = FGraphicParent->GetClipPath(Canvas);
  else if (TSVGGraphicElement *Clip = GetClipURIElement())
    FClipPath = Clip->GetClipPath(Canvas);
  else
    FClipPath = nullptr;
  FClippingChanged = false;
  return FClipPath;
}

// --- masks ------------------------------------------------------------------------------------------

void TSVGGraphicElement::ApplyMaskStyle(const TSVGStyle &Style)
{
  if (!FollowsStandardSVG())
    return;
  const QString Text = Style.Values(QStringLiteral("mask"));
  if (!Text.isEmpty())
    FMaskURI = ParseLocalURI(Text);
}

TSVGGraphicElement *TSVGGraphicElement::GetMaskURIElement() const
{
  if (!FollowsStandardSVG())
    return nullptr;
  return ReferencedElement(GetOwner(), FMaskURI, etMask);
}

bool TSVGGraphicElement::DrawMasked(TSVGGraphicElement &, const TMatrix &, TVXGPCanvas &, const TRectF &)
{
  return false;
}

bool TSVGGraphicElement::DrawnThroughMask(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  // The parts of a text are drawn by the text as a whole, which a mask of theirs cannot cut.
  if (SVGType() == etTSpan || SVGType() == etTRef || SVGType() == etTextPath)
    return false;
  TSVGGraphicElement *Mask = GetMaskURIElement();
  return Mask && Mask->DrawMasked(*this, Matrix, Canvas, Rect);
}

} // namespace vx
