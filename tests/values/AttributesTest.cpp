#include "platform/rtl/VXStringList.h"
#include "platform/xml/VXXmlDom.h"
#include "values/VXSVGAttributes.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

IXMLNode LoadRoot(const char *Xml)
{
  static IXMLDocument Document;
  Document = LoadXMLData(QString::fromUtf8(Xml));
  return Document.DocumentElement();
}

// Cuts the first closed comment and searches again from the start, the plain way.
QString RemoveCommentsSlowly(QString S)
{
  for (;;) {
    const qsizetype Open = S.indexOf(QLatin1String("/*"));
    const qsizetype Close = Open < 0 ? -1 : S.indexOf(QLatin1String("*/"), Open + 2);
    if (Close < 0)
      return S;
    S.remove(Open, Close + 2 - Open);
  }
}

} // namespace

TEST(Attributes, References)
{
  struct Case { const char *Text; const char *Uri; const char *Local; };
  const Case Cases[] = {
    {"#a", "a", "a"}, {"url(#a)", "a", "a"}, {"URL(#a)", "a", "a"}, {"uri(#a)", "a", "a"},
    {" url(#a) ", "a", "a"}, {"url(#a", "url(#a", ""}, {"image.png", "image.png", ""},
    {"#123456", "#123456", ""}, {"#abc", "#abc", ""}, {"#abcd", "abcd", "abcd"}, {"#12345g", "12345g", "12345g"},
  };
  for (const Case &C : Cases) {
    EXPECT_EQ(ParseURI(QString::fromLatin1(C.Text)), QString::fromLatin1(C.Uri)) << C.Text;
    EXPECT_EQ(ParseLocalURI(QString::fromLatin1(C.Text)), QString::fromLatin1(C.Local)) << C.Text;
  }
  bool Inherited = false;
  EXPECT_EQ(ParseLocalURI(QStringLiteral("inherit"), QStringLiteral("d"), Inherited), QStringLiteral("d"));
  EXPECT_TRUE(Inherited);
  EXPECT_EQ(ParseLocalURI(QStringLiteral(""), QStringLiteral("d"), Inherited), QStringLiteral("d"));
  EXPECT_TRUE(Inherited) << "blank text keeps the flag";
  EXPECT_EQ(ParseLocalURI(QStringLiteral("file.svg"), QStringLiteral("d"), Inherited), QStringLiteral("d"));
  EXPECT_FALSE(Inherited);
}

