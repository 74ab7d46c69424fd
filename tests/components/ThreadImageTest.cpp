// The thread image control: pictures arrive from the server thread, later requests win, clicks
// find nothing before a picture is there, and the control may go while a job still runs. The
// tests wait for the control to stop being busy, with a deadline, never for a fixed time.
#include "ComponentsFixture.h"
#include "support/EventLoopWait.h"

#include "tree/VXSVGGraphicElement.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

#include <functional>

namespace vx {
namespace {

using vxtest::WaitUntil;


QString Filled(const char *Color)
{
  return QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20' viewBox='0 0 20 20'>"
                        "<rect id='all' width='20' height='20' fill='%1'/></svg>")
      .arg(QLatin1String(Color));
}

// A picture of Count small rectangles: long enough to render that a job is still running when a
// test acts.
QString ManyRects(int Count)
{
  QString Text = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='400' height='400' "
                                "viewBox='0 0 400 400'>");
  for (int I = 0; I < Count; ++I)
    Text += QStringLiteral("<rect x='%1' y='%2' width='3' height='3' fill='#0a0' stroke='#050'/>")
                .arg(I % 397)
                .arg((I / 397) % 397);
  return Text + QStringLiteral("</svg>");
}

void SetText(TVXSVGThreadImage &Image, const QString &Text)
{
  TStringList Lines;
  Lines.SetText(Text);
  Image.SetLines(Lines);
}

class ThreadImageTest : public ::testing::Test
{
protected:
  // Shown, so that a resize reaches the control at once.
  void SetUp() override
  {
    Image.resize(50, 30);
    Image.show();
  }
  bool Settled() { return WaitUntil([this] { return !Image.Busy(); }); }
  QRgb Pixel(int X, int Y) { return Shot(Image).pixel(X, Y); }
  QString IdAt(int X, int Y)
  {
    TSVGGraphicElement *Found = nullptr;
    bool Called = false;
    Image.OnClickElement = [&](TObject *, TSVGGraphicElement *Element) {
      Called = true;
      Found = Element;
    };
    QTest::mouseClick(&Image, Qt::LeftButton, {}, QPoint(X, Y));
    return !Called ? QStringLiteral("(no call)") : Found ? Found->ID() : QStringLiteral("-");
  }

  TVXSVGThreadImage Image;
};

TEST_F(ThreadImageTest, ShowsThePictureOnceTheJobsAreBackAndClicksFindItsElements)
{
  int BusyChanges = 0;
  Image.OnBusyChange = [&](TObject *) { ++BusyChanges; };
  SetText(Image, HalvesPicture());
  EXPECT_TRUE(Image.Busy());
  EXPECT_EQ(Image.SVG(), nullptr) << "nothing is parsed on the main thread";
  EXPECT_EQ(IdAt(5, 5), QStringLiteral("(no call)")) << "a click before the first load does nothing";
  ASSERT_TRUE(Settled());
  EXPECT_EQ(BusyChanges, 2) << "busy once from the load to the end of its rendering";
  ASSERT_NE(Image.Bitmap(), nullptr);
  EXPECT_EQ(Pixel(17, 15), Red);
  EXPECT_EQ(Pixel(33, 15), Blue);
  EXPECT_EQ(Pixel(5, 15), Transparent) << "fitted into the middle";
  EXPECT_EQ(IdAt(17, 15), QStringLiteral("left"));
  EXPECT_EQ(IdAt(33, 15), QStringLiteral("right"));
  EXPECT_EQ(IdAt(5, 15), QStringLiteral("-"));

  Image.SetWrapMode(iwStretch);
  EXPECT_TRUE(Image.Busy()) << "a display change queues a rendering";
  EXPECT_EQ(Pixel(17, 15), Red) << "and keeps the old picture until it is there";
  ASSERT_TRUE(Settled());
  EXPECT_EQ(Pixel(2, 15), Transparent) << "the control's centred aspect ratio rules over the picture's none";
  EXPECT_EQ(Pixel(17, 15), Red);
  TSVGOptions Standard = Image.Options();
  Standard.Include(soStandardSVG);
  Image.SetOptions(Standard);
  ASSERT_TRUE(Settled());
  EXPECT_EQ(Pixel(2, 15), Red) << "read as browsers read it, the picture keeps its own";
  Image.SetOptions(DefaultSVGOptions);
  Image.DefaultAspectRatio().SetAlign(saNone);
  EXPECT_EQ(Image.Bitmap(), nullptr) << "the aspect ratio is read with the picture: it is loaded again";
  ASSERT_TRUE(Settled());
  EXPECT_EQ(Pixel(2, 15), Red);
  EXPECT_EQ(Pixel(48, 15), Blue);
}

