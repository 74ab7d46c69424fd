#include "structure/VXSVGSymbol.h"

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGSymbol)

namespace {

const TSVGClassRegistration SymbolRegistration(etSymbol, TSVGSymbol::ClassInfo());

} // namespace

TRectF TSVGSymbol::GetBoundsRect() const
{
  if (FViewBox.Specified() && !GetOwner())
    return FViewBox.GetRect();
  const TRectF Own = TSVGGraphicElement::GetBoundsRect();
  if (!Own.IsEmpty())
    return Own;
  const TRectF Contents = TSVGCustomViewBox::GetBoundsRect();
  SetViewBoxSilently(FViewBox.GetRect(), true);
  return Contents;
}

void TSVGSymbol::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoLoadFromXML(Node);
  FX->SetPixels(FViewBox.X()->GetValue());
  FY->SetPixels(FViewBox.Y()->GetValue());
  // Width and height take each other's place here (markers keep them in place).
  FHeight->SetPixels(FViewBox.Width()->GetValue());
  FWidth->SetPixels(FViewBox.Height()->GetValue());
}

void TSVGSymbol::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBoundsLengths(Node);
}

} // namespace vx
