#pragma once
// The commands of the vxsvg program: each takes its own arguments (after the command word) and
// returns the process exit status.
#include <QStringList>

namespace vx::cli {

// Exit statuses shared by the commands.
enum TExitStatus : int { ExitOk = 0, ExitLoadFailed = 1, ExitUsage = 2 };

struct TCommand
{
  const char *Name;
  const char *Synopsis;
  const char *Summary;
  int (*Run)(const QStringList &Args);
};

int RunInfo(const QStringList &Args);

// Prints "vxsvg: <message>" on standard error.
void PrintError(const QString &Message);

} // namespace vx::cli
