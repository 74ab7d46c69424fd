#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "support/HostilePictures.h"
#include "tree/VXSVG.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <functional>

using namespace vx;

namespace {

constexpr QRgb None = 0;
constexpr QRgb Green = 0xFF008000;
constexpr QRgb Blue = 0xFF0000FF;
constexpr QRgb Red = 0xFFFF0000;

// A 20 by 10 picture: green left half, blue right half.
const char HalvesPicture[] = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 10'>"
                             "<rect id='left' width='10' height='10' fill='green'/>"
                             "<rect id='right' x='10' width='10' height='10' fill='blue'/></svg>";

// Three squares in a row, the middle one in a moved group.
const char RowPicture[] = "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 30 10'>"
                          "<rect id='a' width='10' height='10' fill='green'/>"
                          "<g id='g' transform='translate(10 0)'><rect id='b' width='10' height='10' fill='blue'/></g>"
                          "<rect id='c' x='20' width='10' height='10' fill='red'/></svg>";

class Raster : public ::testing::Test
{
protected:
  void Load(const char *Text) { Document.LoadFromText(QString::fromLatin1(Text)); }
  TSVGGraphicElement *Element(const char *ID)
  {
    return dynamic_cast<TSVGGraphicElement *>(Document.AllItems().Elements(QString::fromLatin1(ID)));
  }
  static QRgb Pixel(const TVXGPBitmap &Bitmap, int X, int Y)
  {
    return Bitmap.Image().convertToFormat(QImage::Format_ARGB32).pixel(X, Y);
  }
  // The colours of the three squares of RowPicture after Paint drew into a 30 by 10 bitmap.
  template <typename F>
  QString Row(F Paint)
  {
    TVXGPBitmap Bitmap(30, 10);
    Paint(Bitmap.GetCanvas(), TRectF{0, 0, 30, 10});
    QString Result;
    for (int X : {5, 15, 25}) {
      const QRgb P = Pixel(Bitmap, X, 5);
      Result += P == Green ? QLatin1Char('a') : P == Blue ? QLatin1Char('b') : P == Red ? QLatin1Char('c')
                                                                                       : QLatin1Char('.');
    }
    return Result;
  }

  TSVGDocument Document;
};

} // namespace

TEST_F(Raster, DrawSVGToBitmapFitsADocumentAndClearsOnRequest)
{
  Load("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 10'><rect width='5' height='10' fill='green'/></svg>");
  for (const bool Clear : {true, false}) {
    TVXGPBitmap Bitmap(41, 41);
    Bitmap.GetCanvas().Clear(Red);
    DrawSVGToBitmap(Bitmap, &Document, 2, Clear);
    // The picture spans the bitmap less its last row and column.
    EXPECT_EQ(Pixel(Bitmap, 2, 20), Green);
    EXPECT_EQ(Pixel(Bitmap, 18, 38), Green);
    EXPECT_EQ(Pixel(Bitmap, 30, 20), Clear ? None : Red);
  }
}

TEST_F(Raster, DrawSVGToBitmapFitsASingleElementToTheWholeBitmap)
{
  Load(RowPicture);
  TVXGPBitmap Bitmap(20, 20);
  DrawSVGToBitmap(Bitmap, Element("c"), 2, true);
  EXPECT_EQ(Pixel(Bitmap, 1, 1), Red);
  EXPECT_EQ(Pixel(Bitmap, 17, 17), Red);
}

TEST_F(Raster, NothingToDrawRaisesNothing)
{
  Load(HalvesPicture);
  TVXGPBitmap Empty;
  EXPECT_NO_THROW(DrawSVGToBitmap(Empty, &Document, 2, true));
  TVXGPBitmap Bitmap(4, 4);
  EXPECT_NO_THROW(DrawSVGToBitmap(Bitmap, nullptr, 2, true));
  EXPECT_NO_THROW(DrawSVGWrapped(Bitmap.GetCanvas(), nullptr, TRectF{0, 0, 4, 4}, iwStretch, 1));
  EXPECT_EQ(GetWrapModeRect(nullptr, TRectF{0, 0, 4, 4}, iwStretch, 1), TRectF{});
}

