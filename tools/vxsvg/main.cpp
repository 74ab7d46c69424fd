// vxsvg: the command-line face of the library.
#include "Commands.h"

#include <QCoreApplication>

#include <cstdio>
#include <cstring>

namespace vx::cli {

namespace {

const TCommand Commands[] = {
  {"info", "info FILE", "print the element tree of FILE, one element a line, and the element count", RunInfo},
};

void PrintUsage(FILE *Stream)
{
  std::fputs("Usage: vxsvg COMMAND [ARGS...]\n\nCommands:\n", Stream);
  for (const TCommand &Command : Commands)
    std::fprintf(Stream, "  %-28s %s\n", Command.Synopsis, Command.Summary);
  std::fputs("  --help, -h                   show this help\n\n"
             "Exit status: 0 success, 1 the picture could not be loaded, 2 usage error or missing file.\n",
             Stream);
}

} // namespace

} // namespace vx::cli

int main(int argc, char **argv)
{
  using namespace vx::cli;
  QCoreApplication App(argc, argv);
  const QStringList Args = App.arguments().mid(1);
  if (Args.isEmpty()) {
    PrintUsage(stderr);
    return ExitUsage;
  }
  if (Args[0] == QLatin1String("--help") || Args[0] == QLatin1String("-h")) {
    PrintUsage(stdout);
    return ExitOk;
  }
  for (const TCommand &Command : Commands)
    if (Args[0] == QLatin1String(Command.Name))
      return Command.Run(Args.mid(1));
  PrintError(QStringLiteral("unknown command '%1'").arg(Args[0]));
  PrintUsage(stderr);
  return ExitUsage;
}
