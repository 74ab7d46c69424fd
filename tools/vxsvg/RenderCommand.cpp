// vxsvg render FILE... [OUT] [options]: draws pictures into image files (PNG, JPEG, WebP ... by the
// name of the output), or one picture to the standard output.
#include "Commands.h"
#include "DocumentLoading.h"
#include "PictureLayout.h"

#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGDocument.h"
#include "values/VXSVGColors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageWriter>
#include <QThread>

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

namespace vx::cli {

namespace {

const char Usage[] = "usage: vxsvg render FILE OUT.png [options]\n"
                     "       vxsvg render FILE -o OUT.png|- [options]\n"
                     "       vxsvg render FILE... --out-dir DIR [--format png|jpg|webp] [--jobs N] [options]";

const char Help[] =
    "Draws SVG pictures into image files. FILE - reads the picture from the standard input; -o -\n"
    "writes the image to the standard output (PNG). The output format follows the file name\n"
    "(.png, .jpg, .webp ... whatever Qt can write here); --format sets it for --out-dir.\n\n"
    "  -w W, --width W              output width in pixels (1 to 16384)\n"
    "  -h H, --height H             output height in pixels; without width or height, the picture's\n"
    "                               own size (its view box, else its width and height); with one of\n"
    "                               them the other keeps the aspect ratio\n"
    "  -z Z, --zoom Z               scale the picture's own size by Z\n"
    "  --dpi N                      resolution for physical units (in, cm, mm, pt, pc); default 96\n"
    "  --wrap MODE                  original, fit, stretch (default), tile or center\n"
    "  --background COLOR           a colour keyword, #rgb, #rrggbb or rgb(...); default transparent\n"
    "  --quality N                  writer quality 0 to 100 (PNG: lower compresses harder)\n"
    "  -o OUT, --output OUT         the output file, - for the standard output\n"
    "  --out-dir DIR                one image per input, named after it, in DIR\n"
    "  --format EXT                 the format of the images written into --out-dir (default png)\n"
    "  --jobs N                     pictures drawn at once with --out-dir (default: all cores)\n"
    "  --compatible                 the library's classic rules instead of SVG 1.1 as browsers draw it\n";

struct TRenderOptions
{
  QStringList Inputs;
  QString Output, OutDir, Format = QStringLiteral("png");
  std::optional<int> Width, Height;
  double Zoom = 1;
  int DPI = 96;
  int Jobs = std::max(1u, std::thread::hardware_concurrency());
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

bool ReadWhole(const QString &Text, int Low, int High, int &Value, const char *What, QString &Error)
{
  bool Ok = false;
  Value = Text.toInt(&Ok);
  if (Ok && Value >= Low && Value <= High)
    return true;
  Error = QStringLiteral("%1 '%2' is not a whole number from %3 to %4").arg(QLatin1String(What), Text).arg(Low).arg(High);
  return false;
}

bool ReadZoom(const QString &Text, double &Zoom, QString &Error)
{
  bool Ok = false;
  Zoom = Text.toDouble(&Ok);
  if (Ok && Zoom > 0 && Zoom <= 1000)
    return true;
  Error = QStringLiteral("zoom '%1' is not a number above 0 and up to 1000").arg(Text);
  return false;
}

bool IsWritableFormat(const QString &Format)
{
  return QImageWriter::supportedImageFormats().contains(Format.toLower().toLatin1());
}

// The format an output file is written in: its suffix, which Qt must be able to write.
bool FormatOfFile(const QString &FileName, QString &Format, QString &Error)
{
  if (FileName == QLatin1String("-")) {
    Format = QStringLiteral("png");
    return true;
  }
  Format = QFileInfo(FileName).suffix().toLower();
  if (IsWritableFormat(Format))
    return true;
  Error = QStringLiteral("%1: cannot write images of type '%2' (known here: %3)")
              .arg(FileName, Format, QString::fromLatin1(QImageWriter::supportedImageFormats().join(", ")));
  return false;
}

bool ParseArguments(const QStringList &Args, TRenderOptions &Options, QString &Error)
{
  QStringList Positional;
  static const QStringList Short{QStringLiteral("-w"), QStringLiteral("-h"), QStringLiteral("-z"), QStringLiteral("-o")};
  static const QStringList Long{QStringLiteral("--width"), QStringLiteral("--height"), QStringLiteral("--zoom"),
                                QStringLiteral("--output")};
  QStringList Normalised;
  for (const QString &Arg : Args)
    Normalised.append(Short.contains(Arg) ? Long[Short.indexOf(Arg)] : Arg);
  const bool Split = SplitArguments(Normalised, Positional, [&](const QString &Arg, const QString &Value, QString &Why) {
    if (Arg == QLatin1String("--width"))
      return ReadSize(Value, Options.Width, Why);
    if (Arg == QLatin1String("--height"))
      return ReadSize(Value, Options.Height, Why);
    if (Arg == QLatin1String("--zoom"))
      return ReadZoom(Value, Options.Zoom, Why);
    if (Arg == QLatin1String("--dpi"))
      return ReadWhole(Value, 10, 10000, Options.DPI, "dpi", Why);
    if (Arg == QLatin1String("--jobs"))
      return ReadWhole(Value, 1, 256, Options.Jobs, "jobs", Why);
    if (Arg == QLatin1String("--wrap"))
      return ReadWrap(Value, Options.Wrap, Why);
    if (Arg == QLatin1String("--background"))
      return ReadColor(Value, Options.Background, Why);
    if (Arg == QLatin1String("--quality"))
      return ReadWhole(Value, 0, 100, Options.Quality, "quality", Why);
    if (Arg == QLatin1String("--output")) {
      Options.Output = Value;
      return true;
    }
    if (Arg == QLatin1String("--out-dir")) {
      Options.OutDir = Value;
      return true;
    }
    if (Arg == QLatin1String("--format")) {
      Options.Format = Value.toLower();
      if (IsWritableFormat(Options.Format))
        return true;
      Why = QStringLiteral("cannot write images of type '%1'").arg(Value);
      return false;
    }
    Why = QStringLiteral("unknown option '%1'").arg(Arg);
    return false;
  }, Error);
  if (!Split)
    return false;
  // The classic form: one input and one output, both positional.
  if (Options.Output.isEmpty() && Options.OutDir.isEmpty() && Positional.size() == 2) {
    Options.Output = Positional.takeLast();
  }
  Options.Inputs = Positional;
  const bool OneOutput = !Options.Output.isEmpty() && Options.OutDir.isEmpty() && Positional.size() == 1;
  const bool Folder = Options.Output.isEmpty() && !Options.OutDir.isEmpty() && !Positional.isEmpty();
  if (!OneOutput && !Folder) {
    Error = QString::fromLatin1(Usage);
    return false;
  }
  return true;
}

bool WriteImage(const QImage &Image, const QString &FileName, const QString &Format, int Quality, QString &Error)
{
  QFile File;
  const bool Opened = FileName == QLatin1String("-") ? File.open(stdout, QIODevice::WriteOnly)
                                                      : (File.setFileName(FileName), File.open(QIODevice::WriteOnly));
  if (!Opened) {
    Error = QStringLiteral("%1: cannot create file: %2").arg(FileName, File.errorString());
    return false;
  }
  QImageWriter Writer(&File, Format.toLatin1());
  Writer.setQuality(Quality);
  // Formats without transparency (JPEG) would show the transparent parts black.
  const bool Opaque = Format == QLatin1String("jpg") || Format == QLatin1String("jpeg");
  if (Writer.write(Opaque ? Image.convertToFormat(QImage::Format_RGB32) : Image))
    return true;
  Error = QStringLiteral("%1: cannot write the image: %2").arg(FileName, Writer.errorString());
  return false;
}

// Loads, lays out, draws and writes one picture; the exit status, with the reason printed.
int RenderOne(const TRenderOptions &Options, const QString &Input, const QString &Output, const QString &Format)
{
  TSVGDocument Document;
  Document.SetDPI(Options.DPI);
  if (const int Status = LoadDocument(Document, Input); Status != ExitOk)
    return Status;
  const TSizeF Natural = SVGNaturalSize(Document);
  const TSizeF Zoomed{float(Natural.cx * Options.Zoom), float(Natural.cy * Options.Zoom)};
  int Width = 0, Height = 0;
  if (const QString Problem = OutputSize(Options.Width, Options.Height, Zoomed, Width, Height); !Problem.isEmpty()) {
    PrintError(QStringLiteral("%1: %2").arg(Input, Problem));
    return ExitUsage;
  }
  ScaleToOutput(Document, Natural);
  QString Error;
  try {
    TVXGPBitmap Bitmap(Width, Height);
    TVXGPCanvas &Canvas = Bitmap.GetCanvas();
    Canvas.Clear(Options.Background);
    DrawSVGWrapped(Canvas, &Document, TRectF{0, 0, float(Width), float(Height)}, Options.Wrap, 1.0f);
    if (WriteImage(Bitmap.Image(), Output, Format, Options.Quality, Error))
      return ExitOk;
  } catch (const std::exception &E) {
    Error = QStringLiteral("%1: %2").arg(Output, QString::fromUtf8(E.what()));
  }
  PrintError(Error);
  return ExitLoadFailed;
}

// Draws every input into the output folder, Jobs pictures at once (one document per thread), with
// a progress line when standard error is a terminal. The worst exit status of all.
int RenderAll(const TRenderOptions &Options)
{
  if (!QDir().mkpath(Options.OutDir)) {
    PrintError(QStringLiteral("%1: cannot create the folder").arg(Options.OutDir));
    return ExitUsage;
  }
  std::atomic<int> Next{0}, Done{0}, Worst{ExitOk};
  std::mutex Progress;
  const int Count = int(Options.Inputs.size());
  const bool Terminal = isatty(fileno(stderr));
  auto Work = [&] {
    for (int I = Next++; I < Count; I = Next++) {
      const QString &Input = Options.Inputs[I];
      const QString Output = QDir(Options.OutDir).filePath(QFileInfo(Input).completeBaseName() + '.' + Options.Format);
      const int Status = RenderOne(Options, Input, Output, Options.Format);
      for (int Seen = Worst; Status > Seen && !Worst.compare_exchange_weak(Seen, Status);)
        ;
      const int Finished = ++Done;
      if (Terminal) {
        const std::lock_guard<std::mutex> Lock(Progress);
        std::fprintf(stderr, "\r%d of %d pictures%s", Finished, Count, Finished == Count ? "\n" : "");
      }
    }
  };
  std::vector<std::thread> Threads;
  for (int I = 1; I < std::min(Options.Jobs, Count); ++I)
    Threads.emplace_back(Work);
  Work();
  for (std::thread &Thread : Threads)
    Thread.join();
  return Worst;
}

} // namespace

int RunRender(const QStringList &Args)
{
  if (Args.contains(QStringLiteral("--help"))) {
    std::printf("%s\n\n%s", Usage, Help);
    return ExitOk;
  }
  TRenderOptions Options;
  QString Error;
  if (!ParseArguments(Args, Options, Error)) {
    PrintError(Error);
    return ExitUsage;
  }
  if (!Options.OutDir.isEmpty())
    return RenderAll(Options);
  QString Format;
  if (!FormatOfFile(Options.Output, Format, Error)) {
    PrintError(Error);
    return ExitUsage;
  }
  return RenderOne(Options, Options.Inputs[0], Options.Output, Format);
}

} // namespace vx::cli
