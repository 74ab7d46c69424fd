#pragma once
// The controls that show a document component on the main thread: TVXSVGImage, transparent, and
// TVXSVGScreen, which fills its Color under the picture. Both draw either straight from the tree
// at each paint or through a cached bitmap. The cache is dropped by any change of document, root,
// wrap mode, scale, quality or a growth of the control past it, and is rendered again at the next
// paint, not at the change: many changes between two paints cost one rendering, and a paint with
// nothing changed is one blit.
#include "components/VXSVGDocumentComponent.h"
#include "platform/controls/VXControls.h"
#include "platform/geometry/VXTransform.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "values/VXSVGVocabulary.h"

#include <functional>

namespace vx {

class TSVGGraphicElement;
class TVXGPCanvas;

using TSVGElementClickEvent = std::function<void(TObject *Sender, TSVGGraphicElement *Element)>;

// The value names of the published wrap mode and find options, in the order of the values.
extern const QStringList WrapModeNames;
extern const QStringList FindOptionNames;

// Where DrawBitmapWrapped puts a bitmap of Width by Height in Rect (at the origin): a click must
// find what the bitmap shows, which a fitted picture may show larger than a direct drawing would.
TRectF BitmapWrapRect(int Width, int Height, const TRectF &Rect, TSVGImageWrapMode WrapMode);
// The element of Root under Point when Root is shown in Placed (the first tile for iwTile).
TSVGGraphicElement *ElementAtWrapped(TSVGGraphicElement &Root, const TRectF &Placed, TPointF Point,
                                     TSVGImageWrapMode WrapMode, TSVGFindOptions Options);

// The common body of the two controls over the control base TBase (transparent or coloured).
template <typename TBase>
class TVXSVGCustomImage : public TBase, public ISVGViewer, public IVXMatrixProvider
{
public:
  explicit TVXSVGCustomImage(QWidget *Parent = nullptr, TComponent *Owner = nullptr);
  ~TVXSVGCustomImage() override;
  static const TPropertyTable &Properties();
  const TPropertyTable *PublishedProperties() const override { return &Properties(); }

  TComponent *GetComponent() override { return this; }
  void SVGChanged(TVXSVGDocument *Sender) override { DoSVGChanged(Sender); }
  // The transform's matrix, times the parent's absolute matrix when the parent provides one.
  TMatrix GetAbsoluteMatrix() const override;

  TVXSVGDocument *SVGDocument() const { return FSVGDocument; }
  // Leaves the old component's viewers and joins the new one's.
  void SetSVGDocument(TVXSVGDocument *Value);
  const QString &SVGRootID() const { return FSVGRootID; }
  // The element shown: empty for the whole document.
  void SetSVGRootID(const QString &Value);
  // The element drawn: nil without a document component or when SVGRootID names no graphic element.
  TSVGGraphicElement *SVGRoot() const { return FSVGRoot; }
  TSVGImageWrapMode WrapMode() const { return FWrapMode; }
  void SetWrapMode(TSVGImageWrapMode Value);
  float Opacity() const { return FOpacity; }
  void SetOpacity(float Value);
  TVXTransform &Transform() { return FTransform; }
  void SetTransform(const TVXTransform &Value) { FTransform.Assign(&Value); }
  float ScaleOriginal() const { return FScaleOriginal; }
  // Clamped to 0.01 .. 100.
  void SetScaleOriginal(float Value);
  bool Buffered() const { return FBuffered; }
  void SetBuffered(bool Value);
  int Quality() const { return FQuality; }
  // Supersampling factor of the cached bitmap, clamped to 1 .. 8.
  void SetQuality(int Value);
  bool CursorTracking() const { return FCursorTracking; }
  void SetCursorTracking(bool Value);
  TSVGFindOptions FindOptions() const { return FFindOptions; }
  void SetFindOptions(TSVGFindOptions Value) { FFindOptions = Value; }
  // The cursor shown where the picture names none.
  void SetCursor(TCursor Value) override;

  // True when the picture goes through the bitmap: asked for, or needed for opacity and tiles.
  virtual bool IsBuffered() const;
  // The cached picture, rendered first when a change dropped it.
  const TVXGPBitmap &GetBitmap();
  // The element under the point of the control, as a click finds it.
  TSVGGraphicElement *ElementAt(int X, int Y);

  TSVGElementClickEvent OnClickElement;
  // Around each paint, also when there is nothing to draw.
  TNotifyEvent OnPainting;
  TNotifyEvent OnPaint;

protected:
  virtual void DoSVGChanged(TObject *Sender);
  virtual TSVGGraphicElement *GetSVGRoot() const;
  virtual void UpdateBitmap();
  virtual void DoPaint(TVXGPCanvas &Canvas);
  virtual void DoElementClick(int X, int Y);
  virtual void SetCursorFromSVG(int X, int Y);
  // What the bitmap holds under the picture; transparent here.
  virtual TVXGPColor BitmapBackground() const { return 0; }

  void Paint(QPainter &Painter) override;
  void Resize() override;
  void MouseMove(TShiftState Shift, int X, int Y) override;
  void MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y) override;
  void Notification(TComponent *AComponent, TOperation Operation) override;

private:
  // LeaveOld is false when the old component is being destroyed and must not be called.
  void AttachDocument(TVXSVGDocument *Value, bool LeaveOld);
  void DropBitmap();

  TVXGPBitmap FBitmap;
  QString FSVGRootID;
  TVXSVGDocument *FSVGDocument = nullptr;
  TSVGImageWrapMode FWrapMode = iwFit;
  TSVGGraphicElement *FSVGRoot = nullptr;
  float FOpacity = 1.0f;
  TVXTransform FTransform;
  float FScaleOriginal = 1.0f;
  bool FBuffered = true;
  TSVGFindOptions FFindOptions;
  bool FCursorTracking = false;
  TCursor FDefaultCursor = crDefault;
  bool FNeedBitmapUpdate = false;
  int FQuality = 1;
};

class TVXSVGImage : public TVXSVGCustomImage<TVXCustomTransparentGraphicControl>
{
public:
  using TVXSVGCustomImage::TVXSVGCustomImage;
  QString ClassName() const override { return QStringLiteral("TVXSVGImage"); }
};

// The opaque sibling: the picture's transparent parts show Color, not what lies behind.
class TVXSVGScreen : public TVXSVGCustomImage<TGraphicControl>
{
public:
  using TVXSVGCustomImage::TVXSVGCustomImage;
  QString ClassName() const override { return QStringLiteral("TVXSVGScreen"); }

protected:
  TVXGPColor BitmapBackground() const override { return Color(); }
};

extern template class TVXSVGCustomImage<TVXCustomTransparentGraphicControl>;
extern template class TVXSVGCustomImage<TGraphicControl>;

} // namespace vx
