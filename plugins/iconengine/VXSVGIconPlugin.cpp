#include "VXSVGIconPlugin.h"

#include "raster/VXSVGIconEngine.h"

namespace vx {

QIconEngine *TVXSVGIconPlugin::create(const QString &FileName)
{
  TSVGOptions Options = DefaultSVGOptions;
  Options.Include(soStandardSVG);
  auto *Engine = new TVXSVGIconEngine(Options);
  if (!FileName.isEmpty())
    Engine->addFile(FileName, QSize(), QIcon::Normal, QIcon::Off);
  return Engine;
}

} // namespace vx
