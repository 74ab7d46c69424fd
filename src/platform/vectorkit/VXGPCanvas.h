#pragma once
// The vector canvas: a QPainter with its own current pen, brush and font, a matrix that stays the
// identity unless SetMatrix says otherwise, nesting state tokens and clip intersections. Drawing
// goes through virtual operations so that tests can record the calls in a subclass; the short
// FillRect/DrawRect forms call the long ones, and a subclass that overrides those brings the short
// forms back with a using-declaration.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/vectorkit/VXGPColor.h"
#include "platform/vectorkit/VXGPFont.h"
#include "platform/vectorkit/VXGPPaint.h"
#include "platform/vectorkit/VXGPPath.h"

#include <QString>
#include <QTransform>

#include <cstdint>
#include <memory>
#include <vector>

class QPaintDevice;
class QPainter;

namespace vx {

class TVXGPImage;

// Units of a source rectangle of DrawImage.
enum TVXGPUnit : std::uint8_t { guWorld, guDisplay, guPixel, guPoint, guInch, guDocument, guMillimeter };

// Mode numbers as the canvas takes them.
inline constexpr int VXSmoothingModeHighQuality = 2;
inline constexpr int VXInterpolationModeNearestNeighbor = 5;
inline constexpr int VXInterpolationModeHighQualityBicubic = 7;

class TVXGPCanvas;

// The clip of a canvas as an object: what it is told goes to the canvas's clip operations.
class VX_EXPORT TVXGPClip
{
public:
  explicit TVXGPClip(TVXGPCanvas &Canvas) : FCanvas(Canvas) {}
  void Combine(const TVXGPRegion &Region, TVXGPCombineMode Mode);
  void Combine(const TRectF &R, TVXGPCombineMode Mode);
  // Replaces the clip by the rectangle R.
  void SetBounds(const TRectF &R) { Combine(R, cmReplace); }
  TRectF GetBounds() const;
  bool IsVisible(const TPointF &P) const;
  void Reset();

private:
  TVXGPCanvas &FCanvas;
};

class VX_EXPORT TVXGPCanvas
{
public:
  // Paints on Device with a painter of its own, ended by the destructor.
  explicit TVXGPCanvas(QPaintDevice *Device);
  // Paints through Painter, which stays the caller's; the canvas leaves it in the state it found.
  explicit TVXGPCanvas(QPainter *Painter);
  TVXGPCanvas(const TVXGPCanvas &) = delete;
  TVXGPCanvas &operator=(const TVXGPCanvas &) = delete;
  virtual ~TVXGPCanvas();

  // A token for the whole state: pen, brush, font, matrix, clip and modes. RestoreState returns to
  // the state of Token and drops every later token; tokens nest in LIFO order.
  virtual int SaveState();
  virtual void RestoreState(int Token);

  const TMatrix &GetMatrix() const { return FMatrix; }
  virtual void SetMatrix(const TMatrix &M);
  // Takes the user space of what is drawn next to the canvas's coordinates (those of the identity
  // matrix). Gradients and bitmaps that are placed in user space go through it, whatever the
  // canvas matrix; the others ignore it. Part of the state.
  const TMatrix &GetPaintMatrix() const { return FPaintMatrix; }
  void SetPaintMatrix(const TMatrix &M) { FPaintMatrix = M; }

  // The current paints are the canvas's own copies.
  TVXGPPen &Pen() { return *FPen; }
  const TVXGPPen &Pen() const { return *FPen; }
  TVXGPBrush &Brush() { return *FBrush; }
  const TVXGPBrush &Brush() const { return *FBrush; }
  TVXGPFont &Font() { return *FFont; }
  const TVXGPFont &Font() const { return *FFont; }
  virtual void SetPen(const TVXGPPen &Pen);
  virtual void SetBrush(const TVXGPBrush &Brush);
  virtual void SetFont(const TVXGPFont &Font);

  // Combines the clip with R or Region, taken in the present matrix (cmIntersect narrows it).
  virtual void CombineClip(const TRectF &R, TVXGPCombineMode Mode);
  virtual void CombineClip(const TVXGPRegion &Region, TVXGPCombineMode Mode);
  void IntersectClip(const TRectF &R) { CombineClip(R, cmIntersect); }
  void IntersectClip(const TVXGPRegion &Region) { CombineClip(Region, cmIntersect); }
  virtual void ResetClip();
  TVXGPClip Clip() { return TVXGPClip(*this); }
  bool HasClip() const;
  // Inside the clip (in the present matrix's coordinates); everything is while there is none.
  bool IsVisibleClipPoint(const TPointF &P) const;
  TRectF GetClipBounds() const;

