#pragma once
// Rasters for the image element and for raster output: decoding the inline pictures of data URIs
// (base 64 only, decoded in memory), reading bitmap files without ever handing vector content to a
// host image plugin, drawing a bitmap into a rectangle by a wrap mode, and sizing a raster made
// from a document.
#include "platform/rtl/VXExport.h"
#include "platform/geometry/VXGeometry.h"
#include "values/VXSVGVocabulary.h"

#include <QByteArray>
#include <QString>

#include <memory>

class QIODevice;

namespace vx {

class TVXGPBitmap;
class TVXGPCanvas;

// The parts of a "data:" URI: the media type ("text/plain" when none is given), whether the
// payload is base 64, and the payload as written.
struct VX_EXPORT TSVGDataURI
{
  QString MediaType = QStringLiteral("text/plain");
  bool IsBase64 = false;
  QString Payload;
};

// Splits URI into its parts; false when it does not start with "data:" (case-insensitive).
VX_EXPORT bool ParseDataURI(const QString &URI, TSVGDataURI &Parts);
// Decodes a base-64 payload. Line feeds and carriage returns are removed, and so, by the MIME rule,
// is every other character outside the alphabet; what is left must be well-formed base 64 and not
// empty, else EConvertError.
VX_EXPORT QByteArray DecodeBase64Payload(const QString &Payload);
// Whether Parts is a base-64 picture of MediaType Subtype ("svg+xml"), compared without case.
VX_EXPORT bool IsBase64Image(const TSVGDataURI &Parts, const QString &Subtype = QString());

// Reads a bitmap (PNG, JPEG, GIF ... whatever the host's readers know) into Bitmap. Vector content
// (SVG) is refused: the library draws pictures itself. Raises EReadError for data that is no
// readable bitmap or is SVG, EInvalidGraphicOperation for a raster above the bitmap limits.
VX_EXPORT void LoadRasterImage(QIODevice &Stream, TVXGPBitmap &Bitmap);
VX_EXPORT void LoadRasterImage(const QByteArray &Data, TVXGPBitmap &Bitmap);
// As above from a file; EFOpenError when it cannot be opened.
VX_EXPORT void LoadRasterImageFile(const QString &FileName, TVXGPBitmap &Bitmap);

// Loads the picture of a base-64 "data:image/..." URI into Bitmap and answers true. Any other URI
// (no "data:", not an image type, not base 64) leaves Bitmap as it was and answers false. Bad
// base 64 raises EConvertError; undecodable pictures raise as LoadRasterImage does.
VX_EXPORT bool LoadBitmapFromDataURI(const QString &URI, TVXGPBitmap &Bitmap);
// The same into a new bitmap, which stays empty for a URI that holds no picture.
VX_EXPORT std::unique_ptr<TVXGPBitmap> LoadBitmapFromDataURI(const QString &URI);

// A tiling by iwTile that needs more tiles than this draws nothing: a tiny bitmap in a huge
// rectangle must not hang the caller.
inline constexpr int VXMaxWrappedTiles = 1 << 16;

// Draws Bitmap into a rectangle of Rect's size at the origin (the caller translates the canvas):
// cropped at its natural size, fitted, stretched, tiled or centred. Alpha is in 0..1. An empty
// bitmap draws nothing.
VX_EXPORT void DrawBitmapWrapped(TVXGPCanvas &Canvas, const TVXGPBitmap &Bitmap, const TRectF &Rect,
                       TSVGImageWrapMode WrapMode, float Alpha);
// The size of a raster for a picture of Width by Height in a box of BoxWidth by BoxHeight under
// WrapMode, capped at MAX_SVGIMAGE_SIZE on each side with the aspect ratio kept. A picture
// without area takes the box.
VX_EXPORT TSizeF ScaleSize(float BoxWidth, float BoxHeight, float Width, float Height, TSVGImageWrapMode WrapMode,
                 float Scale);

} // namespace vx
