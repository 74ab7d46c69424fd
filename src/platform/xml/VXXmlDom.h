#pragma once
// The XML DOM the library walks when it loads and fills when it saves: IXMLDocument, IXMLNode and
// IXMLNodeList over libxml2.
//
// All three are small handles with shared ownership, const like pointers (a const handle still
// changes the node it points at): a node handle keeps its whole document alive,
// so a node may outlive the IXMLDocument it came from. A default-constructed IXMLNode is the nil
// node (test with `if (Node)`). Nodes taken out of the tree (Delete, Remove, a replaced document
// element) stay valid until the document itself goes, so a handle never dangles.
//
// Parsing keeps entity references as nodes (their children are the entity's content), accepts a
// DTD, never touches the network and never reads external entities or an external DTD subset.
// libxml2's limits on entity amplification and nesting depth stay on, so hostile input fails with
// EDOMParseError instead of exhausting memory. One document is used by one thread at a time;
// different documents may be used on different threads at once.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXExceptions.h"
#include "platform/rtl/VXSet.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>

class QIODevice;
struct _xmlNode;

namespace vx {

// Node types with the ordinals of the DOM.
enum TNodeType : std::uint8_t {
  ntReserved,
  ntElement,
  ntAttribute,
  ntText,
  ntCData,
  ntEntityRef,
  ntEntity,
  ntProcessingInstr,
  ntComment,
  ntDocument,
  ntDocType,
  ntDocFragment,
  ntNotation
};

// The enumeration name of a node type ("ntElement"), as messages print it.
VX_EXPORT QString NodeTypeName(TNodeType NodeType);

enum TXMLDocOption : std::uint8_t {
  doNodeAutoCreate,
  doNodeAutoIndent, // indent the output, one level per element
  doAttrNull,
  doAutoPrefix,
  doNamespaceDecl,
  doAutoSave
};
using TXMLDocOptions = TSet<TXMLDocOption, std::uint16_t>;

// Malformed or refused XML. The message is the parser's, with the line where it stopped.
class VX_EXPORT EDOMParseError : public Exception
{
public:
  EDOMParseError(const QString &Reason, int Line);
  const QString &Reason() const { return FReason; }

private:
  QString FReason;
};

class IXMLDocument;
class IXMLNodeList;
struct TXMLTree;

class VX_EXPORT IXMLNode
{
public:
  IXMLNode() = default;

  explicit operator bool() const { return FNode != nullptr; }
  bool operator==(const IXMLNode &Other) const { return FNode == Other.FNode; }

  TNodeType NodeType() const;
  // The qualified name of elements and attributes ("svg:rect"); "#text", "#cdata-section",
  // "#comment" for character data; the entity's name for an entity reference.
  QString NodeName() const;
  // The name without its prefix ("svg:rect" gives "rect"); empty for every node that is neither an
  // element nor an attribute.
  QString LocalName() const;
  QString Prefix() const;
  QString NamespaceURI() const;
  // The line of the source text an element was read from; 0 when unknown.
  int LineNumber() const;

  // The character data of text, CDATA, comment and attribute nodes; empty for other nodes.
  QString NodeValue() const;
  // An element's text: all character data below it, entity contents included; an attribute's or
  // an entity reference's likewise. Other nodes: as NodeValue. Text reached through entity
  // references is limited in size, so a small document cannot expand into gigabytes here
  // (EDOMParseError). Setting an element's text replaces all its children with one text node.
  QString Text() const;
  void SetText(const QString &Value) const;
  // True for an element whose only child is one text node.
  bool IsTextElement() const;

  bool HasChildNodes() const;
  // The children in document order; for an entity reference, the nodes of the entity's content.
  IXMLNodeList ChildNodes() const;
  // The attributes of an element in document order (namespace declarations are not attributes).
  IXMLNodeList AttributeNodes() const;
  // The parent element (the owner element of an attribute); nil for the document element, for the
  // content of an entity and for detached nodes.
  IXMLNode ParentNode() const;
  IXMLNode NextSibling() const;
  IXMLNode PreviousSibling() const;
  IXMLDocument OwnerDocument() const;

  // Attributes by qualified name ("xlink:href", "width"); a name without prefix does not find a
  // prefixed attribute.
  bool HasAttribute(const QString &Name) const;
  QString GetAttribute(const QString &Name) const;
  // Attributes by local name and namespace; an empty NamespaceURI means "in no namespace".
  bool HasAttribute(const QString &Name, const QString &NamespaceURI) const;
  QString GetAttributeNS(const QString &Name, const QString &NamespaceURI) const;
  // Sets or adds an attribute. A prefixed name uses the namespace its prefix is bound to here.
  void SetAttribute(const QString &Name, const QString &Value) const;
  // Sets or adds an attribute in a namespace (an empty NamespaceURI is no namespace).
  void SetAttributeNS(const QString &Name, const QString &NamespaceURI, const QString &Value) const;
  void RemoveAttribute(const QString &Name) const;

  // The namespace bound to Prefix in this node's scope (empty Prefix: the default namespace), or
  // empty when none is.
  QString FindNamespaceURI(const QString &Prefix) const;
  // Declares Prefix (empty: the default namespace) for URI on this element.
  void DeclareNamespace(const QString &Prefix, const QString &URI) const;

