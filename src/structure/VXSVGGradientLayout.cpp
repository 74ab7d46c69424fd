// The standard layout of the gradients: attributes resolved through the href chain and positions
// placed in the gradient's own space, which the canvas takes through the gradient transform, the
// bounding box and the painted element's matrix to the device.
#include "structure/VXSVGGradients.h"

#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace vx {

namespace {

// A coordinate by the standard rules: in bounding-box units a fraction of the box, a percentage
// too; in user space a number of user units, or a percentage of Extent, a side of the viewport.
float StandardCoordinate(const TSVGLength &Length, bool BoxUnits, float Extent)
{
  if (!Length.IsPercent())
    return Length.GetPixels();
  return BoxUnits ? Length.Raw() : Length.Raw() * Extent;
}

// The size that user-space percentages are of: the view box of the painted element's viewport.
TSizeF ViewportSize(const TSVGGraphicElement &Client)
{
  const TSVGCustomViewBox *ViewBox = Client.GetNearestViewBox();
  if (!ViewBox)
    return {};
  return {ViewBox->ViewBox().Width()->GetValue(), ViewBox->ViewBox().Height()->GetValue()};
}

// The extent a percentage radius is of: the viewport's diagonal over the square root of 2.
float DiagonalExtent(const TSizeF &Viewport)
{
  return float(std::sqrt((double(Viewport.cx) * Viewport.cx + double(Viewport.cy) * Viewport.cy) / 2.0));
}

// The first gradient of Chain of kind T that was given Attribute, or nil: an attribute that a
// gradient of another kind carries is not one of this kind's.
template <typename T>
const T *GiverOf(const std::vector<const TSVGCustomGradient *> &Chain, TSVGGradientAttribute Attribute)
{
  for (const TSVGCustomGradient *Gradient : Chain)
    if (const auto *Found = dynamic_cast<const T *>(Gradient); Found && Found->GivenAttributes().Contains(Attribute))
      return Found;
  return nullptr;
}

// The matrix that takes the unit square onto Box.
TMatrix BoxMatrix(const TRectF &Box)
{
  return VXMatrixMultiply(CreateScaleVXMatrix(Box.Width(), Box.Height()), CreateTranslateVXMatrix(Box.Left, Box.Top));
}

TVXGPGradientSpread CanvasSpread(TSVGGradientSpread Spread)
{
  switch (Spread) {
  case gsReflect:
    return sdReflect;
  case gsRepeat:
    return sdRepeat;
  default:
    return sdPad;
  }
}

} // namespace

std::vector<const TSVGCustomGradient *> TSVGCustomGradient::TemplateChain() const
{
  std::vector<const TSVGCustomGradient *> Chain{this};
  std::unordered_set<const TSVGCustomGradient *> Seen{this};
  for (const TSVGCustomGradient *Next = ReferencedGradient(); Next && Seen.insert(Next).second;
       Next = Next->ReferencedGradient())
    Chain.push_back(Next);
  return Chain;
}

void TSVGCustomGradient::FillStandardPoints(TVXGPGradientPoints &Points) const
{
  // The stops come from the nearest gradient of the chain that has any.
  for (const TSVGCustomGradient *Source : TemplateChain()) {
    float Previous = 0;
    for (TSVGElement *Child : Source->FItems)
      if (auto *Stop = dynamic_cast<TSVGGradientStop *>(Child)) {
        const float Offset = std::max(Previous, std::clamp(Stop->Offset(), 0.0f, 1.0f));
        Points.Add(Offset, Stop->GetStopBrush().GetColor());
        Previous = Offset;
      }
    if (Points.GetCount() > 0)
      return;
  }
}

bool TSVGCustomGradient::StandardBrush(const TSVGGraphicElement &Client, const TRectF &Box, TVXGPBrush &Target) const
{
  const std::vector<const TSVGCustomGradient *> Chain = TemplateChain();
  const auto *UnitsGiver = GiverOf<TSVGCustomGradient>(Chain, gaUnits);
  const auto *SpreadGiver = GiverOf<TSVGCustomGradient>(Chain, gaSpread);
  const auto *TransformGiver = GiverOf<TSVGCustomGradient>(Chain, gaTransform);
  const bool BoxUnits = !UnitsGiver || UnitsGiver->FUnits != csuUserSpaceOnUse;

  TVXGPGradient Gradient;
  Gradient.SetLayout(glGradientSpace);
  Gradient.SetStyle(SVGType() == etRadialGradient ? gsRadial : gsLinear);
  // A bounding-box gradient has no space on a box without width or height: it paints nothing.
  const bool Paints = !BoxUnits || (Box.Width() > 0 && Box.Height() > 0);
  if (Paints)
    FillStandardPoints(Gradient.Points());
  if (Gradient.Points().GetCount() > 0) {
    Gradient.SetSpread(CanvasSpread(SpreadGiver ? SpreadGiver->FSpread : gsPad));
    PlaceStandardGeometry(Chain, BoxUnits, ViewportSize(Client), Gradient);
    // A transform that cannot be inverted is dropped, as an invalid one is.
    TMatrix Transform = TransformGiver ? TransformGiver->FMatrix : VXIdentityMatrix;
    if (!(std::abs(VXMatrixDeterminant(Transform)) > 0))
      Transform = VXIdentityMatrix;
    Gradient.SetTransform(BoxUnits ? VXMatrixMultiply(Transform, BoxMatrix(Box)) : Transform);
  }
  Target.SetGradient(&Gradient);
  Target.SetKind(bkGradient);
  return Gradient.Points().GetCount() > 0;
}

