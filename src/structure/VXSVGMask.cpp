#include "structure/VXSVGMask.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "structure/VXSVGScopes.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPropertyParsers.h"

#include <QImage>
#include <QPaintDevice>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGMask)

namespace {

const TSVGClassRegistration MaskRegistration(etMask, TSVGMask::ClassInfo());

// Masks at work on this thread (drawing a client into a layer or their own contents), innermost
// last.
thread_local std::vector<const TSVGElement *> MasksAtWork;
// The layer pixels the masks at work hold on this thread: nested masks share one budget.
thread_local std::int64_t LayerPixelsInUse = 0;

// Books Pixels of the layer budget for a scope.
class TLayerBudget
{
public:
  explicit TLayerBudget(std::int64_t Pixels) : FPixels(Pixels) { LayerPixelsInUse += Pixels; }
  ~TLayerBudget() { LayerPixelsInUse -= FPixels; }
  TLayerBudget(const TLayerBudget &) = delete;
  TLayerBudget &operator=(const TLayerBudget &) = delete;

private:
  std::int64_t FPixels;
};

// An offscreen layer over a part of the device: Bounds in device pixels, drawn at Scale (below 1
// only when the pixel budget asks for it) into Width by Height pixels.
struct TLayer {
  TRectF Bounds;
  float Scale = 1;
  int Width = 0;
  int Height = 0;
  // Device space to layer pixels.
  TMatrix FromDevice() const
  {
    return VXMatrixMultiply(CreateTranslateVXMatrix(-Bounds.Left, -Bounds.Top), CreateScaleVXMatrix(Scale, Scale));
  }
  QImage NewImage(QImage::Format Format) const
  {
    QImage Result(Width, Height, Format);
    Result.fill(0);
    return Result;
  }
};

// The layer over the device box of Area under Matrix, inside the canvas clip and the device, in
// whole pixels; false when nothing of it can show or the budget is spent.
bool PlaceLayer(const TRectF &Area, const TMatrix &Matrix, const TVXGPCanvas &Canvas, TLayer &Layer)
{
  const QPaintDevice *Device = Canvas.Painter() ? Canvas.Painter()->device() : nullptr;
  if (!Device)
    return false;
  const TRectF Box = VXMatrixTransformRect(Area, Matrix);
  const TRectF Clip = Canvas.GetClipBounds();
  const double Left = std::floor(std::max({double(Box.Left), double(Clip.Left), 0.0}));
  const double Top = std::floor(std::max({double(Box.Top), double(Clip.Top), 0.0}));
  const double Right = std::ceil(std::min({double(Box.Right), double(Clip.Right), double(Device->width())}));
  const double Bottom = std::ceil(std::min({double(Box.Bottom), double(Clip.Bottom), double(Device->height())}));
  if (!(Right > Left) || !(Bottom > Top))
    return false;
  const double Pixels = (Right - Left) * (Bottom - Top);
  const double Available = double(TSVGMask::MaxLayerPixels - LayerPixelsInUse);
  const double Scale = Pixels <= Available ? 1.0 : std::sqrt(std::max(Available, 0.0) / Pixels);
  Layer.Bounds = TRectF{float(Left), float(Top), float(Right), float(Bottom)};
  Layer.Scale = float(Scale);
  Layer.Width = int(std::floor((Right - Left) * Scale));
  Layer.Height = int(std::floor((Bottom - Top) * Scale));
  return Layer.Width > 0 && Layer.Height > 0;
}

// The matrix that maps the unit square onto Box.
TMatrix BoundingBoxMatrix(const TRectF &Box)
{
  return VXMatrixMultiply(CreateScaleVXMatrix(Box.Width(), Box.Height()), CreateTranslateVXMatrix(Box.Left, Box.Top));
}

bool HasArea(const TRectF &R)
{
  return R.Width() > 0 && R.Height() > 0;
}

// Luminance coefficients of the red, green and blue channels. Browsers take the luminance of the
// sRGB values whatever color-interpolation says, and so does this mask.
constexpr double LumaR = 0.2125, LumaG = 0.7154, LumaB = 0.0721;

// The coverage of one premultiplied pixel: its alpha, or the luminance of its colour times its
// alpha, which the premultiplied channels already carry.
std::uint8_t PixelCoverage(QRgb Pixel, bool Alpha)
{
  if (Alpha)
    return std::uint8_t(qAlpha(Pixel));
  const double Luma = LumaR * qRed(Pixel) + LumaG * qGreen(Pixel) + LumaB * qBlue(Pixel);
  return std::uint8_t(std::clamp(int(std::lround(Luma)), 0, 255));
}

// Multiplies every channel of the premultiplied Pixels by the coverage of the same position.
void MultiplyByCoverage(QImage &Pixels, const QImage &Coverage)
{
  for (int Y = 0; Y < Pixels.height(); ++Y) {
    auto *Row = reinterpret_cast<QRgb *>(Pixels.scanLine(Y));
    const uchar *Cover = Coverage.constScanLine(Y);
    for (int X = 0; X < Pixels.width(); ++X) {
      const int C = Cover[X];
      if (C == 255)
        continue;
      const QRgb P = Row[X];
      auto Times = [C](int V) { return (V * C + 127) / 255; };
      Row[X] = qRgba(Times(qRed(P)), Times(qGreen(P)), Times(qBlue(P)), Times(qAlpha(P)));
    }
  }
}

} // namespace

