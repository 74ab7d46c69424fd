#include "platform/common/VXFiler.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVG.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QFile>
#include <QFileInfo>

#include <functional>

using namespace vx;

namespace {

QImage Render(TSVGDocument &Document, int Size)
{
  QImage Image(Size, Size, QImage::Format_ARGB32_Premultiplied);
  Image.fill(Qt::transparent);
  {
    TVXGPCanvas Canvas(&Image);
    Document.Draw(Canvas, TRectF{0, 0, float(Size), float(Size)});
  }
  return Image;
}

QByteArray SaveBinary(TSVGDocument &Document)
{
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Document.SaveToBinaryStream(Buffer);
  return Buffer.data();
}

void LoadBinary(TSVGDocument &Document, const QByteArray &Data)
{
  QBuffer Buffer;
  Buffer.setData(Data);
  Buffer.open(QIODevice::ReadOnly);
  Document.LoadFromBinaryStream(Buffer);
}

void ExpectSamePixelsThroughBinary(const QString &Text, bool Standard, const std::string &Name)
{
  TSVGDocument Original;
  Original.SetOptions(Standard ? DefaultSVGOptions | soStandardSVG : DefaultSVGOptions);
  Original.LoadFromText(Text);
  TSVGDocument Copy;
  LoadBinary(Copy, SaveBinary(Original));
  EXPECT_EQ(Render(Copy, 100), Render(Original, 100)) << Name;
}

const QString Styled = QStringLiteral(
  "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='100' height='100'>"
  "<style>.warm { fill: orange }</style>"
  "<defs><linearGradient id='g' x2='0' y2='1'><stop offset='0' stop-color='navy'/>"
  "<stop offset='1' stop-color='gold' stop-opacity='0.5'/></linearGradient>"
  "<marker id='m' markerWidth='4' markerHeight='4' refX='2' refY='2' orient='auto'>"
  "<circle cx='2' cy='2' r='2' fill='red'/></marker></defs>"
  "<g id='group' style='stroke:black;stroke-width:2' transform='rotate(10 50 50)' opacity='0.8'>"
  "<rect class='warm' x='5' y='5' width='40' height='30' rx='5'/>"
  "<circle cx='70' cy='25' r='18' fill='url(#g)' stroke-dasharray='4 2'/>"
  "<path d='M10 60 C 30 40 50 90 90 60' fill='none' marker-end='url(#m)'/>"
  "<polygon points='10,95 30,70.125 50,95' fill='teal' fill-rule='evenodd'/>"
  "<use xlink:href='#group' x='200'/></g></svg>");

} // namespace

TEST(BinaryStream, PicturesDrawTheSamePixelsAsTheirXMLLoadInBothModes)
{
  for (const bool Standard : {false, true})
    ExpectSamePixelsThroughBinary(Styled, Standard, Standard ? "standard" : "documented");
}

TEST(BinaryStream, ConformancePicturesDrawTheSamePixelsAsTheirXMLLoad)
{
  const QString Tests = QStringLiteral(VXSVG_SUITE_FONTS "/../tests/");
  const char *const Pictures[] = {
    "shapes/rect/rounded-rect.svg",           "painting/stroke-linejoin/round.svg",
    "paint-servers/radialGradient/fx-resolving-1.svg", "structure/use/nested-recursive-1.svg",
    "painting/marker/with-viewBox-1.svg",     "masking/clipPath/clip-rule-from-parent-node.svg",
  };
  if (!QFileInfo(Tests).isDir())
    GTEST_SKIP() << "the conformance suite's pictures are not at " << Tests.toStdString();
  for (const char *Picture : Pictures) {
    QFile File(Tests + QLatin1String(Picture));
    ASSERT_TRUE(File.open(QIODevice::ReadOnly)) << Picture;
    ExpectSamePixelsThroughBinary(QString::fromUtf8(File.readAll()), true, Picture);
  }
}

