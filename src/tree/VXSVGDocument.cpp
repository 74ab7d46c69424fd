#include "tree/VXSVGDocument.h"

#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGRuleIndex.h"
#include "tree/VXSVGStyleSheet.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGTransforms.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGException.h"
#include "values/VXSVGLookups.h"

#include <QBuffer>
#include <memory>
#include <utility>
#include <QFile>
#include <QFileInfo>
#include <QLocale>


namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGDocument)

namespace {

const TSVGClassRegistration DocumentRegistration(etDoc, TSVGDocument::ClassInfo());

const QString SvgName = QStringLiteral("svg");

bool IsNumberPattern(const QString &Pattern)
{
  if (Pattern.isEmpty() || Pattern.count(QLatin1Char('.')) > 1)
    return false;
  for (QChar C : Pattern)
    if (C != QLatin1Char('0') && C != QLatin1Char('#') && C != QLatin1Char('.'))
      return false;
  return true;
}

} // namespace

TSVGDocument::TSVGDocument(TSVGDocument *Owner) : TSVGCustomViewBox(Owner), FUnitFactors(CalcUnitFactors(96))
{
  FAllItems.OnValueNotify = [this](TObject *, TSVGElement *const &, TCollectionNotification) {
    FAllItemsModified = true;
  };
  FStyles.OnValueNotify = [this](TObject *, TSVGStyle *const &Style, TCollectionNotification Action) {
    StyleNotify(Style, Action);
  };
  FPrefLanguages.OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
  SetHeight(100);
  SetWidth(100);
  FViewBox.SetRect(VXRect(0, 0, 100, 100));
  FPrefLanguages.SetCommaText(QLocale::system().uiLanguages().join(QLatin1Char(',')));
}

TSVGDocument::~TSVGDocument()
{
  BeforeDestruction();
  ClearChildren();
  FreeStyles();
}

TSVGElementTypes TSVGDocument::ChildSVGTypes() const
{
  return SVGGroupChildTypes();
}


void TSVGDocument::LoadFromFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File.errorString()));
  LoadFromStream(File);
}

QString TSVGDocument::Folder() const
{
  return FFileName.isEmpty() ? QString() : QFileInfo(FFileName).absolutePath();
}

void TSVGDocument::LoadFromStream(QIODevice &Stream)
{
  const auto *File = dynamic_cast<const QFileDevice *>(&Stream);
  LoadFromStream(Stream, File ? File->fileName() : QString());
}

void TSVGDocument::LoadFromStream(QIODevice &Stream, const QString &FileName)
{
  IXMLDocument Document = NewXMLDocument();
  Document.LoadFromStream(Stream);
  // Known before the elements load, as images read their files then; a failed load keeps the old one.
  const QString OldFileName = FFileName;
  FFileName = FileName.isEmpty() ? QString() : QFileInfo(FileName).absoluteFilePath();
  try {
    LoadFromXML(Document);
  } catch (...) {
    FFileName = OldFileName;
    throw;
  }
}

void TSVGDocument::LoadFromText(const QString &Text)
{
  const IXMLDocument Document = LoadXMLData(Text);
  const QString OldFileName = std::exchange(FFileName, QString());
  try {
    LoadFromXML(Document);
  } catch (...) {
    FFileName = OldFileName;
    throw;
  }
}

void TSVGDocument::LoadFromXML(const IXMLDocument &Document)
{
  const IXMLNode Root = Document.DocumentElement();
  if (!Root)
    throw ESVGException(SDocEmpty);
  if (Root.LocalName() != SvgName)
    throw ESVGException(SDocNotSVG);
  LoadFromXML(Root);
}

void TSVGDocument::LoadFromXML(const IXMLNode &Node)
{
  if (Node.LocalName() != SvgName)
    return;
  TSVGUpdateGuard Guard(*this);
  Clear();
  TSVGCustomViewBox::LoadFromXML(Node);
  ApplyStyles();
}

void TSVGDocument::SaveToFile(const QString &FileName, int LineLength)
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly | QIODevice::Truncate))
    throw EFOpenError(Format(QStringLiteral("Cannot create file \"%s\". %s"), {FileName, File.errorString()}));
  SaveToStream(File, LineLength);
}

