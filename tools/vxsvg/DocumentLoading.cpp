#include "DocumentLoading.h"

#include "tree/VXSVGDocument.h"

#include <QFile>
#include <QFileInfo>

#include <cstdio>
#include <stdexcept>

namespace vx::cli {

namespace {
bool StandardMode = true;
}

void SetStandardMode(bool On)
{
  StandardMode = On;
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
  try {
    if (FromInput) {
      QFile Input;
      if (!Input.open(stdin, QIODevice::ReadOnly))
        throw std::runtime_error("cannot read the standard input");
      Document.LoadFromStream(Input);
    } else {
      Document.LoadFromFile(FileName);
    }
  } catch (const std::exception &Error) {
    PrintError(QStringLiteral("%1: %2").arg(FileName, QString::fromUtf8(Error.what())));
    return ExitLoadFailed;
  }
  return ExitOk;
}

} // namespace vx::cli
