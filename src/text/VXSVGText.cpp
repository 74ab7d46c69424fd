#include "text/VXSVGText.h"

#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLookups.h"

#include <limits>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGText)
VX_SVG_ELEMENT_CLASS_INFO(TSVGTextSpan)
VX_SVG_ELEMENT_CLASS_INFO(TSVGTextRef)
VX_SVG_ELEMENT_CLASS_INFO(TSVGTextPath)

namespace {

const TSVGClassRegistration TextRegistration(etText, TSVGText::ClassInfo());
const TSVGClassRegistration TextSpanRegistration(etTSpan, TSVGTextSpan::ClassInfo());
const TSVGClassRegistration TextRefRegistration(etTRef, TSVGTextRef::ClassInfo());
const TSVGClassRegistration TextPathRegistration(etTextPath, TSVGTextPath::ClassInfo());

bool IsCharacterData(const IXMLNode &Node)
{
  return Node.NodeType() == ntText || Node.NodeType() == ntCData;
}

// Single list values and lists of zeros are what a missing attribute means in compact output.
bool IsListStored(int Count, float FirstRaw, bool Compact)
{
  return Count >= 2 || (Count == 1 && FirstRaw != 0) || !Compact;
}

void ReplaceLengths(std::unique_ptr<TSVGLengths> &Target, const TSVGLengths &Source)
{
  Source.Clone(Target.get());
}

// The value of a property written on Node: in its style attribute, else as an attribute unless the
// property is a CSS one that browsers read from style alone.
QString DeclaredProperty(const IXMLNode &Node, const QString &Name, bool StyleOnly = false)
{
  const QString Style = Node.GetAttribute(QStringLiteral("style"));
  for (const QString &Declaration : Style.split(QLatin1Char(';'))) {
    const qsizetype Colon = Declaration.indexOf(QLatin1Char(':'));
    if (Colon > 0 && Declaration.left(Colon).trimmed() == Name)
      return Declaration.mid(Colon + 1).trimmed();
  }
  return StyleOnly ? QString() : Node.GetAttribute(Name).trimmed();
}

// Whether xml:space="preserve" holds at Node, set on it or on the nearest element above that says.
bool SpacePreserved(IXMLNode Node)
{
  const QString Namespace = QStringLiteral("http://www.w3.org/XML/1998/namespace");
  const QString Name = QStringLiteral("space");
  for (; Node; Node = Node.ParentNode())
    if (Node.NodeType() == ntElement && Node.HasAttribute(Name, Namespace))
      return Node.GetAttributeNS(Name, Namespace) == QLatin1String("preserve");
  return false;
}

} // namespace

// --- model -------------------------------------------------------------------------------------

TSVGCustomText::TSVGCustomText(TSVGDocument *Owner)
  : TSVGGraphicElement(Owner), FX(std::make_unique<TSVGLengths>()), FY(std::make_unique<TSVGLengths>()),
    FDX(std::make_unique<TSVGLengths>()), FDY(std::make_unique<TSVGLengths>())
{
}

TSVGCustomText::~TSVGCustomText() = default;

TSVGCustomText *TSVGCustomText::TextParent() const
{
  return dynamic_cast<TSVGCustomText *>(FParent);
}

const TSVGCustomText &TSVGCustomText::RootText() const
{
  return const_cast<TSVGCustomText *>(this)->RootText();
}

TSVGCustomText &TSVGCustomText::RootText()
{
  TSVGCustomText *Root = this;
  while (TSVGCustomText *Parent = Root->TextParent())
    Root = Parent;
  return *Root;
}

QString TSVGCustomText::GetText() const
{
  return FText;
}

void TSVGCustomText::SetText(const QString &Value)
{
  if (Value == GetText())
    return;
  FText = Value;
  FTextWidth = FTextHeight = -1;
  Change(this);
}

QString TSVGCustomText::GetLineText() const
{
  QString Result = GetText();
  for (TSVGElement *Child : FItems)
    if (auto *Text = dynamic_cast<TSVGCustomText *>(Child))
      Result += Text->GetLineText();
  return Result;
}

int TSVGCustomText::IndexFromChild(int Index) const
{
  // Running indices add up the totals of nested spans, so deep nesting makes them huge: anything
  // beyond the range of an index lies past the end of every list.
  const std::int64_t Result = std::int64_t(Index) + FCurrentTextIndex;
  return Index < 0 || Result > std::numeric_limits<int>::max() ? std::numeric_limits<int>::max() : int(Result);
}

