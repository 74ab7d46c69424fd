#include "platform/vectorkit/VXGPCanvas.h"

#include "platform/vectorkit/VXGPBitmap.h"

#include <QPaintDevice>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace vx {

struct TVXGPCanvas::TState
{
  std::unique_ptr<TVXGPPen> Pen;
  std::unique_ptr<TVXGPBrush> Brush;
  std::unique_ptr<TVXGPFont> Font;
  TMatrix Matrix;
  int SmoothingMode, InterpolationMode, CompositingQuality, TextRenderingHint;
};

namespace {

const QRectF InfiniteClip(-4194304, -4194304, 8388608, 8388608);

QRectF ToQRectF(const TRectF &R)
{
  return QRectF(QPointF(R.Left, R.Top), QPointF(R.Right, R.Bottom));
}

float ValidOpacity(float Opacity)
{
  return std::isfinite(Opacity) ? std::clamp(Opacity, 0.0f, 1.0f) : 0.0f;
}

// Pixels per unit of a source rectangle, by the image's resolution.
double UnitScale(TVXGPUnit Unit, double Dpi)
{
  switch (Unit) {
  case guPoint:
    return Dpi / 72.0;
  case guInch:
    return Dpi;
  case guDocument:
    return Dpi / 300.0;
  case guMillimeter:
    return Dpi / 25.4;
  case guWorld:
  case guDisplay:
  case guPixel:
    break;
  }
  return 1.0;
}

} // namespace

TVXGPCanvas::TVXGPCanvas(QPaintDevice *Device) : FOwnPainter(std::make_unique<QPainter>())
{
  FPainter = FOwnPainter.get();
  if (Device)
    FPainter->begin(Device);
  Init();
}

TVXGPCanvas::TVXGPCanvas(QPainter *Painter) : FPainter(Painter)
{
  if (!FPainter) {
    FOwnPainter = std::make_unique<QPainter>();
    FPainter = FOwnPainter.get();
  }
  if (Active()) {
    FPainter->save();
    FBase = FPainter->worldTransform();
  }
  Init();
}

TVXGPCanvas::~TVXGPCanvas()
{
  RestoreState(0);
  if (!FOwnPainter && Active())
    FPainter->restore();
}

void TVXGPCanvas::Init()
{
  FPen = std::make_unique<TVXGPPen>(this);
  FBrush = std::make_unique<TVXGPBrush>(this);
  FFont = std::make_unique<TVXGPFont>(this);
  if (Active()) {
    FPainter->setRenderHint(QPainter::Antialiasing, false);
    FPainter->setRenderHint(QPainter::SmoothPixmapTransform, true);
  }
}

bool TVXGPCanvas::Active() const
{
  return FPainter->isActive();
}

// --- state -------------------------------------------------------------------------------------

int TVXGPCanvas::SaveState()
{
  TState S{std::make_unique<TVXGPPen>(this), std::make_unique<TVXGPBrush>(this), std::make_unique<TVXGPFont>(this),
           FMatrix, FSmoothingMode, FInterpolationMode, FCompositingQuality, FTextRenderingHint};
  S.Pen->Assign(FPen.get());
  S.Brush->Assign(FBrush.get());
  S.Font->Assign(FFont.get());
  FStates.push_back(std::move(S));
  if (Active())
    FPainter->save();
  return int(FStates.size()) - 1;
}

int TVXGPCanvas::NextStateToken() const
{
  return int(FStates.size());
}

void TVXGPCanvas::RestoreState(int Token)
{
  if (Token < 0)
    return;
  while (int(FStates.size()) > Token) {
    TState &S = FStates.back();
    // Assigned, not swapped, so that references to the current paints stay valid.
    FPen->Assign(S.Pen.get());
    FBrush->Assign(S.Brush.get());
    FFont->Assign(S.Font.get());
    FMatrix = S.Matrix;
    FSmoothingMode = S.SmoothingMode;
    FInterpolationMode = S.InterpolationMode;
    FCompositingQuality = S.CompositingQuality;
    FTextRenderingHint = S.TextRenderingHint;
    FStates.pop_back();
    if (Active())
      FPainter->restore();
  }
}

void TVXGPCanvas::SetMatrix(const TMatrix &M)
{
  FMatrix = M;
  if (Active())
    FPainter->setWorldTransform(VXToQTransform(M) * FBase);
}

void TVXGPCanvas::SetPen(const TVXGPPen &Pen)
{
  FPen->Assign(&Pen);
}

void TVXGPCanvas::SetBrush(const TVXGPBrush &Brush)
{
  FBrush->Assign(&Brush);
}

