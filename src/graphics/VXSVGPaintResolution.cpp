// Pen, brush and font resolution: inherited pieces are merged into the element's own paint objects
// once per change, paint servers are asked for gradients and patterns, and the canvas pen is scaled
// for the draw.
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"

#include <cmath>
#include <utility>
#include <vector>

namespace vx {

namespace {

// Silences a paint object's change event for the span of a merge: resolution is not a change.
template <typename TPaint>
class TSilentChange
{
public:
  explicit TSilentChange(TPaint &Paint) : FPaint(Paint), FSaved(std::move(Paint.OnChange)) { FPaint.OnChange = nullptr; }
  ~TSilentChange() { FPaint.OnChange = std::move(FSaved); }
  TSilentChange(const TSilentChange &) = delete;
  TSilentChange &operator=(const TSilentChange &) = delete;

private:
  TPaint &FPaint;
  TNotifyEvent FSaved;
};

// The smallest pen width the canvas is given: a pen of width 0 must not reach it.
constexpr float MinimumPenWidth = 1e-12f;

} // namespace

bool TSVGGraphicElement::PaintServerBrush(TSVGGraphicElement &, const TMatrix &, const TRectF &, TVXGPBrush &)
{
  return false;
}

void TSVGGraphicElement::ApplyPaintServer(const QString &URI, TVXGPBrush &Target, const TMatrix &Matrix,
                                          const TRectF &Rect)
{
  if (URI.isEmpty() || !GetOwner())
    return;
  TSVGElement *Server = nullptr;
  if (!GetOwner()->AllItems().TryGetValue(URI, Server))
    return;
  if (auto *Graphic = dynamic_cast<TSVGGraphicElement *>(Server))
    Graphic->PaintServerBrush(*this, Matrix, Rect, Target);
}

void TSVGGraphicElement::MergeInheritedBrush(const TMatrix &Matrix, const TRectF &Rect)
{
  QString URI = FBrush->GetURI();
  const TSVGStyleProperties Inherited = FInherits.Value();
  if (FGraphicParent && (Inherited.Contains(ipFill) || Inherited.Contains(ipFillOpacity))) {
    const TSVGBrush &ParentBrush = FGraphicParent->GetBrush(Matrix, Rect);
    if (Inherited.Contains(ipFill)) {
      FBrush->SetColor(ParentBrush.GetColor());
      FBrush->SetKind(ParentBrush.GetKind());
      URI = ParentBrush.GetURI();
    }
    if (Inherited.Contains(ipFillOpacity))
      FBrush->SetOpacity(ParentBrush.GetOpacity());
  }
  const TSVGPaintKeyword Keyword = PaintKeyword(ipFill);
  ResolvePaintKeyword(ipFill, *FBrush);
  if (Keyword == pkContextFill || Keyword == pkContextStroke)
    URI = FBrush->GetURI();
  ApplyPaintServer(URI, *FBrush, Matrix, Rect);
}

TSVGBrush &TSVGGraphicElement::GetBrush(const TMatrix &Matrix, const TRectF &Rect)
{
  if (FBrushChanged) {
    TSilentChange<TSVGBrush> Silent(*FBrush);
    MergeInheritedBrush(Matrix, Rect);
    FBrushChanged = false;
  }
  return *FBrush;
}

TSVGBrush &TSVGGraphicElement::GetBrush()
{
  if (FBrushChanged && !ElementState().Contains(esReading))
    return GetBrush(VXIdentityMatrix, GetBoundsRect());
  return *FBrush;
}

void TSVGGraphicElement::MergeInheritedPen()
{
  if (!FGraphicParent)
    return;
  const TSVGStyleProperties Inherited = FInherits.Value();
  const TSVGPen &Parent = FGraphicParent->GetPen();
  TSVGPen &Pen = *FPen;
  if (Inherited.Contains(ipStroke)) {
    Pen.SetColor(Parent.GetColor());
    Pen.SetKind(Parent.GetKind());
    Pen.SetURI(Parent.GetURI());
  }
  if (Inherited.Contains(ipStrokeWidth)) {
    Pen.SetThicknessIsPercent(Parent.GetThicknessIsPercent());
    Pen.SetThicknessPreferredUnit(Parent.GetThicknessPreferredUnit());
    Pen.SetThickness(Parent.GetThickness());
  }
  if (Inherited.Contains(ipStrokeOpacity))
    Pen.SetOpacity(Parent.GetOpacity());
  if (Inherited.Contains(ipStrokeLinecap)) {
    Pen.SetEndCap(Parent.GetEndCap());
    Pen.SetDashCap(Parent.GetDashCap());
    Pen.SetStartCap(Parent.GetStartCap());
  }
  if (Inherited.Contains(ipStrokeMiterLimit))
    Pen.SetMiterLimit(Parent.GetMiterLimit());
  if (Inherited.Contains(ipStrokeLineJoin))
    Pen.SetJoin(Parent.GetJoin());
  if (Inherited.Contains(ipStrokeDashOffset))
    Pen.SetSVGDashOffset(Parent.GetSVGDashOffset());
  if (Inherited.Contains(ipStrokeDasharray) && Parent.GetDash() != dsSolid) {
    const std::vector<float> &Dashes = Parent.GetDashPattern();
    Pen.SetCustomDash(Dashes, int(Dashes.size()) - 1, Parent.GetDashOffset());
  }
}

TSVGPen &TSVGGraphicElement::GetPen(const TMatrix &Matrix, const TRectF &Rect)
{
  if (FPenChanged) {
    TSilentChange<TSVGPen> Silent(*FPen);
    MergeInheritedPen();
    ResolvePaintKeyword(ipStroke, *FPen);
    TVXGPBrush &Inner = FPen->GetBrush();
    const TVXGPBrushKind Before = Inner.GetKind();
    Inner.SetKind(bkNone);
    ApplyPaintServer(FPen->GetURI(), Inner, Matrix, Rect);
    if (Inner.GetKind() == bkGradient || Inner.GetKind() == bkBitmap)
      FPen->SetKind(Inner.GetKind());
    else
      Inner.SetKind(Before);
    FPenChanged = false;
  }
  return *FPen;
}

TSVGPen &TSVGGraphicElement::GetPen()
{
  if (FPenChanged && !ElementState().Contains(esReading))
    return GetPen(VXIdentityMatrix, GetBoundsRect());
  return *FPen;
}

TSVGFont &TSVGGraphicElement::GetFont()
{
  if (!FFontChanged || !FGraphicParent || ElementState().Contains(esReading))
    return *FFont;
  TSilentChange<TSVGFont> Silent(*FFont);
  const TSVGStyleProperties Inherited = FInherits.Value();
  const TSVGFont &Parent = FGraphicParent->GetFont();
  TSVGFont &Font = *FFont;
  if (Inherited.Contains(ipFontFamily))
    Font.SetName(Parent.GetName());
  if (Inherited.Contains(ipFontSize))
    Font.SetSize(Parent.GetSize());
  if (Inherited.Contains(ipFontWeight))
    Font.SetWeight(Parent.GetWeight());
  if (Inherited.Contains(ipFontStyle))
    Font.SetStyle((Font.GetStyle() - TVXGPFontStyles{fsItalic}) | (Parent.GetStyle() & TVXGPFontStyles{fsItalic}));
  if (Inherited.Contains(ipFontVariant))
    Font.SetFontVariant(Parent.GetFontVariant());
  if (Inherited.Contains(ipTextDecoration)) {
    const TVXGPFontStyles Lines{fsUnderline, fsStrikeOut};
    Font.SetStyle((Font.GetStyle() - Lines) | (Parent.GetStyle() & Lines));
    Font.SetExtendStyles(Parent.GetExtendStyles());
  }
  FFontChanged = false;
  return Font;
}

float TSVGGraphicElement::NormalizedViewportDiagonal() const
{
  const TSVGCustomViewBox *ViewBox = GetNearestViewBox();
  if (!ViewBox)
    return 1;
  const double W = ViewBox->ViewBox().Width()->GetValue();
  const double H = ViewBox->ViewBox().Height()->GetValue();
  return float(std::sqrt(W * W + H * H) / std::sqrt(2.0));
}

void TSVGGraphicElement::ResolveRelativeDashes(std::vector<float> &Dashes, float &Offset)
{
  const std::vector<bool> &IsPercent = GetPen().GetDashArrayIsPercent();
  const float Diagonal = NormalizedViewportDiagonal();
  if (!IsPercent.empty())
    for (std::size_t I = 0; I < Dashes.size(); ++I)
      if (IsPercent[I % IsPercent.size()])
        Dashes[I] *= Diagonal;
  const TSVGLength &Length = *GetPen().GetSVGDashOffset();
  const float Raw = Length.GetAsUnit(Length.Unit());
  Offset = Length.IsPercent() ? Raw * Diagonal : Raw * GetUnitFactors()[Length.Unit()];
}

void TSVGGraphicElement::SetCanvasPen(TVXGPCanvas &Canvas, const TMatrix &Matrix, bool ScaleStroke)
{
  Canvas.SetPen(GetPen(VXIdentityMatrix, GetBoundsRect()));
  float Thickness = Canvas.Pen().GetThickness();
  if (FPen->GetThicknessIsPercent()) {
    // A percentage that is neither horizontal nor vertical is of the normalised diagonal.
    if (const TSVGCustomViewBox *ViewBox = GetNearestViewBox()) {
      const double W = ViewBox->ViewBox().Width()->GetValue();
      const double H = ViewBox->ViewBox().Height()->GetValue();
      Thickness = float(Thickness * (std::sqrt(W * W + H * H) / std::sqrt(2.0)));
    }
  }
  float Scale = 1;
  if (ScaleStroke && Thickness != 0)
    Scale = VXMatrixMultiply(Thickness, Matrix) / Thickness;
  Thickness *= Scale;
  if (Thickness < MinimumPenWidth)
    Thickness = MinimumPenWidth;
  TVXGPPen &Pen = Canvas.Pen();
  Pen.SetThickness(Thickness);
  if (!ScaleStroke || Pen.GetKind() == bkNone || Pen.GetDash() != dsCustom)
    return;
  // The canvas holds dashes in units of the pen width.
  std::vector<float> Dashes = Pen.GetDashArray();
  float Offset = GetPen().GetSVGDashOffset()->GetValue();
  if (ResolvesRelativeDashes())
    ResolveRelativeDashes(Dashes, Offset);
  for (int I = int(Dashes.size()) - 1; I >= 0; --I) {
    const float Value = Dashes[std::size_t(I)] * Scale / Pen.GetThickness();
    if (Value <= 0 && !KeepsZeroLengthDashes())
      Dashes.pop_back();
    else
      Dashes[std::size_t(I)] = Value;
  }
  if (!Dashes.empty())
    Pen.SetCustomDash(Dashes, int(Dashes.size()) - 1, Offset * Scale / Pen.GetThickness());
}

} // namespace vx
