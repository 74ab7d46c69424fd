#pragma once
// The text elements: text, tspan, tref and textPath. A text tree is flattened into chunks, runs of
// characters that start at an absolutely placed character, each character carrying its own x, y,
// dx, dy, rotate and the element that owns it. Two roads draw the chunks: by default the outermost
// text turns every character into glyph outlines stored in the shape of the element that owns it,
// so that fill, stroke, paint servers, clipping and hit testing treat text like any shape; under the
// option soUseFillText the characters go straight to the canvas's text output at every draw.
//
// The family is implemented by concern: the model, chunking and XML here (VXSVGText.cpp), glyph
// metrics and placement (VXSVGTextLayout.cpp), both drawing roads (VXSVGTextDraw.cpp) and the
// placement along a path (VXSVGTextPath.cpp).
#include "platform/geometry/VXPathData.h"
#include "tree/VXSVGGraphicElement.h"
#include "tree/VXSVGReferenceListener.h"
#include "values/VXSVGNumbers.h"

#include <memory>
#include <utility>
#include <vector>

namespace vx {

class TSVGBrowserTextLayout;
class TSVGCustomText;
class TSVGPath;

// The position data of one character.
struct TSVGCharChunk
{
  float X = 0;
  bool XSpecified = false;
  float Y = 0;
  bool YSpecified = false;
  float DX = 0, DY = 0;
  // Degrees.
  float Rotate = 0;
  // Not drawn: it lies off its text path.
  bool Clipped = false;
  // The element whose text holds the character; not owned.
  TSVGCustomText *Owner = nullptr;
};
using TSVGCharChunks = std::vector<TSVGCharChunk>;

// A run of characters: Text[i] belongs to Chars[i]. Chunks live for one layout pass only.
struct TSVGTextChunk
{
  TSVGTextChunk() = default;
  explicit TSVGTextChunk(const QString &AText) : Text(AText) {}
  void Clear()
  {
    Text.clear();
    Chars.clear();
  }

  QString Text;
  TSVGCharChunks Chars;
};
using TSVGTextChunks = std::vector<TSVGTextChunk>;

// Text properties that only the standard road reads, as written on the element (its attribute, or
// its style attribute, which wins).
struct TSVGBrowserTextProperties
{
  QString FontVariationSettings, FontStretch, FontKerning, FontStyle;
  // textLength in user units; below 0 when not given.
  float TextLength = -1;
  bool SpacingAndGlyphs = false;
};

// Glyph paths by the element that owns them, in the order the elements first came.
using TSVGTextPaths = std::vector<std::pair<TSVGCustomText *, std::unique_ptr<TVXGPPath>>>;

class TSVGCustomText : public TSVGGraphicElement
{
public:
  explicit TSVGCustomText(TSVGDocument *Owner);
  ~TSVGCustomText() override;

  // --- text and its per-character lists ---
  virtual QString GetText() const;
  virtual void SetText(const QString &Value);
  // The element's text followed by that of its text descendants.
  QString GetLineText() const;
  // Values of the lists at Index, an index into the element's own text; past the end of its own
  // list an element asks its parent at the parent's running index.
  virtual float GetX(int Index) const;
  virtual float GetY(int Index) const;
  virtual float GetDX(int Index) const;
  virtual float GetDY(int Index) const;
  // The last value of the list goes on for the rest of the text.
  virtual float GetRotate(int Index) const;
  virtual bool IsXSpecified(int Index) const;
  virtual bool IsYSpecified(int Index) const;
  virtual bool IsCharClipped(int Index) const;
  // The first x or y of the list, else the inherited value.
  float GetX() const override;
  float GetY() const override;
  void SetX(float Value) override;
  void SetY(float Value) override;
  virtual void SetX(const TSVGLengths &Value);
  virtual void SetY(const TSVGLengths &Value);
  void SetDX(const TSVGLengths &Value);
  void SetDY(const TSVGLengths &Value);
  void SetRotate(const TSVGNumbers &Value);
  const TSVGLengths &XList() const { return *FX; }
  const TSVGLengths &YList() const { return *FY; }
  const TSVGLengths &DXList() const { return *FDX; }
  const TSVGLengths &DYList() const { return *FDY; }
  const TSVGNumbers &RotateList() const { return FRotate; }
  // The lists as attribute text, blank separated.
  QString GetXStr() const;
  QString GetYStr() const;
  QString GetDXStr() const;
  QString GetDYStr() const;
  QString GetRotateStr() const;
  void SetXStr(const QString &Value);
  void SetYStr(const QString &Value);
  void SetDXStr(const QString &Value);
  void SetDYStr(const QString &Value);
  void SetRotateStr(const QString &Value);

