#include "tree/VXSVG.h"
#include "values/VXSVGColors.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

// Groups are the graphic elements the tree itself provides, so they carry the properties here.
class Presentation : public ::testing::Test
{
protected:
  void Load(const char *Body)
  {
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'>%1</svg>").arg(QString::fromUtf8(Body)));
  }
  TSVGGraphicElement &Element(const char *Id)
  {
    auto *Found = dynamic_cast<TSVGGraphicElement *>(Document.AllItems().Elements(QString::fromUtf8(Id)));
    EXPECT_NE(Found, nullptr) << Id;
    return *Found;
  }

  TSVGDocument Document;
};

constexpr TVXGPColor Red = 0xFFFF0000;
constexpr TVXGPColor Blue = 0xFF0000FF;
constexpr TVXGPColor Lime = 0xFF00FF00;

} // namespace

TEST_F(Presentation, StyleAttributeBeatsThePlainAttributeAndIsRemembered)
{
  Load("<g id='a' fill='red' style='fill:blue'/><g id='b' fill='red'/>");
  EXPECT_EQ(Element("a").GetBrush().GetColor(), Blue);
  EXPECT_TRUE(Element("a").PreferredStyles().GetSet(ipFill));
  EXPECT_FALSE(Element("b").PreferredStyles().GetSet(ipFill));
  EXPECT_FALSE(Element("a").GetPreferredStyles().GetSet(ipFill)) << "the published set is the root's by default";
}

TEST_F(Presentation, PaintKindsFollowNoneCurrentColorAndReferences)
{
  Load("<g id='none' fill='none'/>"
       "<g id='current' fill='none' color='lime'><g id='cc' fill='currentColor'/></g>"
       "<g id='url' fill='url(#nowhere)' stroke='url(#g)'/>");
  EXPECT_EQ(Element("none").GetBrush().GetKind(), bkNone);
  EXPECT_EQ(Element("cc").GetBrush().GetKind(), bkSolid);
  EXPECT_EQ(Element("cc").GetBrush().GetColor(), Lime) << "currentColor takes the inherited color";
  // A reference to nothing leaves the paint solid with the colour it had.
  EXPECT_EQ(Element("url").GetBrush().GetKind(), bkSolid);
  EXPECT_EQ(Element("url").GetBrush().GetURI(), QStringLiteral("nowhere"));
  EXPECT_EQ(Element("url").GetPen().GetKind(), bkSolid);
  EXPECT_EQ(Element("url").GetPen().GetURI(), QStringLiteral("g"));

  TSVGStyle Rule;
  Rule.SetValues(QStringLiteral("fill"), QStringLiteral("red"));
  Element("none").ApplyStyle(Rule);
  EXPECT_EQ(Element("none").GetBrush().GetKind(), bkSolid) << "a later colour clears none";
  EXPECT_EQ(Element("none").GetBrush().GetColor(), Red);
}

TEST_F(Presentation, DisplayDecidesVisibilityInBothDirections)
{
  Load("<g id='a' visibility='hidden' display='inline'/><g id='b' visibility='visible' display='none'/>");
  EXPECT_TRUE(Element("a").GetVisible());
  EXPECT_FALSE(Element("b").GetVisible());
  EXPECT_FALSE(Element("b").ShouldDraw());
}

TEST_F(Presentation, LengthsInEmFollowTheFontSizeSettledFirst)
{
  Load("<g id='p' font-size='10'><g id='c' font-size='2em' stroke-width='50%' x='1em'/></g>");
  EXPECT_FLOAT_EQ(Element("c").GetFont().GetSize(), 20);
  EXPECT_FLOAT_EQ(Element("c").GetX(), 20) << "x in em sees the element's own new size";
  EXPECT_FLOAT_EQ(Element("c").GetPen().GetThickness(), 0.5f);
  EXPECT_TRUE(Element("c").GetPen().GetThicknessIsPercent());
}

TEST_F(Presentation, MarkerShorthandComesOnlyFromTheStyleAttribute)
{
  Load("<g id='a' style='marker:url(#m)'/><g id='b' marker='url(#m)'/>");
  EXPECT_EQ(Element("a").GetMarkerStartURI(), QStringLiteral("m"));
  EXPECT_EQ(Element("a").GetMarkerMidURI(), QStringLiteral("m"));
  EXPECT_EQ(Element("a").GetMarkerEndURI(), QStringLiteral("m"));
  EXPECT_TRUE(Element("b").GetMarkerStartURI().isEmpty());
}

