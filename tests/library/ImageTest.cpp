#include "platform/vectorkit/VXGPBitmap.h"
#include "structure/VXSVGImage.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QTemporaryDir>

#include <memory>

using namespace vx;

namespace {

QString DataFile(const char *Name)
{
  QString Folder = qEnvironmentVariable("VXSVG_TEST_DATA");
  if (Folder.isEmpty())
    Folder = QFileInfo(QStringLiteral(__FILE__)).dir().filePath(QStringLiteral("../data"));
  return QFileInfo(QDir(Folder).filePath(QString::fromUtf8(Name))).absoluteFilePath();
}

QString DataURI(const char *MediaType, const QByteArray &Data)
{
  return QStringLiteral("data:%1;base64,%2").arg(QString::fromLatin1(MediaType), QString::fromLatin1(Data.toBase64()));
}

QString FileDataURI(const char *MediaType, const char *Name)
{
  QFile File(DataFile(Name));
  EXPECT_TRUE(File.open(QIODevice::ReadOnly)) << Name;
  return DataURI(MediaType, File.readAll());
}

// A PNG of one colour, W by H pixels.
QString SolidPNG(int W, int H, QRgb Color)
{
  QImage Image(W, H, QImage::Format_ARGB32);
  Image.fill(Color);
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Image.save(&Buffer, "PNG");
  return DataURI("image/png", Buffer.data());
}

void WriteFile(const QString &FileName, const QString &Text)
{
  QFile File(FileName);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(Text.toUtf8());
}

bool Near(QRgb A, QRgb B, int Tolerance = 24)
{
  return std::abs(qRed(A) - qRed(B)) <= Tolerance && std::abs(qGreen(A) - qGreen(B)) <= Tolerance &&
         std::abs(qBlue(A) - qBlue(B)) <= Tolerance && std::abs(qAlpha(A) - qAlpha(B)) <= Tolerance;
}

class ImageElement : public TPictureTest
{
protected:
  // An image element with the given attributes, id "i".
  void LoadImage(const QString &Attributes, const QString &Reference)
  {
    Load(QStringLiteral("<image id='i' %1 xlink:href='%2'/>").arg(Attributes, Reference));
  }
  TSVGImage &Image() { return Element<TSVGImage>("i"); }
};

TEST_F(ImageElement, DrawsDataURIPngAndJpeg)
{
  LoadImage(QStringLiteral("width='20' height='10' preserveAspectRatio='none'"),
            FileDataURI("image/png", "red-blue.png"));
  QImage Picture = Render();
  EXPECT_EQ(Picture.pixel(3, 5), Red);
  EXPECT_EQ(Picture.pixel(17, 5), Blue);
  EXPECT_EQ(Picture.pixel(10, 15), NoColor);

  LoadImage(QStringLiteral("x='5' y='5' width='10' height='10'"), FileDataURI("image/jpeg", "green.jpg"));
  Picture = Render();
  EXPECT_TRUE(Near(Picture.pixel(10, 10), Green)) << std::hex << Picture.pixel(10, 10);
  EXPECT_EQ(Picture.pixel(3, 3), NoColor);
  EXPECT_EQ(Picture.pixel(17, 17), NoColor);
}

TEST_F(ImageElement, AspectRatioPlacesASquarePicture)
{
  // A square picture in a 20 by 10 box: meet gives 10 by 10 placed by the align, slice 20 by 20
  // cut to the box, none the whole box.
  struct Case
  {
    const char *Aspect;
    QRgb Left, Middle, Right, Below;
  } Cases[] = {
      {"xMinYMid", Red, NoColor, NoColor, NoColor},
      {"xMidYMid meet", NoColor, Red, NoColor, NoColor},
      {"xMaxYMax", NoColor, Red, Red, NoColor},
      {"xMidYMid slice", Red, Red, Red, NoColor},
      {"none", Red, Red, Red, NoColor},
  };
  const QString Picture = SolidPNG(4, 4, Red);
  for (const Case &C : Cases) {
    SCOPED_TRACE(C.Aspect);
    LoadImage(QStringLiteral("width='20' height='10' preserveAspectRatio='%1'").arg(QLatin1String(C.Aspect)),
              Picture);
    const QImage Image = Render();
    EXPECT_EQ(Image.pixel(2, 5), C.Left);
    EXPECT_EQ(Image.pixel(10, 5), C.Middle);
    EXPECT_EQ(Image.pixel(18, 5), C.Right);
    EXPECT_EQ(Image.pixel(10, 15), C.Below);
  }
}

TEST_F(ImageElement, AlignChangesOneSideByTheLargerRatio)
{
  struct Case
  {
    int W, H;
    const char *Aspect;
    TRectF Rect, Expected;
  } Cases[] = {
      {4, 4, "xMidYMid", {0, 0, 20, 10}, {5, 0, 15, 10}},
      {4, 4, "xMidYMid slice", {0, 0, 20, 10}, {0, -5, 20, 15}},
      {4, 4, "xMinYMin slice", {0, 0, 10, 20}, {0, 0, 20, 20}},
      {8, 4, "xMidYMid", {0, 0, 40, 10}, {10, 0, 30, 10}},
      {8, 4, "xMaxYMid slice", {0, 0, 40, 10}, {0, -35, 40, 45}},
      // A portrait box scales the height by the larger ratio, whatever the picture's shape.
      {8, 4, "xMinYMin", {0, 0, 10, 30}, {0, 0, 10, 20}},
      {8, 4, "none", {0, 0, 10, 30}, {0, 0, 10, 30}},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(testing::Message() << C.W << "x" << C.H << " " << C.Aspect);
    LoadImage(QStringLiteral("width='20' height='20' preserveAspectRatio='%1'").arg(QLatin1String(C.Aspect)),
              SolidPNG(C.W, C.H, Red));
    EXPECT_EQ(Image().Align(C.Rect), C.Expected);
  }
}

TEST_F(ImageElement, FilesResolveInTheDocumentFolderAndInFoldersTheProgramAllows)
{
  QTemporaryDir Folder;
  ASSERT_TRUE(Folder.isValid());
  ASSERT_TRUE(QFile::copy(DataFile("red-blue.png"), Folder.filePath(QStringLiteral("picture.png"))));
  const QString Svg = Folder.filePath(QStringLiteral("doc.svg"));
  WriteFile(Svg, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
                                "width='20' height='20' viewBox='0 0 20 20'><image id='i' width='20' height='10' "
                                "preserveAspectRatio='none' xlink:href='picture.png'/></svg>"));
  Document.LoadFromFile(Svg);
  EXPECT_EQ(Document.FileName(), QFileInfo(Svg).absoluteFilePath());
  QImage Picture = Render();
  EXPECT_EQ(Picture.pixel(3, 5), Red);
  EXPECT_EQ(Picture.pixel(17, 5), Blue);

