#include "raster/VXSVGIconEngine.h"

#include "raster/VXSVGCompressed.h"
#include "raster/VXSVGImageFile.h"

#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>

namespace vx {

namespace {

// The look of a disabled icon: grey, at half its opacity.
QImage Disabled(const QImage &Source)
{
  QImage Image = Source.convertToFormat(QImage::Format_ARGB32);
  for (int Y = 0; Y < Image.height(); ++Y) {
    auto *Line = reinterpret_cast<QRgb *>(Image.scanLine(Y));
    for (int X = 0; X < Image.width(); ++X) {
      const int Grey = qGray(Line[X]);
      Line[X] = qRgba(Grey, Grey, Grey, qAlpha(Line[X]) / 2);
    }
  }
  return Image;
}

// The look of a selected icon: tinted with the highlight colour where it has ink.
QImage Selected(const QImage &Source)
{
  QImage Image = Source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  QColor Tint = QGuiApplication::palette().color(QPalette::Normal, QPalette::Highlight);
  Tint.setAlphaF(0.3f);
  QPainter Painter(&Image);
  Painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
  Painter.fillRect(Image.rect(), Tint);
  return Image;
}

QImage WithModeLook(const QImage &Image, QIcon::Mode Mode)
{
  switch (Mode) {
  case QIcon::Disabled:
    return Disabled(Image);
  case QIcon::Selected:
    return Selected(Image);
  default:
    return Image;
  }
}

} // namespace

TVXSVGIconEngine::TVXSVGIconEngine(TSVGOptions Options) : FOptions(Options) {}

TVXSVGIconEngine::~TVXSVGIconEngine()
{
  Changed();
}

void TVXSVGIconEngine::AddData(const QByteArray &Data, QIcon::Mode Mode, QIcon::State State)
{
  TSource &Source = FSources[{Mode, State}];
  Source.Data = Data;
  Source.Picture.reset();
  Source.Loaded = false;
  Changed();
}

void TVXSVGIconEngine::SetKeepAspectRatio(bool Value)
{
  if (Value == FKeepAspectRatio)
    return;
  FKeepAspectRatio = Value;
  Changed();
}

void TVXSVGIconEngine::paint(QPainter *Painter, const QRect &Rect, QIcon::Mode Mode, QIcon::State State)
{
  const qreal Scale = Painter->device() ? Painter->device()->devicePixelRatioF() : 1.0;
  const QPixmap Pixmap = scaledPixmap((QSizeF(Rect.size()) * Scale).toSize(), Mode, State, Scale);
  if (Pixmap.isNull())
    return;
  // Centred when the picture keeps proportions the rectangle does not have.
  QRect Target(QPoint(0, 0), Pixmap.deviceIndependentSize().toSize());
  Target.moveCenter(Rect.center());
  Painter->drawPixmap(Target, Pixmap);
}

QPixmap TVXSVGIconEngine::pixmap(const QSize &Size, QIcon::Mode Mode, QIcon::State State)
{
  return scaledPixmap(Size, Mode, State, 1.0);
}

QPixmap TVXSVGIconEngine::scaledPixmap(const QSize &Size, QIcon::Mode Mode, QIcon::State State, qreal Scale)
{
  const QSize Device = actualSize(Size, Mode, State);
  if (Device.isEmpty() || Scale <= 0)
    return QPixmap();
  const TCacheKey Key{Device.width(), Device.height(), Mode, State};
  QPixmap Result;
  const auto Cached = FCacheKeys.find(Key);
  if (Cached == FCacheKeys.end() || !QPixmapCache::find(Cached->second, &Result)) {
    Result = Render(Device, Mode, State);
    if (!Result.isNull())
      FCacheKeys[Key] = QPixmapCache::insert(Result);
  }
  Result.setDevicePixelRatio(Scale);
  return Result;
}

QSize TVXSVGIconEngine::actualSize(const QSize &Size, QIcon::Mode Mode, QIcon::State State)
{
  const TChoice Choice = Choose(Mode, State);
  if (!Choice.Source)
    return Choice.Pixmap.isNull() ? QSize() : Choice.Pixmap.size().scaled(Size, Qt::KeepAspectRatio).boundedTo(Size);
  TSVGImageFile *File = Picture(*Choice.Source);
  if (!File)
    return QSize();
  const QSize Natural(File->GetWidth(), File->GetHeight());
  if (!FKeepAspectRatio || Natural.isEmpty())
    return Size;
  return Natural.scaled(Size, Qt::KeepAspectRatio);
}

void TVXSVGIconEngine::addFile(const QString &FileName, const QSize &, QIcon::Mode Mode, QIcon::State State)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly) || File.size() > SVGMaxInflatedSize)
    return;
  AddData(File.readAll(), Mode, State);
}

