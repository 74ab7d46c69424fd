#pragma once
// A document turned into live controls. TVXSVGPanel shows the document of a TVXSVGDocument as one
// control per element: each shape becomes a TVXSVGPath, each text a TVXSVGText, each image a
// TVXSVG_Image, and containers a TVXSVGLayout, so every shape has its own mouse events, cursor
// and hint. The elements build the controls (TSVGElement::GenerateControls); the panel throws the
// generated ones away and builds them anew at every change of the document and at every resize.
// A control is generated when it publishes SVGID (the id of its element); other children of the
// panel, placed there by hand, stay through regeneration.
#include "components/VXSVGDocumentComponent.h"
#include "platform/controls/VXShapeControls.h"
#include "platform/controls/VXStdControls.h"
#include "text/VXSVGText.h"

#include <functional>
#include <memory>

namespace vx {

class TSVGGraphicElement;
class TVXSVGPanel;

// Told of each control a panel generates, with the element it stands for; parents come before
// their children.
using TSVGSenderControlElementEvent =
    std::function<void(TVXSVGPanel *Sender, TSVGElement *Element, TControl *Control)>;

// The published SVGID of the generated control classes, over any control base.
template <typename TBase>
class TVXSVGGenerated : public TBase
{
public:
  using TBase::TBase;
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  const QString &SVGID() const { return FSVGID; }
  void SetSVGID(const QString &Value) { FSVGID = Value; }

private:
  QString FSVGID;
};

// A container (document, group, use, switch, marker, symbol, pattern): it paints nothing.
class TVXSVGLayout : public TVXSVGGenerated<TVXCustomTransparentGraphicControl>
{
public:
  using TVXSVGGenerated::TVXSVGGenerated;
  QString ClassName() const override { return QStringLiteral("TVXSVGLayout"); }
};

// An image element's bitmap.
class TVXSVG_Image : public TVXSVGGenerated<TImage>
{
public:
  using TVXSVGGenerated::TVXSVGGenerated;
  QString ClassName() const override { return QStringLiteral("TVXSVG_Image"); }
};

// A shape or path: the element's geometry filled and stroked with its paints.
class TVXSVGPath : public TVXSVGGenerated<TVXGPPathShape>, public IVXSVGPathControl
{
public:
  // Stretched over the control until an element places it.
  explicit TVXSVGPath(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  QString ClassName() const override { return QStringLiteral("TVXSVGPath"); }
};

// A text, drawn from its own copy of the text element.
class TVXSVGText : public TVXSVGGenerated<TVXGPShape>, public IVXSVGTextControl
{
public:
  using TVXSVGGenerated::TVXSVGGenerated;
  ~TVXSVGText() override;
  QString ClassName() const override { return QStringLiteral("TVXSVGText"); }

  const TSVGText *SVGText() const { return FSVGText.get(); }
  void SetSVGText(std::unique_ptr<TSVGText> Value) override;
  void SetTextMatrix(const TMatrix &Value) override;

protected:
  void DrawShape(TVXGPCanvas &Canvas) override;

private:
  std::unique_ptr<TSVGText> FSVGText;
  TMatrix FTextMatrix = VXIdentityMatrix;
};

class TVXSVGPanel : public TCustomPanel, public ISVGViewer
{
public:
  explicit TVXSVGPanel(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  ~TVXSVGPanel() override;
  QString ClassName() const override { return QStringLiteral("TVXSVGPanel"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  TComponent *GetComponent() override { return this; }
  void SVGChanged(TVXSVGDocument *Sender) override { DoSVGChanged(Sender); }

  TVXSVGDocument *SVGDocument() const { return FSVGDocument; }
  // Leaves the old component's viewers, joins the new one's and generates.
  void SetSVGDocument(TVXSVGDocument *Value);
  const QString &SVGRootID() const { return FSVGRootID; }
  // The element shown: empty for the whole document.
  void SetSVGRootID(const QString &Value);
  TSVGGraphicElement *SVGRoot() const { return FSVGRoot; }
  TSVGImageWrapMode WrapMode() const { return FWrapMode; }
  void SetWrapMode(TSVGImageWrapMode Value);
  float ScaleOriginal() const { return FScaleOriginal; }
  // Clamped to 0.01 .. 100.
  void SetScaleOriginal(float Value);
  // Leaves the component's viewers and forgets it.
  void ClearSVGDocument();

  // Frees the generated controls (those with an SVGID) and generates them anew for the root.
  virtual void GenerateControls();
  // The first generated control, depth first through the owned components, whose SVGID is ID.
  TControl *FindControl(const QString &ID) const;

  TSVGSenderControlElementEvent OnGenerateControl;

protected:
  virtual void DoSVGChanged(TObject *Sender);
  virtual TSVGGraphicElement *GetSVGRoot() const;
  virtual void DoCallback(TSVGElement *Element, TControl *Control);
  void Resize() override;
  void Notification(TComponent *AComponent, TOperation Operation) override;

private:
  void AttachDocument(TVXSVGDocument *Value, bool LeaveOld);
  void FreeGeneratedControls();

  QString FSVGRootID;
  TVXSVGDocument *FSVGDocument = nullptr;
  TSVGImageWrapMode FWrapMode = iwFit;
  TSVGGraphicElement *FSVGRoot = nullptr;
  float FScaleOriginal = 1.0f;
  bool FGenerating = false;
};

// Whether Component is a generated control: it publishes SVGID.
bool IsGeneratedControl(const TComponent &Component);

} // namespace vx