void TSVGDocument::SaveToStream(QIODevice &Stream, int LineLength)
{
  IXMLDocument Document;
  Document.SetOptions(Document.Options() | TXMLDocOptions{doNodeAutoIndent});
  SaveToXML(Document);
  const qint64 Start = Stream.pos();
  Document.SaveToStream(Stream);
  if (LineLength <= 32)
    return;
  // Long lines (path data) are wrapped and written again over what was just written.
  Stream.seek(Start);
  TStringList Lines;
  Lines.SetText(QString::fromUtf8(Stream.readAll()));
  SVGSplitLines(Lines, LineLength);
  Stream.seek(Start);
  Stream.write(Lines.Text().toUtf8());
}

void TSVGDocument::SaveToXML(IXMLDocument &Document)
{
  Document.SetDocumentElement(Document.CreateNode(SvgName, ntElement, SVGNamespaceURI));
  SaveToXML(Document.DocumentElement());
}

bool TSVGDocument::DoOnSavingElement(TSVGElement *Element, const IXMLNode &Node)
{
  if (GetOwner())
    return TSVGCustomViewBox::DoOnSavingElement(Element, Node);
  bool DoSave = Element != this || IsEnabled();
  if (DoSave && OnSavingElement)
    OnSavingElement(this, Element, Node, DoSave);
  return DoSave;
}

void TSVGDocument::DoOnSavedElement(TSVGElement *Element, const IXMLNode &Node)
{
  if (GetOwner())
    TSVGCustomViewBox::DoOnSavedElement(Element, Node);
  else if (OnSavedElement)
    OnSavedElement(this, Element, Node);
}

void TSVGDocument::DoSaveToXML(const IXMLNode &Node)
{
  Node.DeclareNamespace(QString(), SVGNamespaceURI);
  Node.DeclareNamespace(QStringLiteral("xlink"), XLinkNamespaceURI);
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBoundsLengths(Node);
  SaveAttrString(Node, QStringLiteral("version"), QStringLiteral("1.1"), false, true);
}

bool TSVGDocument::IsValidSVG(const IXMLDocument &Document, bool Thorough)
{
  try {
    if (!Thorough)
      return Document.DocumentElement().LocalName() == SvgName;
    TSVGDocument Scratch;
    Scratch.LoadFromXML(Document);
    return true;
  } catch (const std::exception &) {
    return false;
  }
}

bool TSVGDocument::IsValidSVG(const QString &FileName, bool Thorough)
{
  try {
    return IsValidSVG(LoadXMLDocument(FileName), Thorough);
  } catch (const std::exception &) {
    return false;
  }
}

bool TSVGDocument::IsValidSVG(QIODevice &Stream, bool Thorough)
{
  try {
    IXMLDocument Document = NewXMLDocument();
    Document.LoadFromStream(Stream);
    return IsValidSVG(Document, Thorough);
  } catch (const std::exception &) {
    return false;
  }
}

bool TSVGDocument::IsValidSVG(bool Thorough, const QString &Text)
{
  try {
    return IsValidSVG(LoadXMLData(Text), Thorough);
  } catch (const std::exception &) {
    return false;
  }
}

void TSVGDocument::ReadStyles(const IXMLNode &Node)
{
  const QString Type = Trim(ParseAttrString(Node, QStringLiteral("type")));
  if (ReadsOnlyCSSStyleSheets() && !Type.isEmpty() && Type != QLatin1String("text/css"))
    return;
  for (IXMLNode Child = Node.ChildNodes().First(); Child; Child = Child.NextSibling())
    if (Child.NodeType() == ntCData)
      ReadStyles(Child.Text());
  if (Node.IsTextElement())
    ReadStyles(Node.Text());
}

void TSVGDocument::ReadStyles(const QString &Text)
{
  ParseStyleSheet(Text, [this](const QString &Selector, const QString &Style) { DoAddStyle(Selector, Style); });
}

void TSVGDocument::DoAddStyle(const QString &Selector, const QString &Style)
{
  auto Rule = std::make_unique<TSVGStyle>(Selector, Style);
  Rule->SetOrder(FStyles.Count());
  const bool Repeated = FStyles.ContainsKey(Rule->Name());
  FStyles.Add(Repeated && KeepsRepeatedSelectors() ? FStyles.GetUniqueName(Rule->Name(), QStringLiteral("Copy"))
                                                   : Rule->Name(),
              Rule.get());
  Rule.release();
}

