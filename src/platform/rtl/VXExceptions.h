#pragma once
// The exception classes of the platform. Every failure of the library is one of these; the class
// names are those of the host framework so that callers can catch by kind.
#include "platform/rtl/VXExport.h"

#include <QByteArray>
#include <QString>

#include <exception>

namespace vx {

class VX_EXPORT Exception : public std::exception
{
public:
  explicit Exception(QString Message) : FMessage(std::move(Message)), FUtf8(FMessage.toUtf8()) {}
  const QString &Message() const { return FMessage; }
  const char *what() const noexcept override { return FUtf8.constData(); }
  // Where in a source text the failure arose, when a reader knows: the element (its tag and id,
  // as "rect#r1") and its line. The message itself stays as raised.
  const QString &Origin() const { return FOrigin; }
  int Line() const { return FLine; }
  void SetOrigin(const QString &Origin, int Line)
  {
    FOrigin = Origin;
    FLine = Line;
  }

private:
  QString FMessage;
  QByteArray FUtf8;
  QString FOrigin;
  int FLine = 0;
};

#define VX_DECLARE_EXCEPTION(Name, Base)                                                            \
  class Name : public Base                                                                         \
  {                                                                                                \
  public:                                                                                          \
    using Base::Base;                                                                              \
  };

VX_DECLARE_EXCEPTION(EConvertError, Exception)
VX_DECLARE_EXCEPTION(EInvalidOperation, Exception)
VX_DECLARE_EXCEPTION(EListError, Exception)
VX_DECLARE_EXCEPTION(EArgumentOutOfRangeException, Exception)
VX_DECLARE_EXCEPTION(EClassNotFound, Exception)
VX_DECLARE_EXCEPTION(EInvalidGraphicOperation, Exception)
VX_DECLARE_EXCEPTION(EFOpenError, Exception)
VX_DECLARE_EXCEPTION(EReadError, Exception)
VX_DECLARE_EXCEPTION(EWriteError, Exception)

// The silent abort: it ends a partial drawing and is not an error.
class VX_EXPORT EAbort : public Exception
{
public:
  EAbort() : Exception(QStringLiteral("Operation aborted")) {}
};

[[noreturn]] VX_EXPORT void Abort();

} // namespace vx
