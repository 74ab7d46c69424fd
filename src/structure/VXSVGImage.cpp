#include "structure/VXSVGImage.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGDrawBudget.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGCompressed.h"
#include "values/VXSVGDataURI.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <vector>

namespace vx {

VX_SVG_ELEMENT_CLASS_INFO(TSVGImage)

namespace {

const TSVGClassRegistration ImageRegistration(etImage, TSVGImage::ClassInfo());

// The SVG files being loaded on this thread, outermost first: the file of the document that holds
// the image, then each picture loaded inside it (empty names stand for data URIs).
thread_local std::vector<QString> LoadingPictures;

// Marks the holder's file and a picture as being loaded for its span, also on the way out by an exception.
class TLoadingScope
{
public:
  TLoadingScope(const QString &Holder, const QString &Name) : FCount(Holder.isEmpty() ? 1 : 2)
  {
    if (!Holder.isEmpty())
      LoadingPictures.push_back(Holder);
    LoadingPictures.push_back(Name);
  }
  ~TLoadingScope() { LoadingPictures.resize(LoadingPictures.size() - FCount); }
  TLoadingScope(const TLoadingScope &) = delete;
  TLoadingScope &operator=(const TLoadingScope &) = delete;

private:
  std::size_t FCount;
};

// Pictures loaded inside the outermost picture being loaded on this thread.
thread_local int NestedPictures = 0;

// Counts one more picture; false once the outermost picture has used up its allowance.
bool WithinPictureBudget()
{
  if (LoadingPictures.empty()) {
    NestedPictures = 0;
    return true;
  }
  return ++NestedPictures <= TSVGImage::MaxNestedPictures;
}

// Whether loading the picture Name from a document of file Holder would repeat a file that is being
// loaded (the holder's own included), or nest too deep.
bool IsRecursiveLoad(const QString &Holder, const QString &Name)
{
  if (int(LoadingPictures.size()) >= 2 * TSVGImage::MaxImageNesting)
    return true;
  if (Name.isEmpty())
    return false;
  return Name == Holder || std::find(LoadingPictures.begin(), LoadingPictures.end(), Name) != LoadingPictures.end();
}

// A side in whole pixels; anything out of range (NaN included) becomes a size the bitmap refuses.
int BitmapSide(float Value)
{
  return Value >= 0 && Value <= VXMaxBitmapSide ? int(Value) : VXMaxBitmapSide + 1;
}

// Markup starts with "<" (after blanks); no raster format does.
bool LooksLikeMarkup(const QByteArray &Data)
{
  return Data.trimmed().startsWith('<');
}

} // namespace

TSVGImage::TSVGImage(TSVGDocument *Owner) : TSVGCustomViewBox(Owner, saXMidYMid) {}

TSVGImage::~TSVGImage()
{
  ReleaseRaster();
}

void TSVGImage::SetReference(const QString &Value)
{
  if (Value == FReference)
    return;
  FReference = Value;
  LoadImage();
  Change(this);
}

TVXGPBitmap &TSVGImage::EnsureBitmap()
{
  if (!FBitmap)
    FBitmap = std::make_unique<TVXGPBitmap>();
  return *FBitmap;
}

void TSVGImage::LoadImage()
{
  FPicture.reset();
  ReleaseRaster();
  if (StartsText(QStringLiteral("data:"), FReference)) {
    LoadDataURI();
  } else {
    QString FileName;
    QByteArray Data;
    if (ReadReferencedFile(FileName, Data))
      LoadFile(FileName, Data);
    else
      FBitmap.reset();
  }
  ChargeRaster();
}

TSVGRasterBudget *TSVGImage::Budget() const
{
  return GetOwner() ? &GetOwner()->RasterBudget() : nullptr;
}

bool TSVGImage::RasterFits(int Width, int Height) const
{
  TSVGRasterBudget *Target = Budget();
  const qint64 Bytes = qint64(std::max(Width, 0)) * std::max(Height, 0) * 4;
  if (!Target || !Target->Charge(Bytes))
    return !Target;
  Target->Release(Bytes);
  return true;
}

void TSVGImage::ChargeRaster()
{
  TSVGRasterBudget *Target = Budget();
  if (!Target || !FBitmap)
    return;
  const qint64 Bytes = qint64(FBitmap->GetWidth()) * FBitmap->GetHeight() * 4;
  // A bitmap whose size was not known before it was decoded is dropped here: a skipped reference.
  if (Target->Charge(Bytes))
    FCharged = Bytes;
  else
    FBitmap.reset();
}

void TSVGImage::ReleaseRaster()
{
  if (TSVGRasterBudget *Target = Budget())
    Target->Release(FCharged);
  FCharged = 0;
}

void TSVGImage::LoadDataURI()
{
  TVXGPBitmap &Target = EnsureBitmap();
  // A picture that cannot be decoded leaves the bitmap as far as it got: the element draws what it has.
  try {
    TSVGDataURI Parts;
    const bool Parsed = ParseDataURI(FReference, Parts);
    if (PicturesFollowStandard()) {
      const QByteArray Data = Parts.IsBase64 ? DecodeBase64Payload(Parts.Payload)
                                             : QByteArray::fromPercentEncoding(Parts.Payload.toUtf8());
      LoadPicture(QString(), Data, Parts.MediaType.contains(QLatin1String("svg"), Qt::CaseInsensitive));
      return;
    }
    if (IsBase64Image(Parts, QStringLiteral("svg+xml")))
      LoadSVG(QString(), DecodeBase64Payload(Parts.Payload));
    else if (Parsed && IsBase64Image(Parts))
      LoadRaster(DecodeBase64Payload(Parts.Payload), Target);
  } catch (...) {
  }
}

bool TSVGImage::ReadReferencedFile(QString &FileName, QByteArray &Data) const
{
  const TSVGDocument *Owner = GetOwner();
  if (!Owner || FReference.isEmpty())
    return false;
  FileName = Owner->FilePolicy().Resolve(FReference, Owner->Folder());
  return !FileName.isEmpty() && Owner->FilePolicy().Read(FileName, Data);
}

void TSVGImage::LoadFile(const QString &FileName, const QByteArray &Data)
{
  TVXGPBitmap &Target = EnsureBitmap();
  // Nothing of a broken file escapes; the bitmap keeps what it held.
  try {
    if (PicturesFollowStandard()) {
      const QString Suffix = QFileInfo(FileName).suffix().toLower();
      LoadPicture(FileName, Data, Suffix == QLatin1String("svg") || Suffix == QLatin1String("svgz"));
      return;
    }
    // Only the exact extension ".svg" makes a document; anything else must be a bitmap.
    if (QFileInfo(FileName).suffix() == QLatin1String("svg"))
      LoadSVG(FileName, Data);
    else
      LoadRaster(Data, Target);
  } catch (...) {
  }
}

void TSVGImage::LoadRaster(const QByteArray &Data, TVXGPBitmap &Target)
{
  QBuffer Buffer;
  Buffer.setData(Data);
  Buffer.open(QIODevice::ReadOnly);
  const QSize Size = QImageReader(&Buffer).size();
  // Over the budget the reference is skipped before a pixel is decoded.
  if (Size.isValid() && !RasterFits(Size.width(), Size.height())) {
    FBitmap.reset();
    return;
  }
  LoadRasterImage(Data, Target);
}

void TSVGImage::LoadPicture(const QString &Name, const QByteArray &Data, bool DeclaredSVG)
{
  const QByteArray Bytes = IsGzipData(Data) ? InflateGzip(Data) : Data;
  if (!DeclaredSVG && !LooksLikeMarkup(Bytes)) {
    LoadRaster(Bytes, EnsureBitmap());
    return;
  }
  FBitmap.reset();
  LoadSVG(Name, Bytes);
}

void TSVGImage::LoadSVG(const QString &FileName, const QByteArray &Data)
{
  const QString Name = FileName.isEmpty() ? QString() : QFileInfo(FileName).canonicalFilePath();
  TSVGDocument *Owner = GetOwner();
  const QString Holder = Owner && !Owner->FileName().isEmpty() ? QFileInfo(Owner->FileName()).canonicalFilePath()
                                                                : QString();
  if (IsRecursiveLoad(Holder, Name) || !WithinPictureBudget())
    return;
  TLoadingScope Scope(Holder, Name);
  auto Loaded = std::make_unique<TSVGDocument>();
  TSVGDocument &Picture = *Loaded;
  if (PicturesFollowStandard())
    Picture.SetOptions(GetOptions());
  // The picture may name what its holder may, and the files of its holder's folder.
  if (Owner) {
    Picture.FilePolicy() = Owner->FilePolicy();
    if (!Owner->Folder().isEmpty())
      Picture.FilePolicy().AllowFolder(Owner->Folder());
    Picture.RasterBudget().DrawOn(&Owner->RasterBudget());
  }
  QBuffer Buffer;
  Buffer.setData(Data);
  Buffer.open(QIODevice::ReadOnly);
  Picture.LoadFromStream(Buffer, FileName);
  if (PicturesFollowStandard()) {
    FPicture = std::move(Loaded);
    return;
  }
  const TSVGViewBox &Box = Picture.IsViewBoxSpecified() ? Picture.ViewBox() : FViewBox;
  const TRectF R = VXRect(0, 0, Box.Width()->GetValue(), Box.Height()->GetValue());
  const int Width = BitmapSide(VXRectWidth(R));
  const int Height = BitmapSide(VXRectHeight(R));
  if (!RasterFits(Width, Height)) {
    FBitmap.reset();
    return;
  }
  TVXGPBitmap &Target = EnsureBitmap();
  Target.SetSize(Width, Height);
  TVXGPCanvas &Canvas = Target.GetCanvas();
  Canvas.Clear(0);
  Canvas.TrySmoothingMode(VXSmoothingModeHighQuality);
  const TMatrix M = Picture.GetViewMatrix(Picture.FitToRect(R), R);
  Picture.Draw(M, Canvas, R);
}

TRectF TSVGImage::Align(const TRectF &Rect) const
{
  TRectF Result = Rect;
  if (!FBitmap || FBitmap->IsEmpty())
    return Result;
  const double W = FBitmap->GetWidth();
  const double H = FBitmap->GetHeight();
  const double K = std::max(W / H, H / W);
  const float RW = Rect.Width();
  const float RH = Rect.Height();
  const TSVGAlign A = FAspectRatio.GetAlign();
  if (A != saNone) {
    // Slice grows the shorter side from the longer one, meet the longer side from the shorter one.
    const bool Landscape = RW > RH;
    if (FAspectRatio.GetSlice() ? Landscape : !Landscape)
      Result.Bottom = float(Result.Top + RW * K);
    else
      Result.Right = float(Result.Left + RH * K);
  }
  float DX = 0;
  float DY = 0;
  if (A == saXMidYMin || A == saXMidYMid || A == saXMidYMax)
    DX = RW / 2 - Result.Width() / 2;
  else if (A == saXMaxYMin || A == saXMaxYMid || A == saXMaxYMax)
    DX = RW - Result.Width();
  if (A == saXMinYMid || A == saXMidYMid || A == saXMaxYMid)
    DY = RH / 2 - Result.Height() / 2;
  else if (A == saXMinYMax || A == saXMidYMax || A == saXMaxYMax)
    DY = RH - Result.Height();
  OffsetRect(Result, DX, DY);
  return Result;
}

void TSVGImage::Draw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect)
{
  const TSVGDrawScope Scope;
  if (!ShouldDraw() || DrawnThroughMask(Matrix, Canvas, Rect))
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  InternalDraw(Matrix, Canvas, Rect);
}

