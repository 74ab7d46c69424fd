#include "tree/VXSVGCSSSelectorMatch.h"

#include "tree/VXSVGGraphicElement.h"

#include <QStringList>

#include <algorithm>
#include <vector>

namespace vx {

namespace {

struct TAttributeTest
{
  QString Name;
  QString Operator; // empty for presence, else "=", "~=", "|=", "^=", "$=" or "*="
  QString Value;
};

struct TCompound
{
  QString Type; // empty or "*" for any
  QStringList Ids, Classes, Pseudos;
  std::vector<TAttributeTest> Attributes;
  // How this compound relates to the one on its left: ' ', '>', '+', '~'; 0 for the first.
  char16_t Combinator = 0;
};

class TSelectorReader
{
public:
  explicit TSelectorReader(const QString &Text) : FText(Text) {}

  bool Read(std::vector<TCompound> &Compounds)
  {
    SkipBlanks();
    char16_t Combinator = 0;
    while (!AtEnd()) {
      TCompound Compound;
      if (!ReadCompound(Compound))
        return false;
      Compound.Combinator = Combinator;
      Compounds.push_back(Compound);
      const bool Blank = SkipBlanks();
      if (AtEnd())
        break;
      if (Peek() == u'>' || Peek() == u'+' || Peek() == u'~') {
        Combinator = FText[FPos++].unicode();
        SkipBlanks();
      } else if (Blank) {
        Combinator = u' ';
      } else {
        return false;
      }
      if (AtEnd())
        return false;
    }
    return !Compounds.empty();
  }

private:
  bool AtEnd() const { return FPos >= FText.size(); }
  char16_t Peek() const { return FText[FPos].unicode(); }

  bool SkipBlanks()
  {
    const qsizetype Start = FPos;
    while (!AtEnd() && Peek() <= 32)
      ++FPos;
    return FPos > Start;
  }

  static bool IsNameChar(char16_t C)
  {
    return (C >= 'a' && C <= 'z') || (C >= 'A' && C <= 'Z') || (C >= '0' && C <= '9') || C == '-' || C == '_' ||
           C >= 128;
  }

  QString ReadName()
  {
    const qsizetype Start = FPos;
    while (!AtEnd() && IsNameChar(Peek()))
      ++FPos;
    return FText.mid(Start, FPos - Start);
  }

  bool ReadCompound(TCompound &Compound)
  {
    if (!AtEnd() && Peek() == u'*') {
      ++FPos;
      Compound.Type = QStringLiteral("*");
    } else {
      Compound.Type = ReadName();
    }
    bool Any = !Compound.Type.isEmpty();
    while (!AtEnd()) {
      const char16_t C = Peek();
      if (C == u'#' || C == u'.' || C == u':') {
        ++FPos;
        const QString Name = ReadName();
        if (Name.isEmpty())
          return false;
        (C == u'#' ? Compound.Ids : C == u'.' ? Compound.Classes : Compound.Pseudos).append(Name);
        // A functional pseudo-class keeps its argument with the name; none of them applies.
        if (C == u':' && !AtEnd() && Peek() == u'(') {
          const qsizetype Close = FText.indexOf(u')', FPos);
          if (Close < 0)
            return false;
          Compound.Pseudos.last() += FText.mid(FPos, Close + 1 - FPos);
          FPos = Close + 1;
        }
      } else if (C == u'[') {
        if (!ReadAttribute(Compound))
          return false;
      } else {
        break;
      }
      Any = true;
    }
    return Any;
  }

  bool ReadAttribute(TCompound &Compound)
  {
    const qsizetype Close = FText.indexOf(u']', FPos);
    if (Close < 0)
      return false;
    const QString Inner = FText.mid(FPos + 1, Close - FPos - 1).trimmed();
    FPos = Close + 1;
    TAttributeTest Test;
    const qsizetype Equals = Inner.indexOf(u'=');
    if (Equals < 0) {
      Test.Name = Inner;
    } else {
      const bool Prefixed = Equals > 0 && QStringLiteral("~|^$*").contains(Inner[Equals - 1]);
      Test.Name = Inner.left(Prefixed ? Equals - 1 : Equals).trimmed();
      Test.Operator = Inner.mid(Prefixed ? Equals - 1 : Equals, Prefixed ? 2 : 1);
      Test.Value = Inner.mid(Equals + 1).trimmed();
      if (Test.Value.size() >= 2 && (Test.Value.front() == u'"' || Test.Value.front() == u'\'') &&
          Test.Value.back() == Test.Value.front())
        Test.Value = Test.Value.mid(1, Test.Value.size() - 2);
    }
    if (Test.Name.isEmpty())
      return false;
    Compound.Attributes.push_back(Test);
    return true;
  }

