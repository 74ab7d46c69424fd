// Loading the generated picture of 50,000 elements from the binary component stream, against
// loading it from its XML text (the same picture as bench_tree). The binary load rebuilds the tree
// with its resolved styles, so it neither parses XML nor applies the style sheet.
#include "GeneratedPicture.h"
#include "tree/VXSVG.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QGuiApplication>

namespace {

QByteArray BinaryPicture(int Elements)
{
  vx::TSVGDocument Document;
  Document.LoadFromText(GeneratedPicture(Elements));
  QBuffer Buffer;
  Buffer.open(QIODevice::WriteOnly);
  Document.SaveToBinaryStream(Buffer);
  return Buffer.data();
}

void LoadFromXML(benchmark::State &State)
{
  const QString Text = GeneratedPicture(int(State.range(0)));
  vx::TSVGDocument Document;
  for (auto _ : State) {
    Document.LoadFromText(Text);
    benchmark::DoNotOptimize(Document.Count());
  }
  State.counters["MB"] = double(Text.toUtf8().size()) / 1e6;
}
BENCHMARK(LoadFromXML)->Arg(50000)->Unit(benchmark::kMillisecond);

void LoadFromBinary(benchmark::State &State)
{
  QByteArray Data = BinaryPicture(int(State.range(0)));
  vx::TSVGDocument Document;
  for (auto _ : State) {
    QBuffer Buffer(&Data);
    Buffer.open(QIODevice::ReadOnly);
    Document.LoadFromBinaryStream(Buffer);
    benchmark::DoNotOptimize(Document.Count());
  }
  State.counters["MB"] = double(Data.size()) / 1e6;
}
BENCHMARK(LoadFromBinary)->Arg(50000)->Unit(benchmark::kMillisecond);

void SaveToBinary(benchmark::State &State)
{
  vx::TSVGDocument Document;
  Document.LoadFromText(GeneratedPicture(int(State.range(0))));
  for (auto _ : State) {
    QBuffer Buffer;
    Buffer.open(QIODevice::WriteOnly);
    Document.SaveToBinaryStream(Buffer);
    benchmark::DoNotOptimize(Buffer.data().size());
  }
}
BENCHMARK(SaveToBinary)->Arg(50000)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
