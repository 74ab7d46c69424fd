#include "tree/VXSVGGraphicElement.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGException.h"

namespace vx {

TSVGGraphicElement::TSVGGraphicElement(TSVGDocument *Owner) : TSVGElement(Owner)
{
  FStyle.OnChange = [this](TObject *Sender) { ObjectPropChange(Sender); };
}

void TSVGGraphicElement::SetParent(TSVGElement *Parent)
{
  if (Parent == FParent)
    return;
  TSVGElement::SetParent(Parent);
  Reset();
}

TSVGGraphicElement *TSVGGraphicElement::GetGraphicParent() const
{
  return dynamic_cast<TSVGGraphicElement *>(FParent);
}

void TSVGGraphicElement::LoadFromXML(const IXMLNode &Node)
{
  TSVGUpdateGuard Guard(*this);
  DoOnParsingNode(this, Node);
  DoLoadFromXML(Node);
  ReadChildren(Node);
  DoOnParsedNode(this);
}

void TSVGGraphicElement::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Graphic = dynamic_cast<const TSVGGraphicElement *>(Source))
    FStyle.Assign(&Graphic->FStyle);
  TSVGElement::AssignProperties(Source);
}

void TSVGGraphicElement::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGElement::Clear();
  FStyle.Clear();
}

void TSVGGraphicElement::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGElement::DoLoadFromXML(Node);
  FStyle.SetText(ParseAttrString(Node, QStringLiteral("style")));
}

void TSVGGraphicElement::ReadChildren(const IXMLNode &Node)
{
  // Walk by siblings: indexed access into the DOM's child list costs a walk of its own.
  for (IXMLNode Child = Node.ChildNodes().First(); Child; Child = Child.NextSibling()) {
    const int Index = ReadChild(Child);
    if (Index > -1)
      FItems[Index]->LoadFromXML(Child);
  }
}

int TSVGGraphicElement::ReadChild(const IXMLNode &Node)
{
  const QString Name = Node.LocalName();
  if (Name.isEmpty())
    return -1;
  if (Name == QLatin1String("desc")) {
    FDescription.SetText(Node.Text());
  } else if (Name == QLatin1String("title")) {
    FTitle = Node.Text();
  } else if (Name == QLatin1String("namedview") || Name == QLatin1String("perspective") ||
             Name == QLatin1String("filter")) {
    // Editor and filter elements are passed over whatever the options say.
  } else if (!GetOptions().Contains(soSkipUnknownXML)) {
    throw ESVGException(Format(SUnknownSVGElement, {NodeTypeName(Node.NodeType()), Name}));
  }
  return -1;
}

} // namespace vx
