// The draw frame of graphic elements: matrix composition, canvas set-up from the element's
// presentation, its own geometry, its children and the canvas restore.
#include "platform/geometry/VXPathData.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGDrawBudget.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGColors.h"

namespace vx {

namespace {

void GreyGradient(TVXGPGradientPoints &Points)
{
  for (int I = 0; I < Points.Count(); ++I)
    Points.GetPoint(I).Color = SVGColorToGrayscale(Points.GetPoint(I).Color);
  Points.Changed();
}

} // namespace

int GetCompositingQuality(TSVGColorRendering ColorRendering, TSVGColorInterpolation ColorInterpolation)
{
  switch (ColorRendering) {
  case clrnOptimizeSpeed:
    return 1;
  case clrnOptimizeQuality:
    return 2;
  default:
    break;
  }
  switch (ColorInterpolation) {
  case sciSRGB:
    return 3;
  case sciLinearRGB:
    return 4;
  default:
    return 0;
  }
}

int GetSmoothingMode(TSVGShapeRendering ShapeRendering)
{
  switch (ShapeRendering) {
  case srnAuto:
    return 0;
  case srnOptimizeSpeed:
    return 1;
  case srnCrispEdges:
    return 2;
  default:
    return 5;
  }
}

int GetTextRenderingHint(TSVGTextRendering TextRendering)
{
  switch (TextRendering) {
  case txrnAuto:
    return 0;
  case txrnOptimizeSpeed:
    return 2;
  case txrnOptimizeLegibility:
    return 4;
  default:
    return 3;
  }
}

bool TSVGGraphicElement::DoShouldDraw() const
{
  return (SeparatesDisplayFromVisibility() ? FDisplayed : GetVisible()) && TSVGElement::DoShouldDraw();
}

void TSVGGraphicElement::Draw(TVXGPCanvas &Canvas, const TRectF &Rect)
{
  Draw(GetViewMatrix(Rect), Canvas, Rect);
}

void TSVGGraphicElement::Draw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const TSVGDrawScope Scope;
  if (ShouldDraw() && !DrawnThroughMask(Matrix, Canvas, Rect))
    InternalDraw(Matrix, Canvas, Rect);
}

void TSVGGraphicElement::InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  DrawFrame(VXMatrixMultiply(FMatrix, Matrix), Canvas, Rect);
}

void TSVGGraphicElement::DrawFrame(const TMatrix &Combined, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  // Under the standard road a hidden element still draws its children, which may be visible.
  const bool DrawOwn = BeginDraw(Combined, Canvas, Rect) && ShowsOwnGeometry();
  // EndDraw restores the canvas, so it also runs when the element's own draw or a child fails.
  try {
    const std::unique_ptr<TVXGPLayer> Layer = OpenLayer(Canvas);
    if (DrawOwn) {
      DoInternalDraw(Combined, Canvas, Rect);
      PaintDeferredParts(Canvas);
    }
    DrawChildren(Combined, Canvas, Rect);
    CompositeLayer(Layer.get());
  } catch (...) {
    DiscardDeferredParts();
    EndDraw(Combined, Canvas, Rect);
    throw;
  }
  EndDraw(Combined, Canvas, Rect);
}

bool TSVGGraphicElement::BeginDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const TRectF Bounds = GetBoundsRect();
  FCanvasState = Canvas.SaveState();
  try {
    Canvas.SetPaintMatrix(Matrix);
    Canvas.SetBrush(GetBrush(Matrix, Bounds));
    SetCanvasPen(Canvas, Matrix, GetVectorEffect() == veNone);
    Canvas.SetFont(GetFont());
    if (!IsEnabled()) {
      TMatrix M = Matrix;
      TRectF R = Rect;
      DisableAppearance(M, Canvas, R);
    }
    Canvas.Font().SetBrush(Canvas.Brush());
    Canvas.SetCompositingQuality(GetCompositingQuality());
    Canvas.TrySmoothingMode(GetSmoothingMode());
    Canvas.SetTextRenderingHint(GetTextRenderingHint());
    PerformClipping(Matrix, Canvas, Rect);
    return DoDrawing(this, Matrix, Canvas, Rect);
  } catch (...) {
    Canvas.RestoreState(FCanvasState);
    throw;
  }
}

void TSVGGraphicElement::EndDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const int Token = FCanvasState;
  try {
    DoDrawn(this, Matrix, Canvas, Rect);
  } catch (...) {
    Canvas.RestoreState(Token);
    throw;
  }
  Canvas.RestoreState(Token);
}

int TSVGGraphicElement::GetCompositingQuality() const
{
  const TSVGColorRendering Rendering = GetColorRendering();
  const TSVGColorInterpolation Interpolation = GetColorInterpolation();
  const TSVGDocument *Owner = GetOwner();
  if ((Rendering == clrnNone || Rendering == clrnAuto) && Owner) {
    const bool OwnerInterpolation = Interpolation == sciNone || Interpolation == sciAuto;
    return vx::GetCompositingQuality(Owner->DefaultColorRendering(),
                                     OwnerInterpolation ? Owner->DefaultColorInterpolation() : Interpolation);
  }
  return vx::GetCompositingQuality(Rendering, Interpolation);
}