TEST(Attributes, TextCleaning)
{
  EXPECT_EQ(RemoveComments(QStringLiteral("a/*b*/c/*d")), QStringLiteral("ac/*d"));
  EXPECT_EQ(RemoveComments(QStringLiteral("/**/x/* y */z")), QStringLiteral("xz"));
  EXPECT_EQ(RemoveComments(QStringLiteral("a//*x*/*b*/c")), QStringLiteral("ac")) << "a cut can form an opener";
  EXPECT_EQ(RemoveComments(QStringLiteral("/*/")), QStringLiteral("/*/"));
  EXPECT_EQ(CleanText(QStringLiteral("  a   b ")), QStringLiteral(" a b "));
  EXPECT_EQ(CleanText(QStringLiteral("a\n")), QStringLiteral("a")) << "a line break alone adds no blank";
  EXPECT_EQ(CleanText(QStringLiteral("\n a")), QStringLiteral(" a"));
  EXPECT_EQ(CleanText(QStringLiteral("\t")), QStringLiteral("  ")) << "front and back each keep their blank";
  EXPECT_EQ(CleanText(QString()), QString());
  EXPECT_TRUE(CleanArray({QStringLiteral(" "), QStringLiteral("\t"), QString()}).isEmpty());
  EXPECT_EQ(CleanArray({QStringLiteral(" a "), QString(), QStringLiteral("b")}),
            (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
  EXPECT_EQ(SplitString(QStringLiteral("1,,2 3"), SVGListDelimiters).size(), 4);
  EXPECT_TRUE(IsHexColor(QStringLiteral("#fA0")));
  EXPECT_FALSE(IsHexColor(QStringLiteral("#ff")));
  EXPECT_FALSE(IsHexColor(QStringLiteral("fff")));
}

TEST(Attributes, CommentRemovalMatchesCuttingOneAtATime)
{
  // Every text of up to eight characters over '/', '*' and 'a'.
  const char Alphabet[] = {'/', '*', 'a'};
  for (int Length = 0; Length <= 8; ++Length) {
    int Count = 1;
    for (int I = 0; I < Length; ++I)
      Count *= 3;
    for (int Code = 0; Code < Count; ++Code) {
      QString S;
      for (int I = 0, C = Code; I < Length; ++I, C /= 3)
        S.append(QLatin1Char(Alphabet[C % 3]));
      ASSERT_EQ(RemoveComments(S), RemoveCommentsSlowly(S)) << qPrintable(S);
    }
  }
  const QString Many = QStringLiteral("a/*b*/").repeated(200000);
  EXPECT_EQ(RemoveComments(Many), QStringLiteral("a").repeated(200000));
}

TEST(Attributes, ReadingFromNodes)
{
  const IXMLNode Root = LoadRoot(
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' a='1' empty=''"
      " systemLanguage='' requiredFeatures=' x, y ' xlink:href='#t'><title>T</title></svg>");
  EXPECT_EQ(ParseAttrString(Root, QStringLiteral("a")), QStringLiteral("1"));
  EXPECT_EQ(ParseAttrString(Root, QStringLiteral("missing")), QString());
  EXPECT_EQ(ParseAttrString(Root, QStringLiteral("missing"), QStringLiteral("d"), QString()), QStringLiteral("d"));
  EXPECT_EQ(ParseAttrString(Root, QStringLiteral("empty"), QStringLiteral("d"), QString()), QString());
  EXPECT_EQ(ParseAttrString(Root, QStringLiteral("href"), QString(), QStringLiteral("xlink")), QStringLiteral("#t"));
  EXPECT_EQ(ParseURI(Root, QStringLiteral("href"), QString(), QStringLiteral("xlink")), QStringLiteral("t"));
  EXPECT_EQ(ParseString(Root, QStringLiteral("title"), QStringLiteral("d")), QStringLiteral("T"));
  EXPECT_EQ(ParseString(Root, QStringLiteral("desc"), QStringLiteral("d")), QStringLiteral("d"));

  TStringList List;
  List.Add(QStringLiteral("old"));
  ParseRequiredStringList(Root, QStringLiteral("systemLanguage"), List, SVGListDelimiters);
  ASSERT_EQ(List.Count(), 1) << "present but empty differs from absent";
  EXPECT_EQ(List[0], QString());
  ParseRequiredStringList(Root, QStringLiteral("requiredExtensions"), List, SVGListDelimiters);
  EXPECT_EQ(List.Count(), 0);
  ParseRequiredStringList(Root, QStringLiteral("requiredFeatures"), List, SVGListDelimiters);
  EXPECT_EQ(List.ToStringList(), (QStringList{QStringLiteral("x"), QStringLiteral("y")}));
  ParseStringList(List, QStringLiteral("z"), SVGListDelimiters);
  EXPECT_EQ(List.Count(), 3) << "tokens are appended";
  ParseStringList(List, QStringLiteral("  "), SVGListDelimiters);
  EXPECT_EQ(List.Count(), 0) << "blank text clears";
}

TEST(Attributes, WritingToNodes)
{
  const IXMLNode Root = LoadRoot("<svg xmlns='http://www.w3.org/2000/svg' keep='1' drop='2'/>");
  EXPECT_FALSE(SaveAttrString(Root, QStringLiteral("keep"), QStringLiteral("x"), true, false));
  EXPECT_EQ(Root.GetAttribute(QStringLiteral("keep")), QStringLiteral("1"));
  EXPECT_FALSE(SaveAttrString(Root, QStringLiteral("drop"), QStringLiteral("x"), true, true));
  EXPECT_FALSE(Root.HasAttribute(QStringLiteral("drop")));
  EXPECT_TRUE(SaveAttrString(Root, QStringLiteral("new"), QStringLiteral("v"), false, false));
  EXPECT_EQ(Root.GetAttribute(QStringLiteral("new")), QStringLiteral("v"));
  TStringList Tokens;
  Tokens.Add(QStringLiteral("a"));
  Tokens.Add(QStringLiteral("b"));
  EXPECT_TRUE(SaveAttrString(Root, QStringLiteral("list"), Tokens, false, false, QLatin1Char(' ')));
  EXPECT_EQ(Root.GetAttribute(QStringLiteral("list")), QStringLiteral("a b"));
  EXPECT_TRUE(SaveNodeString(Root, QStringLiteral("title"), QStringLiteral("Hello"), false, false));
  EXPECT_EQ(ParseString(Root, QStringLiteral("title"), QString()), QStringLiteral("Hello"));
  EXPECT_EQ(Root.ChildNodes().FindNode(QStringLiteral("title")).NamespaceURI(), SVGNamespaceURI);
  EXPECT_FALSE(SaveNodeString(Root, QStringLiteral("title"), QString(), true, true));
  EXPECT_FALSE(Root.ChildNodes().FindNode(QStringLiteral("title")));
}
