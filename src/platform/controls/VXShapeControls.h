#pragma once
// The shape controls of the drawing layer: TVXGPShape paints a shape with a fill and a stroke at an
// opacity; TVXGPPathShape's shape is a path. A path shape in wrap mode 0 holds its path in the
// parent's pixels and keeps itself placed over it (the stroke included), so a tree of shapes laid
// out in one coordinate system needs no placement of its own; its mask follows the painted area,
// so a click between the parts of a shape reaches what lies behind. In wrap mode 2 the path is
// stretched over the control, wherever the control is placed.
#include "platform/controls/VXControls.h"
#include "platform/geometry/VXPathData.h"
#include "platform/vectorkit/VXGPPaint.h"

namespace vx {

class TVXGPCanvas;
class TVXGPPath;

class TVXGPShape : public TVXCustomTransparentGraphicControl, public IVXShapeControl
{
public:
  explicit TVXGPShape(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  QString ClassName() const override { return QStringLiteral("TVXGPShape"); }

  float Opacity() const { return FOpacity; }
  void SetOpacity(float Value) override;
  // Whether what the shape paints is cut at its bounds; the generated controls turn it off.
  bool ClipChildren() const { return FClipChildren; }
  void SetClipChildren(bool Value) override { FClipChildren = Value; }
  const TVXGPBrush &Fill() const { return FFill; }
  void SetFill(const TVXGPBrush &Value) override;
  const TVXGPPen &Stroke() const { return FStroke; }
  void SetStroke(const TVXGPPen &Value) override;
  void SetStrokeThickness(float Value) override;

protected:
  void Paint(QPainter &Painter) override;
  // Paints the shape; the canvas's origin is the control's top left. The base paints nothing.
  virtual void DrawShape(TVXGPCanvas &Canvas);
  // Fills and then strokes Path at the control's opacity; a stroke of kind none is left out.
  void FillAndStroke(TVXGPCanvas &Canvas, const TVXGPPath &Path);
  // A change of the paints; a path shape places itself anew for the width of the stroke.
  virtual void PaintsChanged() { Invalidate(); }

private:
  TVXGPBrush FFill;
  TVXGPPen FStroke;
  float FOpacity = 1;
  bool FClipChildren = true;
};

class TVXGPPathShape : public TVXGPShape, public IVXPathShapeControl
{
public:
  explicit TVXGPPathShape(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  QString ClassName() const override { return QStringLiteral("TVXGPPathShape"); }

  // Changes made through the reference place and repaint the control as SetPathData does.
  TVXPathData &PathData() override { return FPathData; }
  const TVXPathData &PathData() const { return FPathData; }
  void SetPathData(const TVXPathData &Value) override { FPathData.Assign(Value); }
  int WrapMode() const { return FWrapMode; }
  void SetWrapMode(int Value) override;
  int FillMode() const { return FPathData.GetFillMode(); }
  void SetFillMode(int Value) override;

  // The path as painted, in the control's pixels.
  TVXGPPath PaintedPath() const;

protected:
  void DrawShape(TVXGPCanvas &Canvas) override;
  void PaintsChanged() override;
  void Resize() override;

private:
  void PathChanged();
  // Wrap mode 0: moves the control over the path and its stroke. Both modes: the mask.
  void Place();
  void UpdateMask();

  TVXPathData FPathData;
  int FWrapMode = 0;
  bool FPlacing = false;
};

} // namespace vx
