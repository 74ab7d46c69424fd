#pragma once
// The paint servers "linearGradient" and "radialGradient" and their "stop" children. A gradient is
// never drawn by the walk of the tree: an element whose fill or stroke names it asks it, through
// PaintServerBrush, for a canvas gradient laid out over the element's own rectangle. The gradient
// keeps its unrolled stops in its own brush, rebuilt only when a stop or the element changed.
#include "platform/vectorkit/VXGPPaint.h"
#include "tree/VXSVGReferenceListener.h"
#include "tree/VXSVGGraphicElement.h"

#include <cstdint>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace vx {

class TSVGGradientStop;

// The attributes of a gradient that may be given or left to the gradient its href names.
enum TSVGGradientAttribute : std::uint8_t {
  gaUnits, gaTransform, gaSpread, gaX1, gaY1, gaX2, gaY2, gaCX, gaCY, gaR, gaFX, gaFY, gaFR
};
using TSVGGradientAttributes = TSet<TSVGGradientAttribute, std::uint16_t>;

// What the two gradient kinds share: the href to another gradient's stops, the spread method, the
// units of the coordinates, "gradientTransform" (held in FMatrix), and the turning of stops into
// the points of a canvas gradient.
class TSVGCustomGradient : public TSVGGraphicElement
{
public:
  // The stops a gradient reads from a file; later ones are passed over. A stop is a whole element,
  // and no device shows more colour steps than this across a gradient, so a file of a million stops
  // costs what a thousand do.
  static constexpr int MaxLoadedStops = 1024;

  explicit TSVGCustomGradient(TSVGDocument *Owner);
  ~TSVGCustomGradient() override;

  // The id named by "xlink:href", without "#". Setting it makes this gradient a listener of the
  // named element (and no longer of the old one), so that it hears of the target's changes and of
  // its destruction, which empties the reference.
  const QString &Reference() const { return FReference; }
  void SetReference(const QString &Value);
  TSVGGradientSpread Spread() const { return FSpread; }
  void SetSpread(TSVGGradientSpread Value);
  TSVGCoordinateSystemUnit Units() const { return FUnits; }
  void SetUnits(TSVGCoordinateSystemUnit Value);

  TSVGElementTypes ChildSVGTypes() const override;
  bool DoShouldDraw() const override { return false; }
  // A paint server takes no room: it adds nothing to the bounds of its container.
  TRectF GetBoundsRect() const override { return TRectF{}; }
  TRectF GetBoundsRect(const TMatrix &) const override { return TRectF{}; }

  void NotifyListener(TSVGElement *Element) override;
  // Adding or removing a stop makes the points stale.
  void ElementNotification(TObject *Sender, TSVGElement *Item, TCollectionNotification Action) override;
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

  // The attributes loaded from XML or set by a program.
  TSVGGradientAttributes GivenAttributes() const { return FGiven; }

