#include "components/VXSVGGeneratedControls.h"

#include "components/VXSVGImageControls.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGDataURI.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

namespace vx {

namespace {

template <typename TClass>
IVXHostControl *CreateGenerated(TComponent *Owner, IVXHostControl *Parent)
{
  return new TClass(Parent ? dynamic_cast<QWidget *>(&Parent->HostComponent()) : nullptr, Owner);
}

template <typename TClass>
const TSVGControlClass &ControlClass(const QString &Name)
{
  static const TSVGControlClass Class{Name, &CreateGenerated<TClass>};
  return Class;
}

// Enters the generated control classes into SVGControlClasses while the module is loaded.
class TControlClassesRegistration
{
public:
  TControlClassesRegistration()
  {
    TSVGControlClassTable &Table = SVGControlClasses();
    const TSVGControlClass &Layout = ControlClass<TVXSVGLayout>(QStringLiteral("TVXSVGLayout"));
    const TSVGControlClass &Path = ControlClass<TVXSVGPath>(QStringLiteral("TVXSVGPath"));
    for (TSVGElementType Type : {etDoc, etGroup, etUse, etSwitch, etMarker, etSymbol, etPattern})
      Table[Type] = &Layout;
    for (TSVGElementType Type : {etCircle, etEllipse, etRectangle, etLine, etPolyline, etPolygon, etPath})
      Table[Type] = &Path;
    Table[etImage] = &ControlClass<TVXSVG_Image>(QStringLiteral("TVXSVG_Image"));
    Table[etText] = &ControlClass<TVXSVGText>(QStringLiteral("TVXSVGText"));
  }
  ~TControlClassesRegistration() { SVGControlClasses().fill(nullptr); }
  TControlClassesRegistration(const TControlClassesRegistration &) = delete;
  TControlClassesRegistration &operator=(const TControlClassesRegistration &) = delete;
};

const TControlClassesRegistration ControlClassesRegistration;

// Paints stop while the panel's children are replaced, also when a generation fails.
class TUpdatesOff
{
public:
  explicit TUpdatesOff(QWidget &Widget) : FWidget(Widget) { FWidget.setUpdatesEnabled(false); }
  ~TUpdatesOff()
  {
    FWidget.setUpdatesEnabled(true);
    FWidget.update();
  }
  TUpdatesOff(const TUpdatesOff &) = delete;
  TUpdatesOff &operator=(const TUpdatesOff &) = delete;

private:
  QWidget &FWidget;
};

TControl *FindGenerated(const TComponent &Owner, const QString &ID)
{
  for (int I = 0; I < Owner.ComponentCount(); ++I) {
    TComponent *Component = Owner.Components(I);
    if (IsGeneratedControl(*Component) &&
        Component->PublishedProperties()->Find(QStringLiteral("SVGID"))->Get(*Component).toString() == ID)
      return dynamic_cast<TControl *>(Component);
    if (TControl *Found = FindGenerated(*Component, ID))
      return Found;
  }
  return nullptr;
}

} // namespace

bool IsGeneratedControl(const TComponent &Component)
{
  const TPropertyTable *Table = Component.PublishedProperties();
  return Table && Table->Find(QStringLiteral("SVGID"));
}

template <typename TBase>
const TPropertyTable &TVXSVGGenerated<TBase>::Properties()
{
  using C = TVXSVGGenerated<TBase>;
  static const TPropertyTable Table(&TBase::Properties(), {
    PublishedValue<C>(QStringLiteral("SVGID"), tkString, QStringLiteral("string"), &C::SVGID, &C::SetSVGID,
                      StoredUnless<C>(&C::SVGID, QString())),
  });
  return Table;
}

template class TVXSVGGenerated<TVXCustomTransparentGraphicControl>;
template class TVXSVGGenerated<TImage>;
template class TVXSVGGenerated<TVXGPPathShape>;
template class TVXSVGGenerated<TVXGPShape>;

TVXSVGPath::TVXSVGPath(QWidget *Parent, TComponent *Owner) : TVXSVGGenerated(Parent, Owner)
{
  SetWrapMode(2);
}

TVXSVGText::~TVXSVGText() = default;

void TVXSVGText::SetSVGText(std::unique_ptr<TSVGText> Value)
{
  FSVGText = std::move(Value);
  Invalidate();
}

void TVXSVGText::SetTextMatrix(const TMatrix &Value)
{
  FTextMatrix = Value;
  Invalidate();
}

void TVXSVGText::DrawShape(TVXGPCanvas &Canvas)
{
  if (FSVGText)
    FSVGText->Draw(FTextMatrix, Canvas, TRectF{0, 0, float(width()), float(height())});
}

TVXSVGPanel::TVXSVGPanel(QWidget *Parent, TComponent *Owner) : TCustomPanel(Parent, Owner) {}

TVXSVGPanel::~TVXSVGPanel()
{
  FGenerating = true;
  AttachDocument(nullptr, true);
  Destroying();
}

const TPropertyTable &TVXSVGPanel::Properties()
{
  using C = TVXSVGPanel;
  static const TPropertyTable Table(&TCustomPanel::Properties(), {
    PublishedReference<C, TVXSVGDocument>(QStringLiteral("SVGDocument"), QStringLiteral("TVXSVGDocument"),
                                          &C::SVGDocument, &C::SetSVGDocument),
    PublishedValue<C>(QStringLiteral("SVGRootID"), tkString, QStringLiteral("string"), &C::SVGRootID, &C::SetSVGRootID,
                      StoredUnless<C>(&C::SVGRootID, QString())),
    PublishedValue<C>(QStringLiteral("WrapMode"), tkEnumeration, QStringLiteral("TSVGImageWrapMode"), &C::WrapMode,
                      &C::SetWrapMode, StoredUnless<C>(&C::WrapMode, iwFit), WrapModeNames),
    PublishedValue<C>(QStringLiteral("ScaleOriginal"), tkFloat, QStringLiteral("Single"), &C::ScaleOriginal,
                      &C::SetScaleOriginal, StoredUnless<C>(&C::ScaleOriginal, 1.0f)),
  });
  return Table;
}

TSVGGraphicElement *TVXSVGPanel::GetSVGRoot() const
{
  return FSVGDocument ? FSVGDocument->SVGRoot(FSVGRootID) : nullptr;
}

void TVXSVGPanel::AttachDocument(TVXSVGDocument *Value, bool LeaveOld)
{
  if (FSVGDocument && LeaveOld)
    FSVGDocument->Viewers().Remove(this);
  FSVGDocument = Value;
  FSVGRoot = GetSVGRoot();
  if (FSVGDocument)
    FSVGDocument->Viewers().Add(this);
}

void TVXSVGPanel::SetSVGDocument(TVXSVGDocument *Value)
{
  if (Value == FSVGDocument)
    return;
  AttachDocument(Value, true);
  DoSVGChanged(this);
}

void TVXSVGPanel::ClearSVGDocument()
{
  AttachDocument(nullptr, true);
}

void TVXSVGPanel::Notification(TComponent *AComponent, TOperation Operation)
{
  TCustomPanel::Notification(AComponent, Operation);
  if (Operation == opRemove && AComponent == FSVGDocument) {
    AttachDocument(nullptr, false);
    DoSVGChanged(this);
  }
}

void TVXSVGPanel::SetSVGRootID(const QString &Value)
{
  if (Value == FSVGRootID)
    return;
  FSVGRootID = Value;
  DoSVGChanged(this);
}

void TVXSVGPanel::SetWrapMode(TSVGImageWrapMode Value)
{
  if (Value == FWrapMode)
    return;
  FWrapMode = Value;
  DoSVGChanged(this);
}

void TVXSVGPanel::SetScaleOriginal(float Value)
{
  Value = Value <= 0 ? 0.01f : std::min(Value, 100.0f);
  if (Value == FScaleOriginal)
    return;
  FScaleOriginal = Value;
  DoSVGChanged(this);
}

void TVXSVGPanel::DoSVGChanged(TObject *)
{
  FSVGRoot = GetSVGRoot();
  if (!FGenerating && !ComponentState().Contains(csDestroying))
    GenerateControls();
}

void TVXSVGPanel::Resize()
{
  TCustomPanel::Resize();
  if (FSVGRoot)
    DoSVGChanged(this);
}

void TVXSVGPanel::FreeGeneratedControls()
{
  for (int I = ComponentCount() - 1; I >= 0; --I)
    if (IsGeneratedControl(*Components(I)))
      delete Components(I);
}

void TVXSVGPanel::GenerateControls()
{
  // A change the generation itself causes (a cache filled, a target lent) starts no second one.
  const bool Nested = std::exchange(FGenerating, true);
  struct TRestore
  {
    bool &Flag;
    bool Value;
    ~TRestore() { Flag = Value; }
  } Restore{FGenerating, Nested};
  TUpdatesOff Updates(*this);
  FreeGeneratedControls();
  if (!FSVGRoot)
    return;
  TRectF R{0, 0, float(width()), float(height())};
  const TRectF B = FSVGRoot->GetBoundsRect();
  const TSizeF Size = ScaleSize(R.Width(), R.Height(), B.Width(), B.Height(), FWrapMode, FScaleOriginal);
  R.Right = R.Left + Size.cx;
  R.Bottom = R.Top + Size.cy;
  TMatrix M = FSVGRoot->FitToRect(R);
  if (dynamic_cast<TSVGDocument *>(FSVGRoot))
    M = FSVGRoot->GetViewMatrix(M, R);
  TSVGControlElementEvent Callback;
  if (OnGenerateControl)
    Callback = [this](TSVGElement *Element, IVXHostControl *Control) {
      DoCallback(Element, dynamic_cast<TControl *>(&Control->HostComponent()));
    };
  FSVGRoot->GenerateControls(this, M, R, Callback);
}

void TVXSVGPanel::DoCallback(TSVGElement *Element, TControl *Control)
{
  if (OnGenerateControl)
    OnGenerateControl(this, Element, Control);
}

TControl *TVXSVGPanel::FindControl(const QString &ID) const
{
  return FindGenerated(*this, ID);
}

} // namespace vx
