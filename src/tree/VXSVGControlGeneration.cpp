// The element side of turning a document into controls: creation through the class table, the walk
// over the children, and what every element copies into its control.
#include "platform/rtl/VXPropInfo.h"
#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGElement.h"
#include "tree/VXSVGGraphicElement.h"

#include <cstdint>

namespace vx {

TSVGControlClassTable &SVGControlClasses()
{
  static TSVGControlClassTable Table{};
  return Table;
}

TSVGCreateControlEvent TSVGElement::ControlConstructor;

IVXHostControl *TSVGElement::CreateControl(IVXHostControl *Parent)
{
  const TSVGControlClass *Class = SVGControlClasses()[SVGType()];
  if (!Class)
    return nullptr;
  if (ControlConstructor)
    return ControlConstructor(this, Parent);
  if (!Parent || Parent->IsWindowed())
    return Class->Create(Parent ? &Parent->HostComponent() : nullptr, Parent);
  return Class->Create(Parent->HostComponent().Owner(), Parent->HostParent());
}

IVXHostControl *TSVGElement::GenerateControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                              const TSVGControlElementEvent &Callback)
{
  IVXHostControl *Control = CreateControl(Parent);
  if (!Control)
    return nullptr;
  AssignTo(&Control->HostComponent());
  TMatrix M = Matrix;
  TRectF R = Rect;
  DoModifyControl(Control, M, R, Callback);
  if (Callback)
    Callback(this, Control);
  GenerateChildControls(Control, M, R, Callback);
  return Control;
}

IVXHostControl *TSVGElement::GenerateControls(IVXHostControl *Parent, const TRectF &Rect,
                                              const TSVGControlElementEvent &Callback)
{
  return GenerateControls(Parent, GetViewMatrix(Rect), Rect, Callback);
}

void TSVGElement::GenerateChildControls(IVXHostControl *Parent, const TMatrix &Matrix, const TRectF &Rect,
                                        const TSVGControlElementEvent &Callback)
{
  for (TSVGElement *Child : FItems)
    if (dynamic_cast<TSVGGraphicElement *>(Child))
      Child->GenerateControls(Parent, Matrix, Rect, Callback);
}

void TSVGElement::DoModifyControl(IVXHostControl *, TMatrix &, TRectF &, const TSVGControlElementEvent &) {}

void TSVGCustomViewBox::DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                                        const TSVGControlElementEvent &Callback)
{
  if (ViewportFollowsStandard()) {
    const TMatrix Outer = VXMatrixMultiply(ViewportTransform(), Matrix);
    TSVGCustomGroup::DoModifyControl(Control, Matrix, Rect, Callback);
    Matrix = VXMatrixMultiply(StandardViewMatrix(StandardViewport()), Outer);
    return;
  }
  Matrix = VXMatrixMultiply(GetViewMatrix(VXIdentityMatrix, Viewport()), Matrix);
  TSVGCustomGroup::DoModifyControl(Control, Matrix, Rect, Callback);
}

void TSVGElement::AssignTo(TPersistent *Dest) const
{
  auto *Control = dynamic_cast<IVXHostControl *>(Dest);
  if (!Control) {
    TPersistent::AssignTo(Dest);
    return;
  }
  TComponent &Component = Control->HostComponent();
  if (const TPropertyTable *Table = Component.PublishedProperties())
    if (const TPropInfo *SVGID = Table->Find(QStringLiteral("SVGID")); SVGID && SVGID->Set)
      SVGID->Set(Component, FID);
  if (!Component.IsDesigning())
    Control->SetTag(std::intptr_t(this));
  Control->SetHint(FDescription.Count() > 0 ? TrimRight(FDescription.Text()) : FTitle);
}

} // namespace vx