TEST_F(Raster, WrapModeRectangles)
{
  Load(HalvesPicture);
  struct Case {
    TSVGImageWrapMode Mode;
    TRectF Rect;
    float Scale;
    TRectF Expected;
  };
  const Case Cases[] = {
      {iwOriginal, {5, 5, 100, 100}, 1, {5, 5, 20, 10}},
      {iwTile, {5, 5, 100, 100}, 1, {5, 5, 20, 10}},
      {iwOriginal, {0, 0, 100, 100}, 2, {0, 0, 40, 20}},
      {iwFit, {0, 0, 100, 100}, 1, {40, 45, 60, 55}},  // never grows
      {iwFit, {0, 0, 10, 10}, 1, {0, 2, 10, 8}},        // 2.5 and 7.5 round to even
      {iwStretch, {3, 4, 50, 60}, 1, {3, 4, 50, 60}},
      {iwCenter, {10, 10, 110, 60}, 1, {40, 20, 60, 30}}, // centred in Rect's size, not its place
      {iwStretch, {0, 0, 100, 100}, 0, {0, 0, 0, 0}},
  };
  for (const Case &C : Cases)
    EXPECT_EQ(GetWrapModeRect(&Document, C.Rect, C.Mode, C.Scale), C.Expected) << int(C.Mode) << " " << C.Scale;
}

TEST_F(Raster, DrawSVGWrappedPlacesThePictureByMode)
{
  Load(HalvesPicture);
  struct Case {
    TSVGImageWrapMode Mode;
    float Scale;
    // Colours at x = 5, 15, ... 55 on the rows y = 5 and y = 15 of a 60 by 30 target: g, b or '.'.
    const char *Row5, *Row15;
  };
  const Case Cases[] = {
      {iwOriginal, 1, "gb....", "......"},
      {iwOriginal, 2, "ggbb..", "ggbb.."},
      {iwStretch, 1, "gggbbb", "gggbbb"},
      {iwFit, 1, "......", "..gb.."},
      {iwCenter, 1, "......", "..gb.."},
      {iwStretch, 0, "......", "......"},
  };
  for (const Case &C : Cases) {
    TVXGPBitmap Bitmap(60, 30);
    DrawSVGWrapped(Bitmap.GetCanvas(), &Document, TRectF{0, 0, 60, 30}, C.Mode, C.Scale);
    QString Rows[2];
    for (int Row = 0; Row < 2; ++Row)
      for (int X = 5; X < 60; X += 10) {
        const QRgb P = Pixel(Bitmap, X, Row == 0 ? 5 : 15);
        Rows[Row] += P == Green ? QLatin1Char('g') : P == Blue ? QLatin1Char('b') : QLatin1Char('.');
      }
    EXPECT_EQ(Rows[0], QString::fromLatin1(C.Row5)) << int(C.Mode) << " " << C.Scale;
    EXPECT_EQ(Rows[1], QString::fromLatin1(C.Row15)) << int(C.Mode) << " " << C.Scale;
  }
}

TEST_F(Raster, TilesStartAtTheOriginAndOverhangTheTarget)
{
  Load(HalvesPicture);
  int Tiles = 0;
  Document.OnDrawn = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &) {
    Tiles += Sender == &Document;
  };
  TVXGPBitmap Bitmap(70, 30);
  // Twice the picture's width and once its height: three columns of two rows.
  DrawSVGWrapped(Bitmap.GetCanvas(), &Document, TRectF{10, 0, 50, 10}, iwTile, 1);
  EXPECT_EQ(Tiles, 6);
  EXPECT_EQ(Pixel(Bitmap, 5, 5), Green);   // left of the target: tiles start at the origin
  EXPECT_EQ(Pixel(Bitmap, 45, 5), Green);  // the third column
  EXPECT_EQ(Pixel(Bitmap, 55, 15), Blue);  // the second row
  EXPECT_EQ(Pixel(Bitmap, 65, 5), None);
}

