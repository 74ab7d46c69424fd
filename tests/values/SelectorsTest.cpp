#include "values/VXSVGException.h"
#include "values/VXSVGSelectors.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace vx;

namespace {

QString Show(const TSVGSelectorTokens &Tokens)
{
  QStringList Parts;
  for (const TSVGSelectorToken &Token : Tokens)
    Parts << Token.ToString();
  return Parts.join(QStringLiteral("; "));
}

} // namespace

TEST(Selectors, TokensOfTypicalSelectors)
{
  struct Case { const char *Selector; TSVGSelectorTokens Expected; };
  const Case Cases[] = {
    {"", {}},
    {"   ", {}},
    {"a", {{sttString, "a"}}},
    {"a b", {{sttString, "a"}, {sttHasDescendant, "b"}}},
    {"a   b c", {{sttString, "a"}, {sttHasDescendant, "b"}, {sttHasDescendant, "c"}}},
    {"a\nb", {{sttString, "a"}, {sttHasDescendant, "b"}}},
    {"a > b", {{sttString, "a"}, {sttHasChild, "b"}}},
    {"a>b c", {{sttString, "a"}, {sttHasChild, "b"}, {sttHasDescendant, "c"}}},
    {"a+b", {{sttString, "a"}, {sttHasFollower, "b"}}},
    {"a.b", {{sttString, "a"}, {sttClassChar, "b"}}},
    {"#x.y", {{sttIDHashChar, "x"}, {sttClassChar, "y"}}},
    {".a b", {{sttClassChar, "a"}, {sttString, "b"}}},
    {"a[b]", {{sttString, "a"}, {sttHasAttribute, "b"}}},
    {"a[b=c]", {{sttString, "a"}, {sttHasAttribute, "b"}, {sttExactMatch, "c"}}},
    {"a[ b ~= 'c' ]", {{sttString, "a"}, {sttHasAttribute, "b"}, {sttContainsWord, "c"}}},
    {"[b^=\"c\"]", {{sttHasAttribute, "b"}, {sttPrefixMatch, "c"}}},
    {"[b$=c]", {{sttHasAttribute, "b"}, {sttSuffixMatch, "c"}}},
    {"[b*=c]", {{sttHasAttribute, "b"}, {sttSubstringMatch, "c"}}},
    {"[b|=c]", {{sttHasAttribute, "b"}, {sttDashMatch, "c"}}},
    {"[b='c\"]", {{sttHasAttribute, "b"}, {sttExactMatch, "c"}}},
    {"[a=b", {{sttHasAttribute, "a"}, {sttExactMatch, "b"}}},
    {"[a] b", {{sttHasAttribute, "a"}, {sttString, "b"}}},
    {"a:lang(en)", {{sttString, "a"}, {sttColonChar, "lang"}, {sttLanguage, "en"}}},
    {"a:lang(en", {{sttString, "a"}, {sttColonChar, "lang"}, {sttLanguage, "en"}}},
    {"a:first-child", {{sttString, "a"}, {sttColonChar, "first-child"}}},
    {"*", {{sttUniversalChar, ""}}},
    {"* a", {{sttUniversalChar, ""}, {sttString, "a"}}},
    {"*a", {{sttUniversalChar, "a"}}},
    {"a.", {{sttString, "a"}, {sttClassChar, ""}}},
    {"g > #  x", {{sttString, "g"}, {sttHasChild, ""}, {sttIDHashChar, "x"}}},
  };
  for (const Case &C : Cases) {
    const TSVGSelectorTokens Tokens = TokenizeSelector(QString::fromUtf8(C.Selector));
    EXPECT_EQ(Tokens, C.Expected) << C.Selector << " gave " << qPrintable(Show(Tokens));
  }
}

TEST(Selectors, BrokenAttributeSelectorsRaise)
{
  for (const char *Selector : {"[a", "a[b", "[a!b]", "[a|b]", "[ a ~"}) {
    try {
      TokenizeSelector(QString::fromLatin1(Selector));
      ADD_FAILURE() << Selector << " did not raise";
    } catch (const ESVGException &E) {
      EXPECT_EQ(E.Message(), QStringLiteral("Invalid selector: ") + QString::fromLatin1(Selector).trimmed());
    }
  }
}

TEST(Selectors, TokenTypeLookupAndText)
{
  EXPECT_EQ(GetSVGSelectorTokenType(QString()), sttNone);
  EXPECT_EQ(GetSVGSelectorTokenType(QStringLiteral("~=")), sttContainsWord);
  EXPECT_EQ(GetSVGSelectorTokenType(QStringLiteral(" ")), sttHasDescendant);
  EXPECT_EQ(GetSVGSelectorTokenType(QStringLiteral("LANG")), sttNone);
  EXPECT_EQ(TSVGSelectorToken(sttClassChar, QStringLiteral("a")).ToString(), QStringLiteral("sttClassChar(.) = \"a\""));
  EXPECT_EQ(TSVGSelectorToken(sttString, QStringLiteral("g")).ToString(), QStringLiteral("sttString() = \"g\""));
}
