#pragma once
// Paint objects of the canvas: gradients, brushes and pens. They hold plain drawing state and turn
// it into QBrush/QPen when the canvas paints. Geometry arrives in device units, so a pen width is
// device pixels and a gradient is laid out over the rectangle the brush is prepared for.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "platform/geometry/VXTransform.h"
#include "platform/rtl/VXClasses.h"
#include "platform/vectorkit/VXGPColor.h"

#include <QBrush>
#include <QPainterPath>
#include <QPen>

#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

namespace vx {

class TVXGPCanvas;
class TVXGPBitmap;

// Kinds of brushes, and of pens, which paint through an inner brush.
enum TVXGPBrushKind : std::uint8_t { bkNone, bkSolid, bkGradient, bkBitmap };

enum TVXGPGradientStyle : std::uint8_t { gsLinear, gsRadial };

// Where the positions of a gradient live. glBoxFractions: fractions of the rectangle the brush is
// prepared for, the classic layout described at TVXGPGradient. glGradientSpace: coordinates of the
// gradient's own space, which the gradient's Transform takes to the user space of the painted
// element; the canvas's paint matrix takes that on to the device.
enum TVXGPGradientLayout : std::uint8_t { glBoxFractions, glGradientSpace };

// What a gradient laid out in its own space paints beyond its ends.
enum TVXGPGradientSpread : std::uint8_t { sdPad, sdReflect, sdRepeat };

enum TVXGPLineCap : std::uint8_t {
  lcFlat, lcSquare, lcRound, lcTriangle,
  lcNoAnchor, lcSquareAnchor, lcRoundAnchor, lcDiamondAnchor, lcArrowAnchor
};

enum TVXGPLineJoin : std::uint8_t { ljMiter, ljBevel, ljRound, ljMiterClipped };

enum TVXGPDashStyle : std::uint8_t { dsSolid, dsDash, dsDot, dsDashDot, dsDashDotDot, dsCustom };

// One colour stop. Offsets are not limited to 0..1: stops beyond the ends stretch the gradient.
struct VX_EXPORT TVXGPGradientPoint
{
  float Offset = 0;
  TVXGPColor Color = 0;
};

// The stops of a gradient in the order they were added (the brush sorts them when it paints).
class VX_EXPORT TVXGPGradientPoints : public TPersistent
{
public:
  QString ClassName() const override { return QStringLiteral("TVXGPGradientPoints"); }
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  // The new point stays at its address until Clear (points are kept in a deque).
  TVXGPGradientPoint &Add();
  TVXGPGradientPoint &Add(float Offset, TVXGPColor Color);
  void Clear();
  int GetCount() const { return int(FPoints.size()); }
  int Count() const { return GetCount(); }
  // Raises EListError for an index out of range.
  TVXGPGradientPoint &GetPoint(int Index);
  const TVXGPGradientPoint &GetPoint(int Index) const;
  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();
  // Sends OnChange, or defers it to the last EndUpdate.
  void Changed();

private:
  std::deque<TVXGPGradientPoint> FPoints;
  int FUpdateCount = 0;
  bool FPending = false;
};

// Centre, focus (as an offset from the centre) and radii of a radial gradient, in fractions of the
// painted rectangle; Scale is the radii in half-sizes of that rectangle, so (1, 1) touches its sides.
class VX_EXPORT TVXGPRadialTransform : public TPersistent
{
public:
  TVXGPRadialTransform();
  QString ClassName() const override { return QStringLiteral("TVXGPRadialTransform"); }
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  TVXPosition &Center() { return FCenter; }
  const TVXPosition &Center() const { return FCenter; }
  TVXPosition &FocalOffset() { return FFocalOffset; }
  const TVXPosition &FocalOffset() const { return FFocalOffset; }
  TVXPosition &Scale() { return FScale; }
  const TVXPosition &Scale() const { return FScale; }

private:
  TVXPosition FCenter{0.5f, 0.5f};
  TVXPosition FFocalOffset;
  TVXPosition FScale{1, 1};
};

// A linear or radial gradient. Start and End (linear) run from offset 0 to offset 1. For the radial
// style offset 0 is the outer edge and offset 1 the focus.
//
// In the gradient-space layout positions are coordinates: Start and End, Center, FocalOffset (the
// focus less the centre), Radius and FocalRadius; offsets run from the start (the focal circle)
// at 0 to the end (the outer circle) at 1, points at one offset make a hard step, and Spread says
// what lies beyond. A vector of length 0 or a radius of 0 paints the last colour.
class VX_EXPORT TVXGPGradient : public TPersistent
{
public:
  TVXGPGradient();
  QString ClassName() const override { return QStringLiteral("TVXGPGradient"); }
  void Assign(const TPersistent *Source) override;

  // Raised by every change of the style, the positions or the points.
  TNotifyEvent OnChange;

