#pragma once
// The SVG forms of the canvas's brush, pen and font. They add what SVG needs to the plain drawing
// state: opacity apart from colour, the id of a paint server, the units and percent flags of what
// the canvas holds as plain numbers, and, through OnIsInherited, which values are inherited, so that
// streaming stores only an element's own values (the Is...Stored predicates).
#include "platform/rtl/VXExport.h"
#include "platform/rtl/VXStringList.h"
#include "platform/vectorkit/VXGPFont.h"
#include "platform/vectorkit/VXGPPaint.h"
#include "values/VXSVGLength.h"
#include "values/VXSVGVocabulary.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

namespace vx {

// Asks the owner whether aProperty is inherited; the handler may rewrite IsInherited.
using TSVGIsInheritedEvent = std::function<void(TObject *Sender, TSVGStyleProperty aProperty, bool &IsInherited)>;

class VX_EXPORT TSVGBrush : public TVXGPBrush
{
public:
  explicit TSVGBrush(TVXGPCanvas *Canvas = nullptr, TVXGPBrushKind Kind = bkSolid, TVXGPColor Color = 0xFF000000);
  QString ClassName() const override { return QStringLiteral("TSVGBrush"); }
  // Published for the binary component stream (values/VXSVGValueProperties.cpp).
  const TPropertyTable *PublishedProperties() const override;
  void Assign(const TPersistent *Source) override;

  // Opaque black, solid, no paint server, the default opacity.
  virtual void Clear();
  // Turning the brush to none or solid forgets the paint server; a caller who wants to keep the id
  // saves it first.
  void SetKind(TVXGPBrushKind Value) override;

  float GetOpacity() const { return FOpacity; }
  // Clamped to 0..1.
  void SetOpacity(float Value);
  float GetDefaultOpacity() const { return FDefaultOpacity; }
  // Clamped to 0..1; not a change of the brush.
  void SetDefaultOpacity(float Value);
  const QString &GetURI() const { return FURI; }
  void SetURI(const QString &Value);
  // Puts the opacity into the alpha byte of the colour.
  void UpdateColorOpacity();

  bool GetIsInherited(TSVGStyleProperty aProperty) const;
  bool IsColorStored() const;
  bool IsKindStored() const;
  bool IsOpacityStored() const;

  TSVGIsInheritedEvent OnIsInherited;

private:
  float FOpacity = 1;
  QString FURI;
  float FDefaultOpacity = 1;
};

class VX_EXPORT TSVGPen : public TVXGPPen
{
public:
  explicit TSVGPen(TVXGPCanvas *Canvas = nullptr, TVXGPBrushKind Kind = bkSolid, TVXGPColor Color = 0xFF000000);
  ~TSVGPen() override;
  QString ClassName() const override { return QStringLiteral("TSVGPen"); }
  const TPropertyTable *PublishedProperties() const override;
  void Assign(const TPersistent *Source) override;

  // No stroke: kind none, opaque black, solid, width 1, flat caps, miter join with limit 4, no
  // dashes, no paint server, the default opacity.
  virtual void Clear();
  // As for the brush: none or solid forgets the paint server.
  void SetKind(TVXGPBrushKind Value) override;

  float GetOpacity() const { return FOpacity; }
  void SetOpacity(float Value);
  float GetDefaultOpacity() const { return FDefaultOpacity; }
  void SetDefaultOpacity(float Value);
  const QString &GetURI() const { return FURI; }
  void SetURI(const QString &Value);
  void UpdateColorOpacity();

  bool GetThicknessIsPercent() const { return FThicknessIsPercent; }
  void SetThicknessIsPercent(bool Value) { FThicknessIsPercent = Value; }
  TSVGUnit GetThicknessPreferredUnit() const { return FThicknessPreferredUnit; }
  void SetThicknessPreferredUnit(TSVGUnit Value) { FThicknessPreferredUnit = Value; }

  // The unit and percent flag of each written dash value, parallel to the dash pattern. An odd list
  // that was doubled has entries for the written half only.
  const std::vector<bool> &GetDashArrayIsPercent() const { return FDashArrayIsPercent; }
  void SetDashArrayIsPercent(const std::vector<bool> &Value) { FDashArrayIsPercent = Value; }
  const TSVGUnits &GetDashArrayPreferredUnits() const { return FDashArrayPreferredUnits; }
  void SetDashArrayPreferredUnits(const TSVGUnits &Value) { FDashArrayPreferredUnits = Value; }