void TVXGPCanvas::SetFont(const TVXGPFont &Font)
{
  FFont->Assign(&Font);
}

// --- clip --------------------------------------------------------------------------------------

void TVXGPCanvas::CombineClipPath(const QPainterPath &Path, bool Infinite, TVXGPCombineMode Mode)
{
  if (!Active())
    return;
  if (Mode == cmIntersect && !Infinite) {
    FPainter->setClipPath(Path, FPainter->hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
    return;
  }
  if (Mode == cmReplace && !Infinite) {
    FPainter->setClipPath(Path, Qt::ReplaceClip);
    return;
  }
  // The other modes go through a region in the present coordinates.
  TVXGPRegion Clip(this);
  if (FPainter->hasClipping()) {
    TVXGPPath Current;
    Current.QPath() = FPainter->clipPath();
    Clip.Combine(Current, cmReplace);
  }
  TVXGPRegion Other;
  if (!Infinite) {
    TVXGPPath P;
    P.QPath() = Path;
    Other.Combine(P, cmReplace);
  }
  Clip.Combine(Other, Mode);
  if (Clip.IsInfinite())
    FPainter->setClipping(false);
  else
    FPainter->setClipPath(Clip.QPath(), Qt::ReplaceClip);
}

void TVXGPCanvas::CombineClip(const TRectF &R, TVXGPCombineMode Mode)
{
  QPainterPath P;
  P.addRect(ToQRectF(R).normalized());
  CombineClipPath(P, false, Mode);
}

void TVXGPCanvas::CombineClip(const TVXGPRegion &Region, TVXGPCombineMode Mode)
{
  CombineClipPath(Region.QPath(), Region.IsInfinite(), Mode);
}

void TVXGPCanvas::ResetClip()
{
  if (Active())
    FPainter->setClipping(false);
}

bool TVXGPCanvas::HasClip() const
{
  return Active() && FPainter->hasClipping();
}

bool TVXGPCanvas::IsVisibleClipPoint(const TPointF &P) const
{
  return !HasClip() || FPainter->clipPath().contains(QPointF(P.X, P.Y));
}

TRectF TVXGPCanvas::GetClipBounds() const
{
  const QRectF B = HasClip() ? FPainter->clipBoundingRect() : InfiniteClip;
  return {float(B.left()), float(B.top()), float(B.right()), float(B.bottom())};
}

void TVXGPClip::Combine(const TVXGPRegion &Region, TVXGPCombineMode Mode)
{
  FCanvas.CombineClip(Region, Mode);
}

void TVXGPClip::Combine(const TRectF &R, TVXGPCombineMode Mode)
{
  FCanvas.CombineClip(R, Mode);
}

TRectF TVXGPClip::GetBounds() const
{
  return FCanvas.GetClipBounds();
}

bool TVXGPClip::IsVisible(const TPointF &P) const
{
  return FCanvas.IsVisibleClipPoint(P);
}

void TVXGPClip::Reset()
{
  FCanvas.ResetClip();
}

// --- drawing -----------------------------------------------------------------------------------

void TVXGPCanvas::PaintPath(const QPainterPath &Path, const QBrush &Brush, const QPen &Pen, float Opacity,
                            bool Smooth)
{
  const float Alpha = ValidOpacity(Opacity);
  if (!Active() || Alpha <= 0)
    return;
  const qreal OldOpacity = FPainter->opacity();
  const bool OldSmooth = FPainter->testRenderHint(QPainter::Antialiasing);
  FPainter->setOpacity(OldOpacity * Alpha);
  if (OldSmooth != Smooth)
    FPainter->setRenderHint(QPainter::Antialiasing, Smooth);
  FPainter->setPen(Pen);
  FPainter->setBrush(Brush);
  FPainter->drawPath(Path);
  FPainter->setOpacity(OldOpacity);
  if (OldSmooth != Smooth)
    FPainter->setRenderHint(QPainter::Antialiasing, OldSmooth);
}

void TVXGPCanvas::Fill(const TVXGPPath &Path, float Opacity)
{
  if (FBrush->GetKind() == bkNone || Path.QPath().isEmpty())
    return;
  FBrush->Prepare(Path.GetBounds());
  const QBrush B = FBrush->CreateQBrush();
  if (B.style() != Qt::NoBrush)
    PaintPath(Path.QPath(), B, Qt::NoPen, Opacity, FSmoothingMode >= 2);
}

void TVXGPCanvas::Stroke(const TVXGPPath &Path, float Opacity)
{
  if (FPen->GetKind() == bkNone || Path.QPath().isEmpty())
    return;
  QPen P = FPen->CreateQPen(Path.GetBounds());
  if (P.style() == Qt::NoPen)
    return;
  VXLimitDashes(P, Path.QPath());
  PaintPath(Path.QPath(), Qt::NoBrush, P, Opacity, FSmoothingMode >= 2);
}

void TVXGPCanvas::FillPath(const TVXGPPath &Path, float Opacity)
{
  Fill(Path, Opacity);
}

void TVXGPCanvas::DrawPath(const TVXGPPath &Path, float Opacity)
{
  Stroke(Path, Opacity);
}

void TVXGPCanvas::FillRect(const TRectF &R, float Rx, float Ry, int Corners, float Opacity, int CornerType)
{
  TVXGPPath P(this);
  P.AddRectangle(R, Rx, Ry, Corners, CornerType);
  Fill(P, Opacity);
}

void TVXGPCanvas::DrawRect(const TRectF &R, float Rx, float Ry, int Corners, float Opacity, int CornerType)
{
  TVXGPPath P(this);
  P.AddRectangle(R, Rx, Ry, Corners, CornerType);
  Stroke(P, Opacity);
}

void TVXGPCanvas::DrawDashRect(const TRectF &R, TVXGPColor Color)
{
  QPen Pen(VXToQColor(Color), 0, Qt::DashLine);
  Pen.setCosmetic(true);
  QPainterPath P;
  P.addRect(ToQRectF(R).normalized());
  PaintPath(P, Qt::NoBrush, Pen, 1, false);
}

void TVXGPCanvas::DrawLine(const TPointF &P1, const TPointF &P2, float Opacity)
{
  TVXGPPath P(this);
  P.MoveTo(P1);
  P.LineTo(P2);
  Stroke(P, Opacity);
}

void TVXGPCanvas::DrawImageRect(const TVXGPImage &Image, const TRectF &Dest, const TRectF &Source, float Alpha,
                        TVXGPUnit Unit)
{
  const float A = ValidOpacity(Alpha);
  const QRectF D = ToQRectF(Dest);
  if (!Active() || Image.IsEmpty() || A <= 0 || !(std::abs(D.width()) > 0) || !(std::abs(D.height()) > 0))
    return;
  const QImage &Pixels = Image.Image();
  const double Dpi = Pixels.dotsPerMeterX() > 0 ? Pixels.dotsPerMeterX() * 0.0254 : 96.0;
  const double K = UnitScale(Unit, Dpi);
  QRectF S(Source.Left * K, Source.Top * K, Source.Width() * K, Source.Height() * K);
  if (!(S.width() > 0) || !(S.height() > 0))
    return;

  const qreal OldOpacity = FPainter->opacity();
  FPainter->setOpacity(OldOpacity * A);
  const QRectF Device = FPainter->worldTransform().mapRect(D);
  const bool Shrinks = Device.width() < S.width() && Device.height() < S.height();
  if (FInterpolationMode == VXInterpolationModeHighQualityBicubic && Shrinks
      && FPainter->worldTransform().type() <= QTransform::TxScale) {
    // Area-averaged reduction first, so that a large picture shrinks without aliasing.
    const QSize Target(std::max(1, qRound(Device.width())), std::max(1, qRound(Device.height())));
    const QImage Reduced = Pixels.copy(S.toAlignedRect()).scaled(Target, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    FPainter->drawImage(D, Reduced, QRectF(QPointF(0, 0), QSizeF(Reduced.size())));
  } else {
    FPainter->drawImage(D, Pixels, S);
  }
  FPainter->setOpacity(OldOpacity);
}

void TVXGPCanvas::DrawImage(const TVXGPImage &Image, const TRectF &Dest, float Opacity)
{
  DrawImageRect(Image, Dest, {0, 0, float(Image.GetWidth()), float(Image.GetHeight())}, Opacity, guPixel);
}

void TVXGPCanvas::DrawImage(const TVXGPImage &Image, const TRectF &Dest, const TRectF &Source, float Alpha,
                            TVXGPUnit Unit)
{
  DrawImageRect(Image, Dest, Source, Alpha, Unit);
}

void TVXGPCanvas::FillTextLines(const TRectF &R, const QString &Text, const TVXGPStringFormat &Format, bool WordWrap,
                                float Opacity)
{
  TVXGPBrush &Paint = FFont->GetBrush();
  if (!Active() || Text.isEmpty() || Paint.GetKind() == bkNone)
    return;
  const TVXTextShaper Shaper(*FFont);
  QPainterPath Glyphs;
  Glyphs.setFillRule(Qt::WindingFill);
  for (const TVXTextLine &L : Shaper.Layout(Text, R, Format, WordWrap))
    Glyphs.addPath(Shaper.Outline(Text.mid(L.Start, L.Length), {L.Origin.X, L.Origin.Y + Shaper.Ascent()}));
  if (Glyphs.isEmpty())
    return;
  const QRectF B = Glyphs.boundingRect();
  Paint.Prepare({float(B.left()), float(B.top()), float(B.right()), float(B.bottom())});
  const QBrush Brush = Paint.CreateQBrush();
  if (Brush.style() == Qt::NoBrush)
    return;
  const bool Clip = !Format.GetFlags().Contains(sfNoClip) && R.Width() > 0 && R.Height() > 0;
  if (Clip) {
    FPainter->save();
    FPainter->setClipRect(ToQRectF(R), FPainter->hasClipping() ? Qt::IntersectClip : Qt::ReplaceClip);
  }
  PaintPath(Glyphs, Brush, Qt::NoPen, Opacity, FTextRenderingHint != 1 && FTextRenderingHint != 2);
  if (Clip)
    FPainter->restore();
}

void TVXGPCanvas::FillText(const TRectF &R, const QString &Text, const TVXGPStringFormat *Format, float Opacity)
{
  const TVXGPStringFormat Default;
  const TVXGPStringFormat &F = Format ? *Format : Default;
  FillTextLines(R, Text, F, !F.GetFlags().Contains(sfNoWrap), Opacity);
}

void TVXGPCanvas::FillText(const TRectF &R, const QString &Text, bool WordWrap, float Opacity,
                           TVXGPStringFormatFlags Flags, TVXGPStringAlignment HorizontalAlign,
                           TVXGPStringAlignment VerticalAlign)
{
  TVXGPStringFormat F;
  F.SetFlags(Flags);
  F.SetAlignment(HorizontalAlign);
  F.SetLineAlignment(VerticalAlign);
  FillTextLines(R, Text, F, WordWrap, Opacity);
}

void TVXGPCanvas::Clear(TVXGPColor Color)
{
  if (!Active() || !FPainter->device())
    return;
  FPainter->save();
  FPainter->resetTransform();
  FPainter->setCompositionMode(QPainter::CompositionMode_Source);
  FPainter->fillRect(QRectF(0, 0, FPainter->device()->width(), FPainter->device()->height()), VXToQColor(Color));
  FPainter->restore();
}

// --- measurement -------------------------------------------------------------------------------

float TVXGPCanvas::TextWidth(const QString &Text) const
{
  return TVXTextShaper(*FFont).Advance(Text);
}

float TVXGPCanvas::TextWidthTight(const QString &Text) const
{
  return TVXTextShaper(*FFont).InkBounds(Text).Width();
}

TSizeF TVXGPCanvas::TextExtentF(const QString &Text) const
{
  TVXGPStringFormat F;
  F.SetFlags({sfMeasureTrailingSpaces, sfNoWrap});
  TRectF R;
  MeasureText(R, Text, &F);
  return {R.Width(), R.Height()};
}

void TVXGPCanvas::MeasureText(TRectF &R, const QString &Text, const TVXGPStringFormat *Format) const
{
  if (Text.isEmpty()) {
    R.Right = R.Left;
    R.Bottom = R.Top;
    return;
  }
  const TVXGPStringFormat Default;
  const TVXGPStringFormat &F = Format ? *Format : Default;
  const TVXTextShaper Shaper(*FFont);
  const std::vector<TVXTextLine> Lines = Shaper.Layout(Text, R, F, !F.GetFlags().Contains(sfNoWrap));
  float Width = 0;
  for (const TVXTextLine &L : Lines)
    Width = std::max(Width, L.Width);
  R.Right = R.Left + Width;
  R.Bottom = R.Top + Shaper.LineSpacing() * float(Lines.size());
}

// --- modes -------------------------------------------------------------------------------------

bool TVXGPCanvas::TrySmoothingMode(int Mode)
{
  if (Mode < 0 || Mode > 5)
    return false;
  FSmoothingMode = Mode;
  return true;
}

void TVXGPCanvas::SetInterpolationMode(int Mode)
{
  FInterpolationMode = Mode;
  if (Active())
    FPainter->setRenderHint(QPainter::SmoothPixmapTransform, Mode != VXInterpolationModeNearestNeighbor);
}

float TVXGPCanvas::GetPixelsPerInchX() const
{
  return Active() && FPainter->device() ? float(FPainter->device()->logicalDpiX()) : 96.0f;
}

float TVXGPCanvas::GetPixelsPerInchY() const
{
  return Active() && FPainter->device() ? float(FPainter->device()->logicalDpiY()) : 96.0f;
}

} // namespace vx
