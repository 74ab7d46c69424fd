// The generated panel: which controls a picture makes and in what order, what they paint and what
// a click reaches, hand-placed children through regeneration; and copying an element into a style.
#include "ComponentsFixture.h"

#include "tree/VXSVGGraphicElement.h"

#include <QTest>
#include <gtest/gtest.h>

#include <cstdint>
#include <utility>
#include <vector>

namespace vx {
namespace {

// 40 by 40 pixels at the panel's size: a red square under a blue circle in a group, a green
// square to the right, and a rectangle in defs that must make no control.
QString PanelPicture()
{
  return QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40' viewBox='0 0 40 40'>"
                        "<defs><rect id='unused' width='40' height='40'/></defs>"
                        "<g id='group'><rect id='square' width='20' height='20' fill='#f00'/>"
                        "<circle id='dot' cx='10' cy='10' r='10' fill='#00f'/></g>"
                        "<rect id='right' x='24' y='4' width='12' height='12' fill='#0f0' stroke='#00f' "
                        "stroke-width='2'/>"
                        "<text id='label' x='2' y='36' font-size='8'>A</text></svg>");
}

class GeneratedPanelTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    LoadText(Document, PanelPicture());
    Panel.resize(40, 40);
    Panel.SetColor(0xFFFFFFFF);
    Panel.OnGenerateControl = [this](TVXSVGPanel *, TSVGElement *Element, TControl *Control) {
      Generated.emplace_back(Element->ID(), Control->ClassName());
    };
    Panel.SetSVGDocument(&Document);
  }
  // The generated controls among the panel's components.
  int GeneratedCount() const
  {
    int Count = 0;
    for (int I = 0; I < Panel.ComponentCount(); ++I)
      Count += IsGeneratedControl(*Panel.Components(I));
    return Count;
  }

  TVXSVGDocument Document;
  TVXSVGPanel Panel;
  std::vector<std::pair<QString, QString>> Generated;
};

TEST_F(GeneratedPanelTest, OneControlPerShownElementParentsFirst)
{
  const std::vector<std::pair<QString, QString>> Expected = {
    {QString(), QStringLiteral("TVXSVGLayout")},          {QStringLiteral("group"), QStringLiteral("TVXSVGLayout")},
    {QStringLiteral("square"), QStringLiteral("TVXSVGPath")}, {QStringLiteral("dot"), QStringLiteral("TVXSVGPath")},
    {QStringLiteral("right"), QStringLiteral("TVXSVGPath")},  {QStringLiteral("label"), QStringLiteral("TVXSVGText")},
  };
  EXPECT_EQ(Generated, Expected);
  EXPECT_EQ(GeneratedCount(), int(Expected.size()));
  EXPECT_EQ(Panel.FindControl(QStringLiteral("unused")), nullptr);
  TControl *Dot = Panel.FindControl(QStringLiteral("dot"));
  ASSERT_NE(Dot, nullptr);
  EXPECT_EQ(Dot->PublishedProperties()->Find(QStringLiteral("SVGID"))->Get(*Dot).toString(), QStringLiteral("dot"));
  EXPECT_EQ(reinterpret_cast<TSVGElement *>(Dot->Tag())->ID(), QStringLiteral("dot"));
}

TEST_F(GeneratedPanelTest, ShapeControlsPaintWithTheElementsPaints)
{
  const QImage Image = Shot(Panel);
  EXPECT_EQ(Image.pixel(1, 1), Red);       // the square's corner, outside the circle
  EXPECT_EQ(Image.pixel(10, 10), Blue);    // the circle over the square
  EXPECT_EQ(Image.pixel(30, 10), Lime);    // inside the stroke
  EXPECT_EQ(Image.pixel(24, 10), Blue);    // on the stroke
  EXPECT_EQ(Image.pixel(30, 30), 0xFFFFFFFFu); // the panel's colour
}

TEST_F(GeneratedPanelTest, AClickReachesTheShapeUnderThePointerNotItsBox)
{
  QString Clicked;
  auto Watch = [&Clicked](const QString &Id, TControl *Control) {
    Control->OnClick = [&Clicked, Id](TObject *) { Clicked = Id; };
  };
  for (const char *Id : {"square", "dot", "right"})
    Watch(QLatin1String(Id), Panel.FindControl(QLatin1String(Id)));
  const std::pair<QPoint, const char *> Clicks[] = {
    {{10, 10}, "dot"}, {{1, 1}, "square"}, {{30, 10}, "right"}, {{30, 30}, ""}};
  for (const auto &[Point, Id] : Clicks) {
    Clicked.clear();
    QWidget *Target = Panel.childAt(Point);
    QTest::mouseClick(Target ? Target : &Panel, Qt::LeftButton, {}, Target ? Target->mapFrom(&Panel, Point) : Point);
    EXPECT_EQ(Clicked, QLatin1String(Id)) << Point.x() << "," << Point.y();
  }
}

TEST_F(GeneratedPanelTest, HandPlacedChildrenSurviveRegeneration)
{
  auto *Button = new TGraphicControl(&Panel, &Panel);
  Button->SetBounds(30, 30, 10, 10);
  const int Before = GeneratedCount();
  Panel.resize(80, 80);
  LoadText(Document, PanelPicture());
  EXPECT_EQ(GeneratedCount(), Before);
  ASSERT_EQ(Panel.ComponentCount(), Before + 1);
  EXPECT_EQ(Panel.Components(0), Button);
  // The resize regenerated at the new size: the circle now reaches x = 40.
  EXPECT_EQ(Shot(Panel).pixel(38, 20), Blue);
}

