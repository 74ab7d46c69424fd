#include "DocumentLoading.h"

#include "platform/rtl/VXExceptions.h"
#include "tree/VXSVGDocument.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <cstdio>
#include <stdexcept>

namespace vx::cli {

namespace {
bool StandardMode = true;
QStringList AllowedFolders;
}

void SetStandardMode(bool On)
{
  StandardMode = On;
}

void AllowFolder(const QString &Folder)
{
  AllowedFolders.append(Folder);
}

void PrintError(const QString &Message)
{
  std::fprintf(stderr, "vxsvg: %s\n", Message.toUtf8().constData());
}

int LoadDocument(TSVGDocument &Document, const QString &FileName)
{
  const bool FromInput = FileName == QLatin1String("-");
  const QFileInfo Info(FileName);
  if (!FromInput && !Info.isFile()) {
    PrintError(QString::fromLatin1(Info.isDir() ? "%1: is a directory, not a picture" : "%1: no such file").arg(FileName));
    return ExitUsage;
  }
  TSVGOptions Options = Document.GetOptions();
  if (StandardMode)
    Options.Include(soStandardSVG);
  else
    Options.Exclude(soStandardSVG);
  Document.SetOptions(Options);
  Document.FilePolicy().SetAllowedFolders(AllowedFolders);
  try {
    if (FromInput) {
      QFile Input;
      if (!Input.open(stdin, QIODevice::ReadOnly))
        throw std::runtime_error("cannot read the standard input");
      Document.LoadFromStream(Input);
    } else {
      Document.LoadFromFile(FileName);
    }
  } catch (const Exception &Error) {
    // "file:line: message (in element)", as compilers and linters report, when the line is known.
    const QString Where = Error.Line() > 0 ? QStringLiteral("%1:%2").arg(FileName).arg(Error.Line()) : FileName;
    const QString In = Error.Origin().isEmpty() ? QString() : QStringLiteral(" (in %1)").arg(Error.Origin());
    PrintError(QStringLiteral("%1: %2%3").arg(Where, Error.Message(), In));
    return ExitLoadFailed;
  } catch (const std::exception &Error) {
    PrintError(QStringLiteral("%1: %2").arg(FileName, QString::fromUtf8(Error.what())));
    return ExitLoadFailed;
  }
  return ExitOk;
}

} // namespace vx::cli
