// Loading a generated picture of 50,000 elements (about 5 MB of XML) into the element tree.
#include "tree/VXSVG.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

namespace {

QString GeneratedPicture(int Elements)
{
  QString Text = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='1000' height='1000'>\n");
  Text.reserve(Elements * 110);
  for (int I = 0; I < Elements; ++I)
    Text += QStringLiteral("<g id='e%1' class='c%2 all' style='fill:#%3;stroke:none' "
                           "transform='translate(%2 %4)' opacity='0.5'/>\n")
                .arg(I)
                .arg(I % 100)
                .arg(QString::number(0x100000 + I * 13 % 0xEFFFFF, 16))
                .arg(I % 977);
  Text += QStringLiteral("</svg>\n");
  return Text;
}

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
