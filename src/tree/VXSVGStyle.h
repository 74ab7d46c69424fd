#pragma once
// TSVGStyle: one rule set, the ordered property/value pairs of a style attribute or of one style-sheet
// rule. Later pairs of the same name replace earlier ones, as in CSS.
#include "platform/rtl/VXClasses.h"

#include <QString>

#include <utility>
#include <vector>

namespace vx {

class TSVGStyle : public TPersistent
{
public:
  QString ClassName() const override { return QStringLiteral("TSVGStyle"); }

  int Count() const { return int(FValues.size()); }
  QString Names(int Index) const { return FValues[std::size_t(Index)].first; }
  QString ValueFromIndex(int Index) const { return FValues[std::size_t(Index)].second; }
  // The value of Name, or empty; IndexOf tells presence.
  QString Values(const QString &Name) const;
  int IndexOf(const QString &Name) const;
  void SetValues(const QString &Name, const QString &Value);
  void Clear();

  // Reads "name: value; name: value" text; comments and empty declarations are dropped.
  void SetText(const QString &Text);
  QString Text() const;

  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

private:
  void Changed();
  std::vector<std::pair<QString, QString>> FValues;
};

} // namespace vx
