#include "platform/xml/VXXmlDom.h"

#include <QFile>
#include <QIODevice>

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>
#include <libxml/xmlsave.h>

#include <climits>
#include <cstring>
#include <mutex>
#include <vector>

namespace vx {

// The document behind all handles: the libxml2 tree, the nodes taken out of it (freed with the
// tree, so that no handle dangles), the output options and a cursor that makes walking a node list
// by ascending index linear.
struct TXMLTree
{
  explicit TXMLTree(xmlDocPtr ADoc, TXMLDocOptions AOptions) : Doc(ADoc), Options(AOptions) {}
  TXMLTree(const TXMLTree &) = delete;
  TXMLTree &operator=(const TXMLTree &) = delete;
  ~TXMLTree();

  IXMLNode Wrap(const std::shared_ptr<TXMLTree> &Self, xmlNodePtr Node) const
  {
    return Node ? IXMLNode(Self, Node) : IXMLNode();
  }
  void Detach(xmlNodePtr Node);
  void Touch() { CursorOwner = nullptr; }

  xmlDocPtr Doc;
  TXMLDocOptions Options;
  std::vector<xmlNodePtr> Detached;

  xmlNodePtr CursorOwner = nullptr;
  bool CursorAttributes = false;
  int CursorIndex = 0;
  xmlNodePtr CursorNode = nullptr;
};

namespace {

// Bytes that text gathered through entity references may add up to in one call.
constexpr qsizetype MaxEntityText = 16 * 1024 * 1024;

const char *const NodeTypeNames[] = {
  "ntReserved", "ntElement", "ntAttribute", "ntText", "ntCData", "ntEntityRef", "ntEntity",
  "ntProcessingInstr", "ntComment", "ntDocument", "ntDocType", "ntDocFragment", "ntNotation",
};

// libxml2 must be initialised once, before any thread parses. External entities and an external
// DTD subset are never read: this loader refuses every resource.
xmlParserInputPtr RefuseExternalEntity(const char *, const char *, xmlParserCtxtPtr)
{
  return nullptr;
}

void IgnoreGenericError(void *, const char *, ...) {}

void InitLibrary()
{
  static std::once_flag Once;
  std::call_once(Once, [] {
    xmlInitParser();
    xmlSetExternalEntityLoader(RefuseExternalEntity);
  });
}

QString FromXml(const xmlChar *Text)
{
  return Text ? QString::fromUtf8(reinterpret_cast<const char *>(Text)) : QString();
}

// A QString as UTF-8 for libxml2; the byte array must outlive the pointer.
const xmlChar *ToXml(const QByteArray &Utf8)
{
  return reinterpret_cast<const xmlChar *>(Utf8.constData());
}

// "svg:rect" gives "svg" and "rect"; a name without colon has an empty prefix.
void SplitName(const QString &Name, QString &Prefix, QString &Local)
{
  const qsizetype Colon = Name.indexOf(QLatin1Char(':'));
  Prefix = Colon < 0 ? QString() : Name.left(Colon);
  Local = Colon < 0 ? Name : Name.mid(Colon + 1);
}

bool IsNamed(xmlNodePtr Node)
{
  return Node->type == XML_ELEMENT_NODE || Node->type == XML_ATTRIBUTE_NODE;
}

QString QualifiedName(xmlNodePtr Node)
{
  const QString Name = FromXml(Node->name);
  if (Node->ns && Node->ns->prefix)
    return FromXml(Node->ns->prefix) + QLatin1Char(':') + Name;
  return Name;
}

QString LocalNameOf(xmlNodePtr Node)
{
  if (!IsNamed(Node))
    return QString();
  // A prefix that was never declared stays part of libxml2's name.
  const QString Name = FromXml(Node->name);
  return Name.mid(Name.lastIndexOf(QLatin1Char(':')) + 1);
}

QString NamespaceOf(xmlNodePtr Node)
{
  return IsNamed(Node) && Node->ns ? FromXml(Node->ns->href) : QString();
}

// Collects the character data below Node, following entity references into the entity's content,
// and stops with an error once entities have contributed more than MaxEntityText bytes.
class TTextCollector
{
public:
  QString Collect(xmlNodePtr Node)
  {
    FOrigin = Node;
    Walk(Node, false);
    return QString::fromUtf8(FText);
  }

private:
  void Walk(xmlNodePtr Node, bool InEntity)
  {
    switch (Node->type) {
    case XML_TEXT_NODE:
    case XML_CDATA_SECTION_NODE:
      Append(Node->content, InEntity);
      break;
    case XML_ENTITY_REF_NODE:
      if (Node->children && Node->children->type == XML_ENTITY_DECL)
        WalkChildren(Node->children->children, true);
      break;
    case XML_ELEMENT_NODE:
    case XML_ATTRIBUTE_NODE:
      WalkChildren(Node->children, InEntity);
      break;
    default:
      break;
    }
  }

