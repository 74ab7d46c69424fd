#pragma once
// TSVGGraphicElement: an element that presentation attributes and CSS can style, that reads child
// elements and that draws. Each presentation property keeps its own value and a bit in FInherits
// that says whether the value comes from the parent; the getters resolve that bit up the parent
// chain at read time, while brush, pen and font are merged once per change and cached.
//
// The class is implemented in several sources by concern: the model here (tree/), reading styles
// (graphics/VXSVGPresentation.cpp), paint resolution (graphics/VXSVGPaintResolution.cpp) and the
// draw frame (graphics/VXSVGDrawPipeline.cpp).
#include "platform/rtl/VXExport.h"
#include "platform/common/VXDictionary.h"
#include "platform/vectorkit/VXGPLayer.h"
#include "platform/vectorkit/VXGPPath.h"
#include "tree/VXSVGElement.h"
#include "tree/VXSVGStyle.h"
#include "values/VXSVGCSSValues.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGPaint.h"
#include "values/VXSVGPropertiesSet.h"

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

class QPainter;
class QPointF;
class QRect;
class QRectF;
class QTransform;

namespace vx {

class TVXGPCanvas;
class TVXPathData;

// The parts of a shape that paint-order arranges.
enum TSVGPaintPart : std::uint8_t { spFill, spStroke, spMarkers };
using TSVGPaintOrder = std::array<TSVGPaintPart, 3>;

class VX_EXPORT TSVGGraphicElement : public TSVGElement
{
public:
  explicit TSVGGraphicElement(TSVGDocument *Owner);
  ~TSVGGraphicElement() override;

  // Also drops the caches that depend on the parent chain.
  void SetParent(TSVGElement *Parent) override;
  // The parent when it is a graphic element, else nil.
  TSVGGraphicElement *GetGraphicParent() const { return FGraphicParent; }

  // --- presentation properties: getters resolve inheritance, setters store the element's own value ---
  bool GetVisible() const;
  void SetVisible(bool Value);
  TVXGPColor GetColor() const;
  void SetColor(TVXGPColor Value);
  TSVGColorInterpolation GetColorInterpolation() const;
  void SetColorInterpolation(TSVGColorInterpolation Value);
  TSVGColorRendering GetColorRendering() const;
  void SetColorRendering(TSVGColorRendering Value);
  TCursor GetCursor() const;
  void SetCursor(TCursor Value);
  TSVGFillRule GetClipRule() const;
  void SetClipRule(TSVGFillRule Value);
  TSVGFillRule GetFillRule() const;
  void SetFillRule(TSVGFillRule Value);
  TSVGAlignmentBaseline GetAlignmentBaseline() const;
  void SetAlignmentBaseline(TSVGAlignmentBaseline Value);
  TSVGDominantBaseline GetDominantBaseline() const;
  void SetDominantBaseline(TSVGDominantBaseline Value);
  TSVGDirection GetDirection() const;
  void SetDirection(TSVGDirection Value);
  TSVGGlyphOrientationHorizontal GetGlyphOrientationHorizontal() const;
  void SetGlyphOrientationHorizontal(TSVGGlyphOrientationHorizontal Value);
  TSVGGlyphOrientationVertical GetGlyphOrientationVertical() const;
  void SetGlyphOrientationVertical(TSVGGlyphOrientationVertical Value);
  virtual TSVGWritingMode GetWritingMode() const;
  void SetWritingMode(TSVGWritingMode Value);
  float GetOpacity() const;
  // Clamped to 0..1; an inherited opacity stays marked inherited.
  void SetOpacity(float Value);
  // The opacity folded into each paint: the product of the opacities up the graphic parents, or 1
  // where the layers of the elements apply their opacities (GroupOpacityNeedsLayer).
  float GetAbsoluteOpacity() const;
  // mix-blend-mode and isolation, read from style sheets and style attributes only (graphics/VXSVGLayers.cpp).
  TVXGPBlendMode GetBlendMode() const { return FBlendMode; }
  void SetBlendMode(TVXGPBlendMode Value);
  bool IsIsolated() const { return FIsolated; }
  void SetIsolated(bool Value);
  TSVGShapeRendering GetShapeRendering() const;
  void SetShapeRendering(TSVGShapeRendering Value);
  TSVGTextAlign GetTextAlign() const;
  void SetTextAlign(TSVGTextAlign Value);
  TSVGTextRendering GetTextRendering() const;
  void SetTextRendering(TSVGTextRendering Value);
  TSVGVectorEffect GetVectorEffect() const;
  void SetVectorEffect(TSVGVectorEffect Value);
  bool IsOverflow() const;
  void SetOverflow(bool Value);
  const QString &ClipURI() const { return FClipURI; }
  void SetClipURI(const QString &Value);
  const TRectF &ClipRect() const { return FClipRect; }
  QString GetMarkerStartURI() const;
  QString GetMarkerMidURI() const;
  QString GetMarkerEndURI() const;

