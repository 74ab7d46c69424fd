#include "shapes/VXSVGPath.h"
#include "support/PictureTest.h"
#include "support/RecordingCanvas.h"

#include <gtest/gtest.h>

#include <QImage>

#include <memory>

using namespace vx;

namespace {

class Path : public TPictureTest
{
protected:
  QStringList Record()
  {
    TRecordingCanvas Canvas(20, 20);
    Document.Draw(Canvas, TRectF{0, 0, 20, 20});
    return Canvas.Calls({QStringLiteral("FillPath"), QStringLiteral("DrawPath")});
  }
  TSVGPath &PathElement(const char *Id) { return Element<TSVGPath>(Id); }
};

TVXPathData PathData(const char *Text)
{
  TVXPathData Result;
  Result.SetPathString(QString::fromUtf8(Text));
  return Result;
}

} // namespace

TEST_F(Path, WithoutDataNothingIsDrawn)
{
  Load(QStringLiteral("<path id='p' stroke='blue'/><path id='move' d='M5 5' stroke='blue'/>"));
  EXPECT_EQ(PathElement("p").Data().GetCount(), 0);
  EXPECT_EQ(PathElement("p").GetBoundsRect(), TRectF{});
  EXPECT_EQ(PathElement("move").Data().GetCount(), 1);
  EXPECT_EQ(Record().size(), 2) << "only the lone move reaches the canvas, as an empty figure";
  const QImage Image = Render();
  for (int Y = 0; Y < 20; ++Y)
    for (int X = 0; X < 20; ++X)
      ASSERT_EQ(qAlpha(Image.pixel(X, Y)), 0) << X << ',' << Y;
}

TEST_F(Path, ArcsAreDrawnAlongTheCircle)
{
  // The upper half of a disc of radius 8 around (10, 10).
  Load(QStringLiteral("<path id='p' d='M2 10 A8 8 0 0 1 18 10 Z' fill='red'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(10, 4), Red);
  EXPECT_EQ(Image.pixel(4, 8), Red);
  EXPECT_EQ(Image.pixel(10, 14), NoColor);
  EXPECT_EQ(Image.pixel(3, 3), NoColor) << "outside the arc, inside its chord's square";
  const TRectF B = PathElement("p").GetShape()->GetBounds();
  EXPECT_NEAR(B.Top, 2, 0.01);
  EXPECT_NEAR(B.Left, 2, 0.01);
  EXPECT_NEAR(B.Right, 18, 0.01);
}

TEST_F(Path, RelativeCommandsFillRuleAndStroke)
{
  Load(QStringLiteral("<path d='M2 2h16v16h-16z m4 4h8v8h-8z' fill='red' fill-rule='evenodd' stroke='blue'"
                      " stroke-width='2'/>"));
  const QImage Image = Render();
  EXPECT_EQ(Image.pixel(10, 10), NoColor);
  EXPECT_EQ(Image.pixel(4, 10), Red);
  EXPECT_EQ(Image.pixel(2, 10), Blue);
  EXPECT_EQ(Image.pixel(6, 10), Blue);
}

TEST_F(Path, ShapeCacheFollowsTheData)
{
  Load(QStringLiteral("<path id='p' d='M1 1 L5 5'/>"));
  TSVGPath &P = PathElement("p");
  EXPECT_EQ(P.GetShape()->Count(), 2);
  P.SetData(PathData("M0 0 L10 0 L10 10 Z"));
  EXPECT_EQ(P.GetShape()->Count(), 4) << "a change of the data drops the cached shape";
  EXPECT_EQ(P.GetBoundsRect(), (TRectF{0, 0, 10, 10}));
}

TEST_F(Path, LengthAndRatio)
{
  Load(QStringLiteral("<path id='given' d='M0 0 H100' pathLength='50'/>"
                      "<path id='bad' d='M0 0 H30 V40' pathLength='abc'/>"
                      "<path id='empty' pathLength='10'/>"));
  EXPECT_DOUBLE_EQ(PathElement("given").GetPathLength(), 50);
  EXPECT_NEAR(PathElement("given").GetLengthRatio(), 0.5, 1e-9);
  EXPECT_NEAR(PathElement("bad").GetPathLength(), 70, 1e-4) << "no number: the length is measured";
  EXPECT_NEAR(PathElement("bad").GetLengthRatio(), 1, 1e-9);
  EXPECT_DOUBLE_EQ(PathElement("empty").GetLengthRatio(), 0) << "no division by zero";

  TSVGPath &Bad = PathElement("bad");
  Bad.SetData(PathData("M0 0 H10"));
  EXPECT_NEAR(Bad.GetPathLength(), 70, 1e-4) << "the measured length stays";
  EXPECT_NEAR(Bad.GetLengthRatio(), 7, 1e-4);
}

TEST_F(Path, CopiesTakeTheDataButNotTheLength)
{
  Load(QStringLiteral("<path id='p' d='M0 0 H100' pathLength='50'/>"));
  const std::unique_ptr<TSVGElement> Copy(PathElement("p").Clone(nullptr));
  auto &Path = dynamic_cast<TSVGPath &>(*Copy);
  EXPECT_EQ(Path.Data().GetPathString(), PathElement("p").Data().GetPathString());
  EXPECT_NEAR(Path.GetPathLength(), 100, 1e-4);

  PathElement("p").Clear();
  EXPECT_EQ(PathElement("p").Data().GetCount(), 0);
  EXPECT_DOUBLE_EQ(PathElement("p").GetPathLength(), 0) << "Clear forgets the given length";
  EXPECT_EQ(PathElement("p").GetShape()->Count(), 0);
  EXPECT_EQ(Path.Data().GetCount(), 2) << "the copy keeps its own data";
}
