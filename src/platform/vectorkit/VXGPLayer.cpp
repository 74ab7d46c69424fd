#include "platform/vectorkit/VXGPLayer.h"

#include "platform/vectorkit/VXGPCanvas.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

QPainter::CompositionMode CompositionMode(TVXGPBlendMode Mode)
{
  switch (Mode) {
  case bmMultiply:
    return QPainter::CompositionMode_Multiply;
  case bmScreen:
    return QPainter::CompositionMode_Screen;
  case bmOverlay:
    return QPainter::CompositionMode_Overlay;
  case bmDarken:
    return QPainter::CompositionMode_Darken;
  case bmLighten:
    return QPainter::CompositionMode_Lighten;
  case bmColorDodge:
    return QPainter::CompositionMode_ColorDodge;
  case bmColorBurn:
    return QPainter::CompositionMode_ColorBurn;
  case bmHardLight:
    return QPainter::CompositionMode_HardLight;
  case bmSoftLight:
    return QPainter::CompositionMode_SoftLight;
  case bmDifference:
    return QPainter::CompositionMode_Difference;
  case bmExclusion:
    return QPainter::CompositionMode_Exclusion;
  default:
    return QPainter::CompositionMode_SourceOver;
  }
}

bool IsNonSeparable(TVXGPBlendMode Mode)
{
  return Mode == bmHue || Mode == bmSaturation || Mode == bmColor || Mode == bmLuminosity;
}

// The non-separable blend functions of CSS compositing, on colours in 0..1.
struct TRGB
{
  double R, G, B;
};

double Lum(const TRGB &C)
{
  return 0.3 * C.R + 0.59 * C.G + 0.11 * C.B;
}

TRGB ClipColor(TRGB C)
{
  const double L = Lum(C);
  const double N = std::min({C.R, C.G, C.B});
  const double X = std::max({C.R, C.G, C.B});
  auto Scale = [&](double V) {
    if (N < 0)
      V = L + (V - L) * L / (L - N);
    if (X > 1)
      V = L + (V - L) * (1 - L) / (X - L);
    return V;
  };
  return {Scale(C.R), Scale(C.G), Scale(C.B)};
}

TRGB SetLum(const TRGB &C, double L)
{
  const double D = L - Lum(C);
  return ClipColor({C.R + D, C.G + D, C.B + D});
}

double Sat(const TRGB &C)
{
  return std::max({C.R, C.G, C.B}) - std::min({C.R, C.G, C.B});
}

TRGB SetSat(TRGB C, double S)
{
  double *Channels[3] = {&C.R, &C.G, &C.B};
  std::sort(std::begin(Channels), std::end(Channels), [](double *A, double *B) { return *A < *B; });
  double &Min = *Channels[0];
  double &Mid = *Channels[1];
  double &Max = *Channels[2];
  if (Max > Min) {
    Mid = (Mid - Min) * S / (Max - Min);
    Max = S;
  } else {
    Mid = Max = 0;
  }
  Min = 0;
  return C;
}

TRGB Blend(TVXGPBlendMode Mode, const TRGB &Backdrop, const TRGB &Source)
{
  switch (Mode) {
  case bmHue:
    return SetLum(SetSat(Source, Sat(Backdrop)), Lum(Backdrop));
  case bmSaturation:
    return SetLum(SetSat(Backdrop, Sat(Source)), Lum(Backdrop));
  case bmColor:
    return SetLum(Source, Lum(Backdrop));
  default:
    return SetLum(Backdrop, Lum(Source));
  }
}

// Unpremultiplied colour of a premultiplied pixel.
TRGB ColorOf(QRgb P)
{
  const int A = qAlpha(P);
  if (A == 0)
    return {0, 0, 0};
  return {qRed(P) / double(A), qGreen(P) / double(A), qBlue(P) / double(A)};
}

// Mixes the blend of each source pixel with the backdrop under it into the source, weighted by the
// backdrop's alpha, so that drawing the result over the backdrop gives the blended picture.
QImage BlendedSource(const QImage &Source, const QImage &Backdrop, QPoint Origin, TVXGPBlendMode Mode)
{
  QImage Result = Source.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  const QImage Below = Backdrop.format() == QImage::Format_ARGB32_Premultiplied
                           ? Backdrop
                           : Backdrop.convertToFormat(QImage::Format_ARGB32_Premultiplied);
  for (int Y = 0; Y < Result.height(); ++Y) {
    const int BY = Y + Origin.y();
    if (BY < 0 || BY >= Below.height())
      continue;
    auto *Row = reinterpret_cast<QRgb *>(Result.scanLine(Y));
    const auto *BRow = reinterpret_cast<const QRgb *>(Below.constScanLine(BY));
    for (int X = 0; X < Result.width(); ++X) {
      const int BX = X + Origin.x();
      const int SA = qAlpha(Row[X]);
      if (SA == 0 || BX < 0 || BX >= Below.width())
        continue;
      const double AB = qAlpha(BRow[BX]) / 255.0;
      const TRGB S = ColorOf(Row[X]);
      const TRGB M = Blend(Mode, ColorOf(BRow[BX]), S);
      auto Mix = [&](double SC, double MC) {
        return std::clamp(int(std::lround(((1 - AB) * SC + AB * std::clamp(MC, 0.0, 1.0)) * SA)), 0, SA);
      };
      Row[X] = qRgba(Mix(S.R, M.R), Mix(S.G, M.G), Mix(S.B, M.B), SA);
    }
  }
  return Result;
}

} // namespace

