// Copying an element's look into other objects: into the control that a generation made for it
// (visibility, cursor, paints, and the placement under the panel's matrix), and into a TSVGStyle,
// which is how selectors read an element's attributes by name and how a tree becomes CSS text.
#include "platform/geometry/VXPathData.h"
#include "platform/rtl/VXSysUtils.h"
#include "platform/vectorkit/VXGPCanvas.h"
#include "platform/vectorkit/VXGPPath.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGGraphicElement.h"
#include "values/VXSVGColors.h"
#include "values/VXSVGLookups.h"
#include "values/VXSVGPropertyParsers.h"

#include <QImage>

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

// A copy of Paint whose colour carries the paint's opacity, as the shape controls want it.
template <typename TPaint, typename TCopy>
void CopyWithOpacity(const TPaint &Paint, TCopy &Copy)
{
  Copy.Assign(&Paint);
  if (Paint.GetOpacity() < 1)
    Copy.SetColor(SetColorOpacity(Copy.GetColor(), Paint.GetOpacity()));
}

QString Number(double Value)
{
  return FloatToStr(Value);
}

QString UrlOf(const QString &URI)
{
  return Format(QStringLiteral("url(#%s)"), {URI});
}

template <typename TPaint>
QString PaintText(const TPaint &Paint)
{
  return Paint.GetURI().isEmpty() ? SVGColorToString(Paint.GetColor()) : UrlOf(Paint.GetURI());
}

QString AutoLengthText(const TSVGStylePropertyAutoLength &Length, const QString &Automatic)
{
  return Length.IsAutomatic() ? Automatic : Number(Length.GetValue());
}

// A percentage is held as a fraction.
QString BaselineShiftText(const TSVGBaselineShiftLength &Shift)
{
  switch (Shift.GetShift()) {
  case bsPercentage: return Number(Shift.GetValue() * 100.0f) + QLatin1Char('%');
  case bsLength: return Number(Shift.GetPixels());
  default: return SVGBaselineShifts[Shift.GetShift()];
  }
}

QString FontSizeText(float Size)
{
  const TSVGFontAbsSize Keyword = GetSVGFontAbsSize(Size);
  return Keyword != fabNone ? SVGFontAbsSizes[Keyword] : Number(Size);
}

// One keyword, though several lines may be set: overline, blink, underline, line-through.
QString TextDecorationText(const TSVGFont &Font)
{
  if (Font.GetExtendStyles().Contains(fsOverline))
    return SVGTextDecorations[tdOverline];
  if (Font.GetExtendStyles().Contains(fsBlink))
    return SVGTextDecorations[tdBlink];
  if (Font.GetStyle().Contains(fsUnderline))
    return SVGTextDecorations[tdUnderline];
  if (Font.GetStyle().Contains(fsStrikeOut))
    return SVGTextDecorations[tdLineThrough];
  return SVGTextDecorations[tdNone];
}

QString DashValuesText(const std::vector<float> &Dashes)
{
  QStringList Values;
  for (float Dash : Dashes)
    Values << Number(Dash);
  return Values.join(QLatin1Char(','));
}

QString RectText(const TRectF &R)
{
  return QStringList{Number(R.Left), Number(R.Top), Number(R.Right), Number(R.Bottom)}.join(QLatin1Char(' '));
}

} // namespace

