#include "components/VXSVGImageControls.h"

#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGDataURI.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace vx {

const QStringList WrapModeNames = {QStringLiteral("iwOriginal"), QStringLiteral("iwFit"), QStringLiteral("iwStretch"),
                                   QStringLiteral("iwTile"), QStringLiteral("iwCenter")};
const QStringList FindOptionNames = {QStringLiteral("foFindHiddenElements"), QStringLiteral("foFindGroups"),
                                     QStringLiteral("foFindNoRecursion"), QStringLiteral("foUseBoundingBox"),
                                     QStringLiteral("foFindNonFilled"), QStringLiteral("foFindDisabled")};

namespace {

bool IsIdentity(const TMatrix &M)
{
  return VXMatrixEquals(M, VXIdentityMatrix, 0.00001f);
}

// The matrix DrawSVGWrapped draws Element with in R: a document maps its view box by its own rules.
TMatrix FitMatrix(const TSVGGraphicElement &Element, const TRectF &R)
{
  const TMatrix M = Element.FitToRect(R);
  return dynamic_cast<const TSVGDocument *>(&Element) ? Element.GetViewMatrix(M, R) : M;
}

// Folds a coordinate into the first tile.
float IntoTile(float V, float Size)
{
  return Size > 0 ? V - std::trunc(V / Size) * Size : V;
}

} // namespace

TRectF BitmapWrapRect(int Width, int Height, const TRectF &Rect, TSVGImageWrapMode WrapMode)
{
  TRectF R{0, 0, float(Width), float(Height)};
  switch (WrapMode) {
  case iwFit:
    FitRect(R, Rect, false);
    return TRectF{std::nearbyint(R.Left), std::nearbyint(R.Top), std::nearbyint(R.Right), std::nearbyint(R.Bottom)};
  case iwStretch:
    return TRectF{0, 0, Rect.Width(), Rect.Height()};
  case iwCenter:
    RectCenter(R, TRectF{0, 0, Rect.Width(), Rect.Height()});
    return R;
  default:
    return R;
  }
}

TSVGGraphicElement *ElementAtWrapped(TSVGGraphicElement &Root, const TRectF &Placed, TPointF Point,
                                     TSVGImageWrapMode WrapMode, TSVGFindOptions Options)
{
  if (Placed.Width() <= 0 || Placed.Height() <= 0)
    return nullptr;
  if (WrapMode == iwTile)
    Point = TPointF{IntoTile(Point.X, Placed.Width()), IntoTile(Point.Y, Placed.Height())};
  // Nothing is painted: the canvas only carries the pen and the clip of the tests.
  QImage Scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Scratch);
  return Root.ElementAtPos(FitMatrix(Root, Placed), Canvas, Point, Placed, Options);
}

template <typename TBase>
TVXSVGCustomImage<TBase>::TVXSVGCustomImage(QWidget *Parent, TComponent *Owner) : TBase(Parent, Owner)
{
  FTransform.OnChanged = [this](TObject *) { this->Invalidate(); };
}

template <typename TBase>
TVXSVGCustomImage<TBase>::~TVXSVGCustomImage()
{
  AttachDocument(nullptr, true);
  this->Destroying();
}

template <typename TBase>
const TPropertyTable &TVXSVGCustomImage<TBase>::Properties()
{
  using C = TVXSVGCustomImage<TBase>;
  static const TPropertyTable Table(&TBase::Properties(), {
    PublishedValue<C>(QStringLiteral("Buffered"), tkBoolean, QStringLiteral("Boolean"), &C::Buffered, &C::SetBuffered,
                      StoredUnless<C>(&C::Buffered, true)),
    PublishedValue<C>(QStringLiteral("Opacity"), tkFloat, QStringLiteral("Single"), &C::Opacity, &C::SetOpacity,
                      StoredUnless<C>(&C::Opacity, 1.0f)),
    PublishedValue<C>(QStringLiteral("Quality"), tkInteger, QStringLiteral("Integer"), &C::Quality, &C::SetQuality,
                      StoredUnless<C>(&C::Quality, 1)),
    PublishedValue<C>(QStringLiteral("CursorTracking"), tkBoolean, QStringLiteral("Boolean"), &C::CursorTracking,
                      &C::SetCursorTracking, StoredUnless<C>(&C::CursorTracking, false)),
    PublishedObject<C>(QStringLiteral("Transform"), QStringLiteral("TVXTransform"),
                       [](C &Control) -> TPersistent & { return Control.Transform(); }),
    PublishedReference<C, TVXSVGDocument>(QStringLiteral("SVGDocument"), QStringLiteral("TVXSVGDocument"),
                                          &C::SVGDocument, &C::SetSVGDocument),
    PublishedValue<C>(QStringLiteral("SVGRootID"), tkString, QStringLiteral("string"), &C::SVGRootID, &C::SetSVGRootID,
                      StoredUnless<C>(&C::SVGRootID, QString())),
    PublishedValue<C>(QStringLiteral("WrapMode"), tkEnumeration, QStringLiteral("TSVGImageWrapMode"), &C::WrapMode,
                      &C::SetWrapMode, StoredUnless<C>(&C::WrapMode, iwFit), WrapModeNames),
    PublishedValue<C>(QStringLiteral("ScaleOriginal"), tkFloat, QStringLiteral("Single"), &C::ScaleOriginal,
                      &C::SetScaleOriginal, StoredUnless<C>(&C::ScaleOriginal, 1.0f)),
    PublishedValue<C>(QStringLiteral("FindOptions"), tkSet, QStringLiteral("TSVGFindOptions"), &C::FindOptions,
                      &C::SetFindOptions, StoredUnless<C>(&C::FindOptions, TSVGFindOptions()), FindOptionNames),
  });
  return Table;
}

