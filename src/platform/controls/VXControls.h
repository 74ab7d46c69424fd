#pragma once
// The control bases over QWidget. A control is a widget and a component at once: Qt parents and
// paints it, the component side gives it an owner, free notification, a design state and published
// properties. TVXCustomTransparentGraphicControl paints no background, so what lies behind shows
// through; TGraphicControl fills its Color first. Paint and mouse handling run inside a guard:
// an exception never reaches the event loop but goes to TControl::ExceptionHandler.
#include "platform/geometry/VXGeometry.h"
#include "platform/rtl/VXComponent.h"
#include "platform/rtl/VXPropInfo.h"
#include "platform/rtl/VXSet.h"
#include "platform/vectorkit/VXGPColor.h"
#include "platform/vectorkit/VXGPControlFaces.h"

#include <QWidget>

#include <cstdint>
#include <functional>

class QPainter;

namespace vx {

// Cursor numbers of the host framework; 0 is the default cursor.
using TCursor = std::int16_t;
inline constexpr TCursor crDefault = 0, crNone = -1, crArrow = -2, crCross = -3, crIBeam = -4, crSizeNESW = -6,
                         crSizeNS = -7, crSizeNWSE = -8, crSizeWE = -9, crUpArrow = -10, crHourGlass = -11,
                         crDrag = -12, crNoDrop = -13, crHSplit = -14, crVSplit = -15, crMultiDrag = -16,
                         crSQLWait = -17, crNo = -18, crAppStart = -19, crHelp = -20, crHandPoint = -21,
                         crSizeAll = -22;
// The Qt shape of a cursor number; unknown numbers give the arrow.
Qt::CursorShape CursorShape(TCursor Cursor);

enum TMouseButton : std::uint8_t { mbLeft, mbRight, mbMiddle };
enum TShiftStateValue : std::uint8_t { ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle, ssDouble };
using TShiftState = TSet<TShiftStateValue, std::uint8_t>;
using TMouseEvent = std::function<void(TObject *Sender, TMouseButton Button, TShiftState Shift, int X, int Y)>;
using TMouseMoveEvent = std::function<void(TObject *Sender, TShiftState Shift, int X, int Y)>;

// Implemented by a parent that places its children under a transform of its own: a child's
// absolute matrix is its own times the parent's.
class IVXMatrixProvider
{
public:
  virtual ~IVXMatrixProvider() = default;
  virtual TMatrix GetAbsoluteMatrix() const = 0;
};

class TControl : public QWidget, public TComponent, public IVXHostControl
{
public:
  explicit TControl(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  ~TControl() override;
  QString ClassName() const override { return QStringLiteral("TControl"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  int Left() const { return x(); }
  int Top() const { return y(); }
  int Width() const { return width(); }
  int Height() const { return height(); }
  void SetLeft(int Value) { move(Value, y()); }
  void SetTop(int Value) { move(x(), Value); }
  void SetWidth(int Value) { resize(Value, height()); }
  void SetHeight(int Value) { resize(width(), Value); }
  void SetBounds(int ALeft, int ATop, int AWidth, int AHeight) { setGeometry(ALeft, ATop, AWidth, AHeight); }
  bool Visible() const { return !isHidden(); }
  void SetVisible(bool Value) override { setVisible(Value); }
  bool Enabled() const { return isEnabled(); }
  void SetEnabled(bool Value) { setEnabled(Value); }
  QString Hint() const { return toolTip(); }
  void SetHint(const QString &Value) override { setToolTip(Value); }
  TCursor Cursor() const { return FCursor; }
  void SetCursor(TCursor Value) override;
  std::intptr_t Tag() const { return FTag; }
  void SetTag(std::intptr_t Value) override { FTag = Value; }
  TComponent &HostComponent() override { return *this; }
  bool IsWindowed() const override { return false; }
  IVXHostControl *HostParent() const override;
  TRectF GetBoundsRect() const override;
  void SetBoundsRect(const TRectF &Value) override;
  bool DesignMode() const { return IsDesigning(); }

  // Asks for a paint at the next turn of the event loop; many requests make one paint.
  void Invalidate() { update(); }

  TNotifyEvent OnClick;
  TNotifyEvent OnResize;
  TMouseEvent OnMouseDown;
  TMouseEvent OnMouseUp;
  TMouseMoveEvent OnMouseMove;

  // Receives the message of an exception that a paint or a mouse handler raised. The default
  // writes it to Qt's warning output.
  static std::function<void(TControl *Sender, const QString &Message)> ExceptionHandler;

protected:
  // Paints the control's content; the painter is on the widget.
  virtual void Paint(QPainter &Painter);
  virtual void Resize();
  virtual void MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y);
  virtual void MouseMove(TShiftState Shift, int X, int Y);
  virtual void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y);
  virtual void Click();
  // Fills the background before Paint; the base leaves it alone.
  virtual void PaintBackground(QPainter &Painter);

  void paintEvent(QPaintEvent *Event) override;
  void resizeEvent(QResizeEvent *Event) override;
  void mousePressEvent(QMouseEvent *Event) override;
  void mouseMoveEvent(QMouseEvent *Event) override;
  void mouseReleaseEvent(QMouseEvent *Event) override;

private:
  template <typename F>
  void Guarded(F &&Handler);

  TCursor FCursor = crDefault;
  std::intptr_t FTag = 0;
};

// A control that paints only what it draws: the parent shows around and through it.
class TVXCustomTransparentGraphicControl : public TControl
{
public:
  explicit TVXCustomTransparentGraphicControl(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  QString ClassName() const override { return QStringLiteral("TVXCustomTransparentGraphicControl"); }
};

// The face colour of controls, the default Color.
inline constexpr TVXGPColor clBtnFace = 0xFFF0F0F0;

// A control that fills its Color before drawing.
class TGraphicControl : public TControl
{
public:
  explicit TGraphicControl(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  QString ClassName() const override { return QStringLiteral("TGraphicControl"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  // Alpha in bits 24 to 31, then red, green, blue.
  TVXGPColor Color() const { return FColor; }
  void SetColor(TVXGPColor Value);

protected:
  void PaintBackground(QPainter &Painter) override;

private:
  TVXGPColor FColor = clBtnFace;
};

} // namespace vx
