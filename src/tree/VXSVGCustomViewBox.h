#pragma once
// TSVGCustomViewBox: a group that establishes a viewport (the document, nested svg, symbols,
// markers, patterns and images): it maps its view box into the viewport with the preserveAspectRatio
// arithmetic and hides what overflows the viewport when clipping is on.
#include "tree/VXSVGCustomGroup.h"
#include "values/VXSVGViewBox.h"

namespace vx {

class TSVGCustomViewBox : public TSVGCustomGroup
{
public:
  // Markers align with saNone by default; every other viewport centres (saXMidYMid).
  explicit TSVGCustomViewBox(TSVGDocument *Owner, TSVGAlign DefaultAlign = saXMidYMid);

  TSVGViewBox &ViewBox() { return FViewBox; }
  const TSVGViewBox &ViewBox() const { return FViewBox; }
  // Setting a view box marks it specified.
  void SetViewBox(const TSVGViewBox &Value);
  void SetViewBox(const TRectF &Value);
  bool IsViewBoxSpecified() const { return FViewBox.Specified(); }
  TSVGPreserveAspectRatio &AspectRatio() { return FAspectRatio; }
  const TSVGPreserveAspectRatio &AspectRatio() const { return FAspectRatio; }
  void SetAspectRatio(const TSVGPreserveAspectRatio &Value) { FAspectRatio.Assign(&Value); }

  // The scale and offset that fit a view box of the given size into Rect under Aspect. X, Y and the
  // scales come in as the viewport's corner and 1.
  static void DefineView(const TRectF &Rect, float ViewBoxWidth, float ViewBoxHeight,
                         const TSVGPreserveAspectRatio &Aspect, float &X, float &Y, float &ScaleX, float &ScaleY);
  TMatrix GetViewMatrix(const TMatrix &Matrix, const TRectF &Rect) const override;
  using TSVGCustomGroup::GetViewMatrix;
  const TSVGCustomViewBox *GetNearestViewBox() const override;

  TRectF GetBoundsRect() const override;
  TRectF GetBoundsRect(const TMatrix &Matrix) const override;

  void Draw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  using TSVGCustomGroup::Draw;
  // Through the same view matrix as Draw, with neither the visibility test nor overflow clipping
  // (graphics/VXSVGHitTesting.cpp).
  TSVGGraphicElement *ElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                   const TRectF &Rect, TSVGFindOptions Options) override;
  using TSVGCustomGroup::ElementAtPos;

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

  // --- viewports in standard mode ---
  // Whether this element (a nested svg or a symbol) places its viewport at its x and y, sizes it by
  // the width and height of the use that shows it, else its own, else 100%, maps its view box
  // with the standard arithmetic and clips to it; the documented road maps the view box into the
  // element's bounds.
  bool ViewportFollowsStandard() const;
  // The viewport in the parent's user space, by those rules.
  TRectF StandardViewport() const;
  // The view box mapped into Viewport by preserveAspectRatio, or the move to its corner without a
  // view box.
  TMatrix StandardViewMatrix(const TRectF &Viewport) const;
  // Source fitted into Viewport by Aspect, as the standard does it (meet, slice or stretched).
  static TMatrix StandardFit(const TRectF &Source, const TRectF &Viewport, const TSVGPreserveAspectRatio &Aspect);
  void DrawStandardViewport(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // The transform that applies outside the viewport (a symbol's is not one of its attributes).
  virtual TMatrix ViewportTransform() const { return FMatrix; }

protected:
  // The children's controls are placed under the view box mapping, composed as Draw composes it.
  void DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                       const TSVGControlElementEvent &Callback) override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  // A view box and aspect ratio are written only when the view box was given.
  void DoSaveToXML(const IXMLNode &Node) override;
  void DrawElementParent(TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect) override;
  // Narrows the canvas clip to the viewport rectangle, unless overflow is visible or clipping is off.
  virtual void OverflowClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // The rectangle the view box maps into: the root's own view box, else the element's bounds.
  TRectF Viewport() const;
  bool IsStored(TSVGStyleProperty Property, const QString &Value) const override;
  // Writes a derived view box without telling anyone: it is a cache, not an edit.
  void SetViewBoxSilently(const TRectF &Rect, bool Specified) const;

  mutable TSVGViewBox FViewBox;
  TSVGPreserveAspectRatio FAspectRatio;
  // Whether "width" and "height" were given, which a viewport's size falls back on.
  bool FWidthGiven = false;
  bool FHeightGiven = false;
};

} // namespace vx
