#include "support/HostilePictures.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QUrl>

#include <sys/stat.h>
#include <zlib.h>

#include <stdexcept>

namespace vxtest {

namespace {

QString Svg(const QString &Body, const QString &Size = QStringLiteral("width='100' height='100'"))
{
  return QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' %1>")
             .arg(Size) +
         Body + QStringLiteral("</svg>");
}

void Write(const QString &FileName, const QByteArray &Data)
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly) || File.write(Data) != Data.size())
    throw std::runtime_error("cannot write " + FileName.toStdString());
}

QByteArray Png(QRgb Color, int Side)
{
  QImage Image(Side, Side, QImage::Format_ARGB32);
  Image.fill(Color);
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Image.save(&Buffer, "PNG");
  return Buffer.data();
}

// Writes Folder/picture/picture.svg with Body and the secret beside the picture's folder.
QString Picture(const QDir &Folder, const QString &Body)
{
  Folder.mkpath(QStringLiteral("outside"));
  Folder.mkpath(QStringLiteral("picture"));
  Write(Folder.filePath(QStringLiteral("outside/secret.png")), Png(SecretColor, 8));
  const QString Name = Folder.filePath(QStringLiteral("picture/picture.svg"));
  Write(Name, Body.toUtf8());
  return Name;
}

QString Secret(const QDir &Folder)
{
  return Folder.absoluteFilePath(QStringLiteral("outside/secret.png"));
}

QString Images(const QStringList &References)
{
  QString Body;
  for (const QString &Reference : References)
    Body += QStringLiteral("<image width='100' height='100' xlink:href='%1'/>").arg(Reference.toHtmlEscaped());
  return Svg(Body);
}

QString Repeated(const QString &Open, const QString &Close, int Count, const QString &Inner = QString())
{
  return Open.repeated(Count) + Inner + Close.repeated(Count);
}

// A PNG header that claims a raster of Side by Side pixels and holds none.
QByteArray PngBomb(quint32 Side)
{
  QByteArray Chunk("IHDR");
  for (const quint32 Value : {Side, Side})
    for (int Shift = 24; Shift >= 0; Shift -= 8)
      Chunk.append(char(Value >> Shift));
  Chunk.append("\x08\x06\0\0\0", 5);
  const quint32 Crc = crc32(0, reinterpret_cast<const Bytef *>(Chunk.constData()), uInt(Chunk.size()));
  QByteArray Result("\x89PNG\r\n\x1a\n\0\0\0\x0d", 12);
  Result += Chunk;
  for (int Shift = 24; Shift >= 0; Shift -= 8)
    Result.append(char(Crc >> Shift));
  return Result;
}

QString DataURI(const char *MediaType, const QByteArray &Data)
{
  return QStringLiteral("data:%1;base64,%2").arg(QLatin1String(MediaType), QLatin1String(Data.toBase64()));
}

// --- the earlier set -----------------------------------------------------------------------------

QString EntityBomb(const QDir &Folder)
{
  QString Text = QStringLiteral("<?xml version='1.0'?>\n<!DOCTYPE svg [\n<!ENTITY e0 \"lol\">\n");
  for (int Level = 1; Level <= 9; ++Level)
    Text += QStringLiteral("<!ENTITY e%1 \"%2\">\n").arg(Level).arg(QStringLiteral("&e%1;").arg(Level - 1).repeated(10));
  return Picture(Folder, Text + QStringLiteral("]>\n") + Svg(QStringLiteral("<title>&e9;</title><g>&e9;</g>")));
}

QString DeepNesting(const QDir &Folder)
{
  return Picture(Folder, Svg(Repeated(QStringLiteral("<g>"), QStringLiteral("</g>"), 100000)));
}

