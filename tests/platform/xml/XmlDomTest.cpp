#include "platform/xml/VXXmlDom.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>

#include <sys/resource.h>

#include <thread>
#include <vector>

using namespace vx;

namespace {

const QString SvgNS = QStringLiteral("http://www.w3.org/2000/svg");
const QString XLinkNS = QStringLiteral("http://www.w3.org/1999/xlink");

long MaxRssKiB()
{
  rusage Usage{};
  getrusage(RUSAGE_SELF, &Usage);
  return Usage.ru_maxrss;
}

QString BillionLaughs(const char *Use)
{
  QString Text = QStringLiteral("<?xml version=\"1.0\"?>\n<!DOCTYPE svg [\n<!ENTITY lol0 \"lol\">\n");
  for (int Level = 1; Level <= 9; ++Level)
    Text += QStringLiteral("<!ENTITY lol%1 \"%2\">\n")
              .arg(Level)
              .arg(QStringLiteral("&lol%1;").arg(Level - 1).repeated(10));
  return Text + QStringLiteral("]>\n") + QString::fromLatin1(Use) + QLatin1Char('\n');
}

} // namespace

TEST(XmlDom, EntityReferencesStayNodesWithTheEntityContentAsChildren)
{
  const IXMLDocument Doc = LoadXMLData(QStringLiteral(
    "<!DOCTYPE svg [\n"
    "  <!ENTITY shapes \"<rect width='4'/><circle r='2'/>\">\n"
    "  <!ENTITY w \"10\">\n"
    "]>\n"
    "<svg width=\"&w;px\">&shapes;<g/></svg>"));
  const IXMLNode Root = Doc.DocumentElement();
  ASSERT_TRUE(Root);
  EXPECT_EQ(Root.GetAttribute(QStringLiteral("width")), QStringLiteral("10px"));

  const IXMLNodeList Children = Root.ChildNodes();
  ASSERT_EQ(Children.Count(), 2);
  const IXMLNode Ref = Children[0];
  EXPECT_EQ(Ref.NodeType(), ntEntityRef);
  EXPECT_EQ(int(Ref.NodeType()), 5);
  EXPECT_EQ(Ref.NodeName(), QStringLiteral("shapes"));
  EXPECT_EQ(Ref.LocalName(), QString());
  EXPECT_EQ(NodeTypeName(Ref.NodeType()), QStringLiteral("ntEntityRef"));

  const IXMLNodeList Content = Ref.ChildNodes();
  ASSERT_EQ(Content.Count(), 2);
  EXPECT_EQ(Content[0].LocalName(), QStringLiteral("rect"));
  EXPECT_EQ(Content[0].GetAttribute(QStringLiteral("width")), QStringLiteral("4"));
  EXPECT_EQ(Content[1].LocalName(), QStringLiteral("circle"));
  EXPECT_FALSE(Content[0].ParentNode()) << "entity content is shared by every reference";
  EXPECT_THROW(Content.Delete(0), EInvalidOperation);
  EXPECT_EQ(Children[1].LocalName(), QStringLiteral("g"));

  // Writing keeps the reference and its declaration.
  const QString Out = Doc.XML();
  EXPECT_TRUE(Out.contains(QStringLiteral("&shapes;"))) << Out.toStdString();
  EXPECT_TRUE(Out.contains(QStringLiteral("<!ENTITY shapes"))) << Out.toStdString();
}

