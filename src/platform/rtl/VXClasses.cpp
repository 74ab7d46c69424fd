#include "platform/rtl/VXClasses.h"

namespace vx {

void TPersistent::Assign(const TPersistent *Source)
{
  if (Source)
    Source->AssignTo(this);
  else
    AssignError(nullptr);
}

void TPersistent::AssignTo(TPersistent *Dest) const
{
  Dest->AssignError(this);
}

void TPersistent::AssignError(const TPersistent *Source) const
{
  const QString SourceName = Source ? Source->ClassName() : QStringLiteral("nil");
  throw EConvertError(QStringLiteral("Cannot assign a %1 to a %2").arg(SourceName, ClassName()));
}

void Abort()
{
  throw EAbort();
}

} // namespace vx
