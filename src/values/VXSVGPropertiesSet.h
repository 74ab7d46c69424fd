#pragma once
// TSVGStylePropertiesSet: a set of style properties as a persistent value object. Elements keep two
// of them (which properties were given, which are inherited); the binary stream writes them as the
// enumeration names of their members.
#include "platform/rtl/VXClasses.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

namespace vx {

// The enumeration names of the style properties ("ipNone", "ipAlignmentBaseline", ...), indexed by
// TSVGStyleProperty. The published Booleans of the set carry these names without the "ip".
extern const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> SVGStylePropertyEnumNames;

class TSVGStylePropertiesSet : public TPersistent
{
public:
  QString ClassName() const override { return QStringLiteral("TSVGStylePropertiesSet"); }

  TSVGStyleProperties Value() const { return FValue; }
  void SetValue(TSVGStyleProperties Value);

  // Membership of one property; an index of 64 or more is never a member.
  bool GetSet(int Index) const;
  void SetSet(int Index, bool Value);

  void Assign(const TPersistent *Source) override;

  // The enumeration names of the members in order, joined by ", ": "ipFill, ipStroke".
  static QString ToString(TSVGStyleProperties Set);
  QString ToString() const { return ToString(FValue); }
  // The inverse of ToString: names are trimmed and matched exactly; unknown names and ipNone are dropped.
  void FromString(const QString &S);

  TNotifyEvent OnChange;

protected:
  virtual void Change();

private:
  TSVGStyleProperties FValue;
};

} // namespace vx