float TSVGCustomText::ListValue(const TSVGLengths &List, int Index, bool Width) const
{
  const TSVGLength *Item = List[Index];
  float Result = Item->GetPixels();
  if (Item->IsPercent())
    if (const TSVGCustomViewBox *Box = GetNearestViewBox(); Box && Box->ViewBox().Specified())
      Result *= (Width ? Box->ViewBox().Width() : Box->ViewBox().Height())->GetValue();
  return Result;
}

float TSVGCustomText::ListLookup(const TSVGLengths &List, TValueLookup ParentLookup, int Index, bool Width) const
{
  if (Index < List.Count())
    return ListValue(List, Index, Width);
  if (TSVGCustomText *Parent = TextParent())
    return (Parent->*ParentLookup)(Parent->IndexFromChild(Index));
  return 0;
}

bool TSVGCustomText::ListReaches(const TSVGLengths &List, TFlagLookup ParentLookup, int Index) const
{
  if (Index < List.Count())
    return true;
  if (TSVGCustomText *Parent = TextParent())
    return (Parent->*ParentLookup)(Parent->IndexFromChild(Index));
  return false;
}

float TSVGCustomText::GetX(int Index) const
{
  return ListLookup(*FX, static_cast<TValueLookup>(&TSVGCustomText::GetX), Index, true);
}

float TSVGCustomText::GetY(int Index) const
{
  return ListLookup(*FY, static_cast<TValueLookup>(&TSVGCustomText::GetY), Index, false);
}

float TSVGCustomText::GetDX(int Index) const
{
  return ListLookup(*FDX, &TSVGCustomText::GetDX, Index, true);
}

float TSVGCustomText::GetDY(int Index) const
{
  return ListLookup(*FDY, &TSVGCustomText::GetDY, Index, false);
}

float TSVGCustomText::GetRotate(int Index) const
{
  if (FRotate.empty()) {
    if (TSVGCustomText *Parent = TextParent())
      return Parent->GetRotate(Parent->IndexFromChild(Index));
    return 0;
  }
  return Index < int(FRotate.size()) ? FRotate[std::size_t(Index)] : FRotate.back();
}

bool TSVGCustomText::IsXSpecified(int Index) const
{
  return ListReaches(*FX, &TSVGCustomText::IsXSpecified, Index);
}

bool TSVGCustomText::IsYSpecified(int Index) const
{
  return ListReaches(*FY, &TSVGCustomText::IsYSpecified, Index);
}

bool TSVGCustomText::IsCharClipped(int) const
{
  return false;
}

bool TSVGCustomText::IsFillingText() const
{
  return GetOptions().Contains(soUseFillText);
}

float TSVGCustomText::GetX() const
{
  return FX->Count() > 0 ? GetX(0) : TSVGGraphicElement::GetX();
}

float TSVGCustomText::GetY() const
{
  return FY->Count() > 0 ? GetY(0) : TSVGGraphicElement::GetY();
}

void TSVGCustomText::SetX(float Value)
{
  if (Value == GetX())
    return;
  if (FX->Count() > 0)
    FX->Items(0)->SetPixels(Value);
  else
    FX->Add(new TSVGLength(Value, false, suNone));
  Change(this);
}

void TSVGCustomText::SetY(float Value)
{
  if (Value == GetY())
    return;
  if (FY->Count() > 0)
    FY->Items(0)->SetPixels(Value);
  else
    FY->Add(new TSVGLength(Value, false, suNone));
  Change(this);
}

void TSVGCustomText::SetX(const TSVGLengths &Value)
{
  ReplaceLengths(FX, Value);
  Change(this);
}

void TSVGCustomText::SetY(const TSVGLengths &Value)
{
  ReplaceLengths(FY, Value);
  Change(this);
}

void TSVGCustomText::SetDX(const TSVGLengths &Value)
{
  ReplaceLengths(FDX, Value);
  Change(this);
}

void TSVGCustomText::SetDY(const TSVGLengths &Value)
{
  ReplaceLengths(FDY, Value);
  Change(this);
}

void TSVGCustomText::SetRotate(const TSVGNumbers &Value)
{
  FRotate = Value;
  Change(this);
}

