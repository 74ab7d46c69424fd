#include "values/VXSVGPropertiesSet.h"

#include "platform/rtl/VXSysUtils.h"

#include <QStringList>

namespace vx {

const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> SVGStylePropertyEnumNames = {
  QStringLiteral("ipNone"), QStringLiteral("ipAlignmentBaseline"), QStringLiteral("ipBaselineShift"),
  QStringLiteral("ipClip"), QStringLiteral("ipClipPath"), QStringLiteral("ipClipRule"), QStringLiteral("ipColor"),
  QStringLiteral("ipColorInterpolation"), QStringLiteral("ipColorRendering"), QStringLiteral("ipCursor"),
  QStringLiteral("ipDirection"), QStringLiteral("ipDisplay"), QStringLiteral("ipDominantBaseline"),
  QStringLiteral("ipFill"), QStringLiteral("ipFillOpacity"), QStringLiteral("ipFillRule"),
  QStringLiteral("ipFloodColor"), QStringLiteral("ipFloodOpacity"), QStringLiteral("ipFont"),
  QStringLiteral("ipFontFamily"), QStringLiteral("ipFontSize"), QStringLiteral("ipFontStyle"),
  QStringLiteral("ipFontVariant"), QStringLiteral("ipFontWeight"), QStringLiteral("ipGlyphOrientationHorizontal"),
  QStringLiteral("ipGlyphOrientationVertical"), QStringLiteral("ipKerning"), QStringLiteral("ipLetterSpacing"),
  QStringLiteral("ipMarker"), QStringLiteral("ipMarkerEnd"), QStringLiteral("ipMarkerMid"),
  QStringLiteral("ipMarkerStart"), QStringLiteral("ipOpacity"), QStringLiteral("ipOverflow"),
  QStringLiteral("ipShapeRendering"), QStringLiteral("ipStopColor"), QStringLiteral("ipStopOpacity"),
  QStringLiteral("ipStroke"), QStringLiteral("ipStrokeDasharray"), QStringLiteral("ipStrokeDashOffset"),
  QStringLiteral("ipStrokeLinecap"), QStringLiteral("ipStrokeLineJoin"), QStringLiteral("ipStrokeMiterLimit"),
  QStringLiteral("ipStrokeOpacity"), QStringLiteral("ipStrokeWidth"), QStringLiteral("ipTextAnchor"),
  QStringLiteral("ipTextDecoration"), QStringLiteral("ipTextRendering"), QStringLiteral("ipVectorEffect"),
  QStringLiteral("ipVisibility"), QStringLiteral("ipWordSpacing"), QStringLiteral("ipWritingMode")
};

void TSVGStylePropertiesSet::SetValue(TSVGStyleProperties Value)
{
  if (Value == FValue)
    return;
  FValue = Value;
  Change();
}

bool TSVGStylePropertiesSet::GetSet(int Index) const
{
  return Index >= 0 && Index < 64 && FValue.Contains(TSVGStyleProperty(Index));
}

void TSVGStylePropertiesSet::SetSet(int Index, bool Value)
{
  if (Index < 0 || Index >= 64 || GetSet(Index) == Value)
    return;
  if (Value)
    FValue.Include(TSVGStyleProperty(Index));
  else
    FValue.Exclude(TSVGStyleProperty(Index));
  Change();
}

void TSVGStylePropertiesSet::Assign(const TPersistent *Source)
{
  if (const auto *Set = dynamic_cast<const TSVGStylePropertiesSet *>(Source))
    SetValue(Set->FValue);
  else
    TPersistent::Assign(Source);
}

QString TSVGStylePropertiesSet::ToString(TSVGStyleProperties Set)
{
  QStringList Names;
  for (int I = 0; I < SVGStylePropertyCount; ++I)
    if (Set.Contains(TSVGStyleProperty(I)))
      Names << SVGStylePropertyEnumNames[std::size_t(I)];
  return Names.join(QStringLiteral(", "));
}

void TSVGStylePropertiesSet::FromString(const QString &S)
{
  TSVGStyleProperties Set;
  for (const QString &Part : S.split(QLatin1Char(','))) {
    const QString Name = Trim(Part);
    for (int I = ipNone + 1; I < SVGStylePropertyCount; ++I)
      if (SVGStylePropertyEnumNames[std::size_t(I)] == Name) {
        Set.Include(TSVGStyleProperty(I));
        break;
      }
  }
  SetValue(Set);
}

void TSVGStylePropertiesSet::Change()
{
  if (OnChange)
    OnChange(this);
}

} // namespace vx
