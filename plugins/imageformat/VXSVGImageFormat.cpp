#include "VXSVGImageFormat.h"

#include "raster/VXSVGCompressed.h"
#include "raster/VXSVGImageFile.h"
#include "tree/VXSVGDocument.h"

#include <QImage>
#include <QVariant>

namespace vx {

namespace {

// How far into a file the svg element is looked for: past an XML declaration, a doctype with its
// entities and a comment or two.
constexpr qint64 SniffLength = 4096;

bool IsFormatName(const QByteArray &Format)
{
  return Format == "svg" || Format == "svgz";
}

} // namespace

TVXSVGImageIOHandler::TVXSVGImageIOHandler() = default;
TVXSVGImageIOHandler::~TVXSVGImageIOHandler() = default;

bool TVXSVGImageIOHandler::CanRead(QIODevice *Device)
{
  if (!Device)
    return false;
  QByteArray Head = Device->peek(SniffLength);
  if (IsGzipData(Head))
    return true;
  if (Head.startsWith("\xEF\xBB\xBF"))
    Head.remove(0, 3);
  return Head.trimmed().startsWith('<') && Head.contains("<svg");
}

bool TVXSVGImageIOHandler::canRead() const
{
  if (FLoaded)
    return bool(FPicture);
  if (!CanRead(device()))
    return false;
  const_cast<TVXSVGImageIOHandler *>(this)->setFormat(IsGzipData(device()->peek(2)) ? "svgz" : "svg");
  return true;
}

bool TVXSVGImageIOHandler::Load() const
{
  if (FLoaded)
    return bool(FPicture);
  FLoaded = true;
  if (!device())
    return false;
  auto Picture = std::make_unique<TSVGImageFile>();
  TSVGOptions Options = Picture->Options();
  Options.Include(soStandardSVG);
  Picture->SetOptions(Options);
  try {
    Picture->LoadFromStream(*device());
  } catch (const std::exception &) {
    return false;
  }
  if (Picture->GetWidth() <= 0 || Picture->GetHeight() <= 0)
    return false;
  FPicture = std::move(Picture);
  return true;
}

bool TVXSVGImageIOHandler::read(QImage *Image)
{
  if (!Load())
    return false;
  const QSize Size = FScaledSize.isValid() ? FScaledSize : QSize(FPicture->GetWidth(), FPicture->GetHeight());
  const QRect Clip = FClipRect.isValid() ? FClipRect.intersected(QRect(QPoint(0, 0), Size)) : QRect();
  if (Size.isEmpty() || (FClipRect.isValid() && Clip.isEmpty()))
    return false;
  try {
    *Image = FPicture->RenderImage(Size, Clip, FBackgroundColor);
  } catch (const std::exception &) {
    return false;
  }
  return !Image->isNull();
}

QVariant TVXSVGImageIOHandler::option(ImageOption Option) const
{
  switch (Option) {
  case Size:
    return Load() ? QSize(FPicture->GetWidth(), FPicture->GetHeight()) : QVariant();
  case ScaledSize:
    return FScaledSize;
  case ClipRect:
    return FClipRect;
  case BackgroundColor:
    return FBackgroundColor;
  case ImageFormat:
    return QImage::Format_ARGB32_Premultiplied;
  case Description:
    if (Load() && !FPicture->SVG()->Title().isEmpty())
      return QStringLiteral("Title: %1").arg(FPicture->SVG()->Title());
    return QVariant();
  default:
    return QVariant();
  }
}

void TVXSVGImageIOHandler::setOption(ImageOption Option, const QVariant &Value)
{
  switch (Option) {
  case ScaledSize:
    FScaledSize = Value.toSize();
    break;
  case ClipRect:
    FClipRect = Value.toRect();
    break;
  case BackgroundColor:
    FBackgroundColor = Value.value<QColor>();
    break;
  default:
    break;
  }
}

bool TVXSVGImageIOHandler::supportsOption(ImageOption Option) const
{
  return Option == Size || Option == ScaledSize || Option == ClipRect || Option == BackgroundColor
         || Option == ImageFormat || Option == Description;
}

QImageIOPlugin::Capabilities TVXSVGImagePlugin::capabilities(QIODevice *Device, const QByteArray &Format) const
{
  if (IsFormatName(Format))
    return CanRead;
  if (!Format.isEmpty() || !Device || !Device->isOpen())
    return {};
  return TVXSVGImageIOHandler::CanRead(Device) ? CanRead : Capabilities();
}

QImageIOHandler *TVXSVGImagePlugin::create(QIODevice *Device, const QByteArray &Format) const
{
  auto *Handler = new TVXSVGImageIOHandler;
  Handler->setDevice(Device);
  Handler->setFormat(Format.isEmpty() ? QByteArray("svg") : Format);
  return Handler;
}

} // namespace vx
