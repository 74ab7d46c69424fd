// Filling 10,000 anti-aliased paths (stars, ellipses and rounded rectangles) into a 1024 x 1024 bitmap.
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>
#include <vector>

namespace {

std::vector<std::unique_ptr<vx::TVXGPPath>> GeneratedPaths(int Count)
{
  std::vector<std::unique_ptr<vx::TVXGPPath>> Paths;
  Paths.reserve(std::size_t(Count));
  for (int I = 0; I < Count; ++I) {
    auto P = std::make_unique<vx::TVXGPPath>();
    const float X = float((I * 37) % 1000), Y = float((I * 91) % 1000), R = float(5 + I % 20);
    switch (I % 3) {
    case 0:
      for (int K = 0; K < 10; ++K) {
        const double A = K * 3.14159265 / 5, Radius = K % 2 ? R / 2 : R;
        const vx::TPointF Pt{X + float(Radius * std::cos(A)), Y + float(Radius * std::sin(A))};
        K == 0 ? P->MoveTo(Pt) : P->LineTo(Pt);
      }
      P->ClosePath();
      break;
    case 1:
      P->AddEllipse({X, Y, X + 2 * R, Y + R});
      break;
    default:
      P->AddRectangle({X, Y, X + 2 * R, Y + 2 * R}, R / 3, R / 3);
      break;
    }
    Paths.push_back(std::move(P));
  }
  return Paths;
}

void FillPaths(benchmark::State &State)
{
  const auto Paths = GeneratedPaths(10000);
  vx::TVXGPBitmap Bitmap(1024, 1024);
  vx::TVXGPCanvas &Canvas = Bitmap.GetCanvas();
  Canvas.TrySmoothingMode(vx::VXSmoothingModeHighQuality);
  for (auto _ : State) {
    Canvas.Clear(0);
    int I = 0;
    for (const auto &P : Paths) {
      Canvas.Brush().SetColor(0xFF000000u | vx::TVXGPColor(I++ * 2654435761u >> 8));
      Canvas.FillPath(*P, 0.8f);
    }
    benchmark::DoNotOptimize(Bitmap.Image().constBits());
  }
  State.SetItemsProcessed(State.iterations() * std::int64_t(Paths.size()));
}

} // namespace

BENCHMARK(FillPaths)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
