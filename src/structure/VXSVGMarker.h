#pragma once
// The "marker" element: a viewport container that is never drawn where it stands. Shapes ask it to
// appear at their vertices (structure/VXSVGMarkerPlacement.cpp walks them); it then maps its
// contents onto the vertex, scaled by the stroke width or not, and turned by the direction of the
// path when its orientation is automatic.
//
// A marker whose contents draw, directly or through other markers, the same marker again is not
// drawn (or hit) the second time: the repetition is skipped where it is met, so a loop of markers
// neither hangs nor exhausts the stack.
#include "tree/VXSVGCustomViewBox.h"

#include <memory>

namespace vx {

class TSVGMarker : public TSVGCustomViewBox
{
  VX_SVG_ELEMENT_CLASS(TSVGMarker)

public:
  explicit TSVGMarker(TSVGDocument *Owner);
  ~TSVGMarker() override;

  TSVGElementType SVGType() const override { return etMarker; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }
  bool DoShouldDraw() const override { return false; }
  // Never hit where it stands: its contents are hit only where they are drawn.
  TSVGGraphicElement *ElementAtPos(const TMatrix &, TVXGPCanvas &, const TPointF &, const TRectF &,
                                   TSVGFindOptions) override
  {
    return nullptr;
  }
  using TSVGCustomViewBox::ElementAtPos;
  // A marker takes no room where it stands: it adds nothing to the bounds of its container.
  TRectF GetBoundsRect() const override { return TRectF{}; }
  TRectF GetBoundsRect(const TMatrix &) const override { return TRectF{}; }

  // The point of the contents that lands on the vertex, and the size of the marker's viewport.
  TSVGLength &RefX() const { return *FRefX; }
  TSVGLength &RefY() const { return *FRefY; }
  TSVGLength &MarkerWidth() const { return *FMarkerWidth; }
  TSVGLength &MarkerHeight() const { return *FMarkerHeight; }
  void SetRefX(const TSVGLength &Value) { FRefX->Assign(&Value); }
  void SetRefY(const TSVGLength &Value) { FRefY->Assign(&Value); }
  void SetMarkerWidth(const TSVGLength &Value) { FMarkerWidth->Assign(&Value); }
  void SetMarkerHeight(const TSVGLength &Value) { FMarkerHeight->Assign(&Value); }
  TSVGMarkerUnit Units() const { return FUnits; }
  void SetUnits(TSVGMarkerUnit Value);
  // A fixed "orient" angle in radians. The documented mode reads and writes it back but never
  // draws it: without automatic orientation a marker stands at angle 0. Standard mode draws it.
  float Orientation() const { return FOrientation; }
  void SetOrientation(float Value);
  bool AutomaticOrientation() const { return FAutomaticOrientation; }
  void SetAutomaticOrientation(bool Value);

