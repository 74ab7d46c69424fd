#include "structure/VXSVGMetadata.h"
#include "support/PictureTest.h"

#include <gtest/gtest.h>

#include <QBuffer>

#include <memory>

using namespace vx;

namespace {

class MetadataElement : public TPictureTest
{
protected:
  QString Saved()
  {
    QBuffer Buffer;
    Buffer.open(QIODevice::WriteOnly);
    Document.SaveToStream(Buffer);
    return QString::fromUtf8(Buffer.data());
  }
};

const QString Rdf = QStringLiteral(
    "<metadata id='m'><rdf:RDF xmlns:rdf='http://www.w3.org/1999/02/22-rdf-syntax-ns#' "
    "xmlns:dc='http://purl.org/dc/elements/1.1/'><rdf:Description dc:title='A &amp; B'>"
    "<dc:creator>Someone</dc:creator></rdf:Description></rdf:RDF></metadata>");

TEST_F(MetadataElement, ForeignXMLIsKeptAndWrittenBackInPlace)
{
  Load(QStringLiteral("<rect id='a' width='5' height='5'/>") + Rdf + QStringLiteral("<rect id='b' width='5' height='5'/>"));
  auto &Metadata = Element<TSVGMetadata>("m");
  EXPECT_EQ(Metadata.SVGType(), etMetadata);
  EXPECT_TRUE(Metadata.XML().contains(QStringLiteral("<dc:creator>Someone</dc:creator>")));
  EXPECT_EQ(dynamic_cast<TSVGGraphicElement *>(&Metadata), nullptr);

  const QString Text = Saved();
  const qsizetype A = Text.indexOf(QStringLiteral("id=\"a\""));
  const qsizetype M = Text.indexOf(QStringLiteral("<rdf:RDF"));
  const qsizetype B = Text.indexOf(QStringLiteral("id=\"b\""));
  EXPECT_TRUE(A >= 0 && A < M && M < B) << Text.toStdString();
  EXPECT_TRUE(Text.contains(QStringLiteral("dc:title=\"A &amp; B\""))) << Text.toStdString();
  EXPECT_EQ(Text.count(QStringLiteral("<metadata")), 1);

  TSVGDocument Again;
  Again.LoadFromText(Text);
  const auto *Reloaded = dynamic_cast<TSVGMetadata *>(Again.AllItems().Elements(QStringLiteral("m")));
  ASSERT_NE(Reloaded, nullptr);
  EXPECT_TRUE(Reloaded->XML().contains(QStringLiteral("<dc:creator>Someone</dc:creator>")));
}

TEST_F(MetadataElement, PrefixesDeclaredOnTheRootTravelWithTheText)
{
  Document.LoadFromText(QStringLiteral(
      "<svg xmlns='http://www.w3.org/2000/svg' xmlns:cc='http://creativecommons.org/ns#'>"
      "<metadata id='m'><cc:Work>free</cc:Work></metadata></svg>"));
  EXPECT_TRUE(Element<TSVGMetadata>("m").XML().contains(QStringLiteral("http://creativecommons.org/ns#")));
  const QString Text = Saved();
  TSVGDocument Again;
  ASSERT_NO_THROW(Again.LoadFromText(Text)) << Text.toStdString();
  EXPECT_TRUE(Text.contains(QStringLiteral("<cc:Work>free</cc:Work>"))) << Text.toStdString();
}

TEST_F(MetadataElement, ScriptsAreCarriedAndNeverRun)
{
  Load(QStringLiteral("<rect id='r' width='20' height='20' fill='blue'/>"
                      "<script id='s' type='text/ecmascript'><![CDATA["
                      "document.getElementById('r').setAttribute('fill', 'red');]]></script>"));
  auto &Script = Element<TSVGScript>("s");
  EXPECT_EQ(Script.SVGType(), etScript);
  EXPECT_EQ(Render().pixel(10, 10), Blue);
  const QString Text = Saved();
  EXPECT_TRUE(Text.contains(QStringLiteral("<![CDATA[document.getElementById('r').setAttribute('fill', 'red');]]>")))
      << Text.toStdString();
  EXPECT_TRUE(Text.contains(QStringLiteral("type=\"text/ecmascript\"")));
}

TEST_F(MetadataElement, CopiesCarryTheTextAndAnEmptyElementKeepsItsNode)
{
  Load(Rdf);
  const std::unique_ptr<TSVGElement> Copy(Element<TSVGMetadata>("m").Clone(&Document));
  EXPECT_EQ(dynamic_cast<TSVGMetadata &>(*Copy).XML(), Element<TSVGMetadata>("m").XML());

  Element<TSVGMetadata>("m").SetXML(QString());
  const QString Text = Saved();
  EXPECT_TRUE(Text.contains(QStringLiteral("<metadata id=\"m\"/>"))) << Text.toStdString();
  EXPECT_FALSE(Text.contains(QStringLiteral("rdf:RDF")));
}

} // namespace
