// vxsvg info FILE: the element tree of a picture, one element a line, indented by depth.
#include "Commands.h"
#include "DocumentLoading.h"

#include "tree/VXSVG.h"

#include <cstdio>

namespace vx::cli {

namespace {

void PrintElement(const TSVGElement &Element, int Depth, int &Count)
{
  ++Count;
  const QString Line = QString(Depth * 2, QLatin1Char(' ')) + Element.SVGTypeName() +
                       (Element.ID().isEmpty() ? QString() : QLatin1Char(' ') + Element.ID());
  std::printf("%s\n", Line.toUtf8().constData());
  for (const TSVGElement *Child : Element.Items())
    PrintElement(*Child, Depth + 1, Count);
}

} // namespace

int RunInfo(const QStringList &Args)
{
  if (Args.size() != 1) {
    PrintError(QStringLiteral("usage: vxsvg info FILE"));
    return ExitUsage;
  }
  TSVGDocument Document;
  if (const int Status = LoadDocument(Document, Args[0]); Status != ExitOk)
    return Status;
  int Count = 0;
  PrintElement(Document, 0, Count);
  std::printf("%d element%s\n", Count, Count == 1 ? "" : "s");
  return ExitOk;
}

} // namespace vx::cli
