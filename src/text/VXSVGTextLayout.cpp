// Glyph metrics and placement of the text elements: glyph sizes, the pen's advance, baselines,
// decorations, glyph rotation, the font variants, measuring and anchoring.
#include "platform/vectorkit/VXGPCanvas.h"
#include "text/VXSVGText.h"
#include "text/VXSVGTextVariant.h"

#include <algorithm>
#include <numbers>

namespace vx {

namespace {

float Radians(float Degrees)
{
  return float(double(Degrees) * std::numbers::pi / 180.0);
}

// The ascent of Font in its pixels.
double CellAscent(const TVXGPFont &Font)
{
  return double(Font.GetSize()) * Font.GetCellAscent() / Font.GetEmHeight();
}

} // namespace

// --- glyph sizes and advances ------------------------------------------------------------------

TSizeF TSVGCustomText::GetGlyphSpacing(QChar Ch, TVXGPCanvas &Canvas, const TVXGPFont &Font) const
{
  Canvas.SetFont(Font);
  // A blank has no ink and, in many fonts, a width that looks too narrow between glyph outlines.
  if (Ch == QLatin1Char(' '))
    Ch = QLatin1Char('-');
  TRectF R;
  const std::unique_ptr<TVXGPStringFormat> Format = TVXGPStringFormat::GenericTypographic();
  Canvas.MeasureText(R, QString(Ch), Format.get());
  return {R.Width(), R.Height()};
}

TPointF TSVGCustomText::NextTextPosition(const TPointF &Pos, const TSizeF &Size, QChar Ch, bool NoSpacing,
                                         float Spacing) const
{
  TPointF Result = Pos;
  const bool Kerned = Kerning().IsAutomatic();
  float Advance;
  if (IsVertical()) {
    if (!Kerned) {
      Advance = Kerning().GetValue();
    } else {
      switch (GetGlyphOrientationVertical()) {
      case ov90Deg:
      case ov270Deg:
        Advance = Size.cx;
        break;
      case ovNone:
      case ovAuto:
        Advance = Ch.unicode() < 255 ? Size.cx : Size.cy;
        break;
      default:
        Advance = Size.cy;
        break;
      }
    }
    Result.Y += Advance + (NoSpacing ? 0 : Spacing);
    return Result;
  }
  if (!Kerned) {
    // A set kerning replaces the glyph's advance rather than adjusting it.
    Advance = Kerning().GetValue();
  } else {
    const TSVGGlyphOrientationHorizontal Orientation = GetGlyphOrientationHorizontal();
    Advance = Orientation == oh90Deg || Orientation == oh270Deg ? Size.cy : Size.cx;
  }
  Result.X += Advance + (NoSpacing ? 0 : Spacing);
  return Result;
}

TPointF TSVGCustomText::NextCharPosition(const TPointF &Pos, const TSizeF &Size, QChar Ch) const
{
  const TSVGStylePropertyAutoLength &Spacing = Ch == QLatin1Char(' ') ? WordSpacing() : LetterSpacing();
  return NextTextPosition(Pos, Size, Ch, Spacing.IsAutomatic(), Spacing.GetValue());
}

// --- baselines, decorations, orientation -------------------------------------------------------

TPointF TSVGCustomText::GetBaseline(TSVGCustomText &AText, TVXGPCanvas &Canvas, QChar, const TVXGPPath *)
{
  TSVGFont &Font = AText.GetFont();
  const double Size = Font.GetSize();
  TPointF Result{0, float(CellAscent(Font) + 0.5)};
  const TSVGBaselineShiftLength &Shift = AText.BaselineShift();
  const TSVGBaselineShift Kind = Shift.GetShift();
  if (Kind != bsSubscript && Kind != bsSuperscript && Kind != bsPercentage && Kind != bsLength)
    return Result;
  const double Pixels = Shift.GetPixels();
  if (!IsVertical()) {
    // The glyph's origin lies Result.Y above the pen, so a larger value lifts it.
    if (Kind == bsSubscript)
      Result.Y = float(Result.Y - Size * 0.4);
    else if (Kind == bsSuperscript)
      Result.Y = float(Result.Y + Size * 0.4);
    else if (Kind == bsPercentage)
      Result.Y = float(Result.Y + Pixels * Size);
    else
      Result.Y = float(Result.Y + Pixels);
    return Result;
  }
  Canvas.SetFont(Font);
  const double W = Canvas.TextWidth(QStringLiteral("*"));
  if (Kind == bsSubscript)
    Result.X = float(Result.X + W * 0.4);
  else if (Kind == bsSuperscript)
    Result.X = float(Result.X - W * 0.4);
  else if (Kind == bsPercentage)
    Result.X = float(Result.X - Pixels * W);
  else
    Result.X = float(Result.X - Pixels);
  return Result;
}

TSVGFont &TSVGCustomText::GetBaselineFont(TVXGPCanvas &)
{
  if (TSVGCustomText *Parent = TextParent())
    return Parent->GetFont();
  return GetFont();
}

TPointF TSVGCustomText::GetDecorationPoint(const TPointF &Point)
{
  const TSVGFont &Font = GetFont();
  const double Size = Font.GetSize();
  const bool StrikeOut = Font.GetStyle().Contains(fsStrikeOut);
  const bool Underline = Font.GetStyle().Contains(fsUnderline);
  const bool Overline = Font.GetExtendStyles().Contains(fsOverline);
  // Several decorations add up their offsets: one line stands for all of them.
  double Offset = 0;
  if (StrikeOut)
    Offset -= Size / 3;
  if (Underline)
    Offset += Size * 0.06;
  if (Overline)
    Offset -= Size * 0.85;
  TPointF Result = Point;
  if (IsVertical())
    Result.X = float(Result.X - Offset);
  else
    Result.Y = float(Result.Y + Offset);
  return Result;
}

TSVGGlyphOrientationHorizontal TSVGCustomText::GetGlyphOrientation(QChar Ch) const
{
  switch (GetWritingMode()) {
  case wmTopBottom_RightLeft:
  case wmTopBottom:
    break;
  default:
    return GetGlyphOrientationHorizontal();
  }
  switch (GetGlyphOrientationVertical()) {
  case ov0Deg:
    return oh0Deg;
  case ov90Deg:
    return oh90Deg;
  case ov180Deg:
    return oh180Deg;
  case ov270Deg:
    return oh270Deg;
  default:
    // Western characters lie on their side in vertical text; others stand upright.
    return Ch.unicode() < 255 ? oh90Deg : oh0Deg;
  }
}

TMatrix TSVGCustomText::GetGlyphRotationMatrix(QChar Ch, float Rotate, const TPointF &Center) const
{
  TMatrix Result = VXIdentityMatrix;
  // An orientation of 180 degrees changes the advance but leaves the glyph as it is.
  switch (GetGlyphOrientation(Ch)) {
  case oh90Deg:
    Result = CreateRotationVXMatrix(Center, Radians(90));
    break;
  case oh270Deg:
    Result = CreateRotationVXMatrix(Center, Radians(270));
    break;
  default:
    break;
  }
  if (Rotate != 0)
    Result = VXMatrixMultiply(CreateRotationVXMatrix(Center, Radians(Rotate)), Result);
  return Result;
}

TSVGTextAlign TSVGCustomText::GetTextAlign() const
{
  const TSVGTextAlign Align = TSVGGraphicElement::GetTextAlign();
  if (GetDirection() != dirRightToLeft)
    return Align;
  if (Align == staLeading)
    return staTrailing;
  if (Align == staTrailing)
    return staLeading;
  return Align;
}

bool TSVGCustomText::ShouldDrawTextAllAtOnce() const
{
  if (FX->Count() > 1 || FY->Count() > 1 || FDX->Count() > 1 || FDY->Count() > 1 || !FRotate.empty())
    return false;
  if (GetGlyphOrientationVertical() != ovAuto || IsVertical())
    return false;
  const TSVGFontVariant Variant = const_cast<TSVGCustomText *>(this)->GetFont().GetFontVariant();
  return Variant == fvNone || Variant == fvNormal || Variant == fvUpperCase || Variant == fvLowerCase;
}

// --- measuring ---------------------------------------------------------------------------------

TSizeF TSVGCustomText::MeasureText(TVXGPCanvas &Canvas)
{
  TSVGFont Saved;
  Saved.Assign(&Canvas.Font());
  const TSizeF Result = DoMeasureText(Canvas);
  Canvas.SetFont(Saved);
  return Result;
}

TSizeF TSVGCustomText::DoMeasureText(TVXGPCanvas &Canvas)
{
  if (FTextWidth != -1 && !IsFillingText())
    return {FTextWidth, FTextHeight};
  Canvas.SetFont(GetFont());
  TSizeF Result = OwnTextExtent(Canvas);
  for (TSVGElement *Child : FItems)
    if (auto *Text = dynamic_cast<TSVGCustomText *>(Child)) {
      const TSizeF C = Text->DoMeasureText(Canvas);
      Result.cx += C.cx;
      Result.cy = std::max(Result.cy, C.cy);
    }
  return Result;
}

TSizeF TSVGCustomText::OwnTextExtent(TVXGPCanvas &Canvas) const
{
  const TSVGFontVariant Variant = const_cast<TSVGCustomText *>(this)->GetFont().GetFontVariant();
  return Canvas.TextExtentF(VariantText(Variant, GetText()));
}

// --- anchoring ---------------------------------------------------------------------------------

void TSVGCustomText::AlignText(TSVGCustomText &AText, TVXGPPath &Path, TRectF R, const TPointF &Offset)
{
  const TSVGTextAlign Align = AText.GetTextAlign();
  // R is first pulled so that the first glyph's side bearing (Offset) cancels; the result is then
  // used as the shift of a path that already stands at the pen.
  TPointF Position = GetCurrentTextPosition();
  if (!IsVertical()) {
    float Left = -Offset.X;
    if (Align == staCenter)
      Left -= R.Width() / 2;
    else if (Align == staTrailing)
      Left -= R.Width();
    Path.Translate(Left, 0);
    Position.X += Left;
  } else {
    float Top = -Offset.Y;
    if (Align == staCenter)
      Top -= R.Height() / 2;
    else if (Align == staTrailing)
      Top -= R.Height();
    Path.Translate(0, Top);
    Position.Y += Top;
  }
  SetCurrentTextPosition(Position);
}

void TSVGText::AlignText(TVXGPCanvas &, TSVGTextPaths &Paths, const TPointF &Offset)
{
  if (Paths.empty())
    return;
  TRectF R = Paths.front().second->GetBounds();
  for (const auto &[Key, Path] : Paths)
    R = UnionRect(R, Path->GetBounds());
  for (auto &[Key, Path] : Paths)
    Key->AlignText(*Key, *Path, R, Offset);
}

// --- content children --------------------------------------------------------------------------

TSVGWritingMode TSVGCustomTextContentChild::GetWritingMode() const
{
  if (TSVGGraphicElement *Parent = GetGraphicParent())
    return Parent->GetWritingMode();
  return TSVGGraphicElement::GetWritingMode();
}

TPointF TSVGCustomTextContentChild::GetBaseline(TSVGCustomText &AText, TVXGPCanvas &Canvas, QChar Ch,
                                                const TVXGPPath *Path)
{
  if (auto *Parent = dynamic_cast<TSVGCustomText *>(FParent))
    return Parent->GetBaseline(AText, Canvas, Ch, Path);
  return TSVGCustomText::GetBaseline(AText, Canvas, Ch, Path);
}

TSVGTextAlign TSVGCustomTextContentChild::GetTextAlign() const
{
  return TSVGGraphicElement::GetTextAlign();
}

bool TSVGCustomTextContentChild::ShouldDrawTextAllAtOnce() const
{
  if (!TSVGCustomText::ShouldDrawTextAllAtOnce())
    return false;
  auto *Parent = dynamic_cast<TSVGCustomText *>(FParent);
  return !Parent || Parent->ShouldDrawTextAllAtOnce();
}

void TSVGCustomTextContentChild::AlignText(TSVGCustomText &AText, TVXGPPath &Path, TRectF R, const TPointF &Offset)
{
  if (auto *Parent = dynamic_cast<TSVGCustomText *>(FParent))
    Parent->AlignText(AText, Path, R, Offset);
  else
    TSVGCustomText::AlignText(AText, Path, R, Offset);
}

} // namespace vx
