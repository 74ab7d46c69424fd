// Runs every hostile picture through the command-line program, in both modes: render, save, and
// save again what was saved. Each run is a child process whose CPU time and peak memory come from
// wait4; a child is stopped after CpuLimit seconds of processor time, or WallLimit seconds of wall
// time (a read that blocks uses none). Prints every run, the worst ten by
// CPU and by memory, and the pictures that broke a promise: an output that shows the secret from
// outside the picture's folder, or a save that does not load back to the same save.
//   hostile_measure [PATH-OF-vxsvg]      (default: the vxsvg beside this program)
#include "support/HostilePictures.h"

#include <QCoreApplication>
#include <QFile>
#include <QImage>
#include <QTemporaryDir>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <vector>

namespace {

constexpr unsigned CpuLimit = 60;
constexpr unsigned WallLimit = 600;

struct TRun
{
  QString Picture;
  QString Step;
  double Cpu = 0;
  long PeakKB = 0;
  int Status = 0;
  bool Killed = false;
};

TRun Run(const QString &Program, const QStringList &Args)
{
  TRun Result;
  std::vector<QByteArray> Texts{QFile::encodeName(Program)};
  for (const QString &Arg : Args)
    Texts.push_back(QFile::encodeName(Arg));
  std::vector<char *> Argv;
  for (QByteArray &Text : Texts)
    Argv.push_back(Text.data());
  Argv.push_back(nullptr);
  const pid_t Child = fork();
  if (Child == 0) {
    // The alarm outlives exec: a child blocked on a read ends too.
    alarm(WallLimit);
    const rlimit Cpu{CpuLimit, CpuLimit};
    setrlimit(RLIMIT_CPU, &Cpu);
    const rlimit Memory{rlim_t(4) << 30, rlim_t(4) << 30};
    setrlimit(RLIMIT_AS, &Memory);
    freopen("/dev/null", "w", stderr);
    execv(Argv[0], Argv.data());
    _exit(127);
  }
  int Status = 0;
  rusage Usage{};
  wait4(Child, &Status, 0, &Usage);
  Result.Cpu = double(Usage.ru_utime.tv_sec + Usage.ru_stime.tv_sec) +
               double(Usage.ru_utime.tv_usec + Usage.ru_stime.tv_usec) / 1e6;
  Result.PeakKB = Usage.ru_maxrss;
  Result.Killed = WIFSIGNALED(Status);
  Result.Status = Result.Killed ? WTERMSIG(Status) : WEXITSTATUS(Status);
  return Result;
}

QByteArray ReadAll(const QString &FileName)
{
  QFile File(FileName);
  return File.open(QIODevice::ReadOnly) ? File.readAll() : QByteArray();
}

void PrintRun(const TRun &R)
{
  std::printf("%-46s %-22s %8.2f s %9.1f MB  %s %d\n", qPrintable(R.Picture), qPrintable(R.Step), R.Cpu,
              double(R.PeakKB) / 1024, R.Killed ? "signal" : "exit", R.Status);
}

void PrintWorst(std::vector<TRun> Runs, const char *Title, bool ByCpu)
{
  std::sort(Runs.begin(), Runs.end(),
            [&](const TRun &A, const TRun &B) { return ByCpu ? A.Cpu > B.Cpu : A.PeakKB > B.PeakKB; });
  std::printf("\nWorst ten by %s:\n", Title);
  for (std::size_t I = 0; I < std::min<std::size_t>(10, Runs.size()); ++I)
    PrintRun(Runs[I]);
}

} // namespace

int main(int argc, char **argv)
{
  QCoreApplication App(argc, argv);
  const QString Program = argc > 1 ? QString::fromLocal8Bit(argv[1]) : App.applicationDirPath() + QStringLiteral("/vxsvg");
  std::vector<TRun> Runs;
  QStringList Broken;
  for (const vxtest::THostilePicture &Picture : vxtest::HostilePictures()) {
    for (const bool Compatible : {false, true}) {
      QTemporaryDir Folder;
      const QString Input = Picture.Make(QDir(Folder.path()));
      const QString Name = QString::fromUtf8(Picture.Name) + (Compatible ? QStringLiteral(" (compatible)") : QString());
      const QStringList Mode = Compatible ? QStringList{QStringLiteral("--compatible")} : QStringList{};
      const QString Png = Folder.filePath(QStringLiteral("out.png"));
      const QString Saved = Folder.filePath(QStringLiteral("saved.svg"));
      const QString Again = Folder.filePath(QStringLiteral("again.svg"));
      const std::pair<const char *, QStringList> Steps[] = {
        {"render", QStringList{QStringLiteral("render"), Input, Png} + Mode},
        {"save", QStringList{QStringLiteral("save"), Input, Saved} + Mode},
        {"save what was saved", QStringList{QStringLiteral("save"), Saved, Again} + Mode},
      };
      for (const auto &[Step, Args] : Steps) {
        // A picture that did not load has nothing saved to load again.
        if (Args[1] == Saved && !QFile::exists(Saved))
          continue;
        TRun R = Run(Program, Args);
        R.Picture = Name;
        R.Step = QString::fromLatin1(Step);
        PrintRun(R);
        std::fflush(stdout);
        Runs.push_back(R);
      }
      if (Picture.ReachesOut && vxtest::ShowsSecret(QImage(Png)))
        Broken.append(Name + QStringLiteral(": the output shows a file from outside the folder"));
      if (QFile::exists(Saved) && ReadAll(Saved) != ReadAll(Again))
        Broken.append(Name + QStringLiteral(": what was saved does not load back to the same save"));
    }
  }
  PrintWorst(Runs, "CPU time", true);
  PrintWorst(Runs, "peak memory", false);
  std::printf("\n%s\n", Broken.isEmpty() ? "No broken promise." : "Broken promises:");
  for (const QString &Line : Broken)
    std::printf("  %s\n", qPrintable(Line));
  return Broken.isEmpty() ? 0 : 1;
}
