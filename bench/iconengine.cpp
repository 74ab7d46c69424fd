// The icon engines side by side: 1,000 icons of a real icon set (the scalable SVGs of the Adwaita
// theme, Debian's adwaita-icon-theme, used in order and again from the start when the set is
// smaller) turned into 24-pixel pixmaps through QIcon, once by vxsvg's icon engine and once by
// QtSvg's, in the same run. Both plugins are loaded from their files, so neither depends on which
// one QIcon would pick.
//   first   a new QIcon per file and its first pixmap: reading, drawing, caching
//   cached  the same 1,000 icons asked again: the pixmap cache
// The table gives the time of all the icons; the lines after it, the CPU time per icon. Arguments after the Google Benchmark options: [ICON_FOLDER [COUNT [SIDE]]].
#include <benchmark/benchmark.h>

#include <QDirIterator>
#include <QGuiApplication>
#include <QIcon>
#include <QIconEngine>
#include <QIconEnginePlugin>
#include <QLibraryInfo>
#include <QPixmap>
#include <QPixmapCache>
#include <QPluginLoader>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <vector>

namespace {

struct TSetup
{
  QStringList Files;
  int Side = 24;
};

QStringList IconFiles(const QString &Folder, int Count)
{
  QStringList Found;
  QDirIterator It(Folder, {QStringLiteral("*.svg")}, QDir::Files, QDirIterator::Subdirectories);
  while (It.hasNext())
    Found << It.next();
  std::sort(Found.begin(), Found.end());
  QStringList Files;
  for (int I = 0; !Found.isEmpty() && I < Count; ++I)
    Files << Found[I % Found.size()];
  return Files;
}

QIconEnginePlugin *LoadEnginePlugin(const QString &Path)
{
  auto *Loader = new QPluginLoader(Path);
  auto *Plugin = qobject_cast<QIconEnginePlugin *>(Loader->instance());
  if (!Plugin)
    std::fprintf(stderr, "iconengine: cannot load %s: %s\n", qPrintable(Path), qPrintable(Loader->errorString()));
  return Plugin;
}

std::vector<QIcon> MakeIcons(QIconEnginePlugin &Plugin, const QStringList &Files)
{
  std::vector<QIcon> Icons;
  Icons.reserve(Files.size());
  for (const QString &File : Files)
    Icons.emplace_back(Plugin.create(File));
  return Icons;
}

void First(benchmark::State &State, QIconEnginePlugin *Plugin, const TSetup &Setup)
{
  qint64 Drawn = 0;
  for (auto _ : State) {
    State.PauseTiming();
    QPixmapCache::clear();
    State.ResumeTiming();
    for (QIcon &Icon : MakeIcons(*Plugin, Setup.Files))
      Drawn += !Icon.pixmap(Setup.Side, Setup.Side).isNull();
  }
  State.SetItemsProcessed(State.iterations() * Setup.Files.size());
  State.counters["drawn"] = double(Drawn) / double(State.iterations());
}

void Cached(benchmark::State &State, QIconEnginePlugin *Plugin, const TSetup &Setup)
{
  QPixmapCache::clear();
  QPixmapCache::setCacheLimit(256 * 1024);
  std::vector<QIcon> Icons = MakeIcons(*Plugin, Setup.Files);
  for (QIcon &Icon : Icons)
    Icon.pixmap(Setup.Side, Setup.Side);
  for (auto _ : State)
    for (QIcon &Icon : Icons)
      benchmark::DoNotOptimize(Icon.pixmap(Setup.Side, Setup.Side));
  State.SetItemsProcessed(State.iterations() * Setup.Files.size());
}

// The console table, then the time per icon of each engine and their ratio. CPU time: on a shared
// machine the wall clock also counts the waits for a core.
class TPerIconReporter : public benchmark::ConsoleReporter
{
public:
  explicit TPerIconReporter(qsizetype Icons) : ConsoleReporter(OO_None), FIcons(double(Icons)) {}

  void ReportRuns(const std::vector<Run> &Runs) override
  {
    ConsoleReporter::ReportRuns(Runs);
    for (const Run &R : Runs)
      FMicroseconds[R.benchmark_name()] = R.GetAdjustedCPUTime() * 1e6 / benchmark::GetTimeUnitMultiplier(R.time_unit) / FIcons;
  }

  void Finalize() override
  {
    ConsoleReporter::Finalize();
    std::printf("\nCPU time per icon    vxsvg      qtsvg   vxsvg/qtsvg\n");
    for (const char *Phase : {"first", "cached"}) {
      const double Vx = FMicroseconds[std::string("vxsvg/") + Phase];
      const double Qt = FMicroseconds[std::string("qtsvg/") + Phase];
      std::printf("%-16s %7.2f us %7.2f us   %s\n", Phase, Vx, Qt, Qt > 0 ? qPrintable(QString::number(Vx / Qt, 'f', 2)) : "-");
    }
  }

private:
  double FIcons;
  std::map<std::string, double> FMicroseconds;
};

} // namespace

int main(int argc, char **argv)
{
  QGuiApplication App(argc, argv);
  qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
  benchmark::Initialize(&argc, argv);
  const QString Folder = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("/usr/share/icons/Adwaita/scalable");
  static TSetup Setup;
  Setup.Files = IconFiles(Folder, argc > 2 ? std::atoi(argv[2]) : 1000);
  Setup.Side = argc > 3 ? std::atoi(argv[3]) : 24;
  if (Setup.Files.isEmpty()) {
    std::fprintf(stderr, "iconengine: no SVG icons under %s (install adwaita-icon-theme)\n", qPrintable(Folder));
    return 1;
  }
  const std::pair<const char *, QString> Engines[] = {
    {"vxsvg", QStringLiteral(VXSVG_ICON_ENGINE_PLUGIN)},
    {"qtsvg", QLibraryInfo::path(QLibraryInfo::PluginsPath) + QStringLiteral("/iconengines/libqsvgicon.so")},
  };
  for (const auto &[Name, Path] : Engines) {
    QIconEnginePlugin *Plugin = LoadEnginePlugin(Path);
    if (!Plugin)
      continue;
    benchmark::RegisterBenchmark((std::string(Name) + "/first").c_str(),
                                 [Plugin](benchmark::State &State) { First(State, Plugin, Setup); })
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark((std::string(Name) + "/cached").c_str(),
                                 [Plugin](benchmark::State &State) { Cached(State, Plugin, Setup); })
        ->Unit(benchmark::kMillisecond);
  }
  std::printf("%lld icons at %d px from %s\n", static_cast<long long>(Setup.Files.size()), Setup.Side, qPrintable(Folder));
  TPerIconReporter Reporter(Setup.Files.size());
  benchmark::RunSpecifiedBenchmarks(&Reporter);
  benchmark::Shutdown();
  return 0;
}
