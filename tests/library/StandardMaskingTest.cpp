// Clip paths and masks on both roads: each case is drawn with the classic rules and under
// soStandardSVG, and probed in both.
#include "structure/VXSVGMask.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>

#include <cstdint>
#include <vector>

using namespace vx;

namespace {

struct TProbe
{
  int X, Y;
  QRgb Color;
};

struct TMaskingCase
{
  const char *Name;
  const char *Body;
  std::vector<TProbe> Classic;
  std::vector<TProbe> Standard;
};

class StandardMasking : public TPictureTest
{
protected:
  void ExpectProbes(const std::vector<TProbe> &Probes)
  {
    const QImage Image = Render();
    for (const TProbe &P : Probes)
      EXPECT_EQ(Image.pixel(P.X, P.Y), P.Color) << "at " << P.X << "," << P.Y;
  }
  void ExpectCases(const std::vector<TMaskingCase> &Cases, const QString &Client)
  {
    for (const TMaskingCase &Case : Cases) {
      SCOPED_TRACE(Case.Name);
      LoadIn(false, QString::fromLatin1(Case.Body) + Client);
      ExpectProbes(Case.Classic);
      LoadIn(true, QString::fromLatin1(Case.Body) + Client);
      ExpectProbes(Case.Standard);
    }
  }
};

const QString ClippedSquare = QStringLiteral("<rect width='20' height='20' fill='red' clip-path='url(#c)'/>");
const QString MaskedSquare = QStringLiteral("<rect width='20' height='20' fill='red' mask='url(#m)'/>");
const QString LeftHalf = QStringLiteral("<rect width='10' height='20' fill='white'/>");

TEST_F(StandardMasking, ClipPaths)
{
  ExpectCases(
    {
      {"an empty clip path hides everything", "<clipPath id='c'/>", {{10, 10, Red}}, {{10, 10, NoColor}}},
      {"hidden children leave the clip path empty",
       "<clipPath id='c'><rect width='10' height='20' visibility='hidden'/></clipPath>", {{15, 10, Red}},
       {{5, 10, NoColor}, {15, 10, NoColor}}},
      {"objectBoundingBox units scale to the clipped element",
       "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='0.5' height='1'/></clipPath>",
       {{5, 10, NoColor}, {15, 10, NoColor}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"the clip path's transform counts once",
       "<clipPath id='c' transform='translate(5,0)'><rect width='5' height='20'/></clipPath>",
       {{7, 10, Red}, {12, 10, NoColor}}, {{7, 10, Red}, {12, 10, NoColor}}},
      {"clip-path on a child cuts that child",
       "<clipPath id='top'><rect width='20' height='10'/></clipPath>"
       "<clipPath id='c'><rect width='10' height='20' clip-path='url(#top)'/></clipPath>",
       {{5, 5, Red}, {5, 15, Red}}, {{5, 5, Red}, {5, 15, NoColor}, {15, 5, NoColor}}},
      {"clip-path on the clip path cuts its region",
       "<clipPath id='top'><rect width='20' height='10'/></clipPath>"
       "<clipPath id='c' clip-path='url(#top)'><rect width='10' height='20'/></clipPath>",
       {{5, 15, Red}}, {{5, 5, Red}, {5, 15, NoColor}}},
      {"a use child adds its shape",
       "<defs><rect id='half' width='10' height='20'/></defs><clipPath id='c'><use xlink:href='#half'/></clipPath>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"a use of a group adds nothing",
       "<defs><g id='half'><rect width='10' height='20'/></g></defs>"
       "<clipPath id='c'><use xlink:href='#half'/></clipPath>",
       {{5, 10, Red}}, {{5, 10, NoColor}}},
      {"a child whose language does not match adds nothing",
       "<clipPath id='c'><rect width='10' height='20'/>"
       "<rect x='10' width='10' height='20' systemLanguage='xx-unknown'/></clipPath>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"a clip path naming itself skips that reference",
       "<clipPath id='c' clip-path='url(#c)'><rect width='10' height='20' clip-path='url(#c)'/></clipPath>",
       {{5, 10, Red}, {15, 10, NoColor}}, {{5, 10, Red}, {15, 10, NoColor}}},
    },
    ClippedSquare);
}

TEST_F(StandardMasking, ClipPathOnTheRoot)
{
  for (bool Standard : {false, true}) {
    Document.SetOptions(Standard ? DefaultSVGOptions | soStandardSVG : DefaultSVGOptions);
    Document.LoadFromText(QStringLiteral(
      "<svg xmlns='http://www.w3.org/2000/svg' width='20' height='20' viewBox='0 0 20 20' clip-path='url(#c)'>"
      "<clipPath id='c'><rect width='10' height='20'/></clipPath><rect width='20' height='20' fill='red'/></svg>"));
    EXPECT_EQ(Render().pixel(15, 10), Standard ? NoColor : Red);
  }
}

TEST_F(StandardMasking, Masks)
{
  ExpectCases(
    {
      {"white shows, black hides", "<mask id='m'><rect width='10' height='20' fill='white'/></mask>",
       {{5, 10, Red}, {15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"an empty mask hides everything", "<mask id='m'/>", {{5, 10, Red}}, {{5, 10, NoColor}}},
      {"userSpaceOnUse region", "<mask id='m' maskUnits='userSpaceOnUse' width='10' height='20'>"
                                "<rect width='20' height='20' fill='white'/></mask>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"objectBoundingBox region", "<mask id='m' x='0' y='0' width='0.5' height='1'>"
                                   "<rect width='20' height='20' fill='white'/></mask>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"objectBoundingBox contents", "<mask id='m' maskContentUnits='objectBoundingBox'>"
                                     "<rect width='0.5' height='1' fill='white'/></mask>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"black is opaque to an alpha mask", "<mask id='m' mask-type='alpha'><rect width='10' height='20'/></mask>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"a mask on the mask cuts its contents",
       "<mask id='top'><rect width='20' height='10' fill='white'/></mask>"
       "<mask id='m' mask='url(#top)'><rect width='10' height='20' fill='white'/></mask>",
       {{5, 15, Red}}, {{5, 5, Red}, {5, 15, NoColor}, {15, 5, NoColor}}},
      {"a mask naming itself skips that reference",
       "<mask id='m' mask='url(#m)'><rect width='10' height='20' fill='white' mask='url(#m)'/></mask>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
      {"a cycle through the contents of two masks ends",
       "<mask id='m'><rect width='10' height='20' fill='white' mask='url(#n)'/></mask>"
       "<mask id='n'><rect width='20' height='20' fill='white' mask='url(#m)'/></mask>",
       {{15, 10, Red}}, {{5, 10, Red}, {15, 10, NoColor}}},
    },
    MaskedSquare);
}

TEST_F(StandardMasking, LuminanceAndOpacityScaleCoverage)
{
  for (const char *Body :
       {"<mask id='m'><rect width='20' height='20' fill='#808080'/></mask>"
        "<rect width='20' height='20' fill='red' mask='url(#m)'/>",
        "<mask id='m'><rect width='20' height='20' fill='white'/></mask>"
        "<rect width='20' height='20' fill='red' opacity='0.5' mask='url(#m)'/>"}) {
    SCOPED_TRACE(Body);
    LoadIn(true, QString::fromLatin1(Body));
    EXPECT_NEAR(qAlpha(Render().pixel(10, 10)), 128, 2);
  }
}

TEST_F(StandardMasking, MaskElementIsReadOnTheStandardRoadOnly)
{
  const QString Body = QStringLiteral("<mask id='m'/><g id='g' mask='url(#m)'/>");
  LoadIn(false, Body);
  EXPECT_EQ(Document.AllItems().Elements(QStringLiteral("m")), nullptr);
  EXPECT_TRUE(Element("g").MaskURI().isEmpty());
  LoadIn(true, Body);
  EXPECT_EQ(Element<TSVGMask>("m").Units(), csuObjectBoundingBox);
  EXPECT_EQ(Element("g").GetMaskURIElement(), &Element("m"));
}

TEST_F(StandardMasking, SavedMasksDrawTheSame)
{
  LoadIn(true, QStringLiteral("<mask id='m' maskUnits='userSpaceOnUse' maskContentUnits='objectBoundingBox' "
                              "mask-type='alpha' x='0' y='0' width='20' height='10'>"
                              "<rect width='0.5' height='1'/></mask>"
                              "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='0.5'/></clipPath>"
                              "<rect width='20' height='20' fill='red' mask='url(#m)' clip-path='url(#c)'/>"));
  const QImage Before = Render();
  QBuffer Buffer;
  Buffer.open(QIODevice::ReadWrite);
  Document.SaveToStream(Buffer);
  Document.LoadFromText(QString::fromUtf8(Buffer.data()));
  EXPECT_EQ(Render(), Before);
  EXPECT_EQ(Before.pixel(5, 5), Red);
  EXPECT_EQ(Before.pixel(15, 5), NoColor);
  EXPECT_EQ(Before.pixel(5, 15), NoColor);
}

// A mask over an output larger than the layer budget is drawn at a lower resolution, not refused.
TEST_F(StandardMasking, HugeMaskedAreaStaysWithinTheLayerBudget)
{
  LoadIn(true, QStringLiteral("<mask id='m' maskUnits='userSpaceOnUse' x='-1e9' y='-1e9' width='2e9' height='2e9'>") +
                 LeftHalf + QStringLiteral("</mask>") + MaskedSquare);
  constexpr int Side = 3000;
  static_assert(std::int64_t(Side) * Side > TSVGMask::MaxLayerPixels);
  QImage Image(Side, Side, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&Image);
    Document.Draw(Canvas, TRectF{0, 0, float(Side), float(Side)});
  }
  EXPECT_EQ(Image.pixel(Side / 4, Side / 2), Red);
  EXPECT_EQ(Image.pixel(Side * 3 / 4, Side / 2), NoColor);
}

} // namespace