  // Fills with the current brush, prepared for the path's bounds, at Opacity in 0..1.
  virtual void FillPath(const TVXGPPath &Path, float Opacity = 1);
  // Strokes with the current pen.
  virtual void DrawPath(const TVXGPPath &Path, float Opacity = 1);
  // Rectangles, rounded as TVXGPPath::AddRectangle rounds them.
  virtual void FillRect(const TRectF &R, float Rx, float Ry, int Corners, float Opacity, int CornerType = 0);
  void FillRect(const TRectF &R, float Opacity = 1) { FillRect(R, 0, 0, 15, Opacity); }
  virtual void DrawRect(const TRectF &R, float Rx, float Ry, int Corners, float Opacity, int CornerType = 0);
  void DrawRect(const TRectF &R, float Opacity = 1) { DrawRect(R, 0, 0, 15, Opacity); }
  // A one-pixel dashed frame in Color, for focus and selection marks; the current pen is untouched.
  virtual void DrawDashRect(const TRectF &R, TVXGPColor Color = 0xFF000000);
  virtual void DrawLine(const TPointF &P1, const TPointF &P2, float Opacity = 1);
  // The whole image stretched into Dest.
  virtual void DrawImage(const TVXGPImage &Image, const TRectF &Dest, float Opacity = 1);
  // Source (in Unit, converted by the image's resolution) stretched into Dest, at Alpha in 0..1.
  virtual void DrawImage(const TVXGPImage &Image, const TRectF &Dest, const TRectF &Source, float Alpha,
                         TVXGPUnit Unit = guPixel);
  // Text in the current font and the font's brush, placed in R by Format (nullptr: the default).
  virtual void FillText(const TRectF &R, const QString &Text, const TVXGPStringFormat *Format, float Opacity = 1);
  virtual void FillText(const TRectF &R, const QString &Text, bool WordWrap, float Opacity,
                        TVXGPStringFormatFlags Flags, TVXGPStringAlignment HorizontalAlign,
                        TVXGPStringAlignment VerticalAlign);
  // Sets every pixel inside the clip to Color, ignoring the matrix and the blending.
  virtual void Clear(TVXGPColor Color);

  // Measurement in the current font.
  float TextWidth(const QString &Text) const;
  // Width of the ink of Text (0 for blanks only).
  float TextWidthTight(const QString &Text) const;
  // Advance width (blanks counted) and line height.
  TSizeF TextExtentF(const QString &Text) const;
  // The layout rectangle of Text under Format, from R's top-left corner (R's width wraps when set).
  void MeasureText(TRectF &R, const QString &Text, const TVXGPStringFormat *Format) const;

  // Smoothing 0 and 1 draw aliased, other modes anti-aliased. True when the mode was taken.
  virtual bool TrySmoothingMode(int Mode);
  int GetSmoothingMode() const { return FSmoothingMode; }
  // 5 picks nearest-neighbour sampling, 7 also averages areas when an image is scaled down.
  virtual void SetInterpolationMode(int Mode);
  int GetInterpolationMode() const { return FInterpolationMode; }
  // Recorded only: the raster engine has one compositing quality.
  virtual void SetCompositingQuality(int Mode) { FCompositingQuality = Mode; }
  int GetCompositingQuality() const { return FCompositingQuality; }
  // Hints 1 and 2 draw text aliased, the others anti-aliased.
  virtual void SetTextRenderingHint(int Hint) { FTextRenderingHint = Hint; }
  int GetTextRenderingHint() const { return FTextRenderingHint; }

  float GetPixelsPerInchX() const;
  float GetPixelsPerInchY() const;

  QPainter *Painter() const { return FPainter; }

private:
  struct TState;
  // A layer points the canvas at its own painter for its span (platform/vectorkit/VXGPLayer.h).
  friend class TVXGPLayer;

  QPainter *FPainter;
  std::unique_ptr<QPainter> FOwnPainter;
  std::unique_ptr<TVXGPPen> FPen;
  std::unique_ptr<TVXGPBrush> FBrush;
  std::unique_ptr<TVXGPFont> FFont;
  TMatrix FMatrix;
  TMatrix FPaintMatrix;
  int FSmoothingMode = 0;
  int FInterpolationMode = 0;
  int FCompositingQuality = 0;
  int FTextRenderingHint = 0;
  std::vector<TState> FStates;
  // The painter's transform when the canvas took it over; the canvas matrix applies on top of it.
  QTransform FBase;
  // Pixels held by the open layers of this canvas.
  std::int64_t FLayerPixels = 0;

  void Init();
  bool Active() const;
  // The token the next SaveState will answer.
  int NextStateToken() const;
  void Fill(const TVXGPPath &Path, float Opacity);
  void Stroke(const TVXGPPath &Path, float Opacity);
  void DrawImageRect(const TVXGPImage &Image, const TRectF &Dest, const TRectF &Source, float Alpha, TVXGPUnit Unit);
  void FillTextLines(const TRectF &R, const QString &Text, const TVXGPStringFormat &Format, bool WordWrap,
                     float Opacity);
  void CombineClipPath(const QPainterPath &Path, bool Infinite, TVXGPCombineMode Mode);
  void PaintPath(const QPainterPath &Path, const QBrush &Brush, const QPen &Pen, float Opacity, bool Smooth,
                 bool PlacedTile = false);
  // The paint matrix in the painter's logical coordinates, which the canvas matrix moves.
  QTransform UserToLogical() const;
};

// Saves the canvas state on construction and restores it on the way out, also by an exception.
class VX_EXPORT TVXGPCanvasStateGuard
{
public:
  explicit TVXGPCanvasStateGuard(TVXGPCanvas &Canvas) : FCanvas(Canvas), FToken(Canvas.SaveState()) {}
  ~TVXGPCanvasStateGuard() { FCanvas.RestoreState(FToken); }
  TVXGPCanvasStateGuard(const TVXGPCanvasStateGuard &) = delete;
  TVXGPCanvasStateGuard &operator=(const TVXGPCanvasStateGuard &) = delete;

private:
  TVXGPCanvas &FCanvas;
  int FToken;
};

} // namespace vx
