#include "platform/rtl/VXStringList.h"

#include "platform/rtl/VXSysUtils.h"

namespace vx {

namespace {

// Delimited text ends at its first NUL, as the text forms always have.
QString UpToNul(const QString &S)
{
  const qsizetype Nul = S.indexOf(QChar(0));
  return Nul < 0 ? S : S.left(Nul);
}

bool IsBlank(QChar C)
{
  return C.unicode() >= 1 && C.unicode() <= 32;
}

// Reads a quoted part starting at Value[Pos], which is Quote: doubled quotes stand for one, and a
// missing closing quote takes the rest of the text. Pos ends behind the closing quote.
QString ExtractQuoted(const QString &Value, qsizetype &Pos, QChar Quote)
{
  QString Result;
  ++Pos;
  while (Pos < Value.size()) {
    if (Value[Pos] == Quote) {
      if (Pos + 1 < Value.size() && Value[Pos + 1] == Quote) {
        Result += Quote;
        Pos += 2;
        continue;
      }
      ++Pos;
      break;
    }
    Result += Value[Pos++];
  }
  return Result;
}

} // namespace

// --- TStrings ------------------------------------------------------------------------------------

void TStrings::Put(int Index, const QString &S)
{
  TObject *Object = GetObject(Index);
  BeginUpdate();
  try {
    Delete(Index);
    InsertObject(Index, S, Object);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

TObject *TStrings::GetObject(int) const
{
  return nullptr;
}

void TStrings::PutObject(int, TObject *) {}

void TStrings::InsertObject(int Index, const QString &S, TObject *Object)
{
  Insert(Index, S);
  PutObject(Index, Object);
}

int TStrings::Add(const QString &S)
{
  const int Index = Count();
  Insert(Index, S);
  return Index;
}

int TStrings::AddObject(const QString &S, TObject *Object)
{
  const int Index = Count();
  InsertObject(Index, S, Object);
  return Index;
}

void TStrings::AddStrings(const TStrings &Strings)
{
  BeginUpdate();
  try {
    const int N = Strings.Count();
    for (int I = 0; I < N; ++I)
      AddObject(Strings.Get(I), Strings.GetObject(I));
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::AddStrings(const QStringList &Strings)
{
  BeginUpdate();
  try {
    for (const QString &S : Strings)
      Add(S);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::Move(int CurIndex, int NewIndex)
{
  if (CurIndex == NewIndex)
    return;
  if (NewIndex < 0 || NewIndex >= Count())
    IndexError(NewIndex);
  BeginUpdate();
  try {
    const QString S = Get(CurIndex);
    TObject *Object = GetObject(CurIndex);
    Delete(CurIndex);
    InsertObject(NewIndex, S, Object);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TStrings::Exchange(int Index1, int Index2)
{
  BeginUpdate();
  try {
    const QString S = Get(Index1);
    TObject *Object = GetObject(Index1);
    Put(Index1, Get(Index2));
    PutObject(Index1, GetObject(Index2));
    Put(Index2, S);
    PutObject(Index2, Object);
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

int TStrings::CompareStrings(const QString &A, const QString &B) const
{
  return FCaseSensitive ? QString::compare(A, B, Qt::CaseSensitive) : CompareText(A, B);
}

int TStrings::IndexOf(const QString &S) const
{
  const int N = Count();
  for (int I = 0; I < N; ++I)
    if (CompareStrings(Get(I), S) == 0)
      return I;
  return -1;
}

int TStrings::IndexOfName(const QString &Name) const
{
  const int N = Count();
  for (int I = 0; I < N; ++I) {
    const QString S = Get(I);
    const qsizetype P = S.indexOf(FNameValueSeparator);
    if (P >= 0 && CompareStrings(S.left(P), Name) == 0)
      return I;
  }
  return -1;
}

int TStrings::IndexOfObject(const TObject *Object) const
{
  const int N = Count();
  for (int I = 0; I < N; ++I)
    if (GetObject(I) == Object)
      return I;
  return -1;
}

bool TStrings::Equals(const TStrings &Other) const
{
  const int N = Count();
  if (N != Other.Count())
    return false;
  for (int I = 0; I < N; ++I)
    if (Get(I) != Other.Get(I))
      return false;
  return true;
}

void TStrings::BeginUpdate()
{
  if (FUpdateCount == 0)
    SetUpdateState(true);
  ++FUpdateCount;
}

void TStrings::EndUpdate()
{
  if (--FUpdateCount == 0)
    SetUpdateState(false);
}

void TStrings::SetUpdateState(bool) {}

QString TStrings::Text() const
{
  QString Result;
  const int N = Count();
  for (int I = 0; I < N; ++I)
    Result += Get(I) + FLineBreak;
  return Result;
}

void TStrings::SetText(const QString &Value)
{
  BeginUpdate();
  try {
    Clear();
    qsizetype Start = 0;
    const qsizetype Size = Value.size();
    while (Start < Size) {
      qsizetype End = Start;
      while (End < Size && Value[End] != QLatin1Char('\n') && Value[End] != QLatin1Char('\r'))
        ++End;
      Add(Value.mid(Start, End - Start));
      if (End < Size && Value[End] == QLatin1Char('\r'))
        ++End;
      if (End < Size && Value[End] == QLatin1Char('\n'))
        ++End;
      Start = End;
    }
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

QString TStrings::CommaText() const
{
  return JoinDelimited(QLatin1Char(','), QLatin1Char('"'), false);
}

void TStrings::SetCommaText(const QString &Value)
{
  AddDelimited(Value, QLatin1Char(','), QLatin1Char('"'), false);
}

QString TStrings::DelimitedText() const
{
  return JoinDelimited(FDelimiter, FQuoteChar, FStrictDelimiter);
}

void TStrings::SetDelimitedText(const QString &Value)
{
  AddDelimited(Value, FDelimiter, FQuoteChar, FStrictDelimiter);
}

QString TStrings::JoinDelimited(QChar Delimiter, QChar Quote, bool Strict) const
{
  const int N = Count();
  if (N == 1 && Get(0).isEmpty())
    return QString(2, Quote);
  QString Result;
  for (int I = 0; I < N; ++I) {
    QString S = Get(I);
    bool NeedsQuotes = false;
    for (QChar C : S)
      if (C.unicode() == 0 || C == Quote || C == Delimiter || (!Strict && IsBlank(C))) {
        NeedsQuotes = true;
        break;
      }
    if (NeedsQuotes)
      S = Quote + QString(S).replace(Quote, QString(2, Quote)) + Quote;
    if (I > 0)
      Result += Delimiter;
    Result += S;
  }
  return Result;
}

void TStrings::AddDelimited(const QString &Text, QChar Delimiter, QChar Quote, bool Strict)
{
  const QString Value = UpToNul(Text);
  const qsizetype Size = Value.size();
  auto SkipBlanks = [&](qsizetype &Pos) {
    while (!Strict && Pos < Size && IsBlank(Value[Pos]))
      ++Pos;
  };
  BeginUpdate();
  try {
    Clear();
    qsizetype Pos = 0;
    SkipBlanks(Pos);
    while (Pos < Size) {
      if (Value[Pos] == Quote) {
        Add(ExtractQuoted(Value, Pos, Quote));
      } else {
        const qsizetype Start = Pos;
        while (Pos < Size && Value[Pos] != Delimiter && (Strict || !IsBlank(Value[Pos])))
          ++Pos;
        Add(Value.mid(Start, Pos - Start));
      }
      SkipBlanks(Pos);
      if (Pos < Size && Value[Pos] == Delimiter) {
        // A delimiter at the very end stands for one more, empty, item.
        if (Pos + 1 == Size)
          Add(QString());
        ++Pos;
        SkipBlanks(Pos);
      }
    }
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

QString TStrings::Names(int Index) const
{
  const QString S = Get(Index);
  const qsizetype P = S.indexOf(FNameValueSeparator);
  return P < 0 ? QString() : S.left(P);
}

QString TStrings::ValueFromIndex(int Index) const
{
  const QString S = Get(Index);
  const qsizetype P = S.indexOf(FNameValueSeparator);
  return P < 0 ? QString() : S.mid(P + 1);
}

QString TStrings::Values(const QString &Name) const
{
  const int Index = IndexOfName(Name);
  return Index < 0 ? QString() : ValueFromIndex(Index);
}

void TStrings::SetValues(const QString &Name, const QString &Value)
{
  const int Index = IndexOfName(Name);
  if (Value.isEmpty()) {
    if (Index >= 0)
      Delete(Index);
    return;
  }
  const QString Line = Name + FNameValueSeparator + Value;
  if (Index < 0)
    Add(Line);
  else
    Put(Index, Line);
}

QStringList TStrings::ToStringList() const
{
  QStringList Result;
  const int N = Count();
  Result.reserve(N);
  for (int I = 0; I < N; ++I)
    Result.append(Get(I));
  return Result;
}

void TStrings::Assign(const TPersistent *Source)
{
  if (auto *Strings = dynamic_cast<const TStrings *>(Source)) {
    if (Strings == this)
      return;
    BeginUpdate();
    try {
      Clear();
      FDelimiter = Strings->FDelimiter;
      FQuoteChar = Strings->FQuoteChar;
      FNameValueSeparator = Strings->FNameValueSeparator;
      FLineBreak = Strings->FLineBreak;
      FStrictDelimiter = Strings->FStrictDelimiter;
      AddStrings(*Strings);
    } catch (...) {
      EndUpdate();
      throw;
    }
    EndUpdate();
    return;
  }
  TPersistent::Assign(Source);
}

void TStrings::IndexError(int Index)
{
  throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
}

// --- TStringList ---------------------------------------------------------------------------------

TStringList::TStringList(const QStringList &Strings)
{
  FItems.reserve(Strings.size());
  for (const QString &S : Strings)
    FItems.push_back({S, nullptr});
}

int TStringList::CheckIndex(int Index) const
{
  if (Index < 0 || Index >= Count())
    IndexError(Index);
  return Index;
}

QString TStringList::Get(int Index) const
{
  return FItems[CheckIndex(Index)].S;
}

void TStringList::Put(int Index, const QString &S)
{
  CheckIndex(Index);
  Changing();
  FItems[Index].S = S;
  Changed();
}

TObject *TStringList::GetObject(int Index) const
{
  return FItems[CheckIndex(Index)].Object;
}

void TStringList::PutObject(int Index, TObject *Object)
{
  CheckIndex(Index);
  Changing();
  FItems[Index].Object = Object;
  Changed();
}

void TStringList::Insert(int Index, const QString &S)
{
  InsertObject(Index, S, nullptr);
}

void TStringList::InsertObject(int Index, const QString &S, TObject *Object)
{
  if (Index < 0 || Index > Count())
    IndexError(Index);
  Changing();
  FItems.insert(FItems.begin() + Index, TItem{S, Object});
  Changed();
}

void TStringList::Delete(int Index)
{
  CheckIndex(Index);
  Changing();
  FItems.erase(FItems.begin() + Index);
  Changed();
}

void TStringList::Clear()
{
  if (FItems.empty())
    return;
  Changing();
  FItems.clear();
  Changed();
}

void TStringList::SetUpdateState(bool Updating)
{
  if (Updating)
    Changing();
  else
    Changed();
}

void TStringList::Changing()
{
  if (UpdateCount() == 0 && OnChanging)
    OnChanging(this);
}

void TStringList::Changed()
{
  if (UpdateCount() == 0 && OnChange)
    OnChange(this);
}

} // namespace vx