TSizeF TSVGImage::NaturalSize() const
{
  if (!FPicture)
    return FBitmap ? TSizeF{float(FBitmap->GetWidth()), float(FBitmap->GetHeight())} : TSizeF{0, 0};
  float W = FPicture->GetWidth();
  float H = FPicture->GetHeight();
  if (FPicture->IsViewBoxSpecified()) {
    const TRectF Box = FPicture->ViewBox().GetRect();
    if (!(W > 0) && !(H > 0)) {
      W = Box.Width();
      H = Box.Height();
    } else if (!(W > 0) && Box.Height() > 0) {
      W = H * Box.Width() / Box.Height();
    } else if (!(H > 0) && Box.Width() > 0) {
      H = W * Box.Height() / Box.Width();
    }
  }
  // A picture with no size at all is shown as browsers show it, 100 by 100.
  return TSizeF{W > 0 ? W : 100.0f, H > 0 ? H : 100.0f};
}

TRectF TSVGImage::StandardImageRect() const
{
  float W = GetWidth();
  float H = GetHeight();
  const TSizeF Natural = NaturalSize();
  if (!FWidthGiven && !FHeightGiven) {
    W = Natural.cx;
    H = Natural.cy;
  } else if (!FWidthGiven) {
    W = Natural.cy > 0 ? H * Natural.cx / Natural.cy : 0;
  } else if (!FHeightGiven) {
    H = Natural.cx > 0 ? W * Natural.cy / Natural.cx : 0;
  }
  return TRectF{GetX(), GetY(), GetX() + W, GetY() + H};
}

