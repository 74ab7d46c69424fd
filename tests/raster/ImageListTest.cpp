// The SVG image list: images follow the items, masters and dependents, Proportional, Quality, the
// cycle check, and pictures handed out at any size.
#include "platform/common/VXFiler.h"
#include "raster/VXSVGImageList.h"
#include "support/PictureTest.h"
#include "values/VXSVGException.h"

#include <QBuffer>
#include <QPainter>

#include <gtest/gtest.h>

namespace vx {
namespace {

// A wide picture: red left half, blue right half, in a 20 by 10 view box.
const QString Wide = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 20 10'>"
                                    "<rect width='10' height='10' fill='red'/><rect x='10' width='10' height='10' fill='blue'/></svg>");
// A square one, lime.
const QString Square = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 10 10'>"
                                      "<rect width='10' height='10' fill='lime'/></svg>");

TSVGCollectionItem &AddItem(TVXSVGImageList &List, const QString &Text)
{
  TSVGCollectionItem &Item = *List.Items().Add();
  TStringList Lines;
  Lines.SetText(Text);
  Item.SetLines(Lines);
  return Item;
}

// The stored form holds the items' text and options, no image data: a list read back draws them anew.
TEST(ImageListTest, StreamedItemsDrawAgainAfterLoading)
{
  TVXSVGImageList Source(16, 16);
  AddItem(Source, Square);
  AddItem(Source, Wide).SetProportional(false);
  Source.SetQuality(2);
  QBuffer Buffer;
  Buffer.open(QIODevice::ReadWrite);
  TWriter(Buffer).WriteRootPersistent(Source);

  TVXSVGImageList Copy(8, 8);
  AddItem(Copy, Wide);
  Buffer.seek(0);
  TReader(Buffer).ReadRootPersistent(Copy);
  ASSERT_EQ(Copy.Count(), 2);
  EXPECT_EQ(Copy.Width(), 16);
  EXPECT_EQ(Copy.Quality(), 2);
  EXPECT_EQ(Copy.GetImage(0).pixel(8, 8), Lime);
  EXPECT_FALSE(Copy.Items().Items(1)->Proportional());
  EXPECT_EQ(Copy.GetImage(1).pixel(4, 1), Red);
}

TEST(ImageListTest, ImagesFollowTheItemsOneByOne)
{
  TVXSVGImageList List(16, 16);
  AddItem(List, Square);
  TSVGCollectionItem &Second = AddItem(List, Square);
  ASSERT_EQ(List.Count(), 2);
  EXPECT_EQ(List.GetImage(1).pixel(8, 8), Lime);

  TStringList Lines;
  Lines.SetText(Wide);
  Second.SetLines(Lines);
  EXPECT_EQ(List.GetImage(1).pixel(4, 8), Red);
  EXPECT_EQ(List.GetImage(0).pixel(8, 8), Lime);

  List.Items().Delete(0);
  ASSERT_EQ(List.Count(), 1);
  EXPECT_EQ(List.GetImage(0).pixel(4, 8), Red);
}

// Proportional keeps the 2:1 picture in a band across the middle of the square cell; false
// stretches it over the whole cell even though the SVG asks for xMidYMid.
TEST(ImageListTest, ProportionalFalseStretchesThePicture)
{
  TVXSVGImageList List(16, 16);
  TSVGCollectionItem &Item = AddItem(List, Wide);
  EXPECT_EQ(List.GetImage(0).pixel(4, 1), NoColor);
  EXPECT_EQ(List.GetImage(0).pixel(4, 8), Red);

  Item.SetProportional(false);
  EXPECT_EQ(List.GetImage(0).pixel(4, 1), Red);
  EXPECT_EQ(List.GetImage(0).pixel(11, 14), Blue);

  TStringList Lines;
  Lines.SetText(QString(Wide).replace(QStringLiteral("viewBox="), QStringLiteral("preserveAspectRatio='xMidYMid' viewBox=")));
  Item.SetLines(Lines);
  EXPECT_EQ(List.GetImage(0).pixel(4, 1), Red);
}

TEST(ImageListTest, DependentDrawsTheMastersItemsAtItsOwnSize)
{
  TVXSVGImageList Master(16, 16), Dependent(32, 32);
  AddItem(Master, Square);
  AddItem(Master, Wide);
  Dependent.SetMasterImageList(&Master);
  ASSERT_EQ(Dependent.Count(), 2);
  EXPECT_EQ(Dependent.GetImage(0).size(), QSize(32, 32));
  EXPECT_EQ(Dependent.GetImage(0).pixel(30, 30), Lime);
  EXPECT_EQ(Dependent.GetImage(1).pixel(4, 16), Red);

  AddItem(Master, Square);
  EXPECT_EQ(Dependent.Count(), 3);
  Master.Items().Delete(0);
  EXPECT_EQ(Dependent.Count(), 2);
  EXPECT_EQ(Dependent.GetImage(0).pixel(4, 16), Red);

  // Items of its own make a dependent leave its master.
  AddItem(Dependent, Square);
  EXPECT_EQ(Dependent.MasterImageList(), nullptr);
  EXPECT_EQ(Master.GetDependentImageListCount(), 0);
  EXPECT_EQ(Dependent.Count(), 1);
}