  // --- the standard road of presentation (graphics/VXSVGCSSPresentation.cpp) ---
  // Whether color starts black instead of transparent.
  bool ColorStartsBlack() const { return FollowsStandardSVG(); }
  // Whether paints, colours and opacities are read as CSS reads them: Color 4 forms, a fallback
  // behind a reference, percentages, invalid text ignored, currentColor taken where the paint is used.
  bool ReadsPaintAsCSS() const { return FollowsStandardSVG(); }
  // Whether styles cascade as CSS: presentation attributes below every rule, rules by specificity
  // and then by order, the style attribute above them, !important above all; transform and
  // transform-origin as properties; a transform that cannot be read is ignored.
  bool CascadesAsCSS() const { return FollowsStandardSVG(); }
  // Whether display and visibility are two properties, as in CSS: display="none" hides the subtree,
  // visibility inherits and hides only the geometry of the elements it reaches, so a child can
  // show itself again in a hidden group.
  bool SeparatesDisplayFromVisibility() const { return FollowsStandardSVG(); }
  // Whether the element's own geometry is drawn: the classic road decided that in ShouldDraw.
  bool ShowsOwnGeometry() const { return !SeparatesDisplayFromVisibility() || GetVisible(); }
  // display is not none (the standard road; the classic one keeps display in Visible).
  bool IsDisplayed() const { return FDisplayed; }

  // The element whose paints context-fill and context-stroke name for the elements below this one
  // (a use for its content, a marker for the shape it marks); nil when this element sets none.
  virtual TSVGGraphicElement *PaintContext() const { return nullptr; }

  // The paints as resolved (inherited pieces merged); outside a load they resolve on first use.
  virtual TSVGBrush &GetBrush();
  virtual TSVGPen &GetPen();
  virtual TSVGFont &GetFont();
  // Resolution for a draw under Matrix of what lies in Rect: Rect reaches the paint servers.
  virtual TSVGBrush &GetBrush(const TMatrix &Matrix, const TRectF &Rect);
  virtual TSVGPen &GetPen(const TMatrix &Matrix, const TRectF &Rect);
  void SetBrush(const TSVGBrush &Value);
  void SetPen(const TSVGPen &Value);
  void SetFont(const TSVGFont &Value);

  TSVGStylePropertiesSet &Inherits() { return FInherits; }
  const TSVGStylePropertiesSet &Inherits() const { return FInherits; }
  void SetInherits(const TSVGStylePropertiesSet &Value) { FInherits.Assign(&Value); }
  // The properties this element was given in its style attribute.
  const TSVGStylePropertiesSet &PreferredStyles() const { return FPreferredStyles; }
  // Which properties are written as style pairs: the parent's set while ParentPreferredStyles holds.
  const TSVGStylePropertiesSet &GetPreferredStyles() const;
  void SetPreferredStyles(const TSVGStylePropertiesSet &Value) { FPreferredStyles.Assign(&Value); }
  bool ParentPreferredStyles() const { return FParentPreferredStyles; }
  void SetParentPreferredStyles(bool Value) { FParentPreferredStyles = Value; }
  TSVGUnit OpacityPreferredUnit() const { return FOpacityPreferredUnit; }

  TSVGStylePropertyAutoLength &LetterSpacing() { return *FLetterSpacing; }
  const TSVGStylePropertyAutoLength &LetterSpacing() const { return *FLetterSpacing; }
  TSVGStylePropertyAutoLength &Kerning() { return *FKerning; }
  const TSVGStylePropertyAutoLength &Kerning() const { return *FKerning; }
  TSVGStylePropertyAutoLength &WordSpacing() { return *FWordSpacing; }
  const TSVGStylePropertyAutoLength &WordSpacing() const { return *FWordSpacing; }
  TSVGBaselineShiftLength &BaselineShift() { return *FBaselineShift; }
  const TSVGBaselineShiftLength &BaselineShift() const { return *FBaselineShift; }
  // The length setters copy Value into the element's own length, whose change event does the rest.
  void SetLetterSpacing(const TSVGLength &Value) { FLetterSpacing->Assign(&Value); }
  void SetKerning(const TSVGLength &Value) { FKerning->Assign(&Value); }
  void SetWordSpacing(const TSVGLength &Value) { FWordSpacing->Assign(&Value); }
  void SetBaselineShift(const TSVGLength &Value) { FBaselineShift->Assign(&Value); }

