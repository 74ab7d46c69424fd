// vxsvg render FILE OUT.png [options]: draws a picture into a PNG file.
#include "Commands.h"
#include "DocumentLoading.h"
#include "PictureLayout.h"

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
  const bool Split = SplitArguments(Args, Positional, [&](const QString &Arg, const QString &Value, QString &Why) {
    if (Arg == QLatin1String("--width"))
      return ReadSize(Value, Options.Width, Why);
    if (Arg == QLatin1String("--height"))
      return ReadSize(Value, Options.Height, Why);
    if (Arg == QLatin1String("--wrap"))
      return ReadWrap(Value, Options.Wrap, Why);
    if (Arg == QLatin1String("--background"))
      return ReadColor(Value, Options.Background, Why);
    if (Arg == QLatin1String("--quality"))
      return ReadQuality(Value, Options.Quality, Why);
    Why = QStringLiteral("unknown option '%1'").arg(Arg);
    return false;
  }, Error);
  if (!Split)
    return false;
  if (Positional.size() != 2) {
    Error = QString::fromLatin1(Usage);
    return false;
  }
  Options.Input = Positional[0];
  Options.Output = Positional[1];
  return true;
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
  if (const QString Problem = OutputSize(Options.Width, Options.Height, Natural, Width, Height); !Problem.isEmpty()) {
    PrintError(QStringLiteral("%1: %2").arg(Options.Input, Problem));
    return ExitUsage;
  }
  ScaleToOutput(Document, Natural);
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
