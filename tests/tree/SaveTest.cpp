#include "tree/VXSVG.h"
#include "values/VXSVGAttributes.h"

#include <gtest/gtest.h>

#include <QBuffer>

using namespace vx;

namespace {

class Saving : public ::testing::Test
{
protected:
  void Load(const char *Root, const char *Body)
  {
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' %1>%2</svg>")
                              .arg(QString::fromUtf8(Root), QString::fromUtf8(Body)));
  }
  QString Save(int LineLength = 0)
  {
    QBuffer Buffer;
    Buffer.open(QIODevice::ReadWrite);
    Document.SaveToStream(Buffer, LineLength);
    return QString::fromUtf8(Buffer.data());
  }
  // The root of the saved text, parsed again by the XML layer.
  IXMLNode SavedRoot()
  {
    Saved = LoadXMLData(Save());
    return Saved.DocumentElement();
  }
  IXMLNode SavedChild(int Index) { return Element(SavedRoot(), Index); }
  // The element children only: the indented output holds text nodes between them.
  static IXMLNode Element(const IXMLNode &Parent, int Index)
  {
    for (IXMLNode Child = Parent.ChildNodes().First(); Child; Child = Child.NextSibling())
      if (Child.NodeType() == ntElement && Index-- == 0)
        return Child;
    return IXMLNode();
  }
  static int ElementCount(const IXMLNode &Parent)
  {
    int Count = 0;
    while (Element(Parent, Count))
      ++Count;
    return Count;
  }

  TSVGDocument Document;
  IXMLDocument Saved;
};

} // namespace

TEST_F(Saving, WritesOnlyWhatWasGivenAndNamesColours)
{
  Load("", "<g fill='#000000' opacity='0.5'/><g opacity='1'/><g id='own'/>");
  const IXMLNode Root = SavedRoot();
  EXPECT_EQ(Root.GetAttribute(QStringLiteral("version")), QStringLiteral("1.1"));
  const IXMLNode First = Element(Root, 0);
  EXPECT_EQ(First.GetAttribute(QStringLiteral("fill")), QStringLiteral("black"));
  EXPECT_EQ(First.GetAttribute(QStringLiteral("opacity")), QStringLiteral("0.5"));
  EXPECT_FALSE(First.HasAttribute(QStringLiteral("id"))) << "generated ids are not written";
  EXPECT_FALSE(Element(Root, 1).HasAttribute(QStringLiteral("opacity")));
  EXPECT_EQ(Element(Root, 2).GetAttribute(QStringLiteral("id")), QStringLiteral("own"));
}

TEST_F(Saving, StylePairsKeepTheFormTheyWereReadIn)
{
  Load("", "<g style='fill:red; stroke:none'/><g fill='red'><g style='fill:inherit'/></g>");
  EXPECT_EQ(SavedChild(0).GetAttribute(QStringLiteral("style")), QStringLiteral("fill:red; stroke:none"));
  EXPECT_FALSE(Element(SavedChild(1), 0).HasAttribute(QStringLiteral("style")))
      << "an inherited fill is what SVG does anyway";

  // A property that SVG does not inherit says so in the style; in attribute form it is left out.
  IXMLDocument Xml = LoadXMLData(QStringLiteral("<g/>"));
  const IXMLNode Node = Xml.DocumentElement();
  EXPECT_TRUE(SaveStyleProperty(Node, ipOpacity, QStringLiteral("0.5"), QStringLiteral("1"), true, true, true));
  EXPECT_FALSE(SaveStyleProperty(Node, ipOpacity, QStringLiteral("0.5"), QStringLiteral("1"), false, true, true));
  EXPECT_FALSE(SaveStyleProperty(Node, ipFill, QStringLiteral("red"), QStringLiteral("black"), true, true, true));
  EXPECT_FALSE(SaveStyleProperty(Node, ipOpacity, QStringLiteral("1"), QStringLiteral("1"), false, false, true));
  EXPECT_TRUE(SaveStyleProperty(Node, ipFill, QStringLiteral("black"), QStringLiteral("black"), false, false, true))
      << "a default of an inherited property is written: otherwise the parent's value would apply";
  EXPECT_EQ(Node.GetAttribute(QStringLiteral("style")), QStringLiteral("opacity:inherit"));
  EXPECT_EQ(Node.GetAttribute(QStringLiteral("fill")), QStringLiteral("black"));
}

