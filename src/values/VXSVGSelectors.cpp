#include "values/VXSVGSelectors.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGException.h"
#include "values/VXSVGLookups.h"

namespace vx {

const TSVGSelectorTokenTypeStrings SVGSelectorTokenTypes = {
  QString(), QString(), QStringLiteral("["), QStringLiteral("^="), QStringLiteral("$="), QStringLiteral("*="),
  QStringLiteral("="), QStringLiteral("|="), QStringLiteral("~="), QStringLiteral("#"), QStringLiteral("*"),
  QStringLiteral(":"), QStringLiteral("."), QStringLiteral(" "), QStringLiteral(">"), QStringLiteral("+"),
  QStringLiteral("lang")
};

namespace {

const std::array<const char *, SVGSelectorTokenTypeCount> SelectorTokenTypeNames = {
  "sttNone", "sttString", "sttHasAttribute", "sttPrefixMatch", "sttSuffixMatch", "sttSubstringMatch",
  "sttExactMatch", "sttDashMatch", "sttContainsWord", "sttIDHashChar", "sttUniversalChar", "sttColonChar",
  "sttClassChar", "sttHasDescendant", "sttHasChild", "sttHasFollower", "sttLanguage"
};

bool IsBlank(QChar C)
{
  return C.unicode() <= 32;
}

bool IsQuote(QChar C)
{
  return C == QLatin1Char('"') || C == QLatin1Char('\'');
}

// Where an attribute name ends. '!' is among them although no operator starts with it, so that a
// stray "!" or "!=" is refused instead of being read as part of the name.
bool EndsAttributeName(QChar C)
{
  switch (C.unicode()) {
  case u'^': case u'$': case u'*': case u'|': case u'~': case u'=': case u']': case u'!':
    return true;
  default:
    return false;
  }
}

class TSelectorTokenizer
{
public:
  explicit TSelectorTokenizer(const QString &S) : FText(Trim(S)) {}

  TSVGSelectorTokens Run()
  {
    while (FI < FText.size()) {
      const QChar C = FText[FI];
      if (IsBlank(C))
        Blank();
      else if (C == QLatin1Char('('))
        Language();
      else if (C == QLatin1Char('['))
        Attribute();
      else if (C == QLatin1Char('*')) {
        EmitCurrent(sttUniversalChar);
        ++FI;
      } else if (C == QLatin1Char('#') || C == QLatin1Char('+') || C == QLatin1Char('>') || C == QLatin1Char(':') ||
                 C == QLatin1Char('.')) {
        EmitCurrent(GetSVGSelectorTokenType(QString(C)));
        ++FI;
        SkipBlanks();
      } else {
        FCurrent += C;
        if (FTokenType == sttNone)
          FTokenType = sttString;
        ++FI;
      }
    }
    if (FTokenType != sttNone)
      Emit(FTokenType, FCurrent);
    return std::move(FTokens);
  }

private:
  void Emit(TSVGSelectorTokenType Type, const QString &Text)
  {
    QString Value = Trim(Text);
    if (!Value.isEmpty() && IsQuote(Value.front()))
      Value.remove(0, 1);
    if (!Value.isEmpty() && IsQuote(Value.back()))
      Value.chop(1);
    if (Type == sttNone)
      return;
    // A name behind a name or a combinator was separated by a blank: that blank is the descendant
    // combinator. Behind a class, id or attribute token it stays a plain name.
    if (Type == sttString && !FTokens.empty()) {
      const TSVGSelectorTokenType Last = FTokens.back().TokenType;
      if (Last == sttString || Last == sttHasDescendant || Last == sttHasChild || Last == sttHasFollower)
        Type = sttHasDescendant;
    }
    FTokens.emplace_back(Type, Value);
  }

  // Emits what was collected so far and starts the next token of type Next.
  void EmitCurrent(TSVGSelectorTokenType Next)
  {
    Emit(FTokenType, FCurrent);
    FCurrent.clear();
    FTokenType = Next;
  }

  void SkipBlanks()
  {
    while (FI < FText.size() && IsBlank(FText[FI]))
      ++FI;
  }

  // The value of an attribute selector, from From up to the next "]" or the end; returns where it ends.
  qsizetype ValueEnd(qsizetype From) const
  {
    const qsizetype Close = FText.indexOf(QLatin1Char(']'), From);
    return Close < 0 ? FText.size() : Close;
  }

  void Blank()
  {
    EmitCurrent(sttNone);
    SkipBlanks();
  }

  void Language()
  {
    EmitCurrent(sttNone);
    ++FI;
    qsizetype Close = FText.indexOf(QLatin1Char(')'), FI);
    if (Close < 0)
      Close = FText.size();
    Emit(sttLanguage, FText.mid(FI, Close - FI));
    FI = Close + 1;
  }

  void Attribute()
  {
    EmitCurrent(sttNone);
    ++FI;
    SkipBlanks();
    qsizetype J = FI;
    while (J < FText.size() && !EndsAttributeName(FText[J]))
      ++J;
    Emit(sttHasAttribute, FText.mid(FI, J - FI));
    if (J < FText.size() && FText[J] == QLatin1Char('=')) {
      const qsizetype End = ValueEnd(J + 1);
      Emit(sttExactMatch, FText.mid(J + 1, End - J - 1));
      J = End;
    } else if (J < FText.size() - 1 && FText[J + 1] == QLatin1Char('=')) {
      const TSVGSelectorTokenType Operator = GetSVGSelectorTokenType(FText.mid(J, 2));
      const qsizetype End = ValueEnd(J + 2);
      Emit(Operator, FText.mid(J + 2, End - J - 2));
      J = End;
    } else if (J >= FText.size() || FText[J] != QLatin1Char(']'))
      throw ESVGException(Format(SInvalidSelectOr, {FText}));
    FI = J + 1;
  }

  const QString FText;
  qsizetype FI = 0;
  QString FCurrent;
  TSVGSelectorTokenType FTokenType = sttNone;
  TSVGSelectorTokens FTokens;
};

} // namespace

TSVGSelectorTokenType GetSVGSelectorTokenType(const QString &S)
{
  return TSVGSelectorTokenType(
      LookupSVGName(SVGSelectorTokenTypes.data(), int(SVGSelectorTokenTypes.size()), 0, S));
}

QString TSVGSelectorToken::ToString() const
{
  return QString::fromLatin1(SelectorTokenTypeNames[TokenType]) + QLatin1Char('(') + SVGSelectorTokenTypes[TokenType] +
         QStringLiteral(") = \"") + Value + QLatin1Char('"');
}

TSVGSelectorTokens TokenizeSelector(const QString &S)
{
  return TSelectorTokenizer(S).Run();
}

} // namespace vx