TEST_F(Presentation, InheritanceResolvesUpTheChainAtReadTime)
{
  Load("<g id='top' fill='red' stroke='blue' stroke-width='3' fill-rule='evenodd' opacity='0.5'"
       " letter-spacing='2' word-spacing='2' kerning='2'>"
       "<g id='mid' fill-opacity='0.25'><g id='leaf' stroke='inherit'/></g></g>");
  TSVGGraphicElement &Leaf = Element("leaf");
  EXPECT_EQ(Leaf.GetBrush().GetColor(), Red);
  EXPECT_FLOAT_EQ(Leaf.GetBrush().GetOpacity(), 0.25f);
  EXPECT_EQ(Leaf.GetPen().GetKind(), bkSolid);
  EXPECT_EQ(Leaf.GetPen().GetColor(), Blue);
  EXPECT_FLOAT_EQ(Leaf.GetPen().GetThickness(), 3);
  EXPECT_EQ(Leaf.GetFillRule(), frEvenOdd);
  EXPECT_FLOAT_EQ(Leaf.GetOpacity(), 1) << "opacity is not inherited";
  EXPECT_FLOAT_EQ(Leaf.GetAbsoluteOpacity(), 0.5f);
  for (const TSVGStylePropertyAutoLength *Spacing : {&Leaf.LetterSpacing(), &Leaf.WordSpacing(), &Leaf.Kerning()})
    EXPECT_FLOAT_EQ(Spacing->GetValue(), 2) << Spacing->StyleProperty();

  // A change up the chain reaches the cached paints below.
  TSVGStyle Rule;
  Rule.SetValues(QStringLiteral("fill"), QStringLiteral("lime"));
  Element("top").ApplyStyle(Rule);
  EXPECT_EQ(Leaf.GetBrush().GetColor(), Lime);

  // Detached, the leaf falls back to its own fields.
  std::unique_ptr<TSVGElement> Detached(Element("mid").Items().Extract(&Leaf));
  EXPECT_EQ(Leaf.GetFillRule(), frNonZero);
}

TEST_F(Presentation, SettersStoreOwnValuesAndClampOpacity)
{
  Load("<g id='p' color='red'><g id='c'/></g>");
  TSVGGraphicElement &Child = Element("c");
  EXPECT_EQ(Child.GetColor(), Red);
  Child.SetColor(0);
  EXPECT_EQ(Child.GetColor(), 0u) << "the field already held 0, yet the inherited bit is cleared";
  EXPECT_FALSE(Child.Inherits().GetSet(ipColor));
  Child.SetOpacity(2);
  EXPECT_FLOAT_EQ(Child.GetOpacity(), 1);
  Child.SetOpacity(-1);
  EXPECT_FLOAT_EQ(Child.GetOpacity(), 0);
  Child.SetWidth(-5);
  EXPECT_FLOAT_EQ(Child.GetWidth(), 0);
}

TEST_F(Presentation, StyleRulesApplyBySpecificityWithTheInlineStyleAbove)
{
  Load("<style>g { fill: red } #b { fill: blue } .c { stroke: red } g.c { stroke: lime }</style>"
       "<g id='a'/><g id='b' class='c'/><g id='i' class='c' style='fill:lime' />");
  EXPECT_EQ(Element("a").GetBrush().GetColor(), Red);
  EXPECT_EQ(Element("b").GetBrush().GetColor(), Blue);
  EXPECT_EQ(Element("b").GetPen().GetColor(), Lime);
  EXPECT_EQ(Element("i").GetBrush().GetColor(), Lime);
}

TEST_F(Presentation, ABadTransformAbortsTheLoad)
{
  EXPECT_THROW(Load("<g transform='rotate(oops)'/>"), std::exception);
  Load("<g id='t' transform='translate(10 20) scale(2)'/>");
  const TMatrix M = Element("t").Matrix();
  EXPECT_FLOAT_EQ(M.m11, 2);
  EXPECT_FLOAT_EQ(M.m31, 10);
  EXPECT_FLOAT_EQ(M.m32, 20);
}

TEST_F(Presentation, InheritMarksEvenPropertiesThatSVGDoesNotInherit)
{
  Load("<g opacity='0.5' overflow='hidden'><g id='c' opacity='inherit' overflow='inherit'/><g id='d'/></g>");
  EXPECT_FLOAT_EQ(Element("c").GetOpacity(), 0.5f);
  EXPECT_FALSE(Element("c").IsOverflow());
  EXPECT_FLOAT_EQ(Element("d").GetOpacity(), 1);
  EXPECT_TRUE(Element("d").IsOverflow());
}

TEST_F(Presentation, APenInheritedInPiecesIsMergedOnce)
{
  Load("<g stroke='blue' stroke-dasharray='4 2'><g stroke-width='4' stroke-linecap='round'>"
       "<g id='leaf' stroke-opacity='0.5' stroke-linejoin='bevel'/></g></g>");
  TSVGPen &Pen = Element("leaf").GetPen();
  EXPECT_EQ(Pen.GetKind(), bkSolid);
  EXPECT_EQ(Pen.GetColor(), Blue);
  EXPECT_FLOAT_EQ(Pen.GetThickness(), 4);
  EXPECT_FLOAT_EQ(Pen.GetOpacity(), 0.5f);
  EXPECT_EQ(Pen.GetEndCap(), lcRound);
  EXPECT_EQ(Pen.GetJoin(), ljBevel);
  EXPECT_EQ(Pen.GetDash(), dsCustom);
  EXPECT_EQ(Pen.GetDashPattern(), (std::vector<float>{4, 2}));
}