QString UseFanOut(const QDir &Folder)
{
  QString Body = QStringLiteral("<defs><rect id='l0' width='1' height='1'/>");
  for (int Level = 1; Level <= 8; ++Level) {
    Body += QStringLiteral("<g id='l%1'>").arg(Level);
    for (int Copy = 0; Copy < 10; ++Copy)
      Body += QStringLiteral("<use xlink:href='#l%1' x='%2'/>").arg(Level - 1).arg(Copy);
    Body += QStringLiteral("</g>");
  }
  return Picture(Folder, Svg(Body + QStringLiteral("</defs><use xlink:href='#l8'/>")));
}

QString UseCycles(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral(
                             "<use id='u' xlink:href='#u'/><g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>"
                             "<linearGradient id='ga' xlink:href='#gb'/><linearGradient id='gb' xlink:href='#ga'/>"
                             "<rect width='9' height='9' fill='url(#ga)'/>")));
}

QString MillionSegments(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<path fill='red' d='M0 0%1'/>").arg(QStringLiteral("l1 1l-1 0").repeated(500000))));
}

QString LongDashList(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<line x2='100' y2='100' stroke='black' stroke-dasharray='%1'/>"
                                            "<line x2='1e6' y2='1e6' stroke='black' stroke-dasharray='0.0001'/>")
                                 .arg(QStringLiteral("1 ").repeated(100000))));
}

QString AbsurdNumbers(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral(
                                 "<rect width='1e30' height='1e30' stroke='black' stroke-width='1e30'/>"
                                 "<circle cx='NaN' cy='5' r='1e38' stroke='red' stroke-width='1e38'/>"
                                 "<path d='M0 0 L3e38 3e38 A1e30 1e30 0 1 1 3e38 0 Z' stroke='red' stroke-width='1e30'/>"
                                 "<g transform='matrix(1e38 0 0 1e38 1e38 1e38)'><rect width='5' height='5'/></g>"
                                 "<svg width='1e30' height='-1' viewBox='0 0 1e-30 1e30'><rect width='5' height='5'/></svg>"),
                             QStringLiteral("width='1e30' height='1e30' viewBox='0 0 1e-30 1e-30'")));
}

QString PngBombImage(const QDir &Folder)
{
  Folder.mkpath(QStringLiteral("picture"));
  Write(Folder.filePath(QStringLiteral("picture/bomb.png")), PngBomb(100000));
  return Picture(Folder, Images({DataURI("image/png", PngBomb(60000)), QStringLiteral("bomb.png")}));
}

QString SelfIncluding(const QDir &Folder)
{
  Folder.mkpath(QStringLiteral("picture"));
  Write(Folder.filePath(QStringLiteral("picture/other.svg")), Images({QStringLiteral("picture.svg")}).toUtf8());
  return Picture(Folder, Images({QStringLiteral("picture.svg"), QStringLiteral("other.svg")}));
}

// --- files outside the folder --------------------------------------------------------------------

QString ParentFolder(const QDir &Folder)
{
  return Picture(Folder, Images({QStringLiteral("../outside/secret.png"), QStringLiteral("./../outside/../outside/secret.png")}));
}

QString AbsolutePath(const QDir &Folder)
{
  return Picture(Folder, Images({Secret(Folder)}));
}

QString FileURL(const QDir &Folder)
{
  return Picture(Folder, Images({QUrl::fromLocalFile(Secret(Folder)).toString(), QStringLiteral("file:../outside/secret.png")}));
}

QString LinkOut(const QDir &Folder)
{
  Folder.mkpath(QStringLiteral("picture/inner"));
  QFile::link(Secret(Folder), Folder.filePath(QStringLiteral("picture/link.png")));
  QFile::link(Folder.absoluteFilePath(QStringLiteral("outside")), Folder.filePath(QStringLiteral("picture/inner/out")));
  return Picture(Folder, Images({QStringLiteral("link.png"), QStringLiteral("inner/out/secret.png")}));
}

