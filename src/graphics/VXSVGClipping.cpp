// Clip paths of graphic elements: the clip-path reference becomes a device-space region that
// narrows the canvas clip for the element and everything it draws.
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"

namespace vx {

namespace {

void SetClipFillMode(TVXGPPath &Path, TSVGFillRule Rule)
{
  if (Rule == frNonZero)
    Path.SetFillMode(VXFillModeWinding);
  else if (Rule == frEvenOdd)
    Path.SetFillMode(VXFillModeAlternate);
}

} // namespace

TSVGGraphicElement *TSVGGraphicElement::GetClipURIElement() const
{
  const TSVGGraphicElement *Source = this;
  // Up the chain of inherited clip-path bits, without recursion.
  while (Source->FGraphicParent && Source->FInherits.Value().Contains(ipClipPath))
    Source = Source->FGraphicParent;
  const TSVGDocument *Owner = Source->GetOwner();
  if (Source->FClipURI.isEmpty() || !Owner)
    return nullptr;
  TSVGElement *Found = nullptr;
  if (!Owner->AllItems().TryGetValue(Source->FClipURI, Found) || !Found || Found->SVGType() != etClipPath)
    return nullptr;
  return dynamic_cast<TSVGGraphicElement *>(Found);
}

void TSVGGraphicElement::PerformClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (!GetOptions().Contains(soApplyClipping))
    return;
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

} // namespace vx