TSVGMask::TSVGMask(TSVGDocument *Owner) : TSVGCustomGroup(Owner)
{
  SetDefaultRegion();
}

void TSVGMask::SetDefaultRegion()
{
  ParsePercent(QStringLiteral("-10%"), FX.get(), 0, 1);
  ParsePercent(QStringLiteral("-10%"), FY.get(), 0, 1);
  ParsePercent(QStringLiteral("120%"), FWidth.get(), 0, 1);
  ParsePercent(QStringLiteral("120%"), FHeight.get(), 0, 1);
}

// --- properties ------------------------------------------------------------------------------------

void TSVGMask::SetUnits(TSVGCoordinateSystemUnit Value)
{
  if (Value == FUnits)
    return;
  FUnits = Value;
  Change(this);
}

void TSVGMask::SetContentUnits(TSVGCoordinateSystemUnit Value)
{
  if (Value == FContentUnits)
    return;
  FContentUnits = Value;
  Change(this);
}

void TSVGMask::SetAlphaMask(bool Value)
{
  if (Value == FAlphaMask)
    return;
  FAlphaMask = Value;
  Change(this);
}

TRectF TSVGMask::MaskRegion(const TRectF &Box) const
{
  if (FUnits == csuUserSpaceOnUse)
    return VXRect(GetX(), GetY(), float(double(GetX()) + GetWidth()), float(double(GetY()) + GetHeight()));
  // Fractions of the box, whether written as numbers or as percentages.
  const double Left = Box.Left + double(FX->GetPixels()) * Box.Width();
  const double Top = Box.Top + double(FY->GetPixels()) * Box.Height();
  return VXRect(float(Left), float(Top), float(Left + double(FWidth->GetPixels()) * Box.Width()),
                float(Top + double(FHeight->GetPixels()) * Box.Height()));
}

// --- drawing ---------------------------------------------------------------------------------------

bool TSVGMask::DrawMasked(TSVGGraphicElement &Client, const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  // Declining while at work lets the client draw itself into this mask's layer, and skips the
  // reference that closes a cycle.
  TStackScope Working(MasksAtWork, *this, MaxNesting);
  if (!Working.Entered())
    return false;
  const TMatrix ToDevice = VXMatrixMultiply(Client.Matrix(), Matrix);
  const TRectF Box = Client.ObjectBoundingBox();
  // Bounding-box units over a box without area leave nothing to show.
  if ((FUnits == csuObjectBoundingBox || FContentUnits == csuObjectBoundingBox) && !HasArea(Box))
    return true;
  const TRectF Area = MaskRegion(Box);
  TLayer Layer;
  if (!HasArea(Area) || !PlaceLayer(Area, ToDevice, Canvas, Layer))
    return true;
  TLayerBudget Budget(std::int64_t(Layer.Width) * Layer.Height);
  VXCheckBitmapSize(Layer.Width, Layer.Height);
  QImage Content = Layer.NewImage(QImage::Format_ARGB32_Premultiplied);
  {
    TVXGPCanvas LayerCanvas(&Content);
    Client.Draw(VXMatrixMultiply(Matrix, Layer.FromDevice()), LayerCanvas, Rect);
  }
  QImage Coverage = Layer.NewImage(QImage::Format_Alpha8);
  RenderCoverage(Coverage, Box, VXMatrixMultiply(ToDevice, Layer.FromDevice()), Rect);
  MultiplyByCoverage(Content, Coverage);
  TVXGPImage Masked;
  Masked.SetImage(Content);
  TVXGPCanvasStateGuard Guard(Canvas);
  Canvas.SetMatrix(VXIdentityMatrix);
  Canvas.DrawImage(Masked, TRectF{Layer.Bounds.Left, Layer.Bounds.Top, Layer.Bounds.Left + Layer.Width / Layer.Scale,
                                  Layer.Bounds.Top + Layer.Height / Layer.Scale});
  return true;
}