  // The inline style attribute (and, after loading, every attribute read), as property/value pairs.
  const TSVGStyle &Style() const { return FStyle; }
  void SetStyle(const TSVGStyle &Value) { FStyle.Assign(&Value); }

  // --- transform and geometry lengths ---
  const TMatrix &Matrix() const { return FMatrix; }
  void SetMatrix(const TMatrix &Value);
  // The matrix as an SVG transform; setting fails as the transform parser does and keeps the old one.
  QString GetTransformMatrix() const;
  void SetTransformMatrix(const QString &Value);
  TSVGLength &Xu() { return *FX; }
  const TSVGLength &Xu() const { return *FX; }
  TSVGLength &Yu() { return *FY; }
  const TSVGLength &Yu() const { return *FY; }
  TSVGLength &WidthU() { return *FWidth; }
  const TSVGLength &WidthU() const { return *FWidth; }
  TSVGLength &HeightU() { return *FHeight; }
  const TSVGLength &HeightU() const { return *FHeight; }
  void SetXu(const TSVGLength &Value) { FX->Assign(&Value); }
  void SetYu(const TSVGLength &Value) { FY->Assign(&Value); }
  void SetWidthU(const TSVGLength &Value) { FWidth->Assign(&Value); }
  void SetHeightU(const TSVGLength &Value) { FHeight->Assign(&Value); }
  // Resolved values in user units; the Raw forms are the stored numbers with no unit resolved.
  virtual float GetX() const;
  virtual float GetXRaw() const;
  virtual float GetY() const;
  virtual float GetYRaw() const;
  virtual float GetWidth() const;
  virtual float GetWidthRaw() const;
  virtual float GetHeight() const;
  virtual float GetHeightRaw() const;
  virtual void SetX(float Value);
  virtual void SetY(float Value);
  // Negative sizes become 0.
  virtual void SetWidth(float Value);
  virtual void SetHeight(float Value);

  TSVGUnitFactors GetUnitFactors() const override;
  // The unit factors of font-size: the documented ones, or in standard mode percent and ex of
  // ParentSize.
  TSVGUnitFactors FontSizeFactors(float ParentSize) const;

  // --- bounds and baking ---
  TRectF GetBoundsRect() const override;
  TRectF GetBoundsRect(const TMatrix &Matrix) const override;
  void SetBoundsRect(const TRectF &Rect) override;
  // Pushes Matrix and the element's own transform down into the geometry; the transform becomes the identity.
  virtual void BakeTransformation(const TMatrix &Matrix);