  TVXGPGradientStyle GetStyle() const { return FStyle; }
  void SetStyle(TVXGPGradientStyle Value);
  TVXGPGradientPoints &Points() { return FPoints; }
  const TVXGPGradientPoints &Points() const { return FPoints; }
  TVXPosition &Start() { return FStart; }
  const TVXPosition &Start() const { return FStart; }
  TVXPosition &End() { return FEnd; }
  const TVXPosition &End() const { return FEnd; }
  TVXGPRadialTransform &RadialTransform() { return FRadialTransform; }
  const TVXGPRadialTransform &RadialTransform() const { return FRadialTransform; }

  TVXGPGradientLayout GetLayout() const { return FLayout; }
  void SetLayout(TVXGPGradientLayout Value);
  // The gradient-space layout's own fields.
  const TMatrix &GetTransform() const { return FTransform; }
  void SetTransform(const TMatrix &Value);
  TVXGPGradientSpread GetSpread() const { return FSpread; }
  void SetSpread(TVXGPGradientSpread Value);
  float GetRadius() const { return FRadius; }
  void SetRadius(float Value);
  float GetFocalRadius() const { return FFocalRadius; }
  void SetFocalRadius(float Value);

  // The gradient laid out over Bounds (opacity is applied by the canvas). No stops give no brush,
  // one stop a solid one; beyond its ends the gradient pads with the end colours.
  QBrush CreateQBrush(const TRectF &Bounds) const;
  // The same, where a gradient in its own space goes through Transform and then UserToLogical,
  // the user space of the painted element in the painter's logical coordinates.
  QBrush CreateQBrush(const TRectF &Bounds, const QTransform &UserToLogical) const;

private:
  TVXGPGradientStyle FStyle = gsLinear;
  TVXGPGradientPoints FPoints;
  TVXPosition FStart;
  TVXPosition FEnd{1, 0};
  TVXGPRadialTransform FRadialTransform;
  TVXGPGradientLayout FLayout = glBoxFractions;
  TMatrix FTransform = VXIdentityMatrix;
  TVXGPGradientSpread FSpread = sdPad;
  float FRadius = 0;
  float FFocalRadius = 0;

  QBrush CreateGradientSpaceQBrush(const QTransform &UserToLogical) const;

  void Changed();
};

// Fill state: solid colour, gradient or tiled bitmap. Setters compare first and send Change only on
// a real change. A bitmap is shared with whoever handed it over.
class VX_EXPORT TVXGPBrush : public TPersistent
{
public:
  explicit TVXGPBrush(TVXGPCanvas *Canvas = nullptr, TVXGPBrushKind Kind = bkSolid,
                      TVXGPColor Color = 0xFF000000);
  ~TVXGPBrush() override;
  QString ClassName() const override { return QStringLiteral("TVXGPBrush"); }
  // Copies colour, kind, defaults, gradient and bitmap from another brush.
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  TVXGPCanvas *GetCanvas() const { return FCanvas; }
  TVXGPColor GetColor() const { return FColor; }
  virtual void SetColor(TVXGPColor Value);
  TVXGPBrushKind GetKind() const { return FKind; }
  virtual void SetKind(TVXGPBrushKind Value);
  TVXGPColor GetDefaultColor() const { return FDefaultColor; }
  void SetDefaultColor(TVXGPColor Value) { FDefaultColor = Value; }
  TVXGPBrushKind GetDefaultKind() const { return FDefaultKind; }
  void SetDefaultKind(TVXGPBrushKind Value) { FDefaultKind = Value; }

  // The brush's own gradient; changes to it are changes of the brush. Most brushes are solid, so
  // the gradient is made on first use (until then it reads as an empty linear one).
  TVXGPGradient &GetGradient();
  const TVXGPGradient &GetGradient() const;
  TVXGPGradientPoints &GradientPoints() { return GetGradient().Points(); }
  // Copies Gradient into the brush's own gradient; the kind is left to the caller.
  void SetGradient(const TVXGPGradient *Gradient);
  const std::shared_ptr<TVXGPBitmap> &GetBitmap() const { return FBitmap; }
  // Takes a share of Bitmap (nullptr for none); the kind is left to the caller.
  void SetBitmap(std::shared_ptr<TVXGPBitmap> Bitmap);
  // Places the bitmap's pixels in the user space of the painted element, from where the canvas's
  // paint matrix takes them to the device; without a placement it tiles from the canvas origin.
  void SetBitmapPlacement(const TMatrix &PixelsToUser);
  bool HasBitmapPlacement() const { return FBitmapPlaced; }
  const TMatrix &GetBitmapPlacement() const { return FBitmapPlacement; }

