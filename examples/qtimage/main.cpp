// qtimage: shows that any Qt program reads SVG once the vxsvg plugins are installed.
//   QT_PLUGIN_PATH=build/plugins build/bin/qtimage picture.svg out/
// writes out/natural.png (the picture at its own size), out/scaled-512.png (drawn at 512 pixels
// wide, not scaled from a bitmap) and out/icon-16.png, icon-32.png, icon-256.png through QIcon.
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QIcon>
#include <QImageReader>
#include <QPixmap>

#include <cstdio>

namespace {

bool Save(const QImage &Image, const QDir &Folder, const QString &Name)
{
  const QString Path = Folder.filePath(Name);
  if (Image.isNull() || !Image.save(Path, "PNG")) {
    std::fprintf(stderr, "qtimage: cannot write %s\n", qPrintable(Path));
    return false;
  }
  std::printf("%s  %dx%d\n", qPrintable(Path), Image.width(), Image.height());
  return true;
}

QImage Read(const QString &File, const QSize &ScaledSize)
{
  QImageReader Reader(File);
  if (ScaledSize.isValid())
    Reader.setScaledSize(ScaledSize);
  QImage Image = Reader.read();
  if (Image.isNull())
    std::fprintf(stderr, "qtimage: %s: %s\n", qPrintable(File), qPrintable(Reader.errorString()));
  return Image;
}

} // namespace

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  if (argc != 3) {
    std::fprintf(stderr, "usage: qtimage picture.svg output-folder\n");
    return 2;
  }
  const QString File = QString::fromLocal8Bit(argv[1]);
  QDir Folder(QString::fromLocal8Bit(argv[2]));
  if (!Folder.mkpath(QStringLiteral("."))) {
    std::fprintf(stderr, "qtimage: cannot create %s\n", argv[2]);
    return 1;
  }
  std::printf("image formats: %s\n", QImageReader::supportedImageFormats().join(' ').constData());

  const QImage Natural = Read(File, QSize());
  if (!Save(Natural, Folder, QStringLiteral("natural.png")))
    return 1;
  const QSize Wide = Natural.size().scaled(512, 512 * 64, Qt::KeepAspectRatio);
  if (!Save(Read(File, Wide), Folder, QStringLiteral("scaled-512.png")))
    return 1;

  const QIcon Icon(File);
  for (const int Side : {16, 32, 256})
    if (!Save(Icon.pixmap(QSize(Side, Side)).toImage(), Folder, QStringLiteral("icon-%1.png").arg(Side)))
      return 1;
  return 0;
}
