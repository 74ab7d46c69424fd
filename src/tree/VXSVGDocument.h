#pragma once
// TSVGDocument: the class of the svg element and the root that owns a loaded document: the table of
// all elements by id, the style rules, the options, the resolution and unit factors, and the events.
// A nested svg is again a document whose owner answers for options, events and the element table.
#include "platform/common/VXDictionary.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGResources.h"

#include <QIODevice>
#include <QImage>
#include <QRectF>

class QPainter;

#include <functional>
#include <vector>

namespace vx {

using TSVGElementTable = TVXStringObjectHashTable<TSVGElement>;
using TSVGStyleTable = TVXStringObjectHashTable<TSVGStyle>;

using TSVGElementEvent = std::function<void(TObject *Sender, TSVGElement *Element)>;
using TSVGParserNodeEvent = std::function<void(TSVGElement *Element, const IXMLNode &Node)>;
using TSVGStyleEvent = std::function<void(TObject *Sender, TSVGStyle *Style)>;
using TSVGDrawingQEvent = std::function<void(TObject *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                              const TRectF &Rect, bool &DoDefault)>;
using TSVGDrawingEvent =
    std::function<void(TObject *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)>;
using TSVGDrawingModificationEvent = std::function<void(TObject *Sender, TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                        TRectF &Rect, bool &DoDefault)>;
using TSVGSavingElementEvent =
    std::function<void(TObject *Sender, TSVGElement *Element, const IXMLNode &Node, bool &DoSave)>;
using TSVGSaveElementEvent = std::function<void(TObject *Sender, TSVGElement *Element, const IXMLNode &Node)>;
using TSVGShouldDrawQEvent = std::function<void(const TSVGElement *Element, bool &Draw)>;
using TSVGGraphicElementFoundEvent = std::function<void(TObject *Sender, TSVGGraphicElement *&Element)>;

class TSVGDocument : public TSVGCustomViewBox
{
  VX_SVG_ELEMENT_CLASS(TSVGDocument)

public:
  explicit TSVGDocument(TSVGDocument *Owner = nullptr);
  ~TSVGDocument() override;

  TSVGElementType SVGType() const override { return etDoc; }
  TSVGElementTypes ChildSVGTypes() const override;

  // --- loading ---
  void LoadFromFile(const QString &FileName);
  void LoadFromStream(QIODevice &Stream);
  // Loads Stream, which holds the content of the file FileName: it becomes the document's file name.
  void LoadFromStream(QIODevice &Stream, const QString &FileName);
  void LoadFromText(const QString &Text);
  // Refuses a missing root and a root that is not svg before anything is cleared, so a failed load
  // leaves the old content in place.
  void LoadFromXML(const IXMLDocument &Document);
  void LoadFromXML(const IXMLNode &Node) override;
  // Thorough: loads into a scratch document; otherwise only the root's name is looked at.
  static bool IsValidSVG(const IXMLDocument &Document, bool Thorough);
  static bool IsValidSVG(const QString &FileName, bool Thorough);
  static bool IsValidSVG(QIODevice &Stream, bool Thorough);
  static bool IsValidSVG(bool Thorough, const QString &Text);

  // The file of the last load from a file, absolute; empty after a load from other streams or
  // text. Images resolve relative references against its folder.
  const QString &FileName() const { return FFileName; }
  void SetFileName(const QString &Value) { FFileName = Value; }
  // The folder of FileName; empty for a document without a file.
  QString Folder() const;
  // Which files the pictures of this document may name, and how much decoded raster they may hold
  // (tree/VXSVGResources.h). Set them before loading: images read their files as they load.
  TSVGFilePolicy &FilePolicy() { return FFilePolicy; }
  const TSVGFilePolicy &FilePolicy() const { return FFilePolicy; }
  TSVGRasterBudget &RasterBudget() { return FRasterBudget; }

  // --- saving ---
  // A LineLength above 32 wraps long lines (path data) at that length.
  void SaveToFile(const QString &FileName, int LineLength = 0);
  virtual void SaveToStream(QIODevice &Stream, int LineLength = 0);
  void SaveToXML(IXMLDocument &Document);
  using TSVGCustomViewBox::SaveToXML;
  bool DoOnSavingElement(TSVGElement *Element, const IXMLNode &Node) override;
  void DoOnSavedElement(TSVGElement *Element, const IXMLNode &Node) override;

  // --- the Qt face ---
  // The element with this id, when it is a T; null otherwise.
  template <class T = TSVGElement>
  T *FindElement(const QString &ID) const
  {
    TSVGElement *Found = nullptr;
    return FAllItems.TryGetValue(ID, Found) ? dynamic_cast<T *>(Found) : nullptr;
  }
  // The picture drawn into a new transparent image of Size, stretched over it as Draw does.
  QImage Render(const QSize &Size);
  // Draws the picture into Rect of whatever Painter paints on.
  void Draw(QPainter &Painter, const QRectF &Rect);
  using TSVGCustomViewBox::Draw;

  // --- tables ---
  TSVGElementTable &AllItems() { return FAllItems; }
  const TSVGElementTable &AllItems() const { return FAllItems; }
  TSVGStyleTable &Styles() { return FStyles; }
  const TSVGStyleTable &Styles() const { return FStyles; }
  // Reads the rules of a style element (its CDATA sections, or its text) into the rule table.
  virtual void ReadStyles(const IXMLNode &Node);
  virtual void ReadStyles(const QString &Text);
  // Adds the rule for one selector; a selector that is already in the table fails, unless
  // KeepsRepeatedSelectors, when the new rule joins the table under a name of its own.
  virtual void DoAddStyle(const QString &Selector, const QString &Style);
  bool KeepsRepeatedSelectors() const { return FollowsStandardSVG(); }
  // Whether a style element of another type than text/css is passed over.
  bool ReadsOnlyCSSStyleSheets() const { return FollowsStandardSVG(); }
  void ApplyStyles() override;
  // Paint servers and markers of the element table, rebuilt when the table has changed.
  const std::vector<TSVGElement *> &Gradients();
  const std::vector<TSVGElement *> &Markers();
  const std::vector<TSVGElement *> &Patterns();