void TSVGMask::RenderCoverage(QImage &Coverage, const TRectF &Box, const TMatrix &ToLayer, const TRectF &Rect)
{
  QImage Contents(Coverage.size(), QImage::Format_ARGB32_Premultiplied);
  Contents.fill(0);
  {
    TVXGPCanvas Canvas(&Contents);
    TVXGPRegion Region(&Canvas);
    Region.MakeEmpty();
    Region.Combine(MaskRegion(Box), cmUnion);
    Region.Transform(ToLayer);
    // Cut to the layer first: the raster clip cannot take a region of astronomic size.
    Region.Combine(TRectF{0, 0, float(Contents.width()), float(Contents.height())}, cmIntersect);
    Canvas.IntersectClip(Region);
    const TMatrix Placement =
      FContentUnits == csuObjectBoundingBox ? VXMatrixMultiply(BoundingBoxMatrix(Box), ToLayer) : ToLayer;
    // Paints of the contents were resolved for another client or another place.
    Reset();
    // The contents hang from the mask: its own transform has no effect.
    const bool DrawOwn = BeginDraw(Placement, Canvas, Rect);
    try {
      if (DrawOwn)
        DrawChildren(Placement, Canvas, Rect);
    } catch (...) {
      EndDraw(Placement, Canvas, Rect);
      throw;
    }
    EndDraw(Placement, Canvas, Rect);
  }
  // The mask's own mask cuts its contents before they become coverage; one already at work is
  // skipped as a cycle.
  if (auto *Outer = dynamic_cast<TSVGMask *>(GetMaskURIElement())) {
    TStackScope Working(MasksAtWork, *Outer, MaxNesting);
    if (Working.Entered()) {
      QImage OuterCoverage(Coverage.size(), QImage::Format_Alpha8);
      OuterCoverage.fill(0);
      Outer->RenderCoverage(OuterCoverage, Box, ToLayer, Rect);
      MultiplyByCoverage(Contents, OuterCoverage);
    }
  }
  for (int Y = 0; Y < Contents.height(); ++Y) {
    const auto *Row = reinterpret_cast<const QRgb *>(Contents.constScanLine(Y));
    uchar *Cover = Coverage.scanLine(Y);
    for (int X = 0; X < Contents.width(); ++X)
      Cover[X] = PixelCoverage(Row[X], FAlphaMask);
  }
}

// --- copying and XML -------------------------------------------------------------------------------

void TSVGMask::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Mask = dynamic_cast<const TSVGMask *>(Source)) {
    FUnits = Mask->FUnits;
    FContentUnits = Mask->FContentUnits;
    FAlphaMask = Mask->FAlphaMask;
  }
  TSVGCustomGroup::AssignProperties(Source);
}

void TSVGMask::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomGroup::Clear();
  SetDefaultRegion();
  FUnits = csuObjectBoundingBox;
  FContentUnits = csuUserSpaceOnUse;
  FAlphaMask = false;
}

void TSVGMask::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomGroup::DoLoadFromXML(Node);
  FUnits = ParseCoordinateSystemUnit(ParseAttrString(Node, QStringLiteral("maskUnits")), FUnits);
  FContentUnits = ParseCoordinateSystemUnit(ParseAttrString(Node, QStringLiteral("maskContentUnits")), FContentUnits);
  FAlphaMask = Trim(FStyle.Values(QStringLiteral("mask-type"))) == QLatin1String("alpha");
}

void TSVGMask::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomGroup::DoSaveToXML(Node);
  // A zero is written too: the region's defaults are not zero.
  SaveLength(Node, QStringLiteral("x"), *FX, 100, false);
  SaveLength(Node, QStringLiteral("y"), *FY, 100, false);
  SaveLength(Node, QStringLiteral("width"), *FWidth, 100, false);
  SaveLength(Node, QStringLiteral("height"), *FHeight, 100, false);
  if (FUnits == csuUserSpaceOnUse)
    SaveAttrString(Node, QStringLiteral("maskUnits"), SVGCoordinateSystemUnits[FUnits], false, true);
  if (FContentUnits == csuObjectBoundingBox)
    SaveAttrString(Node, QStringLiteral("maskContentUnits"), SVGCoordinateSystemUnits[FContentUnits], false, true);
  if (FAlphaMask)
    SaveAttrString(Node, QStringLiteral("mask-type"), QStringLiteral("alpha"), false, true);
}

} // namespace vx
