#pragma once
// The six basic shapes: circle, ellipse, rect, line, polyline and polygon. Each keeps its geometry
// in the four lengths every graphic element owns (FX, FY, FWidth, FHeight), given a meaning per
// class, so the generic getters, setters, percentages and unit factors work on every shape:
//
//   class          FX        FY        FWidth    FHeight
//   TSVGCircle     cx        cy        r         copy of r
//   TSVGEllipse    cx        cy        rx        ry
//   TSVGLine       x1        y1        x2        y2
//   TSVGRectangle  x         y         width     height     (plus its own FRX, FRY)
//
// Polylines and polygons keep a point array instead. Every shape fills the cached FShape in
// GetShape; DoInternalDraw draws that path through the base and has a direct road of its own for
// the moment the cached path is empty.
#include "platform/geometry/VXGeometry.h"
#include "platform/geometry/VXPathData.h"
#include "tree/VXSVGGraphicElement.h"

#include <memory>

namespace vx {

class TSVGCircle : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGCircle)

public:
  using TSVGGraphicElement::TSVGGraphicElement;

  TSVGElementType SVGType() const override { return etCircle; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }
  TRectF GetBoundsRect() const override;
  // Both keep the two radii equal: setting one sets the other to the same pixels.
  void SetWidth(float Value) override;
  void SetHeight(float Value) override;
  TVXGPPath *GetShape() override;

protected:
  // A path control first receives the geometry into its path data; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
};

class TSVGEllipse : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGEllipse)

public:
  using TSVGGraphicElement::TSVGGraphicElement;

  TSVGElementType SVGType() const override { return etEllipse; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }
  TRectF GetBoundsRect() const override;
  TVXGPPath *GetShape() override;

protected:
  // A path control first receives the geometry into its path data; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
};

class TSVGRectangle : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGRectangle)

public:
  explicit TSVGRectangle(TSVGDocument *Owner);

  TSVGElementType SVGType() const override { return etRectangle; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }
  TVXGPPath *GetShape() override;

  // The corner radii. The setters copy Value, then turn a negative radius into 0 and cut one
  // beyond half the width (half the height for RY) to that half; unlike reading, they do not
  // mirror one radius into the other.
  TSVGLength &RX() const { return *FRX; }
  TSVGLength &RY() const { return *FRY; }
  void SetRX(const TSVGLength &Value);
  void SetRY(const TSVGLength &Value);

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  // A path control first receives the geometry into its path data; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  // "x", "y", "width" and "height" are read by the base; this reads the radii.
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  // A rect without a positive width and height draws nothing at all.
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;

  std::unique_ptr<TSVGLength> FRX, FRY;

private:
  void ClampRX();
  void ClampRY();
};

class TSVGLine : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGLine)

public:
  using TSVGGraphicElement::TSVGGraphicElement;

  TSVGElementType SVGType() const override { return etLine; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }
  // x1, y1, x2, y2 unsorted; a flat side is widened by one unit so the line keeps an area.
  TRectF GetBoundsRect() const override;
  // The extent of the line: |x2 - x1| and |y2 - y1|.
  float GetWidth() const override;
  float GetHeight() const override;
  // Move the end point: x2 := x1 + Value, y2 := y1 + Value.
  void SetWidth(float Value) override;
  void SetHeight(float Value) override;
  TVXGPPath *GetShape() override;

protected:
  // A path control first receives the geometry into its path data; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  // A line is hit on its stroke alone: its box is flat when it is horizontal or vertical.
  TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                             const TRectF &Rect, TSVGFindOptions Options) override;
  // A line of no length draws nothing, markers neither; otherwise the cached path, or a plain
  // canvas line, and the markers at its ends.
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
};

class TSVGPolyline : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGPolyline)

public:
  using TSVGGraphicElement::TSVGGraphicElement;

  TSVGElementType SVGType() const override { return etPolyline; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }
  // Around all points; (0, 0, 0, 0) without points.
  TRectF GetBoundsRect() const override;
  TVXGPPath *GetShape() override;

  const TVXPoints &Points() const { return FPoints; }
  // Takes the points and reports a change. Overrides call the base first.
  virtual void SetPoints(const TVXPoints &Value);
  // The points as attribute text, and back; bad text raises as ParsePoints does.
  QString GetPolygon() const;
  void SetPolygon(const QString &Value);

  // The points as one figure, closed or left open; fill mode non-zero; empty without points.
  std::unique_ptr<TVXPathData> CreatePath(bool Closed) const;
  std::unique_ptr<TVXGPPath> CreatePath(TVXGPCanvas &Canvas, bool Closed) const;
  // Draws the points straight onto Canvas under Matrix; nothing without points.
  void DrawPoints(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect, bool Closed);

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  // A path control first receives the geometry into its path data; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  // The shape first; then its markers, and a hit on one reports this element.
  TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                             const TRectF &Rect, TSVGFindOptions Options) override;
  // Only the polyline class itself is open; polygons and any further subclass are closed.
  bool IsClosed() const;

  TVXPoints FPoints;
};

class TSVGPolygon : public TSVGPolyline
{
  VX_SVG_ELEMENT_CLASS(TSVGPolygon)

public:
  using TSVGPolyline::TSVGPolyline;

  TSVGElementType SVGType() const override { return etPolygon; }
  void SetPoints(const TVXPoints &Value) override;
  void Clear() override;
};

} // namespace vx
