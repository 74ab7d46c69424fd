// Parsing 100,000 path strings of mixed commands into typed point lists.
#include "platform/geometry/VXPathData.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

std::vector<QString> GeneratedPaths(int Count)
{
  std::vector<QString> Paths;
  Paths.reserve(std::size_t(Count));
  for (int I = 0; I < Count; ++I) {
    const double V = I % 97;
    Paths.push_back(QStringLiteral("M%1 %2l10.5-3.25h20v1e1c5 5 10 5 15 0s10-5 15 0q5 5 10 0t10 0"
                                   "a5 5 0 0 1 10 0A20 10 30 1 0 %3 %4z")
                        .arg(V)
                        .arg(V * 0.5)
                        .arg(V + 40.25)
                        .arg(V - 3.5));
  }
  return Paths;
}

void ParsePathStrings(benchmark::State &State)
{
  const std::vector<QString> Paths = GeneratedPaths(100000);
  vx::TVXPathData Data;
  for (auto _ : State) {
    for (const QString &Text : Paths) {
      Data.SetPathString(Text);
      benchmark::DoNotOptimize(Data.GetCount());
    }
  }
  State.SetItemsProcessed(State.iterations() * std::int64_t(Paths.size()));
}

} // namespace

BENCHMARK(ParsePathStrings)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
