// The binary component stream of the tree: the published properties of the element, graphic
// element, view box and document classes, the properties they define (children, the two style
// property sets, the view box flag), and the document's binary save and load.
//
// A load sets the fields that a finished XML load left behind, resolved styles included, so it
// neither parses XML nor applies style sheets. Presentation rows therefore read and write the
// element's own fields (never the inherited value a getter resolves), are written only for the
// properties the element does not inherit, and set the field without a change notification:
// the update that the reader keeps open around each element sends one change at its end.
#include "platform/common/VXFiler.h"
#include "platform/rtl/VXPropInfo.h"
#include "platform/rtl/VXSysUtils.h"
#include "tree/VXSVGCustomViewBox.h"
#include "tree/VXSVGDocument.h"
#include "tree/VXSVGGraphicElement.h"
#include "tree/VXSVGPropertyRegistry.h"

#include <QFile>

#include <unordered_map>

namespace vx {

namespace {

const QString Boolean = QStringLiteral("Boolean");
const QString String = QStringLiteral("string");
const QString Single = QStringLiteral("Single");

std::unordered_map<const TSVGElementClass *, const TPropertyTable &(*)()> &PropertyRegistry()
{
  static std::unordered_map<const TSVGElementClass *, const TPropertyTable &(*)()> Registry;
  return Registry;
}

template <typename C>
std::function<bool(const C &)> Predicate(std::function<bool(const C &)> Function)
{
  return Function;
}

// A row over field Field of C, stored when it differs from Default.
template <typename C, typename V>
TPropInfo FieldRow(const QString &Name, TTypeKind Kind, V C::*Field, V Default,
                   std::function<bool(const C &)> AlsoWhen = {})
{
  return PublishedValue<C>(
    Name, Kind, QString(), [Field](const C &E) { return E.*Field; }, [Field](C &E, V Value) { E.*Field = Value; },
    Predicate<C>([Field, Default, AlsoWhen](const C &E) {
      return !(E.*Field == Default) && (!AlsoWhen || AlsoWhen(E));
    }));
}

// A presentation field: stored when the element has its own value that differs from Default.
template <typename V>
TPropInfo PresentationRow(const QString &Name, TTypeKind Kind, V TSVGGraphicElement::*Field,
                          TSVGStyleProperty Property, V Default)
{
  return FieldRow<TSVGGraphicElement, V>(Name, Kind, Field, Default, [Property](const TSVGGraphicElement &E) {
    return !E.Inherits().Value().Contains(Property);
  });
}

QString RectToText(const TRectF &Rect)
{
  return QStringList{FloatToStr(Rect.Left), FloatToStr(Rect.Top), FloatToStr(Rect.Right), FloatToStr(Rect.Bottom)}
    .join(QLatin1Char(' '));
}

TRectF RectFromText(const QString &Text)
{
  const QStringList Parts = Text.split(QLatin1Char(' '));
  if (Parts.size() != 4)
    throw EReadError(QStringLiteral("Invalid property value %1").arg(Text.left(40)));
  float Values[4];
  for (int I = 0; I < 4; ++I)
    Values[I] = float(StrToFloat(Parts[I]));
  return TRectF{Values[0], Values[1], Values[2], Values[3]};
}

} // namespace

const TPropertyTable *RegisteredSVGProperties(const TSVGElementClass &Class)
{
  const auto &Registry = PropertyRegistry();
  const auto It = Registry.find(&Class);
  return It == Registry.end() ? nullptr : &It->second();
}

TSVGPropertiesRegistration::TSVGPropertiesRegistration(const TSVGElementClass &Class, const TPropertyTable &(*Table)())
{
  PropertyRegistry()[&Class] = Table;
}

// --- TSVGElement ---

const TPropertyTable &TSVGElement::Properties()
{
  using C = TSVGElement;
  auto List = [](const QString &Name, TStringList C::*Field) {
    return PublishedObject<C>(Name, QStringLiteral("TStrings"), [Field](C &E) -> TStringList & { return E.*Field; },
                              Predicate<C>([Field](const C &E) { return !(E.*Field).IsEmpty(); }));
  };
  static const TPropertyTable Table(nullptr, {
    PublishedValue<C>(QStringLiteral("ID"), tkString, String, &C::ID, &C::SetID,
                      Predicate<C>([](const C &E) { return !E.ID().isEmpty(); })),
    PublishedValue<C>(QStringLiteral("Enabled"), tkBoolean, Boolean, &C::Enabled, &C::SetEnabled,
                      StoredUnless<C>(&C::Enabled, true)),
    PublishedValue<C>(QStringLiteral("Title"), tkString, String, &C::Title, &C::SetTitle,
                      Predicate<C>([](const C &E) { return !E.Title().isEmpty(); })),
    List(QStringLiteral("Description"), &C::FDescription),
    List(QStringLiteral("Classes"), &C::FClasses),
    PublishedValue<C>(QStringLiteral("Language"), tkString, String, &C::Language, &C::SetLanguage,
                      Predicate<C>([](const C &E) { return !E.Language().isEmpty(); })),
    List(QStringLiteral("RequiredExtensions"), &C::FRequiredExtensions),
    List(QStringLiteral("RequiredFeatures"), &C::FRequiredFeatures),
    List(QStringLiteral("SystemLanguages"), &C::FSystemLanguages),
    PublishedValue<C>(QStringLiteral("Tag"), tkInteger, QStringLiteral("NativeInt"), &C::Tag, &C::SetTag,
                      StoredUnless<C>(&C::Tag, std::intptr_t(0))),
    // Graphic elements start with every bit but ipNone (what their reset gives).
    FieldRow<C, TSVGStyleProperties>(QStringLiteral("Attributes"), tkSet, &C::FAttributes,
                                     TSVGStyleProperties::FromBits(0xffffffffffffe)),
  });
  return Table;
}

const TPropertyTable *TSVGElement::PublishedProperties() const
{
  const TPropertyTable *Registered = RegisteredSVGProperties(GetClass());
  return Registered ? Registered : &Properties();
}

void TSVGElement::DefineProperties(TFiler &Filer)
{
  Filer.DefineProperty(
    QStringLiteral("ChildItems"), [this](TReader &Reader) { ReadItems(Reader); },
    [this](TWriter &Writer) { WriteItems(Writer); }, FItems.Count() > 0);
}

void TSVGElement::WriteItems(TWriter &Writer)
{
  Writer.WriteValue(vaCollection);
  for (int I = 0; I < FItems.Count(); ++I) {
    TSVGElement *Child = FItems[I];
    Writer.WriteListBegin();
    Writer.WritePropName(QStringLiteral("ElementClass"));
    Writer.WriteString(Child->GetClass().Name);
    Child->IncludeState(esWriting);
    try {
      Writer.WriteProperties(*Child);
    } catch (...) {
      Child->ExcludeState(esWriting);
      throw;
    }
    Child->ExcludeState(esWriting);
    Writer.WriteListEnd();
  }
  Writer.WriteListEnd();
}

void TSVGElement::ReadItems(TReader &Reader)
{
  TReader::TNestingGuard Nesting(Reader);
  FItems.Clear();
  Reader.CheckValue(vaCollection);
  auto *Document = dynamic_cast<TSVGDocument *>(this);
  TSVGDocument *ChildOwner = Document ? Document : GetOwner();
  while (!Reader.EndOfList()) {
    Reader.ReadListBegin();
    Reader.ReadStr();
    const TSVGElementClass &Class = FindSVGClass(Reader.ReadString());
    TSVGElement &Child = AddOwnedChild(std::unique_ptr<TSVGElement>(Class.Create(ChildOwner)));
    Child.IncludeState(esReading);
    {
      TSVGUpdateGuard Update(Child);
      try {
        while (!Reader.EndOfList())
          Reader.ReadProperty(Child);
      } catch (...) {
        Child.ExcludeState(esReading);
        throw;
      }
      Child.ExcludeState(esReading);
    }
    Reader.ReadListEnd();
  }
  Reader.ReadListEnd();
}

// --- TSVGGraphicElement ---

const TPropertyTable &TSVGGraphicElement::Properties()
{
  using C = TSVGGraphicElement;
  using E = TSVGGraphicElement;
  auto Length = [](const QString &Name, auto Field) {
    return PublishedObject<C>(Name, QStringLiteral("TSVGLength"),
                              [Field](C &Element) -> TSVGLength & { return *(Element.*Field); });
  };
  static const TPropertyTable Table(&TSVGElement::Properties(), {
    PresentationRow(QStringLiteral("Visible"), tkBoolean, &E::FVisible, ipVisibility, true),
    PresentationRow(QStringLiteral("Color"), tkInteger, &E::FColor, ipColor, TVXGPColor(0)),
    PresentationRow(QStringLiteral("ColorInterpolation"), tkEnumeration, &E::FColorInterpolation,
                    ipColorInterpolation, sciSRGB),
    PresentationRow(QStringLiteral("ColorRendering"), tkEnumeration, &E::FColorRendering, ipColorRendering, clrnAuto),
    PresentationRow(QStringLiteral("Cursor"), tkInteger, &E::FCursor, ipCursor, TCursor(0)),
    PresentationRow(QStringLiteral("ClipRule"), tkEnumeration, &E::FClipRule, ipClipRule, frNonZero),
    PresentationRow(QStringLiteral("FillRule"), tkEnumeration, &E::FFillRule, ipFillRule, frNonZero),
    PresentationRow(QStringLiteral("AlignmentBaseline"), tkEnumeration, &E::FAlignmentBaseline, ipAlignmentBaseline,
                    TSVGAlignmentBaseline(1)),
    PresentationRow(QStringLiteral("DominantBaseline"), tkEnumeration, &E::FDominantBaseline, ipDominantBaseline,
                    TSVGDominantBaseline(1)),
    PresentationRow(QStringLiteral("Direction"), tkEnumeration, &E::FDirection, ipDirection, TSVGDirection(1)),
    PresentationRow(QStringLiteral("GlyphOrientationHorizontal"), tkEnumeration, &E::FGlyphOrientationHorizontal,
                    ipGlyphOrientationHorizontal, TSVGGlyphOrientationHorizontal(1)),
    PresentationRow(QStringLiteral("GlyphOrientationVertical"), tkEnumeration, &E::FGlyphOrientationVertical,
                    ipGlyphOrientationVertical, TSVGGlyphOrientationVertical(1)),
    PresentationRow(QStringLiteral("WritingMode"), tkEnumeration, &E::FWritingMode, ipWritingMode, TSVGWritingMode(1)),
    PresentationRow(QStringLiteral("Opacity"), tkFloat, &E::FOpacity, ipOpacity, 1.0f),
    PresentationRow(QStringLiteral("ShapeRendering"), tkEnumeration, &E::FShapeRendering, ipShapeRendering, srnAuto),
    PresentationRow(QStringLiteral("TextAlign"), tkEnumeration, &E::FTextAlign, ipTextAnchor, TSVGTextAlign(1)),
    PresentationRow(QStringLiteral("TextRendering"), tkEnumeration, &E::FTextRendering, ipTextRendering, txrnAuto),
    PresentationRow(QStringLiteral("VectorEffect"), tkEnumeration, &E::FVectorEffect, ipVectorEffect, veNone),
    PresentationRow(QStringLiteral("Overflow"), tkBoolean, &E::FOverflow, ipOverflow, true),
    PresentationRow(QStringLiteral("ClipURI"), tkString, &E::FClipURI, ipClipPath, QString()),
    PresentationRow(QStringLiteral("MarkerStartURI"), tkString, &E::FMarkerStartURI, ipMarkerStart, QString()),
    PresentationRow(QStringLiteral("MarkerMidURI"), tkString, &E::FMarkerMidURI, ipMarkerMid, QString()),
    PresentationRow(QStringLiteral("MarkerEndURI"), tkString, &E::FMarkerEndURI, ipMarkerEnd, QString()),
    PublishedValue<C>(
      QStringLiteral("ClipRect"), tkString, String, [](const C &Element) { return RectToText(Element.FClipRect); },
      [](C &Element, const QString &Text) { Element.FClipRect = RectFromText(Text); },
      Predicate<C>([](const C &Element) { return !(Element.FClipRect == TRectF{}); })),
    FieldRow<C, QString>(QStringLiteral("MaskURI"), tkString, &E::FMaskURI, QString()),
    FieldRow<C, TVXGPBlendMode>(QStringLiteral("BlendMode"), tkEnumeration, &E::FBlendMode, bmNormal),
    FieldRow<C, bool>(QStringLiteral("Isolated"), tkBoolean, &E::FIsolated, false),
    FieldRow<C, bool>(QStringLiteral("Displayed"), tkBoolean, &E::FDisplayed, true),
    FieldRow<C, TSVGPaintKeyword>(QStringLiteral("FillKeyword"), tkEnumeration, &E::FFillKeyword, pkAbsent),
    FieldRow<C, TSVGPaintKeyword>(QStringLiteral("StrokeKeyword"), tkEnumeration, &E::FStrokeKeyword, pkAbsent),
    FieldRow<C, TSVGUnit>(QStringLiteral("OpacityPreferredUnit"), tkEnumeration, &E::FOpacityPreferredUnit, suNone),
    FieldRow<C, bool>(QStringLiteral("ParentPreferredStyles"), tkBoolean, &E::FParentPreferredStyles, true),
    PublishedValue<C>(
      QStringLiteral("Style"), tkString, String, [](const C &Element) { return Element.FStyle.Text(); },
      [](C &Element, const QString &Text) { Element.FStyle.SetText(Text); },
      Predicate<C>([](const C &Element) { return Element.FStyle.Count() > 0; })),
    PublishedValue<C>(QStringLiteral("TransformMatrix"), tkString, String, &C::GetTransformMatrix,
                      [](C &Element, const QString &Text) { Element.FMatrix = Element.LoadTransform(Text); },
                      Predicate<C>([](const C &Element) {
                        return !VXMatrixEquals(Element.FMatrix, VXIdentityMatrix, 0.00001f);
                      })),
    Length(QStringLiteral("Xu"), &E::FX),
    Length(QStringLiteral("Yu"), &E::FY),
    Length(QStringLiteral("WidthU"), &E::FWidth),
    Length(QStringLiteral("HeightU"), &E::FHeight),
    Length(QStringLiteral("LetterSpacing"), &E::FLetterSpacing),
    Length(QStringLiteral("Kerning"), &E::FKerning),
    Length(QStringLiteral("WordSpacing"), &E::FWordSpacing),
    Length(QStringLiteral("BaselineShift"), &E::FBaselineShift),
    PublishedObject<C>(QStringLiteral("Brush"), QStringLiteral("TSVGBrush"),
                       [](C &Element) -> TSVGBrush & { return *Element.FBrush; }),
    PublishedObject<C>(QStringLiteral("Pen"), QStringLiteral("TSVGPen"),
                       [](C &Element) -> TSVGPen & { return *Element.FPen; }),
    PublishedObject<C>(QStringLiteral("Font"), QStringLiteral("TSVGFont"),
                       [](C &Element) -> TSVGFont & { return *Element.FFont; }),
  });
  return Table;
}

const TPropertyTable *TSVGGraphicElement::PublishedProperties() const
{
  const TPropertyTable *Registered = RegisteredSVGProperties(GetClass());
  return Registered ? Registered : &Properties();
}

void TSVGGraphicElement::DefineProperties(TFiler &Filer)
{
  Filer.DefineProperty(
    QStringLiteral("InheritedProperties"), [this](TReader &Reader) { ReadStyleProperties(Reader, FInherits); },
    [this](TWriter &Writer) { WriteStyleProperties(Writer, FInherits); },
    FInherits.Value() != TSVGStyleProperties::FromBits(0xeffe4fffce7e1));
  Filer.DefineProperty(
    QStringLiteral("PreferredStyleProperties"),
    [this](TReader &Reader) { ReadStyleProperties(Reader, FPreferredStyles); },
    [this](TWriter &Writer) { WriteStyleProperties(Writer, FPreferredStyles); }, FPreferredStyles.Value().Bits() != 0);
  TSVGElement::DefineProperties(Filer);
}

void TSVGGraphicElement::WriteStyleProperties(TWriter &Writer, const TSVGStylePropertiesSet &Set) const
{
  if (!GetOptions().Contains(soExportOptimizedBinaryStyleProperties)) {
    Writer.WriteString(Set.ToString());
    return;
  }
  Writer.WriteListBegin();
  for (int Property = 0; Property < SVGStylePropertyCount; ++Property)
    if (Set.Value().Contains(TSVGStyleProperty(Property)))
      Writer.WriteInteger(Property);
  Writer.WriteListEnd();
}

void TSVGGraphicElement::ReadStyleProperties(TReader &Reader, TSVGStylePropertiesSet &Set)
{
  if (Reader.NextValue() != vaList) {
    Set.FromString(Reader.ReadString());
    return;
  }
  Reader.ReadListBegin();
  TSVGStyleProperties Value;
  while (!Reader.EndOfList()) {
    const std::int64_t Property = Reader.ReadInteger();
    if (Property < 0 || Property >= SVGStylePropertyCount)
      throw EReadError(QStringLiteral("Invalid property value %1").arg(Property));
    Value.Include(TSVGStyleProperty(Property));
  }
  Set.SetValue(Value);
  Reader.ReadListEnd();
}

// --- TSVGCustomViewBox ---

const TPropertyTable &TSVGCustomViewBox::Properties()
{
  using C = TSVGCustomViewBox;
  static const TPropertyTable Table(&TSVGGraphicElement::Properties(), {
    PublishedObject<C>(QStringLiteral("AspectRatio"), QStringLiteral("TSVGPreserveAspectRatio"),
                       [](C &Box) -> TSVGPreserveAspectRatio & { return Box.AspectRatio(); }),
    PublishedObject<C>(QStringLiteral("ViewBox"), QStringLiteral("TSVGViewBox"),
                       [](C &Box) -> TSVGViewBox & { return Box.ViewBox(); },
                       Predicate<C>([](const C &Box) { return Box.IsViewBoxSpecified(); })),
  });
  return Table;
}

const TPropertyTable *TSVGCustomViewBox::PublishedProperties() const
{
  const TPropertyTable *Registered = RegisteredSVGProperties(GetClass());
  return Registered ? Registered : &Properties();
}

void TSVGCustomViewBox::DefineProperties(TFiler &Filer)
{
  Filer.DefineProperty(
    QStringLiteral("ViewBoxSpecified"), [this](TReader &Reader) { FViewBox.SetSpecified(Reader.ReadBoolean()); },
    [this](TWriter &Writer) { Writer.WriteBoolean(FViewBox.Specified()); }, true);
  TSVGGraphicElement::DefineProperties(Filer);
}

// --- TSVGDocument ---

const TPropertyTable &TSVGDocument::Properties()
{
  using C = TSVGDocument;
  static const TPropertyTable Table(&TSVGCustomViewBox::Properties(), {
    PublishedValue<C>(QStringLiteral("DPI"), tkInteger, QStringLiteral("Integer"), &C::DPI, &C::SetDPI,
                      StoredUnless<C>(&C::DPI, 96)),
    PublishedValue<C>(QStringLiteral("DefaultColorInterpolation"), tkEnumeration,
                      QStringLiteral("TSVGColorInterpolation"), &C::DefaultColorInterpolation,
                      &C::SetDefaultColorInterpolation, StoredUnless<C>(&C::DefaultColorInterpolation, sciSRGB)),
    PublishedValue<C>(QStringLiteral("DefaultColorRendering"), tkEnumeration, QStringLiteral("TSVGColorRendering"),
                      &C::DefaultColorRendering, &C::SetDefaultColorRendering,
                      StoredUnless<C>(&C::DefaultColorRendering, clrnAuto)),
    PublishedValue<C>(QStringLiteral("DefaultShapeRendering"), tkEnumeration, QStringLiteral("TSVGShapeRendering"),
                      &C::DefaultShapeRendering, &C::SetDefaultShapeRendering),
    PublishedValue<C>(QStringLiteral("DefaultTextRendering"), tkEnumeration, QStringLiteral("TSVGTextRendering"),
                      &C::DefaultTextRendering, &C::SetDefaultTextRendering),
    PublishedValue<C>(QStringLiteral("FormatStr"), tkString, String, &C::FormatStr, &C::SetFormatStr,
                      StoredUnless<C>(&C::FormatStr, QStringLiteral("0.###"))),
    PublishedValue<C>(QStringLiteral("Options"), tkSet, QStringLiteral("TSVGOptions"), &C::GetOptions,
                      &C::SetOptions),
    PublishedValue<C>(QStringLiteral("PreferredLanguage"), tkString, String, &C::PreferredLanguage,
                      &C::SetPreferredLanguage),
    // Images name their files relative to the picture the tree was loaded from, wherever the
    // stream itself is kept.
    PublishedValue<C>(QStringLiteral("FileName"), tkString, String, &C::FileName, &C::SetFileName,
                      Predicate<C>([](const C &D) { return !D.FileName().isEmpty(); })),
  });
  return Table;
}

const TPropertyTable *TSVGDocument::PublishedProperties() const { return &Properties(); }

void TSVGDocument::SaveToBinaryStream(QIODevice &Stream)
{
  TWriter Writer(Stream);
  IncludeState(esWriting);
  try {
    Writer.WriteRootPersistent(*this);
  } catch (...) {
    ExcludeState(esWriting);
    throw;
  }
  ExcludeState(esWriting);
}

void TSVGDocument::SaveToBinaryFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::WriteOnly | QIODevice::Truncate))
    throw EFOpenError(QStringLiteral("Cannot create file \"%1\". %2").arg(FileName, File.errorString()));
  SaveToBinaryStream(File);
}

void TSVGDocument::LoadFromBinaryStream(QIODevice &Stream)
{
  TReader Reader(Stream);
  TSVGUpdateGuard Update(*this);
  Clear();
  IncludeState(esReading);
  try {
    Reader.ReadRootPersistent(*this);
  } catch (...) {
    ExcludeState(esReading);
    // Half a tree is no picture: a stream that fails leaves the document empty.
    Clear();
    throw;
  }
  ExcludeState(esReading);
}

void TSVGDocument::LoadFromBinaryFile(const QString &FileName)
{
  QFile File(FileName);
  if (!File.open(QIODevice::ReadOnly))
    throw EFOpenError(QStringLiteral("Cannot open file \"%1\". %2").arg(FileName, File.errorString()));
  LoadFromBinaryStream(File);
}

} // namespace vx
