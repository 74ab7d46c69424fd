#pragma once
// The Qt icon-engine plugin for SVG files: QIcon("x.svg") and SVG icon themes are drawn by vxsvg,
// sharply at every size and device-pixel ratio, in the standard rendering mode.
#include <QIconEnginePlugin>

namespace vx {

class TVXSVGIconPlugin : public QIconEnginePlugin
{
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QIconEngineFactoryInterface_iid FILE "vxsvg-iconengine.json")

public:
  QIconEngine *create(const QString &FileName = QString()) override;
};

} // namespace vx