void TSVGDocument::ApplyStyles()
{
  TSVGUpdateGuard Guard(*this);
  const TSVGRuleIndexScope Indexed(FStyles);
  ApplyMatchingStyles(&FStyles);
  TSVGCustomViewBox::ApplyStyles();
}

const std::vector<TSVGElement *> &TSVGDocument::Gradients()
{
  if (FAllItemsModified)
    UpdateElementLists();
  return FGradients;
}

const std::vector<TSVGElement *> &TSVGDocument::Markers()
{
  if (FAllItemsModified)
    UpdateElementLists();
  return FMarkers;
}

const std::vector<TSVGElement *> &TSVGDocument::Patterns()
{
  if (FAllItemsModified)
    UpdateElementLists();
  return FPatterns;
}

void TSVGDocument::UpdateElementLists()
{
  FAllItemsModified = false;
  FGradients.clear();
  FMarkers.clear();
  FPatterns.clear();
  for (const auto &Item : FAllItems) {
    switch (Item.Value->SVGType()) {
    case etLinearGradient:
    case etRadialGradient:
      FGradients.push_back(Item.Value);
      break;
    case etMarker:
      FMarkers.push_back(Item.Value);
      break;
    case etPattern:
      FPatterns.push_back(Item.Value);
      break;
    default:
      break;
    }
  }
}

bool TSVGDocument::DoShouldDraw(const TSVGElement *Element, bool Value) const
{
  if (OnShouldDraw)
    OnShouldDraw(Element, Value);
  return Value;
}

TSVGUnitFactors TSVGDocument::GetUnitFactors() const
{
  return WithFontFactors(FUnitFactors);
}

bool TSVGDocument::DoDrawing(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (GetOwner())
    return GetOwner()->DoDrawing(Sender, Matrix, Canvas, Rect);
  bool DoDefault = true;
  if (OnDrawing)
    OnDrawing(Sender, Matrix, Canvas, Rect, DoDefault);
  return DoDefault;
}

void TSVGDocument::DoDrawn(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (GetOwner())
    GetOwner()->DoDrawn(Sender, Matrix, Canvas, Rect);
  else if (OnDrawn)
    OnDrawn(Sender, Matrix, Canvas, Rect);
}

bool TSVGDocument::DoDisableAppearance(TSVGElement *Sender, TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect)
{
  if (GetOwner())
    return GetOwner()->DoDisableAppearance(Sender, Matrix, Canvas, Rect);
  bool DoDefault = true;
  if (OnDisableAppearance)
    OnDisableAppearance(Sender, Matrix, Canvas, Rect, DoDefault);
  return DoDefault;
}

bool TSVGDocument::SupportsFeature(const QString &Feature) const
{
  return SVGFeatureSupport[GetSVGFeatureSupport(Feature)];
}

bool TSVGDocument::SupportsLanguage(const QString &Language) const
{
  const QStringList Tokens = CleanArray(SplitString(Language, QStringLiteral(", ")));
  if (Tokens.isEmpty())
    return false;
  const QStringList Preferences = GetOptions().Contains(soUseLocaleForLanguage)
                                      ? QLocale::system().uiLanguages()
                                      : FPrefLanguages.ToStringList();
  // Browsers compare the primary subtags only: "en-GB" is met by "en-US".
  const auto Meets = [this](const QString &Preference, const QString &Token) {
    if (!EvaluatesLanguageAsBrowsers())
      return StartsText(Token, Preference);
    return Token.section(u'-', 0, 0).compare(Preference.section(u'-', 0, 0), Qt::CaseInsensitive) == 0;
  };
  for (const QString &Preference : Preferences)
    for (const QString &Token : Tokens)
      if (Meets(Preference, Token))
        return true;
  return false;
}

TSVGOptions TSVGDocument::GetOptions() const
{
  return FOwner ? FOwner->GetOptions() : FOptions;
}

void TSVGDocument::SetOptions(TSVGOptions Value)
{
  if (Value == GetOptions())
    return;
  FOptions = Value;
  Reset();
  Change(this);
}

TSVGUnitFactors TSVGDocument::CalcUnitFactors(int DPI)
{
  const float D = float(DPI);
  return {1.0f, 1.0f, D / 72.0f, D / 72.0f * 12.0f, D / 25.4f, D / 2.54f, D, 1.0f, 1.0f, 1.0f};
}

