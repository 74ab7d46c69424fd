#include "structure/VXSVGGroups.h"
#include "tree/VXSVG.h"
#include "values/VXSVGException.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QTemporaryDir>

#include <memory>

using namespace vx;

namespace {

// A leaf class of a type that groups refuse as children.
class TTestStop : public TSVGGraphicElement
{
  VX_SVG_ELEMENT_CLASS(TTestStop)

public:
  using TSVGGraphicElement::TSVGGraphicElement;
  TSVGElementType SVGType() const override { return etGradientStop; }
};
VX_SVG_ELEMENT_CLASS_INFO(TTestStop)

QString LoadFailure(TSVGDocument &Document, const QString &Text)
{
  try {
    Document.LoadFromText(Text);
  } catch (const std::exception &Error) {
    return QString::fromUtf8(Error.what());
  }
  return QString();
}

QString Svg(const char *Body)
{
  return QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'>%1</svg>").arg(QString::fromUtf8(Body));
}

} // namespace

TEST(ElementTable, GeneratedIdsAndTheCopyRule)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='a'/><g/><g id='a'/><g id='a'/>"));
  ASSERT_EQ(Document.Count(), 4);
  EXPECT_EQ(Document[0]->ID(), QStringLiteral("a"));
  EXPECT_EQ(Document[1]->ID(), QStringLiteral("ID#1")) << "generated from the table's count at creation";
  EXPECT_EQ(Document[2]->ID(), QStringLiteral("a Copy"));
  EXPECT_EQ(Document[3]->ID(), QStringLiteral("a  Copy (1)")) << "the blank before the suffix grows";
  for (const TSVGElement *Child : Document.Items())
    EXPECT_EQ(Document.AllItems().Elements(Child->ID()), Child);

  TSVGElement *First = Document[0];
  First->SetID(QStringLiteral("a"));
  EXPECT_EQ(Document.AllItems().Count(), 4) << "setting the current id touches nothing";
  First->SetID(QStringLiteral("b"));
  EXPECT_FALSE(Document.AllItems().ContainsKey(QStringLiteral("a")));
  EXPECT_EQ(Document.AllItems().Elements(QStringLiteral("b")), First);
}

TEST(ElementTable, UniqueIdsAreEnforcedWhenAsked)
{
  TSVGDocument Document;
  Document.SetOptions(DefaultSVGOptions | soEnforceUniqueID);
  Document.LoadFromText(Svg("<g id='a'/><g id='b'/>"));
  EXPECT_ANY_THROW(Document[1]->SetID(QStringLiteral("a")));
  EXPECT_EQ(Document[1]->ID(), QStringLiteral("b"));
  EXPECT_ANY_THROW(Document.LoadFromText(Svg("<g id='a'/><g id='a'/>")));
}

TEST(ElementTable, DestroyingElementsInACollisionRunKeepsTheOthersFindable)
{
  TSVGDocument Document;
  QString Body;
  for (int I = 0; I < 200; ++I)
    Body += QStringLiteral("<g id='g%1'><g id='c%1'/></g>").arg(I);
  Document.LoadFromText(QStringLiteral("<svg>%1</svg>").arg(Body));
  ASSERT_EQ(Document.AllItems().Count(), 400);
  for (int I = 0; I < 200; I += 3)
    Document.Items().Remove(Document.AllItems().Elements(QStringLiteral("g%1").arg(I)));
  for (int I = 0; I < 200; ++I) {
    const bool Gone = I % 3 == 0;
    EXPECT_EQ(Document.AllItems().ContainsKey(QStringLiteral("g%1").arg(I)), !Gone) << I;
    EXPECT_EQ(Document.AllItems().ContainsKey(QStringLiteral("c%1").arg(I)), !Gone) << "children go first " << I;
    if (!Gone) {
      EXPECT_EQ(Document.AllItems().Elements(QStringLiteral("c%1").arg(I))->Parent()->ID(), QStringLiteral("g%1").arg(I));
    }
  }
}

TEST(ElementTree, RefusedChildStaysAliveAndDetached)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='g'/>"));
  TSVGElement *Group = Document[0];
  auto Stop = std::make_unique<TTestStop>(&Document);
  try {
    Group->Items().Add(Stop.get());
    FAIL() << "a group must refuse a gradient stop";
  } catch (const ESVGException &Error) {
    EXPECT_EQ(Error.Message(), QStringLiteral("SVG element <g> does not allow children of <stop> element type"));
  }
  EXPECT_EQ(Group->Count(), 0);
  EXPECT_EQ(Stop->Parent(), nullptr);
  EXPECT_THROW(Group->SetParent(Group), EInvalidOperation);
}

