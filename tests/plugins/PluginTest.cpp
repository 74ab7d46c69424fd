// The Qt plugins as a Qt program meets them: QImageReader and QIcon, with QT_PLUGIN_PATH pointing
// at the build's plugins and no vxsvg code in this program.
#include "support/Gzip.h"

#include <QBuffer>
#include <QDataStream>
#include <QIcon>
#include <QImageReader>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;

// Left half red, right half blue, 20 by 10: a drawing at any size keeps a sharp edge in the middle.
const QByteArray Halves = "<?xml version='1.0'?>\n<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10' "
                          "viewBox='0 0 20 10'><title>Halves</title>"
                          "<rect width='10' height='10' fill='red'/><rect x='10' width='10' height='10' fill='blue'/></svg>";

class PluginTest : public ::testing::Test
{
protected:
  QString Write(const QString &Name, const QByteArray &Data)
  {
    const QString Path = Folder.filePath(Name);
    QFile File(Path);
    EXPECT_TRUE(File.open(QIODevice::WriteOnly));
    File.write(Data);
    return Path;
  }

  QTemporaryDir Folder;
};

TEST_F(PluginTest, ReaderKnowsSvgAndSvgz)
{
  const QList<QByteArray> Formats = QImageReader::supportedImageFormats();
  EXPECT_TRUE(Formats.contains("svg"));
  EXPECT_TRUE(Formats.contains("svgz"));
}

TEST_F(PluginTest, ReadsAtTheNaturalSize)
{
  QImageReader Reader(Write(QStringLiteral("halves.svg"), Halves));
  EXPECT_EQ(Reader.size(), QSize(20, 10));
  EXPECT_EQ(Reader.text(QStringLiteral("Title")), QStringLiteral("Halves"));
  const QImage Image = Reader.read();
  ASSERT_EQ(Image.size(), QSize(20, 10)) << Reader.errorString().toStdString();
  EXPECT_EQ(Image.pixel(9, 5), Red);
  EXPECT_EQ(Image.pixel(10, 5), Blue);
}

// Drawn at the size asked for, not scaled from a bitmap: the edge stays between two pixels.
TEST_F(PluginTest, ReadsAtAScaledSizeAndWithinAClipRectangle)
{
  const QString Path = Write(QStringLiteral("halves.svg"), Halves);
  QImageReader Reader(Path);
  Reader.setScaledSize(QSize(200, 100));
  const QImage Image = Reader.read();
  ASSERT_EQ(Image.size(), QSize(200, 100));
  EXPECT_EQ(Image.pixel(99, 50), Red);
  EXPECT_EQ(Image.pixel(100, 50), Blue);

  QImageReader Clipped(Path);
  Clipped.setScaledSize(QSize(200, 100));
  Clipped.setClipRect(QRect(96, 0, 8, 4));
  const QImage Part = Clipped.read();
  ASSERT_EQ(Part.size(), QSize(8, 4));
  EXPECT_EQ(Part.pixel(3, 2), Red);
  EXPECT_EQ(Part.pixel(4, 2), Blue);

  // The background shows where the picture leaves the image transparent.
  QImageReader OnGreen(Write(QStringLiteral("half.svg"), "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'>"
                                                         "<rect width='5' height='10' fill='red'/></svg>"));
  OnGreen.setBackgroundColor(Qt::green);
  const QImage Filled = OnGreen.read();
  EXPECT_EQ(Filled.pixel(2, 5), Red);
  EXPECT_EQ(Filled.pixel(7, 5), QColor(Qt::green).rgba());
}

TEST_F(PluginTest, ReadsCompressedDataAndSniffsFilesWithoutExtension)
{
  for (const QByteArray &Data : {vx::test::Gzip(Halves), Halves, "\xEF\xBB\xBF" + Halves}) {
    QBuffer Buffer;
    Buffer.setData(Data);
    Buffer.open(QIODevice::ReadOnly);
    QImageReader Reader(&Buffer);
    EXPECT_EQ(Reader.format(), Data.startsWith('\x1f') ? QByteArray("svgz") : QByteArray("svg"));
    const QImage Image = Reader.read();
    ASSERT_EQ(Image.size(), QSize(20, 10)) << Reader.errorString().toStdString();
    EXPECT_EQ(Image.pixel(15, 5), Blue);
  }
}

