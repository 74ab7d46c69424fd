#include "values/VXSVGFontShorthand.h"

#include <QStringList>

namespace vx {

namespace {

bool IsOneOf(const QString &Word, std::initializer_list<const char *> Keywords)
{
  for (const char *Keyword : Keywords)
    if (Word == QLatin1String(Keyword))
      return true;
  return false;
}

bool IsNumericWeight(const QString &Word)
{
  bool Ok = false;
  const int Weight = Word.toInt(&Ok);
  return Ok && Weight >= 1 && Weight <= 1000;
}

// The first blank-separated word of Text from Pos on, and Pos past it.
QString NextWord(const QString &Text, qsizetype &Pos)
{
  while (Pos < Text.size() && Text[Pos].isSpace())
    ++Pos;
  const qsizetype Start = Pos;
  while (Pos < Text.size() && !Text[Pos].isSpace())
    ++Pos;
  return Text.mid(Start, Pos - Start);
}

} // namespace

std::vector<std::pair<QString, QString>> ExpandFontShorthand(const QString &Text)
{
  QString Style = QStringLiteral("normal"), Variant = Style, Weight = Style, Stretch = Style;
  qsizetype Pos = 0;
  QString Word = NextWord(Text, Pos);
  // Up to four keywords before the size, in any order; "normal" sets nothing.
  for (int Count = 0; Count < 4 && !Word.isEmpty(); ++Count, Word = NextWord(Text, Pos)) {
    const QString Lower = Word.toLower();
    if (Lower == QLatin1String("normal"))
      continue;
    if (IsOneOf(Lower, {"italic", "oblique"}))
      Style = Lower;
    else if (Lower == QLatin1String("small-caps"))
      Variant = Lower;
    else if (IsOneOf(Lower, {"bold", "bolder", "lighter"}) || IsNumericWeight(Lower))
      Weight = Lower;
    else if (IsOneOf(Lower, {"ultra-condensed", "extra-condensed", "condensed", "semi-condensed", "semi-expanded",
                             "expanded", "extra-expanded", "ultra-expanded"}))
      Stretch = Lower;
    else
      break;
  }
  // The size, with the line height written against it or as the next word.
  QString Size = Word.section(QLatin1Char('/'), 0, 0);
  if (Size.isEmpty() || !(Size[0].isDigit() || Size[0] == QLatin1Char('.') ||
                          IsOneOf(Size.toLower(), {"xx-small", "x-small", "small", "medium", "large", "x-large",
                                                   "xx-large", "larger", "smaller"})))
    return {};
  if (!Word.contains(QLatin1Char('/'))) {
    const qsizetype Before = Pos;
    const QString Next = NextWord(Text, Pos);
    if (Next.startsWith(QLatin1Char('/'))) {
      if (Next == QLatin1String("/"))
        NextWord(Text, Pos);
    } else {
      Pos = Before;
    }
  }
  const QString Family = Text.mid(Pos).trimmed();
  if (Family.isEmpty())
    return {};
  return {{QStringLiteral("font-style"), Style},  {QStringLiteral("font-variant"), Variant},
          {QStringLiteral("font-weight"), Weight}, {QStringLiteral("font-stretch"), Stretch},
          {QStringLiteral("font-size"), Size},     {QStringLiteral("font-family"), Family}};
}

} // namespace vx
