// vxsvg save FILE OUT.svg [--full] [--line-length N] [--binary]: loads a picture and writes it back
// as SVG, or with --binary as the library's binary component stream.
#include "Commands.h"
#include "DocumentLoading.h"

#include "tree/VXSVG.h"

#include <exception>

namespace vx::cli {

namespace {

struct TSaveOptions
{
  QString Input;
  QString Output;
  bool Full = false;
  bool Binary = false;
  int LineLength = 0;
};

// Fills Options from Args; false, with the reason printed, for anything it does not understand.
bool ParseSaveArguments(const QStringList &Args, TSaveOptions &Options)
{
  QStringList Positional;
  for (int I = 0; I < Args.size(); ++I) {
    const QString &Arg = Args[I];
    if (Arg == QLatin1String("--full")) {
      Options.Full = true;
    } else if (Arg == QLatin1String("--binary")) {
      Options.Binary = true;
    } else if (Arg == QLatin1String("--line-length")) {
      bool Ok = false;
      Options.LineLength = I + 1 < Args.size() ? Args[++I].toInt(&Ok) : 0;
      if (!Ok || Options.LineLength < 0) {
        PrintError(QStringLiteral("--line-length needs a whole number of 0 or more"));
        return false;
      }
    } else if (Arg.startsWith(QLatin1String("--"))) {
      PrintError(QStringLiteral("unknown option '%1'").arg(Arg));
      return false;
    } else {
      Positional.append(Arg);
    }
  }
  if (Positional.size() != 2) {
    PrintError(QStringLiteral("usage: vxsvg save FILE OUT.svg [--full] [--line-length N] [--binary]"));
    return false;
  }
  Options.Input = Positional[0];
  Options.Output = Positional[1];
  return true;
}

} // namespace

int RunSave(const QStringList &Args)
{
  TSaveOptions Options;
  if (!ParseSaveArguments(Args, Options))
    return ExitUsage;
  TSVGDocument Document;
  if (const int Status = LoadDocument(Document, Options.Input); Status != ExitOk)
    return Status;
  if (Options.Full)
    Document.SetOptions(Document.GetOptions() - TSVGOptions{soCompactExport});
  try {
    if (Options.Binary)
      Document.SaveToBinaryFile(Options.Output);
    else
      Document.SaveToFile(Options.Output, Options.LineLength);
  } catch (const std::exception &Error) {
    PrintError(QStringLiteral("%1: %2").arg(Options.Output, QString::fromUtf8(Error.what())));
    return ExitLoadFailed;
  }
  return ExitOk;
}

} // namespace vx::cli