QString SystemFiles(const QDir &Folder)
{
  Folder.mkpath(QStringLiteral("picture"));
  ::mkfifo(QFile::encodeName(Folder.filePath(QStringLiteral("picture/fifo.png"))).constData(), 0600);
  QFile::link(QStringLiteral("/proc/kmsg"), Folder.filePath(QStringLiteral("picture/kmsg.png")));
  return Picture(Folder, Images({QStringLiteral("/proc/kmsg"), QStringLiteral("kmsg.png"), QStringLiteral("fifo.png"),
                                 QStringLiteral("/dev/zero"), QStringLiteral("file:///proc/self/environ"),
                                 QStringLiteral("/dev/stdin")}));
}

// --- costs that grew faster than the input -------------------------------------------------------

QString SharedIds(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<rect id='a' width='1' height='1'/>").repeated(15000)));
}

QString ManyStyleRules(const QDir &Folder)
{
  QString Rules;
  for (int Rule = 0; Rule < 20000; ++Rule)
    Rules += QStringLiteral(".c%1 rect{fill:#%2}\n").arg(Rule).arg(Rule % 4096, 3, 16, QLatin1Char('0'));
  QString Body = QStringLiteral("<style>") + Rules + QStringLiteral("</style>");
  for (int Element = 0; Element < 6000; ++Element)
    Body += QStringLiteral("<g class='c%1'><rect width='1' height='1'/></g>").arg(Element * 3);
  return Picture(Folder, Svg(Body));
}

QString ManyTspans(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<text x='0' y='20' font-size='4'>%1</text>")
                                 .arg(QStringLiteral("<tspan>a</tspan>").repeated(100000))));
}

QString LongDashArray(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<circle cx='50' cy='50' r='40' fill='none' stroke='black' "
                                            "stroke-dasharray='%1'/>")
                                 .arg(QStringLiteral("0.01 ").repeated(10001))));
}

QString PatternLevels(const QDir &Folder)
{
  QString Body = QStringLiteral("<defs><pattern id='p0' width='1' height='1'><rect width='1' height='1' fill='green'/>"
                                "</pattern>");
  for (int Level = 1; Level <= 10; ++Level)
    Body += QStringLiteral("<pattern id='p%1' width='0.3334' height='0.3334' patternContentUnits='objectBoundingBox'>"
                           "<rect width='0.3334' height='0.3334' fill='url(#p%2)'/></pattern>")
                .arg(Level)
                .arg(Level - 1);
  return Picture(Folder, Svg(Body + QStringLiteral("</defs><rect width='100' height='100' fill='url(#p10)'/>")));
}

QString FileFanOut(const QDir &Folder)
{
  Folder.mkpath(QStringLiteral("picture"));
  for (int Level = 1; Level <= 5; ++Level) {
    QString Body;
    for (int Copy = 0; Copy < 6; ++Copy)
      Body += Level < 5 ? QStringLiteral("<image x='%1' width='16' height='16' xlink:href='f%2.svg'/>").arg(Copy * 16).arg(Level + 1)
                        : QStringLiteral("<rect x='%1' width='10' height='10' fill='green'/>").arg(Copy * 16);
    Write(Folder.filePath(QStringLiteral("picture/f%1.svg").arg(Level)), Svg(Body).toUtf8());
  }
  QString Body;
  for (int Copy = 0; Copy < 6; ++Copy)
    Body += QStringLiteral("<image x='%1' width='16' height='16' xlink:href='f1.svg'/>").arg(Copy * 16);
  return Picture(Folder, Svg(Body));
}

// --- memory --------------------------------------------------------------------------------------

QString MillionStops(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<linearGradient id='g'>%1</linearGradient>"
                                            "<rect width='100' height='100' fill='url(#g)'/>")
                                 .arg(QStringLiteral("<stop/>").repeated(1000000))));
}

