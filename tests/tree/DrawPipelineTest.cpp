#include "structure/VXSVGGroups.h"
#include "support/RecordingCanvas.h"
#include "tree/VXSVG.h"
#include "values/VXSVGColors.h"

#include <algorithm>

#include <gtest/gtest.h>

using namespace vx;

namespace {

// A leaf with a fixed 10 by 10 square as its geometry, so the frame can be watched without shapes.
class TTestBox : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TTestBox)

public:
  using TSVGGraphicElement::TSVGGraphicElement;
  TSVGElementType SVGType() const override { return etGroup; }
  TRectF GetBoundsRect() const override { return TRectF{0, 0, 10, 10}; }
  TVXGPPath *GetShape() override
  {
    if (FShapeCacheChanged) {
      FShape.Clear();
      FShape.AddRectangle(TRectF{0, 0, 10, 10});
    }
    return TSVGGraphicElement::GetShape();
  }
};
VX_SVG_ELEMENT_CLASS_INFO(TTestBox)

class DrawPipeline : public ::testing::Test
{
protected:
  DrawPipeline()
  {
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40' "
                                         "viewBox='0 0 40 40'><g id='g'/></svg>"));
    Group = dynamic_cast<TSVGGraphicElement *>(Document.AllItems().Elements(QStringLiteral("g")));
    First = AddBox(*Group, QStringLiteral("first"));
    Second = AddBox(*Group, QStringLiteral("second"));
  }
  TTestBox *AddBox(TSVGElement &Parent, const QString &Id)
  {
    auto *Box = new TTestBox(&Document);
    Box->SetID(Id);
    Parent.Items().Add(Box);
    return Box;
  }
  void Style(TSVGGraphicElement &Element, const char *Text)
  {
    TSVGStyle Rule;
    Rule.AddStyle(QString::fromUtf8(Text));
    Element.ApplyStyle(Rule);
  }
  QStringList Draw()
  {
    Canvas.Log.clear();
    Document.Draw(Canvas, TRectF{0, 0, 40, 40});
    return Canvas.Log;
  }

  TSVGDocument Document;
  TSVGGraphicElement *Group = nullptr;
  TTestBox *First = nullptr;
  TTestBox *Second = nullptr;
  TRecordingCanvas Canvas{40, 40};
};

QStringList Only(const QStringList &Log, const QString &Name)
{
  QStringList Result;
  for (const QString &Entry : Log)
    if (Entry.startsWith(Name))
      Result.append(Entry);
  return Result;
}

} // namespace

TEST_F(DrawPipeline, EachElementSetsUpTheCanvasInsideItsOwnSavePoint)
{
  Style(*First, "stroke:blue");
  const QStringList Log = Draw();
  QStringList Frame;
  for (const QString &Entry : Log) {
    const QString Name = Entry.section(QLatin1Char('('), 0, 0);
    if (Name == QLatin1String("SaveState") || Name == QLatin1String("RestoreState") ||
        Name == QLatin1String("FillPath") || Name == QLatin1String("DrawPath"))
      Frame.append(Name);
  }
  // The document's viewport save point, then the document, the group and each box, nested.
  const QStringList Expected{QStringLiteral("SaveState"), QStringLiteral("SaveState"), QStringLiteral("SaveState"),
                             QStringLiteral("SaveState"), QStringLiteral("FillPath"),  QStringLiteral("DrawPath"),
                             QStringLiteral("RestoreState"), QStringLiteral("SaveState"), QStringLiteral("FillPath"),
                             QStringLiteral("RestoreState"), QStringLiteral("RestoreState"),
                             QStringLiteral("RestoreState"), QStringLiteral("RestoreState")};
  EXPECT_EQ(Frame, Expected) << Log.join(QLatin1Char('\n')).toStdString();
  auto First = [&](const char *Name) {
    return std::find_if(Log.begin(), Log.end(), [&](const QString &E) { return E.startsWith(QLatin1String(Name)); }) -
           Log.begin();
  };
  const auto Brush = First("SetBrush");
  const auto Pen = First("SetPen");
  const auto Font = First("SetFont");
  EXPECT_LT(Brush, Pen);
  EXPECT_LT(Pen, Font);
}

TEST_F(DrawPipeline, CancellingAnElementSkipsOnlyItsOwnGeometry)
{
  Style(*Group, "fill:red");
  QStringList Drawn;
  Document.OnDrawing = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &, bool &DoDefault) {
    if (Sender == First)
      DoDefault = false;
  };
  Document.OnDrawn = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &) {
    Drawn.append(static_cast<TSVGElement *>(Sender)->ID());
  };
  const QStringList Fills = Only(Draw(), QStringLiteral("FillPath"));
  ASSERT_EQ(Fills.size(), 1) << Fills.join(QLatin1Char('\n')).toStdString();
  EXPECT_TRUE(Fills[0].contains(QStringLiteral("#FFFF0000"))) << "the inherited fill reaches the second box";
  EXPECT_TRUE(Drawn.contains(QStringLiteral("first"))) << "OnDrawn fires after a cancel";

  // A cancelled group still draws its children with its paint in force.
  Document.OnDrawing = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &, const TRectF &, bool &DoDefault) {
    if (Sender == Group)
      DoDefault = false;
  };
  EXPECT_EQ(Only(Draw(), QStringLiteral("FillPath")).size(), 2);
}

