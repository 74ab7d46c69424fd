#include "shapes/VXSVGBasicShapes.h"
#include "structure/VXSVGGradients.h"
#include "structure/VXSVGGroups.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QPainter>

using namespace vx;

namespace {

class QtSurface : public TPictureTest
{
};

TEST_F(QtSurface, FindElementAnswersOnlyForTheAskedClass)
{
  Load(QStringLiteral("<rect id='r' width='10' height='10'/><g id='g'/>"));
  EXPECT_NE(Document.FindElement<TSVGRectangle>(QStringLiteral("r")), nullptr);
  EXPECT_EQ(Document.FindElement<TSVGRectangle>(QStringLiteral("g")), nullptr);
  EXPECT_EQ(Document.FindElement(QStringLiteral("missing")), nullptr);
  EXPECT_NE(Document.FindElement<TSVGGroup>(QStringLiteral("g")), nullptr);
}

TEST_F(QtSurface, AddChildTakesOwnershipAndFreesARefusedChild)
{
  Load(QString());
  auto &Group = Document.AddChild(std::make_unique<TSVGGroup>(&Document));
  auto &Inner = Group.AddChild(std::make_unique<TSVGGroup>(&Document));
  EXPECT_EQ(Inner.Parent(), &Group);
  // A gradient takes only stops; the refused group is freed by the unique_ptr (ASan sees a leak
  // otherwise).
  auto &Gradient = Document.AddChild(std::make_unique<TSVGLinearGradient>(&Document));
  EXPECT_ANY_THROW(Gradient.AddChild(std::make_unique<TSVGGroup>(&Document)));
  EXPECT_EQ(Gradient.Count(), 0);
  const std::unique_ptr<TSVGElement> Copy = Group.Clone();
  EXPECT_EQ(Copy->Count(), 1);
}

TEST_F(QtSurface, RenderAndPainterDrawTheSamePixels)
{
  Load(QStringLiteral("<rect x='5' width='10' height='20' fill='#f00'/>"));
  const QImage Rendered = Document.Render(QSize(40, 40));
  QImage Painted(40, 40, QImage::Format_ARGB32_Premultiplied);
  Painted.fill(Qt::transparent);
  QPainter Painter(&Painted);
  Document.Draw(Painter, QRectF(0, 0, 40, 40));
  Painter.end();
  EXPECT_EQ(Rendered.pixel(20, 20), Red);
  EXPECT_EQ(Rendered.pixel(5, 20), NoColor);
  EXPECT_EQ(Painted.convertToFormat(Rendered.format()), Rendered);
}

TEST_F(QtSurface, APictureWithoutViewBoxIsLaidOutByTheDefaultAspectRatio)
{
  Document.LoadFromText(QStringLiteral("<svg width='20' height='10'><rect id='r' width='20' height='10' fill='red'/></svg>"));
  QImage Image = Document.Render(QSize(40, 40));
  EXPECT_EQ(Image.pixel(10, 5), Red) << "one unit a pixel while the ratio is as it started";
  EXPECT_EQ(Image.pixel(30, 5), NoColor);
  Document.DefaultAspectRatio().SetAlign(saXMidYMax);
  Image = Document.Render(QSize(40, 40));
  EXPECT_EQ(Image.pixel(20, 15), NoColor) << "fitted to the bottom";
  EXPECT_EQ(Image.pixel(20, 30), Red);
  Document.DefaultAspectRatio().SetAlign(saNone);
  Image = Document.Render(QSize(40, 40));
  EXPECT_EQ(Image.pixel(30, 5), Red) << "stretched";

  // The integer rectangle, bounds and hit test in Qt's types agree with that layout.
  Image.fill(Qt::transparent);
  QPainter Painter(&Image);
  Document.Draw(Painter, QRect(0, 0, 20, 20));
  Painter.end();
  EXPECT_EQ(Image.pixel(10, 15), Red);
  EXPECT_EQ(Image.pixel(30, 15), NoColor);
  auto &Rect = *Document.FindElement<TSVGRectangle>(QStringLiteral("r"));
  EXPECT_EQ(Rect.BoundingRect(QTransform::fromScale(2, 3)), QRectF(0, 0, 40, 30));
  EXPECT_EQ(Document.ElementAtPos(QPointF(10, 35), QRectF(0, 0, 40, 40)), &Rect);
  EXPECT_TRUE(Rect.ToString().contains(QLatin1String("<rect"))) << Rect.ToString().toStdString();
  EXPECT_TRUE(Rect.ToString().contains(QLatin1String("width=\"20\"")));
}

} // namespace