  const QString &FText;
  qsizetype FPos = 0;
};

// The text of attribute Name as the element was read with it; false when it has none.
bool AttributeText(const TSVGElement &Element, const QString &Name, QString &Text)
{
  if (Name == QLatin1String("id")) {
    Text = Element.ID();
    return true;
  }
  if (Name == QLatin1String("class")) {
    const TStrings &Classes = Element.Classes();
    for (int I = 0; I < Classes.Count(); ++I)
      Text += (I > 0 ? QStringLiteral(" ") : QString()) + Classes[I];
    return Classes.Count() > 0;
  }
  const auto *Graphic = dynamic_cast<const TSVGGraphicElement *>(&Element);
  if (!Graphic || Graphic->Style().IndexOf(Name) < 0)
    return false;
  Text = Graphic->Style().Values(Name);
  return true;
}

bool AttributeMatches(const TSVGElement &Element, const TAttributeTest &Test)
{
  QString Actual;
  if (!AttributeText(Element, Test.Name, Actual))
    return false;
  const QString &V = Test.Value;
  if (Test.Operator.isEmpty())
    return true;
  if (Test.Operator == QLatin1String("="))
    return Actual == V;
  if (Test.Operator == QLatin1String("~="))
    return Actual.split(u' ', Qt::SkipEmptyParts).contains(V);
  if (Test.Operator == QLatin1String("|="))
    return Actual == V || Actual.startsWith(V + u'-');
  if (V.isEmpty())
    return false;
  if (Test.Operator == QLatin1String("^="))
    return Actual.startsWith(V);
  if (Test.Operator == QLatin1String("$="))
    return Actual.endsWith(V);
  return Actual.contains(V);
}

int IndexInParent(const TSVGElement &Element)
{
  return Element.Parent() ? Element.Parent()->Items().IndexOf(const_cast<TSVGElement *>(&Element)) : -1;
}

bool CompoundMatches(const TCompound &Compound, const TSVGElement &Element)
{
  if (!Compound.Type.isEmpty() && Compound.Type != QLatin1String("*") && Compound.Type != Element.SVGTypeName())
    return false;
  for (const QString &Id : Compound.Ids)
    if (Id != Element.ID())
      return false;
  for (const QString &Class : Compound.Classes)
    if (Element.Classes().IndexOf(Class) < 0)
      return false;
  for (const TAttributeTest &Test : Compound.Attributes)
    if (!AttributeMatches(Element, Test))
      return false;
  for (const QString &Pseudo : Compound.Pseudos)
    if (Pseudo != QLatin1String("first-child") || IndexInParent(Element) != 0)
      return false;
  return true;
}

// Whether the compounds up to Last match with Element standing for compound Last.
bool MatchesFrom(const std::vector<TCompound> &Compounds, std::size_t Last, const TSVGElement &Element)
{
  if (!CompoundMatches(Compounds[Last], Element))
    return false;
  if (Last == 0)
    return true;
  const TSVGElement *Parent = Element.Parent();
  switch (Compounds[Last].Combinator) {
  case u'>':
    return Parent && MatchesFrom(Compounds, Last - 1, *Parent);
  case u' ':
    for (; Parent; Parent = Parent->Parent())
      if (MatchesFrom(Compounds, Last - 1, *Parent))
        return true;
    return false;
  default: {
    const int Index = IndexInParent(Element);
    for (int I = Index - 1; I >= 0; --I) {
      if (MatchesFrom(Compounds, Last - 1, *Parent->Items()[I]))
        return true;
      if (Compounds[Last].Combinator == u'+')
        break;
    }
    return false;
  }
  }
}

int Specificity(const std::vector<TCompound> &Compounds)
{
  int Ids = 0, Classes = 0, Types = 0;
  for (const TCompound &Compound : Compounds) {
    Ids += int(Compound.Ids.size());
    Classes += int(Compound.Classes.size() + Compound.Pseudos.size() + qsizetype(Compound.Attributes.size()));
    Types += !Compound.Type.isEmpty() && Compound.Type != QLatin1String("*");
  }
  return std::min(Ids, 99) * 10000 + std::min(Classes, 99) * 100 + std::min(Types, 99);
}

// The compounds of Selector; false for a selector that cannot be read or is too long. Longer chains
// are no selectors anyone writes, and would make the backtracking of the descendant combinator
// costly on deep trees.
bool ReadSelector(const QString &Selector, std::vector<TCompound> &Compounds)
{
  constexpr std::size_t MaxCompounds = 16;
  return TSelectorReader(Selector).Read(Compounds) && Compounds.size() <= MaxCompounds;
}

} // namespace

int MatchCSSSelector(const TSVGElement &Self, const QString &Selector)
{
  std::vector<TCompound> Compounds;
  if (!ReadSelector(Selector, Compounds))
    return -1;
  return MatchesFrom(Compounds, Compounds.size() - 1, Self) ? Specificity(Compounds) : -1;
}

TSVGSelectorSubject CSSSelectorSubject(const QString &Selector)
{
  std::vector<TCompound> Compounds;
  if (!ReadSelector(Selector, Compounds))
    return {TSVGSelectorSubject::Never, QString()};
  const TCompound &Subject = Compounds.back();
  if (!Subject.Ids.isEmpty())
    return {TSVGSelectorSubject::Id, Subject.Ids.first()};
  if (!Subject.Classes.isEmpty())
    return {TSVGSelectorSubject::Class, Subject.Classes.first()};
  if (!Subject.Type.isEmpty() && Subject.Type != QLatin1String("*"))
    return {TSVGSelectorSubject::Type, Subject.Type};
  return {};
}

} // namespace vx