TEST_F(DrawPipeline, OpacitiesMultiplyIntoEachPaint)
{
  Style(*Group, "opacity:0.5");
  Style(*First, "fill-opacity:0.5; stroke:black; stroke-opacity:0.2; opacity:0.5");
  const QStringList Log = Draw();
  const QStringList Fills = Only(Log, QStringLiteral("FillPath"));
  const QStringList Strokes = Only(Log, QStringLiteral("DrawPath"));
  ASSERT_EQ(Fills.size(), 2);
  ASSERT_EQ(Strokes.size(), 1);
  EXPECT_TRUE(Fills[0].contains(QStringLiteral("opacity=0.125"))) << Fills[0].toStdString();
  EXPECT_TRUE(Strokes[0].contains(QStringLiteral("opacity=0.05"))) << Strokes[0].toStdString();
  EXPECT_TRUE(Fills[1].contains(QStringLiteral("opacity=0.5"))) << Fills[1].toStdString();
}

TEST_F(DrawPipeline, HiddenElementsAndDefsSkipTheirSubtree)
{
  Style(*Group, "display:none");
  EXPECT_TRUE(Only(Draw(), QStringLiteral("FillPath")).isEmpty());
  Style(*Group, "display:inline");
  Style(*Second, "visibility:hidden");
  EXPECT_EQ(Only(Draw(), QStringLiteral("FillPath")).size(), 1);
}

TEST_F(DrawPipeline, StrokesScaleWithTheMatrixUnlessNonScaling)
{
  Style(*First, "stroke:black; stroke-width:2");
  First->SetTransformMatrix(QStringLiteral("scale(3)"));
  Style(*Second, "stroke:black; stroke-width:2; vector-effect:non-scaling-stroke");
  Second->SetTransformMatrix(QStringLiteral("scale(3)"));
  const QStringList Strokes = Only(Draw(), QStringLiteral("DrawPath"));
  ASSERT_EQ(Strokes.size(), 2);
  EXPECT_TRUE(Strokes[0].endsWith(QStringLiteral(" 6)"))) << Strokes[0].toStdString();
  EXPECT_TRUE(Strokes[1].endsWith(QStringLiteral(" 2)"))) << Strokes[1].toStdString();

  Style(*First, "stroke-width:0");
  const QStringList Zero = Only(Draw(), QStringLiteral("DrawPath"));
  ASSERT_FALSE(Zero.isEmpty());
  EXPECT_TRUE(Zero[0].endsWith(QStringLiteral(" 1e-12)"))) << "a pen of width 0 never reaches the canvas";
}

TEST_F(DrawPipeline, DashesAreHandedOverInUnitsOfThePenWidth)
{
  Style(*First, "stroke:black; stroke-width:2; stroke-dasharray:4 2");
  First->SetTransformMatrix(QStringLiteral("scale(2)"));
  std::vector<float> Dashes;
  Document.OnDrawing = [&](TObject *Sender, const TMatrix &, TVXGPCanvas &Canvas, const TRectF &, bool &) {
    if (Sender == First)
      Dashes = Canvas.Pen().GetDashArray();
  };
  Draw();
  // Scaled by 2 and divided by the scaled width 4: the pattern keeps its shape in pen widths.
  EXPECT_EQ(Dashes, (std::vector<float>{2, 1}));
}

TEST_F(DrawPipeline, DisabledElementsAreGreyedUnlessTheUserRefuses)
{
  Style(*First, "fill:red");
  First->SetEnabled(false);
  const QString Grey = Only(Draw(), QStringLiteral("FillPath"))[0];
  EXPECT_FALSE(Grey.contains(QStringLiteral("#FFFF0000"))) << Grey.toStdString();
  Document.OnDisableAppearance = [](TObject *, TMatrix &, TVXGPCanvas &, TRectF &, bool &DoDefault) {
    DoDefault = false;
  };
  EXPECT_TRUE(Only(Draw(), QStringLiteral("FillPath"))[0].contains(QStringLiteral("#FFFF0000")));
  EXPECT_EQ(First->GetBrush().GetColor(), 0xFFFF0000u) << "greying works on the canvas's copy";
}

TEST_F(DrawPipeline, DrawElementAppliesTheAncestorsTransforms)
{
  Group->SetTransformMatrix(QStringLiteral("translate(5 7)"));
  Canvas.Log.clear();
  First->DrawElement(Document.GetViewMatrix(TRectF{0, 0, 40, 40}), Canvas, TRectF{0, 0, 40, 40});
  const QStringList Fills = Only(Canvas.Log, QStringLiteral("FillPath"));
  ASSERT_EQ(Fills.size(), 1) << "the element alone";
  EXPECT_TRUE(Fills[0].contains(QStringLiteral("bounds=5,7,15,17"))) << Fills[0].toStdString();
}