QString TSVGCustomText::GetXStr() const
{
  return SVGLengthsToString(*FX, GetFormatStr(), 0, 1, QStringLiteral(" "));
}

QString TSVGCustomText::GetYStr() const
{
  return SVGLengthsToString(*FY, GetFormatStr(), 0, 1, QStringLiteral(" "));
}

QString TSVGCustomText::GetDXStr() const
{
  return SVGLengthsToString(*FDX, GetFormatStr(), 0, 1, QStringLiteral(" "));
}

QString TSVGCustomText::GetDYStr() const
{
  return SVGLengthsToString(*FDY, GetFormatStr(), 0, 1, QStringLiteral(" "));
}

QString TSVGCustomText::GetRotateStr() const
{
  return SVGNumbersToString(FRotate, GetFormatStr(), QStringLiteral(" "));
}

void TSVGCustomText::SetXStr(const QString &Value)
{
  ParseLengths(Value, FX.get(), 0, 1);
  Change(this);
}

void TSVGCustomText::SetYStr(const QString &Value)
{
  ParseLengths(Value, FY.get(), 0, 1);
  Change(this);
}

void TSVGCustomText::SetDXStr(const QString &Value)
{
  ParseLengths(Value, FDX.get(), 0, 1);
  Change(this);
}

void TSVGCustomText::SetDYStr(const QString &Value)
{
  ParseLengths(Value, FDY.get(), 0, 1);
  Change(this);
}

void TSVGCustomText::SetRotateStr(const QString &Value)
{
  FRotate = ParseNumbers(Value, {0, 1});
  Change(this);
}

// --- the running pen ---------------------------------------------------------------------------

TPointF TSVGCustomText::GetCurrentTextPosition() const
{
  if (FCurrentTextPositionSpecified)
    return FCurrentTextPosition;
  if (TSVGCustomText *Parent = TextParent())
    return Parent->GetCurrentTextPosition();
  TPointF Result;
  if (FX->Count() > 0)
    Result.X = FX->Items(0)->GetPixels();
  if (FY->Count() > 0)
    Result.Y = FY->Items(0)->GetPixels();
  return Result;
}

void TSVGCustomText::SetCurrentTextPosition(const TPointF &Point)
{
  for (TSVGCustomText *Text = this; Text; Text = Text->TextParent()) {
    Text->FCurrentTextPositionSpecified = true;
    Text->FCurrentTextPosition = Point;
  }
}

void TSVGCustomText::SetCurrentTextIndex(std::uint32_t Value)
{
  FCurrentTextIndex = Value;
  if (TSVGCustomText *Parent = TextParent())
    Parent->SetCurrentTextIndex(Parent->FCurrentTextIndex + Value);
}

void TSVGCustomText::RestartTextPosition()
{
  FCurrentTextPositionSpecified = false;
  SetCurrentTextPosition(GetCurrentTextPosition());
  SetCurrentTextIndex(0);
}

TSVGWritingMode TSVGCustomText::GetInlineProgressionDirection() const
{
  switch (GetWritingMode()) {
  case wmRightLeft_TopBottom:
  case wmRightLeft:
    return wmRightLeft;
  case wmTopBottom_RightLeft:
  case wmTopBottom:
    return wmTopBottom;
  default:
    return wmLeftRight;
  }
}

// --- chunking ----------------------------------------------------------------------------------

void TSVGCustomText::ChunkText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks)
{
  const QString S = GetText();
  if (!S.isEmpty()) {
    const bool Vertical = IsVertical();
    auto StartsChunk = [&](int I) { return Vertical ? IsYSpecified(I) : IsXSpecified(I); };
    auto CharAt = [&](int I) {
      return TSVGCharChunk{GetX(I), IsXSpecified(I), GetY(I), IsYSpecified(I), GetDX(I), GetDY(I), GetRotate(I),
                           IsCharClipped(I), this};
    };
    bool NewChunk = Chunks.empty() || StartsChunk(0);
    if (!NewChunk && IsFillingText())
      if (TSVGCustomText *Parent = TextParent())
        NewChunk = GetFont().GetName() != Parent->GetFont().GetName() ||
                   GetFont().GetSize() != Parent->GetFont().GetSize();
    // Characters go straight onto the last chunk: a chunk that runs through many spans is never copied.
    for (int I = 0; I < S.size(); ++I) {
      if (I == 0 ? NewChunk : StartsChunk(I))
        Chunks.emplace_back();
      Chunks.back().Text += S[I];
      Chunks.back().Chars.push_back(CharAt(I));
    }
  }
  SetCurrentTextIndex(FCurrentTextIndex + std::uint32_t(S.size()));
  ChunkChildrenText(Canvas, Matrix, Chunks);
}