TEST(ElementTree, NotificationsOfRemovalAndAddition)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='g'><g id='inner'/></g>"));
  QStringList Log;
  Document.OnAddElement = [&](TObject *, TSVGElement *) { Log << QStringLiteral("add"); };
  Document.OnRemoveElement = [&](TObject *, TSVGElement *) { Log << QStringLiteral("remove"); };
  TSVGElement *Group = Document[0];
  Group->Items().Add(new TSVGGroup(&Document));
  EXPECT_TRUE(Log.isEmpty()) << "additions reach neither event";
  Group->Items().Delete(0);
  EXPECT_EQ(Log, (QStringList{QStringLiteral("remove"), QStringLiteral("add")}));
  EXPECT_FALSE(Document.AllItems().ContainsKey(QStringLiteral("inner")));
}

TEST(DocumentLoading, OneChangePerLoadWithNilSender)
{
  TSVGDocument Document;
  int Changes = 0;
  TObject *LastSender = &Document;
  Document.OnChange = [&](TObject *Sender) {
    ++Changes;
    LastSender = Sender;
  };
  Document.LoadFromText(Svg("<g><g/><defs/></g><switch/>"));
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(LastSender, nullptr);
  QStringList Parsed;
  Document.OnParsedNode = [&](TObject *, TSVGElement *Element) { Parsed << Element->SVGTypeName(); };
  Document.LoadFromText(Svg("<g><defs/></g>"));
  EXPECT_EQ(Parsed, (QStringList{QStringLiteral("defs"), QStringLiteral("g"), QStringLiteral("svg")}));
}

TEST(DocumentLoading, FailuresAndWhatSurvives)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='kept'/>"));
  EXPECT_EQ(LoadFailure(Document, QStringLiteral("   ")), QStringLiteral("Empty XML document"));
  EXPECT_EQ(LoadFailure(Document, QStringLiteral("<Svg/>")), QStringLiteral("Not a valid SVG"));
  EXPECT_FALSE(LoadFailure(Document, QStringLiteral("<svg><g></svg>")).isEmpty()) << "broken XML";
  ASSERT_EQ(Document.Count(), 1) << "refused loads keep the old content";
  EXPECT_EQ(Document[0]->ID(), QStringLiteral("kept"));

  Document.SetOptions(DefaultSVGOptions - soSkipUnknownXML);
  EXPECT_EQ(LoadFailure(Document, Svg("<g/><sodipodi:namedview xmlns:sodipodi='x'/><blink/>")),
            QStringLiteral("Unknown SVG element <ntElement> in document: blink"));
  EXPECT_EQ(Document.UpdateCount(), 0) << "the update count is balanced on the way out";
  EXPECT_EQ(Document.Count(), 1) << "the partly built tree stays";
  EXPECT_EQ(LoadFailure(Document, Svg("<g><!-- note --> text <namedview/></g>")), QString());
}

