#pragma once
// The Qt image-format plugin for "svg" and "svgz": QImageReader draws the picture at the size it
// is asked for (not a bitmap scaled afterwards), within the clip rectangle, on the background colour,
// in the standard rendering mode that browser pictures expect.
#include <QImageIOHandler>
#include <QImageIOPlugin>

#include <memory>

namespace vx {

class TSVGImageFile;

class TVXSVGImageIOHandler : public QImageIOHandler
{
public:
  TVXSVGImageIOHandler();
  ~TVXSVGImageIOHandler() override;

  bool canRead() const override;
  bool read(QImage *Image) override;
  QVariant option(ImageOption Option) const override;
  void setOption(ImageOption Option, const QVariant &Value) override;
  bool supportsOption(ImageOption Option) const override;

  // True for gzip data and for text that holds an svg element near its start.
  static bool CanRead(QIODevice *Device);

private:
  // Reads the device once; false when it holds no picture.
  bool Load() const;

  mutable std::unique_ptr<TSVGImageFile> FPicture;
  mutable bool FLoaded = false;
  QSize FScaledSize;
  QRect FClipRect;
  QColor FBackgroundColor = Qt::transparent;
};

class TVXSVGImagePlugin : public QImageIOPlugin
{
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "vxsvg-imageformat.json")

public:
  Capabilities capabilities(QIODevice *Device, const QByteArray &Format) const override;
  QImageIOHandler *create(QIODevice *Device, const QByteArray &Format = QByteArray()) const override;
};

} // namespace vx
