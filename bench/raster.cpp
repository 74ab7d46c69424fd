// Rendering a generated picture of 50,000 elements (shapes and paths in transformed, translucent
// groups) at 1024 by 1024, as `vxsvg render` does it: the draw alone, and load + draw + PNG.
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVG.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QGuiApplication>

namespace {

// Groups of five: a rect, a circle, an ellipse, a path and the group itself.
QString GeneratedPicture(int Elements)
{
  QString Text = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1000 1000'>\n");
  Text.reserve(Elements * 90);
  for (int I = 0; I < Elements / 5; ++I) {
    const int X = I * 37 % 960, Y = I * 53 % 960;
    Text += QStringLiteral("<g transform='translate(%1 %2) rotate(%3)' opacity='0.6' fill='#%4' stroke='#333'>"
                           "<rect width='20' height='12' rx='3'/><circle cx='10' cy='20' r='6'/>"
                           "<ellipse cx='25' cy='5' rx='6' ry='3'/><path d='M0 30 L10 40 Q 15 30 20 40 Z'/></g>\n")
                .arg(X)
                .arg(Y)
                .arg(I % 360)
                .arg(QString::number(0x200000 + I * 7919 % 0xDFFFFF, 16));
  }
  Text += QStringLiteral("</svg>\n");
  return Text;
}

constexpr int Side = 1024;

void DrawAt1024(benchmark::State &State)
{
  vx::TSVGDocument Document;
  Document.LoadFromText(GeneratedPicture(int(State.range(0))));
  vx::TVXGPBitmap Bitmap(Side, Side);
  for (auto _ : State) {
    Bitmap.GetCanvas().Clear(0);
    vx::DrawSVGWrapped(Bitmap.GetCanvas(), &Document, vx::TRectF{0, 0, Side, Side}, vx::iwStretch, 1);
  }
  State.counters["elements/s"] =
      benchmark::Counter(double(State.range(0)) * double(State.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(DrawAt1024)->Arg(50000)->Unit(benchmark::kMillisecond);

void LoadDrawSavePNG(benchmark::State &State)
{
  const QString Text = GeneratedPicture(int(State.range(0)));
  for (auto _ : State) {
    vx::TSVGDocument Document;
    Document.LoadFromText(Text);
    vx::TVXGPBitmap Bitmap(Side, Side);
    vx::DrawSVGWrapped(Bitmap.GetCanvas(), &Document, vx::TRectF{0, 0, Side, Side}, vx::iwStretch, 1);
    QBuffer Out;
    Out.open(QIODevice::WriteOnly);
    Bitmap.SaveToStream(Out);
    benchmark::DoNotOptimize(Out.size());
  }
}
BENCHMARK(LoadDrawSavePNG)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