TEST_F(Raster, PartialDrawsAroundAnElement)
{
  Load(RowPicture);
  TSVGGraphicElement *B = Element("b");
  struct Case {
    const char *Name;
    std::function<void(TVXGPCanvas &, const TRectF &)> Paint;
    const char *Expected;
  };
  const Case Cases[] = {
      {"whole", [&](TVXGPCanvas &C, const TRectF &R) { Document.Draw(C, R); }, "abc"},
      {"before", [&](TVXGPCanvas &C, const TRectF &R) { SVGDocumentDrawBeforeElement(Document, B, C, R, false); },
       "a.."},
      {"element", [&](TVXGPCanvas &C, const TRectF &R) { SVGDocumentDrawElement(Document, B, C, R); }, ".b."},
      {"after", [&](TVXGPCanvas &C, const TRectF &R) { SVGDocumentDrawAfterElement(Document, B, C, R, true); },
       ".bc"},
      {"only, by the wrapper",
       [&](TVXGPCanvas &C, const TRectF &R) {
         TSVGDrawEventWrapper Wrapper(deDraw, &Document, B, false);
         EXPECT_THROW(Document.Draw(C, R), EAbort);
       },
       ".b."},
      {"document not included",
       [&](TVXGPCanvas &C, const TRectF &R) { SVGDocumentDrawAfterElement(Document, &Document, C, R, false); }, "..."},
  };
  for (const Case &C : Cases)
    EXPECT_EQ(Row(C.Paint), QString::fromLatin1(C.Expected)) << C.Name;
}

TEST_F(Raster, EventWrapperChainsAndRestoresTheDocumentsHandlers)
{
  Load(RowPicture);
  QStringList Heard;
  Document.OnDrawing = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &, bool &) {
    Heard.append(dynamic_cast<TSVGElement *>(Sender)->ID());
  };
  bool AskedShouldDraw = false;
  Document.OnShouldDraw = [&](const TSVGElement *, bool &) { AskedShouldDraw = true; };
  {
    TSVGDrawEventWrapper Wrapper(deDrawBefore, &Document, Element("c"), false);
    TVXGPBitmap Bitmap(30, 10);
    try {
      Document.Draw(Bitmap.GetCanvas(), TRectF{0, 0, 30, 10});
    } catch (const EAbort &) {
    }
  }
  // The document's own handler heard everything drawn before the element (the root has no id), and
  // after the wrapper is gone it hears everything again.
  EXPECT_EQ(Heard.join(QLatin1Char(',')), QStringLiteral(",a,g,b"));
  EXPECT_TRUE(AskedShouldDraw);
  Heard.clear();
  EXPECT_EQ(Row([&](TVXGPCanvas &C, const TRectF &R) { Document.Draw(C, R); }), QStringLiteral("abc"));
  EXPECT_EQ(Heard.join(QLatin1Char(',')), QStringLiteral(",a,g,b,c"));
}

TEST_F(Raster, NaturalSize)
{
  struct Case {
    const char *Root;
    TSizeF Size;
  };
  const Case Cases[] = {
      {"width='30' height='20'", {30, 20}},
      {"viewBox='5 5 40 10'", {40, 10}},
      {"width='300' height='200' viewBox='0 0 30 20'", {30, 20}},
      {"width='1in' height='2in'", {96, 192}},
  };
  for (const Case &C : Cases) {
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' %1/>").arg(QString::fromLatin1(C.Root)));
    EXPECT_EQ(SVGNaturalSize(Document), C.Size) << C.Root;
  }
}

