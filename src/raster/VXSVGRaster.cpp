#include "raster/VXSVGRaster.h"

#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGGraphicElement.h"

#include <cmath>

namespace vx {

namespace {

// Draws Element stretched over R; a document maps its view box into R by its own rules.
void DrawFit(TVXGPCanvas &Canvas, TSVGGraphicElement &Element, const TRectF &R)
{
  const TMatrix M = Element.FitToRect(R);
  if (dynamic_cast<TSVGDocument *>(&Element))
    Element.Draw(Element.GetViewMatrix(M, R), Canvas, R);
  else
    Element.Draw(M, Canvas, R);
}

// The size DrawSVGWrapped works with: the element's bounds at Scale, at the origin.
TRectF ScaledSize(const TSVGGraphicElement &Element, float Scale)
{
  const TRectF B = Element.GetBoundsRect();
  float W = B.Width();
  float H = B.Height();
  if (Scale != 1.0f) {
    W *= Scale;
    H *= Scale;
  }
  return TRectF{0, 0, W, H};
}

// Whole units, halves to even as the host framework rounds.
TRectF RoundRect(const TRectF &R)
{
  return TRectF{std::nearbyint(R.Left), std::nearbyint(R.Top), std::nearbyint(R.Right), std::nearbyint(R.Bottom)};
}

TRectF FittedRect(const TRectF &Size, const TRectF &Rect)
{
  TRectF F = Size;
  FitRect(F, Rect, true);
  return RoundRect(F);
}

TRectF CentredRect(const TRectF &Size, const TRectF &Rect)
{
  TRectF C = Size;
  RectCenter(C, TRectF{0, 0, Rect.Width(), Rect.Height()});
  return C;
}

// The part of Rect that an image of Size at the origin covers.
TRectF OriginalRect(const TRectF &Size, const TRectF &Rect)
{
  TRectF I;
  IntersectRect(I, Rect, Size);
  return I;
}

// Draws the whole document while Wrapper picks the part; the wrapper ends the drawing with the
// silent abort, which stops here.
void DrawPart(TSVGDocument &Document, TDrawEvent Event, TSVGGraphicElement *Element, const TMatrix &Matrix,
              TVXGPCanvas &Canvas, const TRectF &Rect, bool IncludeElement)
{
  if (!Document.ShouldDraw())
    return;
  if (Element == &Document && !IncludeElement)
    return;
  TSVGDrawEventWrapper Wrapper(Event, &Document, Element, IncludeElement);
  try {
    Document.Draw(Matrix, Canvas, Rect);
  } catch (const EAbort &) {
  }
}

} // namespace

void DrawSVGToBitmap(TVXGPBitmap &Bitmap, TSVGGraphicElement *Element, int SmoothingMode, bool Clear)
{
  if (!Element || Bitmap.GetWidth() == 0 || Bitmap.GetHeight() == 0)
    return;
  const TRectF R{0, 0, float(Bitmap.GetWidth() - 1), float(Bitmap.GetHeight() - 1)};
  TVXGPCanvas &Canvas = Bitmap.GetCanvas();
  if (Clear)
    Canvas.Clear(0);
  Canvas.TrySmoothingMode(SmoothingMode);
  DrawFit(Canvas, *Element, R);
}

void DrawSVGWrapped(TVXGPCanvas &Canvas, TSVGGraphicElement *Element, const TRectF &Rect,
                    TSVGImageWrapMode WrapMode, float Scale)
{
  if (!Element)
    return;
  const TRectF B = ScaledSize(*Element, Scale);
  if (B.Width() == 0 || B.Height() == 0)
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  switch (WrapMode) {
  case iwOriginal: {
    const TRectF I = OriginalRect(B, Rect);
    DrawFit(Canvas, *Element, TRectF{Rect.Left, Rect.Top, Rect.Left + I.Width(), Rect.Top + I.Height()});
    break;
  }
  case iwFit:
    DrawFit(Canvas, *Element, FittedRect(B, Rect));
    break;
  case iwStretch:
    DrawFit(Canvas, *Element, Rect);
    break;
  case iwTile: {
    // Whole tiles from the origin, one more column and row than fit, so the edges are covered.
    const int Cols = int(Rect.Width() / B.Width());
    const int Rows = int(Rect.Height() / B.Height());
    for (int I = 0; I <= Cols; ++I)
      for (int J = 0; J <= Rows; ++J) {
        TRectF T = B;
        OffsetRect(T, I * B.Width(), J * B.Height());
        DrawFit(Canvas, *Element, T);
      }
    break;
  }
  case iwCenter:
    DrawFit(Canvas, *Element, CentredRect(B, Rect));
    break;
  }
}

TRectF GetWrapModeRect(const TSVGGraphicElement *Element, const TRectF &Rect, TSVGImageWrapMode WrapMode,
                       float Scale)
{
  if (!Element)
    return TRectF{};
  const TRectF B = ScaledSize(*Element, Scale);
  if (B.Width() == 0 || B.Height() == 0)
    return B;
  switch (WrapMode) {
  case iwOriginal:
  case iwTile:
    return OriginalRect(B, Rect);
  case iwFit:
    return FittedRect(B, Rect);
  case iwStretch:
    return Rect;
  case iwCenter:
    return CentredRect(B, Rect);
  }
  return Rect;
}

TSizeF SVGNaturalSize(const TSVGDocument &Document)
{
  if (Document.IsViewBoxSpecified())
    return TSizeF{Document.ViewBox().Width()->GetValue(), Document.ViewBox().Height()->GetValue()};
  return TSizeF{Document.GetWidth(), Document.GetHeight()};
}

void SVGDocumentDrawElement(TSVGDocument &Document, TSVGGraphicElement *Element, const TMatrix &Matrix,
                            TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (Element && Document.ShouldDraw() && Element->GetVisible())
    Element->DrawElement(Matrix, Canvas, Rect);
}

void SVGDocumentDrawElement(TSVGDocument &Document, TSVGGraphicElement *Element, TVXGPCanvas &Canvas,
                            const TRectF &Rect)
{
  SVGDocumentDrawElement(Document, Element, Document.GetViewMatrix(Rect), Canvas, Rect);
}

void SVGDocumentDrawBeforeElement(TSVGDocument &Document, TSVGGraphicElement *Element, const TMatrix &Matrix,
                                  TVXGPCanvas &Canvas, const TRectF &Rect, bool IncludeElement)
{
  DrawPart(Document, deDrawBefore, Element, Matrix, Canvas, Rect, IncludeElement);
}

void SVGDocumentDrawBeforeElement(TSVGDocument &Document, TSVGGraphicElement *Element, TVXGPCanvas &Canvas,
                                  const TRectF &Rect, bool IncludeElement)
{
  DrawPart(Document, deDrawBefore, Element, Document.GetViewMatrix(Rect), Canvas, Rect, IncludeElement);
}

void SVGDocumentDrawAfterElement(TSVGDocument &Document, TSVGGraphicElement *Element, const TMatrix &Matrix,
                                 TVXGPCanvas &Canvas, const TRectF &Rect, bool IncludeElement)
{
  DrawPart(Document, deDrawAfter, Element, Matrix, Canvas, Rect, IncludeElement);
}

void SVGDocumentDrawAfterElement(TSVGDocument &Document, TSVGGraphicElement *Element, TVXGPCanvas &Canvas,
                                 const TRectF &Rect, bool IncludeElement)
{
  DrawPart(Document, deDrawAfter, Element, Document.GetViewMatrix(Rect), Canvas, Rect, IncludeElement);
}

// --- TSVGDrawEventWrapper ---

TSVGDrawEventWrapper::TSVGDrawEventWrapper(TDrawEvent DrawEvent, TSVGDocument *Document,
                                           TSVGGraphicElement *Element, bool IncludeElement)
  : FIncludeElement(IncludeElement), FElement(Element), FDocument(Document)
{
  SetDrawEvent(DrawEvent);
}

TSVGDrawEventWrapper::~TSVGDrawEventWrapper()
{
  SetDrawEvent(deReset);
}

void TSVGDrawEventWrapper::SetDrawEvent(TDrawEvent Value)
{
  if (Value == FDrawEvent || !FDocument)
    return;
  if (FDrawEvent == deReset) {
    FOldDrawing = FDocument->OnDrawing;
    FOldDrawn = FDocument->OnDrawn;
    FOldShouldDraw = FDocument->OnShouldDraw;
    FDocument->OnShouldDraw = [this](const TSVGElement *Sender, bool &Draw) { ShouldDrawElement(Sender, Draw); };
  }
  FDrawEvent = Value;
  // Each handler decides first (perhaps aborting), then hands over to the document's own handler.
  auto Chain = [this](auto Decide) {
    return [this, Decide](TObject *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                          bool &DoDefault) {
      Decide(Sender, DoDefault);
      if (FOldDrawing)
        FOldDrawing(Sender, Matrix, Canvas, Rect, DoDefault);
    };
  };
  auto ChainDrawn = [this](auto Decide) {
    return [this, Decide](TObject *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) {
      if (Decide(Sender) && FOldDrawn)
        FOldDrawn(Sender, Matrix, Canvas, Rect);
    };
  };
  switch (Value) {
  case deReset:
    FDocument->OnDrawing = FOldDrawing;
    FDocument->OnDrawn = FOldDrawn;
    FDocument->OnShouldDraw = FOldShouldDraw;
    break;
  case deDrawBefore:
    FDocument->OnDrawing = Chain([this](TObject *Sender, bool &) { DrawingBeforeElement(Sender); });
    FDocument->OnDrawn = ChainDrawn([this](TObject *Sender) {
      DrawnBeforeElement(Sender);
      return true;
    });
    break;
  case deDraw:
    FDocument->OnDrawing = Chain([this](TObject *Sender, bool &Draw) { DrawingElement(Sender, Draw); });
    FDocument->OnDrawn = ChainDrawn([this](TObject *Sender) {
      DrawnElement(Sender);
      return true;
    });
    break;
  case deDrawAfter:
    FDocument->OnDrawing = Chain([this](TObject *Sender, bool &Draw) { DrawingAfterElement(Sender, Draw); });
    FDocument->OnDrawn = ChainDrawn([this](TObject *Sender) { return DrawnAfterElement(Sender); });
    break;
  }
}

bool TSVGDrawEventWrapper::IsElement(const TObject *Sender) const
{
  return FElement && Sender == static_cast<const TObject *>(FElement);
}

void TSVGDrawEventWrapper::ShouldDrawElement(const TSVGElement *Sender, bool &ShouldDraw)
{
  if (IsElement(Sender))
    FFoundElement = true;
  if (FOldShouldDraw)
    FOldShouldDraw(Sender, ShouldDraw);
}

void TSVGDrawEventWrapper::DrawingElement(TObject *Sender, bool &Draw)
{
  if (IsElement(Sender))
    FDoDrawAfter = true;
  else if (FFoundElement)
    Abort();
  Draw = FDoDrawAfter;
}

void TSVGDrawEventWrapper::DrawnElement(TObject *Sender)
{
  if (IsElement(Sender))
    Abort();
}

void TSVGDrawEventWrapper::DrawingBeforeElement(TObject *Sender)
{
  if (FFoundElement)
    Abort();
  if (IsElement(Sender) && !FIncludeElement)
    Abort();
}

void TSVGDrawEventWrapper::DrawnBeforeElement(TObject *Sender)
{
  if (FFoundElement)
    Abort();
  if (IsElement(Sender) && FIncludeElement)
    Abort();
}

void TSVGDrawEventWrapper::DrawingAfterElement(TObject *Sender, bool &Draw)
{
  Draw = FDoDrawAfter || FFoundElement;
  if (IsElement(Sender) && FIncludeElement) {
    FDoDrawAfter = true;
    Draw = true;
  }
}

bool TSVGDrawEventWrapper::DrawnAfterElement(TObject *Sender)
{
  if (!IsElement(Sender))
    return !FFoundElement;
  FDoDrawAfter = true;
  return true;
}

} // namespace vx
