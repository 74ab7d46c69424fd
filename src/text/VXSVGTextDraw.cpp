// The two drawing roads of text. The shape road turns the characters of a whole text tree into
// glyph outlines once per change, in the shapes of the elements that own them; from then on the
// elements draw, clip and hit like any shape. The fill road sends the characters to the canvas's
// text output at every draw.
#include "platform/vectorkit/VXGPCanvas.h"
#include "text/VXSVGText.h"
#include "text/VXSVGTextBrowserLayout.h"
#include "text/VXSVGTextVariant.h"
#include "values/VXSVGLookups.h"

#include <QImage>

#include <unordered_map>
#include <unordered_set>

namespace vx {

namespace {

// Paths by element in the order the elements first came, with an index beside them: a text may
// have many thousand spans, and a scan per character would make its layout quadratic.
class TPathsByOwner
{
public:
  explicit TPathsByOwner(TVXGPCanvas &Canvas) : FCanvas(Canvas) {}

  TSVGTextPaths &Paths() { return FPaths; }
  // The entry of Key, made empty on the canvas when there is none yet.
  TVXGPPath &Of(TSVGCustomText *Key)
  {
    auto [It, Added] = FIndex.try_emplace(Key, FPaths.size());
    if (Added)
      FPaths.emplace_back(Key, std::make_unique<TVXGPPath>(&FCanvas));
    return *FPaths[It->second].second;
  }
  TVXGPPath *Find(TSVGCustomText *Key)
  {
    const auto It = FIndex.find(Key);
    return It == FIndex.end() ? nullptr : FPaths[It->second].second.get();
  }
  void Clear()
  {
    FPaths.clear();
    FIndex.clear();
  }

private:
  TVXGPCanvas &FCanvas;
  TSVGTextPaths FPaths;
  std::unordered_map<TSVGCustomText *, std::size_t> FIndex;
};

TPointF Add(const TPointF &A, const TPointF &B)
{
  return {A.X + B.X, A.Y + B.Y};
}

TPointF Subtract(const TPointF &A, const TPointF &B)
{
  return {A.X - B.X, A.Y - B.Y};
}

// Adds the figures of From to To and empties From; long texts make large paths, so an empty To
// takes them over without a copy.
void MovePath(TVXGPPath &From, TVXGPPath &To)
{
  if (To.Count() == 0)
    std::swap(From.QPath(), To.QPath());
  else
    To.Append(From, false);
  From.Clear();
}

bool IsUpright(TSVGGlyphOrientationHorizontal Orientation)
{
  return Orientation != oh90Deg && Orientation != oh270Deg;
}

// Whether character J of Chunk ends the run of its owner.
bool EndsRun(const TSVGTextChunk &Chunk, std::size_t J)
{
  return J + 1 == Chunk.Chars.size() || Chunk.Chars[J + 1].Owner != Chunk.Chars[J].Owner;
}

// The pen from the character's own position data.
TPointF PlaceChar(TPointF Pos, const TSVGCharChunk &Char)
{
  if (Char.XSpecified)
    Pos.X = Char.X;
  if (Char.YSpecified)
    Pos.Y = Char.Y;
  return {Pos.X + Char.DX, Pos.Y + Char.DY};
}

// The element whose text-decoration a character of Owner shows. An inheriting owner climbs all the
// way to the outermost text element, past a nearer declaration.
TSVGCustomText *DecorationDeclarer(TSVGCustomText &Owner)
{
  TSVGCustomText *Result = &Owner;
  while (Owner.Inherits().Value().Contains(ipTextDecoration) && Result->TextParent())
    Result = Result->TextParent();
  return Result;
}

} // namespace

// --- outlines ----------------------------------------------------------------------------------

void TSVGCustomText::ClearShapes(bool Value)
{
  FShapeCacheChanged = Value;
  FOutlineBoxKnown = false;
  FShape.Clear();
  for (TSVGElement *Child : FItems)
    if (auto *Text = dynamic_cast<TSVGCustomText *>(Child))
      Text->ClearShapes(false);
}

void TSVGCustomText::CreateTextShapes(TVXGPCanvas &, const TMatrix &)
{
}

void TSVGText::CreateTextShapes(TVXGPCanvas &Canvas, const TMatrix &Matrix)
{
  ClearShapes(false);
  if (IsFillingText())
    return;
  if (LaysOutAsBrowsers() && TSVGBrowserTextLayout::Handles(*this)) {
    TSVGBrowserTextLayout(*this).Run();
    return;
  }
  TSVGTextChunks Chunks;
  ChunkText(Canvas, Matrix, Chunks);
  ConvertToPath(Canvas, Matrix, Chunks);
}

void TSVGCustomText::RebuildTextShapes(TVXGPCanvas &Canvas, const TMatrix &Matrix)
{
  // Layout sets fonts and pens on the canvas: they do not outlive it.
  TVXGPCanvasStateGuard Guard(Canvas);
  RestartTextPosition();
  CreateTextShapes(Canvas, Matrix);
  if (!TextParent()) {
    FOutlineBoxFound = false;
    UniteOutlineBounds(FOutlineBox, FOutlineBoxFound);
    FOutlineBoxKnown = true;
  }
  const TRectF Bounds = GetShape()->GetBounds();
  FTextWidth = Bounds.Width();
  FTextHeight = Bounds.Height();
}

void TSVGCustomText::BuildShapesOffCanvas()
{
  // Outlines depend on the canvas only through font metrics, which do not depend on the device;
  // a scratch canvas serves bounds, hit tests and clip paths asked before any draw.
  QImage Scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Scratch);
  RootText().RebuildTextShapes(Canvas, VXIdentityMatrix);
}

