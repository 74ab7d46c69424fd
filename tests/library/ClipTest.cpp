#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QImage>

#include <vector>

using namespace vx;

namespace {

using Clipping = TPictureTest;

struct TProbe
{
  int X, Y;
  QRgb Color;
};

struct TClipCase
{
  const char *Name;
  const char *Body;
  std::vector<TProbe> Probes;
};

const QString Square = QStringLiteral("<rect width='20' height='20' fill='red' clip-path='url(#c)'/>");

const TClipCase ClipCases[] = {
  {"left half", "<clipPath id='c'><rect width='10' height='20'/></clipPath>", {{5, 10, Red}, {15, 10, NoColor}}},
  {"transformed clip path", "<clipPath id='c' transform='translate(10,0)'><rect width='10' height='20'/></clipPath>",
   {{5, 10, NoColor}, {15, 10, Red}}},
  {"transformed child of the clip path",
   "<clipPath id='c'><rect width='10' height='20' transform='translate(5,0)'/></clipPath>",
   {{2, 10, NoColor}, {10, 10, Red}, {17, 10, NoColor}}},
  {"children are united",
   "<clipPath id='c'><rect width='5' height='20'/><rect x='15' width='5' height='20'/></clipPath>",
   {{2, 10, Red}, {10, 10, NoColor}, {17, 10, Red}}},
  {"even-odd clip rule cuts the hole",
   "<clipPath id='c'><path clip-rule='evenodd' d='M0 0H20V20H0Z M5 5H15V15H5Z'/></clipPath>",
   {{2, 2, Red}, {10, 10, NoColor}}},
  {"clip rule inherited from the clip path",
   "<clipPath id='c' clip-rule='evenodd'><path d='M0 0H20V20H0Z M5 5H15V15H5Z'/></clipPath>",
   {{2, 2, Red}, {10, 10, NoColor}}},
  {"non-zero clip rule keeps the inner square", "<clipPath id='c'><path d='M0 0H20V20H0Z M5 5H15V15H5Z'/></clipPath>",
   {{2, 2, Red}, {10, 10, Red}}},
  {"empty clip path clips nothing", "<clipPath id='c'/>", {{2, 2, Red}, {17, 17, Red}}},
  {"hidden children clip nothing", "<clipPath id='c'><rect width='10' height='10' display='none'/></clipPath>",
   {{2, 2, Red}, {17, 17, Red}}},
  {"a reference to a rect clips nothing", "<rect id='c' width='5' height='5' fill='none'/>",
   {{2, 2, Red}, {17, 17, Red}}},
  {"an unknown reference clips nothing", "", {{2, 2, Red}, {17, 17, Red}}},
};

TEST_F(Clipping, ClipPathsAsPixels)
{
  for (const TClipCase &Case : ClipCases) {
    SCOPED_TRACE(Case.Name);
    Load(QString::fromLatin1(Case.Body) + Square);
    const QImage Image = Render();
    for (const TProbe &P : Case.Probes)
      EXPECT_EQ(Image.pixel(P.X, P.Y), P.Color) << "at " << P.X << "," << P.Y;
  }
}

TEST_F(Clipping, ClipPathDefinedAfterItsUserIsFound)
{
  Load(Square + QStringLiteral("<clipPath id='c'><rect width='10' height='20'/></clipPath>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(5, 10), Red);
  EXPECT_EQ(Image.pixel(15, 10), NoColor);
}

TEST_F(Clipping, ClipFollowsTheTransformOfTheClippedElement)
{
  Load(QStringLiteral("<clipPath id='c'><rect width='10' height='20'/></clipPath>"
                      "<rect width='20' height='20' fill='red' transform='translate(5,0)' clip-path='url(#c)'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(3, 10), NoColor);
  EXPECT_EQ(Image.pixel(10, 10), Red);
  EXPECT_EQ(Image.pixel(17, 10), NoColor);
}

TEST_F(Clipping, NestedClipsIntersect)
{
  Load(QStringLiteral("<clipPath id='left'><rect width='10' height='20'/></clipPath>"
                      "<clipPath id='top'><rect width='20' height='10'/></clipPath>"
                      "<g clip-path='url(#left)'><rect width='20' height='20' fill='red' clip-path='url(#top)'/></g>"
                      "<rect x='18' y='18' width='2' height='2' fill='red'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(5, 5), Red);
  EXPECT_EQ(Image.pixel(15, 5), NoColor);
  EXPECT_EQ(Image.pixel(5, 15), NoColor);
  // The group's clip ends with the group.
  EXPECT_EQ(Image.pixel(19, 19), Red);
}

TEST_F(Clipping, ClipPathIsNeverDrawn)
{
  Load(QStringLiteral("<clipPath id='c'><rect width='20' height='20' fill='red'/></clipPath>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(10, 10), NoColor);
}

TEST_F(Clipping, OptionOffIgnoresClipPaths)
{
  Load(QStringLiteral("<clipPath id='c'><rect width='10' height='20'/></clipPath>") + Square);
  TSVGOptions Options = Document.GetOptions();
  Options.Exclude(soApplyClipping);
  Document.SetOptions(Options);
  EXPECT_EQ(Render().pixel(15, 10), Red);
}

TEST_F(Clipping, DisabledClipContentAddsNothing)
{
  Load(QStringLiteral("<clipPath id='c'><rect id='half' width='10' height='20'/></clipPath>") + Square);
  Element("half").SetEnabled(false);
  EXPECT_EQ(Render().pixel(15, 10), Red);
}

TEST_F(Clipping, InheritedClipPathNamesTheParentsClipPath)
{
  Load(QStringLiteral("<clipPath id='c'><rect width='10' height='20'/></clipPath>"
                      "<g id='g' clip-path='url(#c)'><rect id='r' width='20' height='20' clip-path='inherit'/></g>"));
  EXPECT_EQ(Element("r").GetClipURIElement(), &Element("c"));
  EXPECT_EQ(Element("g").GetClipURIElement(), &Element("c"));
}

TEST_F(Clipping, GetClipPathAnswersTheRegionOfTheClipPath)
{
  Load(QStringLiteral("<clipPath id='c'><rect x='2' y='3' width='10' height='5'/></clipPath>"
                      "<rect id='r' width='20' height='20' clip-path='url(#c)'/>"
                      "<rect id='plain' width='1' height='1'/>"));
  QImage Image(20, 20, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Image);
  TVXGPRegion *Region = Element("r").GetClipPath(Canvas);
  ASSERT_NE(Region, nullptr);
  EXPECT_EQ(Region, Element("c").GetClipPath(Canvas));
  const TRectF Bounds = Region->GetBounds();
  EXPECT_FLOAT_EQ(Bounds.Left, 2);
  EXPECT_FLOAT_EQ(Bounds.Top, 3);
  EXPECT_FLOAT_EQ(Bounds.Right, 12);
  EXPECT_FLOAT_EQ(Bounds.Bottom, 8);
  EXPECT_EQ(Element("plain").GetClipPath(Canvas), nullptr);
}

TEST_F(Clipping, NestedViewportHidesItsOverflow)
{
  const char *Nested = "<svg x='0' y='0' width='10' height='10' %1><rect width='20' height='20' fill='red'/></svg>";
  Load(QString::fromLatin1(Nested).arg(QString()));
  QImage Image = Render();
  EXPECT_EQ(Image.pixel(5, 5), Red);
  EXPECT_EQ(Image.pixel(15, 15), NoColor);

  Load(QString::fromLatin1(Nested).arg(QStringLiteral("overflow='visible'")));
  EXPECT_EQ(Render().pixel(15, 15), Red);
}

TEST_F(Clipping, DisabledElementIsGreyedUnlessTheEventRefuses)
{
  Load(QStringLiteral("<rect id='r' width='20' height='20' fill='red'/>"));
  Element("r").SetEnabled(false);
  const QRgb Grey = Render().pixel(10, 10);
  EXPECT_EQ(qRed(Grey), qGreen(Grey));
  EXPECT_EQ(qGreen(Grey), qBlue(Grey));
  EXPECT_EQ(qAlpha(Grey), 255);

  Document.OnDisableAppearance = [](TObject *, TMatrix &, TVXGPCanvas &, TRectF &, bool &DoDefault) {
    DoDefault = false;
  };
  EXPECT_EQ(Render().pixel(10, 10), Red);
}

} // namespace
