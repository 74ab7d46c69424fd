#include "platform/common/VXDictionary.h"

namespace vx {

int VXStringHash(const QString &S)
{
  // FNV-1a over the UTF-16 code units: cheap, stable across runs and platforms.
  std::uint32_t Hash = 2166136261u;
  for (QChar C : S) {
    Hash = (Hash ^ (C.unicode() & 0xFFu)) * 16777619u;
    Hash = (Hash ^ (C.unicode() >> 8)) * 16777619u;
  }
  return int(Hash);
}

QString VXUniqueName(const QString &Name, const QString &Suffix,
                     const std::function<bool(const QString &)> &Exists, TVXUniqueNameProgress *Progress)
{
  QString Result = Name;
  int Counter = 0;
  if (Progress && !Progress->Candidate.isEmpty() && Progress->Suffix == Suffix) {
    Result = Progress->Candidate;
    Counter = Progress->Counter;
  }
  while (Exists(Result)) {
    const qsizetype P = Suffix.isEmpty() ? -1 : Result.indexOf(Suffix);
    if (P >= 0) {
      ++Counter;
      Result = Result.left(P) + QLatin1Char(' ') + Suffix + QStringLiteral(" (%1)").arg(Counter);
    } else {
      Result += QLatin1Char(' ') + Suffix;
    }
  }
  if (Progress)
    *Progress = {Suffix, Result, Counter};
  return Result;
}

void VXAssignNameValues(const TStrings &Strings,
                        const std::function<void(const QString &, const QString &)> &Put)
{
  const int N = Strings.Count();
  for (int I = 0; I < N; ++I)
    Put(Strings.Names(I), Strings.ValueFromIndex(I));
}

} // namespace vx
