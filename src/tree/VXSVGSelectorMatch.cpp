#include "tree/VXSVGSelectorMatch.h"

#include "platform/rtl/VXExceptions.h"

#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGLookups.h"
#include "values/VXSVGSelectors.h"

#include <climits>

namespace vx {

namespace {

bool CompareAttribute(TSVGSelectorTokenType Operator, const QString &Actual, const QString &Expected)
{
  switch (Operator) {
  case sttPrefixMatch:
  case sttDashMatch:
    return Actual.startsWith(Expected);
  case sttSuffixMatch:
    return Actual.endsWith(Expected);
  case sttSubstringMatch:
    return Actual.contains(Expected);
  case sttExactMatch:
  case sttContainsWord:
    return Actual == Expected;
  default:
    return false;
  }
}

bool AnyMatches(TSVGSelectorTokenType Operator, const TStrings &Strings, const QString &Expected)
{
  for (int I = 0; I < Strings.Count(); ++I)
    if (CompareAttribute(Operator, Strings[I], Expected))
      return true;
  return false;
}

// The attribute operators test Self, whichever element the relations have moved on to.
bool AttributeMatches(const TSVGElement &Self, TSVGSelectorTokenType Operator, const QString &Name,
                      const QString &Expected)
{
  if (Name == QLatin1String("id"))
    return CompareAttribute(Operator, Self.ID(), Expected);
  if (Name == QLatin1String("lang"))
    return CompareAttribute(Operator, Self.Language(), Expected);
  if (Name == QLatin1String("systemLanguage"))
    return AnyMatches(Operator, Self.SystemLanguages(), Expected);
  if (Name == QLatin1String("class"))
    return AnyMatches(Operator, Self.Classes(), Expected);
  // Any other name is looked up in the element's inline style, which holds every attribute the
  // element was read with; an element without one compares with the empty text.
  const auto *Graphic = dynamic_cast<const TSVGGraphicElement *>(&Self);
  return CompareAttribute(Operator, Graphic ? Graphic->Style().Values(Name) : QString(), Expected);
}

bool HasAttribute(const TSVGElement &Current, const QString &Name)
{
  return Current.Attributes().Contains(GetSVGStyleProperty(Name)) || Name == QLatin1String("id") ||
         Name == QLatin1String("lang") || Name == QLatin1String("systemLanguage") ||
         Name == QLatin1String("class");
}

// The element a relation names: the one filed under Name in the owner's table, nil without one.
const TSVGElement *Related(const TSVGElement &Self, const QString &Name)
{
  const TSVGDocument *Owner = Self.GetOwner();
  return Owner ? Owner->AllItems().Elements(Name) : nullptr;
}

// The digits of the three counters joined. A selector long enough to overflow the joined number
// ranks highest instead of wrapping round.
int Specificity(int C, int B, int A)
{
  bool Ok = false;
  const qlonglong Value = (QString::number(C) + QString::number(B) + QString::number(A)).toLongLong(&Ok);
  return Ok && Value <= INT_MAX ? int(Value) : INT_MAX;
}

} // namespace

int MatchSelector(const TSVGElement &Self, const QString &Selector)
{
  const TSVGSelectorTokens Tokens = TokenizeSelector(Selector);
  if (Tokens.empty())
    return -1;
  int Result = -1;
  std::size_t I = 0;
  if (Tokens[0].TokenType == sttUniversalChar) {
    Result = 0;
    I = 1;
  }
  int A = 0, B = 0, C = 0;
  const TSVGElement *Current = &Self;
  for (; I < Tokens.size(); ++I) {
    const TSVGSelectorToken &Token = Tokens[I];
    const TSVGElement *Next = nullptr;
    switch (Token.TokenType) {
    case sttString:
      if (Token.Value != Current->SVGTypeName())
        return Result;
      ++A;
      break;
    case sttHasAttribute:
      if (!HasAttribute(*Current, Token.Value))
        return Result;
      ++B;
      break;
    case sttPrefixMatch:
    case sttSuffixMatch:
    case sttSubstringMatch:
    case sttExactMatch:
    case sttDashMatch:
    case sttContainsWord:
      if (I == 0 || !AttributeMatches(Self, Token.TokenType, Tokens[I - 1].Value, Token.Value))
        return Result;
      ++B;
      break;
    case sttIDHashChar:
      if (Token.Value != Current->ID())
        return Result;
      ++C;
      break;
    case sttClassChar:
      if (Current->Classes().IndexOf(Token.Value) < 0)
        return Result;
      ++B;
      break;
    case sttUniversalChar:
      Next = Related(Self, Token.Value);
      if (!Next || !Next->HasAncestor(Current))
        return Result;
      Current = Next;
      ++B;
      break;
    case sttColonChar:
      break;
    case sttHasDescendant:
      Next = Related(Self, Token.Value);
      if (!Next || !Current->HasDescendant(Next))
        return Result;
      Current = Next;
      ++B;
      break;
    case sttHasChild:
      Next = Related(Self, Token.Value);
      if (!Next || !Current->HasChild(Next))
        return Result;
      Current = Next;
      ++B;
      break;
    case sttHasFollower:
      Next = Related(Self, Token.Value);
      if (!Next || !Current->HasFollowing(Next))
        return Result;
      Current = Next;
      ++B;
      break;
    case sttLanguage:
      if (!Current->HasLanguage(Token.Value))
        return Result;
      ++B;
      break;
    case sttNone:
      break;
    }
  }
  return Specificity(C, B, A);
}

TSVGSelectorSubject SelectorSubject(const QString &Selector)
{
  TSVGSelectorTokens Tokens;
  try {
    Tokens = TokenizeSelector(Selector);
  } catch (const Exception &) {
    return {};
  }
  if (Tokens.empty())
    return {TSVGSelectorSubject::Never, QString()};
  if (Tokens[0].TokenType == sttUniversalChar)
    return {};
  TSVGSelectorSubject Result;
  for (const TSVGSelectorToken &Token : Tokens) {
    const TSVGSelectorTokenType Type = Token.TokenType;
    if (Type == sttUniversalChar || Type == sttHasDescendant || Type == sttHasChild || Type == sttHasFollower)
      break;
    if (Type == sttIDHashChar)
      return {TSVGSelectorSubject::Id, Token.Value};
    if (Type == sttClassChar && Result.Kind != TSVGSelectorSubject::Class)
      Result = {TSVGSelectorSubject::Class, Token.Value};
    else if (Type == sttString && Result.Kind == TSVGSelectorSubject::Any)
      Result = {TSVGSelectorSubject::Type, Token.Value};
  }
  return Result;
}

} // namespace vx
