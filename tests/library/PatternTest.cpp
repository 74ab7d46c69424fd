#include "structure/VXSVGPattern.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>

#include <vector>

using namespace vx;

namespace {

// Patterns filling a 40 by 40 document, one unit per pixel.
class Patterns : public TPictureTest
{
protected:
  Patterns() : TPictureTest(40) {}
};

struct TProbe
{
  int X, Y;
  QRgb Expected;
};

struct TPatternCase
{
  const char *Name;
  const char *Body;
  std::vector<TProbe> Probes;
};

// Each tile of the cases holds a red square in its top-left quarter; probes are taken at pixel
// centres well inside or outside those squares.
const TPatternCase DrawCases[] = {
  {"a tile in user space repeats from its corner",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='5' height='5' fill='red'/>"
   "</pattern><rect width='40' height='40' fill='url(#p)'/>",
   {{2, 2, Red}, {7, 7, NoColor}, {12, 2, Red}, {17, 2, NoColor}, {32, 32, Red}, {37, 32, NoColor}}},
  {"x and y move the tiles and the contents with them",
   "<pattern id='p' patternUnits='userSpaceOnUse' x='5' y='5' width='10' height='10'>"
   "<rect width='5' height='5' fill='red'/></pattern><rect width='40' height='40' fill='url(#p)'/>",
   {{7, 7, Red}, {2, 2, NoColor}, {17, 17, Red}, {12, 12, NoColor}}},
  {"a tile in bounding-box units is a fraction of the painted box",
   "<pattern id='p' width='0.5' height='0.5'><rect width='5' height='5' fill='red'/></pattern>"
   "<rect x='10' y='10' width='20' height='20' fill='url(#p)'/>",
   {{12, 12, Red}, {17, 17, NoColor}, {22, 22, Red}, {27, 12, NoColor}, {5, 5, NoColor}}},
  {"a percentage in bounding-box units is the same fraction",
   "<pattern id='p' width='50%' height='50%'><rect width='5' height='5' fill='red'/></pattern>"
   "<rect x='10' y='10' width='20' height='20' fill='url(#p)'/>",
   {{12, 12, Red}, {17, 17, NoColor}, {22, 22, Red}}},
  {"x and y in bounding-box units are plain offsets from the box",
   "<pattern id='p' x='4' y='4' width='0.5' height='0.5'><rect width='5' height='5' fill='red'/></pattern>"
   "<rect x='10' y='10' width='20' height='20' fill='url(#p)'/>",
   {{16, 16, Red}, {12, 12, NoColor}, {26, 26, Red}}},
  {"content units leave the contents in the tile's space",
   "<pattern id='p' width='0.5' height='0.5' patternContentUnits='objectBoundingBox'>"
   "<rect width='5' height='5' fill='red'/></pattern><rect x='10' y='10' width='20' height='20' fill='url(#p)'/>",
   {{12, 12, Red}, {17, 17, NoColor}, {22, 22, Red}}},
  {"the view box maps into the tile",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' viewBox='0 0 2 2'>"
   "<rect width='1' height='1' fill='red'/></pattern><rect width='40' height='40' fill='url(#p)'/>",
   {{2, 2, Red}, {7, 7, NoColor}, {12, 12, Red}}},
  {"the pattern transform scales tile and contents",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='5' height='5' patternTransform='scale(2)'>"
   "<rect width='2.5' height='2.5' fill='red'/></pattern><rect width='40' height='40' fill='url(#p)'/>",
   {{2, 2, Red}, {7, 7, NoColor}, {12, 12, Red}, {17, 2, NoColor}}},
  {"a pattern with an href and no children draws the target's contents in its own tile",
   "<pattern id='a' patternUnits='userSpaceOnUse' width='20' height='20'><rect width='5' height='5' fill='red'/>"
   "</pattern><pattern id='b' patternUnits='userSpaceOnUse' width='10' height='10' xlink:href='#a'/>"
   "<rect width='40' height='40' fill='url(#b)'/>",
   {{2, 2, Red}, {12, 12, Red}, {7, 7, NoColor}}},
  {"an href lends contents, not the tile",
   "<pattern id='a' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='5' height='5' fill='red'/>"
   "</pattern><pattern id='b' xlink:href='#a' height='20'/><rect width='40' height='40' fill='url(#b)'/>",
   {{2, 2, NoColor}, {12, 2, NoColor}}},
  {"the target's contents go on top of the own ones",
   "<pattern id='a' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='5' height='5' fill='red'/>"
   "</pattern><pattern id='b' patternUnits='userSpaceOnUse' width='10' height='10' xlink:href='#a'>"
   "<rect width='10' height='10' fill='blue'/></pattern><rect width='40' height='40' fill='url(#b)'/>",
   {{2, 2, Red}, {7, 7, Blue}}},
  {"a stroke takes the pattern too",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='5' height='5' fill='red'/>"
   "</pattern><rect x='2' y='2' width='30' height='30' fill='none' stroke='url(#p)' stroke-width='4'/>",
   {{2, 12, Red}, {2, 17, NoColor}, {12, 12, NoColor}}},
  {"a pattern in the tree is not drawn where it stands",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='40' height='40' fill='red'/>"
   "</pattern>",
   {{2, 2, NoColor}, {20, 20, NoColor}}},
  {"a width of 0 paints nothing",
   "<pattern id='p' patternUnits='userSpaceOnUse' width='0' height='10'><rect width='5' height='5' fill='red'/>"
   "</pattern><rect width='40' height='40' fill='url(#p)'/>",
   {{2, 2, NoColor}}},
};

TEST_F(Patterns, TilesFillTheShape)
{
  for (const TPatternCase &Case : DrawCases) {
    SCOPED_TRACE(Case.Name);
    Load(QString::fromUtf8(Case.Body));
    const QImage Image = Render();
    for (const TProbe &Probe : Case.Probes)
      EXPECT_EQ(Image.pixel(Probe.X, Probe.Y), Probe.Expected) << "at " << Probe.X << ", " << Probe.Y;
  }
}

TEST_F(Patterns, BitmapHasTheTruncatedTileSize)
{
  struct TSizeCase
  {
    const char *Pattern;
    int Width, Height;
  };
  const TSizeCase Cases[] = {
    {"<pattern id='p' patternUnits='userSpaceOnUse' width='12.9' height='12.9'/>", 12, 12},
    {"<pattern id='p' width='0.25' height='0.5'/>", 25, 50},
    {"<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='4' patternTransform='scale(3)'/>", 30, 12},
    {"<pattern id='p' patternUnits='userSpaceOnUse' width='0' height='4'/>", 0, 0},
  };
  for (const TSizeCase &Case : Cases) {
    SCOPED_TRACE(Case.Pattern);
    Load(QString::fromUtf8(Case.Pattern) + QStringLiteral("<rect id='r' width='100' height='100'/>"));
    const std::shared_ptr<TVXGPBitmap> Bitmap =
      Element<TSVGPattern>("p").GetPattern(Element("r"), VXIdentityMatrix, TRectF{0, 0, 100, 100});
    ASSERT_NE(Bitmap, nullptr);
    EXPECT_EQ(Bitmap->GetWidth(), Case.Width);
    EXPECT_EQ(Bitmap->GetHeight(), Case.Height);
  }
}

// Each picture refers back into itself; the rest of it (a red square at the bottom right) is drawn.
TEST_F(Patterns, LoopsAndHugeTilesEndQuickly)
{
  const char *const Cases[] = {
    "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'>"
    "<rect width='10' height='10' fill='url(#p)' stroke='black'/></pattern>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' xlink:href='#p'>"
    "<rect width='5' height='5'/></pattern>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10' xlink:href='#q'>"
    "<rect width='5' height='5'/></pattern>"
    "<pattern id='q' patternUnits='userSpaceOnUse' width='10' height='10' xlink:href='#p'/>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='5' height='5' "
    "fill='url(#q)'/></pattern><pattern id='q' patternUnits='userSpaceOnUse' width='10' height='10'>"
    "<rect width='5' height='5' fill='url(#p)'/></pattern>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'><rect width='5' height='5' "
    "fill='url(#q)'/></pattern><pattern id='q' xlink:href='#p'/>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'>"
    "<pattern id='q' xlink:href='#p'/><rect width='5' height='5' fill='url(#q)'/></pattern>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='1e6' height='1e6'><rect width='5' height='5'/></pattern>",
    "<pattern id='p' patternUnits='userSpaceOnUse' width='16000' height='16000'><rect width='5' height='5'/>"
    "</pattern>",
  };
  for (const char *Pattern : Cases) {
    SCOPED_TRACE(Pattern);
    Load(QString::fromUtf8(Pattern) + QStringLiteral("<rect width='30' height='30' fill='url(#p)'/>"
                                                     "<rect x='35' y='35' width='5' height='5' fill='red'/>"));
    QElapsedTimer Timer;
    Timer.start();
    EXPECT_EQ(Render().pixel(37, 37), Red);
    EXPECT_LT(Timer.elapsed(), 2000);
  }
}

TEST_F(Patterns, SelfUseLeavesTheOtherContents)
{
  Load(QStringLiteral("<pattern id='p' patternUnits='userSpaceOnUse' width='10' height='10'>"
                      "<rect width='5' height='5' fill='red'/><rect x='5' y='5' width='5' height='5' fill='url(#p)'/>"
                      "</pattern><rect width='40' height='40' fill='url(#p)'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(2, 2), Red);
  EXPECT_EQ(Image.pixel(7, 7), NoColor);
}

TEST_F(Patterns, SaveAndLoadKeepThePattern)
{
  Load(QStringLiteral("<pattern id='a' patternUnits='userSpaceOnUse' width='10' height='10'>"
                      "<rect width='5' height='5' fill='red'/></pattern>"
                      "<pattern id='p' x='0.1' width='0.25' height='0.5' patternContentUnits='objectBoundingBox' "
                      "patternTransform='translate(2,3)' viewBox='0 0 4 4' xlink:href='#a'/>"
                      "<rect width='40' height='40' fill='url(#p)'/>"));
  const QImage Before = Render();
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Document.SaveToStream(Buffer);
  TSVGDocument Reloaded;
  Reloaded.LoadFromText(QString::fromUtf8(Buffer.data()));
  auto *Pattern = dynamic_cast<TSVGPattern *>(Reloaded.AllItems().Elements(QStringLiteral("p")));
  ASSERT_NE(Pattern, nullptr) << Buffer.data().constData();
  EXPECT_EQ(Pattern->Reference(), QStringLiteral("a"));
  EXPECT_EQ(Pattern->Units(), csuObjectBoundingBox);
  EXPECT_EQ(Pattern->ContentUnits(), csuObjectBoundingBox);
  EXPECT_TRUE(VXMatrixEquals(Pattern->PatternMatrix(), CreateTranslateVXMatrix(2, 3), 1e-5f));
  EXPECT_FLOAT_EQ(Pattern->WidthU().GetPixels(), 0.25f);
  EXPECT_TRUE(Pattern->IsViewBoxSpecified());
  // The defaults are written too.
  EXPECT_TRUE(Buffer.data().contains("patternUnits=\"objectBoundingBox\"")) << Buffer.data().constData();
  EXPECT_TRUE(Buffer.data().contains("patternContentUnits=\"userSpaceOnUse\"")) << Buffer.data().constData();

  QImage After(40, 40, QImage::Format_ARGB32_Premultiplied);
  After.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&After);
    Reloaded.Draw(Canvas, TRectF{0, 0, 40, 40});
  }
  EXPECT_EQ(After, Before);
}

TEST_F(Patterns, CopiesAndReferencesFollowTheTarget)
{
  Load(QStringLiteral("<pattern id='a'/><pattern id='p' patternUnits='userSpaceOnUse' "
                      "patternContentUnits='objectBoundingBox'/>"));
  TSVGPattern &Pattern = Element<TSVGPattern>("p");
  Pattern.SetReference(QStringLiteral("a"));
  EXPECT_EQ(Element("a").Listeners().Count(), 1);
  std::unique_ptr<TSVGElement> Copy(Pattern.Clone(&Document));
  const auto &Copied = dynamic_cast<const TSVGPattern &>(*Copy);
  EXPECT_EQ(Copied.Reference(), QStringLiteral("a"));
  EXPECT_EQ(Copied.Units(), csuUserSpaceOnUse);
  EXPECT_EQ(Copied.ContentUnits(), csuObjectBoundingBox);
  Copy.reset();
  Document.Items().Remove(&Element("a"));
  EXPECT_EQ(Pattern.Reference(), QString());
  Pattern.Clear();
  EXPECT_EQ(Pattern.Units(), csuObjectBoundingBox);
  EXPECT_EQ(Pattern.ContentUnits(), csuUserSpaceOnUse);
}

} // namespace
