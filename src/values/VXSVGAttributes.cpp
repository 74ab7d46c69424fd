#include "values/VXSVGAttributes.h"

#include "platform/rtl/VXStringList.h"
#include "platform/rtl/VXSysUtils.h"

namespace vx {

namespace {

QString NamespaceOf(const IXMLNode &Node, const QString &Prefix)
{
  return Prefix.isEmpty() ? QString() : Node.FindNamespaceURI(Prefix);
}

bool IsHexDigit(QChar C)
{
  const char16_t U = C.unicode();
  return (U >= u'0' && U <= u'9') || (U >= u'a' && U <= u'f') || (U >= u'A' && U <= u'F');
}

// Steps shared by ParseURI and ParseLocalURI; Found tells whether T was a local reference.
QString LocalReference(const QString &T, bool &Found)
{
  Found = true;
  if (T.startsWith(QLatin1Char('#')) && !IsHexColor(T))
    return T.mid(1);
  if ((StartsText(QStringLiteral("url(#"), T) || StartsText(QStringLiteral("uri(#"), T)) &&
      T.endsWith(QLatin1Char(')')))
    return T.mid(5, T.size() - 6);
  Found = false;
  return QString();
}

} // namespace

QString ApplyInheritRule(const QString &S, bool &IsInherited)
{
  const QString T = Trim(S);
  IsInherited = T == QLatin1String("inherit") || (IsInherited && T.isEmpty());
  return T;
}

QString ParseAttrString(const IXMLNode &Node, const QString &Name)
{
  return Node.HasAttribute(Name, QString()) ? Node.GetAttributeNS(Name, QString()) : QString();
}

QString ParseAttrString(const IXMLNode &Node, const QString &Name, const QString &Default, const QString &Prefix)
{
  const QString URI = NamespaceOf(Node, Prefix);
  return Node.HasAttribute(Name, URI) ? Node.GetAttributeNS(Name, URI) : Default;
}

QString ParseString(const IXMLNode &Node, const QString &Name, const QString &Default)
{
  const IXMLNode Child = Node.ChildNodes().FindNode(Name);
  return Child ? Child.Text() : Default;
}

QStringList SplitString(const QString &S, const QString &Delimiters)
{
  QStringList Result;
  qsizetype Start = 0;
  for (qsizetype I = 0; I < S.size(); ++I) {
    if (Delimiters.contains(S[I])) {
      Result.append(S.mid(Start, I - Start));
      Start = I + 1;
    }
  }
  Result.append(S.mid(Start));
  return Result;
}

QStringList CleanArray(const QStringList &Strings)
{
  QStringList Result;
  Result.reserve(Strings.size());
  for (const QString &S : Strings) {
    QString T = Trim(S);
    if (!T.isEmpty())
      Result.append(std::move(T));
  }
  return Result;
}

void ParseStringList(TStrings &Strings, const QString &S, const QString &Delimiters)
{
  const QString T = Trim(S);
  if (T.isEmpty()) {
    Strings.Clear();
    return;
  }
  Strings.BeginUpdate();
  try {
    for (const QString &Token : CleanArray(SplitString(T, Delimiters)))
      Strings.Add(Token);
  } catch (...) {
    Strings.EndUpdate();
    throw;
  }
  Strings.EndUpdate();
}

void ParseRequiredStringList(const IXMLNode &Node, const QString &Name, TStrings &Strings, const QString &Delimiters)
{
  Strings.Clear();
  if (!Node.HasAttribute(Name, QString()))
    return;
  const QString Text = Node.GetAttributeNS(Name, QString());
  if (Trim(Text).isEmpty())
    Strings.Add(QString());
  else
    ParseStringList(Strings, Text, Delimiters);
}

bool SaveAttrString(const IXMLNode &Node, const QString &Name, const QString &Value, bool Omit, bool Remove)
{
  if (!Omit) {
    Node.SetAttribute(Name, Value);
    return true;
  }
  if (Remove) {
    const IXMLNodeList Attributes = Node.AttributeNodes();
    const int Index = Attributes.IndexOf(Name);
    if (Index >= 0)
      Attributes.Delete(Index);
  }
  return false;
}

bool SaveAttrString(const IXMLNode &Node, const QString &Name, const TStrings &Strings, bool Omit, bool Remove,
                    QChar Delimiter)
{
  TStringList Joined;
  Joined.Assign(&Strings);
  Joined.SetDelimiter(Delimiter);
  return SaveAttrString(Node, Name, Joined.DelimitedText(), Omit, Remove);
}

namespace {

// The properties that SVG does not inherit; all the others are always written.
const TSVGStyleProperties NotAlwaysWritten{ipAlignmentBaseline, ipBaselineShift, ipClip,       ipClipPath, ipDisplay,
                                           ipDominantBaseline,  ipFloodColor,    ipFloodOpacity, ipOpacity,  ipOverflow,
                                           ipStopColor,         ipStopOpacity,   ipVectorEffect};

} // namespace

bool SaveStyleProperty(const IXMLNode &Node, TSVGStyleProperty Property, QString Value, const QString &Default,
                       bool InStyle, bool IsInherited, bool Remove)
{
  const QString &Name = SVGStylePropertyNames[Property];
  const bool AlwaysWritten = !NotAlwaysWritten.Contains(Property);
  if (Default == QLatin1String("none") && Value.isEmpty())
    Value = QStringLiteral("none");
  if (!InStyle) {
    if (IsInherited) {
      // No attribute is named "inherit": the call only removes, so nothing is written.
      if (!AlwaysWritten)
        SaveAttrString(Node, QStringLiteral("inherit"), Value, true, Remove);
      return false;
    }
    if (Remove && Value == Default && !AlwaysWritten)
      return false;
    return SaveAttrString(Node, Name, Value, false, Remove);
  }
  QString Pair;
  if (IsInherited) {
    if (AlwaysWritten)
      return false;
    Pair = Name + QStringLiteral(":inherit");
  } else {
    if (Remove && Value == Default && !AlwaysWritten)
      return false;
    Pair = Name + QLatin1Char(':') + Value;
  }
  const QString Style = QStringLiteral("style");
  Node.SetAttribute(Style, Node.HasAttribute(Style) ? Node.GetAttribute(Style) + QStringLiteral("; ") + Pair : Pair);
  return true;
}

bool SaveNodeString(const IXMLNode &Node, const QString &Name, const QString &Value, bool Omit, bool Remove)
{
  const IXMLNodeList Children = Node.ChildNodes();
  IXMLNode Child = Children.FindNode(Name);
  if (!Omit) {
    if (!Child)
      Child = Node.AddChild(Name, SVGNamespaceURI, false, -1);
    Child.SetText(Value);
    return true;
  }
  if (Remove && Child)
    Children.Delete(Children.IndexOf(Child));
  return false;
}

bool IsHexColor(const QString &S)
{
  if (!S.startsWith(QLatin1Char('#')) || (S.size() != 4 && S.size() != 7))
    return false;
  for (qsizetype I = 1; I < S.size(); ++I)
    if (!IsHexDigit(S[I]))
      return false;
  return true;
}

QString ParseURI(const QString &S)
{
  const QString T = Trim(S);
  bool Found;
  const QString Reference = LocalReference(T, Found);
  return Found ? Reference : T;
}

QString ParseLocalURI(const QString &S)
{
  bool Found;
  return LocalReference(Trim(S), Found);
}

QString ParseURI(const QString &S, const QString &Default, bool &IsInherited)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  if (T.isEmpty() || IsInherited)
    return Default;
  const QString Result = ParseURI(T);
  return Result.isEmpty() ? Default : Result;
}

