// The image file class: loading (class-name prefix, gzip), sizes, the three ways of reading the
// picture (bitmap, draw, render), shared data, the clipboard refusal and the picture registry.
#include "platform/vectorkit/VXGPBitmap.h"
#include "raster/VXSVGCompressed.h"
#include "raster/VXSVGImageFile.h"
#include "support/Gzip.h"
#include "support/PictureTest.h"
#include "values/VXSVGException.h"

#include <QBuffer>
#include <QPainter>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace vx {
namespace {

// Left half red, right half blue: a scaled drawing keeps a sharp edge in the middle.
const QByteArray Halves = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10' viewBox='0 0 20 10'>"
                          "<rect width='10' height='10' fill='red'/><rect x='10' width='10' height='10' fill='blue'/></svg>";
// The same without a view box.
const QByteArray HalvesNoViewBox = "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='10'>"
                                   "<rect width='10' height='10' fill='red'/><rect x='10' width='10' height='10' fill='blue'/></svg>";

void Load(TSVGImageFile &File, const QByteArray &Data)
{
  QBuffer Buffer;
  Buffer.setData(Data);
  Buffer.open(QIODevice::ReadOnly);
  File.LoadFromStream(Buffer);
}

TEST(ImageFileTest, LoadsPlainPrefixedAndCompressedData)
{
  for (const QByteArray &Data : {Halves, QByteArray("\x07\x00binary header", 15) + "TSVGImageFile" + Halves, test::Gzip(Halves)}) {
    TSVGImageFile File;
    Load(File, Data);
    ASSERT_FALSE(File.GetEmpty());
    EXPECT_EQ(File.GetWidth(), 20);
    EXPECT_EQ(File.GetHeight(), 10);
  }
}

TEST(ImageFileTest, AFailedLoadKeepsTheOldPicture)
{
  TSVGImageFile File;
  Load(File, Halves);
  TSVGDocument *Before = File.SVG();
  EXPECT_THROW(Load(File, "<html/>"), ESVGException);
  EXPECT_THROW(Load(File, test::Gzip(Halves).left(12)), EReadError);
  EXPECT_EQ(File.SVG(), Before);
}

TEST(ImageFileTest, GzipInflationIsBounded)
{
  const QByteArray Zeros(100000, '\0');
  EXPECT_EQ(InflateGzip(test::Gzip(Zeros)), Zeros);
  EXPECT_THROW(InflateGzip(test::Gzip(Zeros), 1000), EReadError);
  EXPECT_THROW(InflateGzip(QByteArray("\x1f\x8b garbage", 10)), EReadError);
}

TEST(ImageFileTest, BitmapIsThePictureAtTheGraphicsSize)
{
  TSVGImageFile File;
  EXPECT_EQ(File.GetBitmap(), nullptr);
  Load(File, Halves);
  File.SetSize(40, 20);
  const TVXGPBitmap *Bitmap = File.GetBitmap();
  ASSERT_NE(Bitmap, nullptr);
  EXPECT_EQ(Bitmap->Image().size(), QSize(40, 20));
  EXPECT_EQ(Bitmap->Image().pixel(5, 10), Red);
  EXPECT_EQ(Bitmap->Image().pixel(34, 10), Blue);

  TVXGPBitmap Copy;
  Copy.Assign(&File);
  EXPECT_EQ(Copy.Image().size(), QSize(40, 20));

  File.SetSize(0, 0);
  ASSERT_NE(File.GetBitmap(), nullptr);
  EXPECT_TRUE(File.GetBitmap()->IsEmpty());
}

TEST(ImageFileTest, DrawStretchesThePictureOverTheRectangle)
{
  TSVGImageFile File;
  Load(File, Halves);
  QImage Image(40, 40, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    QPainter Painter(&Image);
    File.Draw(Painter, QRect(0, 10, 40, 20));
  }
  EXPECT_EQ(Image.pixel(2, 20), Red);
  EXPECT_EQ(Image.pixel(38, 20), Blue);
  EXPECT_EQ(Image.pixel(20, 5), NoColor);
  EXPECT_EQ(Image.pixel(20, 35), NoColor);
}

// A picture drawn at four times its size keeps a sharp edge, with or without a view box; the clip
// picks a part, the background fills what the picture leaves.
TEST(ImageFileTest, RenderDrawsAtTheSizeAskedFor)
{
  for (const QByteArray &Data : {Halves, HalvesNoViewBox}) {
    TSVGImageFile File;
    Load(File, Data);
    const QImage Image = File.RenderImage(QSize(80, 40));
    ASSERT_EQ(Image.size(), QSize(80, 40));
    EXPECT_EQ(Image.pixel(39, 20), Red);
    EXPECT_EQ(Image.pixel(40, 20), Blue);
    const QImage Part = File.RenderImage(QSize(80, 40), QRect(36, 0, 8, 8));
    ASSERT_EQ(Part.size(), QSize(8, 8));
    EXPECT_EQ(Part.pixel(3, 3), Red);
    EXPECT_EQ(Part.pixel(4, 3), Blue);
  }
  TSVGImageFile File;
  Load(File, "<svg xmlns='http://www.w3.org/2000/svg' width='10' height='10'><rect width='5' height='10' fill='red'/></svg>");
  const QImage OnGreen = File.RenderImage(QSize(10, 10), QRect(), QColor(0, 128, 0));
  EXPECT_EQ(OnGreen.pixel(2, 5), Red);
  EXPECT_EQ(OnGreen.pixel(7, 5), Green);
  EXPECT_THROW(File.RenderImage(QSize(100000, 10)), EInvalidGraphicOperation);
}

TEST(ImageFileTest, AssignSharesTheDocumentUntilOneLoadsAgain)
{
  TSVGImageFile A, B;
  Load(A, Halves);
  Load(B, "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>");
  ASSERT_NE(B.GetBitmap(), nullptr);
  B.Assign(&A);
  EXPECT_EQ(B.SVG(), A.SVG());
  EXPECT_EQ(B.GetWidth(), 20);
  EXPECT_EQ(B.GetBitmap()->Image().pixel(15, 5), Blue);

  Load(B, "<svg xmlns='http://www.w3.org/2000/svg' width='7' height='7'/>");
  EXPECT_NE(B.SVG(), A.SVG());
  EXPECT_EQ(A.GetWidth(), 20);
  EXPECT_EQ(B.GetWidth(), 7);

  B.Assign(nullptr);
  EXPECT_TRUE(B.GetEmpty());
  EXPECT_FALSE(A.GetEmpty());
}

TEST(ImageFileTest, RefusesTheClipboard)
{
  TSVGImageFile File;
  for (auto Call : {&TSVGImageFile::LoadFromClipboardFormat, &TSVGImageFile::SaveToClipboardFormat}) {
    try {
      (File.*Call)();
      ADD_FAILURE() << "no exception";
    } catch (const EInvalidGraphicOperation &E) {
      EXPECT_EQ(E.Message(), QStringLiteral("Unsupported operation for SVG"));
    }
  }
}

TEST(ImageFileTest, TheRegistryLoadsSvgFilesByExtension)
{
  const auto Format = TPicture::FindFileFormat(QStringLiteral("SVG"));
  ASSERT_TRUE(Format.has_value());
  EXPECT_EQ(Format->Description, QStringLiteral("Scalable Vector Graphics File"));

  QTemporaryDir Folder;
  const QString Name = Folder.filePath(QStringLiteral("halves.svg"));
  QFile Out(Name);
  ASSERT_TRUE(Out.open(QIODevice::WriteOnly));
  Out.write(Halves);
  Out.close();
  const std::unique_ptr<TGraphic> Graphic = TPicture::LoadGraphicFromFile(Name);
  ASSERT_NE(dynamic_cast<TSVGImageFile *>(Graphic.get()), nullptr);
  EXPECT_EQ(Graphic->GetWidth(), 20);
  EXPECT_THROW(TPicture::LoadGraphicFromFile(Folder.filePath(QStringLiteral("x.unknown"))), EInvalidGraphicOperation);

  // Saving writes the document back; it loads to the same size.
  QBuffer Saved;
  Saved.open(QIODevice::ReadWrite);
  Graphic->SaveToStream(Saved);
  TSVGImageFile Again;
  Load(Again, Saved.data());
  EXPECT_EQ(Again.GetWidth(), 20);
}

} // namespace
} // namespace vx
