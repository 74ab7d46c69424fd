#pragma once
// The windowed controls and the image control of the host framework. A windowed control holds
// child controls of its own; a graphic control (TControl, TGraphicControl) is drawn on its parent
// and holds none, so code that builds trees of controls places the children of a graphic control
// beside it, in the nearest windowed ancestor.
#include "platform/controls/VXControls.h"

#include <QImage>

namespace vx {

class TWinControl : public TControl
{
public:
  using TControl::TControl;
  QString ClassName() const override { return QStringLiteral("TWinControl"); }
  bool IsWindowed() const override { return true; }
};

// A windowed control that fills its Color: the host of other controls.
class TCustomPanel : public TWinControl
{
public:
  explicit TCustomPanel(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  QString ClassName() const override { return QStringLiteral("TCustomPanel"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  TVXGPColor Color() const { return FColor; }
  void SetColor(TVXGPColor Value);

protected:
  void PaintBackground(QPainter &Painter) override;

private:
  TVXGPColor FColor = clBtnFace;
};

// Shows a picture stretched over the control; transparent where the picture is.
class TImage : public TControl, public IVXImageControl
{
public:
  using TControl::TControl;
  QString ClassName() const override { return QStringLiteral("TImage"); }

  const QImage &Picture() const { return FPicture; }
  void SetPicture(const QImage &Value);
  void SetPicture(const TVXGPImage &Value) override;

protected:
  void Paint(QPainter &Painter) override;

private:
  QImage FPicture;
};

} // namespace vx
