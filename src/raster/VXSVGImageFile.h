#pragma once
// TSVGImageFile makes SVG a kind of the picture registry (extension "svg"): code that loads
// pictures by file name loads SVG files with it. Assigning one image file to another shares one
// document (TSVGSharedImage) until either loads anew; the bitmap a graphic hands out is its own.
#include "platform/rtl/VXExport.h"
#include "platform/vectorkit/VXGPGraphic.h"
#include "values/VXSVGVocabulary.h"

#include <QColor>
#include <QImage>
#include <QRect>

#include <memory>

namespace vx {

class TSVGDocument;
class TVXGPBitmap;

// The data behind one or more image files: the document (nullptr while empty), its natural size,
// and the size set while there was no document.
class VX_EXPORT TSVGSharedImage
{
public:
  TSVGSharedImage();
  ~TSVGSharedImage();
  TSVGSharedImage(const TSVGSharedImage &) = delete;
  TSVGSharedImage &operator=(const TSVGSharedImage &) = delete;

  std::unique_ptr<TSVGDocument> FSVG;
  float FWidth = 0;
  float FHeight = 0;
  float FTempWidth = 0;
  float FTempHeight = 0;
};

class VX_EXPORT TSVGImageFile : public TGraphic
{
public:
  TSVGImageFile();
  ~TSVGImageFile() override;
  QString ClassName() const override { return QStringLiteral("TSVGImageFile"); }

  // From another image file (or nil, which empties): share its data; the own bitmap is dropped.
  // Other sources: the base.
  void Assign(const TPersistent *Source) override;
  void Clear();

  // Reads SVG text, or gzip-compressed SVG text. Data stored with the class name in front (as
  // component streams store a picture) loads too: everything up to and including the first
  // "TSVGImageFile" is cut off. A failed load raises and leaves the picture as it was; data beyond
  // SVGMaxInflatedSize, compressed or not, raises EReadError.
  void LoadFromStream(QIODevice &Stream) override;
  void SaveToStream(QIODevice &Stream) override;
  // The picture stretched over Rect. On a device whose resolution is not the document's DPI the
  // rectangle is taken in hundredths of an inch, as metafile and printer canvases count.
  void Draw(QPainter &Painter, const QRect &Rect) override;
  // The picture drawn at Size pixels into a new image of Clip's size (all of Size when Clip is
  // empty) on Background; a null image while empty. A document without a view box is scaled as if
  // its own size were its view box, so that every picture can be drawn at any size.
  QImage RenderImage(const QSize &Size, const QRect &Clip = QRect(), const QColor &Background = Qt::transparent);
  // The picture at the graphic's size, made on first use and kept until the size or the data
  // changes; nullptr while empty.
  TVXGPBitmap *GetBitmap() const;

  bool GetEmpty() const override;
  int GetWidth() override;
  int GetHeight() override;
  void SetWidth(int Value) override;
  void SetHeight(int Value) override;
  void SetSize(int Width, int Height) override;
  bool GetTransparent() const override { return true; }
  bool GetSupportsPartialTransparency() const override { return true; }

  void LoadFromClipboardFormat() override;
  void SaveToClipboardFormat() override;

  // Gives a picture with neither a size nor a view box of its own the size of what it draws,
  // measured from the origin, and a view box over it, as Qt programs expect of such files; others
  // keep their size.
  void SizeToContent();
  // The shared document, nullptr while empty. Changing it changes every graphic that shares it.
  TSVGDocument *SVG() const;
  // The options the next loaded document gets.
  TSVGOptions Options() const { return FOptions; }
  void SetOptions(TSVGOptions Value) { FOptions = Value; }

protected:
  // A TVXGPBitmap destination gets the picture at the graphic's size.
  void AssignTo(TPersistent *Dest) const override;

private:
  void NewImage();
  void StoreSize(float Width, float Height);

  std::shared_ptr<TSVGSharedImage> FImage;
  mutable std::unique_ptr<TVXGPBitmap> FBitmap;
  TSVGOptions FOptions = DefaultSVGOptions;
};

} // namespace vx
