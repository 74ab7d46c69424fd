// The published properties of the text elements beyond the graphic element's: the position lists
// as text, the element's own characters, and what the standard road read besides them; tref and
// textPath add their reference and placement.
#include "text/VXSVGText.h"
#include "tree/VXSVGPropertyRegistry.h"

namespace vx {

namespace {

const QString String = QStringLiteral("string");

template <typename C>
std::function<bool(const C &)> Predicate(std::function<bool(const C &)> Function)
{
  return Function;
}

template <typename C>
TPropInfo ListRow(const QString &Name, QString (TSVGCustomText::*Getter)() const,
                  void (TSVGCustomText::*Setter)(const QString &))
{
  return PublishedValue<C>(Name, tkString, String, Getter, Setter,
                           Predicate<C>([Getter](const C &E) { return !(E.*Getter)().isEmpty(); }));
}

// The browser text properties as one line of fields separated by the unit separator.
QString BrowserPropertiesText(const TSVGBrowserTextProperties &P)
{
  return QStringList{P.FontVariationSettings, P.FontStretch, P.FontKerning, P.FontStyle,
                     QString::number(double(P.TextLength), 'g', 9), P.SpacingAndGlyphs ? QStringLiteral("1") : QString()}
    .join(QChar(0x1F));
}

TSVGBrowserTextProperties BrowserPropertiesFromText(const QString &Text)
{
  const QStringList Fields = Text.split(QChar(0x1F));
  if (Fields.size() != 6)
    throw EReadError(QStringLiteral("Invalid property value of BrowserProperties"));
  TSVGBrowserTextProperties P;
  P.FontVariationSettings = Fields[0];
  P.FontStretch = Fields[1];
  P.FontKerning = Fields[2];
  P.FontStyle = Fields[3];
  P.TextLength = Fields[4].toFloat();
  P.SpacingAndGlyphs = !Fields[5].isEmpty();
  return P;
}

const TPropertyTable &CustomTextProperties()
{
  using C = TSVGCustomText;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    ListRow<C>(QStringLiteral("XStr"), &C::GetXStr, &C::SetXStr),
    ListRow<C>(QStringLiteral("YStr"), &C::GetYStr, &C::SetYStr),
    ListRow<C>(QStringLiteral("DXStr"), &C::GetDXStr, &C::SetDXStr),
    ListRow<C>(QStringLiteral("DYStr"), &C::GetDYStr, &C::SetDYStr),
    ListRow<C>(QStringLiteral("RotateStr"), &C::GetRotateStr, &C::SetRotateStr),
    PublishedValue<C>(QStringLiteral("Text"), tkString, String, &C::GetText, &C::SetText,
                      Predicate<C>([](const C &E) { return !E.GetText().isEmpty(); })),
    PublishedValue<C>(QStringLiteral("PreservesSpace"), tkBoolean, QStringLiteral("Boolean"), &C::PreservesSpace,
                      &C::SetPreservesSpace, StoredUnless<C>(&C::PreservesSpace, false)),
    PublishedValue<C>(QStringLiteral("BrowserProperties"), tkString, String,
                      [](const C &E) { return BrowserPropertiesText(E.BrowserProperties()); },
                      [](C &E, const QString &Text) { E.SetBrowserProperties(BrowserPropertiesFromText(Text)); },
                      Predicate<C>([](const C &E) {
                        return BrowserPropertiesText(E.BrowserProperties()) !=
                               BrowserPropertiesText(TSVGBrowserTextProperties{});
                      })),
  });
  return Table;
}

const TPropertyTable &TextRefProperties()
{
  using C = TSVGTextRef;
  static const TPropertyTable Table(&CustomTextProperties(), {
    PublishedValue<C>(QStringLiteral("Reference"), tkString, String, &C::Reference, &C::SetReference,
                      Predicate<C>([](const C &E) { return !E.Reference().isEmpty(); })),
  });
  return Table;
}

const TPropertyTable &TextPathProperties()
{
  using C = TSVGTextPath;
  static const TPropertyTable Table(&CustomTextProperties(), {
    PublishedValue<C>(QStringLiteral("Method"), tkEnumeration, QStringLiteral("TSVGTextPathMethod"), &C::Method,
                      &C::SetMethod),
    PublishedValue<C>(QStringLiteral("Reference"), tkString, String, &C::Reference, &C::SetReference,
                      Predicate<C>([](const C &E) { return !E.Reference().isEmpty(); })),
    PublishedObject<C>(QStringLiteral("StartOffset"), QStringLiteral("TSVGLength"),
                       [](C &E) -> TSVGLength & { return E.StartOffset(); }),
    PublishedValue<C>(QStringLiteral("Spacing"), tkEnumeration, QStringLiteral("TSVGTextPathSpacing"), &C::Spacing,
                      &C::SetSpacing),
  });
  return Table;
}

const TSVGPropertiesRegistration Text(TSVGText::ClassInfo(), &CustomTextProperties);
const TSVGPropertiesRegistration TextSpan(TSVGTextSpan::ClassInfo(), &CustomTextProperties);
const TSVGPropertiesRegistration TextRef(TSVGTextRef::ClassInfo(), &TextRefProperties);
const TSVGPropertiesRegistration TextPath(TSVGTextPath::ClassInfo(), &TextPathProperties);

} // namespace

} // namespace vx