TVXGPPath *TSVGCustomText::GetShape()
{
  if (FShapeCacheChanged && !IsFillingText() && !ElementState().Contains(esDestroying))
    BuildShapesOffCanvas();
  if (FShapeCacheChanged)
    FShape.Clear();
  return TSVGGraphicElement::GetShape();
}

bool TSVGCustomText::OutlineBounds(TRectF &Box) const
{
  const TSVGCustomText &Root = RootText();
  // The outlines are a cache of the text: making them does not change what the element is.
  if (Root.FShapeCacheChanged && !Root.ElementState().Contains(esReading))
    const_cast<TSVGCustomText &>(Root).GetShape();
  if (Root.FShapeCacheChanged)
    return false;
  if (Root.FOutlineBoxKnown) {
    Box = Root.FOutlineBox;
    return Root.FOutlineBoxFound;
  }
  bool Found = false;
  Root.UniteOutlineBounds(Box, Found);
  return Found;
}

void TSVGCustomText::UniteOutlineBounds(TRectF &Box, bool &Found) const
{
  if (FShape.Count() > 0) {
    const TRectF Own = FShape.GetBounds();
    Box = Found ? UnionRect(Box, Own) : Own;
    Found = true;
  }
  for (TSVGElement *Child : FItems)
    if (auto *Text = dynamic_cast<TSVGCustomText *>(Child))
      Text->UniteOutlineBounds(Box, Found);
}

TRectF TSVGCustomText::GetBoundsRect() const
{
  TRectF Box;
  if (OutlineBounds(Box))
    return Box;
  const TSVGCustomText &Root = RootText();
  return &Root == this ? TSVGGraphicElement::GetBoundsRect() : Root.GetBoundsRect();
}

TRectF TSVGText::GetBoundsRect() const
{
  TRectF Box;
  if (OutlineBounds(Box))
    return Box;
  const float X = GetX(), Y = GetY();
  if (FTextWidth == -1) {
    // Not laid out yet: a box from the font size, standing on the baseline.
    const double Size = const_cast<TSVGText *>(this)->GetFont().GetSize();
    return {X, float(Y - Size * FMatrix.m22 * 1.1), float(X + GetText().size() * Size * FMatrix.m11), Y};
  }
  return {X, Y - FTextHeight, X + FTextWidth, Y};
}