TEST(ImageListTest, ADependentOutlivesItsMaster)
{
  TVXSVGImageList Dependent(32, 32);
  {
    TVXSVGImageList Master(16, 16);
    AddItem(Master, Square);
    Dependent.SetMasterImageList(&Master);
    EXPECT_EQ(Dependent.Count(), 1);
  }
  EXPECT_EQ(Dependent.MasterImageList(), nullptr);
  EXPECT_EQ(Dependent.Count(), 0);
}

TEST(ImageListTest, AMasterCycleIsRefused)
{
  TVXSVGImageList A, B, C;
  AddItem(A, Square);
  B.SetMasterImageList(&A);
  C.SetMasterImageList(&B);
  for (TVXSVGImageList *List : {&A, &B}) {
    TVXSVGImageList *Master = List == &A ? &C : List;
    try {
      List->SetMasterImageList(Master);
      ADD_FAILURE() << "no exception";
    } catch (const ESVGException &E) {
      EXPECT_EQ(E.Message(), QStringLiteral("Circular reference detected"));
    }
  }
  EXPECT_EQ(A.MasterImageList(), nullptr);
  A.SetSize(24, 24);
  EXPECT_EQ(C.GetImage(0).pixel(8, 8), Lime);
}

// Quality 4 draws four times as large and scales down: an aliased edge in the middle of a pixel
// becomes a half-covered pixel.
TEST(ImageListTest, QualitySupersamples)
{
  TVXSVGImageList List(16, 16);
  AddItem(List, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16'>"
                               "<rect width='7.5' height='16' fill='red' shape-rendering='optimizeSpeed'/></svg>"));
  const auto EdgeAlpha = [&List] { return qAlpha(List.GetImage(0).pixel(7, 8)); };
  EXPECT_TRUE(EdgeAlpha() == 0 || EdgeAlpha() == 255) << EdgeAlpha();
  List.SetQuality(4);
  EXPECT_EQ(List.GetImage(0).size(), QSize(16, 16));
  EXPECT_GT(EdgeAlpha(), 40);
  EXPECT_LT(EdgeAlpha(), 215);
  List.SetQuality(20);
  EXPECT_EQ(List.Quality(), 8);
}

TEST(ImageListTest, HandsOutPicturesAtAnySize)
{
  TVXSVGImageList Master(16, 16), Dependent(32, 32);
  AddItem(Master, Wide);
  Dependent.SetMasterImageList(&Master);
  for (TVXSVGImageList *List : {&Master, &Dependent}) {
    const QImage Large = List->GetPixmap(0, QSize(64, 64)).toImage();
    ASSERT_EQ(Large.size(), QSize(64, 64));
    EXPECT_EQ(Large.pixel(30, 32), Red);
    EXPECT_EQ(Large.pixel(33, 32), Blue);
    const QImage Icon = List->GetIcon(0).pixmap(QSize(128, 128)).toImage();
    ASSERT_EQ(Icon.size(), QSize(128, 64));
    EXPECT_EQ(Icon.pixel(63, 32), Red);
    EXPECT_EQ(Icon.pixel(64, 32), Blue);
  }
}

// Controls get the picture drawn in vector form at the list's size, greyed when disabled.
TEST(ImageListTest, DrawPaintsTheDocument)
{
  TVXSVGImageList List(16, 16);
  AddItem(List, Square);
  QImage Image(40, 40, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    QPainter Painter(&Image);
    List.Draw(Painter, 10, 10, 0);
    List.Draw(Painter, 20, 20, 0, false);
  }
  EXPECT_EQ(Image.pixel(12, 12), Lime);
  EXPECT_EQ(Image.pixel(5, 5), NoColor);
  EXPECT_NEAR(qAlpha(Image.pixel(35, 35)), 128, 1);
}

TEST(ImageListTest, AssignCopiesSizeQualityAndItems)
{
  TVXSVGImageList Source(24, 24), Copy;
  Source.SetQuality(2);
  AddItem(Source, Square);
  Copy.Assign(&Source);
  EXPECT_EQ(Copy.Width(), 24);
  EXPECT_EQ(Copy.Quality(), 2);
  ASSERT_EQ(Copy.Count(), 1);
  EXPECT_EQ(Copy.GetImage(0).pixel(12, 12), Lime);
  EXPECT_NE(Copy.Items().Items(0), Source.Items().Items(0));
}

} // namespace
} // namespace vx
