// The image and screen controls: where the picture lands in each wrap mode, what a click finds, and
// how often the document is rendered.
#include "ComponentsFixture.h"

#include "tree/VXSVGGraphicElement.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTest>
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace vx {
namespace {

class ImageControlTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    LoadText(Document, HalvesPicture());
    CountRenderings(Document, Renders);
    Image.resize(50, 30);
    Image.SetSVGDocument(&Document);
  }
  QRgb Pixel(int X, int Y) { return Shot(Image).pixel(X, Y); }
  void MoveMouse(const QPoint &P)
  {
    QMouseEvent Move(QEvent::MouseMove, P, Image.mapToGlobal(P), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&Image, &Move);
  }
  TSVGGraphicElement *Find(const QString &Id)
  {
    TSVGElement *Found = nullptr;
    Document.SVG().AllItems().TryGetValue(Id, Found);
    return dynamic_cast<TSVGGraphicElement *>(Found);
  }
  QString IdAt(int X, int Y)
  {
    TSVGGraphicElement *Found = nullptr;
    Image.OnClickElement = [&Found](TObject *, TSVGGraphicElement *Element) { Found = Element; };
    QTest::mouseClick(&Image, Qt::LeftButton, {}, QPoint(X, Y));
    return Found ? Found->ID() : QStringLiteral("-");
  }

  TVXSVGDocument Document;
  int Renders = 0;
  TVXSVGImage Image;
};

struct TProbe
{
  int X, Y;
  QRgb Color;
  const char *Id; // what a click there finds ("-" for nothing)
};

struct TWrapCase
{
  TSVGImageWrapMode Mode;
  std::vector<TProbe> Probes;
};

// A 20 by 20 picture in a 50 by 30 control.
const TWrapCase WrapCases[] = {
  {iwOriginal, {{5, 5, Red, "left"}, {15, 5, Blue, "right"}, {25, 5, Transparent, "-"}, {5, 25, Transparent, "-"}}},
  // Drawn directly, a fitted picture never grows; through the bitmap it does (30 by 30).
  {iwFit, {{17, 15, Red, "left"}, {33, 15, Blue, "right"}, {5, 15, Transparent, "-"}, {45, 15, Transparent, "-"}}},
  {iwStretch, {{20, 15, Red, "left"}, {30, 15, Blue, "right"}, {2, 28, Red, "left"}, {48, 2, Blue, "right"}}},
  {iwTile, {{5, 5, Red, "left"}, {15, 5, Blue, "right"}, {25, 25, Red, "left"}, {35, 25, Blue, "right"}}},
  {iwCenter, {{17, 15, Red, "left"}, {33, 15, Blue, "right"}, {10, 15, Transparent, "-"}, {40, 15, Transparent, "-"}}},
};

TEST_F(ImageControlTest, WrapModesPlaceThePictureAndClicksFindWhatIsShown)
{
  for (const bool Buffered : {true, false})
    for (const TWrapCase &Case : WrapCases) {
      Image.SetBuffered(Buffered);
      Image.SetWrapMode(Case.Mode);
      const QImage Picture = Shot(Image);
      for (const TProbe &P : Case.Probes) {
        SCOPED_TRACE(testing::Message() << "mode " << int(Case.Mode) << " buffered " << Buffered << " at " << P.X
                                        << "," << P.Y);
        EXPECT_EQ(Picture.pixel(P.X, P.Y), P.Color);
        EXPECT_EQ(IdAt(P.X, P.Y), QString::fromLatin1(P.Id));
      }
    }
}

TEST_F(ImageControlTest, TransformMovesThePictureAndItsClicks)
{
  Image.SetWrapMode(iwOriginal);
  Image.Transform().Position().SetPoint(TPointF{20, 5});
  EXPECT_EQ(Pixel(25, 10), Red);
  EXPECT_EQ(Pixel(5, 10), Transparent);
  EXPECT_EQ(IdAt(35, 10), QStringLiteral("right"));
  EXPECT_EQ(IdAt(5, 10), QStringLiteral("-"));
}

TEST_F(ImageControlTest, RootIdShowsOneElementOrNothing)
{
  Image.SetWrapMode(iwStretch);
  Image.SetSVGRootID(QStringLiteral("right"));
  EXPECT_EQ(Pixel(5, 15), Blue);
  EXPECT_EQ(Pixel(45, 15), Blue);
  for (const char *Id : {"nothing-here", "nothing"}) {
    Image.SetSVGRootID(QString::fromLatin1(Id));
    EXPECT_EQ(Image.SVGRoot(), nullptr);
    EXPECT_EQ(Pixel(25, 15), Transparent);
  }
}

