#include "tree/VXSVG.h"
#include "tree/VXSVGSelectorMatch.h"
#include "values/VXSVGException.h"

#include <gtest/gtest.h>

#include <climits>

using namespace vx;

namespace {

QString Q(const char *S)
{
  return QString::fromUtf8(S);
}

// A graphic element whose presentation attributes a test can set without the loader.
class TStyledElement : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TStyledElement)

public:
  using TSVGGraphicElement::TSVGGraphicElement;
  TSVGElementType SVGType() const override { return etGroup; }
  void MarkAttributes(TSVGStyleProperties Value) { SetAttributes(Value); }
};
VX_SVG_ELEMENT_CLASS_INFO(TStyledElement)

// root > (a > c), d, e: a carries two classes and its languages, c is a's only descendant.
class SelectorMatch : public ::testing::Test
{
protected:
  void SetUp() override
  {
    Document.LoadFromText(QStringLiteral(
        "<svg><g id='root' class='top'>"
        "<g id='a' class='b a' lang='en' systemLanguage='en-GB, fr'><g id='c' class='x'/></g>"
        "<g id='d' lang='en, fr'/><defs id='e'/>"
        "</g></svg>"));
  }

  int Match(const char *Id, const char *Selector)
  {
    const TSVGElement *Element = Document.AllItems().Elements(Q(Id));
    return Element ? MatchSelector(*Element, Q(Selector)) : -2;
  }

  struct TCase {
    const char *Id;
    const char *Selector;
    int Specificity;
  };
  void ExpectMatches(std::initializer_list<TCase> Cases)
  {
    for (const TCase &C : Cases)
      EXPECT_EQ(Match(C.Id, C.Selector), C.Specificity) << C.Id << " ~ " << C.Selector;
  }

  TSVGDocument Document;
};

} // namespace

TEST_F(SelectorMatch, SimpleSelectorsScoreByKind)
{
  ExpectMatches({
      {"a", "", -1},
      {"a", "g", 1},
      {"e", "defs", 1},
      {"a", "defs", -1},
      {"a", "rect", -1},  // a type the document does not hold
      {"a", "G", -1},  // types compare exactly
      {"a", ".a", 10},
      {"a", ".A", -1},
      {"a", ".b.a", 20},
      {"a", ".z", -1},
      {"a", "#a", 100},
      {"a", "#c", -1},
      {"a", "g#a.a.b", 121},
      {"a", "*", 0},
      {"a", "*.a", 10},
      {"a", "*.z", 0},  // a leading star matches whatever follows
      {"a", "g.a.a.a.a.a.a.a.a.a.a g", 102},  // ten classes and two types
      {"a", ".a g", 11},  // a name after a class is the element's own type
      {"c", "g .x", 11},  // so is a class after a name
      {"a", "g:hover", 1},  // pseudo-classes are passed over
      {"a", "g.z.a", -1},  // the first failure ends the test
  });
}

TEST_F(SelectorMatch, AttributeSelectorsReadTheCommonAttributes)
{
  ExpectMatches({
      {"a", "[id]", 10},
      {"d", "[lang]", 10},  // the common attributes count as present on any element
      {"a", "[fill]", 10},  // a property the element takes
      {"a", "[width]", -1},  // no style property
      {"a", "[id=a]", 20},
      {"a", "[id='a']", 20},
      {"a", "[id=A]", -1},
      {"a", "g[id^=a]", 21},
      {"a", "[class~=a]", 20},
      {"a", "[class=b a]", -1},  // classes compare one by one
      {"a", "[class^=b]", 20},
      {"a", "[lang|=en]", 20},
      {"a", "[lang*=x]", -1},
      {"a", "[systemLanguage=fr]", 20},
      {"a", "[systemLanguage$=GB]", 20},
      {"a", "[systemLanguage=en]", -1},
      {"d", "[systemLanguage*=en]", -1},
  });
  EXPECT_THROW(Match("a", "[id"), ESVGException);
  EXPECT_THROW(Match("a", "g[id!a]"), ESVGException);
}