TEST(DocumentLoading, PrefixesEntitiesStylesAndDescriptions)
{
  TSVGDocument Document;
  Document.LoadFromText(QStringLiteral("<svg:svg xmlns:svg='http://www.w3.org/2000/svg'><svg:g id='p'/></svg:svg>"));
  ASSERT_EQ(Document.Count(), 1);
  EXPECT_EQ(Document[0]->SVGType(), etGroup);

  Document.LoadFromText(QStringLiteral("<!DOCTYPE svg [<!ENTITY shapes \"<g id='e1'/><g id='e2'/>\">]>"
                                       "<svg>&shapes;</svg>"));
  ASSERT_EQ(Document.Count(), 1) << "the entity reference becomes a group";
  EXPECT_EQ(Document[0]->SVGType(), etGroup);
  ASSERT_EQ(Document[0]->Count(), 2);
  EXPECT_EQ(Document[0]->Items()[1]->ID(), QStringLiteral("e2"));

  Document.LoadFromText(Svg("<title>Top</title><desc>About</desc>"
                            "<g class='a b' lang='en' systemLanguage=''><style>.a{fill:red}</style></g>"));
  EXPECT_EQ(Document.Title(), QStringLiteral("Top"));
  EXPECT_EQ(Document.Description().Text().trimmed(), QStringLiteral("About"));
  ASSERT_EQ(Document.Styles().Count(), 1) << "a group's style reaches the document";
  EXPECT_EQ(Document.Styles().Elements(QStringLiteral(".a"))->Values(QStringLiteral("fill")), QStringLiteral("red"));
  const TSVGElement *Group = Document[0];
  EXPECT_EQ(Group->Classes().ToStringList(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
  EXPECT_EQ(Group->Language(), QStringLiteral("en"));
  EXPECT_EQ(Group->SystemLanguages().Count(), 1) << "present but empty";
}

TEST(DocumentLoading, FilesStreamsAndValidity)
{
  QTemporaryDir Dir;
  const QString File = Dir.filePath(QStringLiteral("a.svg"));
  QFile Out(File);
  ASSERT_TRUE(Out.open(QIODevice::WriteOnly));
  Out.write("<svg><unknown/><g id='x'/></svg>");
  Out.close();
  TSVGDocument Document;
  Document.LoadFromFile(File);
  EXPECT_EQ(Document.Count(), 1);
  EXPECT_THROW(Document.LoadFromFile(Dir.filePath(QStringLiteral("missing.svg"))), EFOpenError);
  QBuffer Buffer;
  Buffer.setData("<svg><g/></svg>");
  ASSERT_TRUE(Buffer.open(QIODevice::ReadOnly));
  Document.LoadFromStream(Buffer);
  EXPECT_EQ(Document.Count(), 1);

  EXPECT_TRUE(TSVGDocument::IsValidSVG(File, true)) << "unknown children are skipped in the scratch load";
  EXPECT_TRUE(TSVGDocument::IsValidSVG(File, false));
  EXPECT_FALSE(TSVGDocument::IsValidSVG(true, QStringLiteral("<html/>")));
  EXPECT_FALSE(TSVGDocument::IsValidSVG(false, QStringLiteral("")));
  EXPECT_FALSE(TSVGDocument::IsValidSVG(true, QStringLiteral("<svg>")));
  EXPECT_FALSE(TSVGDocument::IsValidSVG(Dir.filePath(QStringLiteral("missing.svg")), false));
}

TEST(DocumentSettings, DpiFormatAndOptions)
{
  TSVGDocument Document;
  Document.SetDPI(5);
  EXPECT_EQ(Document.DPI(), 10);
  EXPECT_FLOAT_EQ(Document.UnitFactors()[suInches], 10.0f);
  EXPECT_FLOAT_EQ(Document.UnitFactors()[suPoints], 10.0f / 72.0f);
  EXPECT_THROW(Document.SetFormatStr(QStringLiteral("abc")), EConvertError);
  EXPECT_EQ(Document.FormatStr(), QStringLiteral("0.###"));
  Document.SetFormatStr(QStringLiteral("0.##"));
  EXPECT_EQ(Document.FormatStr(), QStringLiteral("0.##"));

  Document.LoadFromText(Svg("<svg id='nested'/>"));
  const TSVGElement *Nested = Document[0];
  Document.SetOptions(TSVGOptions{soCompactExport});
  EXPECT_EQ(Nested->GetOptions(), TSVGOptions{soCompactExport}) << "a nested svg answers with its owner's options";
}

TEST(DocumentSettings, DefaultRenderingsAreTheDocumentsOwnValues)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='g'/>"));
  auto &Group = *Document.FindElement<TSVGGraphicElement>(QStringLiteral("g"));
  EXPECT_EQ(Group.GetShapeRendering(), srnGeometricPrecision);
  int Changes = 0;
  Document.OnChange = [&](TObject *) { ++Changes; };
  Document.SetDefaultTextRendering(txrnOptimizeLegibility);
  Document.SetDefaultTextRendering(txrnOptimizeLegibility);
  EXPECT_EQ(Changes, 1);
  EXPECT_EQ(Group.GetTextRendering(), txrnOptimizeLegibility);
  Document.SetTextRendering(txrnOptimizeSpeed);
  Document.Clear();
  EXPECT_EQ(Document.GetTextRendering(), txrnOptimizeLegibility) << "Clear returns to the default";
}

TEST(ElementRelations, OdditiesAreKept)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='a'><g id='b'><g id='c'/></g><g id='d'/></g>"));
  auto E = [&](const char *Id) { return Document.AllItems().Elements(QString::fromLatin1(Id)); };
  EXPECT_TRUE(E("a")->HasChild(E("b")));
  EXPECT_FALSE(E("a")->HasChild(E("c")));
  EXPECT_TRUE(E("a")->HasDescendant(E("c")));
  EXPECT_TRUE(E("c")->HasAncestor(E("a")));
  EXPECT_FALSE(E("b")->HasSibling(E("d"))) << "true siblings are not siblings here";
  EXPECT_TRUE(E("c")->HasSibling(E("a"))) << "the parent's parent is";
  for (const char *Id : {"a", "b", "c", "d"})
    for (const char *Other : {"a", "b", "c", "d"})
      EXPECT_EQ(E(Id)->HasPreceding(E(Other)), E(Id)->HasFollowing(E(Other))) << Id << Other;
}