TVXGPLayer::TVXGPLayer(TVXGPCanvas &Canvas, float Opacity, bool Offscreen, const TRectF *Bounds)
  : FCanvas(Canvas), FOpacity(std::isfinite(Opacity) ? std::clamp(Opacity, 0.0f, 1.0f) : 0.0f)
{
  FBaseToken = Canvas.NextStateToken();
  FOuterPainter = Canvas.FPainter;
  FOuterBase = Canvas.FBase;
  FOuterOpacity = FOuterPainter->isActive() ? FOuterPainter->opacity() : 1;
  const QRect Area = Offscreen && FOuterPainter->isActive() ? VisibleArea(Bounds) : QRect();
  const std::int64_t Pixels = std::int64_t(Area.width()) * Area.height();
  if (!Area.isEmpty() && Canvas.FLayerPixels + Pixels <= MaxLayerPixels)
    Open(Area);
  else
    Fold();
}

TVXGPLayer::~TVXGPLayer()
{
  End();
}

QRect TVXGPLayer::VisibleArea(const TRectF *Bounds) const
{
  const QPaintDevice *Device = FOuterPainter->device();
  if (!Device)
    return QRect();
  QRectF Area(0, 0, Device->width(), Device->height());
  if (FOuterPainter->hasClipping())
    Area &= FOuterPainter->worldTransform().mapRect(FOuterPainter->clipBoundingRect());
  if (Bounds)
    Area &= QRectF(QPointF(Bounds->Left, Bounds->Top), QPointF(Bounds->Right, Bounds->Bottom)).normalized();
  return Area.toAlignedRect();
}

void TVXGPLayer::Open(const QRect &Area)
{
  FImage = QImage(Area.size(), QImage::Format_ARGB32_Premultiplied);
  if (FImage.isNull()) {
    Fold();
    return;
  }
  FImage.fill(Qt::transparent);
  FOrigin = Area.topLeft();
  const QTransform Shift = QTransform::fromTranslate(-FOrigin.x(), -FOrigin.y());
  FPainter = std::make_unique<QPainter>(&FImage);
  FPainter->setRenderHints(FOuterPainter->renderHints());
  if (FOuterPainter->hasClipping())
    FPainter->setClipPath(Shift.map(FOuterPainter->worldTransform().map(FOuterPainter->clipPath())));
  FPainter->setWorldTransform(FOuterPainter->worldTransform() * Shift);
  FCanvas.FPainter = FPainter.get();
  FCanvas.FBase = FOuterBase * Shift;
  FCanvas.FLayerPixels += std::int64_t(Area.width()) * Area.height();
}

void TVXGPLayer::Fold()
{
  if (FOuterPainter->isActive())
    FOuterPainter->setOpacity(FOuterOpacity * FOpacity);
}

void TVXGPLayer::End()
{
  if (FEnded)
    return;
  FEnded = true;
  FCanvas.RestoreState(FBaseToken);
  if (!FPainter) {
    if (FOuterPainter->isActive())
      FOuterPainter->setOpacity(FOuterOpacity);
    return;
  }
  FPainter->end();
  FCanvas.FPainter = FOuterPainter;
  FCanvas.FBase = FOuterBase;
  FCanvas.FLayerPixels -= std::int64_t(FImage.width()) * FImage.height();
  // Drawing inside may have moved the canvas matrix without a saved state.
  FCanvas.SetMatrix(FCanvas.GetMatrix());
}

void TVXGPLayer::Composite(TVXGPBlendMode Mode)
{
  const bool Offscreen = IsOffscreen();
  End();
  if (Offscreen)
    DrawPixels(FCanvas, FImage, FOrigin, FOpacity, Mode);
}

void TVXGPLayer::Finish()
{
  End();
}

void TVXGPLayer::DrawPixels(TVXGPCanvas &Canvas, const QImage &Image, QPoint Origin, float Opacity,
                            TVXGPBlendMode Mode)
{
  QPainter *Painter = Canvas.FPainter;
  if (!Painter->isActive() || Image.isNull() || !(Opacity > 0))
    return;
  QImage Source = Image;
  QPainter::CompositionMode Composition = CompositionMode(Mode);
  if (IsNonSeparable(Mode)) {
    // The raster engine has no such mode: the backdrop is read from the device, when it is an image.
    if (const auto *Backdrop = dynamic_cast<const QImage *>(Painter->device()))
      Source = BlendedSource(Image, *Backdrop, Origin, Mode);
  }
  Painter->save();
  Painter->setWorldTransform(QTransform());
  Painter->setOpacity(Painter->opacity() * std::min(Opacity, 1.0f));
  Painter->setCompositionMode(Composition);
  Painter->drawImage(Origin, Source);
  Painter->restore();
}

} // namespace vx
