#include "values/VXSVGDataURI.h"

#include "platform/rtl/VXExceptions.h"
#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

const QString DataScheme = QStringLiteral("data:");
const QString ImageType = QStringLiteral("image/");

bool IsBase64Char(char16_t C)
{
  return (C >= u'A' && C <= u'Z') || (C >= u'a' && C <= u'z') || (C >= u'0' && C <= u'9') || C == u'+' ||
         C == u'/' || C == u'=';
}

// Whole units, halves to even as the host framework rounds.
TRectF RoundRect(const TRectF &R)
{
  return TRectF{std::nearbyint(R.Left), std::nearbyint(R.Top), std::nearbyint(R.Right), std::nearbyint(R.Bottom)};
}

// Draws the top-left part of Bitmap that Clip leaves of the tile T, at T's corner, unscaled.
void DrawCropped(TVXGPCanvas &Canvas, const TVXGPBitmap &Bitmap, const TRectF &T, const TRectF &Rect, float Alpha)
{
  TRectF I;
  IntersectRect(I, Rect, T);
  Canvas.DrawImage(Bitmap, TRectF{T.Left, T.Top, T.Left + I.Width(), T.Top + I.Height()},
                   TRectF{0, 0, I.Width(), I.Height()}, Alpha, guPixel);
}

void DrawTiles(TVXGPCanvas &Canvas, const TVXGPBitmap &Bitmap, const TRectF &Rect, float Alpha)
{
  const float BW = float(Bitmap.GetWidth());
  const float BH = float(Bitmap.GetHeight());
  const double Columns = std::trunc(double(Rect.Width()) / BW) + 1;
  const double Rows = std::trunc(double(Rect.Height()) / BH) + 1;
  if (!(Columns >= 0 && Rows >= 0) || (Columns + 1) * (Rows + 1) > VXMaxWrappedTiles)
    return;
  for (int I = 0; I <= int(Columns); ++I)
    for (int J = 0; J <= int(Rows); ++J)
      DrawCropped(Canvas, Bitmap, TRectF{I * BW, J * BH, (I + 1) * BW, (J + 1) * BH}, Rect, Alpha);
}

} // namespace

bool ParseDataURI(const QString &URI, TSVGDataURI &Parts)
{
  if (!StartsText(DataScheme, URI))
    return false;
  Parts = TSVGDataURI();
  const QString Rest = URI.mid(DataScheme.size());
  const qsizetype Comma = Rest.indexOf(QLatin1Char(','));
  Parts.Payload = Comma < 0 ? Rest : Rest.mid(Comma + 1);
  if (Comma <= 0)
    return true;
  const QStringList Parameters = Rest.left(Comma).split(QLatin1Char(';'));
  for (qsizetype I = 0; I < Parameters.size(); ++I) {
    if (I == 0 && Parameters[I].contains(QLatin1Char('/')))
      Parts.MediaType = Parameters[I];
    else if (SameText(Parameters[I], QStringLiteral("base64")))
      Parts.IsBase64 = true;
  }
  return true;
}

QByteArray DecodeBase64Payload(const QString &Payload)
{
  QByteArray Filtered;
  Filtered.reserve(Payload.size());
  for (const QChar C : Payload)
    if (IsBase64Char(C.unicode()))
      Filtered.append(char(C.unicode()));
  if (Filtered.isEmpty())
    throw EConvertError(QStringLiteral("The data URI holds no base-64 data"));
  // A last group of one character carries no whole byte: the data was cut.
  qsizetype Length = Filtered.size();
  while (Length > 0 && Filtered[Length - 1] == '=')
    --Length;
  auto Decoded = QByteArray::fromBase64Encoding(Filtered, QByteArray::AbortOnBase64DecodingErrors);
  if (!Decoded || Length % 4 == 1)
    throw EConvertError(QStringLiteral("The data URI holds malformed base-64 data"));
  return *Decoded;
}

bool IsBase64Image(const TSVGDataURI &Parts, const QString &Subtype)
{
  if (!Parts.IsBase64 || !StartsText(ImageType, Parts.MediaType))
    return false;
  return Subtype.isEmpty() || SameText(Parts.MediaType.mid(ImageType.size()), Subtype);
}