QString ParseLocalURI(const QString &S, const QString &Default, bool &IsInherited)
{
  const QString T = ApplyInheritRule(S, IsInherited);
  if (T.isEmpty() || IsInherited)
    return Default;
  const QString Result = ParseLocalURI(T);
  return Result.isEmpty() ? Default : Result;
}

QString ParseURI(const IXMLNode &Node, const QString &Name, const QString &Default, const QString &Prefix)
{
  const QString URI = NamespaceOf(Node, Prefix);
  return Node.HasAttribute(Name, URI) ? ParseURI(Node.GetAttributeNS(Name, URI)) : Default;
}

bool VXIsWhiteSpace(QChar C)
{
  const char16_t U = C.unicode();
  return U == u' ' || U == u'\t' || U == u'\n' || U == u'\r' || U == u'\f' || U == u'\v';
}

// One pass with the same result as cutting a comment and searching again from the start: text before
// a cut holds no opener, so the only new opener a cut can form is a "/" kept in front of it followed
// by a "*" behind it. A pass keeps style sheets with many comments linear.
QString RemoveComments(const QString &S)
{
  QString Result;
  Result.reserve(S.size());
  qsizetype I = 0;
  for (;;) {
    if (Result.endsWith(QLatin1Char('/')) && I < S.size() && S[I] == QLatin1Char('*')) {
      const qsizetype Close = S.indexOf(QLatin1String("*/"), I + 1);
      if (Close < 0)
        break;
      Result.chop(1);
      I = Close + 2;
      continue;
    }
    const qsizetype Open = S.indexOf(QLatin1String("/*"), I);
    const qsizetype Close = Open < 0 ? -1 : S.indexOf(QLatin1String("*/"), Open + 2);
    if (Close < 0)
      break;
    Result.append(QStringView(S).mid(I, Open - I));
    I = Close + 2;
  }
  Result.append(QStringView(S).mid(I));
  return Result;
}

QString CleanText(const QString &S)
{
  QString Result = CleanArray(S.split(QLatin1Char(' '))).join(QLatin1Char(' '));
  if (S.isEmpty())
    return Result;
  qsizetype Begin = 0, End = S.size();
  auto IsLineBreak = [](QChar C) { return C == QLatin1Char('\n') || C == QLatin1Char('\r'); };
  while (Begin < End && IsLineBreak(S[Begin]))
    ++Begin;
  while (End > Begin && IsLineBreak(S[End - 1]))
    --End;
  if (Begin == End)
    return Result;
  if (VXIsWhiteSpace(S[Begin]))
    Result.prepend(QLatin1Char(' '));
  if (VXIsWhiteSpace(S[End - 1]))
    Result.append(QLatin1Char(' '));
  return Result;
}

} // namespace vx