TEST(ElementCopies, CloneAssignAndClear)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='a' class='k'><title>T</title><g id='b'/></g>"));
  std::unique_ptr<TSVGElement> Copy(Document[0]->Clone(&Document));
  EXPECT_EQ(Copy->ID(), QStringLiteral("a Copy"));
  EXPECT_EQ(Copy->Title(), QStringLiteral("T"));
  ASSERT_EQ(Copy->Count(), 1);
  EXPECT_EQ(Copy->Items()[0]->ID(), QStringLiteral("b Copy"));
  EXPECT_EQ(Copy->Items()[0]->Parent(), Copy.get());

  TSVGDocument Other;
  Other.Assign(&Document);
  ASSERT_EQ(Other.Count(), 1);
  EXPECT_EQ(Other[0]->GetOwner(), &Other);
  EXPECT_EQ(Other.AllItems().Elements(QStringLiteral("b"))->Parent(), Other[0]);

  TSVGElement *Group = Document[0];
  Group->ChangeNotification(Copy.get());
  Group->Clear();
  EXPECT_EQ(Group->ID(), QStringLiteral("a")) << "Clear keeps the id";
  EXPECT_EQ(Group->Count(), 0);
  EXPECT_EQ(Group->Listeners().Count(), 0);
  EXPECT_TRUE(Group->Title().isEmpty());
}

TEST(ElementGeometry, FitToRectAndScreenToLocal)
{
  const TMatrix M = TSVGElement::FitToRect(VXRect(10, 10, 110, 60), VXRect(0, 0, 50, 50));
  const TPointF P = VXMatrixTransformPoint({50, 50}, M);
  EXPECT_FLOAT_EQ(P.X, 110);
  EXPECT_FLOAT_EQ(P.Y, 60);
  EXPECT_EQ(TSVGElement::FitToRect(VXRect(0, 0, 10, 10), VXRect(0, 0, 0, 5)), VXIdentityMatrix);
  TSVGDocument Document;
  EXPECT_EQ(Document.ScreenToLocal({5, 5}, VXRect(0, 0, 10, 10)), (TPointF{50, 50})) << "a new document spans 100 by 100";
  Document.SetViewBox(VXRect(100, 100, 300, 200));
  EXPECT_EQ(Document.ScreenToLocal({5, 5}, VXRect(0, 0, 10, 10)), (TPointF{200, 150}));
}

TEST(DocumentStyles, TableNotifiesAndOwnsItsRules)
{
  TSVGDocument Document;
  QStringList Log;
  Document.OnAddStyle = [&](TObject *, TSVGStyle *) { Log << QStringLiteral("add"); };
  Document.OnRemoveStyle = [&](TObject *, TSVGStyle *) { Log << QStringLiteral("remove"); };
  int Changes = 0;
  Document.OnChange = [&](TObject *) { ++Changes; };
  auto *Rule = new TSVGStyle;
  Rule->SetText(QStringLiteral("fill: red; /* note */ stroke : blue ; fill:green"));
  EXPECT_EQ(Rule->Text(), QStringLiteral("fill:green;stroke:blue")) << "a later pair replaces an earlier one";
  Document.Styles().Add(QStringLiteral(".a"), Rule);
  auto *Kept = new TSVGStyle;
  Document.Styles().Add(QStringLiteral(".b"), Kept);
  Document.Styles().ExtractPair(QStringLiteral(".b"));
  delete Kept;
  Document.Styles().Remove(QStringLiteral(".a"));
  EXPECT_EQ(Log, (QStringList{QStringLiteral("add"), QStringLiteral("add"), QStringLiteral("remove"),
                              QStringLiteral("remove")}));
  EXPECT_EQ(Changes, 4);
}

TEST(ElementCopies, ClonedDocumentOwnsItsChildren)
{
  TSVGDocument Document;
  Document.LoadFromText(Svg("<g id='a'><g id='b'/></g>"));
  std::unique_ptr<TSVGElement> Copy(Document.Clone(nullptr));
  auto *CopiedDocument = dynamic_cast<TSVGDocument *>(Copy.get());
  ASSERT_NE(CopiedDocument, nullptr);
  ASSERT_EQ(CopiedDocument->Count(), 1);
  EXPECT_EQ((*CopiedDocument)[0]->GetOwner(), CopiedDocument);
  EXPECT_EQ(CopiedDocument->AllItems().Elements(QStringLiteral("b"))->ID(), QStringLiteral("b"));
}

namespace {

TEST(Loading, AFailureNamesTheInnermostElementAndItsLine)
{
  TSVGDocument Document;
  try {
    Document.LoadFromText(QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg'>\n<g id='outer'>\n"
                                         "  <rect id='r1' transform='rotate(3 x)'/>\n</g>\n</svg>"));
    FAIL() << "a bad transform refuses the picture in the classic mode";
  } catch (const Exception &Error) {
    EXPECT_EQ(Error.Origin(), QStringLiteral("rect#r1"));
    EXPECT_EQ(Error.Line(), 3);
  }
}

} // namespace