  // stroke-dashoffset as written; its changes are changes of the pen.
  TSVGLength *GetSVGDashOffset() const { return FSVGDashOffset.get(); }
  void SetSVGDashOffset(const TSVGLength *Value);

  // The factors of the element, or the defaults when no one answers.
  TSVGUnitFactors GetUnitFactors() const;

  // The custom pattern as CSS text, each written value with its unit but without conversion from
  // the pixels held; "none" when the pen is not custom.
  QString GetCustomDashArray() const;
  // Reads a dash list into the custom pattern; empty and "none" give a solid pen, and a list with
  // a value of 0 or below leaves the dash state as it was.
  void SetCustomDashArray(const QString &S);
  // The CSS text of the dash state: the stock styles in multiples of the width, or the custom list.
  // It hides the base's accessor of the pattern; GetDashPattern reaches that.
  virtual QString GetDashArray() const;
  const std::vector<float> &GetDashPattern() const { return TVXGPPen::GetDashArray(); }

  bool GetIsInherited(TSVGStyleProperty aProperty) const;
  bool IsColorStored() const;
  bool IsKindStored() const;
  bool IsOpacityStored() const;
  bool IsStartCapStored() const;
  bool IsEndCapStored() const;
  bool IsDashCapStored() const;
  bool IsJoinStored() const;
  bool IsDashStored() const;
  bool IsMiterLimitStored() const;
  bool IsThicknessStored() const;
  bool IsSVGDashOffsetStored() const;
  bool IsCustomDashArrayStored() const;

  TSVGUnitFactorsEvent OnUnitFactors;
  TSVGIsInheritedEvent OnIsInherited;

private:
  void OffsetChange(TObject *Sender);

  float FOpacity = 1;
  QString FURI;
  bool FThicknessIsPercent = false;
  TSVGUnit FThicknessPreferredUnit = suNone;
  std::vector<bool> FDashArrayIsPercent;
  TSVGUnits FDashArrayPreferredUnits;
  float FDefaultOpacity = 1;
  std::unique_ptr<TSVGLength> FSVGDashOffset;
};

class VX_EXPORT TSVGFont : public TVXGPFont
{
public:
  explicit TSVGFont(TVXGPCanvas *Canvas = nullptr);
  ~TSVGFont() override;
  QString ClassName() const override { return QStringLiteral("TSVGFont"); }
  const TPropertyTable *PublishedProperties() const override;
  // From an SVG font everything; from a canvas font the weight follows its bold bit.
  void Assign(const TPersistent *Source) override;

  // Plain style, size 11, normal variant, no families. Weight and name stay.
  virtual void Clear();

  TExtendedFontStyles GetExtendStyles() const { return FExtendStyles; }
  void SetExtendStyles(TExtendedFontStyles Value);
  TSVGUnit GetSizePreferredUnit() const { return FSizePreferredUnit; }
  void SetSizePreferredUnit(TSVGUnit Value) { FSizePreferredUnit = Value; }
  TSVGFontVariant GetFontVariant() const { return FFontVariant; }
  void SetFontVariant(TSVGFontVariant Value);
  TSVGFontWeight GetWeight() const { return FWeight; }
  // Also sets or clears the bold bit: bold, bolder and 600 to 900 are bold; normal, lighter and 100
  // to 500 are not; fwNone leaves the bit alone. Bolder and lighter are not relative to the parent.
  void SetWeight(TSVGFontWeight Value);

  // font-family as written. Every change of the list picks the font name anew.
  TStringList &Families() { return *FFamilies; }
  const TStringList &Families() const { return *FFamilies; }
  void SetFamilies(const TStrings &Value);
  // Families joined by ", ", those with a blank in single quotes.
  virtual QString FamiliesToString() const;

  // Underline, strike-out or overline; blink alone draws nothing.
  bool IsDecorated() const;

  bool GetIsInherited(TSVGStyleProperty aProperty) const;
  bool IsNameStored() const;
  bool IsFontVariantStored() const;
  bool IsSizeStored() const;
  bool IsStyleStored() const;
  bool IsWeightStored() const;

  TSVGIsInheritedEvent OnIsInherited;

protected:
  // The name becomes the last family the platform has, up to the first of "serif", "sans-serif" and
  // "monospace"; with none available the name stays.
  virtual void FamiliesChanged(TObject *Sender);

private:
  TExtendedFontStyles FExtendStyles;
  TSVGUnit FSizePreferredUnit = suNone;
  std::unique_ptr<TStringList> FFamilies;
  TSVGFontVariant FFontVariant = fvNormal;
  TSVGFontWeight FWeight = fwNormal;
};

} // namespace vx
