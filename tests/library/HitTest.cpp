#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QImage>

using namespace vx;

namespace {

// Hit tests in a 20 by 20 document laid over a canvas of the same size, one user unit per pixel.
class HitTesting : public TPictureTest
{
protected:
  // The id of the element under (X, Y), or "" for none.
  QString Hit(float X, float Y, TSVGFindOptions Options = {})
  {
    const TSVGGraphicElement *Found = Document.ElementAtPos(Canvas, TPointF{X, Y}, TRectF{0, 0, 20, 20}, Options);
    return Found ? Found->ID() : QString();
  }

  QImage Image{20, 20, QImage::Format_ARGB32_Premultiplied};
  TVXGPCanvas Canvas{&Image};
};

struct THitCase
{
  const char *Name;
  const char *Body;
  float X, Y;
  TSVGFindOptions Options;
  const char *Expected;
};

const char OverlappingRects[] = "<rect id='a' width='12' height='12'/>"
                                "<rect id='b' x='8' y='8' width='12' height='12'/>";
const char ThinOutline[] = "<rect id='r' x='2' y='2' width='16' height='16' fill='none' stroke='black' "
                           "stroke-width='0.5'/>";
const char NestedGroups[] = "<g id='outer'><g id='inner'><rect id='r' x='5' y='5' width='10' height='10'/></g></g>";
const char SparseGroup[] = "<g id='g'><rect id='a' width='5' height='5'/><rect id='b' x='15' y='15' width='5' "
                           "height='5'/></g>";
const char HiddenGroup[] = "<g id='g' display='none'><rect id='r' width='20' height='20'/></g>";
const char Circle[] = "<circle id='c' cx='10' cy='10' r='10'/>";
const char Clipped[] = "<clipPath id='left'><rect width='10' height='20'/></clipPath>"
                       "<rect id='r' width='20' height='20' clip-path='url(#left)'/>";
const char UsedRect[] = "<defs><rect id='t' width='10' height='10'/></defs><use id='u' xlink:href='#t' x='5' y='5'/>";
const char MovedRect[] = "<rect id='r' width='5' height='5' transform='translate(10,10)'/>";

const THitCase HitCases[] = {
  {"the later of two overlapping rects wins", OverlappingRects, 10, 10, {}, "b"},
  {"the earlier rect where it is alone", OverlappingRects, 2, 2, {}, "a"},
  {"nothing beside both rects", OverlappingRects, 18, 2, {}, ""},
  {"a thin stroke is hit within 1.5 units", ThinOutline, 3.2f, 10, {}, "r"},
  {"a thin stroke is missed beyond the grace", ThinOutline, 4.5f, 10, {}, ""},
  {"an unfilled interior is missed", ThinOutline, 10, 10, {}, ""},
  {"an unfilled interior is hit with foFindNonFilled", ThinOutline, 10, 10, {foFindNonFilled}, "r"},
  {"fill none without a stroke is missed", "<rect id='r' width='20' height='20' fill='none'/>", 10, 10, {}, ""},
  {"fill none is hit with foFindNonFilled", "<rect id='r' width='20' height='20' fill='none'/>", 10, 10,
   {foFindNonFilled}, "r"},
  {"a leaf inside groups is reported", NestedGroups, 10, 10, {}, "r"},
  {"with foFindGroups the outermost group answers", NestedGroups, 10, 10, {foFindGroups}, "outer"},
  {"the empty space of a group finds nothing", SparseGroup, 10, 10, {foFindGroups}, ""},
  {"a child of a hidden group is not found", HiddenGroup, 10, 10, {}, ""},
  {"foFindHiddenElements finds it", HiddenGroup, 10, 10, {foFindHiddenElements}, "r"},
  {"outside the circle but inside its box", Circle, 1, 1, {}, ""},
  {"foUseBoundingBox lets the box decide", Circle, 1, 1, {foUseBoundingBox}, "c"},
  {"inside the clip", Clipped, 5, 10, {}, "r"},
  {"a clipped-away area is missed", Clipped, 15, 10, {}, ""},
  {"a use is reported, not its target", UsedRect, 12, 12, {}, "u"},
  {"a use is missed where its target is not drawn", UsedRect, 2, 2, {}, ""},
  {"a transformed element is hit where it is drawn", MovedRect, 12, 12, {}, "r"},
  {"a transformed element is missed where it would be untransformed", MovedRect, 2, 2, {}, ""},
};

TEST_F(HitTesting, FindsTheTopmostElement)
{
  for (const THitCase &Case : HitCases) {
    SCOPED_TRACE(Case.Name);
    Load(QString::fromLatin1(Case.Body));
    EXPECT_EQ(Hit(Case.X, Case.Y, Case.Options), QString::fromLatin1(Case.Expected));
  }
}

TEST_F(HitTesting, DisabledElementsNeedTheirOption)
{
  Load(QStringLiteral("<rect id='r' width='20' height='20'/>"));
  Element("r").SetEnabled(false);
  EXPECT_EQ(Hit(10, 10), QString());
  EXPECT_EQ(Hit(10, 10, {foFindDisabled}), QStringLiteral("r"));
}

TEST_F(HitTesting, ClippingOffIgnoresTheClipPath)
{
  Load(QString::fromLatin1(Clipped));
  TSVGOptions Options = Document.GetOptions();
  Options.Exclude(soApplyClipping);
  Document.SetOptions(Options);
  EXPECT_EQ(Hit(15, 10), QStringLiteral("r"));
}

TEST_F(HitTesting, OnElementFoundHasTheLastWord)
{
  Load(QString::fromLatin1(OverlappingRects));
  TSVGGraphicElement *Other = &Element("a");
  Document.OnElementFound = [&](TObject *Sender, TSVGGraphicElement *&Found) {
    EXPECT_EQ(Sender, &Document);
    if (Found->ID() == QLatin1String("b"))
      Found = Other;
  };
  EXPECT_EQ(Hit(10, 10), QStringLiteral("a"));
  Document.OnElementFound = [](TObject *, TSVGGraphicElement *&Found) { Found = nullptr; };
  EXPECT_EQ(Hit(10, 10), QString());
}

TEST_F(HitTesting, StrokeWidthFollowsTheViewUnlessNonScaling)
{
  // Four device units a user unit: the left side of the stroke, 2 units wide, covers device x 0 to 8.
  const QString Text = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 5 5'><rect id='r' "
                                      "x='1' y='1' width='3' height='3' fill='none' stroke='black' "
                                      "stroke-width='2' %1/></svg>");
  Document.LoadFromText(Text.arg(QString()));
  EXPECT_EQ(Hit(6, 10), QStringLiteral("r"));
  EXPECT_EQ(Hit(10, 10), QString());
  // Unscaled, the stroke is 2 device units and the grace of 3 decides: 1.5 on either side of x 4.
  Document.LoadFromText(Text.arg(QStringLiteral("vector-effect='non-scaling-stroke'")));
  EXPECT_EQ(Hit(5, 10), QStringLiteral("r"));
  EXPECT_EQ(Hit(6, 10), QString());
}