  // Fills Points with the stops, first to last for Direction 1 and last to first for -1; the
  // reflect and repeat spreads are unrolled into further passes until an offset reaches 1. A
  // gradient without children takes the stops of the gradient its href names (and only those); a
  // chain of references that comes back on itself is skipped, which leaves no stops at all.
  virtual void SetGradientPoints(TVXGPGradientPoints &Points, int Direction);
  // A new canvas gradient for an element drawn under Matrix whose bounds are Rect; positions are
  // fractions of Rect. Subclasses fill in their coordinates after calling this one.
  virtual std::unique_ptr<TVXGPGradient> GetGradient(const TMatrix &Matrix, const TRectF &Rect);
  // By the standard rules false when the gradient has nothing to paint for Client (no stops or
  // contents, or a box without area in bounding-box units); Target then paints nothing, and the
  // caller may paint a fallback instead.
  bool PaintServerBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Rect,
                        TVXGPBrush &Target) override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  // Stops become TSVGGradientStop children; anything else goes to the base.
  int ReadChild(const IXMLNode &Node) override;
  // Rebuilds the points of the own brush's gradient when they are stale; a radial gradient gets
  // them last to first with mirrored offsets, so that offset 0 is its outer edge. The brush does
  // not merge the parent's paint: a parent filled with this very gradient would ask for it again.
  void UpdateBrushGradient(TVXGPGradientStyle Style);
  // Appends one stop child per point, in order.
  void AddStops(const TVXGPGradientPoints &Points);
  // The gradient that FReference names, or nil.
  TSVGCustomGradient *ReferencedGradient() const;

  // Whether the gradient is laid out by the standard rules: every attribute not given is taken
  // through the href chain, gradientTransform applies in both unit systems (in bounding-box units
  // inside the box's space), the defaults and percentages of user space are of the viewport, the
  // stops are clamped to 0..1 and kept in order, the spread is the canvas's, and a box without
  // width or height takes no bounding-box gradient. Otherwise the classic rules of GetGradient.
  bool LaysOutByStandardRules() const { return FollowsStandardSVG(); }
  // This gradient and those its href chain names, nearest first; a chain that comes back on itself
  // ends before the repeated gradient.
  std::vector<const TSVGCustomGradient *> TemplateChain() const;
  // The positions of the standard layout in the gradient's own space; Viewport is the size that
  // user-space percentages are of.
  virtual void PlaceStandardGeometry(const std::vector<const TSVGCustomGradient *> &Chain, bool BoxUnits,
                                     const TSizeF &Viewport, TVXGPGradient &Gradient) const = 0;
  // Marks an attribute given, so that the href chain no longer supplies it.
  void GiveAttribute(TSVGGradientAttribute Attribute) { FGiven.Include(Attribute); }
  // Marks given those of Attributes that Node carries.
  void GiveLoadedAttributes(const IXMLNode &Node,
                            std::initializer_list<std::pair<TSVGGradientAttribute, QString>> Attributes);

  QString FReference;
  TSVGGradientSpread FSpread = gsPad;
  TSVGCoordinateSystemUnit FUnits = csuObjectBoundingBox;
  TSVGGradientAttributes FGiven;

private:
  // The gradient whose children give the stops: the end of the href chain of childless gradients.
  const TSVGCustomGradient &StopSource() const;
  void FillPoints(TVXGPGradientPoints &Points, int Direction) const;
  // One pass over the stops in the order of Step; answers the last offset added.
  float AppendStops(TVXGPGradientPoints &Points, bool Continuing, int Step) const;
  float StopOffset(int Index) const;
  // The standard road of PaintServerBrush: false when the gradient paints nothing for Client.
  bool StandardBrush(const TSVGGraphicElement &Client, const TRectF &Box, TVXGPBrush &Target) const;
  // The stops of the standard rules: offsets clamped to 0..1 and never below the one before.
  void FillStandardPoints(TVXGPGradientPoints &Points) const;

  TSVGReferenceListener FListener;
};

// "linearGradient": the gradient vector from (x1, y1) to (x2, y2), by default (0, 0) to (1, 0) of
// the painted box.
class TSVGLinearGradient : public TSVGCustomGradient
{
  VX_SVG_ELEMENT_CLASS(TSVGLinearGradient)

public:
  explicit TSVGLinearGradient(TSVGDocument *Owner);
  ~TSVGLinearGradient() override;

  TSVGElementType SVGType() const override { return etLinearGradient; }

  TSVGLength &X1() const { return *FX1; }
  TSVGLength &Y1() const { return *FY1; }
  TSVGLength &X2() const { return *FX2; }
  TSVGLength &Y2() const { return *FY2; }
  // Each also writes its pixels through to the start or end of the own brush's gradient.
  void SetX1(const TSVGLength &Value);
  void SetY1(const TSVGLength &Value);
  void SetX2(const TSVGLength &Value);
  void SetY2(const TSVGLength &Value);

  // From a canvas gradient: its vector and one stop per point, in bounding-box units.
  void Assign(const TPersistent *Source) override;
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

  using TSVGCustomGradient::GetBrush;
  TSVGBrush &GetBrush(const TMatrix &Matrix, const TRectF &Rect) override;
  // In user space the vector, through "gradientTransform" and Matrix, becomes fractions of the
  // transformed rectangle; in bounding-box units it stays as given.
  std::unique_ptr<TVXGPGradient> GetGradient(const TMatrix &Matrix, const TRectF &Rect) override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  void PlaceStandardGeometry(const std::vector<const TSVGCustomGradient *> &Chain, bool BoxUnits,
                             const TSizeF &Viewport, TVXGPGradient &Gradient) const override;

