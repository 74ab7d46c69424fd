#include "raster/VXSVGImageFile.h"

#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGCompressed.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGException.h"

#include <QBuffer>
#include <QPainter>
#include <QtMath>

#include <cmath>
#include <limits>

namespace vx {

namespace {

const QByteArray ClassNameMark = QByteArrayLiteral("TSVGImageFile");

// Whole pixels, halves to even as the host framework rounds; nonsense sizes give 0.
int RoundSize(float Value)
{
  if (!std::isfinite(Value) || Value <= 0)
    return 0;
  if (Value >= float(std::numeric_limits<int>::max()))
    return std::numeric_limits<int>::max();
  return int(std::nearbyint(Value));
}

QByteArray PictureData(QIODevice &Stream)
{
  QByteArray Data = Stream.read(SVGMaxInflatedSize + 1);
  if (Data.size() > SVGMaxInflatedSize)
    throw EReadError(QStringLiteral("SVG data larger than %1 bytes").arg(SVGMaxInflatedSize));
  const qsizetype Mark = Data.indexOf(ClassNameMark);
  if (Mark >= 0)
    Data.remove(0, Mark + ClassNameMark.size());
  if (IsGzipData(Data))
    Data = InflateGzip(Data);
  return Data;
}

// Registered while the library is loaded.
struct TImageFileRegistration
{
  TImageFileRegistration()
  {
    TPicture::RegisterFileFormat(QStringLiteral("svg"), sSVGImageFile, QStringLiteral("TSVGImageFile"),
                                 [] { return std::make_unique<TSVGImageFile>(); });
  }
  ~TImageFileRegistration() { TPicture::UnregisterGraphicClass(QStringLiteral("TSVGImageFile")); }
} ImageFileRegistration;

} // namespace

TSVGSharedImage::TSVGSharedImage() = default;
TSVGSharedImage::~TSVGSharedImage() = default;

TSVGImageFile::TSVGImageFile() : FImage(std::make_shared<TSVGSharedImage>()) {}

TSVGImageFile::~TSVGImageFile() = default;

void TSVGImageFile::Assign(const TPersistent *Source)
{
  if (Source && !dynamic_cast<const TSVGImageFile *>(Source)) {
    TGraphic::Assign(Source);
    return;
  }
  const auto *Other = static_cast<const TSVGImageFile *>(Source);
  FImage = Other ? Other->FImage : std::make_shared<TSVGSharedImage>();
  // The bitmap showed the old picture.
  FBitmap.reset();
  Changed();
}

void TSVGImageFile::AssignTo(TPersistent *Dest) const
{
  if (auto *Bitmap = dynamic_cast<TVXGPBitmap *>(Dest)) {
    if (TVXGPBitmap *Own = GetBitmap())
      Bitmap->Assign(Own);
    else
      Bitmap->SetSize(0, 0);
    return;
  }
  TGraphic::AssignTo(Dest);
}

void TSVGImageFile::Clear()
{
  NewImage();
  Changed();
}

void TSVGImageFile::NewImage()
{
  FImage = std::make_shared<TSVGSharedImage>();
  FBitmap.reset();
}

void TSVGImageFile::LoadFromStream(QIODevice &Stream)
{
  // The new document is loaded aside first, so that a failure leaves the old picture in place.
  auto Document = std::make_unique<TSVGDocument>();
  Document->SetOptions(FOptions);
  QBuffer Buffer;
  Buffer.setData(PictureData(Stream));
  Buffer.open(QIODevice::ReadOnly);
  Document->LoadFromStream(Buffer);
  NewImage();
  const TSizeF Natural = SVGNaturalSize(*Document);
  FImage->FSVG = std::move(Document);
  FImage->FWidth = Natural.cx;
  FImage->FHeight = Natural.cy;
  Changed();
}

void TSVGImageFile::SaveToStream(QIODevice &Stream)
{
  if (FImage->FSVG)
    FImage->FSVG->SaveToStream(Stream, 256);
}

void TSVGImageFile::Draw(QPainter &Painter, const QRect &Rect)
{
  TSVGDocument *Document = SVG();
  if (!Document)
    return;
  TVXGPCanvas Canvas(&Painter);
  TRectF R{float(Rect.left()), float(Rect.top()), float(Rect.left() + Rect.width()),
           float(Rect.top() + Rect.height())};
  const float PixelsPerInchX = Canvas.GetPixelsPerInchX();
  const float PixelsPerInchY = Canvas.GetPixelsPerInchY();
  if (PixelsPerInchX > 0 && PixelsPerInchY > 0 && float(Document->DPI()) / PixelsPerInchX != 1.0f) {
    const float Sx = 100.0f / PixelsPerInchX;
    const float Sy = 100.0f / PixelsPerInchY;
    R = TRectF{R.Left * Sx, R.Top * Sy, R.Right * Sx, R.Bottom * Sy};
  }
  TVXGPCanvasStateGuard Guard(Canvas);
  Canvas.IntersectClip(R);
  DrawSVGWrapped(Canvas, Document, R, iwStretch, 1.0f);
}

QImage TSVGImageFile::RenderImage(const QSize &Size, const QRect &Clip, const QColor &Background)
{
  TSVGDocument *Document = SVG();
  if (!Document || Size.isEmpty())
    return QImage();
  const QRect Part = Clip.isEmpty() ? QRect(QPoint(0, 0), Size) : Clip;
  VXCheckBitmapSize(Part.width(), Part.height());
  QImage Image(Part.size(), QImage::Format_ARGB32_Premultiplied);
  if (Image.isNull())
    throw EInvalidGraphicOperation(QStringLiteral("Out of memory for an image of %1 x %2").arg(Part.width()).arg(Part.height()));
  Image.fill(Background);
  QPainter Painter(&Image);
  Painter.translate(-Part.topLeft());
  QRect Target(QPoint(0, 0), Size);
  const TSizeF Natural = SVGNaturalSize(*Document);
  if (!Document->IsViewBoxSpecified() && Natural.cx > 0 && Natural.cy > 0) {
    Painter.scale(Size.width() / Natural.cx, Size.height() / Natural.cy);
    Target = QRect(0, 0, qCeil(Natural.cx), qCeil(Natural.cy));
  }
  Draw(Painter, Target);
  return Image;
}

TVXGPBitmap *TSVGImageFile::GetBitmap() const
{
  if (GetEmpty())
    return nullptr;
  if (!FBitmap) {
    auto *Self = const_cast<TSVGImageFile *>(this);
    TVXGPBitmap Temporary(Self->GetWidth(), Self->GetHeight());
    DrawSVGToBitmap(Temporary, FImage->FSVG.get(), VXSmoothingModeHighQuality, true);
    FBitmap = std::make_unique<TVXGPBitmap>();
    FBitmap->Assign(&Temporary);
    FBitmap->OnChange = [Self](TObject *) { Self->Changed(); };
  }
  return FBitmap.get();
}

bool TSVGImageFile::GetEmpty() const
{
  return !FImage->FSVG;
}

int TSVGImageFile::GetWidth()
{
  return RoundSize(FImage->FSVG ? FImage->FWidth : FImage->FTempWidth);
}

int TSVGImageFile::GetHeight()
{
  return RoundSize(FImage->FSVG ? FImage->FHeight : FImage->FTempHeight);
}

// A bitmap of the old size would be wrong for the new one, so each of the three drops it.
void TSVGImageFile::SetWidth(int Value)
{
  StoreSize(float(Value), FImage->FSVG ? FImage->FHeight : FImage->FTempHeight);
}

void TSVGImageFile::SetHeight(int Value)
{
  StoreSize(FImage->FSVG ? FImage->FWidth : FImage->FTempWidth, float(Value));
}

void TSVGImageFile::SetSize(int Width, int Height)
{
  StoreSize(float(Width), float(Height));
}

void TSVGImageFile::StoreSize(float Width, float Height)
{
  if (FImage->FSVG) {
    FImage->FWidth = Width;
    FImage->FHeight = Height;
  } else {
    FImage->FTempWidth = Width;
    FImage->FTempHeight = Height;
  }
  FBitmap.reset();
  Changed();
}

void TSVGImageFile::LoadFromClipboardFormat()
{
  throw EInvalidGraphicOperation(sSVGUnsupportedOperation);
}

void TSVGImageFile::SaveToClipboardFormat()
{
  throw EInvalidGraphicOperation(sSVGUnsupportedOperation);
}

TSVGDocument *TSVGImageFile::SVG() const
{
  return FImage->FSVG.get();
}

} // namespace vx