TEST_F(Saving, HiddenElementsAndDroppedReferences)
{
  Load("", "<g visibility='hidden' clip-path='url(#missing)'/><g transform='translate(3 4)'/>");
  const IXMLNode Hidden = SavedChild(0);
  EXPECT_EQ(Hidden.GetAttribute(QStringLiteral("visibility")), QStringLiteral("hidden"));
  EXPECT_EQ(Hidden.GetAttribute(QStringLiteral("display")), QStringLiteral("none"));
  EXPECT_FALSE(Hidden.HasAttribute(QStringLiteral("clip-path")));
  EXPECT_EQ(SavedChild(1).GetAttribute(QStringLiteral("transform")), QStringLiteral("translate(3 4)"));
}

TEST_F(Saving, RefusedAndDisabledElementsLeaveEmptyNodes)
{
  Load("", "<g id='a' fill='red'><g id='b'/></g><g id='c' fill='blue'/>");
  Document.AllItems().Elements(QStringLiteral("c"))->SetEnabled(false);
  Document.OnSavingElement = [](TObject *, TSVGElement *Element, const IXMLNode &, bool &DoSave) {
    DoSave = Element->ID() != QLatin1String("a");
  };
  const IXMLNode Root = SavedRoot();
  ASSERT_EQ(ElementCount(Root), 2);
  EXPECT_FALSE(Element(Root, 0).HasAttribute(QStringLiteral("fill")));
  EXPECT_EQ(ElementCount(Element(Root, 0)), 0) << "a refused element writes no children";
  EXPECT_FALSE(Element(Root, 1).HasAttribute(QStringLiteral("id")));

  Document.OnSavingElement = nullptr;
  Document.SetOptions(Document.GetOptions() | TSVGOptions{soExportDisabled});
  EXPECT_EQ(SavedChild(1).GetAttribute(QStringLiteral("fill")), QStringLiteral("blue"));
}

TEST_F(Saving, CompactOutputLeavesZeroSizesOut)
{
  Load("width='0' height='10' viewBox='0 0 10 10'", "");
  EXPECT_FALSE(SavedRoot().HasAttribute(QStringLiteral("width")));
  EXPECT_EQ(SavedRoot().GetAttribute(QStringLiteral("viewBox")), QStringLiteral("0 0 10 10"));
  Document.SetOptions(Document.GetOptions() - TSVGOptions{soCompactExport});
  EXPECT_EQ(SavedRoot().GetAttribute(QStringLiteral("width")), QStringLiteral("0"));
}

