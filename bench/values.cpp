// Parsing one million lengths and one million colours in the forms that documents use.
#include "values/VXSVGColors.h"
#include "values/VXSVGNumbers.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace {

constexpr int TextCount = 1000000;

std::vector<QString> GeneratedLengths()
{
  static const char *const Units[] = {"", "px", "mm", "%", "em", "in", "pt", ""};
  std::vector<QString> Texts;
  Texts.reserve(TextCount);
  for (int I = 0; I < TextCount; ++I)
    Texts.push_back(QString::number((I % 1000) * 0.125 - 20, 'g', 7) + QLatin1String(Units[I % 8]));
  return Texts;
}

std::vector<QString> GeneratedColors()
{
  static const char *const Names[] = {"red", "cornflowerblue", "Black", "lightgoldenrodyellow", "teal"};
  std::vector<QString> Texts;
  Texts.reserve(TextCount);
  for (int I = 0; I < TextCount; ++I) {
    const int V = I & 0xFFFFFF;
    switch (I % 4) {
    case 0:
      Texts.push_back(QStringLiteral("#%1").arg(V, 6, 16, QLatin1Char('0')));
      break;
    case 1:
      Texts.push_back(QStringLiteral("#%1").arg(V & 0xFFF, 3, 16, QLatin1Char('0')));
      break;
    case 2:
      Texts.push_back(QStringLiteral("rgb(%1, %2%, %3)").arg(V & 0xFF).arg(V % 101).arg((V >> 8) & 0xFF));
      break;
    default:
      Texts.push_back(QLatin1String(Names[I % 5]));
    }
  }
  return Texts;
}

void ParseMillionLengths(benchmark::State &State)
{
  const std::vector<QString> Texts = GeneratedLengths();
  for (auto _ : State) {
    float Sum = 0;
    for (const QString &Text : Texts) {
      vx::TSVGUnit Unit = vx::suNone;
      Sum += vx::ParsePercent(Text, 0, Unit, vx::SVGUnitFactors, 0, 100);
    }
    benchmark::DoNotOptimize(Sum);
  }
  State.SetItemsProcessed(State.iterations() * TextCount);
}

void ParseMillionColors(benchmark::State &State)
{
  const std::vector<QString> Texts = GeneratedColors();
  for (auto _ : State) {
    vx::TVXGPColor Mix = 0;
    for (const QString &Text : Texts) {
      bool IsNone = false;
      bool IsInherited = false;
      Mix ^= vx::ParseColor(Text, 0, IsNone, IsInherited, 0);
    }
    benchmark::DoNotOptimize(Mix);
  }
  State.SetItemsProcessed(State.iterations() * TextCount);
}

} // namespace

BENCHMARK(ParseMillionLengths)->Unit(benchmark::kMillisecond);
BENCHMARK(ParseMillionColors)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