void TSVGText::ConvertToPath(TVXGPCanvas &Canvas, const TMatrix &, TSVGTextChunks &Chunks)
{
  if (Chunks.empty())
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  TSVGFont Working(&Canvas);
  TVXGPPath Glyph(&Canvas);
  auto Run = std::make_unique<TVXGPPath>(&Canvas);
  TPathsByOwner OwnerPaths(Canvas);
  // Decoration centre lines by declaring element; they live across chunks.
  TPathsByOwner DecoPaths(Canvas);
  // A path cannot tell a line of one point from no line, so the lines begun are listed.
  std::unordered_set<const TVXGPPath *> DecoStarted;
  const bool Vertical = IsVertical();
  TPointF Pos = GetCurrentTextPosition();
  bool Capitalize = true;
  for (TSVGTextChunk &Chunk : Chunks) {
    bool First = true;
    TPointF Offset;
    for (std::size_t J = 0; J < Chunk.Chars.size(); ++J) {
      const TSVGCharChunk &Char = Chunk.Chars[J];
      TSVGCustomText &Owner = *Char.Owner;
      Glyph.Clear();
      Working.Assign(&Owner.GetFont());
      TSVGCustomText *Declarer = nullptr;
      TVXGPPath *DecoPath = nullptr;
      if (Working.IsDecorated()) {
        // Decorations are drawn as one line per declaring element, never as part of the glyphs.
        TVXGPFontStyles Style = Working.GetStyle();
        Style.Exclude(fsUnderline);
        Style.Exclude(fsStrikeOut);
        Working.SetStyle(Style);
        TExtendedFontStyles Extended = Working.GetExtendStyles();
        Extended.Exclude(fsOverline);
        Working.SetExtendStyles(Extended);
        Declarer = DecorationDeclarer(Owner);
        DecoPath = &DecoPaths.Of(Declarer);
      }
      QChar Ch = Chunk.Text[qsizetype(J)];
      const bool SmallCap = IsSmallCap(Working.GetFontVariant(), Ch);
      Ch = VariantChar(Working.GetFontVariant(), Ch, Capitalize);
      if (SmallCap)
        Working.SetSize(Working.GetSize() * 0.66f);
      if (!Char.Clipped)
        Glyph.AddText({0, 0}, QString(Ch), Working, nullptr);
      TPointF B = Owner.GetBaseline(Owner, Canvas, Ch, &Glyph);
      if (SmallCap)
        B.Y *= 0.66f;
      Pos = PlaceChar(Pos, Char);
      if (DecoPath) {
        const TPointF Point = Declarer->GetDecorationPoint(Vertical ? Subtract(Pos, B) : Pos);
        const bool Jump = Char.XSpecified || Char.YSpecified || (Vertical ? Char.DX != 0 : Char.DY != 0);
        if (DecoStarted.insert(DecoPath).second) {
          DecoPath->MoveTo(Point);
          DecoPath->LineTo(Point);
        } else if (Jump) {
          DecoPath->MoveTo(Point);
        } else {
          DecoPath->LineTo(Point);
        }
      }
      // A blank has no outline.
      if (Glyph.Count() > 0) {
        TMatrix T = CreateTranslateVXMatrix(-B.X, -B.Y);
        T = VXMatrixMultiply(Owner.GetGlyphRotationMatrix(Ch, Char.Rotate, B), T);
        const TPointF Origin = IsUpright(Owner.GetGlyphOrientation(Ch)) ? Pos : Subtract(Pos, B);
        T = VXMatrixMultiply(T, CreateTranslateVXMatrix(Origin.X, Origin.Y));
        if (!VXMatrixEquals(T, VXIdentityMatrix, 1e-5f))
          Glyph.ApplyMatrix(T);
        Run->Append(Glyph, false);
        if (First) {
          const TRectF Ink = Glyph.GetBounds();
          Offset = {Ink.Left - Pos.X, Ink.Top - Pos.Y};
          First = false;
        }
      }
      Pos = Owner.NextCharPosition(Pos, Owner.GetGlyphSpacing(Ch, Canvas, Working), Ch);
      SetCurrentTextPosition(Pos);
      if (EndsRun(Chunk, J)) {
        if (DecoPath)
          DecoPath->LineTo(Declarer->GetDecorationPoint(Pos));
        MovePath(*Run, OwnerPaths.Of(&Owner));
        // The end of a run advances the text position like a blank.
        SetCurrentTextPosition(Owner.NextCharPosition(
          GetCurrentTextPosition(), Owner.GetGlyphSpacing(QLatin1Char(' '), Canvas, Working), QLatin1Char(' ')));
      }
    }
    for (auto &[Key, DecoPath] : DecoPaths.Paths()) {
      TVXGPPen Pen(&Canvas, bkSolid);
      Pen.SetThickness(Key->GetFont().GetSize() * 0.04f);
      TVXGPPath Wide(&Canvas);
      Wide.Assign(*DecoPath);
      Wide.Widen(Pen, 0.25f);
      if (TVXGPPath *Anchor = OwnerPaths.Find(Key))
        Anchor->Append(Wide, false);
      else
        FShape.Append(Wide, false);
    }
    AlignText(Canvas, OwnerPaths.Paths(), Offset);
    for (auto &[Key, Path] : OwnerPaths.Paths())
      if (Path->Count() > 0)
        MovePath(*Path, *Key->GetShape());
    OwnerPaths.Clear();
  }
}

