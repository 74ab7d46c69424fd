#include "platform/controls/VXShapeControls.h"

#include "platform/vectorkit/VXGPCanvas.h"
#include "platform/vectorkit/VXGPPath.h"

#include <QPainter>
#include <QPainterPathStroker>
#include <QRegion>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

// The mask reaches this far past the painted area, so that anti-aliased edges are not cut.
constexpr float MaskMargin = 1.5f;

} // namespace

TVXGPShape::TVXGPShape(QWidget *Parent, TComponent *Owner) : TVXCustomTransparentGraphicControl(Parent, Owner) {}

void TVXGPShape::SetOpacity(float Value)
{
  Value = std::clamp(Value, 0.0f, 1.0f);
  if (Value == FOpacity)
    return;
  FOpacity = Value;
  Invalidate();
}

void TVXGPShape::SetFill(const TVXGPBrush &Value)
{
  FFill.Assign(&Value);
  PaintsChanged();
}

void TVXGPShape::SetStroke(const TVXGPPen &Value)
{
  FStroke.Assign(&Value);
  PaintsChanged();
}

void TVXGPShape::SetStrokeThickness(float Value)
{
  FStroke.SetThickness(Value);
  PaintsChanged();
}

void TVXGPShape::Paint(QPainter &Painter)
{
  TVXGPCanvas Canvas(&Painter);
  if (FClipChildren)
    Canvas.IntersectClip(TRectF{0, 0, float(width()), float(height())});
  DrawShape(Canvas);
}

void TVXGPShape::DrawShape(TVXGPCanvas &) {}

void TVXGPShape::FillAndStroke(TVXGPCanvas &Canvas, const TVXGPPath &Path)
{
  if (FFill.GetKind() != bkNone) {
    Canvas.SetBrush(FFill);
    Canvas.FillPath(Path, FOpacity);
  }
  if (FStroke.GetKind() != bkNone && FStroke.GetThickness() > 0) {
    Canvas.SetPen(FStroke);
    Canvas.DrawPath(Path, FOpacity);
  }
}

TVXGPPathShape::TVXGPPathShape(QWidget *Parent, TComponent *Owner) : TVXGPShape(Parent, Owner)
{
  FPathData.OnChange = [this](TVXPathData *) { PathChanged(); };
}

void TVXGPPathShape::SetWrapMode(int Value)
{
  if (Value == FWrapMode)
    return;
  FWrapMode = Value;
  PathChanged();
}

void TVXGPPathShape::SetFillMode(int Value)
{
  FPathData.SetFillMode(Value);
  UpdateMask();
  Invalidate();
}

void TVXGPPathShape::PaintsChanged()
{
  PathChanged();
}

void TVXGPPathShape::PathChanged()
{
  Place();
  Invalidate();
}

void TVXGPPathShape::Resize()
{
  TVXGPShape::Resize();
  if (!FPlacing)
    UpdateMask();
}

TVXGPPath TVXGPPathShape::PaintedPath() const
{
  TVXGPPath Path;
  Path.Assign(FPathData);
  Path.SetFillMode(FPathData.GetFillMode());
  if (FWrapMode == 0) {
    Path.Translate(-float(x()), -float(y()));
  } else {
    const TRectF B = FPathData.GetBounds();
    if (B.Width() > 0 && B.Height() > 0)
      Path.ApplyMatrix(VXMatrixMultiply(CreateTranslateVXMatrix(-B.Left, -B.Top),
                                        CreateScaleVXMatrix(float(width()) / B.Width(), float(height()) / B.Height())));
  }
  return Path;
}

void TVXGPPathShape::Place()
{
  if (FWrapMode == 0 && FPathData.GetCount() > 0) {
    const TRectF B = FPathData.GetBounds();
    const float Pad = (Stroke().GetKind() != bkNone ? Stroke().GetThickness() / 2 : 0) + MaskMargin;
    const int L = int(std::floor(B.Left - Pad)), T = int(std::floor(B.Top - Pad));
    FPlacing = true;
    setGeometry(L, T, std::max(1, int(std::ceil(B.Right + Pad)) - L), std::max(1, int(std::ceil(B.Bottom + Pad)) - T));
    FPlacing = false;
  }
  UpdateMask();
}

void TVXGPPathShape::UpdateMask()
{
  if (FPathData.GetCount() == 0) {
    clearMask();
    return;
  }
  const QPainterPath Painted = PaintedPath().QPath();
  QPainterPathStroker Stroker;
  const bool Stroked = Stroke().GetKind() != bkNone;
  Stroker.setWidth(2 * MaskMargin + (Stroked ? Stroke().GetThickness() : 0));
  Stroker.setJoinStyle(Qt::RoundJoin);
  QPainterPath Area = Stroker.createStroke(Painted);
  if (Fill().GetKind() != bkNone)
    Area = Area.united(Painted);
  QRegion Mask;
  for (const QPolygonF &Part : Area.toFillPolygons())
    Mask += QRegion(Part.toPolygon(), Qt::WindingFill);
  setMask(Mask);
}

void TVXGPPathShape::DrawShape(TVXGPCanvas &Canvas)
{
  FillAndStroke(Canvas, PaintedPath());
}

} // namespace vx
