// vxsvg render FILE OUT.png [options]: draws a picture into a PNG file.
#include "Commands.h"
#include "DocumentLoading.h"

#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGColors.h"

#include <QFile>
#include <QImageWriter>

#include <cmath>
#include <optional>

namespace vx::cli {

namespace {

const char Usage[] = "usage: vxsvg render FILE OUT.png [--width W] [--height H] "
                     "[--wrap original|fit|stretch|tile|center] [--background COLOR] [--quality N]";

struct TRenderOptions
{
  QString Input, Output;
  std::optional<int> Width, Height;
  TSVGImageWrapMode Wrap = iwStretch;
  TVXGPColor Background = 0;
  int Quality = -1;
};

// Each reader returns false with a message for a value it does not accept.
bool ReadSize(const QString &Text, std::optional<int> &Size, QString &Error)
{
  bool Ok = false;
  const int Value = Text.toInt(&Ok);
  if (!Ok || Value < 1 || Value > VXMaxBitmapSide) {
    Error = QStringLiteral("size '%1' is not a whole number from 1 to %2").arg(Text).arg(VXMaxBitmapSide);
    return false;
  }
  Size = Value;
  return true;
}

bool ReadWrap(const QString &Text, TSVGImageWrapMode &Wrap, QString &Error)
{
  static const char *const Names[] = {"original", "fit", "stretch", "tile", "center"};
  for (int I = 0; I < 5; ++I)
    if (Text == QLatin1String(Names[I])) {
      Wrap = TSVGImageWrapMode(I);
      return true;
    }
  Error = QStringLiteral("unknown wrap mode '%1'").arg(Text);
  return false;
}

// Colour keywords, "#rgb", "#rrggbb", "rgb(...)", and "none" or "transparent" for no background.
bool ReadColor(const QString &Text, TVXGPColor &Color, QString &Error)
{
  if (Text == QLatin1String("none") || Text == QLatin1String("transparent")) {
    Color = 0;
    return true;
  }
  const bool Numeric = Text.startsWith(QLatin1Char('#')) || Text.startsWith(QLatin1String("rgb("));
  if (Numeric || SVGColorNameToColor(Text, Color)) {
    try {
      bool IsNone = false, IsInherited = false;
      Color = ParseColor(Text, 0xFF000000, IsNone, IsInherited, 0xFF000000) | 0xFF000000u;
      return true;
    } catch (const EConvertError &) {
    }
  }
  Error = QStringLiteral("unknown colour '%1'").arg(Text);
  return false;
}

bool ReadQuality(const QString &Text, int &Quality, QString &Error)
{
  bool Ok = false;
  Quality = Text.toInt(&Ok);
  if (Ok && Quality >= 0 && Quality <= 100)
    return true;
  Error = QStringLiteral("quality '%1' is not a whole number from 0 to 100").arg(Text);
  return false;
}

bool ParseArguments(const QStringList &Args, TRenderOptions &Options, QString &Error)
{
  QStringList Positional;
  for (int I = 0; I < Args.size(); ++I) {
    const QString &Arg = Args[I];
    if (!Arg.startsWith(QLatin1String("--"))) {
      Positional.append(Arg);
      continue;
    }
    if (I + 1 >= Args.size()) {
      Error = QStringLiteral("%1 needs a value").arg(Arg);
      return false;
    }
    const QString &Value = Args[++I];
    bool Ok = false;
    if (Arg == QLatin1String("--width"))
      Ok = ReadSize(Value, Options.Width, Error);
    else if (Arg == QLatin1String("--height"))
      Ok = ReadSize(Value, Options.Height, Error);
    else if (Arg == QLatin1String("--wrap"))
      Ok = ReadWrap(Value, Options.Wrap, Error);
    else if (Arg == QLatin1String("--background"))
      Ok = ReadColor(Value, Options.Background, Error);
    else if (Arg == QLatin1String("--quality"))
      Ok = ReadQuality(Value, Options.Quality, Error);
    else
      Error = QStringLiteral("unknown option '%1'").arg(Arg);
    if (!Ok)
      return false;
  }
  if (Positional.size() != 2) {
    Error = QString::fromLatin1(Usage);
    return false;
  }
  Options.Input = Positional[0];
  Options.Output = Positional[1];
  return true;
}

// The output size: the natural size, or the given sides with a missing one following the aspect
// ratio. An empty message when it is a size a bitmap can have.
QString OutputSize(const TRenderOptions &Options, const TSizeF &Natural, int &Width, int &Height)
{
  double W = Options.Width.value_or(0), H = Options.Height.value_or(0);
  if (!Options.Width || !Options.Height) {
    // Also refuses NaN sizes, which fail every comparison.
    if (!(Natural.cx > 0 && Natural.cy > 0))
      return QStringLiteral("the picture has no size of its own; give --width and --height");
    const double Aspect = double(Natural.cy) / Natural.cx;
    if (Options.Width)
      H = W * Aspect;
    else if (Options.Height)
      W = H / Aspect;
    else {
      W = Natural.cx;
      H = Natural.cy;
    }
  }
  W = std::round(W);
  H = std::round(H);
  if (!(W >= 1 && H >= 1 && W <= VXMaxBitmapSide && H <= VXMaxBitmapSide))
    return QStringLiteral("an output of %1 by %2 pixels is outside 1 to %3 a side; give --width or --height")
        .arg(W)
        .arg(H)
        .arg(VXMaxBitmapSide);
  Width = int(W);
  Height = int(H);
  return QString();
}

void SavePNG(const QImage &Image, const QString &FileName, int Quality)
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly))
    throw EFOpenError(QStringLiteral("cannot create file: %1").arg(File.errorString()));
  QImageWriter Writer(&File, "PNG");
  Writer.setQuality(Quality);
  if (!Writer.write(Image))
    throw EWriteError(QStringLiteral("cannot write PNG: %1").arg(Writer.errorString()));
}

} // namespace

int RunRender(const QStringList &Args)
{
  TRenderOptions Options;
  QString Error;
  if (!ParseArguments(Args, Options, Error)) {
    PrintError(Error);
    return ExitUsage;
  }
  TSVGDocument Document;
  if (const int Status = LoadDocument(Document, Options.Input); Status != ExitOk)
    return Status;
  const TSizeF Natural = SVGNaturalSize(Document);
  int Width = 0, Height = 0;
  if (const QString Problem = OutputSize(Options, Natural, Width, Height); !Problem.isEmpty()) {
    PrintError(QStringLiteral("%1: %2").arg(Options.Input, Problem));
    return ExitUsage;
  }
  // Without a view box a document draws at one unit a pixel whatever the target; a view box over
  // its own size makes it scale to the output.
  if (!Document.IsViewBoxSpecified() && Natural.cx > 0 && Natural.cy > 0)
    Document.SetViewBox(TRectF{0, 0, Natural.cx, Natural.cy});
  try {
    TVXGPBitmap Bitmap(Width, Height);
    TVXGPCanvas &Canvas = Bitmap.GetCanvas();
    Canvas.Clear(Options.Background);
    DrawSVGWrapped(Canvas, &Document, TRectF{0, 0, float(Width), float(Height)}, Options.Wrap, 1.0f);
    SavePNG(Bitmap.Image(), Options.Output, Options.Quality);
  } catch (const std::exception &E) {
    PrintError(QStringLiteral("%1: %2").arg(Options.Output, QString::fromUtf8(E.what())));
    return ExitLoadFailed;
  }
  return ExitOk;
}

} // namespace vx::cli