// Broken or hostile files end in a reader error, never in a crash.
TEST_F(PluginTest, BrokenFilesGiveReaderErrors)
{
  const QByteArray Broken[] = {
    "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'><rect",
    "<svg xmlns='http://www.w3.org/2000/svg' width='1e9' height='1e9'/>",
    "<svg xmlns='http://www.w3.org/2000/svg' width='0' height='0'/>",
    vx::test::Gzip(QByteArray(65 << 20, ' ')),
    vx::test::Gzip(Halves).left(20),
  };
  int Row = 0;
  for (const QByteArray &Data : Broken) {
    QImageReader Reader(Write(QStringLiteral("broken%1.svg").arg(Row++), Data));
    const QImage Image = Reader.read();
    EXPECT_TRUE(Image.isNull()) << "row " << Row;
    EXPECT_EQ(Reader.error(), QImageReader::InvalidDataError) << "row " << Row;
  }
}

// Every size is drawn afresh: the edge between the halves is sharp at 16, 32 and 256 pixels.
TEST_F(PluginTest, IconsAreCrispAtEverySize)
{
  const QIcon Icon(Write(QStringLiteral("halves.svg"), Halves));
  ASSERT_FALSE(Icon.isNull());
  for (const int Side : {16, 32, 256}) {
    const QImage Image = Icon.pixmap(QSize(Side, Side)).toImage();
    ASSERT_EQ(Image.size(), QSize(Side, Side / 2));
    EXPECT_EQ(Image.pixel(Side / 2 - 1, Side / 4), Red) << Side;
    EXPECT_EQ(Image.pixel(Side / 2, Side / 4), Blue) << Side;
  }
  const QImage Retina = Icon.pixmap(QSize(32, 32), 2.0).toImage();
  EXPECT_EQ(Retina.size(), QSize(64, 32));
  EXPECT_EQ(Retina.pixel(31, 16), Red);

  const QImage Disabled = Icon.pixmap(QSize(32, 32), QIcon::Disabled).toImage();
  const QRgb Grey = Disabled.pixel(4, 8);
  EXPECT_EQ(qRed(Grey), qGreen(Grey));
  EXPECT_LT(qAlpha(Grey), 255);
}

// A pixmap added for one mode is that mode's picture; an icon written to a stream and read back (by
// the engine's key) draws the same picture.
TEST_F(PluginTest, IconsTakeAddedPixmapsAndSurviveStreaming)
{
  QIcon Icon(Write(QStringLiteral("halves.svg"), Halves));
  QPixmap Green(8, 8);
  Green.fill(Qt::green);
  Icon.addPixmap(Green, QIcon::Selected);
  EXPECT_EQ(Icon.pixmap(QSize(16, 16), QIcon::Selected).toImage().pixel(12, 4), QColor(Qt::green).rgba());
  EXPECT_EQ(Icon.pixmap(QSize(16, 16)).toImage().pixel(12, 4), Blue);

  QByteArray Bytes;
  {
    QDataStream Out(&Bytes, QIODevice::WriteOnly);
    Out << Icon;
  }
  QIcon Read;
  QDataStream In(Bytes);
  In >> Read;
  const QImage Image = Read.pixmap(QSize(64, 64)).toImage();
  ASSERT_EQ(Image.size(), QSize(64, 32));
  EXPECT_EQ(Image.pixel(31, 16), Red);
  EXPECT_EQ(Image.pixel(32, 16), Blue);
}

// Programs read pictures on worker threads: readers on several threads at once give what one gives.
TEST_F(PluginTest, ReadersOnSeveralThreadsAgree)
{
  const QString Path = QString::fromLocal8Bit(qgetenv("VXSVG_EXAMPLES")) + QStringLiteral("/text.svg");
  const auto Read = [&Path] {
    QImageReader Reader(Path);
    Reader.setScaledSize(QSize(240, 150));
    return Reader.read();
  };
  const QImage Expected = Read();
  ASSERT_FALSE(Expected.isNull());
  std::vector<QImage> Images(4);
  std::vector<std::thread> Threads;
  for (QImage &Image : Images)
    Threads.emplace_back([&Image, &Read] { Image = Read(); });
  for (std::thread &Thread : Threads)
    Thread.join();
  for (const QImage &Image : Images)
    EXPECT_EQ(Image, Expected);
}

TEST_F(PluginTest, AnUnreadableIconDrawsNothing)
{
  const QIcon Icon(Write(QStringLiteral("broken.svg"), "<svg"));
  EXPECT_TRUE(Icon.pixmap(QSize(16, 16)).isNull());
}

} // namespace
