// vxsvg hit FILE X Y [options]: names the element under a device point of the picture, laid out as
// render lays it out at the same size.
#include "Commands.h"
#include "DocumentLoading.h"
#include "PictureLayout.h"

#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGDocument.h"

#include <QImage>

#include <cmath>
#include <cstdio>
#include <optional>

namespace vx::cli {

namespace {

const char Usage[] = "usage: vxsvg hit FILE X Y [--width W] [--height H] "
                     "[--find hidden,groups,bbox,nonfilled,disabled]";

struct THitOptions
{
  QString Input;
  TPointF Point;
  std::optional<int> Width, Height;
  TSVGFindOptions Find;
};

bool ReadCoordinate(const QString &Text, float &Value, QString &Error)
{
  if (TryStrToFloat(Text, Value) && std::isfinite(Value))
    return true;
  Error = QStringLiteral("coordinate '%1' is not a number").arg(Text);
  return false;
}

// A comma list of option words.
bool ReadFind(const QString &Text, TSVGFindOptions &Find, QString &Error)
{
  static const struct
  {
    const char *Word;
    TSVGFindOption Option;
  } Words[] = {{"hidden", foFindHiddenElements}, {"groups", foFindGroups}, {"bbox", foUseBoundingBox},
               {"nonfilled", foFindNonFilled}, {"disabled", foFindDisabled}};
  for (const QString &Word : Text.split(QLatin1Char(','), Qt::SkipEmptyParts)) {
    bool Known = false;
    for (const auto &Entry : Words)
      if (Word == QLatin1String(Entry.Word)) {
        Find.Include(Entry.Option);
        Known = true;
      }
    if (!Known) {
      Error = QStringLiteral("unknown find option '%1'").arg(Word);
      return false;
    }
  }
  return true;
}

bool ParseArguments(const QStringList &Args, THitOptions &Options, QString &Error)
{
  QStringList Positional;
  const bool Split = SplitArguments(Args, Positional, [&](const QString &Arg, const QString &Value, QString &Why) {
    if (Arg == QLatin1String("--width"))
      return ReadSize(Value, Options.Width, Why);
    if (Arg == QLatin1String("--height"))
      return ReadSize(Value, Options.Height, Why);
    if (Arg == QLatin1String("--find"))
      return ReadFind(Value, Options.Find, Why);
    Why = QStringLiteral("unknown option '%1'").arg(Arg);
    return false;
  }, Error);
  if (!Split)
    return false;
  if (Positional.size() != 3) {
    Error = QString::fromLatin1(Usage);
    return false;
  }
  Options.Input = Positional[0];
  return ReadCoordinate(Positional[1], Options.Point.X, Error) && ReadCoordinate(Positional[2], Options.Point.Y, Error);
}

// The element under Point when Document is stretched over Rect, as render draws it.
TSVGGraphicElement *HitElement(TSVGDocument &Document, const TRectF &Rect, const TPointF &Point,
                               TSVGFindOptions Find)
{
  const TRectF Bounds = Document.GetBoundsRect();
  if (Bounds.Width() == 0 || Bounds.Height() == 0)
    return nullptr;
  // Nothing is painted: the canvas only carries the pen and the clip of the tests.
  QImage Scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
  TVXGPCanvas Canvas(&Scratch);
  const TMatrix Matrix = Document.GetViewMatrix(Document.FitToRect(Rect), Rect);
  return Document.ElementAtPos(Matrix, Canvas, Point, Rect, Find);
}

} // namespace

int RunHit(const QStringList &Args)
{
  THitOptions Options;
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
  TSVGGraphicElement *Found = nullptr;
  try {
    Found = HitElement(Document, TRectF{0, 0, float(Width), float(Height)}, Options.Point, Options.Find);
  } catch (const std::exception &E) {
    PrintError(QStringLiteral("%1: %2").arg(Options.Input, QString::fromUtf8(E.what())));
    return ExitLoadFailed;
  }
  if (!Found)
    return ExitNothingFound;
  std::printf("%s %s\n", Found->ID().toUtf8().constData(), Found->SVGTypeName().toUtf8().constData());
  return ExitOk;
}

} // namespace vx::cli
