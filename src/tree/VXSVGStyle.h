#pragma once
// TSVGStyle: one rule set, the property/value pairs of an inline style or of one style-sheet rule.
// A rule carries its selector as Name; an inline style has none. Later declarations of a name
// replace earlier ones, as in CSS. The pairs keep the order in which their names first came, so the
// text forms are the same on every run.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"
#include "platform/xml/VXXmlDom.h"
#include "values/VXSVGVocabulary.h"

#include <QHash>
#include <QString>

#include <utility>
#include <vector>

namespace vx {

class VX_EXPORT TSVGStyle : public TPersistent
{
public:
  TSVGStyle() = default;
  // A rule for the selector Name with the declarations of Style ("fill: red; stroke: blue").
  TSVGStyle(const QString &Name, const QString &Style);

  QString ClassName() const override { return QStringLiteral("TSVGStyle"); }

  // The selector of a rule; empty for an inline style.
  const QString &Name() const { return FName; }
  void SetName(const QString &Value);
  // Disabled rules are passed over when the document applies its style sheet.
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool Value);

  // The place of a rule in the document's style sheets, which orders rules of equal weight.
  int Order() const { return FOrder; }
  void SetOrder(int Value) { FOrder = Value; }

  // --- the pairs ---
  int Count() const { return int(FValues.size()); }
  QString Names(int Index) const { return FValues[CheckIndex(Index)].first; }
  QString ValueFromIndex(int Index) const { return FValues[CheckIndex(Index)].second; }
  int IndexOf(const QString &Name) const { return FIndex.value(Name, -1); }
  // The value of Name, or empty; IndexOf tells presence.
  QString Values(const QString &Name) const;
  // Adds the pair, or sets the value of a name already present (keeping its place).
  void SetValues(const QString &Name, const QString &Value);
  QString StyleProp(TSVGStyleProperty Property) const;
  void SetStyleProp(TSVGStyleProperty Property, const QString &Value);
  void Clear();

  // --- reading ---
  // Adds the declarations of Text ("name: value; ..."), comments removed, and answers the set of
  // properties they name; a name that is no style property contributes ipNone. Empty names are
  // dropped. One change is reported at the end.
  TSVGStyleProperties AddStyle(const QString &Text);
  // Adds every attribute of Node under its local name, except the shorthand properties, whose
  // longhands the element reads itself.
  TSVGStyleProperties AddStyle(const IXMLNode &Node);
  // Replace all pairs by those of Node's attributes, or of Text.
  void LoadFromXML(const IXMLNode &Node);
  void SetStyle(const QString &Text);
  // The inline-style forms: SetText is SetStyle; Text gives "name:value;name:value".
  void SetText(const QString &Text) { SetStyle(Text); }
  QString Text() const;

  // --- writing ---
  // One "name=value" line per pair, in order, without a final line break.
  QString StylesToString() const;
  // "selector { name=value ... }"
  QString ToString() const;

  // Shorthands are not taken from attributes: "marker" alone.
  static bool IsShorthandProperty(const QString &Name);

  // Nested calls; OnChange stays silent until the outermost EndUpdate, which reports once.
  void BeginUpdate() { ++FUpdateCount; }
  void EndUpdate();

  // A TSVGStyle gives its name and pairs; a string list its Name=Value lines. Other sources are
  // asked to assign themselves (a graphic element exports its attributes this way).
  void Assign(const TPersistent *Source) override;

  TNotifyEvent OnChange;

protected:
  // A string list receives StylesToString as its text.
  void AssignTo(TPersistent *Dest) const override;
  // Reports a change through OnChange, unless an update is open.
  virtual void Change();

private:
  std::size_t CheckIndex(int Index) const;
  // Stores the pair without any test of the name; the caller reports the change.
  void Put(const QString &Name, const QString &Value);
  void ClearPairs();
  // Runs Action inside BeginUpdate/EndUpdate, closing the update also when Action fails.
  template <typename F> void Updating(F &&Action);

  std::vector<std::pair<QString, QString>> FValues;
  QHash<QString, int> FIndex;
  QString FName;
  bool FEnabled = true;
  int FOrder = 0;
  int FUpdateCount = 0;
};

} // namespace vx
