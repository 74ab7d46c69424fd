#include "tree/VXSVGElement.h"

#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGException.h"
#include "values/VXSVGLookups.h"

#include <algorithm>
#include <exception>

namespace vx {

namespace {

const QString ClassSeparators = QStringLiteral(", ");

} // namespace

TSVGUpdateGuard::TSVGUpdateGuard(TSVGElement &Element) : FElement(Element), FUncaught(std::uncaught_exceptions())
{
  FElement.BeginUpdate();
}

TSVGUpdateGuard::~TSVGUpdateGuard() noexcept(false)
{
  if (std::uncaught_exceptions() == FUncaught) {
    FElement.EndUpdate();
    return;
  }
  try {
    FElement.EndUpdate();
  } catch (...) {
  }
}

TSVGElement::TSVGElement(TSVGDocument *Owner) : FOwner(Owner)
{
  FItems.OnNotify = [this](TObject *Sender, TSVGElement *const &Item, TCollectionNotification Action) {
    ElementNotification(Sender, Item, Action);
  };
  for (TStringList *List : {&FDescription, &FClasses, &FSystemLanguages, &FRequiredExtensions, &FRequiredFeatures})
    List->OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
  FClasses.SetCaseSensitive(true);
  if (FOwner)
    SetID(QStringLiteral("ID#") + QString::number(FOwner->AllItems().Count()));
}

TSVGElement::~TSVGElement()
{
  BeforeDestruction();
  FItems.Clear();
  if (FParent) {
    FParent->FItems.Extract(this);
    FParent = nullptr;
  }
  NotifyListeners();
  ForgetListeners();
  StopListeningToAll();
  if (FOwner && !FID.isEmpty() && FOwner->AllItems().Elements(FID) == this)
    FOwner->AllItems().Remove(FID);
}

void TSVGElement::SetID(const QString &Value)
{
  if (Value == FID)
    return;
  if (!FOwner) {
    FID = Value;
    return;
  }
  TSVGElementTable &Table = FOwner->AllItems();
  QString NewID = Value;
  TSVGElement *Holder = nullptr;
  if (!GetOptions().Contains(soEnforceUniqueID) && Table.TryGetValue(Value, Holder) && Holder != this)
    NewID = Table.GetUniqueName(Value, QStringLiteral("Copy"));
  Table.Add(NewID, this);
  if (!FID.isEmpty() && Table.Elements(FID) == this)
    Table.Remove(FID);
  FID = NewID;
}

void TSVGElement::SetTitle(const QString &Value)
{
  if (Value == FTitle)
    return;
  FTitle = Value;
  Change(this);
}

void TSVGElement::SetLanguage(const QString &Value)
{
  if (Value == FLanguage)
    return;
  FLanguage = Value;
  Change(this);
}

void TSVGElement::SetEnabled(bool Value)
{
  if (Value == FEnabled)
    return;
  FEnabled = Value;
  EnableChange();
}

QString TSVGElement::SVGTypeName() const
{
  const TSVGElementType Type = SVGType();
  return Type == etNone ? ClassName() : SVGElementTypeNames[Type];
}

TSVGElementTypes TSVGElement::ChildSVGTypes() const
{
  return TSVGElementTypes::FromBits(0x7FFFFFFF);
}

void TSVGElement::SetParent(TSVGElement *Parent)
{
  if (Parent == this)
    throw EInvalidOperation(SElementParentSetToSelf);
  FParent = Parent;
}

bool TSVGElement::IsEnabled() const
{
  return FEnabled && (!FParent || FParent->IsEnabled());
}

bool TSVGElement::ShouldDraw() const
{
  const bool Result = DoShouldDraw();
  return FOwner ? FOwner->DoShouldDraw(this, Result) : Result;
}

bool TSVGElement::DoShouldDraw() const
{
  return HasFeatures() && HasExtensions() && HasLanguages();
}

bool TSVGElement::HasFeatures() const
{
  if (!FOwner)
    return true;
  for (int I = 0; I < FRequiredFeatures.Count(); ++I)
    if (!FOwner->SupportsFeature(FRequiredFeatures[I]))
      return false;
  return true;
}

bool TSVGElement::HasExtensions() const
{
  return FRequiredExtensions.Count() == 0;
}

bool TSVGElement::HasLanguages() const
{
  // A root document answers for itself.
  const TSVGDocument *Judge = FOwner ? FOwner : dynamic_cast<const TSVGDocument *>(this);
  if (Judge && EvaluatesLanguageAsBrowsers()) {
    for (int I = 0; I < FSystemLanguages.Count(); ++I)
      if (Judge->SupportsLanguage(FSystemLanguages[I]))
        return true;
    return FSystemLanguages.Count() == 0;
  }
  if (!FOwner)
    return true;
  bool Result = FLanguage.isEmpty() || FOwner->SupportsLanguage(FLanguage);
  if (!FLanguage.isEmpty() && Result)
    return true;
  for (int I = 0; I < FSystemLanguages.Count(); ++I) {
    Result = FOwner->SupportsLanguage(FSystemLanguages[I]);
    if (Result)
      break;
  }
  return Result;
}

bool TSVGElement::HasLanguage(const QString &) const
{
  const QStringList Tokens = CleanArray(SplitString(FLanguage, ClassSeparators));
  return std::any_of(Tokens.begin(), Tokens.end(),
                     [this](const QString &Token) { return StartsText(FLanguage, Token); });
}

TSVGOptions TSVGElement::GetOptions() const
{
  return FOwner ? FOwner->GetOptions() : DefaultSVGOptions;
}

TSVGUnitFactors TSVGElement::GetUnitFactors() const
{
  return FOwner ? FOwner->UnitFactors() : SVGUnitFactors;
}

QString TSVGElement::GetFormatStr() const
{
  return FOwner ? FOwner->FormatStr() : QStringLiteral("0.###");
}

bool TSVGElement::HasChild(const TSVGElement *E) const
{
  return E && E->FParent == this;
}

bool TSVGElement::HasDescendant(const TSVGElement *E) const
{
  if (HasChild(E))
    return true;
  return std::any_of(FItems.begin(), FItems.end(), [E](const TSVGElement *Child) { return Child->HasDescendant(E); });
}

bool TSVGElement::HasAncestor(const TSVGElement *E) const
{
  return E && E->HasDescendant(this);
}

// Whether E is the parent of this element's parent: selector matching relies on exactly this test.
bool TSVGElement::HasSibling(const TSVGElement *E) const
{
  return FParent && E && E->HasChild(FParent);
}

bool TSVGElement::HasPreceding(const TSVGElement *E) const
{
  if (!E)
    return false;
  if (E->HasAncestor(this))
    return true;
  return HasSibling(E) && FParent->FItems.IndexOf(E) < FParent->FItems.IndexOf(this);
}

// Answers as HasPreceding does; selector matching depends on the two agreeing.
bool TSVGElement::HasFollowing(const TSVGElement *E) const
{
  return HasPreceding(E);
}

void TSVGElement::ChangeNotification(TSVGElement *Element)
{
  if (!Element || FListeners.Contains(Element))
    return;
  FListeners.Add(Element);
  Element->FListening.push_back(this);
}

void TSVGElement::RemoveChangeNotification(TSVGElement *Element)
{
  if (!Element || !FListeners.Contains(Element))
    return;
  FListeners.Remove(Element);
  std::erase(Element->FListening, this);
}

bool TSVGElement::IsListeningTo(const TSVGElement *Element) const
{
  return std::find(FListening.begin(), FListening.end(), Element) != FListening.end();
}

void TSVGElement::ForgetListeners()
{
  for (TSVGElement *Listener : FListeners)
    std::erase(Listener->FListening, this);
  FListeners.Clear();
}

void TSVGElement::StopListeningToAll()
{
  for (TSVGElement *Listened : FListening)
    Listened->FListeners.Remove(this);
  FListening.clear();
}

void TSVGElement::NotifyListener(TSVGElement *)
{
  Change(this);
}

void TSVGElement::NotifyListeners()
{
  // A listener may stop listening while it is told; walk a copy.
  const std::vector<TSVGElement *> Copy(FListeners.begin(), FListeners.end());
  for (TSVGElement *Listener : Copy)
    Listener->NotifyListener(this);
}

void TSVGElement::EndUpdate()
{
  if (--FUpdateCount == 0)
    Change(nullptr);
}

void TSVGElement::Change(TSVGElement *Element)
{
  if (FOwner && FOwner != this)
    FOwner->Change(Element);
}

void TSVGElement::ObjectPropChange(TObject *)
{
  Change(this);
}

void TSVGElement::PropagateObjectPropChange(TObject *Sender)
{
  Change(this);
  for (TSVGElement *Child : FItems)
    Child->PropagateObjectPropChange(Sender);
}

void TSVGElement::Reset()
{
  for (TSVGElement *Child : FItems)
    Child->Reset();
}

void TSVGElement::Assign(const TPersistent *Source)
{
  const auto *Element = dynamic_cast<const TSVGElement *>(Source);
  if (!Element) {
    TPersistent::Assign(Source);
    return;
  }
  if (Element == this)
    return;
  TSVGUpdateGuard Guard(*this);
  Clear();
  AssignProperties(Element);
  for (const TSVGElement *Child : Element->FItems)
    FItems.Add(Child->Clone(OwnerOfCopies()));
}

void TSVGElement::AssignProperties(const TSVGElement *Source)
{
  if (!Source)
    return;
  SetID(Source->FID);
  FTitle = Source->FTitle;
  FLanguage = Source->FLanguage;
  FAttributes = Source->FAttributes;
  SetDescription(Source->FDescription);
  SetClasses(Source->FClasses);
  SetSystemLanguages(Source->FSystemLanguages);
  SetRequiredFeatures(Source->FRequiredFeatures);
  SetRequiredExtensions(Source->FRequiredExtensions);
}

TSVGElement *TSVGElement::Clone(TSVGDocument *Owner) const
{
  TSVGElement *Result = GetClass().Create(Owner);
  try {
    TSVGUpdateGuard Guard(*Result);
    Result->AssignProperties(this);
    for (const TSVGElement *Child : FItems)
      Result->FItems.Add(Child->Clone(Result->OwnerOfCopies()));
  } catch (...) {
    delete Result;
    throw;
  }
  return Result;
}

TSVGDocument *TSVGElement::OwnerOfCopies()
{
  return FOwner;
}

void TSVGElement::Clear()
{
  TSVGUpdateGuard Guard(*this);
  FTitle.clear();
  FEnabled = true;
  FDescription.Clear();
  FClasses.Clear();
  FLanguage.clear();
  FRequiredExtensions.Clear();
  FRequiredFeatures.Clear();
  FSystemLanguages.Clear();
  FItems.Clear();
  ForgetListeners();
}

TRectF TSVGElement::GetBoundsRect(const TMatrix &Matrix) const
{
  const TRectF R = GetBoundsRect();
  if (VXMatrixEquals(Matrix, VXIdentityMatrix, 1e-5f))
    return R;
  return VXMatrixTransformRect(R, Matrix);
}

TMatrix TSVGElement::FitToRect(const TRectF &Rect) const
{
  return FitToRect(Rect, GetBoundsRect(VXIdentityMatrix));
}

TMatrix TSVGElement::FitToRect(const TRectF &Dest, const TRectF &Source)
{
  if (Source.Width() == 0 || Source.Height() == 0)
    return VXIdentityMatrix;
  TMatrix Result = CreateTranslateVXMatrix(-Source.Left, -Source.Top);
  Result = VXMatrixMultiply(Result, CreateScaleVXMatrix(Dest.Width() / Source.Width(), Dest.Height() / Source.Height()));
  return VXMatrixMultiply(Result, CreateTranslateVXMatrix(Dest.Left, Dest.Top));
}

TMatrix TSVGElement::GetViewMatrix(const TMatrix &, const TRectF &Rect) const
{
  return FitToRect(Rect);
}

const TSVGCustomViewBox *TSVGElement::GetNearestViewBox() const
{
  return FParent ? FParent->GetNearestViewBox() : nullptr;
}

QString TSVGElement::ToString() const
{
  IXMLDocument Document;
  Document.SetOptions(Document.Options() | TXMLDocOptions{doNodeAutoIndent});
  Document.SetDocumentElement(Document.CreateNode(SVGTypeName(), ntElement, SVGNamespaceURI));
  // Writing marks the element's state only for its span, so the element is unchanged afterwards.
  const_cast<TSVGElement *>(this)->SaveToXML(Document.DocumentElement());
  return Document.XML();
}

TPointF TSVGElement::ScreenToLocal(const TPointF &Point, const TRectF &Rect) const
{
  const TSVGCustomViewBox *Nearest = GetNearestViewBox();
  if (!Nearest || Rect.Width() == 0 || Rect.Height() == 0)
    return Point;
  const TRectF V = Nearest->ViewBox().GetRect();
  return {V.Left + V.Width() * (Point.X / Rect.Width()), V.Top + V.Height() * (Point.Y / Rect.Height())};
}

void TSVGElement::LoadFromXML(const IXMLNode &Node)
{
  TSVGUpdateGuard Guard(*this);
  try {
    DoOnParsingNode(this, Node);
    DoLoadFromXML(Node);
    ReadChildren(Node);
    DoOnParsedNode(this);
  } catch (Exception &Error) {
    // The innermost element that failed names itself; the ones around it leave that be.
    if (Error.Origin().isEmpty()) {
      const QString ID = Node.GetAttribute(QStringLiteral("id"));
      Error.SetOrigin(Node.NodeName() + (ID.isEmpty() ? QString() : QLatin1Char('#') + ID), Node.LineNumber());
    }
    throw;
  }
}

void TSVGElement::ApplyStyles()
{
  for (TSVGElement *Child : FItems)
    Child->ApplyStyles();
}

void TSVGElement::ElementNotification(TObject *, TSVGElement *Item, TCollectionNotification Action)
{
  switch (Action) {
  case cnAdded:
    if (Item->SVGType() >= 32 || !ChildSVGTypes().Contains(Item->SVGType())) {
      const QString Message = Format(SInvalidChildType, {SVGTypeName(), Item->SVGTypeName()});
      FItems.Extract(Item);
      throw ESVGException(Message);
    }
    Item->SetParent(this);
    break;
  case cnRemoved:
    break;
  case cnExtracted:
    Item->SetParent(nullptr);
    break;
  }
  if (FOwner && FOwner != this)
    FOwner->ElementNotification(this, Item, Action);
}

void TSVGElement::DoLoadFromXML(const IXMLNode &Node)
{
  if (Node.HasAttribute(QStringLiteral("id")))
    SetID(Node.GetAttribute(QStringLiteral("id")));
  FLanguage = ParseAttrString(Node, QStringLiteral("lang"));
  FTitle = ParseString(Node, QStringLiteral("title"), QString());
  if (FTitle.isEmpty())
    FTitle = ParseAttrString(Node, QStringLiteral("title"));
  FDescription.SetText(ParseString(Node, QStringLiteral("desc"), QString()));
  ParseStringList(FClasses, ParseAttrString(Node, QStringLiteral("class")), ClassSeparators);
  ParseRequiredStringList(Node, QStringLiteral("requiredFeatures"), FRequiredFeatures, ClassSeparators);
  ParseRequiredStringList(Node, QStringLiteral("requiredExtensions"), FRequiredExtensions, ClassSeparators);
  ParseRequiredStringList(Node, QStringLiteral("systemLanguage"), FSystemLanguages, ClassSeparators);
}

void TSVGElement::SaveToXML(const IXMLNode &Node)
{
  if (!DoOnSavingElement(this, Node))
    return;
  IncludeState(esWriting);
  DoSaveToXML(Node);
  DoOnSavedElement(this, Node);
  ExcludeState(esWriting);
}

bool TSVGElement::DoOnSavingElement(TSVGElement *Element, const IXMLNode &Node)
{
  if (FOwner && FOwner != this)
    return (GetOptions().Contains(soExportDisabled) || Element->IsEnabled()) &&
           FOwner->DoOnSavingElement(Element, Node);
  return Element->IsEnabled();
}

void TSVGElement::DoOnSavedElement(TSVGElement *Element, const IXMLNode &Node)
{
  if (FOwner && FOwner != this)
    FOwner->DoOnSavedElement(Element, Node);
}

void TSVGElement::DoSaveToXML(const IXMLNode &Node)
{
  SaveAttrString(Node, QStringLiteral("id"), FID, FID.isEmpty() || FID.startsWith(QLatin1String("ID#")), true);
  SaveAttrString(Node, QStringLiteral("lang"), FLanguage, FLanguage.isEmpty(), true);
  SaveNodeString(Node, QStringLiteral("title"), FTitle, FTitle.isEmpty(), true);
  SaveNodeString(Node, QStringLiteral("desc"), FDescription.Text(), FDescription.Count() == 0, true);
  SaveAttrString(Node, QStringLiteral("class"), FClasses, FClasses.Count() == 0, true, QLatin1Char(' '));
  SaveAttrString(Node, QStringLiteral("requiredFeatures"), FRequiredFeatures, FRequiredFeatures.Count() == 0, true,
                 QLatin1Char(' '));
  SaveAttrString(Node, QStringLiteral("requiredExtensions"), FRequiredExtensions, FRequiredExtensions.Count() == 0,
                 true, QLatin1Char(' '));
  SaveAttrString(Node, QStringLiteral("systemLanguage"), FSystemLanguages, FSystemLanguages.Count() == 0, true,
                 QLatin1Char(' '));
}

void TSVGElement::DoOnParsingNode(TSVGElement *Element, const IXMLNode &Node)
{
  if (FOwner && FOwner != this)
    FOwner->DoOnParsingNode(Element, Node);
  IncludeState(esReading);
}

void TSVGElement::DoOnParsedNode(TSVGElement *Element)
{
  if (FOwner && FOwner != this)
    FOwner->DoOnParsedNode(Element);
  ExcludeState(esReading);
}

int TSVGElement::AddChildOfType(TSVGElementType Type, TSVGDocument *Owner)
{
  const TSVGElementClass *Class = SVGClasses()[Type];
  if (!Class)
    return -1;
  AddOwnedChild(std::unique_ptr<TSVGElement>(Class->Create(Owner)));
  return FItems.Count() - 1;
}

TSVGElement &TSVGElement::AddOwnedChild(std::unique_ptr<TSVGElement> Child)
{
  TSVGElement &Added = *Child;
  try {
    FItems.Add(&Added);
  } catch (...) {
    // A refused child is handed back detached, and Child frees it; one the list kept is its own.
    if (FItems.IndexOf(&Added) >= 0)
      Child.release();
    throw;
  }
  Child.release();
  return Added;
}

TSVGElementType TSVGElement::ChildNodeType(const IXMLNode &Node) const
{
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  return Type == etMask && !FollowsStandardSVG() ? etNone : Type;
}

} // namespace vx
