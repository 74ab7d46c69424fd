#include "PictureLayout.h"

#include "platform/vectorkit/VXGPBitmap.h"
#include "tree/VXSVGDocument.h"

#include <cmath>

namespace vx::cli {

bool SplitArguments(const QStringList &Args, QStringList &Positional, const TOptionHandler &Handler, QString &Error)
{
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
    if (!Handler(Arg, Args[++I], Error))
      return false;
  }
  return true;
}

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

QString OutputSize(std::optional<int> AskedWidth, std::optional<int> AskedHeight, const TSizeF &Natural, int &Width,
                   int &Height)
{
  double W = AskedWidth.value_or(0), H = AskedHeight.value_or(0);
  if (!AskedWidth || !AskedHeight) {
    // Also refuses NaN sizes, which fail every comparison.
    if (!(Natural.cx > 0 && Natural.cy > 0))
      return QStringLiteral("the picture has no size of its own; give --width and --height");
    const double Aspect = double(Natural.cy) / Natural.cx;
    if (AskedWidth)
      H = W * Aspect;
    else if (AskedHeight)
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

void ScaleToOutput(TSVGDocument &Document, const TSizeF &Natural)
{
  if (!Document.IsViewBoxSpecified() && Natural.cx > 0 && Natural.cy > 0)
    Document.SetViewBox(TRectF{0, 0, Natural.cx, Natural.cy});
}

} // namespace vx::cli
