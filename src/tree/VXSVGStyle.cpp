#include "tree/VXSVGStyle.h"

#include "platform/rtl/VXSysUtils.h"
#include "values/VXSVGAttributes.h"

namespace vx {

QString TSVGStyle::Values(const QString &Name) const
{
  const int Index = IndexOf(Name);
  return Index >= 0 ? ValueFromIndex(Index) : QString();
}

int TSVGStyle::IndexOf(const QString &Name) const
{
  for (std::size_t I = 0; I < FValues.size(); ++I)
    if (FValues[I].first == Name)
      return int(I);
  return -1;
}

void TSVGStyle::SetValues(const QString &Name, const QString &Value)
{
  const int Index = IndexOf(Name);
  if (Index >= 0) {
    if (FValues[std::size_t(Index)].second == Value)
      return;
    FValues[std::size_t(Index)].second = Value;
  } else {
    FValues.emplace_back(Name, Value);
  }
  Changed();
}

void TSVGStyle::Clear()
{
  if (FValues.empty())
    return;
  FValues.clear();
  Changed();
}

void TSVGStyle::SetText(const QString &Text)
{
  std::vector<std::pair<QString, QString>> Parsed;
  for (const QString &Declaration : RemoveComments(Text).split(QLatin1Char(';'))) {
    const qsizetype Colon = Declaration.indexOf(QLatin1Char(':'));
    if (Colon < 0)
      continue;
    const QString Name = Trim(Declaration.left(Colon));
    if (Name.isEmpty())
      continue;
    const QString Value = Trim(Declaration.mid(Colon + 1));
    auto Same = [&](const auto &Pair) { return Pair.first == Name; };
    if (auto Found = std::find_if(Parsed.begin(), Parsed.end(), Same); Found != Parsed.end())
      Found->second = Value;
    else
      Parsed.emplace_back(Name, Value);
  }
  if (Parsed == FValues)
    return;
  FValues = std::move(Parsed);
  Changed();
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

void TSVGStyle::Assign(const TPersistent *Source)
{
  if (const auto *Style = dynamic_cast<const TSVGStyle *>(Source)) {
    if (Style->FValues == FValues)
      return;
    FValues = Style->FValues;
    Changed();
    return;
  }
  TPersistent::Assign(Source);
}

void TSVGStyle::Changed()
{
  if (OnChange)
    OnChange(this);
}

} // namespace vx
