#pragma once
// The commands of the vxsvg program: each takes its own arguments (after the command word) and
// returns the process exit status.
#include <QStringList>

namespace vx::cli {

// Exit statuses shared by the commands.
// compare reports images that differ with ExitDiffer.
enum TExitStatus : int { ExitOk = 0, ExitLoadFailed = 1, ExitDiffer = 1, ExitUsage = 2 };
// hit finds no element under the point.
inline constexpr int ExitNothingFound = 3;

struct TCommand
{
  const char *Name;
  const char *Synopsis;
  const char *Summary;
  int (*Run)(const QStringList &Args);
};

int RunInfo(const QStringList &Args);
int RunRender(const QStringList &Args);
int RunCompare(const QStringList &Args);
int RunSave(const QStringList &Args);
int RunHit(const QStringList &Args);

// Prints "vxsvg: <message>" on standard error.
void PrintError(const QString &Message);

} // namespace vx::cli
