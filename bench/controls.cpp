// Paints of a buffered 1024 by 1024 image control: with nothing changed a paint is one blit of the
// cached bitmap; after a change of the document it renders the picture again first.
#include "components/VXSVGCtrls.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QImage>

namespace {

constexpr int Side = 1024;

// The styled-text example (text outlines make a rendering cost something), drawn into the control's whole area.
struct TPaintedControl
{
  TPaintedControl()
  {
    QFile File(QStringLiteral(VXSVG_EXAMPLES "/text.svg"));
    File.open(QIODevice::ReadOnly);
    vx::TStringList Lines;
    Lines.SetText(QString::fromUtf8(File.readAll()));
    Document.SetLines(Lines);
    Image.resize(Side, Side);
    Image.SetWrapMode(vx::iwStretch);
    Image.SetSVGDocument(&Document);
    Paint();
  }
  void Paint() { Image.render(&Target); }

  vx::TVXSVGDocument Document;
  vx::TVXSVGImage Image;
  QImage Target{Side, Side, QImage::Format_ARGB32_Premultiplied};
};

void CounterOfPaints(benchmark::State &State)
{
  State.counters["paints/s"] = benchmark::Counter(double(State.iterations()), benchmark::Counter::kIsRate);
}

void PaintUnchanged(benchmark::State &State)
{
  TPaintedControl Control;
  for (auto _ : State)
    Control.Paint();
  CounterOfPaints(State);
}
BENCHMARK(PaintUnchanged)->Unit(benchmark::kMillisecond)->UseRealTime();

void PaintAfterChange(benchmark::State &State)
{
  TPaintedControl Control;
  for (auto _ : State) {
    Control.Document.Change();
    Control.Paint();
  }
  CounterOfPaints(State);
}
BENCHMARK(PaintAfterChange)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
  QApplication App(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