  void WalkChildren(xmlNodePtr Child, bool InEntity)
  {
    for (; Child; Child = Child->next)
      Walk(Child, InEntity);
  }

  void Append(const xmlChar *Content, bool InEntity)
  {
    if (!Content)
      return;
    const char *Text = reinterpret_cast<const char *>(Content);
    const qsizetype Size = qsizetype(qstrlen(Text));
    if (InEntity) {
      FFromEntities += Size;
      if (FFromEntities > MaxEntityText)
        throw EDOMParseError(QStringLiteral("Entity expansion exceeds the size limit"),
                             int(xmlGetLineNo(FOrigin)));
    }
    FText.append(Text, Size);
  }

  xmlNodePtr FOrigin = nullptr;
  QByteArray FText;
  qsizetype FFromEntities = 0;
};

QString TextOf(xmlNodePtr Node)
{
  switch (Node->type) {
  case XML_ELEMENT_NODE:
  case XML_ATTRIBUTE_NODE:
  case XML_ENTITY_REF_NODE:
    return TTextCollector().Collect(Node);
  case XML_TEXT_NODE:
  case XML_CDATA_SECTION_NODE:
  case XML_COMMENT_NODE:
  case XML_PI_NODE:
    return FromXml(Node->content);
  default:
    return QString();
  }
}

// Whether the qualified name of Node ("prefix:name" or "name") is Qualified, given in UTF-8. The
// bytes are compared where they stand: reading a document asks for attributes by the million.
bool HasQualifiedName(xmlNodePtr Node, const QByteArray &Qualified)
{
  const char *Name = reinterpret_cast<const char *>(Node->name);
  if (!Name)
    return false;
  if (!Node->ns || !Node->ns->prefix)
    return std::strcmp(Qualified.constData(), Name) == 0;
  const char *Prefix = reinterpret_cast<const char *>(Node->ns->prefix);
  const std::size_t Length = std::strlen(Prefix);
  return std::size_t(Qualified.size()) > Length && std::memcmp(Qualified.constData(), Prefix, Length) == 0 &&
         Qualified[qsizetype(Length)] == ':' && std::strcmp(Qualified.constData() + Length + 1, Name) == 0;
}

xmlAttrPtr FindAttribute(xmlNodePtr Node, const QString &Name)
{
  if (Node->type != XML_ELEMENT_NODE || !Node->properties)
    return nullptr;
  const QByteArray Qualified = Name.toUtf8();
  for (xmlAttrPtr Attr = Node->properties; Attr; Attr = Attr->next)
    if (HasQualifiedName(reinterpret_cast<xmlNodePtr>(Attr), Qualified))
      return Attr;
  return nullptr;
}

xmlAttrPtr FindAttributeNS(xmlNodePtr Node, const QString &Name, const QString &NamespaceURI)
{
  if (Node->type != XML_ELEMENT_NODE)
    return nullptr;
  for (xmlAttrPtr Attr = Node->properties; Attr; Attr = Attr->next) {
    const auto AsNode = reinterpret_cast<xmlNodePtr>(Attr);
    if (LocalNameOf(AsNode) == Name && NamespaceOf(AsNode) == NamespaceURI)
      return Attr;
  }
  return nullptr;
}

// The declaration of Prefix (null: the default namespace) in scope at Node.
xmlNsPtr SearchPrefix(xmlNodePtr Node, const QString &Prefix)
{
  const QByteArray Utf8 = Prefix.toUtf8();
  return xmlSearchNs(Node->doc, Node, Prefix.isEmpty() ? nullptr : ToXml(Utf8));
}

// A declaration of URI in scope at Node, not shadowed by a nearer one of the same prefix; with
// AllowDefault false only prefixed declarations count (attributes never take the default one).
xmlNsPtr SearchURI(xmlNodePtr Node, const QString &URI, bool AllowDefault)
{
  const QByteArray Href = URI.toUtf8();
  for (xmlNodePtr Scope = Node; Scope && Scope->type == XML_ELEMENT_NODE; Scope = Scope->parent)
    for (xmlNsPtr Ns = Scope->nsDef; Ns; Ns = Ns->next) {
      if (!Ns->href || !xmlStrEqual(Ns->href, ToXml(Href)) || (!Ns->prefix && !AllowDefault))
        continue;
      if (xmlSearchNs(Node->doc, Node, Ns->prefix) == Ns)
        return Ns;
    }
  return nullptr;
}

// A prefix of the form "NS1" that is not yet bound at Node.
QString UnusedPrefix(xmlNodePtr Node)
{
  for (int I = 1;; ++I) {
    const QString Prefix = QStringLiteral("NS%1").arg(I);
    if (!SearchPrefix(Node, Prefix))
      return Prefix;
  }
}

// Binds Prefix to URI on Element, replacing an earlier binding of that prefix on the same element.
xmlNsPtr Declare(xmlNodePtr Element, const QString &Prefix, const QString &URI)
{
  const QByteArray PrefixUtf8 = Prefix.toUtf8();
  const QByteArray Href = URI.toUtf8();
  const xmlChar *PrefixXml = Prefix.isEmpty() ? nullptr : ToXml(PrefixUtf8);
  for (xmlNsPtr Ns = Element->nsDef; Ns; Ns = Ns->next)
    if (xmlStrEqual(Ns->prefix, PrefixXml)) {
      xmlFree(const_cast<xmlChar *>(Ns->href));
      Ns->href = xmlStrdup(ToXml(Href));
      return Ns;
    }
  return xmlNewNs(Element, ToXml(Href), PrefixXml);
}

// The namespace an element named Prefix:Local in URI takes at Parent: a binding in scope when one
// fits, else a new one on the element itself.
void AssignNamespace(xmlNodePtr Element, xmlNodePtr Scope, const QString &Prefix,
                     const QString &URI, bool GeneratePrefix)
{
  if (URI.isEmpty()) {
    if (!Prefix.isEmpty())
      return;
    // A default namespace in scope would otherwise capture an element meant to be in none.
    xmlNsPtr Default = Scope ? SearchPrefix(Scope, QString()) : nullptr;
    if (Default && Default->href && *Default->href)
      Declare(Element, QString(), QString());
    return;
  }
  xmlNsPtr Ns = nullptr;
  if (!Prefix.isEmpty()) {
    Ns = Scope ? SearchPrefix(Scope, Prefix) : nullptr;
    if (!Ns || FromXml(Ns->href) != URI)
      Ns = Declare(Element, Prefix, URI);
  } else {
    Ns = Scope ? SearchURI(Scope, URI, true) : nullptr;
    if (!Ns)
      Ns = Declare(Element, GeneratePrefix ? UnusedPrefix(Scope ? Scope : Element) : QString(), URI);
  }
  xmlSetNs(Element, Ns);
}

xmlNodePtr NewElement(xmlDocPtr Doc, xmlNodePtr Scope, const QString &Name, const QString &URI,
                      bool GeneratePrefix)
{
  QString Prefix, Local;
  SplitName(Name, Prefix, Local);
  if (Local.isEmpty())
    throw EInvalidOperation(QStringLiteral("Invalid element name \"%1\"").arg(Name));
  // Without a namespace the prefix stays part of the name, as libxml2 keeps undeclared prefixes.
  const bool KeepPrefix = URI.isEmpty() && !Prefix.isEmpty() && !(Scope && SearchPrefix(Scope, Prefix));
  const QByteArray Utf8 = (KeepPrefix ? Name : Local).toUtf8();
  xmlNodePtr Element = xmlNewDocNode(Doc, nullptr, ToXml(Utf8), nullptr);
  if (!Element)
    throw EInvalidOperation(QStringLiteral("Out of memory creating <%1>").arg(Name));
  if (!KeepPrefix && !Prefix.isEmpty() && URI.isEmpty())
    xmlSetNs(Element, SearchPrefix(Scope, Prefix));
  else
    AssignNamespace(Element, Scope, Prefix, URI, GeneratePrefix);
  return Element;
}

// Links Node into Parent before Before (null: at the end). libxml2's own helpers merge adjacent
// text nodes and free one of them, which would leave a handle dangling.
void LinkBefore(xmlNodePtr Parent, xmlNodePtr Node, xmlNodePtr Before)
{
  Node->parent = Parent;
  Node->next = Before;
  Node->prev = Before ? Before->prev : Parent->last;
  if (Node->prev)
    Node->prev->next = Node;
  else
    Parent->children = Node;
  if (Before)
    Before->prev = Node;
  else
    Parent->last = Node;
}

bool IsAncestorOrSelf(xmlNodePtr Candidate, xmlNodePtr Node)
{
  for (; Node; Node = Node->parent)
    if (Node == Candidate)
      return true;
  return false;
}

QByteArray Serialize(xmlDocPtr Doc, bool Indent)
{
  xmlBufferPtr Buffer = xmlBufferCreate();
  xmlSaveCtxtPtr Save = xmlSaveToBuffer(Buffer, "UTF-8", Indent ? XML_SAVE_FORMAT : 0);
  if (Save) {
    xmlSaveDoc(Save, Doc);
    xmlSaveClose(Save);
  }
  const QByteArray Result(reinterpret_cast<const char *>(xmlBufferContent(Buffer)),
                          xmlBufferLength(Buffer));
  xmlBufferFree(Buffer);
  return Result;
}

// The first error of the highest level the parser reported.
struct TParseErrors
{
  QString Message;
  int Line = 0;
  int Level = XML_ERR_NONE;
};

void CollectError(void *, xmlErrorPtr Error)
{
  auto *Context = static_cast<xmlParserCtxtPtr>(Error->ctxt);
  if (!Context || !Context->_private || Error->level <= XML_ERR_WARNING)
    return;
  auto *Errors = static_cast<TParseErrors *>(Context->_private);
  if (int(Error->level) <= Errors->Level)
    return;
  Errors->Level = Error->level;
  Errors->Message = QString::fromUtf8(Error->message).trimmed();
  Errors->Line = Error->line;
}

bool IsBlank(const QByteArray &Data)
{
  for (char C : Data)
    if (C != ' ' && C != '\t' && C != '\n' && C != '\r')
      return false;
  return true;
}

} // namespace

// --- errors and names ----------------------------------------------------------------------------

EDOMParseError::EDOMParseError(const QString &Reason, int Line)
  : Exception(QStringLiteral("XML error at line %1: %2").arg(Line).arg(Reason)), FReason(Reason)
{
  SetOrigin(QString(), Line);
}

QString NodeTypeName(TNodeType NodeType)
{
  return NodeType <= ntNotation ? QString::fromLatin1(NodeTypeNames[NodeType])
                                : QStringLiteral("ntReserved");
}

// --- the tree ------------------------------------------------------------------------------------

TXMLTree::~TXMLTree()
{
  // Only the detached nodes that are still roots are freed: those put back into a tree go with it.
  // All are checked before any is freed, as a root frees its whole subtree.
  std::vector<xmlNodePtr> Roots;
  for (xmlNodePtr Node : Detached)
    if (!Node->parent)
      Roots.push_back(Node);
  for (xmlNodePtr Node : Roots)
    xmlFreeNode(Node);
  xmlFreeDoc(Doc);
}

void TXMLTree::Detach(xmlNodePtr Node)
{
  Touch();
  xmlUnlinkNode(Node);
  Detached.push_back(Node);
}

// --- IXMLNode ------------------------------------------------------------------------------------

_xmlNode *IXMLNode::Handle() const
{
  if (!FNode)
    throw EInvalidOperation(QStringLiteral("Operation on a nil XML node"));
  return FNode;
}

TNodeType IXMLNode::NodeType() const
{
  const int Type = Handle()->type;
  return Type <= ntNotation ? TNodeType(Type) : ntReserved;
}

QString IXMLNode::NodeName() const
{
  xmlNodePtr Node = Handle();
  switch (Node->type) {
  case XML_TEXT_NODE:
    return QStringLiteral("#text");
  case XML_CDATA_SECTION_NODE:
    return QStringLiteral("#cdata-section");
  case XML_COMMENT_NODE:
    return QStringLiteral("#comment");
  case XML_ELEMENT_NODE:
  case XML_ATTRIBUTE_NODE:
    return QualifiedName(Node);
  default:
    return FromXml(Node->name);
  }
}

QString IXMLNode::LocalName() const
{
  return LocalNameOf(Handle());
}

int IXMLNode::LineNumber() const
{
  xmlNodePtr Node = Handle();
  return Node ? int(std::max(0L, xmlGetLineNo(Node))) : 0;
}

QString IXMLNode::Prefix() const
{
  xmlNodePtr Node = Handle();
  if (!IsNamed(Node))
    return QString();
  if (Node->ns)
    return FromXml(Node->ns->prefix);
  const QString Name = FromXml(Node->name);
  const qsizetype Colon = Name.lastIndexOf(QLatin1Char(':'));
  return Colon < 0 ? QString() : Name.left(Colon);
}

QString IXMLNode::NamespaceURI() const
{
  return NamespaceOf(Handle());
}

QString IXMLNode::NodeValue() const
{
  xmlNodePtr Node = Handle();
  if (Node->type == XML_ATTRIBUTE_NODE)
    return TextOf(Node);
  return Node->type == XML_ELEMENT_NODE || Node->type == XML_ENTITY_REF_NODE ? QString()
                                                                             : TextOf(Node);
}

QString IXMLNode::Text() const
{
  return TextOf(Handle());
}

void IXMLNode::SetText(const QString &Value) const
{
  xmlNodePtr Node = Handle();
  const QByteArray Utf8 = Value.toUtf8();
  switch (Node->type) {
  case XML_ELEMENT_NODE:
  case XML_ATTRIBUTE_NODE:
    while (Node->children)
      FTree->Detach(Node->children);
    if (!Value.isEmpty())
      LinkBefore(Node, xmlNewDocText(Node->doc, ToXml(Utf8)), nullptr);
    break;
  case XML_TEXT_NODE:
  case XML_CDATA_SECTION_NODE:
  case XML_COMMENT_NODE:
    xmlNodeSetContent(Node, ToXml(Utf8));
    break;
  default:
    throw EInvalidOperation(QStringLiteral("Cannot set the text of a %1 node").arg(NodeTypeName(NodeType())));
  }
  FTree->Touch();
}

bool IXMLNode::IsTextElement() const
{
  xmlNodePtr Node = Handle();
  return Node->type == XML_ELEMENT_NODE && Node->children && Node->children == Node->last &&
         Node->children->type == XML_TEXT_NODE;
}

bool IXMLNode::HasChildNodes() const
{
  return ChildNodes().Count() > 0;
}

IXMLNodeList IXMLNode::ChildNodes() const
{
  return IXMLNodeList(FTree, Handle(), false);
}

IXMLNodeList IXMLNode::AttributeNodes() const
{
  return IXMLNodeList(FTree, Handle(), true);
}

IXMLNode IXMLNode::ParentNode() const
{
  xmlNodePtr Parent = Handle()->parent;
  return Parent && Parent->type == XML_ELEMENT_NODE ? IXMLNode(FTree, Parent) : IXMLNode();
}

IXMLNode IXMLNode::NextSibling() const
{
  return FTree->Wrap(FTree, Handle()->next);
}

IXMLNode IXMLNode::PreviousSibling() const
{
  return FTree->Wrap(FTree, Handle()->prev);
}

IXMLDocument IXMLNode::OwnerDocument() const
{
  Handle();
  return IXMLDocument(FTree);
}

bool IXMLNode::HasAttribute(const QString &Name) const
{
  return FindAttribute(Handle(), Name) != nullptr;
}

QString IXMLNode::GetAttribute(const QString &Name) const
{
  xmlAttrPtr Attr = FindAttribute(Handle(), Name);
  return Attr ? TextOf(reinterpret_cast<xmlNodePtr>(Attr)) : QString();
}

bool IXMLNode::HasAttribute(const QString &Name, const QString &NamespaceURI) const
{
  return FindAttributeNS(Handle(), Name, NamespaceURI) != nullptr;
}

QString IXMLNode::GetAttributeNS(const QString &Name, const QString &NamespaceURI) const
{
  xmlAttrPtr Attr = FindAttributeNS(Handle(), Name, NamespaceURI);
  return Attr ? TextOf(reinterpret_cast<xmlNodePtr>(Attr)) : QString();
}

void IXMLNode::SetAttribute(const QString &Name, const QString &Value) const
{
  xmlNodePtr Node = Handle();
  if (Node->type != XML_ELEMENT_NODE)
    throw EInvalidOperation(QStringLiteral("Only elements have attributes"));
  QString Prefix, Local;
  SplitName(Name, Prefix, Local);
  xmlNsPtr Ns = Prefix.isEmpty() ? nullptr : SearchPrefix(Node, Prefix);
  if (!Prefix.isEmpty() && !Ns)
    Local = Name; // an unbound prefix stays part of the name
  if (Ns)
    SetAttributeNS(Local, FromXml(Ns->href), Value);
  else
    SetAttributeNS(Local, QString(), Value);
}

void IXMLNode::SetAttributeNS(const QString &Name, const QString &NamespaceURI, const QString &Value) const
{
  xmlNodePtr Node = Handle();
  if (Node->type != XML_ELEMENT_NODE)
    throw EInvalidOperation(QStringLiteral("Only elements have attributes"));
  QString Prefix, Local;
  SplitName(Name, Prefix, Local);
  if (NamespaceURI.isEmpty())
    Local = Name;
  xmlNsPtr Ns = nullptr;
  if (!NamespaceURI.isEmpty()) {
    Ns = SearchURI(Node, NamespaceURI, false);
    if (!Ns)
      Ns = Declare(Node, Prefix.isEmpty() || SearchPrefix(Node, Prefix) ? UnusedPrefix(Node) : Prefix,
                   NamespaceURI);
  }
  // The old value's nodes are detached rather than freed, in case a handle still points at one.
  if (xmlAttrPtr Old = FindAttributeNS(Node, Local, NamespaceURI))
    while (Old->children)
      FTree->Detach(Old->children);
  const QByteArray LocalUtf8 = Local.toUtf8();
  const QByteArray ValueUtf8 = Value.toUtf8();
  xmlSetNsProp(Node, Ns, ToXml(LocalUtf8), ToXml(ValueUtf8));
  FTree->Touch();
}

void IXMLNode::RemoveAttribute(const QString &Name) const
{
  if (xmlAttrPtr Attr = FindAttribute(Handle(), Name))
    FTree->Detach(reinterpret_cast<xmlNodePtr>(Attr));
}

QString IXMLNode::FindNamespaceURI(const QString &Prefix) const
{
  xmlNsPtr Ns = SearchPrefix(Handle(), Prefix);
  return Ns ? FromXml(Ns->href) : QString();
}

void IXMLNode::DeclareNamespace(const QString &Prefix, const QString &URI) const
{
  xmlNodePtr Node = Handle();
  if (Node->type != XML_ELEMENT_NODE)
    throw EInvalidOperation(QStringLiteral("Only elements declare namespaces"));
  Declare(Node, Prefix, URI);
}

IXMLNode IXMLNode::AddChild(const QString &Name, const QString &NamespaceURI, bool GeneratePrefix,
                            int Index) const
{
  xmlNodePtr Node = Handle();
  if (Node->type != XML_ELEMENT_NODE)
    throw EInvalidOperation(QStringLiteral("Only elements take child elements"));
  xmlNodePtr Child = NewElement(Node->doc, Node, Name, NamespaceURI, GeneratePrefix);
  IXMLNode Result(FTree, Child);
  IXMLNodeList Children = ChildNodes();
  LinkBefore(Node, Child, Index < 0 || Index >= Children.Count() ? nullptr : Children.Item(Index));
  FTree->Touch();
  return Result;
}

IXMLNode IXMLNode::AddChild(const QString &Name, int Index) const
{
  return AddChild(Name, NamespaceURI(), false, Index);
}

IXMLNode IXMLNode::CloneNode(bool Deep) const
{
  xmlNodePtr Node = Handle();
  xmlNodePtr Copy = xmlDocCopyNode(Node, Node->doc, Deep ? 1 : 2);
  if (!Copy)
    throw EInvalidOperation(QStringLiteral("Cannot copy a %1 node").arg(NodeTypeName(NodeType())));
  FTree->Detached.push_back(Copy);
  return IXMLNode(FTree, Copy);
}

QString IXMLNode::XML() const
{
  xmlNodePtr Node = Handle();
  // An element is written from a copy, which declares the namespaces it borrows from its
  // ancestors, so that the text stands on its own.
  xmlNodePtr Source = Node->type == XML_ELEMENT_NODE ? xmlDocCopyNode(Node, Node->doc, 1) : Node;
  if (!Source)
    throw EInvalidOperation(QStringLiteral("Cannot write a %1 node").arg(NodeTypeName(NodeType())));
  xmlBufferPtr Buffer = xmlBufferCreate();
  xmlNodeDump(Buffer, Node->doc, Source, 0, FTree->Options.Contains(doNodeAutoIndent) ? 1 : 0);
  const QString Result = QString::fromUtf8(reinterpret_cast<const char *>(xmlBufferContent(Buffer)),
                                           xmlBufferLength(Buffer));
  xmlBufferFree(Buffer);
  if (Source != Node)
    xmlFreeNode(Source);
  return Result;
}

// --- IXMLNodeList --------------------------------------------------------------------------------

namespace {

xmlNodePtr FirstOf(xmlNodePtr Owner, bool Attributes)
{
  if (Attributes)
    return Owner->type == XML_ELEMENT_NODE ? reinterpret_cast<xmlNodePtr>(Owner->properties) : nullptr;
  if (Owner->type == XML_ENTITY_REF_NODE)
    return Owner->children && Owner->children->type == XML_ENTITY_DECL ? Owner->children->children
                                                                         : nullptr;
  return Owner->children;
}

bool Matches(xmlNodePtr Node, const QString &Name)
{
  if (!IsNamed(Node))
    return false;
  return QualifiedName(Node) == Name || (!Name.contains(QLatin1Char(':')) && LocalNameOf(Node) == Name);
}

} // namespace

int IXMLNodeList::Count() const
{
  if (!FOwner)
    return 0;
  int Result = 0;
  for (xmlNodePtr Node = FirstOf(FOwner, FAttributes); Node; Node = Node->next)
    ++Result;
  return Result;
}

_xmlNode *IXMLNodeList::Item(int Index) const
{
  if (!FOwner || Index < 0)
    return nullptr;
  TXMLTree &Tree = *FTree;
  // Resume from the last position asked of this list when it lies before Index.
  int Position = 0;
  xmlNodePtr Node = FirstOf(FOwner, FAttributes);
  if (Tree.CursorOwner == FOwner && Tree.CursorAttributes == FAttributes && Tree.CursorIndex <= Index) {
    Position = Tree.CursorIndex;
    Node = Tree.CursorNode;
  }
  for (; Node && Position < Index; ++Position)
    Node = Node->next;
  if (Node) {
    Tree.CursorOwner = FOwner;
    Tree.CursorAttributes = FAttributes;
    Tree.CursorIndex = Position;
    Tree.CursorNode = Node;
  }
  return Node;
}

IXMLNode IXMLNodeList::Nodes(int Index) const
{
  xmlNodePtr Node = Item(Index);
  if (!Node)
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  return IXMLNode(FTree, Node);
}

IXMLNode IXMLNodeList::First() const
{
  return FOwner ? FTree->Wrap(FTree, FirstOf(FOwner, FAttributes)) : IXMLNode();
}

IXMLNode IXMLNodeList::Last() const
{
  xmlNodePtr Node = FOwner ? FirstOf(FOwner, FAttributes) : nullptr;
  while (Node && Node->next)
    Node = Node->next;
  return FOwner ? FTree->Wrap(FTree, Node) : IXMLNode();
}

IXMLNode IXMLNodeList::FindNode(const QString &Name) const
{
  const int Index = IndexOf(Name);
  return Index < 0 ? IXMLNode() : Nodes(Index);
}

IXMLNode IXMLNodeList::FindNode(const QString &Name, const QString &NamespaceURI) const
{
  if (!FOwner)
    return IXMLNode();
  for (xmlNodePtr Node = FirstOf(FOwner, FAttributes); Node; Node = Node->next)
    if (IsNamed(Node) && LocalNameOf(Node) == Name && NamespaceOf(Node) == NamespaceURI)
      return IXMLNode(FTree, Node);
  return IXMLNode();
}

int IXMLNodeList::IndexOf(const QString &Name) const
{
  int Index = 0;
  for (xmlNodePtr Node = FOwner ? FirstOf(FOwner, FAttributes) : nullptr; Node; Node = Node->next, ++Index)
    if (Matches(Node, Name))
      return Index;
  return -1;
}

int IXMLNodeList::IndexOf(const IXMLNode &Node) const
{
  int Index = 0;
  for (xmlNodePtr Item = FOwner ? FirstOf(FOwner, FAttributes) : nullptr; Item; Item = Item->next, ++Index)
    if (Item == Node.FNode)
      return Index;
  return -1;
}

void IXMLNodeList::CheckWritable() const
{
  if (!FOwner)
    throw EInvalidOperation(QStringLiteral("Operation on a nil XML node list"));
  if (FOwner->type != XML_ELEMENT_NODE)
    throw EInvalidOperation(QStringLiteral("Only the lists of an element can be changed"));
}

int IXMLNodeList::Add(const IXMLNode &Node) const
{
  Insert(-1, Node);
  return Count() - 1;
}

void IXMLNodeList::Insert(int Index, const IXMLNode &Node) const
{
  CheckWritable();
  if (FAttributes)
    throw EInvalidOperation(QStringLiteral("Attributes are added by name"));
  xmlNodePtr Source = Node.Handle();
  switch (Source->type) {
  case XML_ELEMENT_NODE:
  case XML_TEXT_NODE:
  case XML_CDATA_SECTION_NODE:
  case XML_ENTITY_REF_NODE:
  case XML_COMMENT_NODE:
  case XML_PI_NODE:
    break;
  default:
    throw EInvalidOperation(QStringLiteral("A %1 node cannot be a child").arg(NodeTypeName(Node.NodeType())));
  }
  xmlNodePtr Child = Source;
  if (Node.FTree != FTree) {
    Child = xmlDocCopyNode(Source, FTree->Doc, 1);
    if (!Child)
      throw EInvalidOperation(QStringLiteral("Cannot copy the node into this document"));
  } else if (IsAncestorOrSelf(Source, FOwner)) {
    throw EInvalidOperation(QStringLiteral("A node cannot be added below itself"));
  } else {
    xmlUnlinkNode(Source);
  }
  const int Size = Count();
  xmlNodePtr Before = Index < 0 || Index >= Size ? nullptr : Item(Index);
  LinkBefore(FOwner, Child, Before);
  // A moved or copied element keeps its namespaces declared wherever it now stands.
  if (Child->type == XML_ELEMENT_NODE)
    xmlReconciliateNs(FTree->Doc, Child);
  FTree->Touch();
}

void IXMLNodeList::Delete(int Index) const
{
  CheckWritable();
  xmlNodePtr Node = Item(Index);
  if (!Node)
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  FTree->Detach(Node);
}

int IXMLNodeList::Delete(const QString &Name) const
{
  const int Index = IndexOf(Name);
  if (Index >= 0)
    Delete(Index);
  return Index;
}

int IXMLNodeList::Remove(const IXMLNode &Node) const
{
  const int Index = IndexOf(Node);
  if (Index >= 0)
    Delete(Index);
  return Index;
}

void IXMLNodeList::Clear() const
{
  CheckWritable();
  while (xmlNodePtr Node = FirstOf(FOwner, FAttributes))
    FTree->Detach(Node);
}

// --- IXMLDocument --------------------------------------------------------------------------------

namespace {

std::shared_ptr<TXMLTree> NewTree(TXMLDocOptions Options)
{
  InitLibrary();
  xmlDocPtr Doc = xmlNewDoc(reinterpret_cast<const xmlChar *>("1.0"));
  if (!Doc)
    throw EInvalidOperation(QStringLiteral("Out of memory creating an XML document"));
  return std::make_shared<TXMLTree>(Doc, Options);
}

} // namespace

IXMLDocument::IXMLDocument() : FTree(NewTree({doNodeAutoCreate, doAttrNull, doAutoPrefix, doNamespaceDecl}))
{
}

void IXMLDocument::SetActive(bool Value)
{
  if (!Value)
    FTree = NewTree(FTree->Options);
}

TXMLDocOptions IXMLDocument::Options() const
{
  return FTree->Options;
}

void IXMLDocument::SetOptions(TXMLDocOptions Value) const
{
  FTree->Options = Value;
}

IXMLNode IXMLDocument::DocumentElement() const
{
  return FTree->Wrap(FTree, xmlDocGetRootElement(FTree->Doc));
}

void IXMLDocument::SetDocumentElement(const IXMLNode &Node) const
{
  xmlNodePtr Root = Node.Handle();
  if (Root->type != XML_ELEMENT_NODE)
    throw EInvalidOperation(QStringLiteral("The document element must be an element"));
  if (Node.FTree != FTree) {
    Root = xmlDocCopyNode(Root, FTree->Doc, 1);
    if (!Root)
      throw EInvalidOperation(QStringLiteral("Cannot copy the node into this document"));
    FTree->Detached.push_back(Root);
  } else if (Root->parent) {
    FTree->Detach(Root);
  }
  if (xmlNodePtr Old = xmlDocSetRootElement(FTree->Doc, Root))
    FTree->Detached.push_back(Old);
  xmlReconciliateNs(FTree->Doc, Root);
  FTree->Touch();
}

IXMLNode IXMLDocument::CreateNode(const QString &Name, TNodeType NodeType, const QString &NamespaceURI) const
{
  xmlDocPtr Doc = FTree->Doc;
  const QByteArray Utf8 = Name.toUtf8();
  xmlNodePtr Node = nullptr;
  switch (NodeType) {
  case ntElement:
    Node = NewElement(Doc, nullptr, Name, NamespaceURI, false);
    break;
  case ntText:
    Node = xmlNewDocText(Doc, ToXml(Utf8));
    break;
  case ntCData:
    Node = xmlNewCDataBlock(Doc, ToXml(Utf8), Utf8.size());
    break;
  case ntComment:
    Node = xmlNewDocComment(Doc, ToXml(Utf8));
    break;
  default:
    throw EInvalidOperation(QStringLiteral("Cannot create a %1 node").arg(NodeTypeName(NodeType)));
  }
  if (!Node)
    throw EInvalidOperation(QStringLiteral("Out of memory creating an XML node"));
  FTree->Detached.push_back(Node);
  return IXMLNode(FTree, Node);
}

IXMLNode IXMLDocument::CreateElement(const QString &Name, const QString &NamespaceURI) const
{
  return CreateNode(Name, ntElement, NamespaceURI);
}

void IXMLDocument::Parse(const QByteArray &Data, const char *Encoding)
{
  InitLibrary();
  if (IsBlank(Data)) {
    FTree = NewTree(FTree->Options);
    return;
  }
  if (Data.size() > INT_MAX)
    throw EDOMParseError(QStringLiteral("Document too large"), 0);
  xmlParserCtxtPtr Context = xmlNewParserCtxt();
  if (!Context)
    throw EDOMParseError(QStringLiteral("Out of memory"), 0);
  // Errors reach CollectError instead of stderr; the generic channel is quietened for this thread.
  TParseErrors Errors;
  Context->_private = &Errors;
  Context->sax->serror = CollectError;
  xmlSetGenericErrorFunc(nullptr, IgnoreGenericError);
  int Options = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_BIG_LINES;
  if (Encoding)
    Options |= XML_PARSE_IGNORE_ENC;
  xmlDocPtr Doc = xmlCtxtReadMemory(Context, Data.constData(), int(Data.size()), nullptr, Encoding, Options);
  const bool WellFormed = Context->wellFormed;
  xmlFreeParserCtxt(Context);
  if (!Doc || !WellFormed) {
    if (Doc)
      xmlFreeDoc(Doc);
    throw EDOMParseError(Errors.Message.isEmpty() ? QStringLiteral("Malformed XML") : Errors.Message,
                         Errors.Line);
  }
  FTree = std::make_shared<TXMLTree>(Doc, FTree->Options);
}

void IXMLDocument::LoadFromStream(QIODevice &Stream)
{
  const QByteArray Data = Stream.readAll();
  Parse(Data, nullptr);
}

void IXMLDocument::LoadFromFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File.errorString()));
  LoadFromStream(File);
}

