// libFuzzer target: every input is read as a binary component stream into a document, which is
// then drawn and written again. EReadError, EClassNotFound and the library's other exceptions are
// the documented answer to a bad stream; a crash, a sanitizer report, a hang or a memory blow-up
// is a finding. Inputs that do not start with the stream's header are given one, so that the
// fuzzer spends its time past the first check.
#include "platform/common/VXFiler.h"
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
  QByteArray Stream(reinterpret_cast<const char *>(Data), static_cast<qsizetype>(Size));
  if (!vx::IsBinaryStream(Stream))
    Stream.prepend("VXB1\x0cTSVGDocument");
  try {
    vx::TSVGDocument Document;
    QBuffer Input(&Stream);
    Input.open(QIODevice::ReadOnly);
    Document.LoadFromBinaryStream(Input);
    vx::TVXGPBitmap Bitmap(32, 32);
    vx::DrawSVGToBitmap(Bitmap, &Document, 1, true);
    QBuffer Output;
    Output.open(QIODevice::WriteOnly);
    Document.SaveToBinaryStream(Output);
  } catch (const vx::Exception &) {
  }
  return 0;
}
