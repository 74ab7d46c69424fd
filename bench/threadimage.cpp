// The thread image control against the synchronous image control, on a picture of 50,000 elements:
//   PaintWhileRendering   main-thread time of one paint while the server renders the picture anew
//                         (the goal is the blit alone, under a millisecond);
//   FirstPicture/...      wall time from setting the text to a painted picture, and the part of it
//                         that the main thread is blocked (for the synchronous control, all of it).
#include "components/VXSVGCtrls.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>

#include <chrono>

namespace {

constexpr int Elements = 50000;
constexpr int Width = 800, Height = 600;

const QString &BigPicture()
{
  static const QString Text = [] {
    QString S = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='1000' height='1000' "
                               "viewBox='0 0 1000 1000'>");
    for (int I = 0; I < Elements; ++I)
      S += QStringLiteral("<rect x='%1' y='%2' width='7' height='7' fill='#%3' stroke='#000' stroke-width='0.5'/>")
               .arg(I % 199 * 5)
               .arg(I / 199 % 199 * 5)
               .arg(I * 2654435761u % 0xFFFFFF, 6, 16, QLatin1Char('0'));
    return S + QStringLiteral("</svg>");
  }();
  return Text;
}

const vx::TStringList &Lines()
{
  static vx::TStringList L;
  if (L.IsEmpty())
    L.SetText(BigPicture());
  return L;
}

void WaitWhileBusy(vx::TVXSVGThreadImage &Image)
{
  while (Image.Busy())
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

double Seconds(std::chrono::steady_clock::duration D)
{
  return std::chrono::duration<double>(D).count();
}

void PaintWhileRendering(benchmark::State &State)
{
  vx::TVXSVGThreadImage Image;
  Image.resize(Width, Height);
  Image.SetLines(Lines());
  WaitWhileBusy(Image);
  QImage Target(Width, Height, QImage::Format_ARGB32_Premultiplied);
  int Renderings = 0, PaintsDuringRendering = 0;
  for (auto _ : State) {
    // Keep the server busy: each finished rendering is followed by another in the other wrap mode.
    if (!Image.Busy()) {
      ++Renderings;
      Image.SetWrapMode(Image.WrapMode() == vx::iwFit ? vx::iwStretch : vx::iwFit);
    }
    PaintsDuringRendering += Image.Busy();
    const auto Start = std::chrono::steady_clock::now();
    Image.render(&Target);
    State.SetIterationTime(Seconds(std::chrono::steady_clock::now() - Start));
    QCoreApplication::processEvents();
  }
  State.counters["renderings"] = Renderings;
  State.counters["paints during a rendering"] = PaintsDuringRendering;
}
BENCHMARK(PaintWhileRendering)->Unit(benchmark::kMillisecond)->UseManualTime()->Iterations(2000);

void FirstPictureSynchronous(benchmark::State &State)
{
  const vx::TStringList &Text = Lines();
  QImage Target(Width, Height, QImage::Format_ARGB32_Premultiplied);
  double Blocked = 0;
  for (auto _ : State) {
    vx::TVXSVGDocument Document;
    vx::TVXSVGImage Image;
    Image.resize(Width, Height);
    Image.SetSVGDocument(&Document);
    const auto Start = std::chrono::steady_clock::now();
    Document.SetLines(Text);
    Image.render(&Target);
    Blocked += Seconds(std::chrono::steady_clock::now() - Start);
  }
  State.counters["main thread blocked (s)"] = Blocked / double(State.iterations());
}
BENCHMARK(FirstPictureSynchronous)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

void FirstPictureInTheBackground(benchmark::State &State)
{
  const vx::TStringList &Text = Lines();
  QImage Target(Width, Height, QImage::Format_ARGB32_Premultiplied);
  double Blocked = 0;
  for (auto _ : State) {
    vx::TVXSVGThreadImage Image;
    Image.resize(Width, Height);
    auto Start = std::chrono::steady_clock::now();
    Image.SetLines(Text);
    Blocked += Seconds(std::chrono::steady_clock::now() - Start);
    // What the main thread does meanwhile is its own business; here it only waits for the picture.
    WaitWhileBusy(Image);
    Start = std::chrono::steady_clock::now();
    Image.render(&Target);
    Blocked += Seconds(std::chrono::steady_clock::now() - Start);
  }
  State.counters["main thread blocked (s)"] = Blocked / double(State.iterations());
}
BENCHMARK(FirstPictureInTheBackground)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);

} // namespace

int main(int argc, char **argv)
{
  QApplication App(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