template <typename TBase>
TMatrix TVXSVGCustomImage<TBase>::GetAbsoluteMatrix() const
{
  const TMatrix Own = FTransform.Matrix();
  if (auto *Provider = dynamic_cast<const IVXMatrixProvider *>(this->parentWidget()))
    return VXMatrixMultiply(Own, Provider->GetAbsoluteMatrix());
  return Own;
}

template <typename TBase>
TSVGGraphicElement *TVXSVGCustomImage<TBase>::GetSVGRoot() const
{
  return FSVGDocument ? FSVGDocument->SVGRoot(FSVGRootID) : nullptr;
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::DropBitmap()
{
  FNeedBitmapUpdate = true;
  this->Invalidate();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::AttachDocument(TVXSVGDocument *Value, bool LeaveOld)
{
  if (Value == FSVGDocument)
    return;
  if (FSVGDocument && LeaveOld)
    FSVGDocument->Viewers().Remove(this);
  FSVGDocument = Value;
  FSVGRoot = GetSVGRoot();
  if (FSVGDocument)
    FSVGDocument->Viewers().Add(this);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetSVGDocument(TVXSVGDocument *Value)
{
  if (Value == FSVGDocument)
    return;
  AttachDocument(Value, true);
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::Notification(TComponent *AComponent, TOperation Operation)
{
  TBase::Notification(AComponent, Operation);
  if (Operation == opRemove && AComponent == FSVGDocument) {
    AttachDocument(nullptr, false);
    DropBitmap();
  }
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetSVGRootID(const QString &Value)
{
  if (Value == FSVGRootID)
    return;
  FSVGRootID = Value;
  FSVGRoot = GetSVGRoot();
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::DoSVGChanged(TObject *)
{
  FSVGRoot = GetSVGRoot();
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetWrapMode(TSVGImageWrapMode Value)
{
  if (Value == FWrapMode)
    return;
  FWrapMode = Value;
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetOpacity(float Value)
{
  if (Value == FOpacity)
    return;
  FOpacity = Value;
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetScaleOriginal(float Value)
{
  Value = Value <= 0 ? 0.01f : std::min(Value, 100.0f);
  if (Value == FScaleOriginal)
    return;
  FScaleOriginal = Value;
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetBuffered(bool Value)
{
  if (Value == FBuffered)
    return;
  FBuffered = Value;
  FNeedBitmapUpdate = Value;
  this->Invalidate();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetQuality(int Value)
{
  Value = std::clamp(Value, 1, 8);
  if (Value == FQuality)
    return;
  FQuality = Value;
  DropBitmap();
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetCursorTracking(bool Value)
{
  FCursorTracking = Value;
  this->setMouseTracking(Value);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetCursor(TCursor Value)
{
  FDefaultCursor = Value;
  TBase::SetCursor(Value);
}

template <typename TBase>
bool TVXSVGCustomImage<TBase>::IsBuffered() const
{
  return FBuffered || FOpacity < 1.0f || FWrapMode == iwTile;
}

template <typename TBase>
const TVXGPBitmap &TVXSVGCustomImage<TBase>::GetBitmap()
{
  if (FNeedBitmapUpdate)
    UpdateBitmap();
  return FBitmap;
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::UpdateBitmap()
{
  FNeedBitmapUpdate = false;
  if (!FSVGRoot) {
    FBitmap.SetSize(0, 0);
    return;
  }
  const TRectF B = FSVGRoot->GetBoundsRect(VXIdentityMatrix);
  if (!IsBuffered() || this->Width() == 0 || this->Height() == 0 || B.Width() == 0 || B.Height() == 0)
    return;
  const TSizeF Size = ScaleSize(float(this->Width() * FQuality), float(this->Height() * FQuality), B.Width(),
                                B.Height(), FWrapMode, FScaleOriginal);
  FBitmap.SetSize(int(std::lround(Size.cx)), int(std::lround(Size.cy)));
  if (const TVXGPColor Background = BitmapBackground())
    FBitmap.GetCanvas().Clear(Background);
  DrawSVGToBitmap(FBitmap, FSVGRoot, VXSmoothingModeHighQuality, false);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::Paint(QPainter &Painter)
{
  if (OnPainting)
    OnPainting(this);
  {
    TVXGPCanvas Canvas(&Painter);
    DoPaint(Canvas);
  }
  if (OnPaint)
    OnPaint(this);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::DoPaint(TVXGPCanvas &Canvas)
{
  const TMatrix M = GetAbsoluteMatrix();
  if (!IsIdentity(M))
    Canvas.SetMatrix(M);
  const TRectF R{0, 0, float(this->Width()), float(this->Height())};
  if (this->DesignMode())
    Canvas.DrawDashRect(TRectF{R.Left + 0.5f, R.Top + 0.5f, R.Right - 0.5f, R.Bottom - 0.5f});
  if (IsBuffered()) {
    if (FQuality > 1)
      Canvas.SetInterpolationMode(VXInterpolationModeHighQualityBicubic);
    DrawBitmapWrapped(Canvas, GetBitmap(), R, FWrapMode, FOpacity);
  } else if (FSVGRoot) {
    DrawSVGWrapped(Canvas, FSVGRoot, R, FWrapMode, FScaleOriginal);
  }
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::Resize()
{
  TBase::Resize();
  // Fitted and stretched pictures follow the control's size; a control that shrinks, or grows
  // within the cached bitmap, scales the bitmap instead of rendering anew.
  if ((FWrapMode == iwFit || FWrapMode == iwStretch) && FSVGRoot && !FNeedBitmapUpdate) {
    const TRectF B = FSVGRoot->GetBoundsRect(VXIdentityMatrix);
    const TSizeF Needed = ScaleSize(float(this->Width() * FQuality), float(this->Height() * FQuality), B.Width(),
                                    B.Height(), FWrapMode, FScaleOriginal);
    if (std::lround(Needed.cx) > FBitmap.GetWidth() || std::lround(Needed.cy) > FBitmap.GetHeight())
      FNeedBitmapUpdate = true;
  }
  this->Invalidate();
}

template <typename TBase>
TSVGGraphicElement *TVXSVGCustomImage<TBase>::ElementAt(int X, int Y)
{
  if (!FSVGRoot)
    return nullptr;
  const TRectF R{0, 0, float(this->Width()), float(this->Height())};
  TRectF G;
  if (IsBuffered()) {
    const TVXGPBitmap &Bitmap = GetBitmap();
    G = BitmapWrapRect(Bitmap.GetWidth(), Bitmap.GetHeight(), R, FWrapMode);
  } else {
    G = GetWrapModeRect(FSVGRoot, R, FWrapMode, FScaleOriginal);
  }
  TPointF P{float(X), float(Y)};
  const TMatrix M = GetAbsoluteMatrix();
  if (!IsIdentity(M))
    P = VXMatrixTransformPoint(P, VXMatrixInvert(M));
  return ElementAtWrapped(*FSVGRoot, G, P, FWrapMode, FFindOptions);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::DoElementClick(int X, int Y)
{
  if (this->DesignMode() || !FSVGRoot || !OnClickElement)
    return;
  OnClickElement(this, ElementAt(X, Y));
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::SetCursorFromSVG(int X, int Y)
{
  TSVGGraphicElement *Element = ElementAt(X, Y);
  const TCursor Cursor = Element ? Element->GetCursor() : FDefaultCursor;
  TBase::SetCursor(Cursor != crDefault ? Cursor : FDefaultCursor);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::MouseMove(TShiftState Shift, int X, int Y)
{
  TBase::MouseMove(Shift, X, Y);
  if (FCursorTracking)
    SetCursorFromSVG(X, Y);
}

template <typename TBase>
void TVXSVGCustomImage<TBase>::MouseUp(TMouseButton Button, TShiftState Shift, int X, int Y)
{
  TBase::MouseUp(Button, Shift, X, Y);
  DoElementClick(X, Y);
}

template class TVXSVGCustomImage<TVXCustomTransparentGraphicControl>;
template class TVXSVGCustomImage<TGraphicControl>;

} // namespace vx