  // From text there is no document folder: no file is read, not even from the working folder;
  // a folder the program allows opens its files to absolute names.
  const QString Absolute = Folder.filePath(QStringLiteral("picture.png"));
  const QString Saved = QDir::currentPath();
  QDir::setCurrent(Folder.path());
  LoadImage(QStringLiteral("width='20' height='10'"), QStringLiteral("picture.png"));
  QDir::setCurrent(Saved);
  EXPECT_EQ(Image().Bitmap(), nullptr);
  LoadImage(QStringLiteral("width='20' height='10'"), Absolute);
  EXPECT_EQ(Image().Bitmap(), nullptr);
  Document.FilePolicy().AllowFolder(Folder.path());
  LoadImage(QStringLiteral("width='20' height='10'"), Absolute);
  ASSERT_NE(Image().Bitmap(), nullptr);
  EXPECT_EQ(Image().Bitmap()->GetWidth(), 8);

  // A resolver decides instead of the folders; what it names must still be a regular file.
  QStringList Asked;
  Document.FilePolicy().SetAllowedFolders({});
  Document.FilePolicy().SetResolver([&](const QString &Reference, const QString &) {
    Asked.append(Reference);
    return Reference == QLatin1String("red-blue") ? DataFile("red-blue.png") : QStringLiteral("/dev/zero");
  });
  LoadImage(QStringLiteral("width='20' height='10'"), QStringLiteral("red-blue"));
  ASSERT_NE(Image().Bitmap(), nullptr);
  LoadImage(QStringLiteral("width='20' height='10'"), QStringLiteral("zeros"));
  EXPECT_EQ(Image().Bitmap(), nullptr);
  EXPECT_EQ(Asked, (QStringList{QStringLiteral("red-blue"), QStringLiteral("zeros")}));
}

