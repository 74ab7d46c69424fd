// The published properties of the structure elements and paint servers beyond those of their
// base classes: references, coordinate units, the lengths of gradients and markers, the stop's
// paint and what a load found given on a gradient or pattern (which a reference chain consults).
#include "structure/VXSVGClipPath.h"
#include "structure/VXSVGGradients.h"
#include "structure/VXSVGImage.h"
#include "structure/VXSVGMarker.h"
#include "structure/VXSVGMask.h"
#include "structure/VXSVGMetadata.h"
#include "structure/VXSVGPattern.h"
#include "structure/VXSVGUse.h"
#include "tree/VXSVGPropertyRegistry.h"

namespace vx {

namespace {

const QString String = QStringLiteral("string");
const QString Boolean = QStringLiteral("Boolean");
const QString Units = QStringLiteral("TSVGCoordinateSystemUnit");

template <typename C>
std::function<bool(const C &)> Predicate(std::function<bool(const C &)> Function)
{
  return Function;
}

template <typename C>
TPropInfo Reference()
{
  return PublishedValue<C>(QStringLiteral("Reference"), tkString, String, &C::Reference, &C::SetReference,
                           Predicate<C>([](const C &E) { return !E.Reference().isEmpty(); }));
}

template <typename C>
TPropInfo Length(const QString &Name, TSVGLength &(C::*Getter)())
{
  return PublishedObject<C>(Name, QStringLiteral("TSVGLength"), [Getter](C &E) -> TSVGLength & { return (E.*Getter)(); });
}

template <typename C>
TPropInfo UnitsRow(const QString &Name, TSVGCoordinateSystemUnit (C::*Getter)() const,
                   void (C::*Setter)(TSVGCoordinateSystemUnit))
{
  return PublishedValue<C>(Name, tkEnumeration, Units, Getter, Setter);
}

template <typename C>
TPropInfo GivenRow()
{
  return PublishedValue<C>(QStringLiteral("GivenAttributes"), tkSet, QStringLiteral("Set"), &C::GivenAttributes,
                           &C::SetGivenAttributes,
                           Predicate<C>([](const C &E) { return E.GivenAttributes().Bits() != 0; }));
}

const TPropertyTable &UseProperties()
{
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {Reference<TSVGUse>()});
  return Table;
}

const TPropertyTable &ClipPathProperties()
{
  using C = TSVGClipPath;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    UnitsRow<C>(QStringLiteral("Units"), &C::Units, &C::SetUnits),
  });
  return Table;
}

const TPropertyTable &MaskProperties()
{
  using C = TSVGMask;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    UnitsRow<C>(QStringLiteral("Units"), &C::Units, &C::SetUnits),
    UnitsRow<C>(QStringLiteral("ContentUnits"), &C::ContentUnits, &C::SetContentUnits),
    PublishedValue<C>(QStringLiteral("AlphaMask"), tkBoolean, Boolean, &C::IsAlphaMask, &C::SetAlphaMask),
  });
  return Table;
}

const TPropertyTable &LinearGradientProperties()
{
  using C = TSVGLinearGradient;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    Reference<C>(),
    PublishedValue<C>(QStringLiteral("Spread"), tkEnumeration, QStringLiteral("TSVGGradientSpread"), &C::Spread,
                      &C::SetSpread),
    UnitsRow<C>(QStringLiteral("Units"), &C::Units, &C::SetUnits),
    GivenRow<C>(),
    Length<C>(QStringLiteral("X1"), &C::X1),
    Length<C>(QStringLiteral("Y1"), &C::Y1),
    Length<C>(QStringLiteral("X2"), &C::X2),
    Length<C>(QStringLiteral("Y2"), &C::Y2),
  });
  return Table;
}

const TPropertyTable &RadialGradientProperties()
{
  using C = TSVGRadialGradient;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    Reference<C>(),
    PublishedValue<C>(QStringLiteral("Spread"), tkEnumeration, QStringLiteral("TSVGGradientSpread"), &C::Spread,
                      &C::SetSpread),
    UnitsRow<C>(QStringLiteral("Units"), &C::Units, &C::SetUnits),
    GivenRow<C>(),
    Length<C>(QStringLiteral("FocalX"), &C::FocalX),
    Length<C>(QStringLiteral("FocalY"), &C::FocalY),
    Length<C>(QStringLiteral("FocalRadius"), &C::FocalRadius),
    PublishedValue<C>(QStringLiteral("FocalXSpecified"), tkBoolean, Boolean, &C::FocalXSpecified,
                      &C::SetFocalXSpecified),
    PublishedValue<C>(QStringLiteral("FocalYSpecified"), tkBoolean, Boolean, &C::FocalYSpecified,
                      &C::SetFocalYSpecified),
  });
  return Table;
}

