#include "DocumentLoading.h"

#include "tree/VXSVGDocument.h"

#include <QFileInfo>

#include <cstdio>

namespace vx::cli {

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
  try {
    Document.LoadFromFile(FileName);
  } catch (const std::exception &Error) {
    PrintError(QStringLiteral("%1: %2").arg(FileName, QString::fromUtf8(Error.what())));
    return ExitLoadFailed;
  }
  return ExitOk;
}

} // namespace vx::cli
