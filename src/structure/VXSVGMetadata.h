#pragma once
// "metadata" and "script": foreign XML that the library neither interprets nor runs. The element
// keeps its whole XML text as read and, on saving, puts that text back in the place of its node.
// Neither is a graphic element: no presentation, no bounds, nothing drawn or hit.
#include "platform/rtl/VXExport.h"
#include "tree/VXSVGElement.h"

namespace vx {

class VX_EXPORT TSVGMetadata : public TSVGElement
{
  VX_SVG_ELEMENT_CLASS(TSVGMetadata)

public:
  using TSVGElement::TSVGElement;
  TSVGElementType SVGType() const override { return etMetadata; }

  // The element as XML text, itself included.
  const QString &XML() const { return FXML; }
  void SetXML(const QString &Value);

  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  // The common attributes, then the node's XML text, which declares the namespaces it borrows from
  // further up, so that it stands on its own.
  void DoLoadFromXML(const IXMLNode &Node) override;
  // Parses the stored text and puts it in Node's place; Node leaves its parent. Without stored text
  // Node keeps the common attributes. A text that is no XML fails as the parser does.
  void DoSaveToXML(const IXMLNode &Node) override;

  QString FXML;
};

// A script is carried and written back like metadata; it never runs.
class VX_EXPORT TSVGScript : public TSVGMetadata
{
  VX_SVG_ELEMENT_CLASS(TSVGScript)

public:
  using TSVGMetadata::TSVGMetadata;
  TSVGElementType SVGType() const override { return etScript; }
};

} // namespace vx
