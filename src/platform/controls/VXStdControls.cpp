#include "platform/controls/VXStdControls.h"

#include "platform/vectorkit/VXGPBitmap.h"

#include <QPainter>

namespace vx {

TCustomPanel::TCustomPanel(QWidget *Parent, TComponent *Owner) : TWinControl(Parent, Owner)
{
  setAttribute(Qt::WA_OpaquePaintEvent, true);
}

const TPropertyTable &TCustomPanel::Properties()
{
  static const TPropertyTable Table(&TControl::Properties(), {
    PublishedValue<TCustomPanel>(QStringLiteral("Color"), tkInteger, QStringLiteral("TColor"), &TCustomPanel::Color,
                                 &TCustomPanel::SetColor, StoredUnless<TCustomPanel>(&TCustomPanel::Color, clBtnFace)),
  });
  return Table;
}

void TCustomPanel::SetColor(TVXGPColor Value)
{
  if (Value == FColor)
    return;
  FColor = Value;
  setAttribute(Qt::WA_OpaquePaintEvent, VXColorAlpha(FColor) == 255);
  Invalidate();
}

void TCustomPanel::PaintBackground(QPainter &Painter)
{
  Painter.setCompositionMode(QPainter::CompositionMode_Source);
  Painter.fillRect(rect(), QColor::fromRgba(FColor));
  Painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void TImage::SetPicture(const QImage &Value)
{
  FPicture = Value;
  Invalidate();
}

void TImage::SetPicture(const TVXGPImage &Value)
{
  SetPicture(Value.Image());
}

void TImage::Paint(QPainter &Painter)
{
  if (!FPicture.isNull())
    Painter.drawImage(rect(), FPicture);
}

} // namespace vx
