// Layers of graphic elements: in standard mode an element's opacity, mix-blend-mode and isolation
// apply to the element as a whole. The element and its children are drawn into a layer of the
// canvas (platform/vectorkit/VXGPLayer.h) that is composited once, so that overlapping children, or
// the fill and stroke of one shape, do not show through each other. An element with one painted
// part gets a folded layer, which costs no raster. In the documented mode there are no layers: the
// opacities up the parents are multiplied into every paint (GetAbsoluteOpacity).
#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGDrawBudget.h"
#include "tree/VXSVGGraphicElement.h"

#include <array>
#include <utility>

namespace vx {

namespace {

const QString MixBlendModeName = QStringLiteral("mix-blend-mode");
const QString IsolationName = QStringLiteral("isolation");

const std::array<std::pair<const char *, TVXGPBlendMode>, 16> BlendModeNames = {{
    {"normal", bmNormal},
    {"multiply", bmMultiply},
    {"screen", bmScreen},
    {"overlay", bmOverlay},
    {"darken", bmDarken},
    {"lighten", bmLighten},
    {"color-dodge", bmColorDodge},
    {"color-burn", bmColorBurn},
    {"hard-light", bmHardLight},
    {"soft-light", bmSoftLight},
    {"difference", bmDifference},
    {"exclusion", bmExclusion},
    {"hue", bmHue},
    {"saturation", bmSaturation},
    {"color", bmColor},
    {"luminosity", bmLuminosity},
}};

// An unknown keyword leaves the mode as it was, as browsers ignore an invalid declaration.
TVXGPBlendMode ParseBlendMode(const QString &Text, TVXGPBlendMode Default)
{
  const QString Word = Trim(Text);
  for (const auto &[Name, Mode] : BlendModeNames)
    if (Word == QLatin1String(Name))
      return Mode;
  return Default;
}

bool ParseIsolation(const QString &Text, bool Default)
{
  const QString Word = Trim(Text);
  if (Word == QLatin1String("isolate"))
    return true;
  if (Word == QLatin1String("auto"))
    return false;
  return Default;
}

} // namespace

bool TSVGGraphicElement::GroupOpacityNeedsLayer() const
{
  return FollowsStandardSVG();
}

void TSVGGraphicElement::SetBlendMode(TVXGPBlendMode Value)
{
  if (Value == FBlendMode)
    return;
  FBlendMode = Value;
  Change(this);
}

void TSVGGraphicElement::SetIsolated(bool Value)
{
  if (Value == FIsolated)
    return;
  FIsolated = Value;
  Change(this);
}

bool TSVGGraphicElement::HasSeveralPaintedParts() const
{
  if (SVGType() == etUse)
    return true;
  for (const TSVGElement *Child : FItems)
    if (dynamic_cast<const TSVGGraphicElement *>(Child))
      return true;
  auto *Self = const_cast<TSVGGraphicElement *>(this);
  const bool Markers = !GetMarkerStartURI().isEmpty() || !GetMarkerMidURI().isEmpty() || !GetMarkerEndURI().isEmpty();
  return Markers || (Self->GetBrush().GetKind() != bkNone && Self->GetPen().GetKind() != bkNone);
}

std::unique_ptr<TVXGPLayer> TSVGGraphicElement::OpenLayer(TVXGPCanvas &Canvas) const
{
  if (!GroupOpacityNeedsLayer())
    return nullptr;
  const float Opacity = GetOpacity();
  const bool Composes = FBlendMode != bmNormal || FIsolated;
  if (Opacity >= 1 && !Composes)
    return nullptr;
  const bool Offscreen = Composes || (Opacity > 0 && HasSeveralPaintedParts());
  auto Layer = std::make_unique<TVXGPLayer>(Canvas, Opacity, Offscreen && !TSVGDrawScope::Spent());
  // The layer that passes the draw's budget gives its raster back and is folded, like all after it.
  if (Layer->IsOffscreen() &&
      !TSVGDrawScope::Charge(std::int64_t(Layer->Pixels().width()) * Layer->Pixels().height())) {
    Layer.reset();
    Layer = std::make_unique<TVXGPLayer>(Canvas, Opacity, false);
  }
  return Layer;
}

void TSVGGraphicElement::CompositeLayer(TVXGPLayer *Layer) const
{
  if (Layer)
    Layer->Composite(FBlendMode);
}

void TSVGGraphicElement::ReadCompositingStyle(const QString &StyleText)
{
  TSVGStyle Declared;
  Declared.AddStyle(StyleText);
  FStyleBlendMode = Declared.Values(MixBlendModeName);
  FStyleIsolation = Declared.Values(IsolationName);
}

void TSVGGraphicElement::ApplyCompositingStyle(const TSVGStyle &Style)
{
  // The element's own style (or a cascade that took its value from there) also holds the
  // attributes: of those, only the style attribute's declaration counts.
  auto Declared = [&](const QString &Name, const QString &FromStyleAttribute) {
    const QString Value = Style.Values(Name);
    return &Style == &FStyle || Value == FStyle.Values(Name) ? FromStyleAttribute : Value;
  };
  FBlendMode = ParseBlendMode(Declared(MixBlendModeName, FStyleBlendMode), FBlendMode);
  FIsolated = ParseIsolation(Declared(IsolationName, FStyleIsolation), FIsolated);
}

} // namespace vx