QString HugeEmbeddedPictures(const QDir &Folder)
{
  const QString Inner = Svg(QStringLiteral("<rect width='11500' height='11500' fill='green'/>"),
                            QStringLiteral("width='11500' height='11500' viewBox='0 0 11500 11500'"));
  const QString Reference = DataURI("image/svg+xml", Inner.toUtf8());
  QString Body;
  for (int Copy = 0; Copy < 6; ++Copy)
    Body += QStringLiteral("<image x='%1' width='16' height='16' xlink:href='%2'/>").arg(Copy * 16).arg(Reference);
  return Picture(Folder, Svg(Body));
}

// --- saves that did not load again ---------------------------------------------------------------

QString OverflowingTransforms(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral(
                             "<g transform='scale(1e30) scale(1e30)'><rect width='5' height='5'/></g>"
                             "<rect width='5' height='5' transform='matrix(3e38 0 0 3e38 0 0) scale(10) translate(1e38)'/>"
                             "<linearGradient id='g' gradientTransform='scale(1e20) scale(1e20)'><stop/></linearGradient>"
                             "<pattern id='p' width='1' height='1' patternTransform='rotate(45) scale(3e38 3e38) scale(2)'>"
                             "<rect width='1' height='1'/></pattern>"
                             "<rect width='50' height='50' fill='url(#g)' stroke='url(#p)'/>")));
}

QString ArcPath(const QDir &Folder)
{
  return Picture(Folder, Svg(QStringLiteral("<path fill='none' stroke='black' d='M0 0%1'/>")
                                 .arg(QStringLiteral(" a5 5 0 0 1 0.25 0.25").repeated(200000))));
}

} // namespace

const std::vector<THostilePicture> &HostilePictures()
{
  static const std::vector<THostilePicture> Pictures = {
    {"entity bomb", EntityBomb},
    {"100,000 nested groups", DeepNesting},
    {"fan-out of uses, 10^8 rectangles", UseFanOut},
    {"cycles of uses and gradients", UseCycles},
    {"million-segment path", MillionSegments},
    {"100,000-entry dash list", LongDashList},
    {"absurd numbers", AbsurdNumbers},
    {"PNG bombs", PngBombImage},
    {"pictures that show themselves", SelfIncluding},
    {"image: ../ out of the folder", ParentFolder, true},
    {"image: absolute path", AbsolutePath, true},
    {"image: file: URLs", FileURL, true},
    {"image: symbolic links out of the folder", LinkOut, true},
    {"image: /proc, devices, FIFO", SystemFiles, true},
    {"15,000 elements sharing one id", SharedIds},
    {"20,000 style rules over 6,000 elements", ManyStyleRules},
    {"100,000 tspans", ManyTspans},
    {"dash array of 10,001 entries", LongDashArray},
    {"eleven levels of nine-tile patterns", PatternLevels},
    {"six files each showing the next six times", FileFanOut},
    {"a million gradient stops", MillionStops},
    {"six embedded 11,500-pixel pictures", HugeEmbeddedPictures},
    {"transforms that overflow", OverflowingTransforms},
    {"200,000-segment path with arcs", ArcPath},
  };
  return Pictures;
}

bool ShowsSecret(const QImage &Image)
{
  const QImage Pixels = Image.convertToFormat(QImage::Format_ARGB32);
  for (int Y = 0; Y < Pixels.height(); ++Y) {
    const auto *Line = reinterpret_cast<const QRgb *>(Pixels.constScanLine(Y));
    for (int X = 0; X < Pixels.width(); ++X) {
      if (qAlpha(Line[X]) > 200 && (Line[X] & 0xFFFFFF) == (SecretColor & 0xFFFFFF))
        return true;
    }
  }
  return false;
}

const THostilePicture &HostilePicture(const char *Name)
{
  for (const THostilePicture &Picture : HostilePictures()) {
    if (QLatin1String(Picture.Name) == QLatin1String(Name))
      return Picture;
  }
  throw std::invalid_argument(Name);
}

} // namespace vxtest
