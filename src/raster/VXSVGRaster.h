#pragma once
// Drawing into bitmaps and rectangles: every raster consumer (threads, controls, the image file
// class, the image list and the command-line program) ends in one of these functions. The event
// wrapper draws only a part of a document (before, at or after one element) by hooking the
// document's drawing events and ending the drawing with the silent abort.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXClasses.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGVocabulary.h"

#include <cstdint>

namespace vx {

class TVXGPBitmap;
class TVXGPCanvas;
class TSVGGraphicElement;


// Draws Element fitted into the whole of Bitmap (a document through its view matrix). Clear makes
// the bitmap transparent first. A nil element or an empty bitmap draws nothing.
VX_EXPORT void DrawSVGToBitmap(TVXGPBitmap &Bitmap, TSVGGraphicElement *Element, int SmoothingMode, bool Clear);
// Draws Element, its bounds scaled by Scale, into Rect as WrapMode places it. Tiles start at the
// origin and overhang Rect; only the caller's clip cuts them.
VX_EXPORT void DrawSVGWrapped(TVXGPCanvas &Canvas, TSVGGraphicElement *Element, const TRectF &Rect,
                    TSVGImageWrapMode WrapMode, float Scale);
// The rectangle DrawSVGWrapped uses for the same arguments (for tiles, the first one within Rect).
VX_EXPORT TRectF GetWrapModeRect(const TSVGGraphicElement *Element, const TRectF &Rect, TSVGImageWrapMode WrapMode,
                       float Scale);
// The size a document has by itself: its view box size when one is specified, else its width and height.
VX_EXPORT TSizeF SVGNaturalSize(const TSVGDocument &Document);

// The document's partial draws. DrawElement draws Element alone in its place (its ancestors'
// transforms and clips apply); the others draw the whole document up to or from Element, Element
// included when IncludeElement holds. The forms without a matrix use the document's view matrix
// for Rect.
VX_EXPORT void SVGDocumentDrawElement(TSVGDocument &Document, TSVGGraphicElement *Element, const TMatrix &Matrix,
                            TVXGPCanvas &Canvas, const TRectF &Rect);
VX_EXPORT void SVGDocumentDrawElement(TSVGDocument &Document, TSVGGraphicElement *Element, TVXGPCanvas &Canvas,
                            const TRectF &Rect);
VX_EXPORT void SVGDocumentDrawBeforeElement(TSVGDocument &Document, TSVGGraphicElement *Element, const TMatrix &Matrix,
                                  TVXGPCanvas &Canvas, const TRectF &Rect, bool IncludeElement);
VX_EXPORT void SVGDocumentDrawBeforeElement(TSVGDocument &Document, TSVGGraphicElement *Element, TVXGPCanvas &Canvas,
                                  const TRectF &Rect, bool IncludeElement);
VX_EXPORT void SVGDocumentDrawAfterElement(TSVGDocument &Document, TSVGGraphicElement *Element, const TMatrix &Matrix,
                                 TVXGPCanvas &Canvas, const TRectF &Rect, bool IncludeElement);
VX_EXPORT void SVGDocumentDrawAfterElement(TSVGDocument &Document, TSVGGraphicElement *Element, TVXGPCanvas &Canvas,
                                 const TRectF &Rect, bool IncludeElement);

enum TDrawEvent : std::uint8_t { deReset, deDrawBefore, deDraw, deDrawAfter };

// While it lives, the document's OnDrawing, OnDrawn and OnShouldDraw are the wrapper's; the
// destructor puts the document's own handlers back. The handlers end the drawing with the silent
// abort (EAbort) once the part asked for is done, so whoever draws must catch EAbort.
class VX_EXPORT TSVGDrawEventWrapper : public TObject
{
public:
  TSVGDrawEventWrapper(TDrawEvent DrawEvent, TSVGDocument *Document, TSVGGraphicElement *Element,
                       bool IncludeElement);
  ~TSVGDrawEventWrapper() override;
  TSVGDrawEventWrapper(const TSVGDrawEventWrapper &) = delete;
  TSVGDrawEventWrapper &operator=(const TSVGDrawEventWrapper &) = delete;
  QString ClassName() const override { return QStringLiteral("TSVGDrawEventWrapper"); }

  TDrawEvent DrawEvent() const { return FDrawEvent; }
  void SetDrawEvent(TDrawEvent Value);

private:
  bool IsElement(const TObject *Sender) const;
  void ShouldDrawElement(const TSVGElement *Sender, bool &ShouldDraw);
  void DrawingElement(TObject *Sender, bool &Draw);
  void DrawnElement(TObject *Sender);
  void DrawingBeforeElement(TObject *Sender);
  void DrawnBeforeElement(TObject *Sender);
  void DrawingAfterElement(TObject *Sender, bool &Draw);
  // False when the document's own OnDrawn must not hear of Sender.
  bool DrawnAfterElement(TObject *Sender);

  bool FIncludeElement;
  TSVGDrawingEvent FOldDrawn;
  TSVGDrawingQEvent FOldDrawing;
  bool FDoDrawAfter = false;
  TSVGGraphicElement *FElement;
  TSVGDocument *FDocument;
  TDrawEvent FDrawEvent = deReset;
  TSVGShouldDrawQEvent FOldShouldDraw;
  bool FFoundElement = false;
};

} // namespace vx
