// vxsvg compare A.png B.png: how far two renderings differ, as the conformance report counts it.
// Both images are composited over white; a pixel differs when one of its channels differs by more
// than 32 of 255; the images match when at most 0.5% of the pixels differ.
#include "Commands.h"

#include <QFileInfo>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace vx::cli {

namespace {

// One channel of a premultiplied pixel over white.
int OverWhite(int Channel, int Alpha)
{
  return Channel + 255 - Alpha;
}

int ChannelDifference(QRgb A, QRgb B)
{
  const int AlphaA = qAlpha(A), AlphaB = qAlpha(B);
  return std::max({std::abs(OverWhite(qRed(A), AlphaA) - OverWhite(qRed(B), AlphaB)),
                   std::abs(OverWhite(qGreen(A), AlphaA) - OverWhite(qGreen(B), AlphaB)),
                   std::abs(OverWhite(qBlue(A), AlphaA) - OverWhite(qBlue(B), AlphaB))});
}

// Images of different sizes differ in every pixel of the larger one.
qint64 CountDifferences(const QImage &A, const QImage &B)
{
  if (A.size() != B.size())
    return std::max(qint64(A.width()) * A.height(), qint64(B.width()) * B.height());
  qint64 Count = 0;
  for (int Y = 0; Y < A.height(); ++Y) {
    const auto *RowA = reinterpret_cast<const QRgb *>(A.constScanLine(Y));
    const auto *RowB = reinterpret_cast<const QRgb *>(B.constScanLine(Y));
    for (int X = 0; X < A.width(); ++X)
      if (ChannelDifference(RowA[X], RowB[X]) > 32)
        ++Count;
  }
  return Count;
}

// B | A | the differing pixels in red over a faded B, each over white, side by side: B is the
// expected picture, A the actual one.
QImage SideBySide(const QImage &A, const QImage &B)
{
  const int Width = std::max(A.width(), B.width()), Height = std::max(A.height(), B.height());
  QImage Sheet(Width * 3, Height, QImage::Format_ARGB32_Premultiplied);
  Sheet.fill(Qt::white);
  QPainter Painter(&Sheet);
  Painter.drawImage(0, 0, B);
  Painter.drawImage(Width, 0, A);
  Painter.setOpacity(0.25);
  Painter.drawImage(2 * Width, 0, B);
  Painter.end();
  if (A.size() == B.size())
    for (int Y = 0; Y < A.height(); ++Y) {
      const auto *RowA = reinterpret_cast<const QRgb *>(A.constScanLine(Y));
      const auto *RowB = reinterpret_cast<const QRgb *>(B.constScanLine(Y));
      auto *Out = reinterpret_cast<QRgb *>(Sheet.scanLine(Y)) + 2 * Width;
      for (int X = 0; X < A.width(); ++X)
        if (ChannelDifference(RowA[X], RowB[X]) > 32)
          Out[X] = qRgb(255, 0, 0);
    }
  return Sheet;
}

} // namespace

int RunCompare(const QStringList &Args)
{
  const bool WithSheet = Args.size() == 4 && Args[2] == QLatin1String("--diff");
  if (Args.size() != 2 && !WithSheet) {
    PrintError(QStringLiteral("usage: vxsvg compare A.png B.png [--diff SHEET.png]"));
    return ExitUsage;
  }
  QImage Images[2];
  for (int I = 0; I < 2; ++I) {
    if (!QFileInfo(Args[I]).isFile()) {
      PrintError(QStringLiteral("%1: no such file").arg(Args[I]));
      return ExitUsage;
    }
    Images[I] = QImage(Args[I]).convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (Images[I].isNull()) {
      PrintError(QStringLiteral("%1: not a readable image").arg(Args[I]));
      return ExitLoadFailed;
    }
  }
  const qint64 Total = std::max(qint64(Images[0].width()) * Images[0].height(),
                                qint64(Images[1].width()) * Images[1].height());
  const qint64 Differing = CountDifferences(Images[0], Images[1]);
  const bool Match = Differing * 200 <= Total;
  if (WithSheet && !SideBySide(Images[0], Images[1]).save(Args[3], "PNG")) {
    PrintError(QStringLiteral("%1: cannot write the comparison sheet").arg(Args[3]));
    return ExitUsage;
  }
  std::printf("%lld of %lld pixels differ: %s\n", static_cast<long long>(Differing), static_cast<long long>(Total),
              Match ? "match" : "differ");
  return Match ? ExitOk : ExitDiffer;
}

} // namespace vx::cli