bool TSVGGraphicElement::StylePropertyText(TSVGStyleProperty Property, QString &Text) const
{
  const TSVGPen &Pen = *FPen;
  const TSVGFont &Font = *FFont;
  switch (Property) {
  case ipAlignmentBaseline: Text = SVGAlignmentBaselines[FAlignmentBaseline]; return true;
  case ipDominantBaseline: Text = SVGDominantBaselines[FDominantBaseline]; return true;
  case ipColorInterpolation: Text = SVGColorInterpolationNames[FColorInterpolation]; return true;
  case ipColorRendering: Text = SVGColorRenderingNames[FColorRendering]; return true;
  case ipDirection: Text = SVGDirections[FDirection]; return true;
  case ipFontVariant: Text = SVGFontVariants[Font.GetFontVariant()]; return true;
  case ipFontWeight: Text = SVGFontWeights[Font.GetWeight()]; return true;
  case ipGlyphOrientationHorizontal: Text = SVGGlyphOrientationHorizontals[FGlyphOrientationHorizontal]; return true;
  case ipGlyphOrientationVertical: Text = SVGGlyphOrientationVerticals[FGlyphOrientationVertical]; return true;
  case ipShapeRendering: Text = SVGShapeRenderingNames[FShapeRendering]; return true;
  case ipWritingMode: Text = SVGWritingModes[FWritingMode]; return true;
  case ipBaselineShift: Text = BaselineShiftText(*FBaselineShift); return true;
  case ipClip: Text = RectText(GetClipRect()); return true;
  case ipClipPath: Text = UrlOf(FClipURI); return !FClipURI.isEmpty();
  case ipMarkerEnd: Text = UrlOf(FMarkerEndURI); return !FMarkerEndURI.isEmpty();
  case ipMarkerMid: Text = UrlOf(FMarkerMidURI); return !FMarkerMidURI.isEmpty();
  case ipMarkerStart: Text = UrlOf(FMarkerStartURI); return !FMarkerStartURI.isEmpty();
  case ipClipRule: Text = SVGFillRules[FClipRule]; return true;
  case ipFillRule: Text = SVGFillRules[FFillRule]; return true;
  // The resolved brush's colour, not the color property's own value.
  case ipColor: Text = SVGColorToString(const_cast<TSVGGraphicElement *>(this)->GetBrush().GetColor()); return true;
  case ipCursor: Text = SVGCursorNames[GetSVGCursor(FCursor)]; return true;
  case ipDisplay: Text = SVGVisibility[GetVisible()]; return true;
  case ipFill: Text = PaintText(*FBrush); return true;
  case ipStroke: Text = PaintText(Pen); return true;
  case ipFillOpacity: Text = Number(FBrush->GetOpacity()); return true;
  case ipOpacity: Text = Number(FOpacity); return true;
  case ipStrokeOpacity: Text = Number(Pen.GetOpacity()); return true;
  case ipStrokeMiterLimit: Text = Number(Pen.GetMiterLimit()); return true;
  case ipFontFamily: Text = Font.GetName(); return true;
  case ipFontSize: Text = FontSizeText(Font.GetSize()); return true;
  case ipFontStyle:
    Text = Font.GetStyle().Contains(fsItalic) ? SVGFontStyles[sfsItalic] : SVGFontStyles[sfsNormal];
    return true;
  case ipKerning: Text = AutoLengthText(*FKerning, QStringLiteral("auto")); return true;
  case ipLetterSpacing: Text = AutoLengthText(*FLetterSpacing, QStringLiteral("normal")); return true;
  case ipWordSpacing: Text = AutoLengthText(*FWordSpacing, QStringLiteral("normal")); return true;
  case ipOverflow: Text = SVGVisibility[FOverflow]; return true;
  case ipStrokeDasharray: Text = DashValuesText(Pen.GetDashPattern()); return true;
  case ipStrokeDashOffset: Text = Number(Pen.GetSVGDashOffset()->GetValue()); return true;
  case ipStrokeWidth:
    // A percentage is held as a fraction.
    Text = Pen.GetThicknessIsPercent() ? Number(Pen.GetThickness() * 100.0f) + QLatin1Char('%')
                                       : Number(Pen.GetThickness());
    return true;
  case ipStrokeLinecap: Text = SVGStrokeCapToString(Pen.GetEndCap()); return true;
  case ipStrokeLineJoin: Text = SVGStrokeJoinToString(Pen.GetJoin()); return true;
  case ipTextAnchor: Text = SVGTextAnchors[GetSVGTextAnchor(FTextAlign)]; return true;
  case ipTextDecoration: Text = TextDecorationText(Font); return true;
  default: return false;
  }
}

