#pragma once
// TSVGGraphicElement: an element that presentation attributes and CSS can style and that reads
// child elements. This holds the tree side of the class: the inline style and the reading of
// children; presentation properties and drawing build on it.
#include "tree/VXSVGElement.h"
#include "tree/VXSVGStyle.h"

namespace vx {

class TSVGGraphicElement : public TSVGElement
{
public:
  explicit TSVGGraphicElement(TSVGDocument *Owner);

  // Also drops the caches that depend on the parent chain.
  void SetParent(TSVGElement *Parent) override;
  // The parent when it is a graphic element, else nil.
  TSVGGraphicElement *GetGraphicParent() const;

  // The inline style attribute, as property/value pairs.
  const TSVGStyle &Style() const { return FStyle; }
  void SetStyle(const TSVGStyle &Value) { FStyle.Assign(&Value); }

  void LoadFromXML(const IXMLNode &Node) override;
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  // Reads every DOM child in order: ReadChild makes the element, which joins the tree before it
  // reads its own attributes.
  virtual void ReadChildren(const IXMLNode &Node);
  // Makes the element for Node and answers its index in the children, or -1. This last level
  // handles what no container took: desc, title, editor elements and unknown names.
  virtual int ReadChild(const IXMLNode &Node);

  TSVGStyle FStyle;
};

} // namespace vx
