// paint-order in standard mode: the fill, the stroke and the markers of a shape in the order the
// property names them. Parts that come after the markers wait until the shape has drawn its
// markers (or, for a shape without any, until its own draw ends), with the canvas as it was when
// the path was painted.
#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGGraphicElement.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace vx {

namespace {

const QString PaintOrderName = QStringLiteral("paint-order");
constexpr TSVGPaintOrder NormalPaintOrder = {spFill, spStroke, spMarkers};

// "normal", or up to three distinct parts; those not named follow in the normal order. False for
// anything else, which leaves the inherited order in force.
bool ParsePaintOrder(const QString &Text, TSVGPaintOrder &Order)
{
  const QStringList Words = Trim(Text).split(u' ', Qt::SkipEmptyParts);
  if (Words.size() == 1 && Words[0] == QLatin1String("normal")) {
    Order = NormalPaintOrder;
    return true;
  }
  if (Words.isEmpty() || Words.size() > 3)
    return false;
  std::vector<TSVGPaintPart> Named;
  for (const QString &Word : Words) {
    TSVGPaintPart Part;
    if (Word == QLatin1String("fill"))
      Part = spFill;
    else if (Word == QLatin1String("stroke"))
      Part = spStroke;
    else if (Word == QLatin1String("markers"))
      Part = spMarkers;
    else
      return false;
    if (std::find(Named.begin(), Named.end(), Part) != Named.end())
      return false;
    Named.push_back(Part);
  }
  for (const TSVGPaintPart Part : NormalPaintOrder)
    if (std::find(Named.begin(), Named.end(), Part) == Named.end())
      Named.push_back(Part);
  std::copy(Named.begin(), Named.end(), Order.begin());
  return true;
}

} // namespace

void TSVGGraphicElement::ApplyPaintOrderStyle(const TSVGStyle &Style)
{
  const QString Value = Style.Values(PaintOrderName);
  if (!Value.isEmpty())
    FPaintOrder = Value;
}

TSVGPaintOrder TSVGGraphicElement::GetPaintOrder() const
{
  TSVGPaintOrder Order = NormalPaintOrder;
  for (const TSVGGraphicElement *Element = this; Element; Element = Element->GetGraphicParent())
    if (!Element->FPaintOrder.isEmpty() && ParsePaintOrder(Element->FPaintOrder, Order))
      return Order;
  return NormalPaintOrder;
}

void TSVGGraphicElement::PaintPart(const TVXGPPath &Path, TSVGPaintPart Part, TVXGPCanvas &Canvas)
{
  const float Opacity = GetAbsoluteOpacity();
  if (Part == spFill && Canvas.Brush().GetKind() != bkNone)
    Canvas.FillPath(Path, GetBrush().GetOpacity() * Opacity);
  else if (Part == spStroke && Canvas.Pen().GetKind() != bkNone)
    Canvas.DrawPath(Path, GetPen().GetOpacity() * Opacity);
}

void TSVGGraphicElement::PaintPathInOrder(std::unique_ptr<TVXGPPath> Path, TVXGPCanvas &Canvas)
{
  PaintDeferredParts(Canvas);
  const TSVGPaintOrder Order = GetPaintOrder();
  bool AfterMarkers = false;
  FDeferredParts = {};
  for (const TSVGPaintPart Part : Order) {
    if (Part == spMarkers)
      AfterMarkers = true;
    else if (AfterMarkers)
      FDeferredParts[Part] = true;
    else
      PaintPart(*Path, Part, Canvas);
  }
  if (!FDeferredParts[spFill] && !FDeferredParts[spStroke])
    return;
  FDeferredState = Canvas.SaveState();
  FDeferredPath = std::move(Path);
}

void TSVGGraphicElement::PaintDeferredParts(TVXGPCanvas &Canvas)
{
  if (!FDeferredPath)
    return;
  const std::unique_ptr<TVXGPPath> Path = std::move(FDeferredPath);
  Canvas.RestoreState(FDeferredState);
  for (const TSVGPaintPart Part : GetPaintOrder())
    if (FDeferredParts[Part])
      PaintPart(*Path, Part, Canvas);
}

} // namespace vx
