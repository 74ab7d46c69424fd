#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "values/VXSVGDataURI.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>

#include <vector>

using namespace vx;

namespace {

// An 8 by 4 PNG: the left half red, the right half blue.
const QString RedBluePNG = QStringLiteral(
    "iVBORw0KGgoAAAANSUhEUgAAAAgAAAAECAIAAAA8r+mnAAAACXBIWXMAAA7EAAAOxAGVKw4bAAAAFklEQVQImWP8z4AAjAwIHhMDDkC6BAC5kwIHFSWrfgAAAABJRU5ErkJggg==");

QString DataFile(const char *Name)
{
  QString Folder = qEnvironmentVariable("VXSVG_TEST_DATA");
  if (Folder.isEmpty())
    Folder = QFileInfo(QStringLiteral(__FILE__)).dir().filePath(QStringLiteral("../data"));
  return QDir(Folder).filePath(QString::fromUtf8(Name));
}

QString Base64OfFile(const char *Name)
{
  QFile File(DataFile(Name));
  EXPECT_TRUE(File.open(QIODevice::ReadOnly)) << Name;
  return QString::fromLatin1(File.readAll().toBase64());
}

bool Near(QRgb A, QRgb B, int Tolerance = 24)
{
  return std::abs(qRed(A) - qRed(B)) <= Tolerance && std::abs(qGreen(A) - qGreen(B)) <= Tolerance &&
         std::abs(qBlue(A) - qBlue(B)) <= Tolerance && qAlpha(A) == qAlpha(B);
}

TEST(DataURI, SplitsHeaderAndPayload)
{
  struct Case
  {
    const char *URI;
    bool IsData;
    const char *MediaType;
    bool IsBase64;
    const char *Payload;
  } Cases[] = {
      {"data:image/png;base64,AAAA", true, "image/png", true, "AAAA"},
      {"DATA:Image/PNG;BASE64,AA", true, "Image/PNG", true, "AA"},
      {"data:image/png,AAAA", true, "image/png", false, "AAAA"},
      {"data:,hello, world", true, "text/plain", false, "hello, world"},
      {"data:base64,AAAA", true, "text/plain", true, "AAAA"},
      {"data:image/gif;charset=utf-8;base64,R0", true, "image/gif", true, "R0"},
      // Without a comma there is no header: everything is payload.
      {"data:image/png;base64", true, "text/plain", false, "image/png;base64"},
      {"http://example.com/a.png", false, "", false, ""},
      {"dat:image/png;base64,AAAA", false, "", false, ""},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(C.URI);
    TSVGDataURI Parts;
    ASSERT_EQ(ParseDataURI(QString::fromUtf8(C.URI), Parts), C.IsData);
    if (!C.IsData)
      continue;
    EXPECT_EQ(Parts.MediaType, QString::fromUtf8(C.MediaType));
    EXPECT_EQ(Parts.IsBase64, C.IsBase64);
    EXPECT_EQ(Parts.Payload, QString::fromUtf8(C.Payload));
  }
}

TEST(DataURI, DecodesByTheMimeRuleAndRefusesMalformedData)
{
  EXPECT_EQ(DecodeBase64Payload(QStringLiteral("aGVs\r\nbG8=")), QByteArray("hello"));
  EXPECT_EQ(DecodeBase64Payload(QStringLiteral(" aGVs bG8\n")), QByteArray("hello"));
  EXPECT_EQ(DecodeBase64Payload(QStringLiteral("aGVsbG8")), QByteArray("hello"));
  for (const char *Bad : {"", "  \n", "!!!!", "A", "aGVsb", "aG=Vs"}) {
    SCOPED_TRACE(Bad);
    EXPECT_THROW(DecodeBase64Payload(QString::fromUtf8(Bad)), EConvertError);
  }
}

TEST(DataURI, LoadsPngAndJpegPictures)
{
  TVXGPBitmap Bitmap;
  // Line breaks inside the payload, as editors wrap it.
  QString Wrapped = RedBluePNG;
  Wrapped.insert(40, QStringLiteral("\r\n"));
  Wrapped.insert(20, QStringLiteral("\n"));
  ASSERT_TRUE(LoadBitmapFromDataURI(QStringLiteral("data:image/png;base64,") + Wrapped, Bitmap));
  ASSERT_EQ(Bitmap.GetWidth(), 8);
  ASSERT_EQ(Bitmap.GetHeight(), 4);
  EXPECT_EQ(Bitmap.Image().pixel(1, 1), 0xFFFF0000);
  EXPECT_EQ(Bitmap.Image().pixel(6, 2), 0xFF0000FF);

  const auto Jpeg = LoadBitmapFromDataURI(QStringLiteral("data:image/jpeg;base64,") + Base64OfFile("green.jpg"));
  ASSERT_EQ(Jpeg->GetWidth(), 8);
  EXPECT_TRUE(Near(Jpeg->Image().pixel(4, 4), 0xFF008000)) << std::hex << Jpeg->Image().pixel(4, 4);
}

TEST(DataURI, OtherURIsLeaveTheBitmapAsItWas)
{
  for (const QString &URI : {QStringLiteral("data:image/png,") + RedBluePNG,
                             QStringLiteral("data:text/plain;base64,") + RedBluePNG,
                             QStringLiteral("data:;base64,") + RedBluePNG, QStringLiteral("red-blue.png"),
                             QString()}) {
    SCOPED_TRACE(URI.left(30).toStdString());
    TVXGPBitmap Bitmap(3, 2);
    EXPECT_FALSE(LoadBitmapFromDataURI(URI, Bitmap));
    EXPECT_EQ(Bitmap.GetWidth(), 3);
    EXPECT_TRUE(LoadBitmapFromDataURI(URI)->IsEmpty());
  }
}

TEST(DataURI, UndecodablePicturesRaise)
{
  TVXGPBitmap Bitmap;
  EXPECT_THROW(LoadBitmapFromDataURI(QStringLiteral("data:image/png;base64,=AAA"), Bitmap), EConvertError);
  // Well-formed base 64 that is no picture.
  EXPECT_THROW(LoadBitmapFromDataURI(QStringLiteral("data:image/png;base64,AAAAAAAA"), Bitmap), EReadError);
  // SVG is drawn by the library, never decoded as a bitmap.
  const QByteArray Svg = "<svg xmlns='http://www.w3.org/2000/svg' width='4' height='4'/>";
  EXPECT_THROW(LoadBitmapFromDataURI(QStringLiteral("data:image/png;base64,") + QString::fromLatin1(Svg.toBase64()),
                                     Bitmap),
               EReadError);
  EXPECT_TRUE(Bitmap.IsEmpty());
}

// Records the image draws, unscaled rectangles as given.
class TRecordingCanvas : public TVXGPCanvas
{
public:
  explicit TRecordingCanvas(QImage *Device) : TVXGPCanvas(Device) {}
  using TVXGPCanvas::DrawImage;
  void DrawImage(const TVXGPImage &, const TRectF &Dest, const TRectF &Source, float Alpha, TVXGPUnit Unit) override
  {
    Draws.push_back({Dest, Source});
    EXPECT_EQ(Unit, guPixel);
    EXPECT_FLOAT_EQ(Alpha, 0.5f);
  }
  struct TDraw
  {
    TRectF Dest, Source;
  };
  std::vector<TDraw> Draws;
};

class WrappedBitmap : public ::testing::Test
{
protected:
  QImage Device{1, 1, QImage::Format_ARGB32_Premultiplied};
  TRecordingCanvas Canvas{&Device};
  TVXGPBitmap Bitmap{10, 10};
};

TEST_F(WrappedBitmap, PlacesThePictureByMode)
{
  struct Case
  {
    TSVGImageWrapMode Mode;
    TRectF Rect;
    TRectF Dest, Source;
  } Cases[] = {
      {iwOriginal, {0, 0, 6, 25}, {0, 0, 6, 10}, {0, 0, 6, 10}},
      {iwFit, {0, 0, 25, 15}, {5, 0, 20, 15}, {0, 0, 10, 10}},
      // Edges rounded half to even: 2.5 becomes 2 and 22.5 becomes 22.
      {iwFit, {0, 0, 25, 20}, {2, 0, 22, 20}, {0, 0, 10, 10}},
      {iwStretch, {5, 5, 30, 12}, {0, 0, 25, 7}, {0, 0, 10, 10}},
      {iwCenter, {0, 0, 30, 20}, {10, 5, 20, 15}, {0, 0, 10, 10}},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(int(C.Mode));
    Canvas.Draws.clear();
    DrawBitmapWrapped(Canvas, Bitmap, C.Rect, C.Mode, 0.5f);
    ASSERT_EQ(Canvas.Draws.size(), 1u);
    EXPECT_EQ(Canvas.Draws[0].Dest, C.Dest);
    EXPECT_EQ(Canvas.Draws[0].Source, C.Source);
  }
}

TEST_F(WrappedBitmap, TilesFromTheOriginWithCroppedAndEmptyLastTiles)
{
  DrawBitmapWrapped(Canvas, Bitmap, TRectF{0, 0, 25, 25}, iwTile, 0.5f);
  ASSERT_EQ(Canvas.Draws.size(), 16u);
  std::vector<float> Columns;
  for (const auto &D : Canvas.Draws)
    if (D.Dest.Top == 0)
      Columns.push_back(D.Dest.Left);
  EXPECT_EQ(Columns, (std::vector<float>{0, 10, 20, 30}));
  // Column 2 is cut to what lies inside, column 3 is drawn with an empty rectangle.
  EXPECT_EQ(Canvas.Draws[2 * 4].Dest, (TRectF{20, 0, 25, 10}));
  EXPECT_EQ(Canvas.Draws[2 * 4].Source, (TRectF{0, 0, 5, 10}));
  EXPECT_EQ(Canvas.Draws[3 * 4].Dest, (TRectF{30, 0, 30, 0}));
}

TEST_F(WrappedBitmap, EmptyBitmapsAndHugeTilingsDrawNothing)
{
  TVXGPBitmap Empty;
  DrawBitmapWrapped(Canvas, Empty, TRectF{0, 0, 25, 25}, iwStretch, 0.5f);
  TVXGPBitmap Pixel(1, 1);
  QElapsedTimer Timer;
  Timer.start();
  DrawBitmapWrapped(Canvas, Pixel, TRectF{0, 0, 1e7f, 1e7f}, iwTile, 0.5f);
  EXPECT_TRUE(Canvas.Draws.empty());
  EXPECT_LT(Timer.elapsed(), 1000);
}

TEST(ScaleSize, FitsStretchesScalesAndCaps)
{
  struct Case
  {
    float BoxW, BoxH, W, H;
    TSVGImageWrapMode Mode;
    float Scale;
    TSizeF Expected;
  } Cases[] = {
      {100, 100, 200, 100, iwFit, 1, {100, 50}},
      {100, 100, 50, 100, iwFit, 1, {50, 100}},
      {100, 100, 0, 0, iwOriginal, 1, {100, 100}},
      {100, 80, -5, 10, iwFit, 1, {100, 80}},
      {100, 100, 30, 20, iwStretch, 1, {100, 100}},
      {100, 100, 30, 20, iwTile, 2, {60, 40}},
      {100, 100, 30, 20, iwCenter, 0.5f, {15, 10}},
      {1, 1, 10000, 5000, iwOriginal, 1, {8096, 4048}},
      {1, 1, 5000, 10000, iwOriginal, 1, {4048, 8096}},
  };
  for (const Case &C : Cases) {
    SCOPED_TRACE(testing::Message() << C.W << "x" << C.H << " mode " << int(C.Mode));
    const TSizeF R = ScaleSize(C.BoxW, C.BoxH, C.W, C.H, C.Mode, C.Scale);
    EXPECT_FLOAT_EQ(R.cx, C.Expected.cx);
    EXPECT_FLOAT_EQ(R.cy, C.Expected.cy);
  }
}

} // namespace
