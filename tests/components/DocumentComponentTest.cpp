// The document component: its exclusive sources, its viewers and its published properties.
#include "ComponentsFixture.h"
#include "platform/common/VXFiler.h"

#include <QBuffer>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <memory>

namespace vx {
namespace {

class DocumentComponentTest : public ::testing::Test
{
protected:
  void SetUp() override
  {
    ASSERT_TRUE(Dir.isValid());
    File = Dir.filePath(QStringLiteral("halves.svg"));
    QFile Out(File);
    ASSERT_TRUE(Out.open(QIODevice::WriteOnly));
    Out.write(HalvesPicture().toUtf8());
  }
  bool Holds(const char *Id) const { return Document.SVG().AllItems().ContainsKey(QString::fromLatin1(Id)); }

  QTemporaryDir Dir;
  QString File;
  TVXSVGDocument Document;
};

TEST_F(DocumentComponentTest, FilenameAndLinesExcludeEachOther)
{
  Document.SetFilename(File);
  EXPECT_TRUE(Holds("left"));
  EXPECT_TRUE(Document.Lines().IsEmpty());

  LoadText(Document, QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'><circle id='c' r='2'/></svg>"));
  EXPECT_TRUE(Document.Filename().isEmpty());
  EXPECT_TRUE(Holds("c"));
  EXPECT_FALSE(Holds("left"));

  // The lines empty the name again while they are cleared: nothing loads until it is set anew.
  Document.SetFilename(File);
  EXPECT_TRUE(Document.Filename().isEmpty());
  EXPECT_TRUE(Document.Lines().IsEmpty());
  EXPECT_FALSE(Holds("c"));
  EXPECT_FALSE(Holds("left"));
  Document.SetFilename(File);
  EXPECT_TRUE(Holds("left"));
}

TEST_F(DocumentComponentTest, BadSourcesRaiseAndLeaveTheDocumentCleared)
{
  LoadText(Document, HalvesPicture());
  EXPECT_ANY_THROW(LoadText(Document, QStringLiteral("<html/>")));
  EXPECT_FALSE(Holds("left"));
  Document.SetFilename(File);
  Document.SetFilename(File);
  ASSERT_TRUE(Holds("left"));
  EXPECT_ANY_THROW(Document.SetFilename(Dir.filePath(QStringLiteral("missing.svg"))));
  EXPECT_FALSE(Holds("left"));
}

// A viewer that writes its tag into a log when it hears of a change.
class TRecordingViewer : public TComponent, public ISVGViewer
{
public:
  TRecordingViewer(QStringList &Log, const QString &Tag) : FLog(Log), FTag(Tag) {}
  TComponent *GetComponent() override { return this; }
  void SVGChanged(TVXSVGDocument *) override { FLog << FTag; }

private:
  QStringList &FLog;
  QString FTag;
};

TEST_F(DocumentComponentTest, ChangesReachEveryViewerBetweenTheTwoEvents)
{
  QStringList Log;
  Document.OnChanging = [&](TObject *) { Log << QStringLiteral("changing"); };
  Document.OnChange = [&](TObject *) { Log << QStringLiteral("change"); };
  TRecordingViewer First(Log, QStringLiteral("first")), Second(Log, QStringLiteral("second"));
  Document.Viewers().Add(&First);
  Document.Viewers().Add(&Second);
  Document.SetDPI(120);
  Document.SetDPI(120);
  EXPECT_EQ(Log, QStringList({QStringLiteral("changing"), QStringLiteral("first"), QStringLiteral("second"),
                              QStringLiteral("change")}));
  Log.clear();
  Document.Viewers().Remove(&First);
  EXPECT_FALSE(Document.HasFreeNotification(&First));
  LoadText(Document, HalvesPicture());
  Log.removeAll(QStringLiteral("changing"));
  Log.removeAll(QStringLiteral("change"));
  EXPECT_FALSE(Log.isEmpty());
  EXPECT_FALSE(Log.contains(QStringLiteral("first")));
}

TEST_F(DocumentComponentTest, FreedViewerLeavesTheList)
{
  auto Viewer = std::make_unique<TVXSVGScreen>();
  Viewer->SetSVGDocument(&Document);
  ASSERT_EQ(Document.Viewers().Count(), 1);
  Viewer.reset();
  EXPECT_EQ(Document.Viewers().Count(), 0);
  LoadText(Document, HalvesPicture()); // would reach a dangling viewer
}

TEST_F(DocumentComponentTest, FreedComponentLeavesAnEmptyControl)
{
  auto Owned = std::make_unique<TVXSVGDocument>();
  LoadText(*Owned, HalvesPicture());
  TVXSVGImage Image;
  Image.resize(20, 20);
  Image.SetSVGDocument(Owned.get());
  EXPECT_EQ(Shot(Image).pixel(5, 5), Red);
  Owned.reset();
  EXPECT_EQ(Image.SVGDocument(), nullptr);
  EXPECT_EQ(Image.SVGRoot(), nullptr);
  EXPECT_EQ(Shot(Image).pixel(5, 5), Transparent);
  EXPECT_EQ(Image.ElementAt(5, 5), nullptr);
}

TEST_F(DocumentComponentTest, PropertyTablesReadWriteAndKnowWhatToStore)
{
  const TPropertyTable &Table = *Document.PublishedProperties();
  EXPECT_EQ(Table[0].Name, QStringLiteral("Name")); // the inherited rows come first
  const TPropInfo *Filename = Table.Find(QStringLiteral("Filename"));
  ASSERT_NE(Filename, nullptr);
  Filename->Set(Document, File);
  EXPECT_TRUE(Holds("left"));
  EXPECT_TRUE(Filename->IsStored(Document));
  Document.SetEmbedSVGAsBinary(true);
  EXPECT_FALSE(Filename->IsStored(Document));

  const TPropInfo *Options = Table.Find(QStringLiteral("Options"));
  EXPECT_FALSE(Options->IsStored(Document));
  Options->Set(Document, qulonglong((DefaultSVGOptions | soStandardSVG).Bits()));
  EXPECT_TRUE(Document.SVG().FollowsStandardSVG());
  EXPECT_EQ(Options->ValueName(soStandardSVG), QStringLiteral("soStandardSVG"));

  TVXSVGImage Image;
  const TPropertyTable &Controls = *Image.PublishedProperties();
  const TPropInfo *WrapMode = Controls.Find(QStringLiteral("WrapMode"));
  WrapMode->Set(Image, int(iwTile));
  EXPECT_EQ(Image.WrapMode(), iwTile);
  EXPECT_EQ(WrapMode->ValueName(WrapMode->Get(Image).toInt()), QStringLiteral("iwTile"));
  EXPECT_TRUE(WrapMode->IsStored(Image));
  Controls.Find(QStringLiteral("SVGDocument"))->Set(Image, QVariant::fromValue<TPersistent *>(&Document));
  EXPECT_EQ(Image.SVGDocument(), &Document);
  Controls.Find(QStringLiteral("Quality"))->Set(Image, 20);
  EXPECT_EQ(Image.Quality(), 8);
  EXPECT_EQ(Controls.Find(QStringLiteral("Transform"))->Get(Image).value<TPersistent *>(), &Image.Transform());
  EXPECT_EQ(Controls.Find(QStringLiteral("Color")), nullptr);
  EXPECT_NE(TVXSVGScreen().PublishedProperties()->Find(QStringLiteral("Color")), nullptr);
}

// Embedded, the document travels as the binary property SVGX and the file name is not stored.
TEST_F(DocumentComponentTest, EmbeddedDocumentComesBackFromItsBinaryProperty)
{
  Document.SetFilename(File);
  Document.SetEmbedSVGAsBinary(true);
  QBuffer Buffer;
  Buffer.open(QIODevice::ReadWrite);
  TWriter(Buffer).WriteRootPersistent(Document);
  EXPECT_TRUE(Buffer.data().contains("SVGX"));
  EXPECT_FALSE(Buffer.data().contains("\x08" "Filename"));

  TVXSVGDocument Copy;
  Buffer.seek(0);
  TReader(Buffer).ReadRootPersistent(Copy);
  EXPECT_TRUE(Copy.EmbedSVGAsBinary());
  EXPECT_TRUE(Copy.Filename().isEmpty());
  EXPECT_EQ(Copy.SVG().AllItems().Count(), Document.SVG().AllItems().Count());
  EXPECT_TRUE(Copy.SVG().AllItems().ContainsKey(QStringLiteral("left")));
}

} // namespace
} // namespace vx
