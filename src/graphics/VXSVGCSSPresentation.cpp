// The standard road of reading presentation: colours, paints and opacities as CSS reads them. Text
// that is not valid leaves the property as it was, as if the declaration were not there.
#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGCSSSelectorMatch.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "tree/VXSVGRuleIndex.h"
#include "values/VXSVGTransforms.h"
#include "values/VXSVGNumbers.h"

#include <algorithm>
#include <vector>

namespace vx {

namespace {

bool IsInheritKeyword(const QString &T)
{
  return T == QLatin1String("inherit");
}

// Value without its "!important" mark; false when it has none.
bool IsImportant(const QString &Value, QString &Stripped)
{
  QString T = Trim(Value);
  if (!T.endsWith(QLatin1String("important"), Qt::CaseInsensitive))
    return false;
  T = Trim(T.chopped(9));
  if (!T.endsWith(u'!'))
    return false;
  Stripped = Trim(T.chopped(1));
  return true;
}

// Copies the normal, or the important, declarations of From over those of Into.
void AddDeclarations(TSVGStyle &Into, const TSVGStyle &From, bool Important)
{
  for (int I = 0; I < From.Count(); ++I) {
    const QString Value = From.ValueFromIndex(I);
    QString Stripped;
    if (IsImportant(Value, Stripped) == Important)
      Into.SetValues(From.Names(I), Important ? Stripped : Value);
  }
}

// Properties that only style sheets and the style attribute set: an attribute of that name is no
// declaration.
bool IsStyleOnlyProperty(const QString &Name)
{
  return Name == QLatin1String("mix-blend-mode") || Name == QLatin1String("isolation");
}

void AddAttributeDeclarations(TSVGStyle &Into, const TSVGStyle &Attributes)
{
  for (int I = 0; I < Attributes.Count(); ++I)
    if (!IsStyleOnlyProperty(Attributes.Names(I)))
      Into.SetValues(Attributes.Names(I), Attributes.ValueFromIndex(I));
}

} // namespace

TMatrix TSVGGraphicElement::LoadTransform(const QString &Text) const
{
  if (!CascadesAsCSS())
    return ParseTransformation(Text);
  try {
    return ParseTransformation(Text);
  } catch (const Exception &) {
    return VXIdentityMatrix;
  }
}

void TSVGGraphicElement::ApplyCascadedStyles(const TVXStringObjectHashTable<TSVGStyle> *Sheet)
{
  std::vector<std::pair<std::pair<int, int>, const TSVGStyle *>> Rules;
  if (Sheet)
    for (const TSVGStyle *Rule : CandidateRules(*this, *Sheet, TSVGRuleMatching::CSS)) {
      const int Weight = Rule->Enabled() ? MatchCSSSelector(*this, Rule->Name()) : -1;
      if (Weight > -1)
        Rules.push_back({{Weight, Rule->Order()}, Rule});
    }
  std::sort(Rules.begin(), Rules.end(), [](const auto &A, const auto &B) { return A.first < B.first; });
  // The element's own style holds its attributes, and the style attribute's text under "style".
  const TSVGStyle StyleAttribute(QString(), FStyle.Values(QStringLiteral("style")));
  TSVGStyle Cascaded;
  AddAttributeDeclarations(Cascaded, FStyle);
  for (const bool Important : {false, true}) {
    for (const auto &Rule : Rules)
      AddDeclarations(Cascaded, *Rule.second, Important);
    AddDeclarations(Cascaded, StyleAttribute, Important);
  }
  ApplyStyle(Cascaded);
  ApplyTransformStyle(Cascaded);
}

void TSVGGraphicElement::ApplyTransformStyle(const TSVGStyle &Style)
{
  const QString Transform = QStringLiteral("transform");
  if (Style.IndexOf(Transform) >= 0)
    FMatrix = LoadTransform(CSSTransformToSVG(Style.Values(Transform)));
  const QString Origin = Style.Values(QStringLiteral("transform-origin"));
  if (Origin.isEmpty())
    return;
  // Percentages and keywords are of the nearest viewport.
  float Width = 0, Height = 0;
  if (const TSVGCustomViewBox *ViewBox = GetNearestViewBox()) {
    Width = ViewBox->ViewBox().Width()->GetValue();
    Height = ViewBox->ViewBox().Height()->GetValue();
  } else if (GetOwner()) {
    Width = GetOwner()->GetWidth();
    Height = GetOwner()->GetHeight();
  }
  float X = 0, Y = 0;
  if (TryParseTransformOrigin(Origin, Width, Height, X, Y))
    FMatrix = VXMatrixMultiply(VXMatrixMultiply(CreateTranslateVXMatrix(-X, -Y), FMatrix), CreateTranslateVXMatrix(X, Y));
}

void TSVGGraphicElement::ApplyCSSColorStyle(const QString &Text)
{
  const QString T = Trim(Text);
  // currentColor on color itself is the parent's colour.
  if (IsInheritKeyword(T) || T == QLatin1String("currentColor")) {
    FInherits.SetSet(ipColor, true);
    return;
  }
  TVXGPColor Color = 0;
  if (T.isEmpty() || !TryParseCSSColor(T, Color))
    return;
  FColor = Color;
  FInherits.SetSet(ipColor, false);
}

template <typename TPaint>
void TSVGGraphicElement::ApplyCSSPaintStyle(const QString &Text, TSVGStyleProperty Property, TPaint &Paint,
                                            TSVGPaintKeyword &Keyword)
{
  const QString T = Trim(Text);
  if (IsInheritKeyword(T)) {
    FInherits.SetSet(Property, true);
    return;
  }
  TSVGCSSPaint Value;
  if (T.isEmpty() || !TryParseCSSPaint(T, Value))
    return;
  // A reference without a fallback paints nothing unless its paint server takes over.
  const bool Paints = Value.Keyword != pkNone && Value.Keyword != pkAbsent;
  Paint.SetKind(Paints ? bkSolid : bkNone);
  if (Value.Keyword == pkColor)
    Paint.SetColor(Value.Color);
  Paint.SetURI(Value.URI);
  Keyword = Value.Keyword == pkColor ? pkAbsent : Value.Keyword;
  FInherits.SetSet(Property, false);
}

template void TSVGGraphicElement::ApplyCSSPaintStyle(const QString &, TSVGStyleProperty, TSVGBrush &,
                                                     TSVGPaintKeyword &);
template void TSVGGraphicElement::ApplyCSSPaintStyle(const QString &, TSVGStyleProperty, TSVGPen &,
                                                     TSVGPaintKeyword &);

TSVGPaintKeyword TSVGGraphicElement::PaintKeyword(TSVGStyleProperty Property) const
{
  const TSVGGraphicElement *Source = InheritanceSource(Property);
  return Property == ipFill ? Source->FFillKeyword : Source->FStrokeKeyword;
}

namespace {

// The nearest ancestor that sets a paint context, and the context it sets.
TSVGGraphicElement *ContextElementOf(const TSVGGraphicElement &Element)
{
  for (const TSVGGraphicElement *Up = Element.GetGraphicParent(); Up; Up = Up->GetGraphicParent())
    if (TSVGGraphicElement *Context = Up->PaintContext())
      return Context;
  return nullptr;
}

template <typename TPaint, typename TSource>
void TakePaint(TPaint &Paint, const TSource &Source)
{
  Paint.SetColor(Source.GetColor());
  Paint.SetKind(Source.GetKind() == bkNone ? bkNone : bkSolid);
  Paint.SetURI(Source.GetURI());
}

} // namespace

template <typename TPaint>
void TSVGGraphicElement::ResolvePaintKeyword(TSVGStyleProperty Property, TPaint &Paint)
{
  const TSVGPaintKeyword Keyword = PaintKeyword(Property);
  if (Keyword == pkCurrentColor) {
    Paint.SetColor(GetColor());
    return;
  }
  if (Keyword != pkContextFill && Keyword != pkContextStroke)
    return;
  TSVGGraphicElement *Context = ContextElementOf(*this);
  if (!Context)
    Paint.SetKind(bkNone);
  else if (Keyword == pkContextFill)
    TakePaint(Paint, Context->GetBrush());
  else
    TakePaint(Paint, Context->GetPen());
}

template void TSVGGraphicElement::ResolvePaintKeyword(TSVGStyleProperty, TSVGBrush &);
template void TSVGGraphicElement::ResolvePaintKeyword(TSVGStyleProperty, TSVGPen &);

float TSVGGraphicElement::ParseOpacityStyle(const QString &Text, float Default, bool &IsInherited) const
{
  if (!ReadsPaintAsCSS())
    return ParseNumber(Text, Default, IsInherited);
  const QString T = Trim(Text);
  float Opacity = Default;
  if (IsInheritKeyword(T))
    IsInherited = true;
  else if (!T.isEmpty() && TryParseCSSOpacity(T, Opacity))
    IsInherited = false;
  return IsInherited ? Default : Opacity;
}

} // namespace vx
