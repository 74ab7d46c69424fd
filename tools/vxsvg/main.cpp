// vxsvg: the command-line face of the library.
#include "Commands.h"
#include "DocumentLoading.h"

#include "vxsvg/VXSVGVersion.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

#include <unistd.h>

#include <cstdio>
#include <cstring>

namespace vx::cli {

namespace {

const TCommand Commands[] = {
  {"info", "info FILE", "print the element tree of FILE, one element a line, and the element count", RunInfo},
  {"render", "render FILE OUT.png [opts]", "draw FILE into OUT.png (or .jpg, .webp ...); several FILEs\n"
   "                               with --out-dir DIR", RunRender},
  {"compare", "compare A.png B.png [--diff S]", "count the pixels that differ (over white, by more than 32/255);\n"
   "                               --diff writes B | A | the differing pixels in red to S.png", RunCompare},
  {"save", "save FILE OUT.svg [opts]", "load FILE and write it back as SVG (compact unless --full)", RunSave},
  {"hit", "hit FILE X Y [opts]", "name the element (id and type) under pixel (X, Y) as render lays FILE out", RunHit},
};

void PrintUsage(FILE *Stream)
{
  std::fputs("Usage: vxsvg COMMAND [ARGS...]\n\nCommands:\n", Stream);
  for (const TCommand &Command : Commands)
    std::fprintf(Stream, "  %-28s %s\n", Command.Synopsis, Command.Summary);
  std::fputs("  --help, -h                   show this help\n"
             "  --version                    print the version\n\n"
             "Options of every command that reads a picture:\n"
             "  --compatible                 draw with the library's classic rules instead of SVG 1.1 as\n"
             "                               browsers draw it (the default; option soStandardSVG)\n"
             "  --allow-files DIR            let pictures name files in DIR too (repeatable); without it\n"
             "                               a picture reads only files inside its own folder, and one\n"
             "                               read from the standard input reads none\n\n"
             "Options of render: vxsvg render --help (sizes, zoom, dpi, wrap modes, background,\n"
             "                               output to a folder or the standard output, parallel jobs)\n\n"
             "Options of save:\n"
             "  --full                       write default-valued sizes too (clears compact export)\n"
             "  --line-length N              wrap lines longer than N characters (above 32; path data)\n\n"
             "Options of hit:\n"
             "  --width W, --height H        the size the picture is laid out at, as for render\n"
             "  --find LIST                  comma list: hidden (search hidden elements too), groups\n"
             "                               (report the outermost group), bbox (bounding boxes decide),\n"
             "                               nonfilled (unfilled interiors count), disabled\n"
             "                               (search disabled elements too)\n\n"
             "Exit status: 0 success, 1 the picture could not be loaded (or, for render, the PNG not\n"
             "written, for save the SVG not written; for compare, the images differ in more than 0.5% of the pixels), 2 usage\n"
             "error or missing file, 3 hit found no element.\n",
             Stream);
}

} // namespace

} // namespace vx::cli

int main(int argc, char **argv)
{
  using namespace vx::cli;
  // Fonts need the GUI application; the program never shows anything, so no display is needed.
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  // Qt warns on every run when the session has no runtime folder (a batch job, a container).
  if (qEnvironmentVariableIsEmpty("XDG_RUNTIME_DIR")) {
    const QString Runtime = QDir::tempPath() + QStringLiteral("/vxsvg-runtime-") + QString::number(getuid());
    QDir().mkpath(Runtime);
    QFile::setPermissions(Runtime, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(Runtime));
  }
  QGuiApplication App(argc, argv);
  QStringList Args = App.arguments().mid(1);
  SetStandardMode(Args.removeAll(QStringLiteral("--compatible")) == 0);
  for (qsizetype At = Args.indexOf(QStringLiteral("--allow-files")); At >= 0;
       At = Args.indexOf(QStringLiteral("--allow-files"))) {
    if (At + 1 >= Args.size()) {
      PrintError(QStringLiteral("--allow-files needs a folder"));
      return ExitUsage;
    }
    AllowFolder(Args[At + 1]);
    Args.remove(At, 2);
  }
  if (Args.isEmpty()) {
    PrintUsage(stderr);
    return ExitUsage;
  }
  if (Args[0] == QLatin1String("--help") || Args[0] == QLatin1String("-h")) {
    PrintUsage(stdout);
    return ExitOk;
  }
  if (Args[0] == QLatin1String("--version")) {
    std::printf("vxsvg %s\n", VXSVG_VERSION_STRING);
    return ExitOk;
  }
  for (const TCommand &Command : Commands)
    if (Args[0] == QLatin1String(Command.Name))
      return Command.Run(Args.mid(1));
  PrintError(QStringLiteral("unknown command '%1'").arg(Args[0]));
  PrintUsage(stderr);
  return ExitUsage;
}