TEST_F(SelectorMatch, OtherAttributesAreReadFromTheInlineStyle)
{
  TStyledElement Element(&Document);
  Element.SetID(QStringLiteral("s"));
  Element.MarkAttributes({ipFill, ipStrokeWidth});
  Element.SetStyle(TSVGStyle(QString(), QStringLiteral("fill: red; stroke-width: 2; stroke: blue")));
  ExpectMatches({
      {"s", "[fill]", 10},
      {"s", "[stroke]", -1},  // in the style, but not among the element's attributes
      {"s", "[fill=red]", 20},
      {"s", "[fill=Red]", -1},
      {"s", "[fill=re]", -1},
      {"s", "[fill^=re]", 20},
      {"s", "[fill|=re]", 20},
      {"s", "[fill$=ed]", 20},
      {"s", "[fill*=e]", 20},
      {"s", "[fill~=red]", 20},
      {"s", "[stroke-width=2]", 20},
      {"s", "#s[fill=red]", 120},
  });
}

TEST_F(SelectorMatch, RelationsFollowTheNamedElement)
{
  ExpectMatches({
      {"a", "g c", 11},
      {"root", "g c", 11},
      {"root", "g a c", 21},
      {"root", "g c a", -1},  // c has no descendant a
      {"a", "g d", -1},
      {"a", "g nowhere", -1},  // a name no element carries
      {"root", "g > a", 11},
      {"root", "g > c", -1},  // a grandchild is no child
      {"a", "#a c", -1},  // after an id the name is a's own type again
      {"a", "#a g", 101},
      {"a", "g *c", 11},  // a star names a descendant too
      {"d", "g *c", -1},
      {"a", "* c", 0},
      {"a", "g > c[id=a]", 31},  // attribute tests stay with the element asked
      {"a", "g > c[id=c]", -1},
      {"a", "g > c.x", 21},  // classes move on with the relation
      {"a", "g > c.a", -1},
  });
}

TEST_F(SelectorMatch, FollowersAreTestedAsAncestry)
{
  // A follower is found exactly when it lies below the element asked or is its grandparent; true
  // siblings do not count.
  ExpectMatches({
      {"a", "g + c", 11},
      {"root", "g + a", 11},
      {"a", "g + d", -1},
      {"d", "g + a", -1},
      {"c", "g + root", 11},
  });
}

TEST_F(SelectorMatch, LanguageAsksWhetherLangIsOneToken)
{
  ExpectMatches({
      {"a", "g:lang(en)", 11},
      {"a", "g:lang(fr)", 11},  // the language asked is not consulted
      {"d", "g:lang(en)", -1},  // two tokens
      {"c", "g:lang(en)", -1},  // no lang of its own
  });
}

TEST_F(SelectorMatch, RootAndOverflowingSelectors)
{
  EXPECT_EQ(MatchSelector(Document, QStringLiteral("svg")), 1);
  EXPECT_EQ(MatchSelector(Document, QStringLiteral("svg g")), -1) << "the root has no owner to look names up in";
  QString Long;
  for (int I = 0; I < 10000; ++I)
    Long += QStringLiteral("#a.a");
  EXPECT_EQ(Match("a", Long.toUtf8().constData()), INT_MAX) << "the joined digits would overflow";
}

TEST(SelectorMatchThroughUse, TheTargetCountsAsAChildOfTheUse)
{
  TSVGDocument Document;
  Document.LoadFromText(QStringLiteral(
      "<svg xmlns:xlink='http://www.w3.org/1999/xlink'><defs><g id='t'><rect id='r'/></g></defs>"
      "<g id='host'><use id='u' xlink:href='#t'/></g>"
      "<g id='a'><use id='ua' xlink:href='#b'/></g><g id='b'><use id='ub' xlink:href='#a'/></g></svg>"));
  auto Match = [&](const char *Id, const char *Selector) {
    return MatchSelector(*Document.AllItems().Elements(Q(Id)), Q(Selector));
  };
  EXPECT_EQ(Match("u", "use > t"), 11);
  EXPECT_EQ(Match("u", "use > r"), 11) << "the target's children count as the use's own";
  EXPECT_EQ(Match("host", "g r"), 11);
  EXPECT_EQ(Match("host", "g > t"), -1);
  // Two uses that show each other's group: the walk ends instead of going round.
  EXPECT_EQ(Match("a", "g r"), -1);
  EXPECT_EQ(Match("a", "g ub"), 11);
}
