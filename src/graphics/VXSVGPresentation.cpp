// Reading presentation: the attributes of a graphic element are collected into its own style, and
// ApplyStyle turns a style (the element's own, or a matching style-sheet rule) into fields. Each
// property that a style does not name keeps its value: every parser leaves the field alone on an
// empty text.
#include "platform/common/VXPriorityList.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "tree/VXSVGRuleIndex.h"
#include "tree/VXSVGSelectorMatch.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGColors.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPropertyParsers.h"
#include "values/VXSVGTransforms.h"

namespace vx {

namespace {

// The priority of the inline style among the rules of the style sheets.
constexpr int InlineStylePriority = 999;

const QString MarkerShorthand = QStringLiteral("marker");

} // namespace

void TSVGGraphicElement::DoLoadFromXML(const IXMLNode &Node)
{
  TSVGElement::DoLoadFromXML(Node);
  FStyle.LoadFromXML(Node);
  const QString StyleText = ParseAttrString(Node, QStringLiteral("style"));
  FPreferredStyles.SetValue(FStyle.AddStyle(StyleText));
  ReadCompositingStyle(StyleText);
  // The font size comes first: the lengths below may be in em.
  const float ParentSize = FGraphicParent ? FGraphicParent->FFont->GetSize() : FFont->GetSize();
  bool Flag = FInherits.Value().Contains(ipFontSize);
  FFont->SetSize(
    ParseFontSize(FStyle.StyleProp(ipFontSize), FFont->GetSize(), ParentSize, Flag, FontSizeFactors(ParentSize)));
  FInherits.SetSet(ipFontSize, Flag);
  FX.reset(ParsePercent(Node, QStringLiteral("x"), FX.release(), 0, 1));
  FY.reset(ParsePercent(Node, QStringLiteral("y"), FY.release(), 0, 1));
  FWidth.reset(ParsePercent(Node, QStringLiteral("width"), FWidth.release(), 0, 1));
  FHeight.reset(ParsePercent(Node, QStringLiteral("height"), FHeight.release(), 0, 1));
  FMatrix = LoadTransform(ParseAttrString(Node, QStringLiteral("transform")));
}

void TSVGGraphicElement::ApplyStyles()
{
  TSVGUpdateGuard Guard(*this);
  ApplyMatchingStyles(GetOwner() ? &GetOwner()->Styles() : nullptr);
  TSVGElement::ApplyStyles();
}

void TSVGGraphicElement::ApplyMatchingStyles(const TVXStringObjectHashTable<TSVGStyle> *Sheet)
{
  if (CascadesAsCSS()) {
    ApplyCascadedStyles(Sheet);
    return;
  }
  TPriorityList Styles;
  Styles.Add(&FStyle, InlineStylePriority);
  if (Sheet) {
    for (TSVGStyle *Rule : CandidateRules(*this, *Sheet, TSVGRuleMatching::Documented)) {
      if (!Rule->Enabled())
        continue;
      const int Priority = MatchSelector(*this, Rule->Name());
      if (Priority > -1)
        Styles.Add(Rule, Priority);
    }
  }
  for (int I = 0; I < Styles.Count(); ++I)
    ApplyStyle(*static_cast<TSVGStyle *>(Styles[I]));
}

void TSVGGraphicElement::ApplyStyle(const TSVGStyle &Style)
{
  const TSVGUnitFactors Factors = GetUnitFactors();
  // A keyword property: the parser reads the text against the field and says whether it inherits.
  auto Plain = [&](TSVGStyleProperty Property, auto &Field, auto Parse) {
    bool Flag = FInherits.Value().Contains(Property);
    Field = Parse(Style.StyleProp(Property), Field, Flag);
    FInherits.SetSet(Property, Flag);
  };
  // A property held by a paint object: Read gives the present value, Write takes the parsed one.
  auto Held = [&](TSVGStyleProperty Property, auto Read, auto Write, auto Parse) {
    bool Flag = FInherits.Value().Contains(Property);
    Write(Parse(Style.StyleProp(Property), Read(), Flag));
    FInherits.SetSet(Property, Flag);
  };

  auto ParseOpacity = [this](const QString &S, float Default, bool &IsInherited) {
    return ParseOpacityStyle(S, Default, IsInherited);
  };

  bool Flag = true;
  if (!ReadsPaintAsCSS()) {
    const QString ColorText = Style.StyleProp(ipColor);
    FBrush->SetURI(ParseLocalURI(ColorText, FBrush->GetURI(), Flag));
    FPen->SetURI(ParseLocalURI(ColorText, FPen->GetURI(), Flag));
    FBrush->SetURI(ParseLocalURI(Style.StyleProp(ipFill), FBrush->GetURI(), Flag));
    FPen->SetURI(ParseLocalURI(Style.StyleProp(ipStroke), FPen->GetURI(), Flag));
  }

  Plain(ipVisibility, FVisible, ParseVisible);
  Plain(ipDisplay, SeparatesDisplayFromVisibility() ? FDisplayed : FVisible, ParseDisplay);
  Plain(ipAlignmentBaseline, FAlignmentBaseline, ParseAlignmentBaseline);
  ParseBaselineShift(Style.StyleProp(ipBaselineShift), *FBaselineShift);
  Plain(ipDominantBaseline, FDominantBaseline, ParseDominantBaseline);
  Plain(ipColorInterpolation, FColorInterpolation, ParseColorInterpolation);
  Plain(ipColorRendering, FColorRendering, ParseColorRendering);
  Plain(ipShapeRendering, FShapeRendering, ParseShapeRendering);
  Plain(ipTextRendering, FTextRendering, ParseTextRendering);
  ApplyColorStyle(Style);
  ApplyPaintStyle(Style.StyleProp(ipFill), ipFill, *FBrush);
  ApplyPaintStyle(Style.StyleProp(ipStroke), ipStroke, *FPen);
  Held(ipFillOpacity, [&] { return FBrush->GetOpacity(); }, [&](float V) { FBrush->SetOpacity(V); }, ParseOpacity);
  Plain(ipFillRule, FFillRule, ParseFillRule);
  ApplyLineCapStyle(Style.StyleProp(ipStrokeLinecap));
  Held(ipStrokeMiterLimit, [&] { return FPen->GetMiterLimit(); }, [&](float V) { FPen->SetMiterLimit(V); },
       ParseMiterLimit);
  Held(ipStrokeLineJoin, [&] { return FPen->GetJoin(); }, [&](TVXGPLineJoin V) { FPen->SetJoin(V); }, ParseLineJoin);
  ApplyStrokeWidthStyle(Style.StyleProp(ipStrokeWidth), Factors);
  TSVGStyleProperties Inherits = FInherits.Value();
  ParseDashArray(Style.StyleProp(ipStrokeDasharray), Style.StyleProp(ipStrokeDashOffset), *FPen, Inherits, Factors,
                 KeepsZeroLengthDashes() ? drNonNegativeEntries : drPositiveEntries);
  FInherits.SetValue(Inherits);
  Held(ipStrokeOpacity, [&] { return FPen->GetOpacity(); }, [&](float V) { FPen->SetOpacity(V); }, ParseOpacity);
  Plain(ipVectorEffect, FVectorEffect, ParseVectorEffect);
  Plain(ipOpacity, FOpacity, ParseOpacity);
  ApplyFontStyle(Style, Factors);
  Plain(ipTextAnchor, FTextAlign, ParseTextAnchor);
  Flag = FInherits.Value().Contains(ipTextDecoration);
  ParseTextDecoration(Style.StyleProp(ipTextDecoration), *FFont, Flag);
  FInherits.SetSet(ipTextDecoration, Flag);
  ParseSpacing(Style.StyleProp(ipLetterSpacing), *FLetterSpacing, Factors);
  ParseKerning(Style.StyleProp(ipKerning), *FKerning, Factors);
  ParseSpacing(Style.StyleProp(ipWordSpacing), *FWordSpacing, Factors);
  Plain(ipDirection, FDirection, ParseDirection);
  Plain(ipGlyphOrientationHorizontal, FGlyphOrientationHorizontal, ParseGlyphOrientationHorizontal);
  Plain(ipGlyphOrientationVertical, FGlyphOrientationVertical, ParseGlyphOrientationVertical);
  Plain(ipWritingMode, FWritingMode, ParseWritingMode);
  Plain(ipCursor, FCursor, ParseCursor);
  Plain(ipClipPath, FClipURI, [](const QString &S, const QString &D, bool &I) { return ParseURI(S, D, I); });
  Plain(ipClipRule, FClipRule, ParseFillRule);
  Plain(ipClip, FClipRect,
        [&](const QString &S, const TRectF &D, bool &I) { return ParseClipRect(S, D, I, Factors); });
  Plain(ipOverflow, FOverflow, ParseOverflow);
  ApplyMarkerStyle(Style);
  ApplyMaskStyle(Style);
  ApplyCompositingStyle(Style);
  ApplyPaintOrderStyle(Style);
}

bool TSVGGraphicElement::KeepsZeroLengthDashes() const
{
  return FollowsStandardSVG();
}

void TSVGGraphicElement::ApplyColorStyle(const TSVGStyle &Style)
{
  if (ReadsPaintAsCSS()) {
    ApplyCSSColorStyle(Style.StyleProp(ipColor));
    return;
  }
  bool IsNone = false;
  bool Flag = FInherits.Value().Contains(ipColor);
  FColor = ParseColor(Style.StyleProp(ipColor), FColor, IsNone, Flag, GetColor());
  if (IsNone)
    FColor = 0;
  FInherits.SetSet(ipColor, Flag);
}

template <typename TPaint>
void TSVGGraphicElement::ApplyPaintStyle(const QString &Text, TSVGStyleProperty Property, TPaint &Paint)
{
  if (ReadsPaintAsCSS()) {
    ApplyCSSPaintStyle(Text, Property, Paint, Property == ipFill ? FFillKeyword : FStrokeKeyword);
    return;
  }
  bool IsNone = Paint.GetKind() == bkNone;
  bool Flag = FInherits.Value().Contains(Property);
  Paint.SetColor(ParseColor(Text, Paint.GetColor(), IsNone, Flag, GetColor()));
  // Turning the kind to none or solid drops the paint server's id; it was read above and stays.
  const QString Keep = Paint.GetURI();
  Paint.SetKind(IsNone ? bkNone : bkSolid);
  Paint.SetURI(Keep);
  FInherits.SetSet(Property, Flag);
}

void TSVGGraphicElement::ApplyLineCapStyle(const QString &Text)
{
  bool Flag = FInherits.Value().Contains(ipStrokeLinecap);
  const TVXGPLineCap Cap = ParseLineCap(Text, FPen->GetEndCap(), Flag);
  FPen->SetEndCap(Cap);
  FPen->SetStartCap(Cap);
  FPen->SetDashCap(DashCap(Cap));
  FInherits.SetSet(ipStrokeLinecap, Flag);
}

TVXGPLineCap TSVGGraphicElement::DashCap(TVXGPLineCap Cap) const
{
  if (FollowsStandardSVG())
    return Cap;
  return Cap == lcRound || Cap == lcTriangle ? Cap : lcFlat;
}

void TSVGGraphicElement::ApplyStrokeWidthStyle(const QString &Text, const TSVGUnitFactors &Factors)
{
  bool Flag = FInherits.Value().Contains(ipStrokeWidth);
  TSVGUnit Unit = FPen->GetThicknessPreferredUnit();
  FPen->SetThickness(ParsePercent(Text, FPen->GetThickness(), Flag, Unit, Factors, 0, 1));
  FPen->SetThicknessPreferredUnit(Unit);
  FPen->SetThicknessIsPercent(Unit == suPercent);
  FInherits.SetSet(ipStrokeWidth, Flag);
}

TSVGUnitFactors TSVGGraphicElement::FontSizeFactors(float ParentSize) const
{
  TSVGUnitFactors Result = GetUnitFactors();
  if (FollowsStandardSVG()) {
    // A percentage and an ex of font-size are of the parent's size (an ex taken as half of it).
    Result[suPercent] = ParentSize / 100;
    Result[suFontXHeight] = ParentSize / 2;
  }
  return Result;
}

void TSVGGraphicElement::ApplyFontStyle(const TSVGStyle &Style, const TSVGUnitFactors &Factors)
{
  bool Flag = FInherits.Value().Contains(ipFontFamily);
  ParseFontFamily(Style.StyleProp(ipFontFamily), FFont->Families(), Flag);
  FInherits.SetSet(ipFontFamily, Flag);

  Flag = FInherits.Value().Contains(ipFontSize);
  const float ParentSize = FGraphicParent ? FGraphicParent->GetFont().GetSize() : FFont->GetSize();
  FFont->SetSize(ParseFontSize(Style.StyleProp(ipFontSize), FFont->GetSize(), ParentSize, Flag,
                               FollowsStandardSVG() ? FontSizeFactors(ParentSize) : Factors));
  FInherits.SetSet(ipFontSize, Flag);

  Flag = FInherits.Value().Contains(ipFontStyle);
  FFont->SetStyle(ParseFontStyle(Style.StyleProp(ipFontStyle), FFont->GetStyle(), Flag));
  FInherits.SetSet(ipFontStyle, Flag);

  Flag = FInherits.Value().Contains(ipFontVariant);
  FFont->SetFontVariant(ParseFontVariant(Style.StyleProp(ipFontVariant), FFont->GetFontVariant(), Flag));
  FInherits.SetSet(ipFontVariant, Flag);

  Flag = FInherits.Value().Contains(ipFontWeight);
  FFont->SetWeight(ParseFontWeight(Style.StyleProp(ipFontWeight), FFont->GetWeight(), Flag));
  FInherits.SetSet(ipFontWeight, Flag);
}

void TSVGGraphicElement::ApplyMarkerStyle(const TSVGStyle &Style)
{
  const QString Shorthand = Style.Values(MarkerShorthand);
  auto Marker = [&](TSVGStyleProperty Property, QString &Field) {
    bool Flag = FInherits.Value().Contains(Property);
    Field = ParseURI(Shorthand.isEmpty() ? Style.StyleProp(Property) : Shorthand, Field, Flag);
    FInherits.SetSet(Property, Flag);
  };
  Marker(ipMarkerStart, FMarkerStartURI);
  Marker(ipMarkerMid, FMarkerMidURI);
  Marker(ipMarkerEnd, FMarkerEndURI);
}

} // namespace vx