void TSVGLinearGradient::PlaceStandardGeometry(const std::vector<const TSVGCustomGradient *> &Chain, bool BoxUnits,
                                               const TSizeF &Viewport, TVXGPGradient &Gradient) const
{
  // Without the attribute anywhere in the chain: 0% for x1, y1, y2 and 100% for x2.
  auto Coordinate = [&](TSVGGradientAttribute Attribute, std::unique_ptr<TSVGLength> TSVGLinearGradient::*Field,
                        float DefaultFraction, float Extent) {
    if (const TSVGLinearGradient *Giver = GiverOf<TSVGLinearGradient>(Chain, Attribute))
      return StandardCoordinate(*(Giver->*Field), BoxUnits, Extent);
    return BoxUnits ? DefaultFraction : DefaultFraction * Extent;
  };
  Gradient.Start().SetPoint({Coordinate(gaX1, &TSVGLinearGradient::FX1, 0, Viewport.cx),
                             Coordinate(gaY1, &TSVGLinearGradient::FY1, 0, Viewport.cy)});
  Gradient.End().SetPoint({Coordinate(gaX2, &TSVGLinearGradient::FX2, 1, Viewport.cx),
                           Coordinate(gaY2, &TSVGLinearGradient::FY2, 0, Viewport.cy)});
}

void TSVGRadialGradient::PlaceStandardGeometry(const std::vector<const TSVGCustomGradient *> &Chain, bool BoxUnits,
                                               const TSizeF &Viewport, TVXGPGradient &Gradient) const
{
  // Without the attribute anywhere in the chain: 50% for cx, cy and r, 0% for fr; fx and fy
  // default to the centre that was resolved.
  auto Coordinate = [&](TSVGGradientAttribute Attribute, const TSVGLength &(*Field)(const TSVGRadialGradient &),
                        float DefaultFraction, float Extent) {
    if (const TSVGRadialGradient *Giver = GiverOf<TSVGRadialGradient>(Chain, Attribute))
      return StandardCoordinate(Field(*Giver), BoxUnits, Extent);
    return BoxUnits ? DefaultFraction : DefaultFraction * Extent;
  };
  const float Diagonal = DiagonalExtent(Viewport);
  const float Cx = Coordinate(gaCX, [](const TSVGRadialGradient &G) -> const TSVGLength & { return *G.FX; }, 0.5f,
                              Viewport.cx);
  const float Cy = Coordinate(gaCY, [](const TSVGRadialGradient &G) -> const TSVGLength & { return *G.FY; }, 0.5f,
                              Viewport.cy);
  const float R = Coordinate(gaR, [](const TSVGRadialGradient &G) -> const TSVGLength & { return *G.FWidth; }, 0.5f,
                             Diagonal);
  const float Fr = Coordinate(gaFR, [](const TSVGRadialGradient &G) -> const TSVGLength & { return *G.FFocalRadius; },
                              0, Diagonal);
  const auto *FxGiver = GiverOf<TSVGRadialGradient>(Chain, gaFX);
  const auto *FyGiver = GiverOf<TSVGRadialGradient>(Chain, gaFY);
  float Fx = FxGiver ? StandardCoordinate(*FxGiver->FFocalX, BoxUnits, Viewport.cx) : Cx;
  float Fy = FyGiver ? StandardCoordinate(*FyGiver->FFocalY, BoxUnits, Viewport.cy) : Cy;
  // A focus outside the circle is moved onto it, along the line from the centre.
  const double Distance = std::hypot(double(Fx) - Cx, double(Fy) - Cy);
  if (R > 0 && Distance > R) {
    const double Scale = R / Distance;
    Fx = float(Cx + (Fx - Cx) * Scale);
    Fy = float(Cy + (Fy - Cy) * Scale);
  }
  Gradient.RadialTransform().Center().SetPoint({Cx, Cy});
  Gradient.RadialTransform().FocalOffset().SetPoint({Fx - Cx, Fy - Cy});
  Gradient.SetRadius(R);
  Gradient.SetFocalRadius(Fr);
}

} // namespace vx