void TVXSVGIconEngine::addPixmap(const QPixmap &Pixmap, QIcon::Mode Mode, QIcon::State State)
{
  FPixmaps[{Mode, State}] = Pixmap;
  Changed();
}

QIconEngine *TVXSVGIconEngine::clone() const
{
  auto *Copy = new TVXSVGIconEngine(FOptions);
  Copy->FKeepAspectRatio = FKeepAspectRatio;
  for (const auto &[Key, Source] : FSources)
    Copy->FSources[Key].Data = Source.Data;
  Copy->FPixmaps = FPixmaps;
  return Copy;
}

QString TVXSVGIconEngine::key() const
{
  return QStringLiteral("svg");
}

bool TVXSVGIconEngine::isNull()
{
  return FSources.empty() && FPixmaps.empty();
}

bool TVXSVGIconEngine::read(QDataStream &In)
{
  FSources.clear();
  FPixmaps.clear();
  qint32 Count = 0;
  In >> FKeepAspectRatio >> Count;
  for (qint32 I = 0; I < Count && In.status() == QDataStream::Ok; ++I) {
    qint32 Mode = 0, State = 0;
    QByteArray Data;
    In >> Mode >> State >> Data;
    FSources[{Mode, State}].Data = Data;
  }
  In >> Count;
  for (qint32 I = 0; I < Count && In.status() == QDataStream::Ok; ++I) {
    qint32 Mode = 0, State = 0;
    QPixmap Pixmap;
    In >> Mode >> State >> Pixmap;
    FPixmaps[{Mode, State}] = Pixmap;
  }
  Changed();
  return In.status() == QDataStream::Ok;
}

bool TVXSVGIconEngine::write(QDataStream &Out) const
{
  Out << FKeepAspectRatio << qint32(FSources.size());
  for (const auto &[Key, Source] : FSources)
    Out << qint32(Key.first) << qint32(Key.second) << Source.Data;
  Out << qint32(FPixmaps.size());
  for (const auto &[Key, Pixmap] : FPixmaps)
    Out << qint32(Key.first) << qint32(Key.second) << Pixmap;
  return Out.status() == QDataStream::Ok;
}

TVXSVGIconEngine::TChoice TVXSVGIconEngine::Choose(QIcon::Mode Mode, QIcon::State State)
{
  const QIcon::State Other = State == QIcon::On ? QIcon::Off : QIcon::On;
  for (const TKey &Key : {TKey{Mode, State}, TKey{Mode, Other}})
    if (const auto Found = FSources.find(Key); Found != FSources.end())
      return {&Found->second, QPixmap(), true};
  if (const auto Found = FPixmaps.find({Mode, State}); Found != FPixmaps.end())
    return {nullptr, Found->second, true};
  for (const TKey &Key : {TKey{QIcon::Normal, State}, TKey{QIcon::Normal, Other}})
    if (const auto Found = FSources.find(Key); Found != FSources.end())
      return {&Found->second, QPixmap(), false};
  if (!FSources.empty())
    return {&FSources.begin()->second, QPixmap(), false};
  return {nullptr, FPixmaps.empty() ? QPixmap() : FPixmaps.begin()->second, false};
}

TSVGImageFile *TVXSVGIconEngine::Picture(TSource &Source) const
{
  if (!Source.Loaded) {
    Source.Loaded = true;
    auto File = std::make_unique<TSVGImageFile>();
    File->SetOptions(FOptions);
    QBuffer Buffer(&Source.Data);
    Buffer.open(QIODevice::ReadOnly);
    try {
      File->LoadFromStream(Buffer);
      Source.Picture = std::move(File);
    } catch (const std::exception &) {
      Source.Picture.reset();
    }
  }
  return Source.Picture.get();
}

QPixmap TVXSVGIconEngine::Render(const QSize &Size, QIcon::Mode Mode, QIcon::State State)
{
  const TChoice Choice = Choose(Mode, State);
  QImage Image;
  if (Choice.Source) {
    TSVGImageFile *File = Picture(*Choice.Source);
    if (!File)
      return QPixmap();
    try {
      Image = File->RenderImage(Size);
    } catch (const std::exception &) {
      return QPixmap();
    }
  } else if (!Choice.Pixmap.isNull()) {
    Image = Choice.Pixmap.toImage().scaled(Size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
  } else {
    return QPixmap();
  }
  return QPixmap::fromImage(Choice.ExactMode ? Image : WithModeLook(Image, Mode));
}

void TVXSVGIconEngine::Changed()
{
  for (const auto &[Key, CacheKey] : FCacheKeys)
    QPixmapCache::remove(CacheKey);
  FCacheKeys.clear();
}

} // namespace vx