void TSVGDocument::SetDPI(int Value)
{
  if (Value == FDPI)
    return;
  FDPI = std::max(Value, 10);
  FUnitFactors = CalcUnitFactors(FDPI);
}

void TSVGDocument::SetFormatStr(const QString &Value)
{
  if (Value == FFormatStr)
    return;
  if (!IsNumberPattern(Value))
    throw EConvertError(QStringLiteral("Invalid number format \"%1\"").arg(Value));
  FFormatStr = Value;
}

void TSVGDocument::Change(TSVGElement *Element)
{
  TSVGCustomViewBox::Change(Element);
  if (FUpdateCount > 0 || FElementState.Contains(esDestroying))
    return;
  if (OnChange)
    OnChange(Element);
}

// Receives the notifications of the document's own child list and those forwarded by every element
// below it. Additions reach neither element event, and a removal fires both: users depend on that.
void TSVGDocument::ElementNotification(TObject *Sender, TSVGElement *Item, TCollectionNotification Action)
{
  auto *Element = dynamic_cast<TSVGElement *>(Sender);
  const bool Own = Element == nullptr;
  if (Own)
    Element = this;
  const bool Quiet = FUpdateCount == 0 && !FElementState.Contains(esDestroying);
  if (Quiet && Action == cnRemoved && OnRemoveElement)
    OnRemoveElement(Element, Item);
  if (Own)
    TSVGCustomViewBox::ElementNotification(Element, Item, Action);
  if (Quiet && Action == cnRemoved && OnAddElement)
    OnAddElement(Element, Item);
  Change(Element);
}

void TSVGDocument::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomViewBox::Clear();
  FAllItems.Clear();
  FreeStyles();
}

void TSVGDocument::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Document = dynamic_cast<const TSVGDocument *>(Source)) {
    FDPI = Document->FDPI;
    FUnitFactors = Document->FUnitFactors;
    FOptions = Document->GetOptions();
    FFormatStr = Document->FFormatStr;
    FDefaultShapeRendering = Document->FDefaultShapeRendering;
    FDefaultColorRendering = Document->FDefaultColorRendering;
    FDefaultTextRendering = Document->FDefaultTextRendering;
    FDefaultColorInterpolation = Document->FDefaultColorInterpolation;
    FPrefLanguages.Assign(&Document->FPrefLanguages);
    FreeStyles();
    for (const auto &Rule : Document->FStyles) {
      auto *Copy = new TSVGStyle;
      Copy->Assign(Rule.Value);
      FStyles.Add(Rule.Key, Copy);
    }
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

// The children of a copied document belong to the copy.
TSVGDocument *TSVGDocument::OwnerOfCopies()
{
  return this;
}

void TSVGDocument::DoOnParsingNode(TSVGElement *Element, const IXMLNode &Node)
{
  if (OnParsingNode)
    OnParsingNode(Element, Node);
}

void TSVGDocument::DoOnParsedNode(TSVGElement *Element)
{
  if (OnParsedNode)
    OnParsedNode(this, Element);
}

// Elements read by a root document belong to it; in a nested document they belong to the outermost
// owner, whose element table answers for the whole picture.
int TSVGDocument::ReadChild(const IXMLNode &Node)
{
  const TSVGElementType Type = ChildNodeType(Node);
  TSVGDocument *Owner = FOwner ? FOwner : this;
  if (Type == etNone) {
    if (Node.NodeType() == ntEntityRef || (DrawsLinksAsGroups() && Node.LocalName() == QLatin1String("a")))
      return AddChildOfType(etGroup, Owner);
    return TSVGGraphicElement::ReadChild(Node);
  }
  if (Type == etStyle) {
    Owner->ReadStyles(Node);
    return -1;
  }
  return AddChildOfType(Type, Owner);
}

void TSVGDocument::StyleNotify(TSVGStyle *Style, TCollectionNotification Action)
{
  if (Action == cnAdded) {
    if (OnAddStyle)
      OnAddStyle(this, Style);
  } else if (OnRemoveStyle) {
    OnRemoveStyle(this, Style);
  }
  if (Action == cnRemoved)
    delete Style;
  Change(this);
}

void TSVGDocument::FreeStyles()
{
  FStyles.Clear();
}

} // namespace vx
