// libFuzzer target: every input is loaded as SVG text, drawn twice into a small bitmap, hit-tested
// and saved again. Exceptions of the library are its documented answer to bad input; anything else
// (a crash, a sanitizer report, another exception, a hang, a memory blow-up) is a finding.
#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGDocument.h"

#include <QBuffer>
#include <QGuiApplication>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int *Argc, char ***Argv)
{
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
  static QGuiApplication App(*Argc, *Argv);
  return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *Data, std::size_t Size)
{
  const QString Text = QString::fromUtf8(reinterpret_cast<const char *>(Data), static_cast<qsizetype>(Size));
  try {
    vx::TSVGDocument Document;
    Document.LoadFromText(Text);
    vx::TVXGPBitmap Bitmap(32, 32);
    vx::DrawSVGToBitmap(Bitmap, &Document, 1, true);
    // The second draw runs on the caches the first one filled.
    vx::DrawSVGToBitmap(Bitmap, &Document, 0, false);
    Document.ElementAtPos(Bitmap.GetCanvas(), vx::TPointF{16, 16}, vx::TRectF{0, 0, 32, 32}, {});
    QBuffer Buffer;
    Buffer.open(QIODevice::WriteOnly);
    Document.SaveToStream(Buffer);
  } catch (const vx::Exception &) {
  }
  return 0;
}
