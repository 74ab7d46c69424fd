#include "platform/controls/VXControls.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtGlobal>

#include <array>
#include <cmath>
#include <exception>
#include <utility>

namespace vx {

namespace {

struct TCursorShape
{
  TCursor Cursor;
  Qt::CursorShape Shape;
};

constexpr std::array<TCursorShape, 22> CursorShapes = {{
  {crDefault, Qt::ArrowCursor},      {crNone, Qt::BlankCursor},         {crArrow, Qt::ArrowCursor},
  {crCross, Qt::CrossCursor},        {crIBeam, Qt::IBeamCursor},        {crSizeNESW, Qt::SizeBDiagCursor},
  {crSizeNS, Qt::SizeVerCursor},     {crSizeNWSE, Qt::SizeFDiagCursor}, {crSizeWE, Qt::SizeHorCursor},
  {crUpArrow, Qt::UpArrowCursor},    {crHourGlass, Qt::WaitCursor},     {crDrag, Qt::DragMoveCursor},
  {crNoDrop, Qt::ForbiddenCursor},   {crHSplit, Qt::SplitHCursor},      {crVSplit, Qt::SplitVCursor},
  {crMultiDrag, Qt::DragCopyCursor}, {crSQLWait, Qt::BusyCursor},       {crNo, Qt::ForbiddenCursor},
  {crAppStart, Qt::BusyCursor},      {crHelp, Qt::WhatsThisCursor},     {crHandPoint, Qt::PointingHandCursor},
  {crSizeAll, Qt::SizeAllCursor},
}};

TShiftState ShiftOf(const QMouseEvent &Event)
{
  TShiftState Shift;
  const Qt::KeyboardModifiers Keys = Event.modifiers();
  const Qt::MouseButtons Buttons = Event.buttons() | Event.button();
  const std::pair<bool, TShiftStateValue> Flags[] = {
    {Keys.testFlag(Qt::ShiftModifier), ssShift},     {Keys.testFlag(Qt::AltModifier), ssAlt},
    {Keys.testFlag(Qt::ControlModifier), ssCtrl},    {Buttons.testFlag(Qt::LeftButton), ssLeft},
    {Buttons.testFlag(Qt::RightButton), ssRight},    {Buttons.testFlag(Qt::MiddleButton), ssMiddle},
    {Event.type() == QEvent::MouseButtonDblClick, ssDouble},
  };
  for (const auto &[On, Value] : Flags)
    if (On)
      Shift.Include(Value);
  return Shift;
}

// False for buttons the host framework does not know (back, forward ...).
bool ButtonOf(const QMouseEvent &Event, TMouseButton &Button)
{
  switch (Event.button()) {
  case Qt::LeftButton: Button = mbLeft; return true;
  case Qt::RightButton: Button = mbRight; return true;
  case Qt::MiddleButton: Button = mbMiddle; return true;
  default: return false;
  }
}

} // namespace

Qt::CursorShape CursorShape(TCursor Cursor)
{
  for (const TCursorShape &Row : CursorShapes)
    if (Row.Cursor == Cursor)
      return Row.Shape;
  return Qt::ArrowCursor;
}

std::function<void(TControl *, const QString &)> TControl::ExceptionHandler = [](TControl *Sender,
                                                                                 const QString &Message) {
  qWarning("%s: %s", qUtf8Printable(Sender->ClassName()), qUtf8Printable(Message));
};

TControl::TControl(QWidget *Parent, TComponent *Owner) : QWidget(Parent), TComponent(Owner) {}

TControl::~TControl()
{
  Destroying();
}

const TPropertyTable &TControl::Properties()
{
  static const TPropertyTable Table(&TComponent::Properties(), {
    PublishedValue<TControl>(QStringLiteral("Left"), tkInteger, QStringLiteral("Integer"), &TControl::Left,
                             &TControl::SetLeft),
    PublishedValue<TControl>(QStringLiteral("Top"), tkInteger, QStringLiteral("Integer"), &TControl::Top,
                             &TControl::SetTop),
    PublishedValue<TControl>(QStringLiteral("Width"), tkInteger, QStringLiteral("Integer"), &TControl::Width,
                             &TControl::SetWidth),
    PublishedValue<TControl>(QStringLiteral("Height"), tkInteger, QStringLiteral("Integer"), &TControl::Height,
                             &TControl::SetHeight),
    PublishedValue<TControl>(QStringLiteral("Visible"), tkBoolean, QStringLiteral("Boolean"), &TControl::Visible,
                             &TControl::SetVisible, StoredUnless<TControl>(&TControl::Visible, true)),
    PublishedValue<TControl>(QStringLiteral("Enabled"), tkBoolean, QStringLiteral("Boolean"), &TControl::Enabled,
                             &TControl::SetEnabled, StoredUnless<TControl>(&TControl::Enabled, true)),
    PublishedValue<TControl>(QStringLiteral("Hint"), tkString, QStringLiteral("string"), &TControl::Hint,
                             &TControl::SetHint, StoredUnless<TControl>(&TControl::Hint, QString())),
    PublishedValue<TControl>(QStringLiteral("Cursor"), tkInteger, QStringLiteral("TCursor"), &TControl::Cursor,
                             &TControl::SetCursor, StoredUnless<TControl>(&TControl::Cursor, crDefault)),
  });
  return Table;
}

void TControl::SetCursor(TCursor Value)
{
  FCursor = Value;
  if (Value == crDefault)
    unsetCursor();
  else
    setCursor(CursorShape(Value));
}

IVXHostControl *TControl::HostParent() const
{
  return dynamic_cast<TControl *>(parentWidget());
}

TRectF TControl::GetBoundsRect() const
{
  return TRectF{float(x()), float(y()), float(x() + width()), float(y() + height())};
}

void TControl::SetBoundsRect(const TRectF &Value)
{
  const int L = int(std::lround(Value.Left)), T = int(std::lround(Value.Top));
  SetBounds(L, T, int(std::lround(Value.Right)) - L, int(std::lround(Value.Bottom)) - T);
}

template <typename F>
void TControl::Guarded(F &&Handler)
{
  try {
    Handler();
  } catch (const std::exception &Error) {
    if (ExceptionHandler)
      ExceptionHandler(this, QString::fromUtf8(Error.what()));
  } catch (...) {
    if (ExceptionHandler)
      ExceptionHandler(this, QStringLiteral("unknown exception"));
  }
}

void TControl::Paint(QPainter &) {}
void TControl::PaintBackground(QPainter &) {}

void TControl::Resize()
{
  if (OnResize)
    OnResize(this);
}

void TControl::MouseDown(TMouseButton Button, TShiftState Shift, int X, int Y)
{
  if (OnMouseDown)
    OnMouseDown(this, Button, Shift, X, Y);
}

void TControl::MouseMove(TShiftState Shift, int X, int Y)
{
  if (OnMouseMove)
    OnMouseMove(this, Shift, X, Y);
}

void TControl::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y)
{
  if (OnMouseUp)
    OnMouseUp(this, Button, Shift, X, Y);
}