  // The text is drawn by the canvas's text output instead of as outlines.
  virtual bool IsFillingText() const;
  // Standard road: the text tree is shaped and placed as browsers do (VXSVGTextBrowserLayout.cpp),
  // and white space is kept as written for the layout to process across spans. Documented road:
  // characters measured one by one and text cleaned at load.
  bool LaysOutAsBrowsers() const { return FollowsStandardSVG(); }

  // --- the running pen of one layout pass ---
  TPointF GetCurrentTextPosition() const;
  // Also sets it on every text ancestor.
  void SetCurrentTextPosition(const TPointF &Point);
  std::uint32_t CurrentTextIndex() const { return FCurrentTextIndex; }
  // Stores Value and hands the parent its own index plus Value: the child's total, not its
  // increase, which is how indices into the parent's lists line up with nested spans.
  void SetCurrentTextIndex(std::uint32_t Value);
  // Left-to-right, right-to-left or top-to-bottom, from the writing mode.
  TSVGWritingMode GetInlineProgressionDirection() const;
  bool IsVertical() const { return GetInlineProgressionDirection() == wmTopBottom; }

  // --- layout (VXSVGTextLayout.cpp) ---
  // Width and height of one glyph of Font; a blank measures as a hyphen.
  TSizeF GetGlyphSpacing(QChar Ch, TVXGPCanvas &Canvas, const TVXGPFont &Font) const;
  // The pen after Ch of Size: kerning (which, when set, replaces the advance) and the spacing.
  TPointF NextTextPosition(const TPointF &Pos, const TSizeF &Size, QChar Ch, bool NoSpacing, float Spacing) const;
  // As above with word spacing after a blank and letter spacing after anything else.
  TPointF NextCharPosition(const TPointF &Pos, const TSizeF &Size, QChar Ch) const;
  // The offset from the pen to the glyph's origin for a character of AText.
  virtual TPointF GetBaseline(TSVGCustomText &AText, TVXGPCanvas &Canvas, QChar Ch, const TVXGPPath *Path);
  virtual TSVGFont &GetBaselineFont(TVXGPCanvas &Canvas);
  // The start of the decoration line for a pen at Point.
  virtual TPointF GetDecorationPoint(const TPointF &Point);
  TSVGGlyphOrientationHorizontal GetGlyphOrientation(QChar Ch) const;
  virtual TMatrix GetGlyphRotationMatrix(QChar Ch, float Rotate, const TPointF &Center) const;
  // The anchor; right-to-left text swaps start and end.
  virtual TSVGTextAlign GetTextAlign() const;
  // Whether a run can go to the canvas in one piece (fill road).
  virtual bool ShouldDrawTextAllAtOnce() const;
  // Width and height of the element's text and its descendants' in the canvas units.
  TSizeF MeasureText(TVXGPCanvas &Canvas);
  // Moves Path by the anchor of AText over R, the box of the chunk it belongs to.
  virtual void AlignText(TSVGCustomText &AText, TVXGPPath &Path, TRectF R, const TPointF &Offset);

