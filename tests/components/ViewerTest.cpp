// Smoke test of the viewer application: open an example, click a shape, edit it, break the input.
#include "ComponentsFixture.h"

#include "../examples/viewer/ViewerWindow.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTimer>
#include <QTest>
#include <gtest/gtest.h>

namespace vx {
namespace {

TEST(ViewerTest, ClickSelectsTheShapeAndAnEditRedrawsIt)
{
  TViewerWindow Window;
  Window.SetZoom(1);
  ASSERT_TRUE(Window.OpenFile(qEnvironmentVariable("VXSVG_EXAMPLES") + QStringLiteral("/shapes.svg")));
  Window.show();
  TVXSVGScreen &Screen = Window.Screen();
  ASSERT_EQ(Screen.size(), QSize(240, 160));
  QTest::mouseClick(&Screen, Qt::LeftButton, {}, QPoint(128, 40));
  ASSERT_NE(Window.SelectedElement(), nullptr);
  EXPECT_EQ(Window.SelectedElement()->ID(), QStringLiteral("sun"));

  Window.SetSelectedAttribute(QStringLiteral("fill"), QStringLiteral("#0000ff"));
  EXPECT_EQ(Shot(Screen).pixel(128, 40), Blue);
  ASSERT_NE(Window.SelectedElement(), nullptr);
  EXPECT_EQ(Window.SelectedElement()->ID(), QStringLiteral("sun"));

  Window.SetStandardSVG(false);
  EXPECT_FALSE(Window.Document().SVG().FollowsStandardSVG());
  EXPECT_EQ(Shot(Screen).pixel(128, 40), Blue) << "the edit survives the change of mode";
}

TEST(ViewerTest, TheBackgroundSwitchShowsThePictureThroughTheThreadImage)
{
  TViewerWindow Window;
  Window.SetZoom(1);
  Window.show();
  Window.SetBackgroundRendering(true);
  ASSERT_TRUE(Window.OpenFile(qEnvironmentVariable("VXSVG_EXAMPLES") + QStringLiteral("/shapes.svg")));
  TVXSVGThreadImage &Image = Window.ThreadImage();
  EXPECT_TRUE(Window.BusyIndicatorShown());
  QTimer Tick;
  Tick.start(50);
  QElapsedTimer Timer;
  Timer.start();
  while (Image.Busy() && Timer.elapsed() < 20000)
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  EXPECT_FALSE(Window.BusyIndicatorShown());
  ASSERT_EQ(Image.size(), QSize(240, 160));
  EXPECT_EQ(Shot(Image).pixel(128, 40), Shot(Window.Screen()).pixel(128, 40));
  QTest::mouseClick(&Image, Qt::LeftButton, {}, QPoint(128, 40));
  ASSERT_NE(Window.SelectedElement(), nullptr);
  EXPECT_EQ(Window.SelectedElement()->ID(), QStringLiteral("sun")) << "the element of the window's document";
}

TEST(ViewerTest, LoadErrorsAreShownInTheWindow)
{
  QTemporaryDir Dir;
  const QString Broken = Dir.filePath(QStringLiteral("broken.svg"));
  QFile File(Broken);
  ASSERT_TRUE(File.open(QIODevice::WriteOnly));
  File.write("<svg xmlns='http://www.w3.org/2000/svg'><rect");
  File.close();
  TViewerWindow Window;
  for (const QString &Name : {Broken, Dir.filePath(QStringLiteral("missing.svg"))}) {
    EXPECT_FALSE(Window.OpenFile(Name));
    EXPECT_TRUE(Window.ErrorText().contains(Name));
  }
  EXPECT_EQ(Window.SelectedElement(), nullptr);
}

} // namespace
} // namespace vx