  std::unique_ptr<TSVGLength> CreateVectorLength();
  void WriteVector();

  std::unique_ptr<TSVGLength> FX1, FY1, FX2, FY2;
};

// "radialGradient": the centre (cx, cy) lives in FX and FY, the radius r in FWidth (FHeight is a
// copy), all 50 per cent by default; the focus (fx, fy) has lengths and flags of its own.
class TSVGRadialGradient : public TSVGCustomGradient
{
  VX_SVG_ELEMENT_CLASS(TSVGRadialGradient)

public:
  explicit TSVGRadialGradient(TSVGDocument *Owner);
  ~TSVGRadialGradient() override;

  TSVGElementType SVGType() const override { return etRadialGradient; }

  TSVGLength &CenterX() const { return *FX; }
  TSVGLength &CenterY() const { return *FY; }
  TSVGLength &Radius() const { return *FWidth; }
  TSVGLength &FocalX() const { return *FFocalX; }
  TSVGLength &FocalY() const { return *FFocalY; }
  // "fr": the radius of the focal circle; only the standard layout draws it.
  TSVGLength &FocalRadius() const { return *FFocalRadius; }
  bool FocalXSpecified() const { return FFocalXSpecified; }
  bool FocalYSpecified() const { return FFocalYSpecified; }
  void SetFocalXSpecified(bool Value);
  void SetFocalYSpecified(bool Value);

  // From a canvas gradient: centre, focus and radius and one stop per point, in bounding-box units.
  void Assign(const TPersistent *Source) override;
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

  using TSVGCustomGradient::GetBrush;
  // The stops reach the canvas reversed, with mirrored offsets: offset 0 is the outer edge.
  TSVGBrush &GetBrush(const TMatrix &Matrix, const TRectF &Rect) override;
  // Centre and focus as fractions of Rect after "gradientTransform", the radius as multiples of
  // Rect's half sizes; plain numbers in (0, 1] and percentages are read as fractions of the box.
  std::unique_ptr<TVXGPGradient> GetGradient(const TMatrix &Matrix, const TRectF &Rect) override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

  void PlaceStandardGeometry(const std::vector<const TSVGCustomGradient *> &Chain, bool BoxUnits,
                             const TSizeF &Viewport, TVXGPGradient &Gradient) const override;

private:
  void InitializeGeometry();

  std::unique_ptr<TSVGLength> FFocalX, FFocalY, FFocalRadius;
  bool FFocalXSpecified = false;
  bool FFocalYSpecified = false;
};

// "stop": the offset lives in FX (published as Offset), colour and opacity in a brush of its own,
// read from "stop-color" and "stop-opacity".
class TSVGGradientStop : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGGradientStop)

public:
  explicit TSVGGradientStop(TSVGDocument *Owner);
  ~TSVGGradientStop() override;

  TSVGElementType SVGType() const override { return etGradientStop; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }

  float Offset() const { return GetXRaw(); }
  void SetOffset(float Value) { SetX(Value); }
  // The stop's colour with its opacity folded into the alpha byte.
  TSVGBrush &GetStopBrush();

  // Reads the stop properties after the inherited ones; they do not count as styled.
  void ApplyStyle(const TSVGStyle &Style) override;
  void PropagateObjectPropChange(TObject *Sender) override;
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  // Whether the stop is read by the standard rules: "inherit" takes the value the parent gives the
  // property (or its initial value), an opacity may be a percentage, and an offset with a unit other than % is
  // ignored. Otherwise "inherit" keeps the present value and an offset takes any unit.
  bool ReadsStopByStandardRules() const { return FollowsStandardSVG(); }
  // The text of a stop property in Style, with "inherit" resolved as ReadsStopByStandardRules says.
  QString StopPropertyText(const TSVGStyle &Style, TSVGStyleProperty Property) const;

  std::unique_ptr<TSVGBrush> FStopBrush;
  bool FStopBrushChanged = true;
};

} // namespace vx
