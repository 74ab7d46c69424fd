#include "platform/rtl/VXStringList.h"
#include "tree/VXSVGStyle.h"
#include "tree/VXSVGStyleSheet.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace vx;

namespace {

using TRules = std::vector<std::pair<QString, QString>>;

TRules Parse(const QString &Text)
{
  TRules Rules;
  ParseStyleSheet(Text, [&](const QString &Selector, const QString &Declarations) {
    Rules.emplace_back(Selector, Declarations);
  });
  return Rules;
}

QString Q(const char *S)
{
  return QString::fromUtf8(S);
}

} // namespace

TEST(StyleSheet, CutsTheSheetIntoOneRulePerSelector)
{
  struct Case {
    const char *Sheet;
    TRules Rules;
  };
  const Case Cases[] = {
      {"", {}},
      {"rect{fill:red}", {{Q("rect"), Q("fill:red")}}},
      {" a , b ,, c { x:1 } d{y:2}", {{Q("a"), Q(" x:1 ")}, {Q("b"), Q(" x:1 ")}, {Q("c"), Q(" x:1 ")},
                                      {Q("d"), Q("y:2")}}},
      {"/* a{x:0} */ g { fill: /* no */ red }", {{Q("g"), Q(" fill:  red ")}}},
      {"a{x:1} b{y:2", {{Q("a"), Q("x:1")}}},  // the open block is dropped
      {"a{x:1} b{y:2 /* } */", {{Q("a"), Q("x:1")}}},  // a brace inside a comment closes nothing
      {"{x:1} ,{y:2}", {}},  // no selector, no rule
      {"a > b, #c.d:lang(en) {x:1}", {{Q("a > b"), Q("x:1")}, {Q("#c.d:lang(en)"), Q("x:1")}}},
      // An at-rule reads as a selector up to the first closing brace; what is left has no block.
      {"@media screen { rect { fill: red } } g{x:1}",
       {{Q("@media screen"), Q(" rect { fill: red ")}, {Q("} g"), Q("x:1")}}},
  };
  for (const Case &C : Cases)
    EXPECT_EQ(Parse(Q(C.Sheet)), C.Rules) << C.Sheet;
}

TEST(StyleSheet, ReadsCharacterDataThatTheCallerTakesFromTheDocument)
{
  const IXMLDocument Document =
      LoadXMLData(QStringLiteral("<style><![CDATA[ g > #a { fill: url(#x) } ]]></style>"));
  const IXMLNode Data = Document.DocumentElement().ChildNodes().First();
  ASSERT_EQ(Data.NodeType(), ntCData);
  EXPECT_EQ(Parse(Data.Text()), (TRules{{Q("g > #a"), Q(" fill: url(#x) ")}}));
}

TEST(StyleSheet, KeepsEveryRuleOfALargeSheet)
{
  QString Sheet;
  const int Count = 20000;
  for (int I = 0; I < Count; ++I)
    Sheet += QStringLiteral(".c%1, #i%1 { fill: red } /* %1 */\n").arg(I);
  const TRules Rules = Parse(Sheet);
  ASSERT_EQ(Rules.size(), std::size_t(2 * Count));
  EXPECT_EQ(Rules.back(), (std::pair{QStringLiteral("#i%1").arg(Count - 1), Q(" fill: red ")}));
}

TEST(StyleDeclarations, AddStyleReportsThePropertiesItTouched)
{
  struct Case {
    const char *Text;
    const char *Pairs;
    TSVGStyleProperties Touched;
  };
  const Case Cases[] = {
      {"", "", {}},
      {"  \t ", "", {}},
      {"fill: red; /* note */ stroke : blue ; fill:green", "fill=green\nstroke=blue", {ipFill, ipStroke}},
      {"font-family: Times New Roman;;", "font-family=Times New Roman", {ipFontFamily}},
      {"x-unknown: 1; opacity:.5", "x-unknown=1\nopacity=.5", {ipNone, ipOpacity}},
      {": red; fill; stroke:", "stroke=", {ipStroke}},  // no colon, no name: dropped; an empty value stays
      {"fill: url(#a:b)", "fill=url(#a:b)", {ipFill}},  // the first colon separates
      {"/* fill: red */", "", {}},
      {"marker: url(#m)", "marker=url(#m)", {ipMarker}},  // the text form takes shorthands too
  };
  for (const Case &C : Cases) {
    TSVGStyle Style;
    EXPECT_EQ(Style.AddStyle(Q(C.Text)), C.Touched) << C.Text;
    EXPECT_EQ(Style.StylesToString(), Q(C.Pairs)) << C.Text;
  }
}