  // Lays a gradient out over Bounds, the rectangle of what is about to be filled.
  void Prepare(const TRectF &Bounds) { FPreparedRect = Bounds; }
  const TRectF &GetPreparedRect() const { return FPreparedRect; }
  // The Qt brush for the prepared rectangle: Qt::NoBrush for kind none or a missing bitmap. A bitmap
  // tiles from the origin of the canvas's coordinates.
  QBrush CreateQBrush() const;
  // The same, where paints placed in user space go through UserToLogical (see TVXGPGradient).
  QBrush CreateQBrush(const QTransform &UserToLogical) const;

protected:
  virtual void Change();

private:
  TVXGPCanvas *FCanvas;
  TVXGPColor FColor;
  TVXGPBrushKind FKind;
  TVXGPColor FDefaultColor;
  TVXGPBrushKind FDefaultKind;
  std::unique_ptr<TVXGPGradient> FGradient;
  std::shared_ptr<TVXGPBitmap> FBitmap;
  TMatrix FBitmapPlacement = VXIdentityMatrix;
  bool FBitmapPlaced = false;
  TRectF FPreparedRect;
};

// Stroke state. Thickness is in device units. The dash pattern and its offset are in units of the
// pen width, as QPen takes them; SetDash gives the stock patterns, SetCustomDash the custom one.
class VX_EXPORT TVXGPPen : public TPersistent
{
public:
  explicit TVXGPPen(TVXGPCanvas *Canvas = nullptr, TVXGPBrushKind Kind = bkSolid,
                    TVXGPColor Color = 0xFF000000);
  ~TVXGPPen() override;
  QString ClassName() const override { return QStringLiteral("TVXGPPen"); }
  // Copies all stroke state, the inner brush included, from another pen.
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  TVXGPCanvas *GetCanvas() const { return FCanvas; }
  TVXGPColor GetColor() const { return FColor; }
  virtual void SetColor(TVXGPColor Value);
  TVXGPBrushKind GetKind() const { return FKind; }
  virtual void SetKind(TVXGPBrushKind Value);
  TVXGPColor GetDefaultColor() const { return FDefaultColor; }
  void SetDefaultColor(TVXGPColor Value) { FDefaultColor = Value; }
  TVXGPBrushKind GetDefaultKind() const { return FDefaultKind; }
  void SetDefaultKind(TVXGPBrushKind Value) { FDefaultKind = Value; }
  float GetThickness() const { return FThickness; }
  void SetThickness(float Value);
  TVXGPLineCap GetStartCap() const { return FStartCap; }
  void SetStartCap(TVXGPLineCap Value);
  TVXGPLineCap GetEndCap() const { return FEndCap; }
  void SetEndCap(TVXGPLineCap Value);
  TVXGPLineCap GetDashCap() const { return FDashCap; }
  void SetDashCap(TVXGPLineCap Value);
  TVXGPLineJoin GetJoin() const { return FJoin; }
  void SetJoin(TVXGPLineJoin Value);
  float GetMiterLimit() const { return FMiterLimit; }
  void SetMiterLimit(float Value);

  TVXGPDashStyle GetDash() const { return FDash; }
  // A stock style; dsCustom keeps the present pattern.
  void SetDash(TVXGPDashStyle Value);
  const std::vector<float> &GetDashArray() const { return FDashArray; }
  float GetDashOffset() const { return FDashOffset; }
  void SetDashOffset(float Value);
  // Dashes[0..High] become the custom pattern (dash, gap, ...), Offset its offset; style dsCustom.
  // An empty pattern (High below 0) falls back to a solid line.
  void SetCustomDash(const std::vector<float> &Dashes, int High, float Offset);

  // The inner brush paints gradient and bitmap strokes (kinds 2 and 3).
  TVXGPBrush &GetBrush() { return *FBrush; }
  const TVXGPBrush &GetBrush() const { return *FBrush; }

  // The Qt pen; Bounds is the rectangle a gradient or bitmap stroke is laid out over, UserToLogical
  // places paints laid out in user space (see TVXGPBrush).
  QPen CreateQPen(const TRectF &Bounds) const;
  QPen CreateQPen(const TRectF &Bounds, const QTransform &UserToLogical) const;
  // The geometry of the stroke (width, caps, joins, dashes) on a plain brush, whatever the kind.
  QPen CreateQOutlinePen() const;

protected:
  virtual void Change();

private:
  TVXGPCanvas *FCanvas;
  TVXGPColor FColor;
  TVXGPBrushKind FKind;
  TVXGPColor FDefaultColor;
  TVXGPBrushKind FDefaultKind;
  float FThickness = 1;
  TVXGPLineCap FStartCap = lcFlat;
  TVXGPLineCap FEndCap = lcFlat;
  TVXGPLineCap FDashCap = lcFlat;
  TVXGPLineJoin FJoin = ljMiter;
  float FMiterLimit = 10;
  TVXGPDashStyle FDash = dsSolid;
  std::vector<float> FDashArray;
  float FDashOffset = 0;
  std::unique_ptr<TVXGPBrush> FBrush;
};

// Qt forms of colours and matrices, shared by the canvas units.
VX_EXPORT QColor VXToQColor(TVXGPColor Color);
VX_EXPORT QTransform VXToQTransform(const TMatrix &M);
// Drops the dashes of Pen when stroking Path would take an absurd number of them (a hair-thin
// dashed pen over a long path), so that no stroke can exhaust time or memory.
VX_EXPORT void VXLimitDashes(QPen &Pen, const QPainterPath &Path);

} // namespace vx
