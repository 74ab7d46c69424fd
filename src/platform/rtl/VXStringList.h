#pragma once
// TStrings, a list of strings with an object pointer per line and the usual text forms (lines,
// comma text, delimited text, Name=Value pairs), and TStringList, the list that stores them and
// reports its changes.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace vx {

class VX_EXPORT TStrings : public TPersistent
{
public:
  QString ClassName() const override { return QStringLiteral("TStrings"); }

  // --- storage, provided by descendants ---
  virtual int Count() const = 0;
  virtual QString Get(int Index) const = 0;
  virtual void Put(int Index, const QString &S);
  virtual TObject *GetObject(int Index) const;
  virtual void PutObject(int Index, TObject *Object);
  virtual void Insert(int Index, const QString &S) = 0;
  virtual void InsertObject(int Index, const QString &S, TObject *Object);
  virtual void Delete(int Index) = 0;
  virtual void Clear() = 0;

  QString Strings(int Index) const { return Get(Index); }
  QString operator[](int Index) const { return Get(Index); }
  TObject *Objects(int Index) const { return GetObject(Index); }
  bool IsEmpty() const { return Count() == 0; }

  virtual int Add(const QString &S);
  int AddObject(const QString &S, TObject *Object);
  void AddStrings(const TStrings &Strings);
  void AddStrings(const QStringList &Strings);
  void Move(int CurIndex, int NewIndex);
  void Exchange(int Index1, int Index2);

  // Compares by CompareStrings: ASCII case-insensitive unless CaseSensitive is set.
  virtual int IndexOf(const QString &S) const;
  int IndexOfName(const QString &Name) const;
  int IndexOfObject(const TObject *Object) const;
  bool Equals(const TStrings &Other) const;

  // Nested calls; the list tells of its changes once, when the outermost update ends.
  void BeginUpdate();
  void EndUpdate();
  int UpdateCount() const { return FUpdateCount; }

  // Lines, each followed by LineBreak. Setting splits at CR, LF and CR LF; a final line break
  // does not make an empty last line.
  QString Text() const;
  void SetText(const QString &Value);
  // Delimited text with Delimiter ',' and QuoteChar '"', blanks splitting too.
  QString CommaText() const;
  void SetCommaText(const QString &Value);
  // Joins the lines with Delimiter, quoting a line (QuoteChar, inner quotes doubled) when it holds
  // the delimiter or the quote, or, unless StrictDelimiter, a character of code 32 or below. One
  // empty line alone is written as two quotes. Setting splits at Delimiter and, unless
  // StrictDelimiter, at runs of characters of code 32 or below too; a quoted part may hold either.
  QString DelimitedText() const;
  void SetDelimitedText(const QString &Value);

  // Name=Value lines, split at the first NameValueSeparator; a line without one has an empty name
  // and value. Setting an empty value deletes the line.
  QString Names(int Index) const;
  QString ValueFromIndex(int Index) const;
  QString Values(const QString &Name) const;
  void SetValues(const QString &Name, const QString &Value);

  QChar Delimiter() const { return FDelimiter; }
  void SetDelimiter(QChar Value) { FDelimiter = Value; }
  QChar QuoteChar() const { return FQuoteChar; }
  void SetQuoteChar(QChar Value) { FQuoteChar = Value; }
  bool StrictDelimiter() const { return FStrictDelimiter; }
  void SetStrictDelimiter(bool Value) { FStrictDelimiter = Value; }
  QChar NameValueSeparator() const { return FNameValueSeparator; }
  void SetNameValueSeparator(QChar Value) { FNameValueSeparator = Value; }
  QString LineBreak() const { return FLineBreak; }
  void SetLineBreak(const QString &Value) { FLineBreak = Value; }
  bool CaseSensitive() const { return FCaseSensitive; }
  void SetCaseSensitive(bool Value) { FCaseSensitive = Value; }

  QStringList ToStringList() const;

  // Copies lines, objects and text settings of another string list.
  void Assign(const TPersistent *Source) override;

protected:
  // Called with true when the first update begins and with false when the last one ends.
  virtual void SetUpdateState(bool Updating);
  virtual int CompareStrings(const QString &A, const QString &B) const;
  [[noreturn]] static void IndexError(int Index);

private:
  void AddDelimited(const QString &Value, QChar Delimiter, QChar Quote, bool Strict);
  QString JoinDelimited(QChar Delimiter, QChar Quote, bool Strict) const;

  int FUpdateCount = 0;
  QChar FDelimiter = QLatin1Char(',');
  QChar FQuoteChar = QLatin1Char('"');
  QChar FNameValueSeparator = QLatin1Char('=');
  QString FLineBreak = QStringLiteral("\n");
  bool FStrictDelimiter = false;
  bool FCaseSensitive = false;
};

class VX_EXPORT TStringList : public TStrings
{
public:
  TStringList() = default;
  explicit TStringList(const QStringList &Strings);

  QString ClassName() const override { return QStringLiteral("TStringList"); }

  int Count() const override { return int(FItems.size()); }
  QString Get(int Index) const override;
  void Put(int Index, const QString &S) override;
  TObject *GetObject(int Index) const override;
  void PutObject(int Index, TObject *Object) override;
  void Insert(int Index, const QString &S) override;
  void InsertObject(int Index, const QString &S, TObject *Object) override;
  void Delete(int Index) override;
  void Clear() override;

  // OnChanging comes before a change and OnChange after it, both silent while an update is open.
  // The outermost BeginUpdate sends OnChanging and the outermost EndUpdate one OnChange, whether or
  // not anything changed in between.
  TNotifyEvent OnChanging;
  TNotifyEvent OnChange;

protected:
  void SetUpdateState(bool Updating) override;
  virtual void Changing();
  virtual void Changed();

private:
  struct TItem
  {
    QString S;
    TObject *Object = nullptr;
  };
  int CheckIndex(int Index) const;
  std::vector<TItem> FItems;
};

} // namespace vx
