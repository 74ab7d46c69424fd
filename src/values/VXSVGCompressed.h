#pragma once
// Compressed SVG (".svgz"): gzip data is recognised by its first two bytes and inflated with a
// bound on the result, so that a small hostile file cannot ask for gigabytes.
#include "platform/rtl/VXExport.h"

#include <QByteArray>

namespace vx {

// Far beyond any real picture; a gzip bomb stops here.
inline constexpr qsizetype SVGMaxInflatedSize = qsizetype(64) << 20;

// True for data that starts with the gzip signature.
VX_EXPORT bool IsGzipData(const QByteArray &Data);
// The inflated content of gzip Data. Raises EReadError for damaged data and for a result larger
// than Limit bytes.
VX_EXPORT QByteArray InflateGzip(const QByteArray &Data, qsizetype Limit = SVGMaxInflatedSize);

} // namespace vx