TEST_F(ThreadImageTest, ResizingWithinTheBitmapRendersNothingAndGrowingRendersAgain)
{
  SetText(Image, HalvesPicture());
  ASSERT_TRUE(Settled());
  const TVXGPBitmap *Shown = Image.Bitmap();
  ASSERT_EQ(Shown->GetWidth(), 30);
  Image.resize(40, 20);
  EXPECT_FALSE(Image.Busy());
  EXPECT_EQ(Image.Bitmap(), Shown);
  EXPECT_EQ(Pixel(15, 10), Red);
  Image.resize(100, 60);
  EXPECT_TRUE(Image.Busy());
  ASSERT_TRUE(Settled());
  EXPECT_EQ(Image.Bitmap()->GetWidth(), 60);
}

TEST_F(ThreadImageTest, OfTwoFileNamesInARowTheLaterWins)
{
  QTemporaryDir Dir;
  const QString First = Dir.filePath(QStringLiteral("first.svg")), Second = Dir.filePath(QStringLiteral("second.svg"));
  for (const auto &[Name, Color] : {std::pair{First, "#f00"}, std::pair{Second, "#00f"}}) {
    QFile File(Name);
    ASSERT_TRUE(File.open(QIODevice::WriteOnly));
    File.write(Filled(Color).toUtf8());
  }
  // The first load may be running or still queued when the second is asked for: either way the
  // second picture is what stays.
  Image.SetFilename(First);
  Image.SetFilename(Second);
  ASSERT_TRUE(Settled());
  EXPECT_EQ(Pixel(25, 15), Blue);
  EXPECT_THROW(Image.SetFilename(Dir.filePath(QStringLiteral("missing.svg"))), EFOpenError);
}

TEST_F(ThreadImageTest, LinesAreReadAsTheTextTheyAreWhateverEncodingTheyDeclare)
{
  SetText(Image, QStringLiteral("<?xml version='1.0' encoding='ISO-8859-1'?>"
                                "<svg xmlns='http://www.w3.org/2000/svg'><rect id='caf\u00e9' width='9' height='9'/></svg>"));
  ASSERT_TRUE(Settled());
  ASSERT_NE(Image.SVG(), nullptr);
  EXPECT_NE(Image.SVG()->FindElement(QStringLiteral("caf\u00e9")), nullptr);
}

TEST_F(ThreadImageTest, AControlWithoutAreaGetsNoBitmapButSettles)
{
  Image.resize(0, 30);
  SetText(Image, HalvesPicture());
  ASSERT_TRUE(Settled());
  EXPECT_NE(Image.SVG(), nullptr);
  EXPECT_EQ(Image.Bitmap(), nullptr);
  Image.resize(20, 20);
  ASSERT_TRUE(Settled());
  EXPECT_NE(Image.Bitmap(), nullptr);
}

TEST(ThreadImageLifetimeTest, TheControlMayGoWhileAJobRuns)
{
  const QString Big = ManyRects(5000);
  // Gone during the load, and gone during the rendering that follows it.
  for (const bool WaitForLoad : {false, true}) {
    auto Image = std::make_unique<TVXSVGThreadImage>();
    Image->resize(400, 400);
    SetText(*Image, Big);
    if (WaitForLoad) {
      ASSERT_TRUE(WaitUntil([&] { return Image->SVG() != nullptr; }));
    }
    EXPECT_TRUE(Image->Busy());
    Image.reset();
  }
  // Hand-overs that were posted before the controls went find nothing to do.
  QCoreApplication::processEvents();
}

TEST(ThreadImageLifetimeTest, ALoadReplacesTheDocumentWhileItsRenderingRuns)
{
  TVXSVGThreadImage Image;
  Image.resize(400, 400);
  SetText(Image, ManyRects(5000));
  ASSERT_TRUE(WaitUntil([&] { return Image.SVG() != nullptr; }));
  // The rendering of the big picture holds its document; the control lets go of it at once.
  SetText(Image, Filled("#00f"));
  EXPECT_EQ(Image.SVG(), nullptr);
  ASSERT_TRUE(WaitUntil([&] { return !Image.Busy(); }));
  EXPECT_EQ(Shot(Image).pixel(200, 200), Blue);
}

} // namespace
} // namespace vx
