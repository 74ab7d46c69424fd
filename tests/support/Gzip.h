#pragma once
// Test data in gzip form, as .svgz files hold it.
#include <QByteArray>

#include <zlib.h>

namespace vx::test {

inline QByteArray Gzip(const QByteArray &Data)
{
  z_stream Z{};
  // 16 + MAX_WBITS: a gzip wrapper.
  deflateInit2(&Z, Z_DEFAULT_COMPRESSION, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
  QByteArray Out(int(deflateBound(&Z, uLong(Data.size()))), '\0');
  Z.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(Data.constData()));
  Z.avail_in = uInt(Data.size());
  Z.next_out = reinterpret_cast<Bytef *>(Out.data());
  Z.avail_out = uInt(Out.size());
  deflate(&Z, Z_FINISH);
  Out.resize(qsizetype(Z.total_out));
  deflateEnd(&Z);
  return Out;
}

} // namespace vx::test
