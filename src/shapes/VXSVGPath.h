#pragma once
// TSVGPath, the "path" element: it owns one TVXPathData, which parses and prints the "d" text,
// flattens curves and measures lengths. The element adds the cached shape, drawing and the length
// ratio that "pathLength" asks for.
#include "platform/geometry/VXPathData.h"
#include "tree/VXSVGGraphicElement.h"

namespace vx {

class TSVGPath : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TSVGPath)

public:
  explicit TSVGPath(TSVGDocument *Owner);

  TSVGElementType SVGType() const override { return etPath; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGDescriptiveElements; }
  // The bounds of the path's points.
  TRectF GetBoundsRect() const override;
  TVXGPPath *GetShape() override;

  const TVXPathData &Data() const { return FData; }
  // Copies Value; the element never takes over what it is given.
  void SetData(const TVXPathData &Value);

  // The author's length of the path; without "pathLength" the measured length, which then stays
  // for good, also through later changes of the data.
  double GetPathLength();
  // The author's length over the measured one; 0 for a path of no length.
  double GetLengthRatio();

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  // A path control first receives the geometry into its path data; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  void DoLoadFromXML(const IXMLNode &Node) override;
  // Writes "d" (when there are points) and a measured or given "pathLength".
  void DoSaveToXML(const IXMLNode &Node) override;
  // Nothing without points; otherwise the cached path, or the data itself when that is empty, and
  // then the markers.
  bool DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  // The shape first; then its markers, and a hit on one reports this element.
  TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                             const TRectF &Rect, TSVGFindOptions Options) override;

  TVXPathData FData;
  // -1 while no length was given or measured.
  double FPathLength = -1.0;

private:
  // Whether the "d" text as read is written back instead of the printed form of the data: only
  // while the data is unchanged since it was read, and when the text holds an arc (printed, each
  // becomes up to four curves: a long path would grow several times, past what the XML parser
  // reads) or the data holds a number that is not finite (which would not read again).
  bool WritesSourceText() const;

  // The "d" text as read; emptied by any change of the data.
  QString FSourceText;
};

} // namespace vx