void TSVGCustomText::ChunkChildrenText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks)
{
  for (TSVGElement *Child : FItems)
    if (auto *Text = dynamic_cast<TSVGCustomText *>(Child))
      Text->ChunkText(Canvas, Matrix, Chunks);
}

// --- changes -----------------------------------------------------------------------------------

void TSVGCustomText::Change(TSVGElement *Element)
{
  // The outlines of a whole text tree are made together by its outermost element, so a change of
  // any part makes all of them stale.
  for (TSVGCustomText *Text = TextParent(); Text; Text = Text->TextParent())
    Text->FShapeCacheChanged = true;
  TSVGGraphicElement::Change(Element);
}

void TSVGCustomText::PropagateObjectPropChange(TObject *Sender)
{
  TSVGGraphicElement::PropagateObjectPropChange(Sender);
  if (FFontChanged)
    FTextWidth = -1;
}

void TSVGCustomText::Reset()
{
  TSVGGraphicElement::Reset();
  FTextWidth = FTextHeight = -1;
}

void TSVGCustomText::Clear()
{
  FText.clear();
  FTextWidth = FTextHeight = -1;
  FX->Clear();
  FY->Clear();
  FDX->Clear();
  FDY->Clear();
  FRotate.clear();
  TSVGGraphicElement::Clear();
}

void TSVGCustomText::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Text = dynamic_cast<const TSVGCustomText *>(Source)) {
    FText = Text->GetText();
    FTextWidth = Text->FTextWidth;
    FTextHeight = Text->FTextHeight;
    ReplaceLengths(FX, *Text->FX);
    ReplaceLengths(FY, *Text->FY);
    ReplaceLengths(FDX, *Text->FDX);
    ReplaceLengths(FDY, *Text->FDY);
    FRotate = Text->FRotate;
  }
  TSVGGraphicElement::AssignProperties(Source);
}

// --- XML ---------------------------------------------------------------------------------------

void TSVGCustomText::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoLoadFromXML(Node);
  FText.clear();
  if (IsCharacterData(Node))
    FText = LoadedText(Node);
  FPreserveSpace = LaysOutAsBrowsers() && SpacePreserved(Node);
  FBrowserProperties = {};
  if (LaysOutAsBrowsers() && Node.NodeType() == ntElement) {
    FBrowserProperties.FontVariationSettings = DeclaredProperty(Node, QStringLiteral("font-variation-settings"));
    FBrowserProperties.FontStretch = DeclaredProperty(Node, QStringLiteral("font-stretch"));
    FBrowserProperties.FontKerning = DeclaredProperty(Node, QStringLiteral("font-kerning"), true);
    FBrowserProperties.FontStyle = DeclaredProperty(Node, QStringLiteral("font-style"));
    TSVGUnit Unit = suNone;
    FBrowserProperties.TextLength =
      ParseLength(Node.GetAttribute(QStringLiteral("textLength")), -1, Unit, GetUnitFactors());
    FBrowserProperties.SpacingAndGlyphs = Node.GetAttribute(QStringLiteral("lengthAdjust")) == QLatin1String("spacingAndGlyphs");
  }
  ParseLengths(Node, QStringLiteral("x"), FX.get(), 0, 1);
  ParseLengths(Node, QStringLiteral("y"), FY.get(), 0, 1);
  ParseLengths(Node, QStringLiteral("dx"), FDX.get(), 0, 1);
  ParseLengths(Node, QStringLiteral("dy"), FDY.get(), 0, 1);
  FRotate = ParseNumbers(Node, QStringLiteral("rotate"), {0, 1});
}

int TSVGCustomText::ReadChild(const IXMLNode &Node)
{
  if (GetSVGElementType(Node.LocalName()) == etTSpan)
    return AddChildOfType(etTSpan, GetOwner());
  if (!IsCharacterData(Node))
    return TSVGGraphicElement::ReadChild(Node);
  if (!FText.isEmpty())
    // Text after a child element: a span of its own keeps it in its place.
    return AddChildOfType(etTSpan, GetOwner());
  FText = LoadedText(Node);
  return -1;
}