  // Draws the marker for Element at the start of the segment P1 -> P2 (at P2 for the end), or at
  // the vertex P2 between P1 and P3, facing the path when the orientation is automatic. Nothing is
  // drawn where an automatic direction is undefined (two equal points).
  virtual void DrawStartMarker(TSVGGraphicElement &Element, const TPointF &P1, const TPointF &P2,
                               const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual void DrawMidMarker(TSVGGraphicElement &Element, const TPointF &P1, const TPointF &P2, const TPointF &P3,
                             const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  virtual void DrawEndMarker(TSVGGraphicElement &Element, const TPointF &P1, const TPointF &P2,
                             const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  // Draws the contents at Point turned by Angle (radians), following Element's enabled state; a
  // marker without width or height draws nothing. The canvas pen's thickness is the stroke width
  // that strokeWidth units scale by.
  virtual void Draw(TSVGGraphicElement &Element, const TPointF &Point, float Angle, const TMatrix &Matrix,
                    TVXGPCanvas &Canvas, const TRectF &Rect);
  using TSVGCustomViewBox::Draw;
  // Generates the contents' controls into Control where the Draw...Marker operations draw them.
  void GenerateMarker(TSVGGraphicElement &Element, int Position, const TPointF &P1, const TPointF &P2,
                      const TPointF &P3, IVXHostControl *Control, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                      const TRectF &Rect, const TSVGControlElementEvent &Callback);
  // The same at Point turned by Angle (radians), as Draw places the contents.
  void GenerateMarkerAt(TSVGGraphicElement &Element, const TPointF &Point, float Angle, IVXHostControl *Control,
                        const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                        const TSVGControlElementEvent &Callback);

  // The turn of the marker at a vertex where the path runs at PathAngle (radians), as the standard
  // vertex rules give it: PathAngle when the orientation is automatic (reversed at the start for
  // "auto-start-reverse"), else the fixed angle.
  float TurnAt(float PathAngle, bool AtStart) const;

  // Hit testing of the marker placed as Draw places it: the element of its contents under TestPoint.
  virtual TSVGGraphicElement *MarkerAtPos(const TPointF &Point, float Angle, const TMatrix &Matrix,
                                          TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                          TSVGFindOptions Options);
  virtual TSVGGraphicElement *StartMarkerAtPos(const TPointF &P1, const TPointF &P2, const TMatrix &Matrix,
                                               TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                               TSVGFindOptions Options);
  virtual TSVGGraphicElement *MidMarkerAtPos(const TPointF &P1, const TPointF &P2, const TPointF &P3,
                                             const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &TestPoint,
                                             const TRectF &Rect, TSVGFindOptions Options);
  virtual TSVGGraphicElement *EndMarkerAtPos(const TPointF &P1, const TPointF &P2, const TMatrix &Matrix,
                                             TVXGPCanvas &Canvas, const TPointF &TestPoint, const TRectF &Rect,
                                             TSVGFindOptions Options);

  // Composes into Matrix the placement of the contents at Point turned by Angle (the documented
  // arithmetic, or in standard mode the reference point on the vertex and the contents scaled by
  // the stroke width). Rect comes out as it went in.
  void ConvertToMarkerCoords(const TPointF &Point, float Angle, TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect);
  // The move by Point, the turn by Angle, the move back: a turn about the opposite of Point, which
  // is how it is given the negated reference point.
  static TMatrix CreateAngleTransformation(const TPointF &Point, float Angle);

  void AssignProperties(const TSVGElement *Source) override;
  // Units, sizes and reference point to their defaults; the orientation is left as it is.
  void Clear() override;
  // The shape being marked, while a marker is drawn: the context of context-fill and context-stroke.
  TSVGGraphicElement *PaintContext() const override { return FContext; }

protected:
  // Clips to the marker's viewport: its view box, or its width and height from the origin of its
  // contents.
  void OverflowClipping(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  // A marker without width or height is not drawn at all.
  bool IsCollapsed() const;
  // Standard mode: the reference point lands on the vertex and strokeWidth units scale contents
  // without a view box too. Documented: the marker rectangle stands at the vertex.
  bool PlacesContentsAsBrowsersDo() const;
  // The stroke width for strokeWidth units, else 1.
  double UnitScale(TVXGPCanvas &Canvas) const;
  TMatrix DocumentedPlacement(const TPointF &Point, float Angle, TVXGPCanvas &Canvas) const;
  TMatrix StandardPlacement(const TPointF &Point, float Angle, TVXGPCanvas &Canvas) const;
  // Standard mode draws a fixed "orient" angle; the documented one draws 0.
  bool DrawsFixedAngles() const;
  float FixedAngle() const;
  // The angle of the marker at the start, a vertex or the end; false where an automatic direction
  // is undefined.
  bool StartAngle(const TPointF &P1, const TPointF &P2, float &Angle) const;
  bool MidAngle(const TPointF &P1, const TPointF &P2, const TPointF &P3, float &Angle) const;
  bool EndAngle(const TPointF &P1, const TPointF &P2, float &Angle) const;
  // Standard mode reads "orient" as a CSS angle or "auto-start-reverse"; the documented mode
  // knows "auto" and plain numbers (degrees, or with a separate "rad" or "grad").
  bool ReadsCSSAngles() const;
  void ReadOrientation(const QString &Text);

  std::unique_ptr<TSVGLength> FRefX, FRefY, FMarkerHeight, FMarkerWidth;
  TSVGMarkerUnit FUnits = muStrokeWidth;
  float FOrientation = 0;
  bool FAutomaticOrientation = false;
  // "auto-start-reverse" (standard mode): the start marker faces back along the path.
  bool FReversedAtStart = false;
  TSVGGraphicElement *FContext = nullptr;
};

} // namespace vx