TEST(GeneratedControls, SwitchAndUseGenerateWhatTheyDraw)
{
  TVXSVGDocument Document;
  LoadText(Document, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' "
                                    "xmlns:xlink='http://www.w3.org/1999/xlink' width='40' height='40'>"
                                    "<switch><rect id='skipped' systemLanguage='xx' width='5' height='5'/>"
                                    "<rect id='chosen' width='5' height='5'/><rect id='second' width='5' height='5'/>"
                                    "</switch><defs><rect id='tile' width='10' height='10' fill='#f00'/></defs>"
                                    "<use id='copy' xlink:href='#tile' x='20' y='20'/></svg>"));
  TVXSVGPanel Panel;
  Panel.resize(40, 40);
  QStringList Types;
  Panel.OnGenerateControl = [&Types](TVXSVGPanel *, TSVGElement *Element, TControl *) {
    Types << Element->SVGTypeName();
  };
  Panel.SetSVGDocument(&Document);
  EXPECT_EQ(Types, (QStringList{QStringLiteral("svg"), QStringLiteral("switch"), QStringLiteral("rect"),
                                QStringLiteral("use"), QStringLiteral("rect")}));
  EXPECT_NE(Panel.FindControl(QStringLiteral("chosen")), nullptr);
  EXPECT_NE(Panel.FindControl(QStringLiteral("tile")), nullptr);
  EXPECT_EQ(Shot(Panel).pixel(25, 25), Red);
}

struct TStyleRow
{
  const char *Attributes;
  TSVGStyleProperty Property;
  const char *Text;
};

// One row per family of the texts an element gives a style for what it sets itself.
TEST(AssignToStyle, EachSetPropertyGivesItsText)
{
  const TStyleRow Rows[] = {
    {"fill='#ff0000'", ipFill, "red"},
    {"fill='url(#paint)'", ipFill, "url(#paint)"},
    {"color='#0000ff' fill='#ff0000'", ipColor, "red"},
    {"stroke-width='5%'", ipStrokeWidth, "5%"},
    {"stroke-dasharray='4 2'", ipStrokeDasharray, "4,2"},
    {"stroke-linecap='round'", ipStrokeLinecap, "round"},
    {"stroke-linejoin='bevel'", ipStrokeLineJoin, "bevel"},
    {"opacity='0.25'", ipOpacity, "0.25"},
    {"fill-rule='evenodd'", ipFillRule, "evenodd"},
    {"marker-start='url(#m)'", ipMarkerStart, "url(#m)"},
    {"clip-path='url(#c)'", ipClipPath, "url(#c)"},
    {"font-size='small'", ipFontSize, "small"},
    {"font-size='11'", ipFontSize, "11"},
    {"font-style='italic'", ipFontStyle, "italic"},
    {"text-decoration='line-through'", ipTextDecoration, "line-through"},
    {"kerning='auto'", ipKerning, "auto"},
    {"letter-spacing='normal'", ipLetterSpacing, "normal"},
    {"letter-spacing='2'", ipLetterSpacing, "2"},
    {"baseline-shift='super'", ipBaselineShift, "super"},
    {"baseline-shift='50%'", ipBaselineShift, "50%"},
    {"display='none'", ipDisplay, "hidden"},
    {"overflow='hidden'", ipOverflow, "hidden"},
    {"cursor='pointer'", ipCursor, "pointer"},
    {"text-anchor='middle'", ipTextAnchor, "middle"},
    {"writing-mode='tb'", ipWritingMode, "tb"},
  };
  for (const TStyleRow &Row : Rows) {
    TVXSVGDocument Document;
    LoadText(Document, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'><g><rect id='r' %1/></g></svg>")
                           .arg(QLatin1String(Row.Attributes)));
    TSVGElement *Found = nullptr;
    ASSERT_TRUE(Document.SVG().AllItems().TryGetValue(QStringLiteral("r"), Found));
    TSVGStyle Style;
    Style.Assign(Found);
    EXPECT_EQ(Style.StyleProp(Row.Property), QLatin1String(Row.Text)) << Row.Attributes;
  }
}

TEST(AssignToStyle, WhatAnElementInheritsIsLeftOut)
{
  TVXSVGDocument Document;
  LoadText(Document, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'><g fill='#f00' stroke-width='3'>"
                                    "<rect id='r' width='4' height='4' opacity='0.5'/></g></svg>"));
  TSVGElement *Found = nullptr;
  ASSERT_TRUE(Document.SVG().AllItems().TryGetValue(QStringLiteral("r"), Found));
  auto &Rect = static_cast<TSVGGraphicElement &>(*Found);
  TSVGStyle Style;
  Style.Assign(&Rect);
  EXPECT_EQ(Style.IndexOf(QStringLiteral("fill")), -1);
  EXPECT_EQ(Style.IndexOf(QStringLiteral("stroke-width")), -1);
  EXPECT_EQ(Style.Values(QStringLiteral("opacity")), QStringLiteral("0.5"));
  Rect.Inherits().SetValue(TSVGStyleProperties::FromBits(~std::uint64_t(0)));
  Style.Clear();
  Style.Assign(&Rect);
  EXPECT_EQ(Style.Count(), 0) << Style.StylesToString().toStdString();
}

} // namespace
} // namespace vx