void TControl::Click()
{
  if (OnClick)
    OnClick(this);
}

void TControl::paintEvent(QPaintEvent *)
{
  Guarded([this] {
    QPainter Painter(this);
    PaintBackground(Painter);
    Paint(Painter);
  });
}

void TControl::resizeEvent(QResizeEvent *)
{
  Guarded([this] { Resize(); });
}

void TControl::mousePressEvent(QMouseEvent *Event)
{
  TMouseButton Button;
  if (ButtonOf(*Event, Button))
    Guarded([&] { MouseDown(Button, ShiftOf(*Event), Event->position().toPoint().x(), Event->position().toPoint().y()); });
}

void TControl::mouseMoveEvent(QMouseEvent *Event)
{
  Guarded([&] { MouseMove(ShiftOf(*Event), Event->position().toPoint().x(), Event->position().toPoint().y()); });
}

void TControl::mouseReleaseEvent(QMouseEvent *Event)
{
  TMouseButton Button;
  if (!ButtonOf(*Event, Button))
    return;
  const QPoint P = Event->position().toPoint();
  Guarded([&] {
    if (Button == mbLeft && rect().contains(P))
      Click();
    MouseUp(Button, ShiftOf(*Event), P.x(), P.y());
  });
}

TVXCustomTransparentGraphicControl::TVXCustomTransparentGraphicControl(QWidget *Parent, TComponent *Owner)
    : TControl(Parent, Owner)
{
}

TGraphicControl::TGraphicControl(QWidget *Parent, TComponent *Owner) : TControl(Parent, Owner)
{
  setAttribute(Qt::WA_OpaquePaintEvent, VXColorAlpha(FColor) == 255);
}

const TPropertyTable &TGraphicControl::Properties()
{
  static const TPropertyTable Table(&TControl::Properties(), {
    PublishedValue<TGraphicControl>(QStringLiteral("Color"), tkInteger, QStringLiteral("TColor"),
                                    &TGraphicControl::Color, &TGraphicControl::SetColor,
                                    StoredUnless<TGraphicControl>(&TGraphicControl::Color, clBtnFace)),
  });
  return Table;
}

void TGraphicControl::SetColor(TVXGPColor Value)
{
  if (Value == FColor)
    return;
  FColor = Value;
  setAttribute(Qt::WA_OpaquePaintEvent, VXColorAlpha(FColor) == 255);
  Invalidate();
}

void TGraphicControl::PaintBackground(QPainter &Painter)
{
  Painter.setCompositionMode(QPainter::CompositionMode_Source);
  Painter.fillRect(rect(), QColor::fromRgba(FColor));
  Painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

} // namespace vx
