// vxsvg: the command-line face of the library.
#include <QCoreApplication>
#include <QTextStream>

#include <cstdio>

namespace {

const char *const Usage =
  "Usage: vxsvg COMMAND [ARGS...]\n"
  "\n"
  "Commands:\n"
  "  --help, -h    show this help\n";

} // namespace

int main(int argc, char **argv)
{
  QCoreApplication App(argc, argv);
  const QStringList Args = App.arguments().mid(1);
  if (Args.isEmpty() || Args[0] == QLatin1String("--help") || Args[0] == QLatin1String("-h")) {
    std::fputs(Usage, Args.isEmpty() ? stderr : stdout);
    return Args.isEmpty() ? 2 : 0;
  }
  std::fprintf(stderr, "vxsvg: unknown command '%s'\n%s", qPrintable(Args[0]), Usage);
  return 2;
}