TEST(XmlDom, ExternalEntitiesAndDtdsAreNeverRead)
{
  QTemporaryDir Dir;
  ASSERT_TRUE(Dir.isValid());
  // Were either file read, its text would show in the document or break the parse.
  const QString Entity = Dir.filePath(QStringLiteral("entity.xml"));
  const QString Dtd = Dir.filePath(QStringLiteral("subset.dtd"));
  for (const auto &[Name, Content] : {std::pair{Entity, "LEAKED<unclosed"}, std::pair{Dtd, "<!ENTITY e \"LEAKED\">"}}) {
    QFile File(Name);
    ASSERT_TRUE(File.open(QIODevice::WriteOnly));
    File.write(Content);
  }
  const QString Url = QStringLiteral("file://");
  const QString Cases[] = {
    QStringLiteral("<!DOCTYPE svg [<!ENTITY ext SYSTEM \"%1\">]><svg>&ext;</svg>").arg(Url + Entity),
    QStringLiteral("<!DOCTYPE svg [<!ENTITY ext SYSTEM \"%1\">]><svg>&ext;</svg>").arg(Entity),
    QStringLiteral("<!DOCTYPE svg SYSTEM \"%1\"><svg>&e;</svg>").arg(Dtd),
  };
  for (const QString &Text : Cases) {
    IXMLDocument Doc;
    ASSERT_NO_THROW(Doc.LoadFromXML(Text)) << Text.toStdString();
    const IXMLNode Root = Doc.DocumentElement();
    ASSERT_TRUE(Root);
    EXPECT_EQ(Root.Text(), QString()) << Text.toStdString();
    EXPECT_FALSE(Doc.XML().contains(QStringLiteral("LEAKED"))) << Text.toStdString();
    ASSERT_EQ(Root.ChildNodes().Count(), 1);
    EXPECT_EQ(Root.ChildNodes()[0].NodeType(), ntEntityRef);
    EXPECT_EQ(Root.ChildNodes()[0].ChildNodes().Count(), 0);
  }
  // A parameter entity naming the file is not expanded either, so the entity it would declare
  // stays unknown.
  try {
    LoadXMLData(QStringLiteral("<!DOCTYPE svg [<!ENTITY % p SYSTEM \"%1\"> %p;]><svg>&e;</svg>").arg(Dtd));
    ADD_FAILURE() << "an undeclared entity was accepted";
  } catch (const EDOMParseError &E) {
    EXPECT_TRUE(E.Reason().contains(QStringLiteral("'e' not defined"))) << E.what();
  }
}

TEST(XmlDom, HostileDocumentsFailFastWithinBoundedMemory)
{
  // Exponential entity expansion, in content and in an attribute value, and nesting far beyond
  // any picture: each is refused by the parser.
  QString Deep;
  for (int I = 0; I < 100000; ++I)
    Deep += QStringLiteral("<g>");
  const QString Cases[] = {
    BillionLaughs("<svg>&lol9;</svg>"),
    BillionLaughs("<svg a=\"&lol9;\"/>"),
    QStringLiteral("<svg>") + Deep,
  };
  const long RssBefore = MaxRssKiB();
  for (const QString &Text : Cases) {
    QElapsedTimer Timer;
    Timer.start();
    IXMLDocument Doc;
    EXPECT_THROW(Doc.LoadFromXML(Text), EDOMParseError);
    EXPECT_LT(Timer.elapsed(), 1000);
    EXPECT_FALSE(Doc.DocumentElement());
  }
  EXPECT_LT(MaxRssKiB() - RssBefore, 64 * 1024);

  try {
    LoadXMLData(BillionLaughs("<svg>&lol9;</svg>"));
  } catch (const EDOMParseError &E) {
    EXPECT_TRUE(E.Message().contains(QStringLiteral("entity"), Qt::CaseInsensitive)) << E.what();
    EXPECT_GT(E.Line(), 0);
  }

  // Linear fan-out of a large entity parses (references stay nodes), but gathering its text is
  // capped instead of building gigabytes.
  const QString Big = QString(100000, QLatin1Char('x'));
  const IXMLDocument Quadratic = LoadXMLData(
    QStringLiteral("<!DOCTYPE svg [<!ENTITY a \"%1\">]><svg><text>%2</text></svg>")
      .arg(Big, QStringLiteral("&a;").repeated(100000)));
  const IXMLNode Text = Quadratic.DocumentElement().ChildNodes()[0];
  EXPECT_EQ(Text.ChildNodes().Count(), 100000);
  EXPECT_THROW(Text.Text(), EDOMParseError);
  EXPECT_EQ(Text.ChildNodes()[5].Text(), Big);
  EXPECT_LT(MaxRssKiB() - RssBefore, 256 * 1024);
}

TEST(XmlDom, MalformedXmlNamesTheLineAndTheReason)
{
  struct Case { const char *Text; int Line; const char *Reason; };
  const Case Cases[] = {
    {"<svg><g></svg>", 1, "mismatch"},
    {"<svg>\n<rect x='1' x='2'/></svg>", 2, "redefined"},
    {"<svg>\n\n<rect", 3, ""},
    {"plain text", 1, "Start tag expected"},
    {"<svg>&undefined;</svg>", 1, "undefined"},
    {"<svg></svg><svg/>", 1, "Extra content"},
  };
  for (const Case &C : Cases) {
    try {
      LoadXMLData(QString::fromLatin1(C.Text));
      ADD_FAILURE() << "loaded: " << C.Text;
    } catch (const EDOMParseError &E) {
      EXPECT_EQ(E.Line(), C.Line) << C.Text << ": " << E.what();
      EXPECT_TRUE(E.Reason().contains(QString::fromLatin1(C.Reason))) << C.Text << ": " << E.what();
      EXPECT_TRUE(E.Message().contains(QStringLiteral("line %1").arg(C.Line))) << E.what();
    }
  }
  // A failed load leaves the document as it was.
  IXMLDocument Doc = LoadXMLData(QStringLiteral("<svg/>"));
  EXPECT_THROW(Doc.LoadFromXML(QStringLiteral("<svg>")), EDOMParseError);
  EXPECT_EQ(Doc.DocumentElement().LocalName(), QStringLiteral("svg"));
  // No content at all is an empty document, not an error.
  Doc.LoadFromXML(QStringLiteral(" \n "));
  EXPECT_FALSE(Doc.DocumentElement());
}