TEST_F(Saving, RoundTripKeepsTheTreeAndItsPresentation)
{
  Load("width='40' height='30' viewBox='0 0 80 60' preserveAspectRatio='xMinYMax slice'",
       "<title>Picture</title><g id='a' class='x y' fill='lime' stroke='#123456' stroke-width='3' "
       "stroke-dasharray='4 2' font-size='12' font-family='DejaVu Sans' systemLanguage='en'>"
       "<g id='b' style='fill-opacity:0.25' transform='rotate(90)'/></g>");
  const QString Text = Save();
  TSVGDocument Copy;
  Copy.LoadFromText(Text);
  ASSERT_EQ(Copy.AllItems().Count(), Document.AllItems().Count()) << Text.toStdString();
  EXPECT_EQ(Copy.Title(), QStringLiteral("Picture"));
  EXPECT_EQ(Copy.ViewBox().GetRect(), Document.ViewBox().GetRect());
  EXPECT_EQ(Copy.AspectRatio().GetAlign(), saXMinYMax);
  EXPECT_TRUE(Copy.AspectRatio().GetSlice());
  auto *A = dynamic_cast<TSVGGraphicElement *>(Copy.AllItems().Elements(QStringLiteral("a")));
  auto *B = dynamic_cast<TSVGGraphicElement *>(Copy.AllItems().Elements(QStringLiteral("b")));
  ASSERT_TRUE(A && B);
  EXPECT_EQ(A->Classes().ToStringList(), (QStringList{QStringLiteral("x"), QStringLiteral("y")}));
  EXPECT_EQ(A->GetPen().GetColor(), 0xFF123456u);
  EXPECT_FLOAT_EQ(A->GetPen().GetThickness(), 3);
  EXPECT_EQ(A->GetPen().GetDashPattern(), (std::vector<float>{4, 2}));
  EXPECT_FLOAT_EQ(A->GetFont().GetSize(), 12);
  EXPECT_EQ(B->GetBrush().GetColor(), 0xFF00FF00u);
  EXPECT_FLOAT_EQ(B->GetBrush().GetOpacity(), 0.25f);
  EXPECT_TRUE(B->PreferredStyles().GetSet(ipFillOpacity));
  EXPECT_TRUE(VXMatrixEquals(B->Matrix(), CreateRotationVXMatrix(float(M_PI / 2)), 1e-5f));
}

// Under the standard rules a save reads back as the picture that was read: the fragment survives,
// and what the save loads as saves to the same text.
TEST_F(Saving, StandardSavesReadBackAsRead)
{
  const struct
  {
    const char *Body;
    const char *Kept;
  } Cases[] = {
    {"<line x1='10%' x2='70%' y2='5'/>", "x1=\"10%\" x2=\"70%\""},
    {"<marker id='m' refX='5%' markerWidth='0' markerHeight='20%'/>", "refX=\"5%\" markerWidth=\"0\""},
    {"<linearGradient id='g'/><rect width='5' height='5' fill='url(#g)'/>", "fill=\"url(#g)\""},
    {"<path d='M0 0a5 5 0 0 1 9 9'/>", "d=\"M0 0a5 5 0 0 1 9 9\""},
    {"<g id='g' transform='scale(1e30) scale(1e30)'/>", "<g id=\"g\"/>"},
  };
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Body);
    Document.SetOptions(DefaultSVGOptions | soStandardSVG);
    Load("xmlns:xlink='http://www.w3.org/1999/xlink'", C.Body);
    const QString First = Save();
    EXPECT_TRUE(First.contains(QString::fromUtf8(C.Kept))) << First.toStdString();
    Document.LoadFromText(First);
    EXPECT_EQ(Save().toStdString(), First.toStdString());
  }
  // A text's textPath is written as what it is, not as a tspan.
  Load("xmlns:xlink='http://www.w3.org/1999/xlink'",
       "<path id='p' d='M0 0h9'/><text><textPath xlink:href='#p'>a</textPath></text>");
  EXPECT_TRUE(Save().contains(QStringLiteral("<textPath xlink:href=\"#p\"")));
}

TEST_F(Saving, LongLinesWrapOnlyAboveThirtyTwo)
{
  QString Body;
  for (int I = 0; I < 40; ++I)
    Body += QStringLiteral("<g class='c%1'/>").arg(I);
  Load("", Body.toUtf8().constData());
  const QString Plain = Save(32);
  const QString Wrapped = Save(33);
  auto Longest = [](const QString &Text) {
    qsizetype Max = 0;
    for (const QString &Line : Text.split(QLatin1Char('\n')))
      Max = std::max(Max, Line.size());
    return Max;
  };
  EXPECT_EQ(Plain, Save(0));
  EXPECT_LE(Longest(Wrapped), Longest(Plain));
}