  // --- chunks and shapes (VXSVGText.cpp, VXSVGTextDraw.cpp) ---
  virtual void ChunkText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks);
  virtual void ChunkChildrenText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks);
  virtual void CreateTextShapes(TVXGPCanvas &Canvas, const TMatrix &Matrix);
  // Marks the outlines stale (Value) or fresh, empties them, and empties those of the children.
  void ClearShapes(bool Value);
  // Text as one run of outlines at (X, Y) by Align, for callers that want a string as a path.
  virtual void ConvertToPath(TVXGPPath &Path, TVXGPCanvas &Canvas, const QString &Text, float X, float Y,
                             TSVGTextAlign Align);
  // Builds the outlines when they are stale, also outside a draw, so that bounds, hit testing and
  // clip paths see the text.
  TVXGPPath *GetShape() override;
  // The box of the outlines of the whole text tree once they exist; before, the outermost
  // element's estimate.
  TRectF GetBoundsRect() const override;
  using TSVGGraphicElement::GetBoundsRect;

  bool DoDrawing(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  void Change(TSVGElement *Element) override;
  void PropagateObjectPropChange(TObject *Sender) override;
  void Reset() override;
  void Clear() override;
  void AssignProperties(const TSVGElement *Source) override;

  // The outermost text element of this one's chain.
  TSVGCustomText &RootText();
  const TSVGCustomText &RootText() const;
  // The parent when it is a text element, else nil.
  TSVGCustomText *TextParent() const;

protected:
  void InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  virtual void InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                            TSVGTextChunks &Chunks);
  bool BeginDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;
  virtual void DoFillTextChunks(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                TSVGTextChunks &Chunks);
  virtual void FillChildrenTextChunks(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                      TSVGTextChunks &Chunks);
  virtual void FillText(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect, const QString &Text,
                        float X, float Y, TSVGTextAlign Align);
  virtual TSizeF DoMeasureText(TVXGPCanvas &Canvas);
  // Size of the element's own text after the case change of its font variant.
  TSizeF OwnTextExtent(TVXGPCanvas &Canvas) const;
  TSVGGraphicElement *DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                             const TRectF &Rect, TSVGFindOptions Options) override;

  void DoLoadFromXML(const IXMLNode &Node) override;
  int ReadChild(const IXMLNode &Node) override;
  void DoOnParsedNode(TSVGElement *Element) override;
  void DoSaveToXML(const IXMLNode &Node) override;

  // Per-draw set-up of the pen: no position yet, index 0.
  void RestartTextPosition();
  // The character data of a text node as this road keeps it.
  QString LoadedText(const IXMLNode &Node) const;

  float FTextWidth = -1;
  float FTextHeight = -1;
  QString FText;
  TPointF FCurrentTextPosition;
  bool FCurrentTextPositionSpecified = false;
  std::uint32_t FCurrentTextIndex = 0;
  TSVGNumbers FRotate;
  std::unique_ptr<TSVGLengths> FX, FY, FDX, FDY;
  // xml:space="preserve" holds for the element's own text (standard road).
  bool FPreserveSpace = false;
  TSVGBrowserTextProperties FBrowserProperties;

  // The box of all outlines of the text tree; false while they are stale or there are none.
  bool OutlineBounds(TRectF &Box) const;
  // The outermost element keeps the box of the whole tree from its last layout, since every part
  // asks for it when it draws and a walk per part would make many spans cost quadratic time.
  bool FOutlineBoxKnown = false;
  bool FOutlineBoxFound = false;
  TRectF FOutlineBox;
  // The layout rectangle of a run of Width by Align around a baseline at 0.
  static TRectF TextLayoutRect(TSVGTextAlign Align, float Width, float Ascent, float Descent);

private:
  friend class TSVGBrowserTextLayout;
  using TValueLookup = float (TSVGCustomText::*)(int) const;
  using TFlagLookup = bool (TSVGCustomText::*)(int) const;

  // Index of a child's character in this element's lists.
  int IndexFromChild(int Index) const;
  float ListValue(const TSVGLengths &List, int Index, bool Width) const;
  // Item Index of List, or past its end the parent's answer at its running index, or 0.
  float ListLookup(const TSVGLengths &List, TValueLookup ParentLookup, int Index, bool Width) const;
  bool ListReaches(const TSVGLengths &List, TFlagLookup ParentLookup, int Index) const;
  void DrawFilledText(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect, TSVGTextChunks &Chunks,
                      bool MakeChunks);
  void DrawTextAllAtOnce(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect, TSVGTextChunks &Chunks);
  void DrawTextCharByChar(const TMatrix &Matrix, TVXGPCanvas &Canvas, TSVGTextChunks &Chunks);
  // Lays out the whole text tree afresh into the outlines (outermost element only).
  void RebuildTextShapes(TVXGPCanvas &Canvas, const TMatrix &Matrix);
  void BuildShapesOffCanvas();
  void UniteOutlineBounds(TRectF &Box, bool &Found) const;
};