void TSVGGraphicElement::AssignTo(TPersistent *Dest) const
{
  if (auto *Style = dynamic_cast<TSVGStyle *>(Dest)) {
    Style->BeginUpdate();
    QString Text;
    for (int P = ipNone + 1; P < SVGStylePropertyCount; ++P)
      if (!FInherits.GetSet(P) && StylePropertyText(TSVGStyleProperty(P), Text))
        Style->SetStyleProp(TSVGStyleProperty(P), Text);
    Style->EndUpdate();
    return;
  }
  if (auto *Control = dynamic_cast<IVXHostControl *>(Dest)) {
    Control->SetVisible(ShouldDraw());
    Control->SetCursor(GetCursor());
  }
  if (auto *Shape = dynamic_cast<IVXShapeControl *>(Dest)) {
    auto &Self = const_cast<TSVGGraphicElement &>(*this);
    Shape->SetOpacity(GetOpacity());
    Shape->SetClipChildren(false);
    TVXGPBrush Fill;
    CopyWithOpacity(Self.GetBrush(), Fill);
    Shape->SetFill(Fill);
    TVXGPPen Stroke;
    CopyWithOpacity(Self.GetPen(), Stroke);
    Shape->SetStroke(Stroke);
  }
  TSVGElement::AssignTo(Dest);
}

void TSVGGraphicElement::DoModifyControl(IVXHostControl *Control, TMatrix &Matrix, TRectF &Rect,
                                         const TSVGControlElementEvent &Callback)
{
  TSVGElement::DoModifyControl(Control, Matrix, Rect, Callback);
  Matrix = VXMatrixMultiply(FMatrix, Matrix);
  TComponent &Component = Control->HostComponent();
  if (auto *PathControl = dynamic_cast<IVXPathShapeControl *>(&Component)) {
    PathControl->SetWrapMode(0);
    PathControl->SetFillMode(GetFillRule() == frEvenOdd ? VXFillModeAlternate : VXFillModeWinding);
    PathControl->PathData().ApplyMatrix(Matrix);
    const TRectF B = PathControl->PathData().GetBounds();
    Rect = TRectF{B.Left, B.Top, B.Left + std::round(std::max({1.0f, B.Width(), B.Right})),
                  B.Top + std::round(std::max({1.0f, B.Height(), B.Bottom}))};
  } else {
    Rect = GetBoundsRect();
    // Controls that cannot hold children are flattened into the top control, so they all start
    // at its origin and reach as far as the element does under Matrix.
    const TPointF P1 = VXMatrixTransformPoint(TPointF{Rect.Left, Rect.Top}, Matrix);
    const TPointF P2 = VXMatrixTransformPoint(TPointF{Rect.Right, Rect.Bottom}, Matrix);
    if (!dynamic_cast<IVXSVGPathControl *>(&Component))
      Control->SetBoundsRect(TRectF{0, 0, std::max(1.0f, std::round(std::abs(P2.X - P1.X))),
                                    std::max(1.0f, std::round(std::abs(P2.Y - P1.Y)))});
  }
  if (auto *Shape = dynamic_cast<IVXShapeControl *>(&Component)) {
    // The pen as a draw under Matrix sets it: width and dashes in the top control's pixels.
    QImage Scratch(1, 1, QImage::Format_ARGB32_Premultiplied);
    TVXGPCanvas Canvas(&Scratch);
    SetCanvasPen(Canvas, Matrix, GetVectorEffect() == veNone);
    TVXGPPen Stroke;
    Stroke.Assign(&Canvas.Pen());
    if (GetPen().GetOpacity() < 1)
      Stroke.SetColor(SetColorOpacity(Stroke.GetColor(), GetPen().GetOpacity()));
    Shape->SetStroke(Stroke);
    // The controls of a group's children lie beside the group's, not in it, so no layer composites
    // the group's opacity: each shape takes it into its own.
    float Opacity = GetOpacity();
    for (const TSVGGraphicElement *Up = GetGraphicParent(); Up; Up = Up->GetGraphicParent())
      Opacity *= Up->GetOpacity();
    Shape->SetOpacity(Opacity);
  }
}

} // namespace vx
