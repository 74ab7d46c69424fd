// Hit testing: which element is under a point of the canvas. The tree is walked in the reverse of
// paint order with the matrices, pen and clip of a draw; the bounding box comes first, the path
// decides.
#include "platform/geometry/VXGeometry.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGCustomGroup.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"

namespace vx {

namespace {

// A thin stroke is hit within this many device units, whatever its width.
constexpr float HitGrace = 3.0f;

void SetFillModeOf(TVXGPPath &Path, TSVGFillRule Rule)
{
  if (Rule == frNonZero)
    Path.SetFillMode(VXFillModeWinding);
  else if (Rule == frEvenOdd)
    Path.SetFillMode(VXFillModeAlternate);
}

// Whether Point lies in Bounds transformed by Matrix (a rotated box stays a parallelogram). A box
// without area has no inside: lines, whose boxes may be flat, test their path directly.
bool InBoundingBox(const TRectF &Bounds, const TMatrix &Matrix, const TPointF &Point)
{
  // Most elements are far from the point: the axis-aligned box around the transformed corners holds
  // the parallelogram and rejects them without building a path.
  const TPointF Corners[] = {
    VXMatrixTransformPoint(TPointF{Bounds.Left, Bounds.Top}, Matrix),
    VXMatrixTransformPoint(TPointF{Bounds.Right, Bounds.Top}, Matrix),
    VXMatrixTransformPoint(TPointF{Bounds.Right, Bounds.Bottom}, Matrix),
    VXMatrixTransformPoint(TPointF{Bounds.Left, Bounds.Bottom}, Matrix),
  };
  bool Left = true, Right = true, Above = true, Below = true;
  for (const TPointF &C : Corners) {
    Left = Left && Point.X < C.X;
    Right = Right && Point.X > C.X;
    Above = Above && Point.Y < C.Y;
    Below = Below && Point.Y > C.Y;
  }
  if (Left || Right || Above || Below)
    return false;
  TVXGPPath Box;
  Box.AddRectangle(Bounds);
  Box.ApplyMatrix(Matrix);
  return Box.IsVisiblePathPoint(Point);
}

} // namespace

TSVGGraphicElement *TSVGGraphicElement::ElementAtPos(TVXGPCanvas &Canvas, const TPointF &Point, const TRectF &Rect,
                                                     TSVGFindOptions Options)
{
  return ElementAtPos(GetViewMatrix(Rect), Canvas, Point, Rect, Options);
}

TSVGGraphicElement *TSVGGraphicElement::ElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                     const TRectF &Rect, TSVGFindOptions Options)
{
  if (!Options.Contains(foFindHiddenElements) && !ShouldDraw())
    return nullptr;
  if (!Options.Contains(foFindDisabled) && !IsEnabled())
    return nullptr;
  return InternalElementAtPos(Matrix, Canvas, Point, Rect, Options);
}

TSVGGraphicElement *TSVGGraphicElement::InternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                             const TPointF &Point, const TRectF &Rect,
                                                             TSVGFindOptions Options)
{
  const TMatrix Combined = VXMatrixMultiply(FMatrix, Matrix);
  for (int I = FItems.Count() - 1; I >= 0; --I)
    if (auto *Child = dynamic_cast<TSVGGraphicElement *>(FItems[I]))
      if (TSVGGraphicElement *Found = Child->ElementAtPos(Combined, Canvas, Point, Rect, Options))
        return Found;
  return DoInternalElementAtPos(Combined, Canvas, Point, Rect, Options);
}

TSVGGraphicElement *TSVGGraphicElement::DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                               const TPointF &Point, const TRectF &Rect,
                                                               TSVGFindOptions Options)
{
  if (!InBoundingBox(GetBoundsRect(), Matrix, Point))
    return nullptr;
  if (!Options.Contains(foUseBoundingBox))
    if (const TVXGPPath *Shape = GetShape(); Shape && Shape->Count() > 0)
      return PathAtPos(Matrix, Canvas, Point, Rect, *Shape, Options);
  // Without a path (an image, say) the box is the element.
  return DoOnElementFound(this);
}

TSVGGraphicElement *TSVGGraphicElement::PathAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                  const TRectF &Rect, const TVXGPPath &Path, TSVGFindOptions Options)
{
  const std::unique_ptr<TVXGPPath> Device = Path.Clone(&Canvas);
  SetFillModeOf(*Device, GetFillRule());
  Device->ApplyMatrix(Matrix);
  const bool Fillable = Options.Contains(foFindNonFilled) || GetBrush(Matrix, Rect).GetKind() != bkNone;
  bool Hit = false;
  {
    TVXGPCanvasStateGuard Guard(Canvas);
    SetCanvasPen(Canvas, Matrix, GetVectorEffect() == veNone);
    if (Canvas.Pen().GetThickness() < HitGrace)
      Canvas.Pen().SetThickness(HitGrace);
    PerformClipping(Matrix, Canvas, Rect);
    if (Fillable)
      Hit = Device->IsVisiblePathPoint(Point, &Canvas) ||
            Device->IsOutlineVisiblePathPoint(Point, Canvas.Pen(), &Canvas);
    else if (Canvas.Pen().GetKind() != bkNone)
      // An unfilled outline is hit whatever the clip.
      Hit = Device->IsOutlineVisiblePathPoint(Point, Canvas.Pen(), nullptr);
  }
  return Hit ? DoOnElementFound(this) : nullptr;
}

TSVGGraphicElement *TSVGGraphicElement::DoOnElementFound(TSVGGraphicElement *Element)
{
  return GetOwner() ? GetOwner()->DoOnElementFound(Element) : Element;
}

TSVGGraphicElement *TSVGDocument::DoOnElementFound(TSVGGraphicElement *Element)
{
  if (GetOwner())
    return GetOwner()->DoOnElementFound(Element);
  TSVGGraphicElement *Result = Element;
  if (OnElementFound)
    OnElementFound(this, Result);
  return Result;
}

TSVGGraphicElement *TSVGCustomGroup::InternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                          const TPointF &Point, const TRectF &Rect,
                                                          TSVGFindOptions Options)
{
  TSVGGraphicElement *Result = TSVGGraphicElement::InternalElementAtPos(Matrix, Canvas, Point, Rect, Options);
  if (Result && Options.Contains(foFindGroups) && GetOwner())
    Result = DoOnElementFound(this);
  return Result;
}

TSVGGraphicElement *TSVGCustomGroup::DoInternalElementAtPos(const TMatrix &, TVXGPCanvas &, const TPointF &,
                                                            const TRectF &, TSVGFindOptions)
{
  return nullptr;
}

TSVGGraphicElement *TSVGCustomViewBox::ElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                    const TRectF &Rect, TSVGFindOptions Options)
{
  const TMatrix Combined = VXMatrixMultiply(GetViewMatrix(VXIdentityMatrix, Viewport()), Matrix);
  return InternalElementAtPos(Combined, Canvas, Point, Rect, Options);
}

} // namespace vx