  // --- drawing ---
  bool DoShouldDraw() const override;
  // Draws into Rect through the document's view matrix.
  virtual void Draw(TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual void Draw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // The same through whatever Painter paints on (graphics/VXSVGQtSurface.cpp); the integer form
  // is the one of controls and bitmaps.
  void Draw(QPainter &Painter, const QRectF &Rect);
  void Draw(QPainter &Painter, const QRect &Rect);
  void Draw(const TMatrix &Matrix, QPainter &Painter, const QRect &Rect);
  // GetViewMatrix and the bounds in Qt's terms.
  QTransform ViewTransform(const QRectF &Rect) const;
  QRectF BoundingRect() const;
  QRectF BoundingRect(const QTransform &Transform) const;
  // Draws this element alone, in its place: the ancestors' transforms and clips apply.
  virtual void DrawElement(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Ancestors first: composes their transforms into Matrix and sets their clips.
  virtual void DrawElementParent(TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect);
  // The rectangle that overflow clipping keeps: the bounds narrowed by the clip offsets, inflated by one.
  virtual TRectF GetClipRect() const;
  // The drawing events of Sender: the owner document answers; without one, drawing goes ahead.
  virtual bool DoDrawing(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual void DoDrawn(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual bool DoDisableAppearance(TSVGElement *Sender, TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect);
  // A paint server (gradient, pattern) fills Target for Client, drawn under Matrix over Rect, and
  // answers true; any other element is no paint server.
  virtual bool PaintServerBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Rect,
                                TVXGPBrush &Target);
  // The cached geometry in element space; subclasses rebuild it first when it is stale.
  virtual TVXGPPath *GetShape();

  // --- clipping and hit testing (graphics/VXSVGClipping.cpp, graphics/VXSVGHitTesting.cpp) ---
  // The clipPath element that clip-path names (the parent's answer while clip-path is inherited);
  // nil for an empty or unknown reference, or one that names another kind of element.
  TSVGGraphicElement *GetClipURIElement() const;
  // Unites the geometry of this element under its transform composed with Matrix, then that of its
  // visible graphic descendants, with Region. A disabled element adds nothing, its subtree neither.
  virtual void BuildClipRegion(TVXGPRegion &Region, const TMatrix &Matrix, const TRectF &Rect);
  // The clip region that applies to this element, or nil. The clip path element owns it and builds
  // it again at each request, so it is valid until the next one.
  virtual TVXGPRegion *GetClipPath(TVXGPCanvas &Canvas);
  // Standard clipping. A clip path unites, into Region, its contribution for Client drawn under
  // Matrix (Client's own transform included), in device space, and answers true; any other element,
  // and a clip path asked again while it builds (a reference cycle, which is then skipped), answers
  // false.
  virtual bool BuildStandardClipRegion(TVXGPRegion &Region, TSVGGraphicElement &Client, const TMatrix &Matrix);
  // A child of a standard clip path unites its geometry under Matrix (its own transform not yet in
  // it) with Region, cut by its own clip-path, unless it is not drawn (display, visibility or
  // conditional attributes).
  void AddToStandardClipRegion(TVXGPRegion &Region, const TMatrix &Matrix);
  // The box that objectBoundingBox units of clip paths and masks refer to, in the element's user
  // space: its geometry's bounds, for a container its children's under their transforms.
  TRectF ObjectBoundingBox() const;

  // --- masks (graphics/VXSVGClipping.cpp, structure/VXSVGMask.cpp) ---
  // The mask element that the mask property names; nil for none, an unknown id, another kind of
  // element, and always on the classic road, which does not draw masks.
  TSVGGraphicElement *GetMaskURIElement() const;
  const QString &MaskURI() const { return FMaskURI; }
  void SetMaskURI(const QString &Value);
  // A mask element draws Client, whose parent's matrix is Matrix, through itself onto Canvas and
  // answers true; any other element answers false, and so does a mask that declines (Client is
  // being drawn into the mask's own layer, or a reference cycle), after which Client draws as usual.
  virtual bool DrawMasked(TSVGGraphicElement &Client, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // The topmost element under Point, in device units of Canvas, when this element is drawn into
  // Rect; nil when there is none. The first form takes the document's view matrix for Rect. Overrides
  // of the matrix form must leave the canvas as they found it.
  virtual TSVGGraphicElement *ElementAtPos(TVXGPCanvas &Canvas, const TPointF &Point, const TRectF &Rect,
                                           TSVGFindOptions Options);
  virtual TSVGGraphicElement *ElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                           const TRectF &Rect, TSVGFindOptions Options);
  // The element under Point when the picture is drawn into Rect, found on a scratch canvas.
  TSVGGraphicElement *ElementAtPos(const QPointF &Point, const QRectF &Rect, TSVGFindOptions Options = {});
  // Element was hit: the owner document's OnElementFound may answer another element, or nil.
  virtual TSVGGraphicElement *DoOnElementFound(TSVGGraphicElement *Element);

  // --- markers (structure/VXSVGMarkerPlacement.cpp) ---
  // Draws the markers that marker-start, marker-mid and marker-end name at the vertices of Path
  // (Bezier control points stepped over) or of Points. Leaves the canvas pen as thick as the
  // element's stroke, which markers in strokeWidth units scale by, unless paint-order puts parts of
  // the path after the markers: those are painted then, with the canvas as the path left it.
  void DrawMarkers(const TVXPathData &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  void DrawMarkers(const TVXPoints &Points, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Generates the controls of the markers' contents into Control, placed as DrawMarkers draws them.
  void GenerateMarkers(const TVXPathData &Path, IVXHostControl *Control, const TMatrix &Matrix, const TRectF &Rect,
                       const TSVGControlElementEvent &Callback);
  void GenerateMarkers(const TVXPoints &Points, IVXHostControl *Control, const TMatrix &Matrix, const TRectF &Rect,
                       const TSVGControlElementEvent &Callback);
  // The element of marker contents under Point, asking the start, the mid and the end markers in
  // that order; nil when none is hit. The canvas is left as it was.
  virtual TSVGGraphicElement *MarkersAtPos(const TVXPathData &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                           const TPointF &Point, const TRectF &Rect, TSVGFindOptions Options);
  virtual TSVGGraphicElement *MarkersAtPos(const TVXPoints &Points, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                           const TPointF &Point, const TRectF &Rect, TSVGFindOptions Options);

  // --- changes ---
  void Change(TSVGElement *Element) override;
  void EnableChange() override;
  void PropagateObjectPropChange(TObject *Sender) override;
  void Reset() override;

  // --- XML and copying ---
  void ApplyStyles() override;
  // Turns the properties that Style names into fields; the others stay as they are.
  virtual void ApplyStyle(const TSVGStyle &Style);
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;
  // Writes the element and then its children into Node.
  void SaveToXML(const IXMLNode &Node) override;

  // --- binary component stream (tree/VXSVGElementStreaming.cpp) ---
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override;
  // Defines InheritedProperties and PreferredStyleProperties, then the base's.
  void DefineProperties(TFiler &Filer) override;
  // A set as a list of property ordinals (soExportOptimizedBinaryStyleProperties) or as its text.
  void WriteStyleProperties(TWriter &Writer, const TSVGStylePropertiesSet &Set) const;
  // Reads either form of a set.
  static void ReadStyleProperties(TReader &Reader, TSVGStylePropertiesSet &Set);

protected:
  // --- generated controls and copying (graphics/VXSVGControlCopy.cpp) ---
  // Composes the element's transform into Matrix and places Control: a path control takes its path
  // in the top control's pixels and places itself over it, other controls are sized from the
  // bounds; a shape's stroke is scaled to those pixels.
  void DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                       const TSVGControlElementEvent &Callback) override;
  // Into a control: visibility, cursor and, for a shape, opacity and paints, then the base. Into a
  // TSVGStyle: one pair per property the element sets itself; inherited ones are left out.
  void AssignTo(TPersistent *Dest) const override;
  // The text AssignTo gives Property in a style; false for the properties that are never written.
  bool StylePropertyText(TSVGStyleProperty Property, QString &Text) const;

  // The frame of one element's draw: matrix composition, canvas set-up, own geometry, children,
  // canvas restore (the last also on the way out by an exception).
  virtual void InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // The frame under Combined, which already holds the element's own transform.
  void DrawFrame(const TMatrix &Combined, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Sets up the canvas for this element and its children; false when OnDrawing cancels its geometry.
  virtual bool BeginDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual void EndDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Draws the element's own geometry; true when something was drawn, which markers follow.
  virtual bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual void DrawChildren(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // --- layers (graphics/VXSVGLayers.cpp) ---
  // Whether an element's opacity, blend mode and isolation are applied by drawing it into a layer
  // of its own, composited once (so overlaps inside do not show), instead of folding the opacities
  // of the ancestors into each paint.
  bool GroupOpacityNeedsLayer() const;
  // The layer the element and its children are drawn into, or nil when it needs none; it is
  // offscreen only when more than one painted part could overlap, or for a blend or isolation.
  std::unique_ptr<TVXGPLayer> OpenLayer(TVXGPCanvas &Canvas) const;
  // Draws Layer (when there is one) onto the canvas with the element's blend mode.
  void CompositeLayer(TVXGPLayer *Layer) const;
  // Fill, then stroke, of Path transformed by Matrix, with the opacities folded in; in the order of
  // paint-order where it is honoured, the parts after the markers left to PaintDeferredParts.
  void DrawPath(const TVXGPPath &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  void DrawPath(const TVXPathData &Path, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Clips the canvas by the element's clip path; the clip-path family builds on this hook.
  virtual void PerformClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // The geometry a standard clip path takes from this element under Matrix (its own transform
  // included), with its clip rule: its shape and its children's (text spans); a use overrides it.
  virtual void AddStandardClipGeometry(TVXGPRegion &Region, const TMatrix &Matrix);
  // Whether clip paths follow SVG 1.1 (an empty one hides everything, clipPathUnits, clip-path on a
  // clip path and on its children, use children, the transform once) or the classic rules.
  bool UsesStandardClipPaths() const { return FollowsStandardSVG(); }
  // Draws the element through its mask when it has one; false when it is to be drawn as usual.
  bool DrawnThroughMask(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Hit testing under Matrix, the transform of the parent: children from the topmost down, then
  // DoInternalElementAtPos with the element's own transform composed in.
  virtual TSVGGraphicElement *InternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                   const TRectF &Rect, TSVGFindOptions Options);
  // The element's own geometry: its bounding box, then (unless foUseBoundingBox) its path.
  virtual TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                     const TPointF &Point, const TRectF &Rect, TSVGFindOptions Options);
  // Path under Matrix against Point with the element's fill, pen (at least 3 units wide) and clip.
  virtual TSVGGraphicElement *PathAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                        const TRectF &Rect, const TVXGPPath &Path, TSVGFindOptions Options);
  // Sets the canvas pen for the element; ScaleStroke scales width and dashes by Matrix.
  virtual void SetCanvasPen(TVXGPCanvas &Canvas, const TMatrix &Matrix, bool ScaleStroke);
  // Whether percentages of dashes and of the dash offset are of the viewport's normalised diagonal
  // and an offset in em or ex of the element's font; documented, a percentage is a plain fraction
  // and the offset's font units are the document's.
  bool ResolvesRelativeDashes() const { return FollowsStandardSVG(); }
  void ResolveRelativeDashes(std::vector<float> &Dashes, float &Offset);
  // The nearest view box's diagonal over the square root of 2; 1 without a view box.
  float NormalizedViewportDiagonal() const;
  // Greys the canvas paints for a disabled element, unless the owner's OnDisableAppearance refuses.
  virtual void DisableAppearance(TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect);
  virtual int GetSmoothingMode() const;
  // Whether shape-rendering="crispEdges" turns anti-aliasing off, as browsers do; documented, it
  // asks for high quality.
  bool DrawsCrispEdgesAliased() const { return FollowsStandardSVG(); }
  virtual int GetTextRenderingHint() const;
  virtual int GetCompositingQuality() const;

  void InternalBakeTransformation(const TMatrix &Matrix);
  // Rewrites the element's own coordinates by Matrix; the base has none to rewrite.
  virtual void DoBakeTransformation(const TMatrix &Matrix);
  void BakeTransformationChildren(const TMatrix &Matrix);

  void DoLoadFromXML(const IXMLNode &Node) override;
  // Reads every DOM child in order: ReadChild makes the element, which joins the tree before it
  // reads its own attributes.
  void ReadChildren(const IXMLNode &Node) override;
  // Makes the element for Node and answers its index in the children, or -1. This last level
  // handles what no container took: desc, title, editor elements and unknown names.
  virtual int ReadChild(const IXMLNode &Node);

  // Applies the inline style and every enabled rule of Sheet that matches, lowest specificity
  // first; the inline style counts 999.
  void ApplyMatchingStyles(const TVXStringObjectHashTable<TSVGStyle> *Sheet);

  // Writes the presentation: each property as an attribute or a style pair, as it was read.
  void DoSaveToXML(const IXMLNode &Node) override;
  // One new node per child, tagged with the child's type name, which the child fills.
  virtual void WriteChildren(const IXMLNode &Node);
  // Writes Length as attribute Name, a percentage as its share of 0..Max; left out when its raw
  // value is 0 and OmitZero holds.
  void SaveLength(const IXMLNode &Node, const QString &Name, const TSVGLength &Length, float Max, bool OmitZero) const;
  // Writes "x", "y", "width" and "height" (as percentages of 100 where given so); a zero is left out
  // of compact output.
  void SaveBoundsLengths(const IXMLNode &Node) const;
  // "none", "url(#URI)" or the colour, written by SaveStyleProperty.
  void SaveColorStyleProperty(const IXMLNode &Node, TSVGStyleProperty Property, TVXGPBrushKind Kind,
                              TVXGPColor Color, const QString &URI) const;

  // Whether Value differs from the default text of Property (what saving writes).
  virtual bool IsStored(TSVGStyleProperty Property, const QString &Value) const;

  // Factors with the font-relative units scaled by the element's font size.
  TSVGUnitFactors WithFontFactors(TSVGUnitFactors Factors) const;

  // The length factories: they wire change, range, unit and inheritance handlers.
  std::unique_ptr<TSVGLength> CreateLength(bool UseWidthRange);
  std::unique_ptr<TSVGStylePropertyLength> CreateStylePropertyLength(TSVGStyleProperty Property);
  std::unique_ptr<TSVGStylePropertyAutoLength> CreateStylePropertyAutoLength(TSVGStyleProperty Property);
  // Percentages of x and width are of the nearest view box's width, of y and height of its height.
  void LengthRangeViewBoxWidth(TSVGLength *Length, float &Min, float &Max, bool &Use) const;
  void LengthRangeViewBoxHeight(TSVGLength *Length, float &Min, float &Max, bool &Use) const;

  TSVGStyle FStyle;
  bool FVisible = true;
  std::unique_ptr<TSVGPen> FPen;
  std::unique_ptr<TSVGFont> FFont;
  std::unique_ptr<TSVGBrush> FBrush;
  TCursor FCursor = 0;
  TMatrix FMatrix = VXIdentityMatrix;
  TSVGTextAlign FTextAlign = TSVGTextAlign(1);
  bool FPenChanged = true;
  bool FFontChanged = true;
  bool FBrushChanged = true;
  TSVGFillRule FClipRule = frNonZero;
  TSVGFillRule FFillRule = frNonZero;
  QString FClipURI;
  bool FClippingChanged = true;
  TRectF FClipRect;
  float FOpacity = 1;
  int FCanvasState = 0;
  bool FOverflow = true;
  QString FMarkerEndURI, FMarkerStartURI, FMarkerMidURI;
  bool FShapeCacheChanged = true;
  TVXGPColor FColor = 0;
  TSVGColorInterpolation FColorInterpolation = sciSRGB;
  TSVGColorRendering FColorRendering = clrnAuto;
  TSVGTextRendering FTextRendering = txrnAuto;
  TSVGShapeRendering FShapeRendering = srnAuto;
  TSVGVectorEffect FVectorEffect = veNone;
  TSVGStylePropertiesSet FPreferredStyles;
  bool FParentPreferredStyles = true;
  TSVGUnit FOpacityPreferredUnit = suNone;
  std::unique_ptr<TSVGStylePropertyAutoLength> FLetterSpacing, FKerning, FWordSpacing;
  TSVGGlyphOrientationHorizontal FGlyphOrientationHorizontal = TSVGGlyphOrientationHorizontal(1);
  TSVGGlyphOrientationVertical FGlyphOrientationVertical = TSVGGlyphOrientationVertical(1);
  TSVGWritingMode FWritingMode = TSVGWritingMode(1);
  TSVGDirection FDirection = TSVGDirection(1);
  TSVGAlignmentBaseline FAlignmentBaseline = TSVGAlignmentBaseline(1);
  std::unique_ptr<TSVGBaselineShiftLength> FBaselineShift;
  TSVGDominantBaseline FDominantBaseline = TSVGDominantBaseline(1);
  TSVGStylePropertiesSet FInherits;
  TVXGPPath FShape;
  std::unique_ptr<TSVGLength> FWidth, FHeight, FX, FY;
  // The region GetClipPath answered; it belongs to the clip path element that made it.
  TVXGPRegion *FClipPath = nullptr;
  // The id the mask property names, without "#"; empty for none.
  QString FMaskURI;

private:
  // The element whose field answers for Property: this one, or the nearest graphic ancestor up
  // the chain of inherited bits. Iterative, so deep trees cost no stack.
  const TSVGGraphicElement *InheritanceSource(TSVGStyleProperty Property) const;
  template <typename T>
  void StoreProperty(T TSVGGraphicElement::*Field, TSVGStyleProperty Property, T Value, T Resolved);
  void ResetToDefaults();
  void WireObjects();
  void WireLength(TSVGLength &Length, bool UseWidthRange);
  void WireInheritance(TSVGStylePropertyLength &Length);
  void ResourceGetInherited(TSVGStyleProperty Property, bool &Inherited) const;
  TSVGStylePropertyLength *ParentLength(const TSVGStylePropertyLength *Length) const;
  void MergeInheritedBrush(const TMatrix &Matrix, const TRectF &Rect);
  void MergeInheritedPen();
  void ApplyPaintServer(const QString &URI, TVXGPBrush &Target, const TMatrix &Matrix, const TRectF &Rect);
  void ApplyColorStyle(const TSVGStyle &Style);
  template <typename TPaint>
  void ApplyPaintStyle(const QString &Text, TSVGStyleProperty Property, TPaint &Paint);
  void ApplyLineCapStyle(const QString &Text);
  void ApplyStrokeWidthStyle(const QString &Text, const TSVGUnitFactors &Factors);
  void ApplyFontStyle(const TSVGStyle &Style, const TSVGUnitFactors &Factors);
  void ApplyMarkerStyle(const TSVGStyle &Style);
  // The mask property, read on the standard road only (it is not inherited).
  void ApplyMaskStyle(const TSVGStyle &Style);
  void PerformStandardClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas);
  // Standard mode keeps dashes of length 0 (dots with round caps); documented, they turn dashing off.
  bool KeepsZeroLengthDashes() const;
  // The cap of each dash for a stroke-linecap: standard mode the same cap, documented square dashes
  // end flat.
  TVXGPLineCap DashCap(TVXGPLineCap Cap) const;
  void ApplyCSSColorStyle(const QString &Text);
  void ApplyCascadedStyles(const TVXStringObjectHashTable<TSVGStyle> *Sheet);
  // The transform and transform-origin that Style names, as the element's matrix.
  void ApplyTransformStyle(const TSVGStyle &Style);
  TMatrix LoadTransform(const QString &Text) const;
  // A paint read as CSS; Keyword keeps what is resolved where the paint is used (currentColor).
  template <typename TPaint>
  void ApplyCSSPaintStyle(const QString &Text, TSVGStyleProperty Property, TPaint &Paint, TSVGPaintKeyword &Keyword);
  // The keyword that the fill (ipFill) or stroke (ipStroke) resolves at use, inherited ones included.
  TSVGPaintKeyword PaintKeyword(TSVGStyleProperty Property) const;
  // Puts what the keyword of the fill or stroke stands for into Paint: the colour for currentColor,
  // the context element's paint (or none without one) for context-fill and context-stroke.
  template <typename TPaint>
  void ResolvePaintKeyword(TSVGStyleProperty Property, TPaint &Paint);
  float ParseOpacityStyle(const QString &Text, float Default, bool &IsInherited) const;

  TSVGGraphicElement *FGraphicParent = nullptr;
  // What fill and stroke name that is resolved at use (pkAbsent for a plain paint); standard road only.
  TSVGPaintKeyword FFillKeyword = pkAbsent;
  TSVGPaintKeyword FStrokeKeyword = pkAbsent;
  bool FDisplayed = true;
  // Keeps the compositing declarations of the style attribute; presentation attributes of those
  // names are not honoured.
  void ReadCompositingStyle(const QString &StyleText);
  void ApplyCompositingStyle(const TSVGStyle &Style);
  bool HasSeveralPaintedParts() const;

  // --- paint order (graphics/VXSVGPaintOrder.cpp) ---
  // Whether paint-order arranges fill, stroke and markers; documented, they always come in that order.
  bool HonoursPaintOrder() const { return FollowsStandardSVG(); }
  // The order of the parts, inherited up the parents; an invalid declaration counts as none.
  TSVGPaintOrder GetPaintOrder() const;
  void ApplyPaintOrderStyle(const TSVGStyle &Style);
  // Paints the parts of Path (transformed by Matrix) that come before the markers, and keeps the
  // rest (with the canvas state) for PaintDeferredParts, which the markers and the draw frame call.
  void PaintPathInOrder(std::unique_ptr<TVXGPPath> Path, const TMatrix &Matrix, TVXGPCanvas &Canvas);
  void PaintPart(const TVXGPPath &Path, TSVGPaintPart Part, const TMatrix &Matrix, TVXGPCanvas &Canvas);
  void PaintDeferredParts(TVXGPCanvas &Canvas);
  void DiscardDeferredParts() { FDeferredPath.reset(); }
  // Whether a stroke under a matrix that does not keep circles circles (a skew, unequal scales) is
  // stroked in user space and then transformed, sheared with the shape; documented, it keeps one
  // width in device units.
  bool ShearsStrokes() const { return FollowsStandardSVG(); }
  // The stroke of Path (in device units) as Matrix shears it.
  void StrokeInUserSpace(const TVXGPPath &Path, const TMatrix &Matrix, float Opacity, TVXGPCanvas &Canvas);

  QString FPaintOrder;
  std::unique_ptr<TVXGPPath> FDeferredPath;
  TMatrix FDeferredMatrix;
  std::array<bool, 3> FDeferredParts{};
  int FDeferredState = 0;

  TVXGPBlendMode FBlendMode = bmNormal;
  bool FIsolated = false;
  // mix-blend-mode and isolation as the style attribute declared them (empty when it did not).
  QString FStyleBlendMode, FStyleIsolation;
};

// Rendering modes of the canvas from the presentation keywords.
VX_EXPORT int GetCompositingQuality(TSVGColorRendering ColorRendering, TSVGColorInterpolation ColorInterpolation);
VX_EXPORT int GetSmoothingMode(TSVGShapeRendering ShapeRendering);
VX_EXPORT int GetTextRenderingHint(TSVGTextRendering TextRendering);

} // namespace vx