const TPropertyTable &StopProperties()
{
  using C = TSVGGradientStop;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    PublishedObject<C>(QStringLiteral("StopBrush"), QStringLiteral("TSVGBrush"),
                       [](C &Stop) -> TSVGBrush & { return Stop.StopBrushAsRead(); }),
  });
  return Table;
}

const TPropertyTable &PatternProperties()
{
  using C = TSVGPattern;
  static const TPropertyTable Table(&TSVGCustomViewBox::Properties(), {
    Reference<C>(),
    UnitsRow<C>(QStringLiteral("ContentUnits"), &C::ContentUnits, &C::SetContentUnits),
    UnitsRow<C>(QStringLiteral("Units"), &C::Units, &C::SetUnits),
    GivenRow<C>(),
    PublishedValue<C>(QStringLiteral("PatternTransformMatrix"), tkString, String, &C::GetPatternTransformMatrix,
                      &C::SetPatternTransformMatrix),
  });
  return Table;
}

const TPropertyTable &MarkerProperties()
{
  using C = TSVGMarker;
  static const TPropertyTable Table(&TSVGCustomViewBox::Properties(), {
    Length<C>(QStringLiteral("RefX"), &C::RefX),
    Length<C>(QStringLiteral("RefY"), &C::RefY),
    Length<C>(QStringLiteral("MarkerWidth"), &C::MarkerWidth),
    Length<C>(QStringLiteral("MarkerHeight"), &C::MarkerHeight),
    PublishedValue<C>(QStringLiteral("Units"), tkEnumeration, QStringLiteral("TSVGMarkerUnit"), &C::Units,
                      &C::SetUnits),
    PublishedValue<C>(QStringLiteral("Orientation"), tkFloat, QStringLiteral("Single"), &C::Orientation,
                      &C::SetOrientation),
    PublishedValue<C>(QStringLiteral("AutomaticOrientation"), tkBoolean, Boolean, &C::AutomaticOrientation,
                      &C::SetAutomaticOrientation),
    PublishedValue<C>(QStringLiteral("ReversedAtStart"), tkBoolean, Boolean, &C::ReversedAtStart,
                      &C::SetReversedAtStart),
  });
  return Table;
}

const TPropertyTable &ImageProperties()
{
  static const TPropertyTable Table(&TSVGCustomViewBox::Properties(), {Reference<TSVGImage>()});
  return Table;
}

const TPropertyTable &MetadataProperties()
{
  using C = TSVGMetadata;
  static const TPropertyTable Table(&TSVGElement::Properties(), {
    PublishedValue<C>(QStringLiteral("XML"), tkString, String, &C::XML, &C::SetXML,
                      Predicate<C>([](const C &E) { return !E.XML().isEmpty(); })),
  });
  return Table;
}

const TSVGPropertiesRegistration Use(TSVGUse::ClassInfo(), &UseProperties);
const TSVGPropertiesRegistration ClipPath(TSVGClipPath::ClassInfo(), &ClipPathProperties);
const TSVGPropertiesRegistration Mask(TSVGMask::ClassInfo(), &MaskProperties);
const TSVGPropertiesRegistration LinearGradient(TSVGLinearGradient::ClassInfo(), &LinearGradientProperties);
const TSVGPropertiesRegistration RadialGradient(TSVGRadialGradient::ClassInfo(), &RadialGradientProperties);
const TSVGPropertiesRegistration Stop(TSVGGradientStop::ClassInfo(), &StopProperties);
const TSVGPropertiesRegistration Pattern(TSVGPattern::ClassInfo(), &PatternProperties);
const TSVGPropertiesRegistration Marker(TSVGMarker::ClassInfo(), &MarkerProperties);
const TSVGPropertiesRegistration Image(TSVGImage::ClassInfo(), &ImageProperties);
const TSVGPropertiesRegistration Metadata(TSVGMetadata::ClassInfo(), &MetadataProperties);
const TSVGPropertiesRegistration Script(TSVGScript::ClassInfo(), &MetadataProperties);

} // namespace

} // namespace vx