void TSVGCustomText::ConvertToPath(TVXGPPath &Path, TVXGPCanvas &Canvas, const QString &Text, float X, float Y,
                                   TSVGTextAlign Align)
{
  if (Text.isEmpty())
    return;
  TSVGFont &Font = GetFont();
  Canvas.SetFont(Font);
  const float W = Canvas.TextWidth(Text);
  const double Size = Font.GetSize();
  const float A = float(Size * Font.GetCellAscent() / Font.GetEmHeight() + 0.5);
  const float D = float(Size * Font.GetCellDescent() / Font.GetEmHeight());
  const TRectF R = TextLayoutRect(Align, W, A, D);
  Path.SetFillMode(VXFillModeWinding);
  Path.AddText({0, 0}, Text, Font, nullptr);
  if (Font.GetExtendStyles().Contains(fsOverline)) {
    const TRectF B = Path.GetBounds();
    Path.AddRectangle({B.Left, FTextHeight * 0.11f, B.Right, FTextHeight * 0.15f});
  }
  if (X != 0 || Y != 0 || R.Left != 0 || R.Top != 0)
    Path.ApplyMatrix(CreateTranslateVXMatrix(R.Left + X, R.Top + Y));
}

TRectF TSVGCustomText::TextLayoutRect(TSVGTextAlign Align, float Width, float Ascent, float Descent)
{
  switch (Align) {
  case staCenter:
    return {-Width / 2, -Ascent, Width / 2, Descent};
  case staTrailing:
    return {-Width, -Ascent, 0, Descent};
  default:
    return {0, -Ascent, Width, Descent};
  }
}

// --- the draw frame ----------------------------------------------------------------------------

bool TSVGCustomText::BeginDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  // The outlines come first, so that the paint is laid out over their box.
  if (FShapeCacheChanged && !IsFillingText())
    RootText().RebuildTextShapes(Canvas, VXIdentityMatrix);
  return TSVGGraphicElement::BeginDraw(Matrix, Canvas, Rect);
}

bool TSVGCustomText::DoDrawing(TSVGElement *Sender, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  Canvas.Font().SetBrush(Canvas.Brush());
  if (FTextWidth == -1) {
    const TMatrix Saved = Canvas.GetMatrix();
    Canvas.SetMatrix(Matrix);
    const TSizeF Extent = OwnTextExtent(Canvas);
    FTextWidth = Extent.cx;
    FTextHeight = Extent.cy;
    Canvas.SetMatrix(Saved);
  }
  if (FShapeCacheChanged && !IsFillingText())
    RebuildTextShapes(Canvas, Matrix);
  else
    RestartTextPosition();
  return TSVGGraphicElement::DoDrawing(Sender, Matrix, Canvas, Rect);
}

TSVGGraphicElement *TSVGCustomText::DoInternalElementAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas,
                                                           const TPointF &Point, const TRectF &Rect,
                                                           TSVGFindOptions Options)
{
  GetShape();
  return TSVGGraphicElement::DoInternalElementAtPos(Matrix, Canvas, Point, Rect, Options);
}

TSVGGraphicElement *TSVGText::PathAtPos(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TPointF &Point,
                                        const TRectF &Rect, const TVXGPPath &Path, TSVGFindOptions Options)
{
  TMatrix M = Matrix;
  if (GetVectorEffect() == veNonScalingStroke)
    M.m11 = M.m22 = 1;
  return TSVGCustomText::PathAtPos(M, Canvas, Point, Rect, Path, Options);
}

