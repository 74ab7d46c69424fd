// vxsvg against QtSvg on the same pictures, phase by phase. Each argument after the Google Benchmark
// options is a group: NAME=PATH, where PATH is one SVG file or a folder searched for *.svg. For every
// group the phases are timed for both libraries:
//   load    bytes to a drawable document (vxsvg: parse, tree, styles; QtSvg: QSvgRenderer::load)
//   draw1   the first draw of a freshly loaded document into a 512x512 image
//   draw2   the next draw of the same document, caches warm
//   hit     1,000 points looked up with ElementAtPos (vxsvg only)
//   save    SaveToStream into memory (vxsvg only)
// Only the phase itself is timed (manual time); preparing it (loading for a draw) is not.
// With --memory ENGINE NAME=PATH the program instead loads and draws every picture of the group,
// keeps them all, and prints "elements bytes" (the growth of the peak resident size): run it once per
// group and engine in a fresh process.
#include "platform/rtl/VXExceptions.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "raster/VXSVGRaster.h"
#include "tree/VXSVGDocument.h"

#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>

#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Side = 512;
constexpr int HitPoints = 1000;

struct TGroup
{
  std::string Name;
  std::vector<QByteArray> Pictures;
};

TGroup ReadGroup(const char *Argument)
{
  const char *Equals = std::strchr(Argument, '=');
  if (!Equals) {
    std::fprintf(stderr, "compare: group '%s' is not NAME=PATH\n", Argument);
    std::exit(2);
  }
  TGroup Group{std::string(Argument, Equals), {}};
  const QString Path = QString::fromLocal8Bit(Equals + 1);
  QStringList Files;
  if (QFileInfo(Path).isDir()) {
    QDirIterator It(Path, {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
    while (It.hasNext())
      Files << It.next();
    Files.sort();
  } else {
    Files << Path;
  }
  for (const QString &FileName : Files) {
    QFile File(FileName);
    if (File.open(QIODevice::ReadOnly))
      Group.Pictures.push_back(File.readAll());
  }
  return Group;
}

int CountElements(const QByteArray &Picture)
{
  QXmlStreamReader Reader(Picture);
  int Count = 0;
  while (!Reader.atEnd())
    if (Reader.readNext() == QXmlStreamReader::StartElement)
      ++Count;
  return Count;
}

using TClock = std::chrono::steady_clock;

double Seconds(TClock::time_point Start)
{
  return std::chrono::duration<double>(TClock::now() - Start).count();
}

// --- vxsvg ---------------------------------------------------------------------------------------

// A loaded document, or nil when the library refuses the picture.
std::unique_ptr<vx::TSVGDocument> VxLoad(const QByteArray &Picture)
{
  auto Document = std::make_unique<vx::TSVGDocument>();
  QBuffer Buffer;
  Buffer.setData(Picture);
  Buffer.open(QIODevice::ReadOnly);
  try {
    Document->LoadFromStream(Buffer);
  } catch (const vx::Exception &) {
    return nullptr;
  }
  return Document;
}

void VxDraw(vx::TVXGPBitmap &Bitmap, vx::TSVGDocument &Document)
{
  try {
    vx::DrawSVGToBitmap(Bitmap, &Document, 1, true);
  } catch (const vx::Exception &) {
  }
}

std::vector<std::unique_ptr<vx::TSVGDocument>> VxLoadAll(const TGroup &Group)
{
  std::vector<std::unique_ptr<vx::TSVGDocument>> Documents;
  for (const QByteArray &Picture : Group.Pictures)
    if (auto Document = VxLoad(Picture))
      Documents.push_back(std::move(Document));
  return Documents;
}

// The points of a grid over the image, HitPoints in all.
std::vector<vx::TPointF> HitGrid()
{
  std::vector<vx::TPointF> Points;
  for (int Y = 0; Y < 40; ++Y)
    for (int X = 0; X < 25; ++X)
      Points.push_back(vx::TPointF{(X + 0.5f) * Side / 25, (Y + 0.5f) * Side / 40});
  return Points;
}

void VxPhase(benchmark::State &State, const TGroup &Group, const std::string &Phase)
{
  vx::TVXGPBitmap Bitmap(Side, Side);
  std::vector<std::unique_ptr<vx::TSVGDocument>> Documents;
  if (Phase != "load") {
    Documents = VxLoadAll(Group);
    if (Phase != "draw1")
      for (auto &Document : Documents)
        VxDraw(Bitmap, *Document);
  }
  const std::vector<vx::TPointF> Points = HitGrid();
  const vx::TRectF R{0, 0, float(Side - 1), float(Side - 1)};
  for (auto _ : State) {
    double Elapsed = 0;
    if (Phase == "load") {
      for (const QByteArray &Picture : Group.Pictures) {
        const auto Start = TClock::now();
        auto Document = VxLoad(Picture);
        Elapsed += Seconds(Start);
        State.PauseTiming();
        Document.reset();
        State.ResumeTiming();
      }
    } else if (Phase == "draw1") {
      State.PauseTiming();
      Documents = VxLoadAll(Group);
      State.ResumeTiming();
      const auto Start = TClock::now();
      for (auto &Document : Documents)
        VxDraw(Bitmap, *Document);
      Elapsed = Seconds(Start);
    } else if (Phase == "draw2") {
      const auto Start = TClock::now();
      for (auto &Document : Documents)
        VxDraw(Bitmap, *Document);
      Elapsed = Seconds(Start);
    } else if (Phase == "hit") {
      const auto Start = TClock::now();
      for (auto &Document : Documents) {
        try {
          const vx::TMatrix M = Document->GetViewMatrix(Document->FitToRect(R), R);
          for (const vx::TPointF &P : Points)
            benchmark::DoNotOptimize(Document->ElementAtPos(M, Bitmap.GetCanvas(), P, R, {}));
        } catch (const vx::Exception &) {
        }
      }
      Elapsed = Seconds(Start);
    } else {
      const auto Start = TClock::now();
      for (auto &Document : Documents) {
        QBuffer Buffer;
        Buffer.open(QIODevice::WriteOnly);
        try {
          Document->SaveToStream(Buffer);
        } catch (const vx::Exception &) {
        }
        benchmark::DoNotOptimize(Buffer.data().size());
      }
      Elapsed = Seconds(Start);
    }
    State.SetIterationTime(Elapsed);
  }
  State.counters["pictures"] = double(Group.Pictures.size());
  State.counters["loaded"] = double(Phase == "load" ? VxLoadAll(Group).size() : Documents.size());
}

// --- QtSvg ---------------------------------------------------------------------------------------

std::vector<std::unique_ptr<QSvgRenderer>> QtLoadAll(const TGroup &Group)
{
  std::vector<std::unique_ptr<QSvgRenderer>> Renderers;
  for (const QByteArray &Picture : Group.Pictures) {
    auto Renderer = std::make_unique<QSvgRenderer>();
    if (Renderer->load(Picture))
      Renderers.push_back(std::move(Renderer));
  }
  return Renderers;
}

void QtDraw(QImage &Image, QSvgRenderer &Renderer)
{
  Image.fill(Qt::transparent);
  QPainter Painter(&Image);
  Painter.setRenderHint(QPainter::Antialiasing);
  Renderer.render(&Painter);
}

void QtPhase(benchmark::State &State, const TGroup &Group, const std::string &Phase)
{
  QImage Image(Side, Side, QImage::Format_ARGB32_Premultiplied);
  std::vector<std::unique_ptr<QSvgRenderer>> Renderers;
  if (Phase == "draw2") {
    Renderers = QtLoadAll(Group);
    for (auto &Renderer : Renderers)
      QtDraw(Image, *Renderer);
  }
  for (auto _ : State) {
    double Elapsed = 0;
    if (Phase == "load") {
      for (const QByteArray &Picture : Group.Pictures) {
        QSvgRenderer Renderer;
        const auto Start = TClock::now();
        benchmark::DoNotOptimize(Renderer.load(Picture));
        Elapsed += Seconds(Start);
      }
    } else {
      if (Phase == "draw1") {
        State.PauseTiming();
        Renderers = QtLoadAll(Group);
        State.ResumeTiming();
      }
      const auto Start = TClock::now();
      for (auto &Renderer : Renderers)
        QtDraw(Image, *Renderer);
      Elapsed = Seconds(Start);
    }
    State.SetIterationTime(Elapsed);
  }
  State.counters["pictures"] = double(Group.Pictures.size());
  State.counters["loaded"] = double(Phase == "load" ? QtLoadAll(Group).size() : Renderers.size());
}

// --- memory --------------------------------------------------------------------------------------

long PeakKiB()
{
  rusage Usage{};
  getrusage(RUSAGE_SELF, &Usage);
  return Usage.ru_maxrss;
}

int MeasureMemory(const std::string &Engine, const TGroup &Group)
{
  long long Elements = 0;
  for (const QByteArray &Picture : Group.Pictures)
    Elements += CountElements(Picture);
  QImage Image(Side, Side, QImage::Format_ARGB32_Premultiplied);
  vx::TVXGPBitmap Bitmap(Side, Side);
  QtDraw(Image, *std::make_unique<QSvgRenderer>());
  VxDraw(Bitmap, *std::make_unique<vx::TSVGDocument>());
  const long Before = PeakKiB();
  if (Engine == "vxsvg") {
    auto Documents = VxLoadAll(Group);
    for (auto &Document : Documents)
      VxDraw(Bitmap, *Document);
    std::printf("%lld %lld\n", Elements, (PeakKiB() - Before) * 1024LL);
  } else {
    auto Renderers = QtLoadAll(Group);
    for (auto &Renderer : Renderers)
      QtDraw(Image, *Renderer);
    std::printf("%lld %lld\n", Elements, (PeakKiB() - Before) * 1024LL);
  }
  return 0;
}

} // namespace

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  // QtSvg reports every element it does not support; the table is what matters here.
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
  benchmark::Initialize(&argc, argv);
  if (argc == 4 && std::strcmp(argv[1], "--memory") == 0)
    return MeasureMemory(argv[2], ReadGroup(argv[3]));
  // Groups are read once and live until the end: the registered benchmarks refer to them.
  static std::vector<TGroup> Groups;
  for (int I = 1; I < argc; ++I)
    Groups.push_back(ReadGroup(argv[I]));
  for (const TGroup &Group : Groups) {
    for (const char *Phase : {"load", "draw1", "draw2", "hit", "save"})
      benchmark::RegisterBenchmark(("vxsvg/" + Group.Name + "/" + Phase).c_str(),
                                   [&Group, Phase](benchmark::State &State) { VxPhase(State, Group, Phase); })
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
    for (const char *Phase : {"load", "draw1", "draw2"})
      benchmark::RegisterBenchmark(("qtsvg/" + Group.Name + "/" + Phase).c_str(),
                                   [&Group, Phase](benchmark::State &State) { QtPhase(State, Group, Phase); })
          ->UseManualTime()
          ->Unit(benchmark::kMillisecond);
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