bool TSVGImage::ScalesWithoutSmoothing() const
{
  const QString Name = QStringLiteral("image-rendering");
  for (const TSVGGraphicElement *E = this; E; E = E->GetGraphicParent()) {
    const QString Value = Trim(E->Style().Values(Name));
    if (Value.isEmpty() || Value == QLatin1String("inherit"))
      continue;
    return Value == QLatin1String("optimizeSpeed") || Value == QLatin1String("pixelated") ||
           Value == QLatin1String("crisp-edges");
  }
  return false;
}

bool TSVGImage::DrawStandardPicture(const TMatrix &Matrix, TVXGPCanvas &Canvas)
{
  const TRectF R = StandardImageRect();
  const TSizeF Natural = NaturalSize();
  const bool HasBitmap = FBitmap && !FBitmap->IsEmpty();
  if (!(R.Width() > 0 && R.Height() > 0) || !(Natural.cx > 0 && Natural.cy > 0) || (!FPicture && !HasBitmap))
    return false;
  const TRectF Source = FPicture && FPicture->IsViewBoxSpecified() ? FPicture->ViewBox().GetRect()
                                                                    : TRectF{0, 0, Natural.cx, Natural.cy};
  const TMatrix Fit = VXMatrixMultiply(StandardFit(Source, R, FAspectRatio), Matrix);
  TVXGPCanvasStateGuard Guard(Canvas);
  const TMatrix Saved = Canvas.GetMatrix();
  Canvas.SetMatrix(VXMatrixMultiply(Matrix, Saved));
  Canvas.IntersectClip(R);
  Canvas.SetMatrix(Saved);
  if (FPicture) {
    if (TSVGDrawScope::Charge(TSVGDrawScope::PictureCharge))
      FPicture->Draw(Fit, Canvas, R);
    return true;
  }
  Canvas.SetMatrix(VXMatrixMultiply(Fit, Saved));
  if (ScalesWithoutSmoothing())
    Canvas.SetInterpolationMode(VXInterpolationModeNearestNeighbor);
  Canvas.DrawImage(*FBitmap, TRectF{0, 0, Natural.cx, Natural.cy});
  return true;
}

