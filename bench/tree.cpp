// Loading a generated picture of 50,000 elements (about 5 MB of XML) into the element tree.
#include "GeneratedPicture.h"
#include "tree/VXSVG.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

namespace {

void LoadFromText(benchmark::State &State)
{
  const QString Text = GeneratedPicture(int(State.range(0)));
  vx::TSVGDocument Document;
  for (auto _ : State) {
    Document.LoadFromText(Text);
    benchmark::DoNotOptimize(Document.Count());
  }
  State.counters["MB"] = double(Text.toUtf8().size()) / 1e6;
  State.counters["elements/s"] =
      benchmark::Counter(double(State.range(0)) * double(State.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(LoadFromText)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
