#pragma once
// Offscreen layers of a canvas: for the span of a TVXGPLayer, everything drawn on the canvas goes
// into a transparent raster instead of the canvas's device; Composite then draws that raster onto
// the device once, at an opacity and with a blend mode. Overlapping parts of what was drawn inside
// thus blend with each other first and with the backdrop only as a whole (group opacity, blend
// modes and isolated groups). A caller that needs the pixels themselves (a mask, say) ends the
// layer with Finish, works on Pixels and draws the result with DrawPixels.
//
// The layer covers the device pixels that can still show: the canvas clip cut to the device, and
// to the caller's bounds when given. Inside, the canvas keeps its matrix, clip, paints and modes,
// so drawing code does not know it is in a layer. States saved inside a layer must be restored
// inside it; ending the layer restores any that are left.
//
// Memory is bounded: the open layers of one canvas hold at most MaxLayerPixels pixels together.
// A layer that would pass the budget (or covers nothing) is not allocated: it is "folded", and
// Composite then only multiplies the canvas opacity for its span, which gives the same picture
// where nothing inside overlaps. The same folding serves callers that know there is at most one
// painted part inside.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"

#include <QImage>
#include <QPoint>
#include <QTransform>

#include <cstdint>
#include <memory>

class QPainter;

namespace vx {

class TVXGPCanvas;

// How a layer is combined with what lies below it: the separable and non-separable blend modes
// of CSS compositing.
enum TVXGPBlendMode : std::uint8_t {
  bmNormal, bmMultiply, bmScreen, bmOverlay, bmDarken, bmLighten, bmColorDodge, bmColorBurn, bmHardLight,
  bmSoftLight, bmDifference, bmExclusion, bmHue, bmSaturation, bmColor, bmLuminosity
};

class VX_EXPORT TVXGPLayer
{
public:
  // 64 M pixels (256 MB) for all open layers of a canvas: deep nests of translucent groups on a
  // large device fold the innermost layers instead of exhausting memory.
  static constexpr std::int64_t MaxLayerPixels = std::int64_t(1) << 26;

  // Opens a layer that Composite will draw at Opacity (0..1). Offscreen false asks for a folded
  // layer from the start; Bounds (device pixels) narrows an offscreen layer to that part.
  TVXGPLayer(TVXGPCanvas &Canvas, float Opacity, bool Offscreen = true, const TRectF *Bounds = nullptr);
  // Gives the canvas back without drawing the layer, when neither Composite nor Finish ran.
  ~TVXGPLayer();
  TVXGPLayer(const TVXGPLayer &) = delete;
  TVXGPLayer &operator=(const TVXGPLayer &) = delete;

  // True when drawing goes into a raster of its own; false for a folded layer.
  bool IsOffscreen() const { return FPainter != nullptr; }

  // Ends the layer and draws it onto the canvas with Mode, inside the canvas clip. A folded layer
  // only gives the canvas its opacity back (it cannot blend).
  void Composite(TVXGPBlendMode Mode = bmNormal);
  // Ends the layer and keeps its pixels for the caller (null for a folded layer).
  void Finish();
  // The layer's raster (premultiplied ARGB) and the device position of its top-left pixel.
  QImage &Pixels() { return FImage; }
  QPoint Origin() const { return FOrigin; }
  // Draws Image with its top-left pixel at the device position Origin onto Canvas, at Opacity with
  // Mode, inside the canvas clip, as Composite draws a layer.
  static void DrawPixels(TVXGPCanvas &Canvas, const QImage &Image, QPoint Origin, float Opacity,
                         TVXGPBlendMode Mode);

private:
  // The device area the layer may cover, empty when nothing can show.
  QRect VisibleArea(const TRectF *Bounds) const;
  void Open(const QRect &Area);
  void Fold();
  void End();

  TVXGPCanvas &FCanvas;
  float FOpacity;
  QImage FImage;
  QPoint FOrigin;
  std::unique_ptr<QPainter> FPainter;
  QPainter *FOuterPainter = nullptr;
  QTransform FOuterBase;
  int FBaseToken = 0;
  qreal FOuterOpacity = 1;
  bool FEnded = false;
};

} // namespace vx