bool TSVGImage::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &)
{
  if (PicturesFollowStandard())
    return DrawStandardPicture(Matrix, Canvas);
  const TRectF B = GetBoundsRect();
  if (!(B.Width() > 0 && B.Height() > 0) || !FBitmap || FBitmap->IsEmpty())
    return false;
  TRectF R = Align(VXRect(0, 0, B.Width(), B.Height()));
  OffsetRect(R, B.Left, B.Top);
  const float Opacity = GetBrush().GetOpacity() * GetAbsoluteOpacity();
  TVXGPCanvasStateGuard Guard(Canvas);
  Canvas.SetMatrix(VXMatrixMultiply(Matrix, Canvas.GetMatrix()));
  // A sliced picture reaches beyond the rectangle; an image shows only what lies within it. A picture
  // inside needs no clip, whose hard edges would show under a rotation or skew.
  if (R.Left < B.Left || R.Top < B.Top || R.Right > B.Right || R.Bottom > B.Bottom)
    Canvas.IntersectClip(B);
  Canvas.DrawImage(*FBitmap, R, Opacity);
  return true;
}

void TSVGImage::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoLoadFromXML(Node);
  FReference = ParseURI(Node, QStringLiteral("href"), QString(), QStringLiteral("xlink"));
  LoadImage();
}

void TSVGImage::DoSaveToXML(const IXMLNode &Node)
{
  TSVGCustomViewBox::DoSaveToXML(Node);
  if (!FViewBox.Specified()) {
    const QString Aspect = FAspectRatio.ToString(IsCompactXML());
    SaveAttrString(Node, QStringLiteral("preserveAspectRatio"), Aspect, Aspect.isEmpty(), true);
  }
  SaveBoundsLengths(Node);
  if (!FReference.isEmpty())
    Node.SetAttributeNS(QStringLiteral("href"), XLinkNamespaceURI, FReference);
}

void TSVGImage::AssignProperties(const TSVGElement *Source)
{
  if (const auto *Image = dynamic_cast<const TSVGImage *>(Source)) {
    FReference = Image->FReference;
    if (Image->FBitmap) {
      ReleaseRaster();
      EnsureBitmap().Assign(Image->FBitmap.get());
      ChargeRaster();
    }
    // A document is not copied: the copy loads its own.
    if (Image->FPicture)
      LoadImage();
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGImage::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomViewBox::Clear();
  FReference.clear();
  ReleaseRaster();
  FBitmap.reset();
}

} // namespace vx
