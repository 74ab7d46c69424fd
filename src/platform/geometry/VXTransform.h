#pragma once
// Editable positions and the placement transform of a control's picture (offset, scale, rotation).
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXClasses.h"

namespace vx {

// A point that reports its changes.
class VX_EXPORT TVXPosition : public TPersistent
{
public:
  TVXPosition() = default;
  TVXPosition(float X, float Y) : FX(X), FY(Y) {}
  QString ClassName() const override { return QStringLiteral("TVXPosition"); }
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  float X() const { return FX; }
  float Y() const { return FY; }
  void SetX(float Value) { SetPoint({Value, FY}); }
  void SetY(float Value) { SetPoint({FX, Value}); }
  TPointF GetPoint() const { return {FX, FY}; }
  void SetPoint(const TPointF &P);

private:
  float FX = 0, FY = 0;
};

// Scale first, then rotation about RotationCenter, then the offset Position.
class VX_EXPORT TVXTransform : public TPersistent
{
public:
  TVXTransform();
  QString ClassName() const override { return QStringLiteral("TVXTransform"); }
  void Assign(const TPersistent *Source) override;

  // Raised on every change; OnChangeSize also when the scale changes the size of what is shown.
  TNotifyEvent OnChanged;
  TNotifyEvent OnChangeSize;

  TVXPosition &Position() { return FPosition; }
  const TVXPosition &Position() const { return FPosition; }
  TVXPosition &Scale() { return FScale; }
  const TVXPosition &Scale() const { return FScale; }
  TVXPosition &RotationCenter() { return FRotationCenter; }
  const TVXPosition &RotationCenter() const { return FRotationCenter; }
  // Degrees, clockwise on a y-down surface.
  float RotationAngle() const { return FRotationAngle; }
  void SetRotationAngle(float Degrees);

  TMatrix Matrix() const;

private:
  TVXPosition FPosition;
  TVXPosition FScale{1, 1};
  TVXPosition FRotationCenter;
  float FRotationAngle = 0;

  void Changed(bool SizeChanged);
};

} // namespace vx
