#include "structure/VXSVGGroups.h"

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGGroup)
VX_SVG_ELEMENT_CLASS_INFO(TSVGDefs)
VX_SVG_ELEMENT_CLASS_INFO(TSVGSwitch)

namespace {

const TSVGClassRegistration GroupRegistration(etGroup, TSVGGroup::ClassInfo());
const TSVGClassRegistration DefsRegistration(etDefs, TSVGDefs::ClassInfo());
const TSVGClassRegistration SwitchRegistration(etSwitch, TSVGSwitch::ClassInfo());

} // namespace

void TSVGGroup::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomGroup::DoSaveToXML(Node);
  SaveBoundsLengths(Node);
}

TSVGElementTypes TSVGSwitch::ChildSVGTypes() const
{
  return SVGDescriptiveElements | SVGShapeElements |
         TSVGElementTypes{etDoc, etGroup, etImage, etUse, etText, etSwitch};
}

bool TSVGSwitch::DoShouldDraw() const
{
  return HasFeatures() && HasExtensions() && HasLanguages();
}

TSVGGraphicElement *TSVGSwitch::SelectedChild() const
{
  for (TSVGElement *Child : FItems)
    if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Child))
      if (Graphic->HasFeatures() && Graphic->HasExtensions() && Graphic->HasLanguages())
        return Graphic;
  return nullptr;
}

void TSVGSwitch::DrawChildren(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (TSVGGraphicElement *Child = SelectedChild())
    Child->Draw(Matrix, Canvas, Rect);
}

void TSVGSwitch::GenerateChildControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                       const TSVGControlElementEvent &Callback)
{
  if (TSVGGraphicElement *Child = SelectedChild())
    Child->GenerateControls(Parent, Matrix, Rect, Callback);
}

} // namespace vx
