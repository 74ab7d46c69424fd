#pragma once
// The host's picture system in small: TGraphic, the base of a picture kind that reads and writes a
// stream, draws into a rectangle and hands out a bitmap, and the picture registry that finds the
// graphic class for a file extension, so that code which loads pictures by file name needs no
// knowledge of the kinds there are.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"

#include <QString>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class QIODevice;
class QPainter;
class QRect;

namespace vx {

class TVXGPBitmap;

class VX_EXPORT TGraphic : public TPersistent
{
public:
  QString ClassName() const override { return QStringLiteral("TGraphic"); }

  virtual void LoadFromStream(QIODevice &Stream) = 0;
  virtual void SaveToStream(QIODevice &Stream) = 0;
  // Raises EFOpenError for a file that cannot be opened; the kind's own errors pass through.
  void LoadFromFile(const QString &FileName);
  void SaveToFile(const QString &FileName);
  // The picture drawn to fill Rect of Painter's device.
  virtual void Draw(QPainter &Painter, const QRect &Rect) = 0;

  virtual bool GetEmpty() const = 0;
  virtual int GetWidth() = 0;
  virtual int GetHeight() = 0;
  virtual void SetWidth(int Value) = 0;
  virtual void SetHeight(int Value) = 0;
  virtual void SetSize(int Width, int Height);
  virtual bool GetTransparent() const { return false; }
  virtual bool GetSupportsPartialTransparency() const { return false; }

  // Kinds without a clipboard format refuse both with EInvalidGraphicOperation.
  virtual void LoadFromClipboardFormat() = 0;
  virtual void SaveToClipboardFormat() = 0;

  TNotifyEvent OnChange;

protected:
  virtual void Changed();
};

using TGraphicFactory = std::function<std::unique_ptr<TGraphic>()>;

struct VX_EXPORT TGraphicFileFormat
{
  QString Extension;
  QString Description;
  QString GraphicClassName;
  TGraphicFactory Create;
};

// The registry of picture kinds by file extension (without the dot, compared without regard to
// case). A later registration of an extension replaces the earlier one.
class VX_EXPORT TPicture
{
public:
  static void RegisterFileFormat(const QString &Extension, const QString &Description,
                                 const QString &GraphicClassName, TGraphicFactory Create);
  static void UnregisterGraphicClass(const QString &GraphicClassName);
  // Nothing when no kind is registered for Extension.
  static std::optional<TGraphicFileFormat> FindFileFormat(const QString &Extension);
  static std::vector<TGraphicFileFormat> FileFormats();
  // A graphic of the kind registered for the file's extension, loaded from the file. Raises
  // EInvalidGraphicOperation for an extension nobody registered.
  static std::unique_ptr<TGraphic> LoadGraphicFromFile(const QString &FileName);
};

} // namespace vx
