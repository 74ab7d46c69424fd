#pragma once
// TSVGStylePropertiesSet: a set of style properties as a persistent value object. Elements keep two
// of them (which properties were given, which are inherited); the binary stream writes them as the
// enumeration names of their members.
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXClasses.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

namespace vx {

// The enumeration names of the style properties ("ipNone", "ipAlignmentBaseline", ...), indexed by
// TSVGStyleProperty. The published Booleans of the set carry these names without the "ip".
extern VX_EXPORT const TSVGNames<TSVGStyleProperty, SVGStylePropertyCount> SVGStylePropertyEnumNames;

class VX_EXPORT TSVGStylePropertiesSet : public TPersistent
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

  // One Boolean per property, named after it without the "ip": AlignmentBaseline(),
  // SetAlignmentBaseline(bool) and so on to WritingMode.
#define VX_SVG_STYLE_FLAG(Name)                                                                            \
  bool Name() const { return GetSet(ip##Name); }                                                           \
  void Set##Name(bool Value) { SetSet(ip##Name, Value); }
  VX_SVG_STYLE_FLAG(AlignmentBaseline)
  VX_SVG_STYLE_FLAG(BaselineShift)
  VX_SVG_STYLE_FLAG(Clip)
  VX_SVG_STYLE_FLAG(ClipPath)
  VX_SVG_STYLE_FLAG(ClipRule)
  VX_SVG_STYLE_FLAG(Color)
  VX_SVG_STYLE_FLAG(ColorInterpolation)
  VX_SVG_STYLE_FLAG(ColorRendering)
  VX_SVG_STYLE_FLAG(Cursor)
  VX_SVG_STYLE_FLAG(Direction)
  VX_SVG_STYLE_FLAG(Display)
  VX_SVG_STYLE_FLAG(DominantBaseline)
  VX_SVG_STYLE_FLAG(Fill)
  VX_SVG_STYLE_FLAG(FillOpacity)
  VX_SVG_STYLE_FLAG(FillRule)
  VX_SVG_STYLE_FLAG(FloodColor)
  VX_SVG_STYLE_FLAG(FloodOpacity)
  VX_SVG_STYLE_FLAG(Font)
  VX_SVG_STYLE_FLAG(FontFamily)
  VX_SVG_STYLE_FLAG(FontSize)
  VX_SVG_STYLE_FLAG(FontStyle)
  VX_SVG_STYLE_FLAG(FontVariant)
  VX_SVG_STYLE_FLAG(FontWeight)
  VX_SVG_STYLE_FLAG(GlyphOrientationHorizontal)
  VX_SVG_STYLE_FLAG(GlyphOrientationVertical)
  VX_SVG_STYLE_FLAG(Kerning)
  VX_SVG_STYLE_FLAG(LetterSpacing)
  VX_SVG_STYLE_FLAG(Marker)
  VX_SVG_STYLE_FLAG(MarkerEnd)
  VX_SVG_STYLE_FLAG(MarkerMid)
  VX_SVG_STYLE_FLAG(MarkerStart)
  VX_SVG_STYLE_FLAG(Opacity)
  VX_SVG_STYLE_FLAG(Overflow)
  VX_SVG_STYLE_FLAG(ShapeRendering)
  VX_SVG_STYLE_FLAG(StopColor)
  VX_SVG_STYLE_FLAG(StopOpacity)
  VX_SVG_STYLE_FLAG(Stroke)
  VX_SVG_STYLE_FLAG(StrokeDasharray)
  VX_SVG_STYLE_FLAG(StrokeDashOffset)
  VX_SVG_STYLE_FLAG(StrokeLinecap)
  VX_SVG_STYLE_FLAG(StrokeLineJoin)
  VX_SVG_STYLE_FLAG(StrokeMiterLimit)
  VX_SVG_STYLE_FLAG(StrokeOpacity)
  VX_SVG_STYLE_FLAG(StrokeWidth)
  VX_SVG_STYLE_FLAG(TextAnchor)
  VX_SVG_STYLE_FLAG(TextDecoration)
  VX_SVG_STYLE_FLAG(TextRendering)
  VX_SVG_STYLE_FLAG(VectorEffect)
  VX_SVG_STYLE_FLAG(Visibility)
  VX_SVG_STYLE_FLAG(WordSpacing)
  VX_SVG_STYLE_FLAG(WritingMode)
#undef VX_SVG_STYLE_FLAG

  TNotifyEvent OnChange;

protected:
  virtual void Change();

private:
  TSVGStyleProperties FValue;
};

} // namespace vx