TEST(XmlDom, NamesNamespacesAndAttributes)
{
  const IXMLDocument Doc = LoadXMLData(QStringLiteral(
    "<svg:svg xmlns:svg='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink'>"
    "<svg:rect xlink:href='#a' width='3' fill=''/><!--note-->text<![CDATA[a<b]]><other:x/>"
    "</svg:svg>"));
  const IXMLNode Root = Doc.DocumentElement();
  EXPECT_EQ(Root.LocalName(), QStringLiteral("svg"));
  EXPECT_EQ(Root.NodeName(), QStringLiteral("svg:svg"));
  EXPECT_EQ(Root.NamespaceURI(), SvgNS);
  EXPECT_EQ(Root.FindNamespaceURI(QStringLiteral("xlink")), XLinkNS);
  EXPECT_EQ(Root.FindNamespaceURI(QString()), QString());

  const IXMLNodeList Children = Root.ChildNodes();
  ASSERT_EQ(Children.Count(), 5);
  struct Expected { TNodeType Type; const char *Local; const char *Text; };
  const Expected Rows[] = {
    {ntElement, "rect", ""}, {ntComment, "", "note"}, {ntText, "", "text"}, {ntCData, "", "a<b"},
    {ntElement, "x", ""},
  };
  for (int I = 0; I < 5; ++I) {
    EXPECT_EQ(Children[I].NodeType(), Rows[I].Type) << I;
    EXPECT_EQ(Children[I].LocalName(), QString::fromLatin1(Rows[I].Local)) << I;
    EXPECT_EQ(Children[I].Text(), QString::fromLatin1(Rows[I].Text)) << I;
  }
  EXPECT_EQ(Children[4].NodeName(), QStringLiteral("other:x")) << "an undeclared prefix is kept";
  EXPECT_EQ(Children.FindNode(QStringLiteral("rect")), Children[0]);
  EXPECT_EQ(Children.IndexOf(QStringLiteral("svg:rect")), 0);
  EXPECT_EQ(Children.IndexOf(QStringLiteral("title")), -1);

  const IXMLNode Rect = Children[0];
  EXPECT_TRUE(Rect.HasAttribute(QStringLiteral("xlink:href")));
  EXPECT_FALSE(Rect.HasAttribute(QStringLiteral("href")));
  EXPECT_TRUE(Rect.HasAttribute(QStringLiteral("href"), XLinkNS));
  EXPECT_FALSE(Rect.HasAttribute(QStringLiteral("href"), QString()));
  EXPECT_EQ(Rect.GetAttributeNS(QStringLiteral("href"), XLinkNS), QStringLiteral("#a"));
  EXPECT_TRUE(Rect.HasAttribute(QStringLiteral("width"), QString()));
  EXPECT_TRUE(Rect.HasAttribute(QStringLiteral("fill"))) << "present but empty";
  EXPECT_EQ(Rect.GetAttribute(QStringLiteral("missing")), QString());

  const IXMLNodeList Attributes = Rect.AttributeNodes();
  ASSERT_EQ(Attributes.Count(), 3);
  EXPECT_EQ(Attributes[0].LocalName(), QStringLiteral("href"));
  EXPECT_EQ(Attributes[0].NodeName(), QStringLiteral("xlink:href"));
  EXPECT_EQ(Attributes[0].NodeType(), ntAttribute);
  EXPECT_EQ(Attributes[1].Text(), QStringLiteral("3"));
  EXPECT_THROW(Attributes[3], EListError);
  EXPECT_FALSE(IXMLNode());
  EXPECT_THROW(IXMLNode().LocalName(), EInvalidOperation);
}