TEST_F(ImageControlTest, ChangesBetweenTwoPaintsCostOneRendering)
{
  Shot(Image);
  EXPECT_EQ(Renders, 1);
  Shot(Image);
  EXPECT_EQ(Renders, 1) << "a paint with nothing changed is a blit";

  auto *Left = Find(QStringLiteral("left"));
  ASSERT_NE(Left, nullptr);
  Left->SetWidth(5);
  Left->SetWidth(6);
  Image.SetQuality(2);
  Image.SetWrapMode(iwStretch);
  Shot(Image);
  EXPECT_EQ(Renders, 2);

  Image.resize(40, 20);
  Shot(Image);
  EXPECT_EQ(Renders, 2) << "a smaller control scales the bitmap";
  Image.resize(80, 60);
  Shot(Image);
  EXPECT_EQ(Renders, 3);

  Image.SetBuffered(false);
  Shot(Image);
  Shot(Image);
  EXPECT_EQ(Renders, 5) << "direct painting draws the tree each time";
  Image.SetOpacity(0.5f);
  Shot(Image);
  Shot(Image);
  EXPECT_EQ(Renders, 6) << "opacity goes through the bitmap even unbuffered";
}

TEST_F(ImageControlTest, OpacityAndQualityShowInThePixels)
{
  Image.SetWrapMode(iwStretch);
  Image.SetOpacity(0.5f);
  EXPECT_NEAR(qAlpha(Pixel(10, 15)), 128, 2);
  Image.SetOpacity(1);
  Image.SetQuality(4);
  EXPECT_EQ(Image.GetBitmap().GetWidth(), 200);
  EXPECT_EQ(Pixel(10, 15), Red);
}

TEST_F(ImageControlTest, CursorTrackingShowsTheElementsCursor)
{
  auto *Right = Find(QStringLiteral("right"));
  Right->SetCursor(crHandPoint);
  Image.SetWrapMode(iwStretch);
  Image.SetCursor(crCross);
  Image.SetCursorTracking(true);
  MoveMouse(QPoint(40, 15));
  EXPECT_EQ(Image.cursor().shape(), Qt::PointingHandCursor);
  MoveMouse(QPoint(10, 15));
  EXPECT_EQ(Image.cursor().shape(), Qt::CrossCursor);
}

TEST_F(ImageControlTest, DesignModeIgnoresClicks)
{
  Image.SetDesigning(true);
  EXPECT_EQ(IdAt(5, 5), QStringLiteral("-"));
}

TEST_F(ImageControlTest, ExceptionsInPaintStayInsideTheControl)
{
  QString Reported;
  const auto Saved = TControl::ExceptionHandler;
  TControl::ExceptionHandler = [&Reported](TControl *, const QString &Message) { Reported = Message; };
  Image.OnPaint = [](TObject *) { throw std::runtime_error("broken handler"); };
  Shot(Image);
  TControl::ExceptionHandler = Saved;
  EXPECT_EQ(Reported, QStringLiteral("broken handler"));
}

TEST(ScreenControlTest, TransparentPartsShowTheColourAndPaintEventsFrameTheDrawing)
{
  TVXSVGDocument Document;
  LoadText(Document, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 20'>"
                                    "<rect width='10' height='20' fill='#f00'/></svg>"));
  QStringList Log;
  Document.SVG().OnDrawn = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &) {
    if (Sender == &Document.SVG())
      Log << QStringLiteral("drawn");
  };
  TVXSVGScreen Screen;
  Screen.resize(50, 30);
  Screen.SetColor(0xFF00FF00);
  Screen.OnPainting = [&](TObject *) { Log << QStringLiteral("painting"); };
  Screen.OnPaint = [&](TObject *) { Log << QStringLiteral("paint"); };
  Shot(Screen);
  EXPECT_EQ(Log, QStringList({QStringLiteral("painting"), QStringLiteral("paint")}));

  Log.clear();
  Screen.SetSVGDocument(&Document);
  for (const bool Buffered : {true, false}) {
    Screen.SetBuffered(Buffered);
    const QImage Picture = Shot(Screen);
    EXPECT_EQ(Picture.pixel(15, 15), Red);
    EXPECT_EQ(Picture.pixel(35, 15), Lime) << "inside the picture, where it is transparent";
    EXPECT_EQ(Picture.pixel(5, 15), Lime) << "beside the fitted picture";
  }
  EXPECT_EQ(Log.first(), QStringLiteral("painting"));
  EXPECT_EQ(Log.at(1), QStringLiteral("drawn"));
  EXPECT_EQ(Log.at(2), QStringLiteral("paint"));
}

} // namespace
} // namespace vx
