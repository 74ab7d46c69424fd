#pragma once
// Raster images of the canvas over QImage (ARGB32_Premultiplied). A bitmap has a canvas of its own
// and can be the image of a brush. Sizes above VXMaxBitmapSide on a side, or above VXMaxBitmapPixels
// in all, are refused with EInvalidGraphicOperation instead of being allocated.
#include "platform/rtl/VXClasses.h"

#include <QImage>
#include <QString>

#include <cstdint>
#include <memory>

class QIODevice;

namespace vx {

class TVXGPCanvas;

inline constexpr int VXMaxBitmapSide = 16384;
inline constexpr std::int64_t VXMaxBitmapPixels = std::int64_t(1) << 27;

// Raises EInvalidGraphicOperation unless Width by Height is an allowed raster size.
void VXCheckBitmapSize(int Width, int Height);

class TVXGPImage : public TPersistent
{
public:
  TVXGPImage() = default;
  ~TVXGPImage() override;
  QString ClassName() const override { return QStringLiteral("TVXGPImage"); }
  // Copies the pixels of another image.
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

  int GetWidth() const { return FImage.width(); }
  int GetHeight() const { return FImage.height(); }
  bool IsEmpty() const { return FImage.isNull(); }

  // Any format that Qt's image readers know. Raises EFOpenError for a file that cannot be opened,
  // EReadError for data that is not a readable image, EInvalidGraphicOperation for a raster too large.
  void LoadFromFile(const QString &FileName);
  void LoadFromStream(QIODevice &Stream);
  // Encoder is a Qt image format name such as "PNG"; EWriteError on failure.
  void SaveToStream(QIODevice &Stream, const char *Encoder = "PNG") const;
  void SaveToFile(const QString &FileName, const char *Encoder = "PNG") const;

  // The pixels, premultiplied ARGB (what the bitmap's canvas has drawn so far included).
  const QImage &Image() const { return FImage; }
  // Replaces the pixels (converted to premultiplied ARGB), subject to the size limits.
  void SetImage(const QImage &Image);

protected:
  QImage FImage;

  // Called before the pixels are replaced or handed out; the bitmap ends its canvas here.
  virtual void ReleaseCanvas() const {}
  void Change();
};

class TVXGPBitmap : public TVXGPImage
{
public:
  TVXGPBitmap() = default;
  // A transparent bitmap of Width by Height.
  TVXGPBitmap(int Width, int Height);
  ~TVXGPBitmap() override;
  QString ClassName() const override { return QStringLiteral("TVXGPBitmap"); }

  // Resizes to a transparent raster; 0 on a side gives an empty bitmap.
  void SetSize(int Width, int Height);
  // A canvas that draws into the bitmap, made on first use. Replacing the pixels (SetSize, Assign,
  // loading) ends it; the next call makes a new one. An empty bitmap's canvas draws nowhere.
  TVXGPCanvas &GetCanvas();
  // Ends the canvas now rather than at the next change: a bitmap drawn on one thread and shown on
  // another ends its painter on the thread that drew.
  void EndCanvas() { ReleaseCanvas(); }

protected:
  void ReleaseCanvas() const override;

private:
  mutable std::unique_ptr<TVXGPCanvas> FCanvas;
  QImage FScratch;
};

} // namespace vx