TEST(XmlDom, TextElementsAndEditing)
{
  IXMLDocument Doc = LoadXMLData(QStringLiteral(
    "<svg><title>T</title><style><![CDATA[a{}]]></style><desc>a<b/>c</desc><g id='x' a='1'/></svg>"));
  const IXMLNodeList Children = Doc.DocumentElement().ChildNodes();
  EXPECT_TRUE(Children[0].IsTextElement());
  EXPECT_FALSE(Children[1].IsTextElement()) << "CDATA is read as such, not as the element's text";
  EXPECT_FALSE(Children[2].IsTextElement());
  EXPECT_EQ(Children[2].Text(), QStringLiteral("ac"));

  // Removing keeps the node usable; the list shows the change at once.
  IXMLNode G = Children[3];
  IXMLNodeList Attributes = G.AttributeNodes();
  Attributes.Delete(Attributes.IndexOf(QStringLiteral("a")));
  EXPECT_FALSE(G.HasAttribute(QStringLiteral("a")));
  EXPECT_EQ(Attributes.Count(), 1);
  const IXMLNode Title = Children[0];
  EXPECT_EQ(Children.Remove(Title), 0);
  EXPECT_EQ(Children.Count(), 3);
  EXPECT_EQ(Title.Text(), QStringLiteral("T"));
  EXPECT_FALSE(Title.ParentNode());

  Children[1].SetText(QStringLiteral("x < y & z"));
  EXPECT_TRUE(Children[1].IsTextElement());
  G.SetAttribute(QStringLiteral("id"), QStringLiteral("\"q\""));
  Children.Insert(0, Title);
  EXPECT_EQ(Children.IndexOf(Title), 0);
  EXPECT_THROW(G.ChildNodes().Add(Doc.DocumentElement()), EInvalidOperation);

  const IXMLDocument Again = LoadXMLData(Doc.XML());
  const IXMLNodeList Read = Again.DocumentElement().ChildNodes();
  EXPECT_EQ(Read[0].Text(), QStringLiteral("T"));
  EXPECT_EQ(Read[2].Text(), QStringLiteral("x < y & z"));
  EXPECT_EQ(Read[3].GetAttribute(QStringLiteral("id")), QStringLiteral("\"q\""));
}

TEST(XmlDom, BuildingIndentedOutputAndRoundTrip)
{
  IXMLDocument Doc;
  Doc.SetOptions(Doc.Options() | doNodeAutoIndent);
  Doc.SetDocumentElement(Doc.CreateNode(QStringLiteral("svg"), ntElement, QString()));
  IXMLNode Root = Doc.DocumentElement();
  Root.DeclareNamespace(QString(), SvgNS);
  Root.DeclareNamespace(QStringLiteral("xlink"), XLinkNS);
  Root.SetAttribute(QStringLiteral("version"), QStringLiteral("1.1"));
  IXMLNode G = Root.AddChild(QStringLiteral("g"), SvgNS, false, -1);
  IXMLNode Use = G.AddChild(QStringLiteral("use"), SvgNS);
  Use.SetAttribute(QStringLiteral("xlink:href"), QStringLiteral("#a"));
  G.AddChild(QStringLiteral("title"), SvgNS, false, 0).SetText(QStringLiteral("a < b"));
  IXMLNode Foreign = Root.AddChild(QStringLiteral("meta"), QStringLiteral("urn:x"), true);

  EXPECT_EQ(Use.NamespaceURI(), SvgNS);
  EXPECT_EQ(Use.Prefix(), QString()) << "the default namespace in scope is used";
  EXPECT_EQ(Foreign.Prefix(), QStringLiteral("NS1"));
  EXPECT_EQ(G.ChildNodes()[0].LocalName(), QStringLiteral("title"));

  const QByteArray Out = Doc.SaveToBytes();
  const QByteArray Expected =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\" version=\"1.1\">\n"
    "  <g>\n"
    "    <title>a &lt; b</title>\n"
    "    <use xlink:href=\"#a\"/>\n"
    "  </g>\n"
    "  <NS1:meta xmlns:NS1=\"urn:x\"/>\n"
    "</svg>\n";
  EXPECT_EQ(Out, Expected);

  IXMLDocument Loaded;
  QBuffer Buffer;
  Buffer.setData(Out);
  ASSERT_TRUE(Buffer.open(QIODevice::ReadOnly));
  Loaded.LoadFromStream(Buffer);
  EXPECT_EQ(Loaded.DocumentElement().NamespaceURI(), SvgNS);
  Loaded.SetOptions(Doc.Options());
  QBuffer Written;
  ASSERT_TRUE(Written.open(QIODevice::WriteOnly));
  Loaded.SaveToStream(Written);
  EXPECT_EQ(Written.data(), Out);

  QTemporaryDir Dir;
  const QString File = Dir.filePath(QStringLiteral("a.svg"));
  Doc.SaveToFile(File);
  EXPECT_EQ(LoadXMLDocument(File).SaveToBytes(), Out) << "white space read is written back as it was";
  EXPECT_THROW(LoadXMLDocument(Dir.filePath(QStringLiteral("missing.svg"))), EFOpenError);
}

