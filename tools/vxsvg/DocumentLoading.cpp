#include "DocumentLoading.h"

#include "tree/VXSVGDocument.h"

#include <QFileInfo>

#include <cstdio>

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
  if (!QFileInfo(FileName).isFile()) {
    PrintError(QStringLiteral("%1: no such file").arg(FileName));
    return ExitUsage;
  }
  TSVGOptions Options = Document.GetOptions();
  if (StandardMode)
    Options.Include(soStandardSVG);
  else
    Options.Exclude(soStandardSVG);
  Document.SetOptions(Options);
  try {
    Document.LoadFromFile(FileName);
  } catch (const std::exception &Error) {
    PrintError(QStringLiteral("%1: %2").arg(FileName, QString::fromUtf8(Error.what())));
    return ExitLoadFailed;
  }
  return ExitOk;
}

} // namespace vx::cli