class TSVGText;

// The control generated for a text: it draws a copy of the text, which keeps the look the text had
// in its tree, under the matrix that takes the text to the control's pixels.
class IVXSVGTextControl
{
public:
  virtual ~IVXSVGTextControl() = default;
  // Takes Value, a copy without document.
  virtual void SetSVGText(std::unique_ptr<TSVGText> Value) = 0;
  virtual void SetTextMatrix(const TMatrix &Value) = 0;
};

// The "text" element: the outermost element of a text tree, which lays out and anchors everything
// below it.
class TSVGText : public TSVGCustomText
{
  VX_SVG_ELEMENT_CLASS(TSVGText)

public:
  using TSVGCustomText::TSVGCustomText;

  TSVGElementType SVGType() const override { return etText; }
  TSVGElementTypes ChildSVGTypes() const override;
  // The box standing on the baseline at (x, y): measured, or estimated from the font size before
  // the first layout; the outlines' box once they exist.
  TRectF GetBoundsRect() const override;
  using TSVGCustomText::GetBoundsRect;
  void CreateTextShapes(TVXGPCanvas &Canvas, const TMatrix &Matrix) override;
  using TSVGCustomText::AlignText;
  // Anchors the paths of one chunk together over the union of their bounds.
  virtual void AlignText(TVXGPCanvas &Canvas, TSVGTextPaths &Paths, const TPointF &Offset);
  using TSVGCustomText::ConvertToPath;
  // Turns all chunks into outlines in the shapes of the elements that own the characters.
  virtual void ConvertToPath(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks);

protected:
  int ReadChild(const IXMLNode &Node) override;
  // A text control takes a copy of the text; then the inherited copy.
  void AssignTo(TPersistent *Dest) const override;
  // A text control covers the text's bounds under Matrix and draws the copy at that place.
  void DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                       const TSVGControlElementEvent &Callback) override;
  TSVGGraphicElement *PathAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                const TRectF &Rect, const TVXGPPath &Path, TSVGFindOptions Options) override;
};

// An element inside a text: writing mode, baseline and anchor come from the text around it.
class TSVGCustomTextContentChild : public TSVGCustomText
{
public:
  using TSVGCustomText::TSVGCustomText;

  TSVGWritingMode GetWritingMode() const override;
  TPointF GetBaseline(TSVGCustomText &AText, TVXGPCanvas &Canvas, QChar Ch, const TVXGPPath *Path) override;
  TSVGTextAlign GetTextAlign() const override;
  bool ShouldDrawTextAllAtOnce() const override;
  void AlignText(TSVGCustomText &AText, TVXGPPath &Path, TRectF R, const TPointF &Offset) override;
};

class TSVGTextSpan : public TSVGCustomTextContentChild
{
  VX_SVG_ELEMENT_CLASS(TSVGTextSpan)

public:
  using TSVGCustomTextContentChild::TSVGCustomTextContentChild;
  TSVGElementType SVGType() const override { return etTSpan; }
};

// "tref": shows the text of another text element, looked up at every use.
class TSVGTextRef : public TSVGCustomTextContentChild
{
  VX_SVG_ELEMENT_CLASS(TSVGTextRef)

public:
  using TSVGCustomTextContentChild::TSVGCustomTextContentChild;
  ~TSVGTextRef() override;

  TSVGElementType SVGType() const override { return etTRef; }
  QString GetText() const override;
  const QString &Reference() const { return FReference; }
  // Moves the change notification from the old target to the new one.
  void SetReference(const QString &Value);
  void Clear() override;
  void AssignProperties(const TSVGElement *Source) override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  TSVGCustomText *Target() const;