TEST(XmlDom, FragmentsMoveBetweenDocuments)
{
  // A node's text declares the namespaces it borrows, so it loads on its own; adding a node of
  // another document copies it in.
  const IXMLDocument Doc = LoadXMLData(QStringLiteral(
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:rdf='urn:rdf'><metadata><rdf:RDF a='1'/></metadata></svg>"));
  const IXMLNode Metadata = Doc.DocumentElement().ChildNodes()[0];
  const IXMLDocument Fragment = LoadXMLData(Metadata.XML());
  const IXMLNode Copy = Fragment.DocumentElement();
  EXPECT_EQ(Copy.NamespaceURI(), SvgNS);
  EXPECT_EQ(Copy.ChildNodes()[0].NamespaceURI(), QStringLiteral("urn:rdf"));

  IXMLDocument Target = LoadXMLData(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'><g/></svg>"));
  IXMLNodeList Children = Target.DocumentElement().ChildNodes();
  EXPECT_EQ(Children.Add(Copy), 1);
  EXPECT_EQ(Children[1].ChildNodes()[0].GetAttribute(QStringLiteral("a")), QStringLiteral("1"));
  Children.Delete(0);
  const IXMLDocument Reloaded = LoadXMLData(Target.XML());
  EXPECT_EQ(Reloaded.DocumentElement().ChildNodes()[0].ChildNodes()[0].NamespaceURI(), QStringLiteral("urn:rdf"));
}

TEST(XmlDom, EncodingsAreDetectedFromBytesAndIgnoredForText)
{
  IXMLDocument Doc;
  Doc.LoadFromBytes(QByteArray("<?xml version='1.0' encoding='ISO-8859-1'?><t>\xE9</t>"));
  EXPECT_EQ(Doc.DocumentElement().Text(), QString(QChar(0xE9)));
  Doc.LoadFromXML(QStringLiteral("<?xml version='1.0' encoding='ISO-8859-1'?><t>") + QChar(0x20AC) +
                  QStringLiteral("</t>"));
  EXPECT_EQ(Doc.DocumentElement().Text(), QString(QChar(0x20AC)));
}

TEST(XmlDom, DocumentsParseOnSeveralThreadsAtOnce)
{
  std::vector<std::thread> Threads;
  std::vector<int> Found(4, 0);
  for (int T = 0; T < 4; ++T)
    Threads.emplace_back([T, &Found] {
      for (int I = 0; I < 50; ++I) {
        const IXMLDocument Doc = LoadXMLData(QStringLiteral("<svg><g id='%1'/></svg>").arg(T * 100 + I));
        if (Doc.DocumentElement().ChildNodes()[0].GetAttribute(QStringLiteral("id")).toInt() == T * 100 + I)
          ++Found[T];
        try {
          LoadXMLData(QStringLiteral("<svg>"));
        } catch (const EDOMParseError &) {
          ++Found[T];
        }
      }
    });
  for (std::thread &Thread : Threads)
    Thread.join();
  for (int Count : Found)
    EXPECT_EQ(Count, 100);
}

TEST(XmlDom, HandlesOutliveTheirDocumentAndRemovedNodes)
{
  IXMLNode Kept, OldRoot, OldText, Clone, Created;
  {
    IXMLDocument Doc = LoadXMLData(QStringLiteral("<a><b>text</b><c/></a>"));
    OldRoot = Doc.DocumentElement();
    const IXMLNode B = OldRoot.ChildNodes()[0];
    OldText = B.ChildNodes()[0];
    B.SetText(QStringLiteral("new"));
    Kept = OldRoot.ChildNodes()[1];
    Clone = OldRoot.CloneNode(true);
    Created = Doc.CreateNode(QStringLiteral("never-added"));
    Doc.SetDocumentElement(Doc.CreateNode(QStringLiteral("root")));
    Doc.DocumentElement().ChildNodes().Add(Kept);
    Doc.LoadFromXML(QStringLiteral("<other/>"));
  }
  EXPECT_EQ(OldText.Text(), QStringLiteral("text"));
  EXPECT_EQ(OldRoot.ChildNodes()[0].Text(), QStringLiteral("new"));
  EXPECT_EQ(Kept.ParentNode().LocalName(), QStringLiteral("root"));
  EXPECT_EQ(Clone.ChildNodes().Count(), 2);
  EXPECT_FALSE(OldRoot.ParentNode());
  EXPECT_EQ(Created.XML(), QStringLiteral("<never-added/>"));
}
