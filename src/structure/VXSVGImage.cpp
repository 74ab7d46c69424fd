#include "structure/VXSVGImage.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGDataURI.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

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

} // namespace

TSVGImage::TSVGImage(TSVGDocument *Owner) : TSVGCustomViewBox(Owner, saXMidYMid) {}

TSVGImage::~TSVGImage() = default;

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
  if (StartsText(QStringLiteral("data:"), FReference)) {
    LoadDataURI();
    return;
  }
  const QString FileName = ResolveFileName();
  if (FileName.isEmpty()) {
    FBitmap.reset();
    return;
  }
  LoadFile(FileName);
}

void TSVGImage::LoadDataURI()
{
  TVXGPBitmap &Target = EnsureBitmap();
  // A picture that cannot be decoded leaves the bitmap as far as it got: the element draws what it has.
  try {
    TSVGDataURI Parts;
    ParseDataURI(FReference, Parts);
    if (IsBase64Image(Parts, QStringLiteral("svg+xml")))
      LoadSVG(QString(), DecodeBase64Payload(Parts.Payload));
    else
      LoadBitmapFromDataURI(FReference, Target);
  } catch (...) {
  }
}

QString TSVGImage::ResolveFileName() const
{
  QString Name = FReference;
  if (StartsText(QStringLiteral("file:"), Name))
    Name = QUrl(Name).toLocalFile();
  if (Name.isEmpty())
    return QString();
  const QFileInfo Info(Name);
  if (Info.isRelative() && GetOwner() && !GetOwner()->FileName().isEmpty()) {
    const QFileInfo Beside(QFileInfo(GetOwner()->FileName()).dir(), Name);
    if (Beside.isFile())
      return Beside.filePath();
  }
  return Info.isFile() ? Info.filePath() : QString();
}

void TSVGImage::LoadFile(const QString &FileName)
{
  TVXGPBitmap &Target = EnsureBitmap();
  // Nothing of a broken file escapes; the bitmap keeps what it held.
  try {
    // Only the exact extension ".svg" makes a document; anything else must be a bitmap.
    if (QFileInfo(FileName).suffix() == QLatin1String("svg"))
      LoadSVG(FileName, QByteArray());
    else
      LoadRasterImageFile(FileName, Target);
  } catch (...) {
  }
}

void TSVGImage::LoadSVG(const QString &FileName, const QByteArray &Data)
{
  const QString Name = FileName.isEmpty() ? QString() : QFileInfo(FileName).canonicalFilePath();
  const TSVGDocument *Owner = GetOwner();
  const QString Holder = Owner && !Owner->FileName().isEmpty() ? QFileInfo(Owner->FileName()).canonicalFilePath()
                                                                : QString();
  if (IsRecursiveLoad(Holder, Name))
    return;
  TLoadingScope Scope(Holder, Name);
  TSVGDocument Picture;
  if (FileName.isEmpty()) {
    QBuffer Buffer;
    Buffer.setData(Data);
    Buffer.open(QIODevice::ReadOnly);
    Picture.LoadFromStream(Buffer);
  } else {
    Picture.LoadFromFile(FileName);
  }
  const TSVGViewBox &Box = Picture.IsViewBoxSpecified() ? Picture.ViewBox() : FViewBox;
  const TRectF R = VXRect(0, 0, Box.Width()->GetValue(), Box.Height()->GetValue());
  TVXGPBitmap &Target = EnsureBitmap();
  Target.SetSize(BitmapSide(VXRectWidth(R)), BitmapSide(VXRectHeight(R)));
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
  if (!ShouldDraw() || DrawnThroughMask(Matrix, Canvas, Rect))
    return;
  TVXGPCanvasStateGuard Guard(Canvas);
  InternalDraw(Matrix, Canvas, Rect);
}

bool TSVGImage::DoInternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &)
{
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
    if (Image->FBitmap)
      EnsureBitmap().Assign(Image->FBitmap.get());
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGImage::Clear()
{
  TSVGUpdateGuard Guard(*this);
  TSVGCustomViewBox::Clear();
  FReference.clear();
  FBitmap.reset();
}

} // namespace vx