int TSVGGraphicElement::GetSmoothingMode() const
{
  const TSVGShapeRendering Rendering = GetShapeRendering();
  if (Rendering == srnCrispEdges && DrawsCrispEdgesAliased())
    return vx::GetSmoothingMode(srnOptimizeSpeed);
  if ((Rendering == srnNone || Rendering == srnAuto) && GetOwner())
    return vx::GetSmoothingMode(GetOwner()->DefaultShapeRendering());
  return vx::GetSmoothingMode(Rendering);
}

int TSVGGraphicElement::GetTextRenderingHint() const
{
  const TSVGTextRendering Rendering = GetTextRendering();
  if ((Rendering == txrnNone || Rendering == txrnAuto) && GetOwner())
    return vx::GetTextRenderingHint(GetOwner()->DefaultTextRendering());
  return vx::GetTextRenderingHint(Rendering);
}

bool TSVGGraphicElement::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const TVXGPPath *Shape = GetShape();
  if (!Shape || Shape->Count() == 0)
    return false;
  DrawPath(*Shape, Matrix, Canvas, Rect);
  return true;
}

void TSVGGraphicElement::DrawPath(const TVXGPPath &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &)
{
  std::unique_ptr<TVXGPPath> Clone = Path.Clone(&Canvas);
  switch (GetFillRule()) {
  case frNonZero:
    Clone->SetFillMode(VXFillModeWinding);
    break;
  case frEvenOdd:
    Clone->SetFillMode(VXFillModeAlternate);
    break;
  default:
    break;
  }
  Clone->ApplyMatrix(Matrix);
  if (HonoursPaintOrder())
    return PaintPathInOrder(std::move(Clone), Matrix, Canvas);
  const float Opacity = GetAbsoluteOpacity();
  if (Canvas.Brush().GetKind() != bkNone)
    Canvas.FillPath(*Clone, GetBrush().GetOpacity() * Opacity);
  if (Canvas.Pen().GetKind() != bkNone)
    Canvas.DrawPath(*Clone, GetPen().GetOpacity() * Opacity);
}

void TSVGGraphicElement::DrawPath(const TVXPathData &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  TVXGPPath Converted(&Canvas);
  Converted.Assign(Path);
  DrawPath(Converted, Matrix, Canvas, Rect);
}

void TSVGGraphicElement::DrawChildren(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  for (TSVGElement *Child : FItems)
    if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Child))
      Graphic->Draw(Matrix, Canvas, Rect);
}

void TSVGGraphicElement::DrawElement(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (!ShouldDraw() || !GetVisible())
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  TMatrix M = Matrix;
  TRectF R = Rect;
  if (TSVGGraphicElement *Parent = GetGraphicParent())
    Parent->DrawElementParent(M, Canvas, R);
  Draw(M, Canvas, R);
}

void TSVGGraphicElement::DrawElementParent(TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect)
{
  if (TSVGGraphicElement *Parent = GetGraphicParent())
    Parent->DrawElementParent(Matrix, Canvas, Rect);
  if (!ShouldDraw())
    return;
  Matrix = VXMatrixMultiply(FMatrix, Matrix);
  PerformClipping(Matrix, Canvas, Rect);
}

TRectF TSVGGraphicElement::GetClipRect() const
{
  const TSVGGraphicElement *Source = InheritanceSource(ipClip);
  if (Source != this)
    return Source->GetClipRect();
  const TRectF B = GetBoundsRect();
  TRectF Result{B.Left - FClipRect.Left, B.Top - FClipRect.Top, B.Right - FClipRect.Right,
                B.Bottom - FClipRect.Bottom};
  return TRectF{Result.Left - 1, Result.Top - 1, Result.Right + 1, Result.Bottom + 1};
}

void TSVGGraphicElement::DisableAppearance(TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect)
{
  if (!DoDisableAppearance(this, Matrix, Canvas, Rect))
    return;
  TVXGPBrush &Brush = Canvas.Brush();
  Brush.SetColor(SVGColorToGrayscale(Brush.GetColor()));
  if (Brush.GetKind() == bkGradient)
    GreyGradient(Brush.GradientPoints());
  TVXGPPen &Pen = Canvas.Pen();
  Pen.SetColor(SVGColorToGrayscale(Pen.GetColor()));
  if (Pen.GetKind() == bkGradient)
    GreyGradient(Pen.GetBrush().GradientPoints());
}

bool TSVGGraphicElement::DoDrawing(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  return GetOwner() ? GetOwner()->DoDrawing(Sender, Matrix, Canvas, Rect) : true;
}

void TSVGGraphicElement::DoDrawn(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (GetOwner())
    GetOwner()->DoDrawn(Sender, Matrix, Canvas, Rect);
}

bool TSVGGraphicElement::DoDisableAppearance(TSVGElement *Sender, TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect)
{
  return GetOwner() ? GetOwner()->DoDisableAppearance(Sender, Matrix, Canvas, Rect) : true;
}

} // namespace vx