  // --- settings ---
  TSVGOptions GetOptions() const override;
  void SetOptions(TSVGOptions Value);
  int DPI() const { return FDPI; }
  // Values under 10 become 10; the unit factors follow.
  void SetDPI(int Value);
  const TSVGUnitFactors &UnitFactors() const { return FUnitFactors; }
  // The document's own factors, also when nested, with the font-relative units resolved.
  TSVGUnitFactors GetUnitFactors() const override;
  const QString &FormatStr() const { return FFormatStr; }
  // Fails, keeping the old pattern, when Value is no number pattern of the "0.###" kind.
  void SetFormatStr(const QString &Value);
  QString PreferredLanguage() const { return FPrefLanguages.CommaText(); }
  void SetPreferredLanguage(const QString &Value) { FPrefLanguages.SetCommaText(Value); }
  const TStringList &PrefLanguages() const { return FPrefLanguages; }
  TSVGShapeRendering DefaultShapeRendering() const { return FDefaultShapeRendering; }
  TSVGColorRendering DefaultColorRendering() const { return FDefaultColorRendering; }
  TSVGTextRendering DefaultTextRendering() const { return FDefaultTextRendering; }
  TSVGColorInterpolation DefaultColorInterpolation() const { return FDefaultColorInterpolation; }
  void SetDefaultShapeRendering(TSVGShapeRendering Value) { FDefaultShapeRendering = Value; }
  void SetDefaultColorRendering(TSVGColorRendering Value) { FDefaultColorRendering = Value; }
  void SetDefaultTextRendering(TSVGTextRendering Value) { FDefaultTextRendering = Value; }
  void SetDefaultColorInterpolation(TSVGColorInterpolation Value) { FDefaultColorInterpolation = Value; }

  // --- conditional processing ---
  using TSVGCustomViewBox::DoShouldDraw;
  // Element's own answer Value, which OnShouldDraw may overturn.
  bool DoShouldDraw(const TSVGElement *Element, bool Value) const;
  virtual bool SupportsFeature(const QString &Feature) const;
  // True when a preferred language starts with one of the tokens of Language: "en" is satisfied
  // by a preference "en-US", but not the other way round.
  virtual bool SupportsLanguage(const QString &Language) const;

  // --- drawing events ---
  // True unless OnDrawing clears it: then Sender's own geometry is skipped, its children are not.
  bool DoDrawing(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  void DoDrawn(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  // True unless OnDisableAppearance clears it, which keeps a disabled element's colours.
  bool DoDisableAppearance(TSVGElement *Sender, TMatrix &Matrix, TVXGPCanvas &Canvas, TRectF &Rect) override;
  // Element, unless OnElementFound replaces it (nil included); a nested document asks its owner
  // (graphics/VXSVGHitTesting.cpp).
  TSVGGraphicElement *DoOnElementFound(TSVGGraphicElement *Element) override;

  // --- tree ---
  void Change(TSVGElement *Element) override;
  void ElementNotification(TObject *Sender, TSVGElement *Item, TCollectionNotification Action) override;
  void Clear() override;
  void AssignProperties(const TSVGElement *Source) override;

  // --- events ---
  TSVGParserNodeEvent OnParsingNode;
  TSVGElementEvent OnParsedNode;
  TNotifyEvent OnChange;
  TSVGElementEvent OnAddElement;
  TSVGElementEvent OnRemoveElement;
  TSVGStyleEvent OnAddStyle;
  TSVGStyleEvent OnRemoveStyle;
  TSVGShouldDrawQEvent OnShouldDraw;
  TSVGDrawingQEvent OnDrawing;
  TSVGDrawingEvent OnDrawn;
  TSVGDrawingModificationEvent OnDisableAppearance;
  TSVGGraphicElementFoundEvent OnElementFound;
  TSVGSavingElementEvent OnSavingElement;
  TSVGSaveElementEvent OnSavedElement;

protected:
  friend class TSVGElement;
  void DoOnParsingNode(TSVGElement *Element, const IXMLNode &Node) override;
  void DoOnParsedNode(TSVGElement *Element) override;
  int ReadChild(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;
  TSVGDocument *OwnerOfCopies() override;
  virtual void UpdateElementLists();

private:
  static TSVGUnitFactors CalcUnitFactors(int DPI);
  void StyleNotify(TSVGStyle *Style, TCollectionNotification Action);
  void FreeStyles();

  TSVGElementTable FAllItems;
  TSVGStyleTable FStyles;
  TSVGOptions FOptions = DefaultSVGOptions;
  TStringList FPrefLanguages;
  int FDPI = 96;
  TSVGUnitFactors FUnitFactors;
  TSVGShapeRendering FDefaultShapeRendering = srnGeometricPrecision;
  TSVGColorRendering FDefaultColorRendering = clrnAuto;
  TSVGTextRendering FDefaultTextRendering = txrnAuto;
  TSVGColorInterpolation FDefaultColorInterpolation = sciSRGB;
  QString FFormatStr = QStringLiteral("0.###");
  std::vector<TSVGElement *> FGradients, FMarkers, FPatterns;
  bool FAllItemsModified = true;
  QString FFileName;
  TSVGFilePolicy FFilePolicy;
  TSVGRasterBudget FRasterBudget;
};

} // namespace vx
