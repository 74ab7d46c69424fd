#pragma once
// The faces that controls show to code below the control layer. The library can turn a document
// into a tree of live controls, one per element; the elements fill those controls but may not
// include the widget layer, so they reach a control through these abstract faces, found by
// dynamic_cast on the object they are handed. The control bases over QWidget implement them.
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXComponent.h"

#include <cstdint>

namespace vx {

class TVXGPImage;
class TVXGPBrush;
class TVXGPPen;
class TVXPathData;

// Any control.
class IVXHostControl
{
public:
  virtual ~IVXHostControl() = default;
  // The control as a component: its owner, published properties and design state.
  virtual TComponent &HostComponent() = 0;
  // Whether the control holds child controls of its own (a panel does, a graphic control does not).
  virtual bool IsWindowed() const = 0;
  // The control that holds this one; nil at the top.
  virtual IVXHostControl *HostParent() const = 0;
  virtual void SetVisible(bool Value) = 0;
  virtual void SetCursor(std::int16_t Value) = 0;
  virtual void SetHint(const QString &Value) = 0;
  virtual void SetTag(std::intptr_t Value) = 0;
  // In the parent's pixels; Set rounds each side to the nearest pixel.
  virtual TRectF GetBoundsRect() const = 0;
  virtual void SetBoundsRect(const TRectF &Value) = 0;
};

// A control that paints a shape with a fill and a stroke.
class IVXShapeControl
{
public:
  virtual ~IVXShapeControl() = default;
  virtual void SetOpacity(float Value) = 0;
  virtual void SetClipChildren(bool Value) = 0;
  // Copies of the paints; the pen's thickness is in the parent's pixels.
  virtual void SetFill(const TVXGPBrush &Value) = 0;
  virtual void SetStroke(const TVXGPPen &Value) = 0;
  virtual void SetStrokeThickness(float Value) = 0;
};

// A shape control whose shape is a path.
class IVXPathShapeControl
{
public:
  virtual ~IVXPathShapeControl() = default;
  virtual TVXPathData &PathData() = 0;
  virtual void SetPathData(const TVXPathData &Value) = 0;
  // 0: the path is in the parent's pixels and the control places itself over it; 2: the path is
  // stretched over the control.
  virtual void SetWrapMode(int Value) = 0;
  // 1 non-zero, 0 even-odd.
  virtual void SetFillMode(int Value) = 0;
};

// A control that shows a raster picture.
class IVXImageControl
{
public:
  virtual ~IVXImageControl() = default;
  virtual void SetPicture(const TVXGPImage &Value) = 0;
};

} // namespace vx
