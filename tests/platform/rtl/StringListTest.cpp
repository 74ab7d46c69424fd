#include "platform/rtl/VXStringList.h"

#include <gtest/gtest.h>

using namespace vx;

namespace {

QStringList Split(TStrings &List, const char *Text, char Delimiter = ',', bool Strict = false)
{
  List.SetDelimiter(QLatin1Char(Delimiter));
  List.SetStrictDelimiter(Strict);
  List.SetDelimitedText(QString::fromLatin1(Text));
  return List.ToStringList();
}

} // namespace

TEST(StringList, DelimitedTextSplitsQuotesAndBlanks)
{
  struct Case { const char *Text; char Delimiter; bool Strict; QStringList Items; };
  const Case Cases[] = {
    {"a,b,c", ',', false, {"a", "b", "c"}},
    {"  a , b  ", ',', false, {"a", "b"}},
    {"a b,c", ',', false, {"a", "b", "c"}},
    {"a b,c", ',', true, {"a b", "c"}},
    {"a\tb", ',', false, {"a", "b"}},
    {"\"a b\",c", ',', false, {"a b", "c"}},
    {"\"a\"\"b\"", ',', false, {"a\"b"}},
    {"\"a,b\"", ',', true, {"a,b"}},
    {"a,", ',', false, {"a", ""}},
    {",a", ',', false, {"", "a"}},
    {"a,,b", ',', false, {"a", "", "b"}},
    {"\"\"", ',', false, {""}},
    {"", ',', false, {}},
    {"   ", ',', false, {}},
    {"   ", ',', true, {"   "}},
    {"\"abc\"def", ',', false, {"abc", "def"}},
    {"\"open", ',', false, {"open"}},
    {"fill:red; stroke : blue;", ';', true, {"fill:red", " stroke : blue", ""}},
    {"x y", ' ', false, {"x", "y"}},
  };
  TStringList List;
  for (const Case &C : Cases)
    EXPECT_EQ(Split(List, C.Text, C.Delimiter, C.Strict), C.Items) << C.Text << (C.Strict ? " strict" : "");
}

TEST(StringList, DelimitedTextQuotesOnlyWhatNeedsIt)
{
  struct Case { QStringList Items; bool Strict; const char *Text; };
  const Case Cases[] = {
    {{"a", "b"}, false, "a,b"},
    {{"a b", "c"}, false, "\"a b\",c"},
    {{"a b", "c"}, true, "a b,c"},
    {{"a\"b"}, false, "\"a\"\"b\""},
    {{"a,b"}, true, "\"a,b\""},
    {{"a", "", "b"}, false, "a,,b"},
    {{""}, false, "\"\""},
    {{}, false, ""},
  };
  for (const Case &C : Cases) {
    TStringList List(C.Items);
    List.SetStrictDelimiter(C.Strict);
    EXPECT_EQ(List.DelimitedText(), QString::fromLatin1(C.Text)) << C.Text;
    // What is written reads back as the same items.
    TStringList Back;
    Back.SetStrictDelimiter(C.Strict);
    Back.SetDelimitedText(List.DelimitedText());
    EXPECT_EQ(Back.ToStringList(), C.Items) << C.Text;
  }
  TStringList List({"a b", "c"});
  List.SetDelimiter(QLatin1Char(';'));
  List.SetStrictDelimiter(true);
  EXPECT_EQ(List.CommaText(), QStringLiteral("\"a b\",c")) << "comma text has fixed rules";
  List.SetCommaText(QStringLiteral("x y;z"));
  EXPECT_EQ(List.ToStringList(), QStringList({"x", "y;z"}));
}

TEST(StringList, TextLines)
{
  struct Case { const char *Text; QStringList Lines; };
  const Case Cases[] = {
    {"a\nb\n", {"a", "b"}}, {"a\r\nb\rc", {"a", "b", "c"}}, {"a\n\nb", {"a", "", "b"}},
    {"", {}}, {"\n", {""}}, {" a ", {" a "}},
  };
  TStringList List;
  for (const Case &C : Cases) {
    List.SetText(QString::fromLatin1(C.Text));
    EXPECT_EQ(List.ToStringList(), C.Lines) << C.Text;
  }
  List.SetText(QStringLiteral("a\r\nb"));
  EXPECT_EQ(List.Text(), QStringLiteral("a\nb\n"));
}