  QString FReference;
  TSVGReferenceListener FListener;
};

// "textPath": places its characters along a path element (VXSVGTextPath.cpp).
class TSVGTextPath : public TSVGCustomTextContentChild
{
  VX_SVG_ELEMENT_CLASS(TSVGTextPath)

public:
  explicit TSVGTextPath(TSVGDocument *Owner);
  ~TSVGTextPath() override;

  TSVGElementType SVGType() const override { return etTextPath; }

  // The path element named by the reference, or nil.
  virtual TSVGPath *GetPathElement() const;
  // Takes the referenced path's data, under its transform; a missing target keeps the old path.
  virtual void RetrievePath();
  const TVXPathData &GetPath();
  void SetPath(const TVXPathData &Value);
  const QString &Reference() const { return FReference; }
  void SetReference(const QString &Value);
  TSVGLength &StartOffset() const { return *FStartOffset; }
  void SetStartOffset(const TSVGLength &Value);
  TSVGTextPathMethod Method() const { return FMethod; }
  void SetMethod(TSVGTextPathMethod Value);
  TSVGTextPathSpacing Spacing() const { return FSpacing; }
  void SetSpacing(TSVGTextPathSpacing Value);
  // Total length of the flattened path at the last layout.
  double PathLength() const { return FLength; }

  using TSVGCustomText::GetX;
  using TSVGCustomText::GetY;
  float GetX(int Index) const override;
  float GetY(int Index) const override;
  float GetDX(int Index) const override;
  float GetDY(int Index) const override;
  float GetRotate(int Index) const override;
  bool IsXSpecified(int Index) const override;
  bool IsYSpecified(int Index) const override;
  bool IsCharClipped(int Index) const override;
  // The lists belong to the placement: setting them does nothing.
  void SetX(float Value) override;
  void SetY(float Value) override;
  void SetX(const TSVGLengths &Value) override;
  void SetY(const TSVGLengths &Value) override;
  bool ShouldDrawTextAllAtOnce() const override { return false; }
  void AlignText(TSVGCustomText &, TVXGPPath &, TRectF, const TPointF &) override {}
  TPointF GetBaseline(TSVGCustomText &AText, TVXGPCanvas &Canvas, QChar Ch, const TVXGPPath *Path) override;

  void ChunkText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks) override;
  void ChunkChildrenText(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunks &Chunks) override;
  void NotifyListener(TSVGElement *Element) override;
  void Clear() override;
  void AssignProperties(const TSVGElement *Source) override;

protected:
  // Positions and angles of the element's own characters along the path.
  virtual void CalculateXYRotate(TVXGPCanvas &Canvas, const TMatrix &Matrix);
  // Places character Index of Chunk, a character of a child; answers the accumulated dy.
  virtual float CalculateXYRotate(TVXGPCanvas &Canvas, const TMatrix &Matrix, TSVGTextChunk &Chunk, int Index,
                                  float Offset);
  void DoLoadFromXML(const IXMLNode &Node) override;
  void DoSaveToXML(const IXMLNode &Node) override;

private:
  // Moves the walk forward to the first point at or beyond FCharDistance.
  void WalkToCharDistance();
  // The point before the walk's position (across a polygon break), and the point at FCharDistance.
  std::pair<TPointF, TPointF> SegmentAtCharDistance(const TPointF &Previous) const;
  void LengthRangePathLength(TSVGLength *Length, float &Min, float &Max, bool &Use) const;

  QString FReference;
  TSVGReferenceListener FListener;
  float FCharDistance = 0;
  TSVGTextPathMethod FMethod = tpmAlign;
  TSVGTextPathSpacing FSpacing = tpsExact;
  double FLength = 0;
  TVXPathData FPath;
  bool FUpdatePath = true;
  TVXPathData::TDistances FDistances;
  TVXPolygons FPolygons;
  std::unique_ptr<TSVGLength> FStartOffset;
  int FPolygonIndex = 0;
  int FPointIndex = 0;
  std::vector<float> FCharDistances;
  // The last segment start of the walk, kept for characters before the path's start.
  TPointF FSegmentStart;
};

} // namespace vx
