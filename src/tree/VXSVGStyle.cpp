#include "tree/VXSVGStyle.h"

#include "platform/rtl/VXStringList.h"
#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGLookups.h"

namespace vx {

TSVGStyle::TSVGStyle(const QString &Name, const QString &Style) : FName(Name)
{
  SetStyle(Style);
}

void TSVGStyle::SetName(const QString &Value)
{
  if (Value == FName)
    return;
  FName = Value;
  Change();
}

void TSVGStyle::SetEnabled(bool Value)
{
  if (Value == FEnabled)
    return;
  FEnabled = Value;
  Change();
}

std::size_t TSVGStyle::CheckIndex(int Index) const
{
  if (Index < 0 || Index >= Count())
    throw EListError(QStringLiteral("List index out of bounds (%1)").arg(Index));
  return std::size_t(Index);
}

QString TSVGStyle::Values(const QString &Name) const
{
  const int Index = IndexOf(Name);
  return Index >= 0 ? FValues[std::size_t(Index)].second : QString();
}

void TSVGStyle::SetValues(const QString &Name, const QString &Value)
{
  Put(Name, Value);
  Change();
}

QString TSVGStyle::StyleProp(TSVGStyleProperty Property) const
{
  return Values(SVGStylePropertyNames[Property]);
}

void TSVGStyle::SetStyleProp(TSVGStyleProperty Property, const QString &Value)
{
  SetValues(SVGStylePropertyNames[Property], Value);
}

void TSVGStyle::Clear()
{
  ClearPairs();
  Change();
}

void TSVGStyle::Put(const QString &Name, const QString &Value)
{
  const auto Found = FIndex.constFind(Name);
  if (Found != FIndex.constEnd()) {
    FValues[std::size_t(*Found)].second = Value;
    return;
  }
  FIndex.insert(Name, int(FValues.size()));
  FValues.emplace_back(Name, Value);
}

void TSVGStyle::ClearPairs()
{
  FValues.clear();
  FIndex.clear();
}

template <typename F> void TSVGStyle::Updating(F &&Action)
{
  BeginUpdate();
  try {
    Action();
  } catch (...) {
    EndUpdate();
    throw;
  }
  EndUpdate();
}

void TSVGStyle::EndUpdate()
{
  if (--FUpdateCount == 0)
    Change();
}

void TSVGStyle::Change()
{
  if (FUpdateCount <= 0 && OnChange)
    OnChange(this);
}

TSVGStyleProperties TSVGStyle::AddStyle(const QString &Text)
{
  TSVGStyleProperties Result;
  const QString Trimmed = Trim(Text);
  if (Trimmed.isEmpty())
    return Result;
  // Strict delimiting: blanks belong to the values ("font-family: Times New Roman").
  TStringList Declarations;
  Declarations.SetDelimiter(QLatin1Char(';'));
  Declarations.SetNameValueSeparator(QLatin1Char(':'));
  Declarations.SetStrictDelimiter(true);
  Declarations.SetDelimitedText(RemoveComments(Trimmed));
  Updating([&] {
    for (int I = 0; I < Declarations.Count(); ++I) {
      const QString Name = Trim(Declarations.Names(I));
      if (Name.isEmpty())
        continue;
      Result.Include(GetSVGStyleProperty(Name));
      SetValues(Name, Trim(Declarations.ValueFromIndex(I)));
    }
  });
  return Result;
}

TSVGStyleProperties TSVGStyle::AddStyle(const IXMLNode &Node)
{
  TSVGStyleProperties Result;
  const IXMLNodeList Attributes = Node.AttributeNodes();
  Updating([&] {
    for (int I = 0; I < Attributes.Count(); ++I) {
      const IXMLNode Attribute = Attributes[I];
      const QString Name = Trim(Attribute.LocalName());
      if (Name.isEmpty() || IsShorthandProperty(Name))
        continue;
      Result.Include(GetSVGStyleProperty(Name));
      SetValues(Name, Trim(Attribute.Text()));
    }
  });
  return Result;
}

void TSVGStyle::LoadFromXML(const IXMLNode &Node)
{
  Updating([&] {
    Clear();
    AddStyle(Node);
  });
}

void TSVGStyle::SetStyle(const QString &Text)
{
  Updating([&] {
    Clear();
    AddStyle(Text);
  });
}

QString TSVGStyle::Text() const
{
  QString Result;
  for (const auto &[Name, Value] : FValues) {
    if (!Result.isEmpty())
      Result += QLatin1Char(';');
    Result += Name + QLatin1Char(':') + Value;
  }
  return Result;
}

QString TSVGStyle::StylesToString() const
{
  QString Result;
  for (const auto &[Name, Value] : FValues) {
    if (!Result.isEmpty())
      Result += QLatin1Char('\n');
    Result += Name + QLatin1Char('=') + Value;
  }
  return Result;
}

QString TSVGStyle::ToString() const
{
  return FName + QStringLiteral(" { ") + StylesToString() + QStringLiteral(" }");
}

bool TSVGStyle::IsShorthandProperty(const QString &Name)
{
  return Name == QLatin1String("marker");
}

void TSVGStyle::Assign(const TPersistent *Source)
{
  if (const auto *Style = dynamic_cast<const TSVGStyle *>(Source)) {
    if (Style == this)
      return;
    Updating([&] {
      FName = Style->FName;
      FOrder = Style->FOrder;
      FValues = Style->FValues;
      FIndex = Style->FIndex;
    });
    return;
  }
  if (const auto *Strings = dynamic_cast<const TStrings *>(Source)) {
    Updating([&] {
      ClearPairs();
      // A line without its separator has no name and is dropped, as in AddStyle.
      for (int I = 0; I < Strings->Count(); ++I)
        if (const QString Name = Strings->Names(I); !Name.isEmpty())
          Put(Name, Strings->ValueFromIndex(I));
    });
    return;
  }
  TPersistent::Assign(Source);
}

void TSVGStyle::AssignTo(TPersistent *Dest) const
{
  if (auto *Strings = dynamic_cast<TStrings *>(Dest)) {
    Strings->SetText(StylesToString());
    return;
  }
  TPersistent::AssignTo(Dest);
}

} // namespace vx