TEST(StringList, NamesAndValues)
{
  TStringList List({"x=1", "Y=", "z", "w=a=b"});
  EXPECT_EQ(List.Names(0), QStringLiteral("x"));
  EXPECT_EQ(List.Names(2), QString()) << "a line without separator has no name";
  EXPECT_EQ(List.ValueFromIndex(2), QString());
  EXPECT_EQ(List.ValueFromIndex(3), QStringLiteral("a=b"));
  EXPECT_EQ(List.Values(QStringLiteral("y")), QString());
  EXPECT_EQ(List.IndexOfName(QStringLiteral("y")), 1) << "names compare without case by default";
  EXPECT_EQ(List.Values(QStringLiteral("missing")), QString());

  List.SetValues(QStringLiteral("y"), QStringLiteral("2"));
  EXPECT_EQ(List[1], QStringLiteral("y=2"));
  List.SetValues(QStringLiteral("x"), QString());
  EXPECT_EQ(List.IndexOfName(QStringLiteral("x")), -1);
  List.SetValues(QStringLiteral("v"), QStringLiteral("3"));
  EXPECT_EQ(List[List.Count() - 1], QStringLiteral("v=3"));

  List.SetNameValueSeparator(QLatin1Char(':'));
  List.SetText(QStringLiteral("fill: red"));
  EXPECT_EQ(List.Names(0), QStringLiteral("fill"));
  EXPECT_EQ(List.ValueFromIndex(0), QStringLiteral(" red"));

  EXPECT_EQ(List.IndexOf(QStringLiteral("FILL: RED")), 0);
  List.SetCaseSensitive(true);
  EXPECT_EQ(List.IndexOf(QStringLiteral("FILL: RED")), -1);
}

TEST(StringList, ChangeEventsAndUpdates)
{
  TStringList List;
  int Changing = 0, Changed = 0;
  List.OnChanging = [&](TObject *Sender) { EXPECT_EQ(Sender, &List); ++Changing; };
  List.OnChange = [&](TObject *) { ++Changed; };

  List.Add(QStringLiteral("a"));
  List.Insert(0, QStringLiteral("b"));
  List.Delete(1);
  EXPECT_EQ(Changing, 3);
  EXPECT_EQ(Changed, 3);

  Changing = Changed = 0;
  List.BeginUpdate();
  List.BeginUpdate();
  List.Add(QStringLiteral("c"));
  List.Clear();
  List.EndUpdate();
  EXPECT_EQ(Changed, 0);
  List.EndUpdate();
  EXPECT_EQ(Changing, 1);
  EXPECT_EQ(Changed, 1);

  Changing = Changed = 0;
  List.SetText(QStringLiteral("1\n2\n3"));
  List.SetDelimitedText(QStringLiteral("a,b"));
  EXPECT_EQ(Changed, 2) << "each text form is one change";
}

TEST(StringList, ObjectsAssignAndErrors)
{
  TObject A, B;
  TStringList Source;
  Source.AddObject(QStringLiteral("a"), &A);
  Source.AddObject(QStringLiteral("b"), &B);
  Source.SetDelimiter(QLatin1Char(';'));

  TStringList Copy;
  Copy.Add(QStringLiteral("old"));
  int Changed = 0;
  Copy.OnChange = [&](TObject *) { ++Changed; };
  Copy.Assign(&Source);
  EXPECT_EQ(Changed, 1);
  EXPECT_TRUE(Copy.Equals(Source));
  EXPECT_EQ(Copy.Objects(1), &B);
  EXPECT_EQ(Copy.IndexOfObject(&A), 0);
  EXPECT_EQ(Copy.DelimitedText(), QStringLiteral("a;b"));

  Copy.Exchange(0, 1);
  EXPECT_EQ(Copy.ToStringList(), QStringList({"b", "a"}));
  EXPECT_EQ(Copy.Objects(0), &B);
  Copy.Move(0, 1);
  EXPECT_EQ(Copy.Objects(0), &A);

  TPersistent Foreign;
  EXPECT_THROW(Copy.Assign(&Foreign), EConvertError);
  EXPECT_THROW(Copy.Get(2), EListError);
  EXPECT_THROW(Copy.Delete(-1), EListError);
  EXPECT_THROW(Copy.Insert(3, QString()), EListError);
}
