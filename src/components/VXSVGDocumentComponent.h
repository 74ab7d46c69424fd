#pragma once
// TVXSVGDocument: the non-visual component that holds one TSVGDocument and tells its viewers when
// it changed. Its content comes from exactly one source: a file name, text lines, or (later) a
// binary blob; setting one empties the other. Viewers hold the component, never a copy of the
// document, and leave its list by free notification when they are destroyed.
#include "platform/rtl/VXExport.h"
#include "platform/common/VXAssignList.h"
#include "platform/rtl/VXComponent.h"
#include "platform/rtl/VXStringList.h"
#include "tree/VXSVGDocument.h"

#include <memory>
#include <utility>
#include <vector>

namespace vx {

class TVXSVGDocument;

// The value names of the published options and rendering defaults, in the order of the values.
extern VX_EXPORT const QStringList OptionNames;
extern VX_EXPORT const QStringList ShapeRenderingNames;
extern VX_EXPORT const QStringList ColorRenderingNames;
extern VX_EXPORT const QStringList TextRenderingNames;
extern VX_EXPORT const QStringList ColorInterpolationNames;

// A control that shows a document component. SVGChanged is called after every change of the
// component's document; GetComponent is the viewer as a component (for free notification).
class VX_EXPORT ISVGViewer
{
public:
  virtual ~ISVGViewer() = default;
  virtual TComponent *GetComponent() = 0;
  virtual void SVGChanged(TVXSVGDocument *Sender) = 0;
};

class VX_EXPORT TVXSVGDocument : public TComponent
{
public:
  explicit TVXSVGDocument(TComponent *Owner = nullptr);
  ~TVXSVGDocument() override;
  QString ClassName() const override { return QStringLiteral("TVXSVGDocument"); }
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }
  // "SVGX": with EmbedSVGAsBinary, the document itself as a binary component stream.
  void DefineProperties(TFiler &Filer) override;

  // The document, made by CreateSVGDocument on first use. Its events (OnDrawing, OnDrawn,
  // OnElementFound, OnParsingNode ...) are the component's: set them here.
  TSVGDocument &SVG() const;
  // What a control with the root id RootID draws: the document itself, or its graphic element of
  // that id (none when there is no such element).
  TSVGGraphicElement *SVGRoot(const QString &RootID) const;
  TVXAssignList<ISVGViewer> &Viewers() { return FViewers; }
  void SetViewers(const TVXAssignList<ISVGViewer> &Value) { FViewers.Assign(&Value); }

  const QString &Filename() const { return FFilename; }
  // When different: stores the name, empties Lines, clears the document and loads the file. Lines
  // that held text empty the name again as they are cleared, so then nothing loads. Load errors
  // pass through with the document left cleared.
  void SetFilename(const QString &Value);
  TStrings &Lines() { return FLines; }
  const TStrings &Lines() const { return FLines; }
  // Any change of Lines empties Filename and loads the text (errors pass through).
  void SetLines(const TStrings &Value) { FLines.Assign(&Value); }
  bool EmbedSVGAsBinary() const { return FEmbedSVGAsBinary; }
  void SetEmbedSVGAsBinary(bool Value) { FEmbedSVGAsBinary = Value; }
  bool IsNotEmbed() const { return !FEmbedSVGAsBinary; }

  // Forwarded to the document; a real change reaches the viewers.
  int DPI() const { return SVG().DPI(); }
  void SetDPI(int Value);
  TSVGOptions Options() const { return SVG().GetOptions(); }
  void SetOptions(TSVGOptions Value) { SVG().SetOptions(Value); }
  QString PreferredLanguage() const { return SVG().PreferredLanguage(); }
  void SetPreferredLanguage(const QString &Value);
  TSVGShapeRendering DefaultShapeRendering() const { return SVG().DefaultShapeRendering(); }
  void SetDefaultShapeRendering(TSVGShapeRendering Value);
  TSVGColorRendering DefaultColorRendering() const { return SVG().DefaultColorRendering(); }
  void SetDefaultColorRendering(TSVGColorRendering Value);
  TSVGTextRendering DefaultTextRendering() const { return SVG().DefaultTextRendering(); }
  void SetDefaultTextRendering(TSVGTextRendering Value);
  TSVGColorInterpolation DefaultColorInterpolation() const { return SVG().DefaultColorInterpolation(); }
  void SetDefaultColorInterpolation(TSVGColorInterpolation Value);
  const TSVGPreserveAspectRatio &DefaultAspectRatio() const { return SVG().DefaultAspectRatio(); }
  // Copies Value into the document's ratio; a real change reaches the viewers.
  void SetDefaultAspectRatio(const TSVGPreserveAspectRatio &Value);

  // OnChanging, then every viewer in list order, then OnChange.
  virtual void Change();

  TNotifyEvent OnChanging;
  TNotifyEvent OnChange;

protected:
  // The document the component holds: a TSVGDocument without parent.
  virtual std::unique_ptr<TSVGDocument> CreateSVGDocument() const;
  void Notification(TComponent *AComponent, TOperation Operation) override;

private:
  void LinesChange();
  void LoadSVGFromStrings(const TStrings &Strings);
  void ViewerNotify(ISVGViewer *Viewer, TCollectionNotification Action);
  template <typename V, typename G, typename S>
  void SetForwarded(V Value, G Getter, S Setter);

  mutable std::unique_ptr<TSVGDocument> FSVG;
  QString FFilename;
  TVXAssignList<ISVGViewer> FViewers;
  // The component of each viewer in the list: a destroyed viewer is found by its component
  // without calling it.
  std::vector<std::pair<ISVGViewer *, TComponent *>> FViewerComponents;
  TStringList FLines;
  bool FEmbedSVGAsBinary = false;
};

} // namespace vx