TEST_F(HitTesting, LeavesTheCanvasAsItWas)
{
  Load(QString::fromLatin1(Clipped) + QString::fromLatin1(ThinOutline));
  Canvas.Pen().SetThickness(7);
  const TRectF ClipBefore = Canvas.GetClipBounds();
  Hit(5, 10);
  Hit(3.2f, 10);
  EXPECT_FLOAT_EQ(Canvas.Pen().GetThickness(), 7);
  EXPECT_EQ(Canvas.HasClip(), false);
  const TRectF ClipAfter = Canvas.GetClipBounds();
  EXPECT_FLOAT_EQ(ClipAfter.Right, ClipBefore.Right);
}

} // namespace

TEST_F(HitTesting, StraightLinesAreHitOnTheirStroke)
{
  Load(QStringLiteral("<line id='h' x1='2' y1='10' x2='18' y2='10' stroke='black'/>"
                      "<line id='v' x1='5' y1='0' x2='5' y2='20' stroke='black'/>"));
  EXPECT_EQ(Hit(12, 10), QStringLiteral("h")) << "a flat bounding box does not hide the line";
  EXPECT_EQ(Hit(12, 11.2f), QStringLiteral("h")) << "within the grace of a thin stroke";
  EXPECT_EQ(Hit(5, 3), QStringLiteral("v"));
  EXPECT_EQ(Hit(12, 16), QString());
}