// The command-line program, when it was built next to the tests.
TEST(RenderCommand, SizesOptionsAndExitStatuses)
{
  const QString Tool = QCoreApplication::applicationDirPath() + QStringLiteral("/vxsvg");
  if (!QFileInfo(Tool).isExecutable())
    GTEST_SKIP() << "vxsvg is not built";
  QTemporaryDir Dir;
  const QString In = Dir.filePath(QStringLiteral("in.svg"));
  const QString Out = Dir.filePath(QStringLiteral("out.png"));
  QFile File(In);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write(HalvesPicture);
  File.close();
  struct Case {
    QStringList Args;
    int Status;
    QSize Size;
  };
  const Case Cases[] = {
      {{In, Out}, 0, {20, 10}},
      {{In, Out, QStringLiteral("--width"), QStringLiteral("60")}, 0, {60, 30}},
      {{In, Out, QStringLiteral("--height"), QStringLiteral("5")}, 0, {10, 5}},
      {{In, Out, QStringLiteral("--width"), QStringLiteral("7"), QStringLiteral("--height"), QStringLiteral("9"),
        QStringLiteral("--wrap"), QStringLiteral("tile"), QStringLiteral("--background"), QStringLiteral("white")},
       0,
       {7, 9}},
      {{In}, 2, {}},
      {{In, Out, QStringLiteral("--width"), QStringLiteral("0")}, 2, {}},
      {{In, Out, QStringLiteral("--width"), QStringLiteral("20000")}, 2, {}},
      {{In, Out, QStringLiteral("--wrap"), QStringLiteral("spiral")}, 2, {}},
      {{In, Out, QStringLiteral("--background"), QStringLiteral("nocolour")}, 2, {}},
      {{In, Out, QStringLiteral("--quality")}, 2, {}},
      {{Dir.filePath(QStringLiteral("missing.svg")), Out}, 2, {}},
      {{Tool, Out}, 1, {}},  // not a picture
      {{In, QStringLiteral("-o"), Out, QStringLiteral("-w"), QStringLiteral("40")}, 0, {40, 20}},
      {{In, QStringLiteral("--output"), Out, QStringLiteral("-z"), QStringLiteral("1.5")}, 0, {30, 15}},
      {{In, QStringLiteral("-o"), Out, QStringLiteral("-h"), QStringLiteral("4"), QStringLiteral("--dpi"),
        QStringLiteral("300")}, 0, {8, 4}},
      {{In, Dir.filePath(QStringLiteral("out.xyz"))}, 2, {}},
      {{Dir.path(), Out}, 2, {}},  // a folder
      {{In, In, Out}, 2, {}},
  };
  for (const Case &C : Cases) {
    QFile::remove(Out);
    QProcess Process;
    Process.start(Tool, QStringList{QStringLiteral("render")} + C.Args);
    ASSERT_TRUE(Process.waitForFinished(30000));
    EXPECT_EQ(Process.exitCode(), C.Status) << C.Args.join(QLatin1Char(' ')).toStdString();
    if (C.Status == 0)
      EXPECT_EQ(QImage(Out).size(), C.Size) << C.Args.join(QLatin1Char(' ')).toStdString();
  }
  // Several inputs into a folder, in the format asked for.
  QProcess Batch;
  Batch.start(Tool, {QStringLiteral("render"), In, Tool, QStringLiteral("--out-dir"), Dir.filePath(QStringLiteral("d")),
                     QStringLiteral("--format"), QStringLiteral("jpg"), QStringLiteral("--jobs"), QStringLiteral("2")});
  ASSERT_TRUE(Batch.waitForFinished(30000));
  EXPECT_EQ(Batch.exitCode(), 1) << "the program itself is no picture";
  EXPECT_EQ(QImage(Dir.filePath(QStringLiteral("d/in.jpg"))).size(), QSize(20, 10));
  QProcess Process;
  Process.start(Tool, {QStringLiteral("render"), In, Out, QStringLiteral("--width"), QStringLiteral("40"),
                       QStringLiteral("--background"), QStringLiteral("#f00"), QStringLiteral("--wrap"),
                       QStringLiteral("original")});
  ASSERT_TRUE(Process.waitForFinished(30000));
  const QImage Image = QImage(Out).convertToFormat(QImage::Format_ARGB32);
  EXPECT_EQ(Image.pixel(5, 5), Green);
  EXPECT_EQ(Image.pixel(15, 5), Blue);
  EXPECT_EQ(Image.pixel(30, 15), Red);
}

TEST(RenderCommand, AllowFilesOpensAFolderToThePictures)
{
  const QString Tool = QCoreApplication::applicationDirPath() + QStringLiteral("/vxsvg");
  if (!QFileInfo(Tool).isExecutable())
    GTEST_SKIP() << "vxsvg is not built";
  QTemporaryDir Dir;
  const QString In = vxtest::HostilePicture("image: ../ out of the folder").Make(QDir(Dir.path()));
  const QString Out = Dir.filePath(QStringLiteral("out.png"));
  for (const bool Allowed : {false, true}) {
    QStringList Args{QStringLiteral("render"), In, Out};
    if (Allowed)
      Args << QStringLiteral("--allow-files") << Dir.filePath(QStringLiteral("outside"));
    QProcess Process;
    Process.start(Tool, Args);
    ASSERT_TRUE(Process.waitForFinished(30000));
    EXPECT_EQ(Process.exitCode(), 0);
    EXPECT_EQ(vxtest::ShowsSecret(QImage(Out)), Allowed);
  }
}