// --- the fill road -----------------------------------------------------------------------------

void TSVGCustomText::InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  if (!IsFillingText()) {
    TSVGGraphicElement::InternalDraw(Matrix, Canvas, Rect);
    return;
  }
  TSVGTextChunks Chunks;
  DrawFilledText(Matrix, Canvas, Rect, Chunks, true);
}

void TSVGCustomText::InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                  TSVGTextChunks &Chunks)
{
  DrawFilledText(Matrix, Canvas, Rect, Chunks, false);
}

void TSVGCustomText::DrawFilledText(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                    TSVGTextChunks &Chunks, bool MakeChunks)
{
  const TMatrix M = VXMatrixMultiply(FMatrix, Matrix);
  const bool Go = BeginDraw(M, Canvas, Rect);
  try {
    const std::unique_ptr<TVXGPLayer> Layer = OpenLayer(Canvas);
    // The outermost element lays out the whole tree; each element then draws its own characters.
    if (MakeChunks)
      ChunkText(Canvas, M, Chunks);
    if (Go)
      DoFillTextChunks(M, Canvas, Rect, Chunks);
    FillChildrenTextChunks(M, Canvas, Rect, Chunks);
    CompositeLayer(Layer.get());
  } catch (...) {
    EndDraw(M, Canvas, Rect);
    throw;
  }
  EndDraw(M, Canvas, Rect);
}

void TSVGCustomText::FillChildrenTextChunks(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                            TSVGTextChunks &Chunks)
{
  for (TSVGElement *Child : FItems)
    if (auto *Text = dynamic_cast<TSVGCustomText *>(Child))
      Text->InternalDraw(Matrix, Canvas, Rect, Chunks);
}

void TSVGCustomText::DoFillTextChunks(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                      TSVGTextChunks &Chunks)
{
  if (ShouldDrawTextAllAtOnce())
    DrawTextAllAtOnce(Matrix, Canvas, Rect, Chunks);
  else
    DrawTextCharByChar(Matrix, Canvas, Chunks);
}

void TSVGCustomText::DrawTextAllAtOnce(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect,
                                       TSVGTextChunks &Chunks)
{
  for (const TSVGTextChunk &Chunk : Chunks)
    for (std::size_t J = 0; J < Chunk.Chars.size(); ++J) {
      const TSVGCharChunk &C = Chunk.Chars[J];
      if (C.Owner != this)
        continue;
      const TPointF Position = GetCurrentTextPosition();
      const TPointF P{C.XSpecified ? C.X : Position.X, C.YSpecified ? C.Y : Position.Y};
      float Y = P.Y;
      // The page runs downwards here, so the shifts have the opposite signs of the baseline's.
      const double Size = GetFont().GetSize();
      switch (BaselineShift().GetShift()) {
      case bsSubscript:
        Y = float(Y + Size * 0.4);
        break;
      case bsSuperscript:
        Y = float(Y - Size * 0.4);
        break;
      case bsPercentage:
        Y = float(Y - BaselineShift().GetPixels() * Size);
        break;
      case bsLength:
        Y -= BaselineShift().GetPixels();
        break;
      default:
        break;
      }
      std::size_t End = J;
      while (End < Chunk.Chars.size() && Chunk.Chars[End].Owner == this)
        ++End;
      const QString S = VariantText(GetFont().GetFontVariant(), Chunk.Text.mid(qsizetype(J), qsizetype(End - J)));
      FillText(Matrix, Canvas, Rect, S, P.X + C.DX, Y + C.DY, GetTextAlign());
      const bool Blank = S.startsWith(QLatin1Char(' ')) || S.endsWith(QLatin1Char(' '));
      const float W = Blank ? Canvas.TextWidth(S) : Canvas.TextWidthTight(S);
      SetCurrentTextPosition({P.X + C.DX + W, P.Y + C.DY});
      return;
    }
}