TEST_F(ImageElement, NestedSvgIsRenderedAtItsViewBoxSize)
{
  // nested.svg draws lime beside red-blue.png, which it names relative to its own folder.
  Document.FilePolicy().AllowFolder(QFileInfo(DataFile("nested.svg")).path());
  LoadImage(QStringLiteral("width='20' height='10'"), DataFile("nested.svg"));
  ASSERT_NE(Image().Bitmap(), nullptr);
  EXPECT_EQ(Image().Bitmap()->GetWidth(), 20);
  EXPECT_EQ(Image().Bitmap()->GetHeight(), 10);
  const QImage Picture = Render();
  EXPECT_EQ(Picture.pixel(5, 5), Lime);
  EXPECT_EQ(Picture.pixel(12, 5), Red);
  EXPECT_EQ(Picture.pixel(18, 5), Blue);

  // Without a view box of its own, the nested picture takes the element's size; sides are truncated.
  QTemporaryDir Folder;
  const QString Svg = Folder.filePath(QStringLiteral("plain.svg"));
  WriteFile(Svg, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'><rect width='100' height='100' fill='blue'/></svg>"));
  Document.FilePolicy().AllowFolder(Folder.path());
  LoadImage(QStringLiteral("width='12.9' height='7'"), Svg);
  ASSERT_NE(Image().Bitmap(), nullptr);
  EXPECT_EQ(Image().Bitmap()->GetWidth(), 12);
  EXPECT_EQ(Image().Bitmap()->GetHeight(), 7);

  // An SVG data URI is rendered the same way.
  QFile Nested(DataFile("nested.svg"));
  ASSERT_TRUE(Nested.open(QIODevice::ReadOnly));
  LoadImage(QStringLiteral("width='20' height='10'"), DataURI("image/svg+xml", Nested.readAll()));
  EXPECT_EQ(Render().pixel(5, 5), Lime);
}

TEST_F(ImageElement, PicturesThatIncludeThemselvesSkipTheRepetition)
{
  // The lime left half would show again on the right if the picture drew itself.
  Document.LoadFromFile(DataFile("self-including.svg"));
  QImage Picture = Render();
  EXPECT_EQ(Picture.pixel(5, 10), Lime);
  EXPECT_EQ(Picture.pixel(12, 10), NoColor);
  EXPECT_TRUE(Element<TSVGImage>("i").Bitmap()->IsEmpty());

  // loop-a (blue) shows loop-b (red), whose image of loop-a is the repetition and draws nothing.
  Document.LoadFromFile(DataFile("loop-a.svg"));
  Picture = Render();
  EXPECT_EQ(Picture.pixel(2, 2), Blue);
  EXPECT_TRUE(Near(Picture.pixel(6, 6), Red)) << std::hex << Picture.pixel(6, 6);
  EXPECT_TRUE(Near(Picture.pixel(10, 10), Red)) << std::hex << Picture.pixel(10, 10);
}

TEST_F(ImageElement, BrokenOrMissingPicturesDrawNothing)
{
  const QString Broken[] = {
      QStringLiteral("data:image/png;base64,!!!"),
      QStringLiteral("data:image/png;base64,AAAAAAAA"),
      QStringLiteral("data:image/png;base64,=A"),
      QStringLiteral("data:image/svg+xml;base64,PHN2Zw=="), // "<svg": no XML
      QStringLiteral("data:text/plain;base64,AAAA"),
      QStringLiteral("no-such-picture.png"),
      QStringLiteral("http://example.com/picture.png"),
  };
  for (const QString &Reference : Broken) {
    SCOPED_TRACE(Reference.toStdString());
    ASSERT_NO_THROW(LoadImage(QStringLiteral("width='20' height='20'"), Reference));
    const QImage Picture = Render();
    EXPECT_EQ(Picture.pixel(10, 10), NoColor);
    EXPECT_TRUE(!Image().Bitmap() || Image().Bitmap()->IsEmpty());
  }
}

TEST_F(ImageElement, BitmapsOverTheDocumentsRasterBudgetAreSkipped)
{
  // Room for one 150-pixel square (90,000 bytes decoded), not for two.
  Document.RasterBudget().SetLimit(150000);
  const QString Picture = SolidPNG(150, 150, Blue);
  Load(QStringLiteral("<image id='a' width='9' height='9' xlink:href='%1'/>"
                      "<image id='b' x='10' width='9' height='9' xlink:href='%1'/>")
           .arg(Picture));
  EXPECT_NE(Element<TSVGImage>("a").Bitmap(), nullptr);
  EXPECT_EQ(Element<TSVGImage>("b").Bitmap(), nullptr);
  EXPECT_EQ(Document.RasterBudget().Used(), 90000);
  const QImage Drawn = Render();
  EXPECT_EQ(Drawn.pixel(5, 5), Blue);
  EXPECT_EQ(Drawn.pixel(15, 5), NoColor);

  // Freeing one bitmap makes room for another.
  Element<TSVGImage>("a").SetReference(QString());
  Element<TSVGImage>("b").SetReference(SolidPNG(150, 150, Red));
  EXPECT_NE(Element<TSVGImage>("b").Bitmap(), nullptr);
  EXPECT_EQ(Document.RasterBudget().Used(), 90000);
}

TEST_F(ImageElement, ReferenceChangesReloadAndEmptyFreesTheBitmap)
{
  LoadImage(QStringLiteral("width='20' height='20'"), QString());
  EXPECT_EQ(Image().Bitmap(), nullptr);
  Image().SetReference(SolidPNG(2, 2, Blue));
  ASSERT_NE(Image().Bitmap(), nullptr);
  EXPECT_EQ(Render().pixel(10, 10), Blue);
  Image().SetReference(QString());
  EXPECT_EQ(Image().Bitmap(), nullptr);
  EXPECT_EQ(Render().pixel(10, 10), NoColor);
}

TEST_F(ImageElement, NothingIsDrawnWithoutAnArea)
{
  LoadImage(QStringLiteral("height='20'"), SolidPNG(2, 2, Blue));
  ASSERT_NE(Image().Bitmap(), nullptr);
  EXPECT_EQ(Image().GetBoundsRect().Width(), 0);
  EXPECT_EQ(Render().pixel(10, 10), NoColor);
}

TEST_F(ImageElement, OpacityAndTransformApply)
{
  LoadImage(QStringLiteral("width='10' height='10' transform='translate(10 10)' opacity='0.5'"),
            SolidPNG(2, 2, Blue));
  const QImage Picture = Render();
  EXPECT_EQ(Picture.pixel(5, 5), NoColor);
  // Premultiplied: half of full blue.
  EXPECT_TRUE(Near(Picture.pixel(15, 15), qRgba(0, 0, 127, 127), 3)) << std::hex << Picture.pixel(15, 15);
}

TEST_F(ImageElement, SavesTheReferenceAsGivenAndCopiesTheBitmap)
{
  const QString Picture = FileDataURI("image/png", "red-blue.png");
  LoadImage(QStringLiteral("x='1' y='2' width='15' height='10' preserveAspectRatio='xMinYMax slice'"), Picture);
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Document.SaveToStream(Buffer);
  const QString Text = QString::fromUtf8(Buffer.data());
  EXPECT_TRUE(Text.contains(QStringLiteral("xlink:href=\"") + Picture + QLatin1Char('"')));
  EXPECT_TRUE(Text.contains(QStringLiteral("preserveAspectRatio=\"xMinYMax slice\"")));

  TSVGDocument Copy;
  Copy.LoadFromText(Text);
  const auto *Again = dynamic_cast<TSVGImage *>(Copy.AllItems().Elements(QStringLiteral("i")));
  ASSERT_NE(Again, nullptr);
  EXPECT_EQ(Again->Reference(), Picture);
  EXPECT_EQ(Again->GetX(), 1);
  EXPECT_EQ(Again->GetHeight(), 10);
  EXPECT_EQ(Again->AspectRatio().GetAlign(), saXMinYMax);
  EXPECT_TRUE(Again->AspectRatio().GetSlice());

  const std::unique_ptr<TSVGElement> Clone(Image().Clone(&Document));
  const auto &Cloned = dynamic_cast<const TSVGImage &>(*Clone);
  EXPECT_EQ(Cloned.Reference(), Picture);
  ASSERT_NE(Cloned.Bitmap(), nullptr);
  EXPECT_EQ(Cloned.Bitmap()->Image().pixel(6, 1), 0xFF0000FF);
}

} // namespace