  // Creates an element in NamespaceURI and inserts it among the children at Index (-1 appends).
  // The namespace is written with the prefix already bound to it in scope; when none is bound, a
  // prefix of the form "NS1" is declared if GeneratePrefix is set, else the default namespace.
  IXMLNode AddChild(const QString &Name, const QString &NamespaceURI, bool GeneratePrefix = false,
                    int Index = -1) const;
  // Creates an element in this node's own namespace.
  IXMLNode AddChild(const QString &Name, int Index = -1) const;

  // A copy of this node (with its attributes, and its descendants when Deep), not in the tree.
  IXMLNode CloneNode(bool Deep) const;

  // The node and its contents as XML text.
  QString XML() const;

private:
  friend class IXMLDocument;
  friend class IXMLNodeList;
  friend struct TXMLTree;
  IXMLNode(std::shared_ptr<TXMLTree> Tree, _xmlNode *Node) : FTree(std::move(Tree)), FNode(Node) {}
  _xmlNode *Handle() const;

  std::shared_ptr<TXMLTree> FTree;
  _xmlNode *FNode = nullptr;
};

// A live view of the children or of the attributes of a node: changes to the node show at once.
// Walking it by ascending index is linear as a whole.
class VX_EXPORT IXMLNodeList
{
public:
  IXMLNodeList() = default;

  int Count() const;
  // Fails with EListError for an index out of range.
  IXMLNode Nodes(int Index) const;
  IXMLNode operator[](int Index) const { return Nodes(Index); }
  IXMLNode First() const;
  IXMLNode Last() const;

  // By qualified name, or by local name when Name has no prefix; nil or -1 when absent.
  IXMLNode FindNode(const QString &Name) const;
  IXMLNode FindNode(const QString &Name, const QString &NamespaceURI) const;
  int IndexOf(const QString &Name) const;
  int IndexOf(const IXMLNode &Node) const;

  // Appends or inserts a node and returns its index. A node of this document is moved; a node of
  // another document is copied in, and the copy is what the list then holds. Only child lists
  // take nodes, and only of kinds a child can be.
  int Add(const IXMLNode &Node) const;
  void Insert(int Index, const IXMLNode &Node) const;
  // Takes a node out; it stays valid, detached. Remove returns the index it had, or -1.
  void Delete(int Index) const;
  int Delete(const QString &Name) const;
  int Remove(const IXMLNode &Node) const;
  void Clear() const;

private:
  friend class IXMLNode;
  IXMLNodeList(std::shared_ptr<TXMLTree> Tree, _xmlNode *Owner, bool Attributes)
    : FTree(std::move(Tree)), FOwner(Owner), FAttributes(Attributes) {}
  _xmlNode *Item(int Index) const;
  void CheckWritable() const;

  std::shared_ptr<TXMLTree> FTree;
  _xmlNode *FOwner = nullptr;
  bool FAttributes = false;
};

class VX_EXPORT IXMLDocument
{
public:
  // A new, empty and active document.
  IXMLDocument();

  // Kept for the usual DOM protocol; a document is always active. Making it inactive empties it.
  bool Active() const { return true; }
  void SetActive(bool Value);
  TXMLDocOptions Options() const;
  void SetOptions(TXMLDocOptions Value) const;

  // The root element; nil for an empty document. Setting it replaces the old root, which stays
  // valid, detached.
  IXMLNode DocumentElement() const;
  void SetDocumentElement(const IXMLNode &Node) const;

  // A new node that is not yet in the tree: for ntElement, Name is the element's qualified name in
  // NamespaceURI; for ntText, ntCData and ntComment, Name is the node's text.
  IXMLNode CreateNode(const QString &Name, TNodeType NodeType = ntElement,
                      const QString &NamespaceURI = QString()) const;
  IXMLNode CreateElement(const QString &Name, const QString &NamespaceURI) const;

  // Loading replaces the whole document and fails with EDOMParseError on malformed or refused XML,
  // leaving the old content in place. Bytes are decoded by the XML's own declaration or byte order
  // mark; a QString is taken as already decoded. Input that is empty or only white space gives an
  // empty document (no root). File errors raise EFOpenError.
  void LoadFromStream(QIODevice &Stream);
  void LoadFromFile(const QString &FileName);
  void LoadFromBytes(const QByteArray &Data);
  void LoadFromXML(const QString &XML);

  // Writes the document as UTF-8 with an XML declaration, indented under doNodeAutoIndent.
  // Stream errors raise EWriteError; file errors EFOpenError.
  void SaveToStream(QIODevice &Stream) const;
  void SaveToFile(const QString &FileName) const;
  QByteArray SaveToBytes() const;
  QString XML() const;

private:
  friend class IXMLNode;
  explicit IXMLDocument(std::shared_ptr<TXMLTree> Tree) : FTree(std::move(Tree)) {}
  void Parse(const QByteArray &Data, const char *Encoding);

  std::shared_ptr<TXMLTree> FTree;
};

// A new empty document, and one loaded from text or a file, for the usual one-line uses.
VX_EXPORT IXMLDocument NewXMLDocument();
VX_EXPORT IXMLDocument LoadXMLData(const QString &XML);
VX_EXPORT IXMLDocument LoadXMLDocument(const QString &FileName);

} // namespace vx