void TSVGCustomText::FillText(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &, const QString &Text,
                              float X, float Y, TSVGTextAlign Align)
{
  if (Text.isEmpty())
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  const TMatrix M0 = Canvas.GetMatrix();
  if (GetVectorEffect() == veNone)
    SetCanvasPen(Canvas, Matrix, false);
  TMatrix M = VXMatrixMultiply(Matrix, M0);
  if (X != 0 || Y != 0)
    M = VXMatrixMultiply(CreateTranslateVXMatrix(X, Y), M);
  Canvas.SetMatrix(M);
  if (GetVectorEffect() == veNonScalingStroke)
    SetCanvasPen(Canvas, M, false);
  const TSVGFont &Font = GetFont();
  const double Size = Font.GetSize();
  const float A = float(Size * Font.GetCellAscent() / Font.GetEmHeight());
  const float D = float(Size * Font.GetCellDescent() / Font.GetEmHeight());
  const TRectF R = TextLayoutRect(Align, Canvas.TextWidth(Text), A, D);
  const std::unique_ptr<TVXGPStringFormat> Format = TVXGPStringFormat::GenericTypographic();
  TVXGPStringFormatFlags Flags = Format->GetFlags();
  Flags.Include(sfMeasureTrailingSpaces);
  Flags.Include(sfNoClip);
  Format->SetFlags(Flags);
  Format->SetAlignment(TVXGPStringAlignment(vx::GetTextAlign(Align)));
  Canvas.FillText(R, Text, Format.get(), GetBrush().GetOpacity() * GetAbsoluteOpacity());
  if (Font.GetExtendStyles().Contains(fsOverline))
    // The overline is a bar of two units at the top of the line cell.
    Canvas.FillRect({R.Left, R.Top, R.Right, R.Top + 2.0f}, 1.0f);
}

void TSVGCustomText::DrawTextCharByChar(const TMatrix &Matrix, TVXGPCanvas &Canvas, TSVGTextChunks &Chunks)
{
  TVXGPCanvasStateGuard Guard(Canvas);
  TSVGFont Working(&Canvas);
  const TMatrix M0 = Canvas.GetMatrix();
  const bool Vertical = IsVertical();
  bool Capitalize = true;
  TPointF Pos = GetCurrentTextPosition();
  for (const TSVGTextChunk &Chunk : Chunks)
    for (std::size_t J = 0; J < Chunk.Chars.size(); ++J) {
      const TSVGCharChunk &Char = Chunk.Chars[J];
      // Every element draws its own characters; the others have their turn in their own draw.
      if (Char.Owner != this)
        continue;
      Working.Assign(&GetFont());
      Working.SetBrush(GetBrush());
      QChar Ch = Chunk.Text[qsizetype(J)];
      const bool SmallCap = IsSmallCap(Working.GetFontVariant(), Ch);
      Ch = VariantChar(Working.GetFontVariant(), Ch, Capitalize);
      if (SmallCap)
        Working.SetSize(Working.GetSize() * 0.66f);
      if (Char.Clipped)
        continue;
      TPointF B = GetBaseline(*this, Canvas, Ch, nullptr);
      if (SmallCap)
        B.Y *= 0.66f;
      Pos = PlaceChar(Pos, Char);
      TMatrix T = VXMatrixMultiply(Matrix, M0);
      T = VXMatrixMultiply(CreateTranslateVXMatrix(-B.X, -B.Y), T);
      T = VXMatrixMultiply(GetGlyphRotationMatrix(Ch, Char.Rotate, Add(Pos, B)), T);
      const bool Upright = IsUpright(GetGlyphOrientation(Ch));
      const TPointF Q = Upright ? (Vertical ? Add(Pos, B) : Pos) : (Vertical ? Pos : Subtract(Pos, B));
      Canvas.SetMatrix(T);
      Canvas.SetFont(Working);
      const TSizeF Size = GetGlyphSpacing(Ch, Canvas, Working);
      Canvas.FillText({Q.X, Q.Y, Q.X, Q.Y}, QString(Ch), false, GetBrush().GetOpacity() * GetAbsoluteOpacity(), {},
                      saNear, saNear);
      Pos = NextCharPosition(Pos, Size, Ch);
      SetCurrentTextPosition(Pos);
      if (Ch != QLatin1Char(' ') && EndsRun(Chunk, J))
        SetCurrentTextPosition(NextCharPosition(GetCurrentTextPosition(),
                                                GetGlyphSpacing(QLatin1Char(' '), Canvas, Working), QLatin1Char(' ')));
    }
}

} // namespace vx