void LoadRasterImage(QIODevice &Stream, TVXGPBitmap &Bitmap)
{
  QImageReader Reader(&Stream);
  const QByteArray Format = Reader.format();
  if (Format == "svg" || Format == "svgz")
    throw EReadError(QStringLiteral("Cannot read image: SVG content is not a bitmap"));
  // The size is checked before any pixel is decoded.
  const QSize Size = Reader.size();
  if (Size.isValid())
    VXCheckBitmapSize(Size.width(), Size.height());
  QImage Image;
  if (!Reader.read(&Image))
    throw EReadError(QStringLiteral("Cannot read image: %1").arg(Reader.errorString()));
  Bitmap.SetImage(Image);
}

void LoadRasterImage(const QByteArray &Data, TVXGPBitmap &Bitmap)
{
  QBuffer Buffer;
  Buffer.setData(Data);
  Buffer.open(QIODevice::ReadOnly);
  LoadRasterImage(Buffer, Bitmap);
}

void LoadRasterImageFile(const QString &FileName, TVXGPBitmap &Bitmap)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File.errorString()));
  LoadRasterImage(File, Bitmap);
}

bool LoadBitmapFromDataURI(const QString &URI, TVXGPBitmap &Bitmap)
{
  TSVGDataURI Parts;
  if (!ParseDataURI(URI, Parts) || !IsBase64Image(Parts))
    return false;
  LoadRasterImage(DecodeBase64Payload(Parts.Payload), Bitmap);
  return true;
}

std::unique_ptr<TVXGPBitmap> LoadBitmapFromDataURI(const QString &URI)
{
  auto Bitmap = std::make_unique<TVXGPBitmap>();
  LoadBitmapFromDataURI(URI, *Bitmap);
  return Bitmap;
}

void DrawBitmapWrapped(TVXGPCanvas &Canvas, const TVXGPBitmap &Bitmap, const TRectF &Rect,
                       TSVGImageWrapMode WrapMode, float Alpha)
{
  const int BW = Bitmap.GetWidth();
  const int BH = Bitmap.GetHeight();
  if (BW == 0 || BH == 0)
    return;
  const TRectF Whole{0, 0, float(BW), float(BH)};
  switch (WrapMode) {
  case iwOriginal:
    DrawCropped(Canvas, Bitmap, Whole, Rect, Alpha);
    break;
  case iwFit: {
    TRectF T = Whole;
    FitRect(T, Rect, false);
    Canvas.DrawImage(Bitmap, RoundRect(T), Whole, Alpha, guPixel);
    break;
  }
  case iwStretch:
    Canvas.DrawImage(Bitmap, TRectF{0, 0, Rect.Width(), Rect.Height()}, Whole, Alpha, guPixel);
    break;
  case iwTile:
    DrawTiles(Canvas, Bitmap, Rect, Alpha);
    break;
  case iwCenter: {
    TRectF T = Whole;
    RectCenter(T, TRectF{0, 0, Rect.Width(), Rect.Height()});
    Canvas.DrawImage(Bitmap, T, Whole, Alpha, guPixel);
    break;
  }
  }
}

TSizeF ScaleSize(float BoxWidth, float BoxHeight, float Width, float Height, TSVGImageWrapMode WrapMode,
                 float Scale)
{
  if (double(Width) * Height <= 0)
    WrapMode = iwStretch;
  double W, H;
  switch (WrapMode) {
  case iwFit: {
    const double Ratio = std::max(double(Width) / BoxWidth, double(Height) / BoxHeight);
    W = Width / Ratio;
    H = Height / Ratio;
    break;
  }
  case iwStretch:
    W = BoxWidth;
    H = BoxHeight;
    break;
  default:
    W = double(Width) * Scale;
    H = double(Height) * Scale;
    break;
  }
  const double Max = MAX_SVGIMAGE_SIZE;
  if (W > Max) {
    H -= H * ((W - Max) / W);
    W = Max;
  }
  if (H > Max) {
    W -= W * ((H - Max) / H);
    H = Max;
  }
  return TSizeF{float(W), float(H)};
}

} // namespace vx
