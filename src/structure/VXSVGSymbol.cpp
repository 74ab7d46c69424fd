#include "structure/VXSVGSymbol.h"

#include "structure/VXSVGUse.h"

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGSymbol)

namespace {

const TSVGClassRegistration SymbolRegistration(etSymbol, TSVGSymbol::ClassInfo());

} // namespace

TRectF TSVGSymbol::GetBoundsRect() const
{
  // The viewport's own rectangle; the view box is only what the attribute gave.
  if (ViewportFollowsStandard())
    return StandardViewport();
  if (FViewBox.Specified() && !GetOwner())
    return FViewBox.GetRect();
  const TRectF Own = TSVGGraphicElement::GetBoundsRect();
  if (!Own.IsEmpty())
    return Own;
  const TRectF Contents = TSVGCustomViewBox::GetBoundsRect();
  SetViewBoxSilently(FViewBox.GetRect(), true);
  return Contents;
}

bool TSVGSymbol::DoShouldDraw() const
{
  if (DrawnOnlyThroughUse() && !dynamic_cast<const TSVGUse *>(Parent()))
    return false;
  return TSVGCustomViewBox::DoShouldDraw();
}

void TSVGSymbol::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoLoadFromXML(Node);
  if (ViewportFollowsStandard())
    return;
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