void IXMLDocument::LoadFromBytes(const QByteArray &Data)
{
  Parse(Data, nullptr);
}

void IXMLDocument::LoadFromXML(const QString &XML)
{
  Parse(XML.toUtf8(), "UTF-8");
}

QByteArray IXMLDocument::SaveToBytes() const
{
  return Serialize(FTree->Doc, FTree->Options.Contains(doNodeAutoIndent));
}

void IXMLDocument::SaveToStream(QIODevice &Stream) const
{
  const QByteArray Data = SaveToBytes();
  if (Stream.write(Data) != Data.size())
    throw EWriteError(QStringLiteral("Stream write error: %1").arg(Stream.errorString()));
}

void IXMLDocument::SaveToFile(const QString &FileName) const
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly | QIODevice::Truncate))
    throw EFOpenError(QStringLiteral("Cannot create file \"%1\". %2").arg(FileName, File.errorString()));
  SaveToStream(File);
}

QString IXMLDocument::XML() const
{
  return QString::fromUtf8(SaveToBytes());
}

IXMLDocument NewXMLDocument()
{
  return IXMLDocument();
}

IXMLDocument LoadXMLData(const QString &XML)
{
  IXMLDocument Result;
  Result.LoadFromXML(XML);
  return Result;
}

IXMLDocument LoadXMLDocument(const QString &FileName)
{
  IXMLDocument Result;
  Result.LoadFromFile(FileName);
  return Result;
}

} // namespace vx
