#include "platform/vectorkit/VXGPImageList.h"

#include "platform/vectorkit/VXGPBitmap.h"

#include <QPainter>

namespace vx {

TVXCustomImageList::TVXCustomImageList(int Width, int Height) : FWidth(Width), FHeight(Height)
{
  VXCheckBitmapSize(Width, Height);
}

void TVXCustomImageList::SetWidth(int Value)
{
  SetSize(Value, FHeight);
}

void TVXCustomImageList::SetHeight(int Value)
{
  SetSize(FWidth, Value);
}

// Images of the old size mean nothing at the new one: the list empties, as the host's lists do.
void TVXCustomImageList::SetSize(int Width, int Height)
{
  if (Width == FWidth && Height == FHeight)
    return;
  VXCheckBitmapSize(Width, Height);
  FWidth = Width;
  FHeight = Height;
  FImages.clear();
  Change();
}

int TVXCustomImageList::Add(const QImage &Image)
{
  FImages.push_back(Fitted(Image));
  Change();
  return Count() - 1;
}

void TVXCustomImageList::Replace(int Index, const QImage &Image)
{
  CheckIndex(Index);
  FImages[Index] = Fitted(Image);
  Change();
}

void TVXCustomImageList::Delete(int Index)
{
  CheckIndex(Index);
  FImages.erase(FImages.begin() + Index);
  Change();
}

void TVXCustomImageList::Clear()
{
  if (FImages.empty())
    return;
  FImages.clear();
  Change();
}

void TVXCustomImageList::BeginUpdate()
{
  ++FUpdateCount;
}

void TVXCustomImageList::EndUpdate()
{
  if (FUpdateCount > 0 && --FUpdateCount == 0 && FChanged)
    Change();
}

QImage TVXCustomImageList::GetImage(int Index) const
{
  CheckIndex(Index);
  return FImages[Index];
}

void TVXCustomImageList::Draw(QPainter &Painter, int X, int Y, int Index, bool Enabled)
{
  CheckIndex(Index);
  DoDraw(Index, Painter, X, Y, Enabled);
}

QPixmap TVXCustomImageList::GetPixmap(int Index, const QSize &Size)
{
  const QImage Image = GetImage(Index);
  if (Size.isEmpty() || Size == Image.size())
    return QPixmap::fromImage(Image);
  return QPixmap::fromImage(Image.scaled(Size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

QIcon TVXCustomImageList::GetIcon(int Index)
{
  return QIcon(GetPixmap(Index, QSize()));
}

void TVXCustomImageList::DoDraw(int Index, QPainter &Painter, int X, int Y, bool Enabled)
{
  const qreal Opacity = Painter.opacity();
  if (!Enabled)
    Painter.setOpacity(Opacity * 0.5);
  Painter.drawImage(X, Y, FImages[Index]);
  Painter.setOpacity(Opacity);
}

void TVXCustomImageList::Change()
{
  if (FUpdateCount > 0) {
    FChanged = true;
    return;
  }
  FChanged = false;
  if (OnChange)
    OnChange(this);
}

void TVXCustomImageList::CheckIndex(int Index) const
{
  if (Index < 0 || Index >= Count())
    throw EArgumentOutOfRangeException(QStringLiteral("Image index %1 out of range (0 to %2)").arg(Index).arg(Count() - 1));
}

QImage TVXCustomImageList::Fitted(const QImage &Image) const
{
  const QImage Premultiplied = Image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  if (Image.size() == QSize(FWidth, FHeight))
    return Premultiplied;
  return Premultiplied.scaled(FWidth, FHeight, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace vx
