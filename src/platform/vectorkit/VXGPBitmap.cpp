#include "platform/vectorkit/VXGPBitmap.h"

#include "platform/vectorkit/VXGPCanvas.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>

namespace vx {

void VXCheckBitmapSize(int Width, int Height)
{
  if (Width < 0 || Height < 0 || Width > VXMaxBitmapSide || Height > VXMaxBitmapSide
      || std::int64_t(Width) * Height > VXMaxBitmapPixels)
    throw EInvalidGraphicOperation(
      QStringLiteral("Bitmap size %1 x %2 is out of range (at most %3 pixels on a side and %4 in all)")
        .arg(Width)
        .arg(Height)
        .arg(VXMaxBitmapSide)
        .arg(VXMaxBitmapPixels));
}

// --- image -------------------------------------------------------------------------------------

TVXGPImage::~TVXGPImage() = default;

void TVXGPImage::Assign(const TPersistent *Source)
{
  if (auto *I = dynamic_cast<const TVXGPImage *>(Source)) {
    if (I != this)
      SetImage(I->FImage);
    return;
  }
  TPersistent::Assign(Source);
}

void TVXGPImage::LoadFromFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File.errorString()));
  LoadFromStream(File);
}

void TVXGPImage::LoadFromStream(QIODevice &Stream)
{
  QImageReader Reader(&Stream);
  // The size is checked before any pixel is decoded.
  const QSize Size = Reader.size();
  if (Size.isValid())
    VXCheckBitmapSize(Size.width(), Size.height());
  QImage Image;
  if (!Reader.read(&Image))
    throw EReadError(QStringLiteral("Cannot read image: %1").arg(Reader.errorString()));
  SetImage(Image);
}

void TVXGPImage::SaveToStream(QIODevice &Stream, const char *Encoder) const
{
  QImageWriter Writer(&Stream, QByteArray(Encoder));
  if (!Writer.write(FImage))
    throw EWriteError(QStringLiteral("Cannot write image: %1").arg(Writer.errorString()));
}

void TVXGPImage::SaveToFile(const QString &FileName, const char *Encoder) const
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly))
    throw EFOpenError(QStringLiteral("Cannot create file \"%1\". %2").arg(FileName, File.errorString()));
  SaveToStream(File, Encoder);
}

void TVXGPImage::SetImage(const QImage &Image)
{
  VXCheckBitmapSize(Image.width(), Image.height());
  ReleaseCanvas();
  // A deep copy: the source may be the target of another canvas that is still drawing.
  FImage = Image.isNull() ? QImage() : Image.convertToFormat(QImage::Format_ARGB32_Premultiplied).copy();
  Change();
}

void TVXGPImage::Change()
{
  if (OnChange)
    OnChange(this);
}

// --- bitmap ------------------------------------------------------------------------------------

TVXGPBitmap::TVXGPBitmap(int Width, int Height)
{
  SetSize(Width, Height);
}

TVXGPBitmap::~TVXGPBitmap()
{
  ReleaseCanvas();
}

void TVXGPBitmap::SetSize(int Width, int Height)
{
  VXCheckBitmapSize(Width, Height);
  if (FImage.width() == Width && FImage.height() == Height)
    return;
  ReleaseCanvas();
  if (Width == 0 || Height == 0) {
    FImage = QImage();
  } else {
    FImage = QImage(Width, Height, QImage::Format_ARGB32_Premultiplied);
    if (FImage.isNull())
      throw EInvalidGraphicOperation(QStringLiteral("Out of memory for a bitmap of %1 x %2").arg(Width).arg(Height));
    FImage.fill(Qt::transparent);
  }
  Change();
}

TVXGPCanvas &TVXGPBitmap::GetCanvas()
{
  // A bitmap without pixels draws into a scratch pixel, so that callers need no special case.
  if (!FCanvas) {
    if (FImage.isNull() && FScratch.isNull())
      FScratch = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
    FCanvas = std::make_unique<TVXGPCanvas>(FImage.isNull() ? &FScratch : &FImage);
  }
  return *FCanvas;
}

void TVXGPBitmap::ReleaseCanvas() const
{
  FCanvas.reset();
}

} // namespace vx
