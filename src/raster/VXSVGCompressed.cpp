#include "raster/VXSVGCompressed.h"

#include "platform/rtl/VXExceptions.h"

#include <zlib.h>

#include <algorithm>
#include <limits>

namespace vx {

namespace {

// Ends the stream on every way out.
class TInflateStream
{
public:
  TInflateStream()
  {
    // 16 + MAX_WBITS: a gzip wrapper, not a bare zlib one.
    if (inflateInit2(&FStream, 16 + MAX_WBITS) != Z_OK)
      throw EReadError(QStringLiteral("Cannot start inflating compressed SVG data"));
  }
  ~TInflateStream() { inflateEnd(&FStream); }
  TInflateStream(const TInflateStream &) = delete;
  TInflateStream &operator=(const TInflateStream &) = delete;
  z_stream &Stream() { return FStream; }

private:
  z_stream FStream{};
};

} // namespace

bool IsGzipData(const QByteArray &Data)
{
  return Data.size() >= 2 && quint8(Data[0]) == 0x1F && quint8(Data[1]) == 0x8B;
}

QByteArray InflateGzip(const QByteArray &Data, qsizetype Limit)
{
  if (Data.size() > qsizetype(std::numeric_limits<uInt>::max()))
    throw EReadError(QStringLiteral("Compressed SVG data is too large"));
  TInflateStream Inflater;
  z_stream &Z = Inflater.Stream();
  Z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(Data.constData()));
  Z.avail_in = uInt(Data.size());
  QByteArray Result;
  constexpr qsizetype Chunk = 64 * 1024;
  int Status = Z_OK;
  while (Status != Z_STREAM_END) {
    if (Result.size() >= Limit)
      throw EReadError(QStringLiteral("Compressed SVG data inflates to more than %1 bytes").arg(Limit));
    const qsizetype Before = Result.size();
    const qsizetype Room = std::min(Chunk, Limit - Before);
    Result.resize(Before + Room);
    Z.next_out = reinterpret_cast<Bytef *>(Result.data() + Before);
    Z.avail_out = uInt(Room);
    Status = inflate(&Z, Z_NO_FLUSH);
    Result.resize(Before + Room - qsizetype(Z.avail_out));
    if (Status == Z_BUF_ERROR && Z.avail_in == 0)
      throw EReadError(QStringLiteral("Compressed SVG data ends too early"));
    if (Status != Z_OK && Status != Z_STREAM_END && Status != Z_BUF_ERROR)
      throw EReadError(QStringLiteral("Damaged compressed SVG data"));
  }
  return Result;
}

} // namespace vx
