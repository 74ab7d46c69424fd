#include "shapes/VXSVGPath.h"

#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGNumbers.h"

#include <algorithm>
#include <cmath>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGPath)

namespace {

const TSVGClassRegistration PathRegistration(etPath, TSVGPath::ClassInfo());

} // namespace

TSVGPath::TSVGPath(TSVGDocument *Owner) : TSVGGraphicElement(Owner)
{
  // A change of the data reaches the element and its shape cache like a change of its paints.
  FData.OnChange = [this](TVXPathData *) {
    FSourceText.clear();
    PropagateObjectPropChange(nullptr);
  };
}

TRectF TSVGPath::GetBoundsRect() const
{
  return FData.GetBounds();
}

TVXGPPath *TSVGPath::GetShape()
{
  if (FShapeCacheChanged) {
    FShape.Clear();
    FShape.Assign(FData);
  }
  return TSVGGraphicElement::GetShape();
}

void TSVGPath::SetData(const TVXPathData &Value)
{
  FData.Assign(Value);
}

double TSVGPath::GetPathLength()
{
  if (FPathLength == -1.0)
    FPathLength = FData.GetLength();
  return FPathLength;
}

double TSVGPath::GetLengthRatio()
{
  const double Length = FData.GetLength();
  return Length == 0.0 ? 0.0 : GetPathLength() / Length;
}

void TSVGPath::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Path = dynamic_cast<const TSVGPath *>(Source)) {
    SetData(Path->FData);
    FSourceText = Path->FSourceText;
  }
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGPath::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGGraphicElement::Clear();
  FData.Clear();
  FPathLength = -1.0;
}

void TSVGPath::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  const QString Text = ParseAttrString(Node, QStringLiteral("d"));
  FData.SetPathString(Text);
  FSourceText = Text;
  bool IsInherited = false;
  FPathLength = ParseNumber(ParseAttrString(Node, QStringLiteral("pathLength")), -1.0f, IsInherited);
}

bool TSVGPath::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (FData.GetCount() == 0)
    return false;
  if (!TSVGGraphicElement::DoInternalDraw(Matrix, Canvas, Rect))
    DrawPath(FData, Matrix, Canvas, Rect);
  DrawMarkers(FData, Matrix, Canvas, Rect);
  return true;
}

} // namespace vx

namespace vx {

bool TSVGPath::WritesSourceText() const
{
  if (FSourceText.isEmpty())
    return false;
  if (FSourceText.contains(u'a') || FSourceText.contains(u'A'))
    return true;
  const auto &Points = FData.Points();
  return std::any_of(Points.begin(), Points.end(),
                     [](const TVXPathPoint &P) { return !std::isfinite(P.Point.X) || !std::isfinite(P.Point.Y); });
}

void TSVGPath::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  if (FData.GetCount() > 0) {
    if (GetOwner())
      FData.SetFormatStr(GetOwner()->FormatStr());
    SaveAttrString(Node, QStringLiteral("d"), WritesSourceText() ? FSourceText : FData.GetPathString(), false, true);
  }
  if (FPathLength != -1.0)
    SaveAttrString(Node, QStringLiteral("pathLength"), FormatFloat(FData.GetFormatStr(), FPathLength), false, true);
}

} // namespace vx

namespace vx {

TSVGGraphicElement *TSVGPath::DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                                     const TRectF &Rect, TSVGFindOptions Options)
{
  if (TSVGGraphicElement *Found = TSVGGraphicElement::DoInternalElementAtPos(Matrix, Canvas, Point, Rect, Options))
    return Found;
  const TVXGPPath *Shape = GetShape();
  if (!Shape || Shape->Count() == 0 || !MarkersAtPos(FData, Matrix, Canvas, Point, Rect, Options))
    return nullptr;
  return DoOnElementFound(this);
}

} // namespace vx
