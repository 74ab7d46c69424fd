// Writing presentation: each property goes out in the form it was read in, as an attribute of its
// own or as a pair of the style attribute, and values equal to the defaults are left out.
#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGAttributes.h"
#include "values/VXSVGColors.h"
#include "values/VXSVGLookups.h"
#include "values/VXSVGNumbers.h"
#include "values/VXSVGPropertyParsers.h"
#include "values/VXSVGTransforms.h"

namespace vx {

void TSVGGraphicElement::SaveToXML(const IXMLNode &Node)
{
  if (!DoOnSavingElement(this, Node))
    return;
  IncludeState(esWriting);
  DoSaveToXML(Node);
  WriteChildren(Node);
  DoOnSavedElement(this, Node);
  ExcludeState(esWriting);
}

void TSVGGraphicElement::WriteChildren(const IXMLNode &Node)
{
  for (TSVGElement *Child : FItems) {
    const QString Tag = SVGType() == etText ? QStringLiteral("tspan") : Child->SVGTypeName();
    Child->SaveToXML(Node.AddChild(Tag, SVGNamespaceURI, false, -1));
  }
}

void TSVGGraphicElement::SaveLength(const IXMLNode &Node, const QString &Name, const TSVGLength &Length, float Max,
                                    bool OmitZero) const
{
  SaveAttrString(Node, Name, SVGLengthToString(Length, GetFormatStr(), 0, Max), OmitZero && Length.Raw() == 0, true);
}

void TSVGGraphicElement::SaveBoundsLengths(const IXMLNode &Node) const
{
  const bool Compact = IsCompactXML();
  SaveLength(Node, QStringLiteral("x"), *FX, 100, Compact);
  SaveLength(Node, QStringLiteral("y"), *FY, 100, Compact);
  SaveLength(Node, QStringLiteral("width"), *FWidth, 100, Compact);
  SaveLength(Node, QStringLiteral("height"), *FHeight, 100, Compact);
}

void TSVGGraphicElement::SaveColorStyleProperty(const IXMLNode &Node, TSVGStyleProperty Property,
                                                TVXGPBrushKind Kind, TVXGPColor Color, const QString &URI) const
{
  QString Text;
  // Under the standard rules a reference without a fallback paints nothing until its paint server
  // takes over at drawing time; it is still the reference that was read, and a save keeps it.
  const bool ReferenceWithoutFallback = FollowsStandardSVG() && !URI.isEmpty();
  if (Kind == bkNone && !ReferenceWithoutFallback)
    Text = QStringLiteral("none");
  else if (!URI.isEmpty())
    Text = Format(QStringLiteral("url(#%s)"), {URI});
  else
    Text = SVGColorToString(Color);
  SaveStyleProperty(Node, Property, Text, DefaultSVGStylePropertyValues[Property], FPreferredStyles.GetSet(Property),
                    FInherits.GetSet(Property), true);
}

namespace {

QString TextDecoration(const TSVGFont &Font)
{
  const TVXGPFontStyles Style = Font.GetStyle();
  if (Style.Contains(fsUnderline))
    return QStringLiteral("underline");
  if (Style.Contains(fsStrikeOut))
    return QStringLiteral("line-through");
  if (Font.GetExtendStyles().Contains(fsOverline))
    return QStringLiteral("overline");
  if (Font.GetExtendStyles().Contains(fsBlink))
    return QStringLiteral("blink");
  return QStringLiteral("none");
}

} // namespace

void TSVGGraphicElement::DoSaveToXML(const IXMLNode &Node)
{
  TSVGElement::DoSaveToXML(Node);
  const QString F = GetFormatStr();
  auto Row = [&](TSVGStyleProperty Property, const QString &Text) {
    if (IsStored(Property, Text))
      SaveStyleProperty(Node, Property, Text, DefaultSVGStylePropertyValues[Property],
                        FPreferredStyles.GetSet(Property), FInherits.GetSet(Property), true);
  };
  auto Spacing = [&](TSVGStyleProperty Property, const TSVGStylePropertyAutoLength &Length) {
    if (!Length.IsAutomatic())
      Row(Property, Length.ToString(F, 0, 1));
  };
  const TSVGBrush &Brush = *FBrush;
  const TSVGPen &Pen = *FPen;
  const TSVGFont &Font = *FFont;

  Row(ipVisibility, SVGVisibility[FVisible]);
  Row(ipDisplay, FVisible ? DefaultSVGStylePropertyValues[ipDisplay] : QStringLiteral("none"));
  Row(ipAlignmentBaseline, SVGAlignmentBaselines[FAlignmentBaseline]);
  const TSVGBaselineShift Shift = FBaselineShift->GetShift();
  Row(ipBaselineShift, Shift == bsPercentage || Shift == bsLength ? FBaselineShift->ToString(F, 0, 1)
                                                                    : SVGBaselineShifts[Shift]);
  Row(ipDominantBaseline, SVGDominantBaselines[FDominantBaseline]);
  Row(ipColorInterpolation, SVGColorInterpolationNames[FColorInterpolation]);
  Row(ipColorRendering, SVGColorRenderingNames[FColorRendering]);
  Row(ipShapeRendering, SVGShapeRenderingNames[FShapeRendering]);
  Row(ipTextRendering, SVGTextRenderingNames[FTextRendering]);
  Spacing(ipKerning, *FKerning);
  Spacing(ipLetterSpacing, *FLetterSpacing);
  Spacing(ipWordSpacing, *FWordSpacing);
  Row(ipWritingMode, SVGWritingModes[FWritingMode]);
  Row(ipGlyphOrientationHorizontal, SVGGlyphOrientationHorizontals[FGlyphOrientationHorizontal]);
  Row(ipGlyphOrientationVertical, SVGGlyphOrientationVerticals[FGlyphOrientationVertical]);
  Row(ipDirection, SVGDirections[FDirection]);
  SaveColorStyleProperty(Node, ipFill, Brush.GetKind(), Brush.GetColor(), Brush.GetURI());
  SaveColorStyleProperty(Node, ipStroke, Pen.GetKind(), Pen.GetColor(), Pen.GetURI());
  Row(ipFillOpacity, SVGNumberToString(Brush.GetOpacity(), suNone, F));
  Row(ipFillRule, SVGFillRules[FFillRule]);
  Row(ipStrokeLinecap, SVGStrokeCapToString(Pen.GetEndCap()));
  Row(ipStrokeMiterLimit, SVGNumberToString(Pen.GetMiterLimit(), suNone, F));
  Row(ipStrokeDashOffset, Pen.GetSVGDashOffset()->ToString(F, 0, 1));
  Row(ipStrokeDasharray, Pen.GetDashArray());
  Row(ipStrokeLineJoin, SVGStrokeJoinToString(Pen.GetJoin()));
  Row(ipStrokeWidth,
      SVGLengthToString(Pen.GetThickness(), Pen.GetThicknessIsPercent(), Pen.GetThicknessPreferredUnit(), F, 0, 1));
  Row(ipStrokeOpacity, SVGNumberToString(Pen.GetOpacity(), suNone, F));
  Row(ipVectorEffect, SVGVectorEffects[FVectorEffect]);
  Row(ipOpacity, SVGNumberToString(FOpacity, suNone, F));
  Row(ipFontFamily, Font.GetName());
  Row(ipFontSize, SVGNumberToString(Font.GetSize(), Font.GetSizePreferredUnit(), F));
  Row(ipFontStyle, Font.GetStyle().Contains(fsItalic) ? QStringLiteral("italic") : QStringLiteral("normal"));
  Row(ipFontWeight, SVGFontWeights[Font.GetWeight()]);
  Row(ipFontVariant, SVGFontVariants[Font.GetFontVariant()]);
  Row(ipTextAnchor, SVGTextAnchors[GetSVGTextAnchor(FTextAlign)]);
  Row(ipTextDecoration, TextDecoration(Font));
  Row(ipCursor, SVGCursorNames[GetSVGCursor(FCursor)]);
  if (!FClipURI.isEmpty() && GetOwner() && GetOwner()->AllItems().ContainsKey(FClipURI))
    SaveStyleProperty(Node, ipClipPath, Format(QStringLiteral("url(#%s)"), {FClipURI}),
                      DefaultSVGStylePropertyValues[ipClipPath], FPreferredStyles.GetSet(ipClipPath),
                      FInherits.GetSet(ipClipPath), true);
  Row(ipClipRule, SVGFillRules[FClipRule]);
  Row(ipClip, FClipRect == TRectF{}
                  ? QStringLiteral("auto")
                  : QStringLiteral("rect(%1 %2 %3 %4)")
                        .arg(SVGNumberToString(FClipRect.Top, suNone, F), SVGNumberToString(FClipRect.Right, suNone, F),
                             SVGNumberToString(FClipRect.Bottom, suNone, F), SVGNumberToString(FClipRect.Left, suNone, F)));
  Row(ipOverflow, SVGVisibility[FOverflow]);
  if (!FMarkerStartURI.isEmpty())
    Row(ipMarkerStart, FMarkerStartURI);
  if (!FMarkerMidURI.isEmpty())
    Row(ipMarkerMid, FMarkerMidURI);
  if (!FMarkerEndURI.isEmpty())
    Row(ipMarkerEnd, FMarkerEndURI);
  if (!FMaskURI.isEmpty())
    SaveAttrString(Node, QStringLiteral("mask"), Format(QStringLiteral("url(#%s)"), {FMaskURI}), false, true);
  if (!VXMatrixEquals(FMatrix, VXIdentityMatrix, 0.00001f))
    SaveAttrString(Node, QStringLiteral("transform"), SVGTransformationToString(FMatrix), false, true);
}

} // namespace vx