TEST(StyleDeclarations, LaterDeclarationsWinAndKeepTheirPlace)
{
  TSVGStyle Style(QStringLiteral(".a"), QStringLiteral("fill:red; stroke:blue"));
  EXPECT_EQ(Style.AddStyle(QStringLiteral("fill: green; opacity: 1")), (TSVGStyleProperties{ipFill, ipOpacity}));
  EXPECT_EQ(Style.StylesToString(), QStringLiteral("fill=green\nstroke=blue\nopacity=1"));
  EXPECT_EQ(Style.Text(), QStringLiteral("fill:green;stroke:blue;opacity:1"));
  EXPECT_EQ(Style.ToString(), QStringLiteral(".a { fill=green\nstroke=blue\nopacity=1 }"));
  EXPECT_EQ(Style.IndexOf(QStringLiteral("stroke")), 1);
  EXPECT_EQ(Style.StyleProp(ipStroke), QStringLiteral("blue"));
  EXPECT_EQ(Style.StyleProp(ipColor), QString());
  EXPECT_THROW(Style.Names(3), EListError);

  Style.SetStyleProp(ipColor, QStringLiteral("red"));
  Style.SetValues(QStringLiteral("fill"), QStringLiteral("none"));
  EXPECT_EQ(Style.StylesToString(), QStringLiteral("fill=none\nstroke=blue\nopacity=1\ncolor=red"));

  Style.SetStyle(QStringLiteral("stroke-width: 2"));
  EXPECT_EQ(Style.StylesToString(), QStringLiteral("stroke-width=2")) << "SetStyle replaces";
  EXPECT_EQ(Style.IndexOf(QStringLiteral("fill")), -1) << "the index forgets replaced names";
  Style.Clear();
  EXPECT_EQ(Style.Count(), 0);
  EXPECT_EQ(Style.ToString(), QStringLiteral(".a {  }"));
}

TEST(StyleDeclarations, AttributesGiveOnePairEachExceptShorthands)
{
  const IXMLDocument Document = LoadXMLData(QStringLiteral(
      "<rect xmlns:xlink='http://www.w3.org/1999/xlink' fill=' red ' marker='url(#m)' marker-end='url(#e)' "
      "xlink:href='#x' width='10' style='stroke:blue'/>"));
  TSVGStyle Style;
  Style.SetValues(QStringLiteral("old"), QStringLiteral("1"));
  Style.LoadFromXML(Document.DocumentElement());
  EXPECT_EQ(Style.StylesToString(),
            QStringLiteral("fill=red\nmarker-end=url(#e)\nhref=#x\nwidth=10\nstyle=stroke:blue"));
  EXPECT_EQ(Style.AddStyle(Document.DocumentElement()), (TSVGStyleProperties{ipNone, ipFill, ipMarkerEnd}));
  EXPECT_TRUE(TSVGStyle::IsShorthandProperty(QStringLiteral("marker")));
  EXPECT_FALSE(TSVGStyle::IsShorthandProperty(QStringLiteral("font")));
}

TEST(StyleDeclarations, ReportsOneChangePerOperation)
{
  TSVGStyle Style;
  int Changes = 0;
  Style.OnChange = [&](TObject *Sender) {
    EXPECT_EQ(Sender, &Style);
    ++Changes;
  };
  Style.SetStyle(QStringLiteral("fill:red; stroke:blue; opacity:1"));
  EXPECT_EQ(Changes, 1);
  Style.AddStyle(QStringLiteral("fill:green; color:red"));
  EXPECT_EQ(Changes, 2);
  Style.SetName(QStringLiteral("g"));
  Style.SetName(QStringLiteral("g"));
  Style.SetEnabled(false);
  EXPECT_EQ(Changes, 4) << "setting the same name again is no change";
  EXPECT_FALSE(Style.Enabled());
  Style.BeginUpdate();
  Style.SetValues(QStringLiteral("a"), QStringLiteral("1"));
  Style.Clear();
  EXPECT_EQ(Changes, 4);
  Style.EndUpdate();
  EXPECT_EQ(Changes, 5);
}

TEST(StyleDeclarations, AssignsToAndFromStylesAndStringLists)
{
  TSVGStyle Source(QStringLiteral("#a"), QStringLiteral("fill:red; stroke:blue"));
  TSVGStyle Copy(QStringLiteral("old"), QStringLiteral("color:green"));
  Copy.Assign(&Source);
  EXPECT_EQ(Copy.ToString(), QStringLiteral("#a { fill=red\nstroke=blue }"));
  Copy.SetValues(QStringLiteral("stroke"), QStringLiteral("none"));
  EXPECT_EQ(Source.Values(QStringLiteral("stroke")), QStringLiteral("blue")) << "the copy is separate";

  TStringList Lines;
  Lines.Assign(&Source);
  EXPECT_EQ(Lines.ToStringList(), (QStringList{QStringLiteral("fill=red"), QStringLiteral("stroke=blue")}));

  Lines.SetText(QStringLiteral("opacity=0.5\nno separator\nfont-family=a=b"));
  Copy.Assign(&Lines);
  EXPECT_EQ(Copy.StylesToString(), QStringLiteral("opacity=0.5\nfont-family=a=b"));
  EXPECT_EQ(Copy.Name(), QStringLiteral("#a")) << "a string list carries no selector";
}