QString TSVGCustomText::LoadedText(const IXMLNode &Node) const
{
  return LaysOutAsBrowsers() ? Node.Text() : CleanText(Node.Text());
}

void TSVGCustomText::DoOnParsedNode(TSVGElement *Element)
{
  if (!TextParent() && !LaysOutAsBrowsers())
    FText = TrimLeft(FText);
  TSVGGraphicElement::DoOnParsedNode(Element);
}

void TSVGCustomText::DoSaveToXML(const IXMLNode &Node)
{
  TSVGGraphicElement::DoSaveToXML(Node);
  const bool Compact = IsCompactXML();
  auto SaveList = [&](const char *Name, const TSVGLengths &List, const QString &Text) {
    if (IsListStored(List.Count(), List.Count() > 0 ? List[0]->Raw() : 0, Compact))
      SaveAttrString(Node, QString::fromLatin1(Name), Text, false, true);
  };
  SaveList("x", *FX, GetXStr());
  SaveList("y", *FY, GetYStr());
  SaveList("dx", *FDX, GetDXStr());
  SaveList("dy", *FDY, GetDYStr());
  if (IsListStored(int(FRotate.size()), FRotate.empty() ? 0 : FRotate[0], Compact))
    SaveAttrString(Node, QStringLiteral("rotate"), GetRotateStr(), false, true);
  if (const QString Text = GetText(); !Text.isEmpty())
    Node.SetText(Text);
}

// --- text --------------------------------------------------------------------------------------

TSVGElementTypes TSVGText::ChildSVGTypes() const
{
  TSVGElementTypes Result = SVGDescriptiveElements;
  Result.Include(etTSpan);
  Result.Include(etTextPath);
  Result.Include(etTRef);
  return Result;
}

int TSVGText::ReadChild(const IXMLNode &Node)
{
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  if (Type == etTSpan || Type == etTextPath || Type == etTRef)
    return AddChildOfType(Type, GetOwner());
  return TSVGCustomText::ReadChild(Node);
}

// --- tref --------------------------------------------------------------------------------------

TSVGTextRef::~TSVGTextRef()
{
  BeforeDestruction();
  FListener.Stop(*this);
}

TSVGCustomText *TSVGTextRef::Target() const
{
  TSVGElement *Found = nullptr;
  if (FReference.isEmpty() || !GetOwner() || !GetOwner()->AllItems().TryGetValue(FReference, Found))
    return nullptr;
  return dynamic_cast<TSVGCustomText *>(Found);
}

QString TSVGTextRef::GetText() const
{
  // A reference to itself or to its own text tree would ask itself again.
  // Browsers show all the text of the target, that of its spans too. Spans of the target may
  // refer back through references of their own, so the depth of such chains is bounded.
  thread_local int Depth = 0;
  TSVGCustomText *Found = Target();
  if (!Found || Found == this || HasAncestor(Found) || Depth > 16)
    return TSVGCustomText::GetText();
  if (!LaysOutAsBrowsers())
    return Found->GetText();
  ++Depth;
  const QString Result = Found->GetLineText();
  --Depth;
  return Result;
  return TSVGCustomText::GetText();
}

void TSVGTextRef::SetReference(const QString &Value)
{
  if (Value == FReference)
    return;
  FReference = Value;
  FListener.Listen(*this, Target());
  Change(this);
}

void TSVGTextRef::Clear()
{
  TSVGCustomText::Clear();
  FListener.Stop(*this);
  FReference.clear();
}

void TSVGTextRef::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Ref = dynamic_cast<const TSVGTextRef *>(Source))
    SetReference(Ref->FReference);
  TSVGCustomText::AssignProperties(Source);
}

void TSVGTextRef::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomText::DoLoadFromXML(Node);
  FReference = ParseURI(Node, QStringLiteral("href"), QString(), QStringLiteral("xlink"));
}

void TSVGTextRef::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomText::DoSaveToXML(Node);
  if (!FReference.isEmpty())
    SaveAttrString(Node, QStringLiteral("xlink:href"), QLatin1Char('#') + FReference, false, true);
}

} // namespace vx
