#include "structure/VXSVGMetadata.h"

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGMetadata)
VX_SVG_ELEMENT_CLASS_INFO(TSVGScript)

namespace {

const TSVGClassRegistration MetadataRegistration(etMetadata, TSVGMetadata::ClassInfo());
const TSVGClassRegistration ScriptRegistration(etScript, TSVGScript::ClassInfo());

} // namespace

void TSVGMetadata::SetXML(const QString &Value)
{
  if (Value == FXML)
    return;
  FXML = Value;
  Change(this);
}

void TSVGMetadata::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGElement::DoLoadFromXML(Node);
  FXML = Node.XML();
}

void TSVGMetadata::DoSaveToXML(const IXMLNode &Node)
{
  if (FXML.isEmpty()) {
    TSVGElement::DoSaveToXML(Node);
    return;
  }
  const IXMLNode Root = LoadXMLData(FXML).DocumentElement();
  if (!Root)
    return;
  const IXMLNode Parent = Node.ParentNode();
  if (!Parent) {
    // A node outside any tree: the fragment joins the document's root instead.
    const IXMLNode DocumentRoot = Node.OwnerDocument().DocumentElement();
    if (DocumentRoot && !(DocumentRoot == Node))
      DocumentRoot.ChildNodes().Add(Root);
    return;
  }
  const IXMLNodeList Siblings = Parent.ChildNodes();
  Siblings.Insert(Siblings.IndexOf(Node), Root);
  Siblings.Remove(Node);
}

void TSVGMetadata::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Metadata = dynamic_cast<const TSVGMetadata *>(Source))
    FXML = Metadata->FXML;
  TSVGElement::AssignProperties(Source);
}

void TSVGMetadata::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGElement::Clear();
  FXML.clear();
}

} // namespace vx