TEST(BinaryStream, StylePropertySetsReadInEitherFormWhateverTheOption)
{
  // The option chooses the form a save writes; a load takes both.
  for (const bool OptimizedOnSave : {false, true}) {
    TSVGDocument Original;
    TSVGOptions Options = DefaultSVGOptions;
    if (!OptimizedOnSave)
      Options.Exclude(soExportOptimizedBinaryStyleProperties);
    Original.SetOptions(Options);
    Original.LoadFromText(Styled);
    const QByteArray Data = SaveBinary(Original);
    const qsizetype At = Data.indexOf("InheritedProperties");
    ASSERT_GE(At, 0);
    EXPECT_EQ(Data.at(At + 19) == char(vaList), OptimizedOnSave) << "a list of ordinals, or the set's text";

    TSVGDocument Copy;
    Copy.SetOptions(OptimizedOnSave ? Options - TSVGOptions{soExportOptimizedBinaryStyleProperties}
                                    : Options | soExportOptimizedBinaryStyleProperties);
    LoadBinary(Copy, Data);
    const auto &Before = dynamic_cast<TSVGGraphicElement &>(*Original.AllItems().Elements(QStringLiteral("group")));
    const auto &After = dynamic_cast<TSVGGraphicElement &>(*Copy.AllItems().Elements(QStringLiteral("group")));
    // The text form has no name for ipNone, the unused bit 0.
    EXPECT_EQ(After.Inherits().Value() - TSVGStyleProperties{ipNone}, Before.Inherits().Value() - TSVGStyleProperties{ipNone});
    EXPECT_EQ(After.PreferredStyles().Value(), Before.PreferredStyles().Value());
    EXPECT_FALSE(After.PreferredStyles().Value().Empty());
    EXPECT_EQ(Render(Copy, 100), Render(Original, 100));
  }
}

namespace {

QByteArray Written(const std::function<void(TWriter &)> &Write)
{
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  {
    TWriter Writer(Buffer);
    Write(Writer);
    Writer.FlushBuffer();
  }
  return Buffer.data();
}

// A document whose children are nested Depth groups deep.
QByteArray NestedGroups(int Depth)
{
  const QByteArray Header = Written([](TWriter &W) { W.WriteRootPersistent(TSVGDocument()); });
  return Header.left(Header.size() - 1) + Written([Depth](TWriter &W) {
           for (int I = 0; I < Depth; ++I) {
             W.WritePropName(QStringLiteral("ChildItems"));
             W.WriteValue(vaCollection);
             W.WriteListBegin();
             W.WritePropName(QStringLiteral("ElementClass"));
             W.WriteString(QStringLiteral("TSVGGroup"));
           }
           for (int I = 0; I < Depth; ++I) {
             W.WriteListEnd();
             W.WriteListEnd();
           }
           W.WriteListEnd();
         });
}

QByteArray Replaced(QByteArray Data, const QByteArray &From, const QByteArray &To)
{
  return Data.replace(From, To);
}

} // namespace

TEST(BinaryStream, HostileStreamsFailClearlyAndLeaveTheDocumentEmpty)
{
  TSVGDocument Source;
  Source.LoadFromText(Styled);
  const QByteArray Valid = SaveBinary(Source);
  const QByteArray ChildItems = QByteArray("\x0a" "ChildItems") + char(vaCollection);
  const struct
  {
    const char *Name;
    QByteArray Data;
  } Cases[] = {
    {"empty", QByteArray()},
    {"not a binary stream", QByteArray("<svg/>")},
    {"another root class", Replaced(Valid, "TSVGDocument", "TSVGDocumenX")},
    {"unknown element class", Replaced(Valid, "TSVGRectangle", "TSVGRectangl_")},
    {"list marker where the collection stands", Replaced(Valid, ChildItems, ChildItems.left(11) + char(vaList))},
    {"unknown value marker", Replaced(Valid, ChildItems, ChildItems.left(11) + char(0x7F))},
    {"unknown property", Replaced(Valid, "TransformMatrix", "TransformMatrik")},
    {"string longer than the stream", Valid.left(Valid.size() - 1) +
                                        Written([](TWriter &W) { W.WritePropName(QStringLiteral("Title")); }) +
                                        char(vaUTF8String) + QByteArray("\xff\xff\xff\x7f", 4)},
    {"nesting of 100,000 levels", NestedGroups(100000)},
    {"end marker missing", Valid.left(Valid.size() - 1)},
  };
  for (const auto &Case : Cases) {
    TSVGDocument Document;
    Document.LoadFromText(Styled);
    EXPECT_THROW(LoadBinary(Document, Case.Data), Exception) << Case.Name;
    EXPECT_EQ(Document.Count(), 0) << Case.Name;
  }
  // Whatever the point where a stream breaks off, the reader fails cleanly.
  for (int Size = 0; Size < Valid.size(); ++Size) {
    TSVGDocument Document;
    EXPECT_THROW(LoadBinary(Document, Valid.left(Size)), Exception) << Size;
  }
}

TEST(BinaryStream, NestingWithinTheLimitLoads)
{
  TSVGDocument Document;
  LoadBinary(Document, NestedGroups(TReader::MaxNesting - 1));
  int Depth = 0;
  for (const TSVGElement *Element = &Document; Element->Count() > 0; Element = (*Element)[0])
    ++Depth;
  EXPECT_EQ(Depth, TReader::MaxNesting - 1);
}
