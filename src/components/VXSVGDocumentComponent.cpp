#include "components/VXSVGDocumentComponent.h"

#include "platform/common/VXFiler.h"

#include <QBuffer>

#include <algorithm>

namespace vx {

const QStringList OptionNames = {
  QStringLiteral("soSkipUnknownXML"), QStringLiteral("soUseLocaleForLanguage"), QStringLiteral("soEnforceUniqueID"),
  QStringLiteral("soApplyClipping"), QStringLiteral("soCompactExport"), QStringLiteral("soExportUnknownXML"),
  QStringLiteral("soExportDisabled"), QStringLiteral("soExportOptimizedBinaryStyleProperties"),
  QStringLiteral("soFMXRadialGradientPatch"), QStringLiteral("soUseFillText"), QStringLiteral("soStandardSVG"),
};
const QStringList ShapeRenderingNames = {QStringLiteral("srnNone"), QStringLiteral("srnAuto"),
                                         QStringLiteral("srnOptimizeSpeed"), QStringLiteral("srnCrispEdges"),
                                         QStringLiteral("srnGeometricPrecision")};
const QStringList ColorRenderingNames = {QStringLiteral("clrnNone"), QStringLiteral("clrnAuto"),
                                         QStringLiteral("clrnOptimizeSpeed"), QStringLiteral("clrnOptimizeQuality")};
const QStringList TextRenderingNames = {QStringLiteral("txrnNone"), QStringLiteral("txrnAuto"),
                                        QStringLiteral("txrnOptimizeSpeed"), QStringLiteral("txrnOptimizeLegibility"),
                                        QStringLiteral("txrnGeometricPrecision")};
const QStringList ColorInterpolationNames = {QStringLiteral("sciNone"), QStringLiteral("sciAuto"),
                                             QStringLiteral("sciSRGB"), QStringLiteral("sciLinearRGB")};

TVXSVGDocument::TVXSVGDocument(TComponent *Owner) : TComponent(Owner)
{
  FViewers.OnNotify = [this](TObject *, ISVGViewer *const &Viewer, TCollectionNotification Action) {
    ViewerNotify(Viewer, Action);
  };
  FLines.OnChange = [this](TObject *) { LinesChange(); };
}

TVXSVGDocument::~TVXSVGDocument()
{
  // The viewers let go of the component before its document is freed.
  Destroying();
  if (FSVG)
    FSVG->OnChange = nullptr;
  FLines.OnChange = nullptr;
  FViewers.OnNotify = nullptr;
}

const TPropertyTable &TVXSVGDocument::Properties()
{
  using C = TVXSVGDocument;
  static const TPropertyTable Table(&TComponent::Properties(), {
    PublishedValue<C>(QStringLiteral("DefaultColorInterpolation"), tkEnumeration,
                      QStringLiteral("TSVGColorInterpolation"), &C::DefaultColorInterpolation,
                      &C::SetDefaultColorInterpolation,
                      StoredUnless<C>(&C::DefaultColorInterpolation, sciSRGB),
                      ColorInterpolationNames),
    PublishedValue<C>(QStringLiteral("DefaultColorRendering"), tkEnumeration, QStringLiteral("TSVGColorRendering"),
                      &C::DefaultColorRendering, &C::SetDefaultColorRendering,
                      StoredUnless<C>(&C::DefaultColorRendering, clrnAuto), ColorRenderingNames),
    PublishedValue<C>(QStringLiteral("DefaultShapeRendering"), tkEnumeration, QStringLiteral("TSVGShapeRendering"),
                      &C::DefaultShapeRendering, &C::SetDefaultShapeRendering,
                      StoredUnless<C>(&C::DefaultShapeRendering, srnGeometricPrecision), ShapeRenderingNames),
    PublishedValue<C>(QStringLiteral("DefaultTextRendering"), tkEnumeration, QStringLiteral("TSVGTextRendering"),
                      &C::DefaultTextRendering, &C::SetDefaultTextRendering,
                      StoredUnless<C>(&C::DefaultTextRendering, txrnAuto), TextRenderingNames),
    PublishedValue<C>(QStringLiteral("DPI"), tkInteger, QStringLiteral("Integer"), &C::DPI, &C::SetDPI,
                      StoredUnless<C>(&C::DPI, 96)),
    PublishedValue<C>(QStringLiteral("EmbedSVGAsBinary"), tkBoolean, QStringLiteral("Boolean"), &C::EmbedSVGAsBinary,
                      &C::SetEmbedSVGAsBinary, StoredUnless<C>(&C::EmbedSVGAsBinary, false)),
    PublishedValue<C>(QStringLiteral("Filename"), tkString, QStringLiteral("string"), &C::Filename, &C::SetFilename,
                      std::function<bool(const C &)>([](const C &D) { return D.IsNotEmbed() && !D.Filename().isEmpty(); })),
    PublishedObject<C>(QStringLiteral("Lines"), QStringLiteral("TStrings"),
                       [](C &D) -> TPersistent & { return D.Lines(); },
                       std::function<bool(const C &)>([](const C &D) { return D.IsNotEmbed() && !D.Lines().IsEmpty(); })),
    PublishedValue<C>(QStringLiteral("Options"), tkSet, QStringLiteral("TSVGOptions"), &C::Options, &C::SetOptions,
                      StoredUnless<C>(&C::Options, DefaultSVGOptions), OptionNames),
    PublishedValue<C>(QStringLiteral("PreferredLanguage"), tkString, QStringLiteral("string"), &C::PreferredLanguage,
                      &C::SetPreferredLanguage),
  });
  return Table;
}

void TVXSVGDocument::DefineProperties(TFiler &Filer)
{
  Filer.DefineBinaryProperty(
    QStringLiteral("SVGX"),
    [this](const QByteArray &Data) {
      QBuffer Buffer;
      Buffer.setData(Data);
      Buffer.open(QIODevice::ReadOnly);
      SVG().LoadFromBinaryStream(Buffer);
    },
    [this] {
      QBuffer Buffer;
      Buffer.open(QIODevice::WriteOnly);
      SVG().SaveToBinaryStream(Buffer);
      return Buffer.data();
    },
    FEmbedSVGAsBinary);
}

std::unique_ptr<TSVGDocument> TVXSVGDocument::CreateSVGDocument() const
{
  return std::make_unique<TSVGDocument>();
}

TSVGGraphicElement *TVXSVGDocument::SVGRoot(const QString &RootID) const
{
  if (RootID.isEmpty())
    return &SVG();
  return SVG().FindElement<TSVGGraphicElement>(RootID);
}

TSVGDocument &TVXSVGDocument::SVG() const
{
  if (!FSVG) {
    FSVG = CreateSVGDocument();
    FSVG->OnChange = [this](TObject *) { const_cast<TVXSVGDocument *>(this)->Change(); };
  }
  return *FSVG;
}

void TVXSVGDocument::Change()
{
  if (OnChanging)
    OnChanging(this);
  // A viewer may leave the list while it is told.
  const std::vector<ISVGViewer *> Viewers(FViewers.begin(), FViewers.end());
  for (ISVGViewer *Viewer : Viewers)
    if (FViewers.Contains(Viewer))
      Viewer->SVGChanged(this);
  if (OnChange)
    OnChange(this);
}

template <typename V, typename G, typename S>
void TVXSVGDocument::SetForwarded(V Value, G Getter, S Setter)
{
  if (std::invoke(Getter, SVG()) == Value)
    return;
  std::invoke(Setter, SVG(), Value);
  Change();
}

void TVXSVGDocument::SetDPI(int Value)
{
  SetForwarded(Value, &TSVGDocument::DPI, &TSVGDocument::SetDPI);
}

void TVXSVGDocument::SetDefaultAspectRatio(const TSVGPreserveAspectRatio &Value)
{
  TSVGPreserveAspectRatio &Ratio = SVG().DefaultAspectRatio();
  if (Ratio.GetAlign() == Value.GetAlign() && Ratio.GetDefer() == Value.GetDefer() &&
      Ratio.GetSlice() == Value.GetSlice())
    return;
  Ratio.Assign(&Value);
  Change();
}

void TVXSVGDocument::SetPreferredLanguage(const QString &Value)
{
  SetForwarded(Value, &TSVGDocument::PreferredLanguage, &TSVGDocument::SetPreferredLanguage);
}

void TVXSVGDocument::SetDefaultShapeRendering(TSVGShapeRendering Value)
{
  SetForwarded(Value, &TSVGDocument::DefaultShapeRendering, &TSVGDocument::SetDefaultShapeRendering);
}

void TVXSVGDocument::SetDefaultColorRendering(TSVGColorRendering Value)
{
  SetForwarded(Value, &TSVGDocument::DefaultColorRendering, &TSVGDocument::SetDefaultColorRendering);
}

void TVXSVGDocument::SetDefaultTextRendering(TSVGTextRendering Value)
{
  SetForwarded(Value, &TSVGDocument::DefaultTextRendering, &TSVGDocument::SetDefaultTextRendering);
}

void TVXSVGDocument::SetDefaultColorInterpolation(TSVGColorInterpolation Value)
{
  SetForwarded(Value, &TSVGDocument::DefaultColorInterpolation, &TSVGDocument::SetDefaultColorInterpolation);
}

void TVXSVGDocument::SetFilename(const QString &Value)
{
  if (Value == FFilename)
    return;
  FFilename = Value;
  // Not shielded from the lines' change event: lines that held text empty the name again.
  FLines.Clear();
  SVG().Clear();
  if (!FFilename.isEmpty())
    SVG().LoadFromFile(FFilename);
}

void TVXSVGDocument::LinesChange()
{
  FFilename.clear();
  FEmbedSVGAsBinary = false;
  LoadSVGFromStrings(FLines);
}

void TVXSVGDocument::LoadSVGFromStrings(const TStrings &Strings)
{
  SVG().Clear();
  if (!Strings.IsEmpty())
    SVG().LoadFromText(Strings.Text());
}

void TVXSVGDocument::ViewerNotify(ISVGViewer *Viewer, TCollectionNotification Action)
{
  if (Action == cnAdded) {
    FViewerComponents.emplace_back(Viewer, Viewer->GetComponent());
    FreeNotification(Viewer->GetComponent());
    return;
  }
  // A viewer that leaves because it is being destroyed must not be called: its component is taken
  // from the record.
  auto It = std::find_if(FViewerComponents.begin(), FViewerComponents.end(),
                         [Viewer](const auto &Pair) { return Pair.first == Viewer; });
  if (It == FViewerComponents.end())
    return;
  TComponent *Component = It->second;
  FViewerComponents.erase(It);
  if (std::none_of(FViewerComponents.begin(), FViewerComponents.end(),
                   [Component](const auto &Pair) { return Pair.second == Component; }))
    RemoveFreeNotification(Component);
}

void TVXSVGDocument::Notification(TComponent *AComponent, TOperation Operation)
{
  TComponent::Notification(AComponent, Operation);
  if (Operation != opRemove)
    return;
  auto It = std::find_if(FViewerComponents.begin(), FViewerComponents.end(),
                         [AComponent](const auto &Pair) { return Pair.second == AComponent; });
  if (It != FViewerComponents.end())
    FViewers.Remove(It->first);
}

} // namespace vx
