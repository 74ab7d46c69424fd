// The parts of a shape's path in standard mode. paint-order puts the fill, the stroke and the
// markers in the order the property names them: parts that come after the markers wait until the
// shape has drawn its markers (or, for a shape without any, until its own draw ends), with the
// canvas as it was when the path was painted. A solid stroke under a skew or unequal scales is
// stroked in user space and sheared with the shape; strokes of paint servers keep the device road,
// where their brush is prepared.
#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGGraphicElement.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
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

// Whether Matrix keeps circles circles (turns, mirrors and one scale): only then is a stroke drawn
// in device units the same as one drawn in user units.
bool IsConformal(const TMatrix &M)
{
  const float Tolerance = 1e-4f * (std::abs(M.m11) + std::abs(M.m12) + std::abs(M.m21) + std::abs(M.m22));
  const bool Turn = std::abs(M.m11 - M.m22) <= Tolerance && std::abs(M.m12 + M.m21) <= Tolerance;
  const bool Mirror = std::abs(M.m11 + M.m22) <= Tolerance && std::abs(M.m12 - M.m21) <= Tolerance;
  return Turn || Mirror;
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

void TSVGGraphicElement::PaintPart(const TVXGPPath &Path, TSVGPaintPart Part, const TMatrix &Matrix,
                                   TVXGPCanvas &Canvas)
{
  const float Opacity = GetAbsoluteOpacity();
  if (Part == spFill && Canvas.Brush().GetKind() != bkNone)
    Canvas.FillPath(Path, GetBrush().GetOpacity() * Opacity);
  else if (Part == spStroke && Canvas.Pen().GetKind() == bkSolid && ShearsStrokes() &&
           GetVectorEffect() == veNone && !IsConformal(Matrix))
    StrokeInUserSpace(Path, Matrix, GetPen().GetOpacity() * Opacity, Canvas);
  else if (Part == spStroke && Canvas.Pen().GetKind() != bkNone)
    Canvas.DrawPath(Path, GetPen().GetOpacity() * Opacity);
}

void TSVGGraphicElement::StrokeInUserSpace(const TVXGPPath &Path, const TMatrix &Matrix, float Opacity,
                                           TVXGPCanvas &Canvas)
{
  bool Invertible = false;
  const TMatrix Inverse = VXMatrixInvert(Matrix, &Invertible);
  if (!Invertible)
    return;
  const std::unique_ptr<TVXGPPath> UserPath = Path.Clone(&Canvas);
  UserPath->ApplyMatrix(Inverse);
  TVXGPCanvasStateGuard Guard(Canvas);
  SetCanvasPen(Canvas, VXIdentityMatrix, true);
  Canvas.SetMatrix(VXMatrixMultiply(Matrix, Canvas.GetMatrix()));
  Canvas.DrawPath(*UserPath, Opacity);
}

void TSVGGraphicElement::PaintPathInOrder(std::unique_ptr<TVXGPPath> Path, const TMatrix &Matrix,
                                          TVXGPCanvas &Canvas)
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
      PaintPart(*Path, Part, Matrix, Canvas);
  }
  if (!FDeferredParts[spFill] && !FDeferredParts[spStroke])
    return;
  FDeferredState = Canvas.SaveState();
  FDeferredPath = std::move(Path);
  FDeferredMatrix = Matrix;
}

void TSVGGraphicElement::PaintDeferredParts(TVXGPCanvas &Canvas)
{
  if (!FDeferredPath)
    return;
  const std::unique_ptr<TVXGPPath> Path = std::move(FDeferredPath);
  Canvas.RestoreState(FDeferredState);
  for (const TSVGPaintPart Part : GetPaintOrder())
    if (FDeferredParts[Part])
      PaintPart(*Path, Part, FDeferredMatrix, Canvas);
}

} // namespace vx
