#include "platform/rtl/VXStringList.h"
#include "values/VXSVGPaint.h"
#include "values/VXSVGPropertiesSet.h"

#include <gtest/gtest.h>

using namespace vx;

TEST(StylePropertiesSet, TextRoundTrip)
{
  struct Case { TSVGStyleProperties Set; const char *Text; };
  const Case Cases[] = {
    {{}, ""},
    {{ipFill, ipStroke}, "ipFill, ipStroke"},
    {{ipWritingMode, ipAlignmentBaseline}, "ipAlignmentBaseline, ipWritingMode"},
    {{ipStrokeDasharray, ipStrokeDashOffset, ipGlyphOrientationVertical},
     "ipGlyphOrientationVertical, ipStrokeDasharray, ipStrokeDashOffset"},
  };
  for (const Case &C : Cases) {
    EXPECT_EQ(TSVGStylePropertiesSet::ToString(C.Set), QString::fromLatin1(C.Text));
    TSVGStylePropertiesSet Set;
    Set.FromString(QString::fromLatin1(C.Text));
    EXPECT_EQ(Set.Value(), C.Set) << C.Text;
  }
  TSVGStylePropertiesSet All;
  for (int I = ipNone + 1; I < SVGStylePropertyCount; ++I)
    All.SetSet(I, true);
  TSVGStylePropertiesSet Copy;
  Copy.FromString(All.ToString());
  EXPECT_EQ(Copy.Value(), All.Value()) << "every name reads back";

  TSVGStylePropertiesSet Named;
  Named.SetStrokeDashOffset(true);
  Named.SetFill(true);
  Named.SetFill(false);
  Named.SetWritingMode(true);
  EXPECT_EQ(Named.ToString(), QStringLiteral("ipStrokeDashOffset, ipWritingMode")) << "a flag is its own property";
  EXPECT_TRUE(Named.StrokeDashOffset());
  EXPECT_FALSE(Named.StrokeDasharray());
}

TEST(StylePropertiesSet, FromStringIsExactAndDropsUnknownNames)
{
  struct Case { const char *Text; TSVGStyleProperties Set; };
  const Case Cases[] = {
    {"bogus", {}},
    {"ipNone", {}},
    {" ipFill ,, ipfill, fill, ipStroke", {ipFill, ipStroke}},
    {"ipFont,ipFontFamily", {ipFont, ipFontFamily}},
  };
  for (const Case &C : Cases) {
    TSVGStylePropertiesSet Set;
    Set.SetValue({ipOpacity});
    Set.FromString(QString::fromLatin1(C.Text));
    EXPECT_EQ(Set.Value(), C.Set) << C.Text;
  }
}

TEST(StylePropertiesSet, NotifiesOnlyRealChanges)
{
  TSVGStylePropertiesSet Set;
  int Changes = 0;
  Set.OnChange = [&Changes](TObject *) { ++Changes; };
  Set.SetSet(ipFill, true);
  Set.SetSet(ipFill, true);
  Set.SetSet(64, true);
  Set.SetSet(-1, true);
  EXPECT_EQ(Changes, 1);
  EXPECT_TRUE(Set.GetSet(ipFill));
  EXPECT_FALSE(Set.GetSet(64));
  EXPECT_FALSE(Set.GetSet(200));
  Set.SetValue({ipFill});
  EXPECT_EQ(Changes, 1);
  TSVGStylePropertiesSet Other;
  Other.Assign(&Set);
  EXPECT_EQ(Other.Value(), TSVGStyleProperties(ipFill));
  TStringList Foreign;
  EXPECT_THROW(Set.Assign(&Foreign), EConvertError);
}

namespace {

QString Q(const char *Text)
{
  return QString::fromUtf8(Text);
}

// An owner that reports the properties of Inherited as inherited.
TSVGIsInheritedEvent InheritedFrom(TSVGStyleProperties &Inherited)
{
  return [&Inherited](TObject *, TSVGStyleProperty Property, bool &IsInherited) {
    IsInherited = Inherited.Contains(Property);
  };
}

} // namespace

TEST(Brush, OpacityKindAndPaintServer)
{
  TSVGBrush Brush;
  int Changes = 0;
  Brush.OnChange = [&Changes](TObject *) { ++Changes; };
  struct Case { float Value, Stored; };
  for (const Case C : {Case{1.5f, 1}, Case{-1, 0}, Case{0.25f, 0.25f}}) {
    Brush.SetOpacity(C.Value);
    EXPECT_EQ(Brush.GetOpacity(), C.Stored) << C.Value;
  }
  EXPECT_EQ(Changes, 2) << "1.5 clamps to the present 1 and is no change";
  Brush.SetDefaultOpacity(7);
  EXPECT_EQ(Brush.GetDefaultOpacity(), 1.0f);
  EXPECT_EQ(Changes, 2);

  Brush.SetColor(0xFF336699);
  Brush.UpdateColorOpacity();
  EXPECT_EQ(Brush.GetColor(), 0x40336699u) << "0.25 * 255 = 63.75 rounds to 64";

  Brush.SetKind(bkGradient);
  Brush.SetURI(Q("grad"));
  Brush.SetKind(bkBitmap);
  EXPECT_EQ(Brush.GetURI(), Q("grad")) << "paint server kinds keep the id";
  Brush.SetKind(bkNone);
  EXPECT_EQ(Brush.GetURI(), QString());
  Brush.SetURI(Q("grad"));
  Brush.SetKind(bkNone);
  EXPECT_EQ(Brush.GetURI(), Q("grad")) << "no change of kind, nothing forgotten";

  Brush.Clear();
  EXPECT_EQ(Brush.GetColor(), 0xFF000000u);
  EXPECT_EQ(Brush.GetKind(), bkSolid);
  EXPECT_EQ(Brush.GetOpacity(), 1.0f);
  EXPECT_EQ(Brush.GetURI(), QString());

  TSVGBrush Copy(nullptr, bkNone, 0);
  Brush.SetOpacity(0.5f);
  Brush.SetKind(bkGradient);
  Brush.SetURI(Q("g2"));
  Copy.Assign(&Brush);
  EXPECT_EQ(Copy.GetOpacity(), 0.5f);
  EXPECT_EQ(Copy.GetURI(), Q("g2"));
  EXPECT_EQ(Copy.GetKind(), bkGradient);
}

TEST(Brush, StoredValuesLeaveOutWhatIsInherited)
{
  TSVGStyleProperties Inherited;
  TSVGBrush Brush;
  Brush.OnIsInherited = InheritedFrom(Inherited);
  EXPECT_FALSE(Brush.IsColorStored());
  EXPECT_FALSE(Brush.IsOpacityStored());
  Brush.SetColor(0xFFFF0000);
  Brush.SetOpacity(0.5f);
  EXPECT_TRUE(Brush.IsColorStored());
  EXPECT_TRUE(Brush.IsOpacityStored());
  Inherited = {ipFill, ipFillOpacity};
  EXPECT_FALSE(Brush.IsColorStored());
  EXPECT_FALSE(Brush.IsOpacityStored());
  EXPECT_FALSE(Brush.IsKindStored());
  Brush.SetKind(bkNone);
  EXPECT_TRUE(Brush.IsKindStored()) << "the kind is stored whatever is inherited";
}

TEST(Pen, DashArrayText)
{
  struct Case { float Thickness; TVXGPDashStyle Dash; const char *Text; };
  const Case Cases[] = {
    {2, dsSolid, "none"},         {2, dsDash, "6 2"},       {2, dsDot, "2 2"},
    {2, dsDashDot, "6 2 2 2"},    {1.5f, dsDashDotDot, "4.5 1.5 1.5 1.5 1.5 1.5"},
    {0.333f, dsDash, "1 0.33"},
  };
  for (const Case &C : Cases) {
    TSVGPen Pen;
    Pen.SetThickness(C.Thickness);
    Pen.SetDash(C.Dash);
    EXPECT_EQ(Pen.GetDashArray(), Q(C.Text)) << C.Text;
  }
}

TEST(Pen, CustomDashArray)
{
  struct Case { const char *Text; TVXGPDashStyle Dash; const char *Printed; };
  // Each case starts from a dotted pen.
  const Case Cases[] = {
    {"5 2", dsCustom, "5 2"},
    {"5,2.5 1", dsCustom, "5 2.5 1 5 2.5 1"},
    {"2mm 1 3", dsCustom, "7.56mm 1 3 7.56 1 3"},   // pixels with the written unit, doubled half plain
    {"50%", dsCustom, "0.5% 0.5"},
    {"", dsSolid, "none"},
    {"none", dsSolid, "none"},
    {" , ", dsSolid, "none"},
    {"5 0", dsDot, "none"},                    // refused: the pen keeps its dash state
  };
  for (const Case &C : Cases) {
    TSVGPen Pen;
    Pen.SetDash(dsDot);
    Pen.SetCustomDashArray(Q(C.Text));
    EXPECT_EQ(Pen.GetDash(), C.Dash) << C.Text;
    EXPECT_EQ(Pen.GetCustomDashArray(), Q(C.Printed)) << C.Text;
  }
  // Plain numbers read back as they were printed.
  TSVGPen Pen;
  Pen.SetCustomDashArray(Q("3 1.25 0.5 7"));
  TSVGPen Copy;
  Copy.SetCustomDashArray(Pen.GetCustomDashArray());
  EXPECT_EQ(Copy.GetDashPattern(), Pen.GetDashPattern());
  EXPECT_TRUE(Copy.IsCustomDashArrayStored());
  EXPECT_FALSE(TSVGPen().IsCustomDashArrayStored());
}

TEST(Pen, DashOffsetUnitsAndCopies)
{
  TSVGPen Pen;
  int Changes = 0;
  Pen.OnChange = [&Changes](TObject *) { ++Changes; };
  Pen.GetSVGDashOffset()->SetRaw(3);
  EXPECT_EQ(Changes, 1) << "the offset's changes are the pen's";
  Pen.SetCustomDashArray(Q("4 2"));
  EXPECT_EQ(Pen.GetDashOffset(), 3.0f);

  Pen.OnUnitFactors = [](TObject *, TSVGUnitFactors &Factors) { Factors[suMillimeters] = 10; };
  Pen.SetCustomDashArray(Q("1mm"));
  EXPECT_EQ(Pen.GetDashPattern(), (std::vector<float>{10, 10}));

  Pen.SetURI(Q("p"));
  Pen.SetKind(bkGradient);
  Pen.SetOpacity(0.5f);
  Pen.SetThicknessPreferredUnit(suPoints);
  TSVGPen Copy;
  Copy.Assign(&Pen);
  EXPECT_EQ(Copy.GetURI(), Q("p"));
  EXPECT_EQ(Copy.GetOpacity(), 0.5f);
  EXPECT_EQ(Copy.GetSVGDashOffset()->Raw(), 3.0f);
  EXPECT_EQ(Copy.GetThicknessPreferredUnit(), suPoints);
  EXPECT_EQ(Copy.GetDashArrayPreferredUnits(), TSVGUnits{suMillimeters});
  EXPECT_EQ(Copy.GetCustomDashArray(), Pen.GetCustomDashArray());

  Pen.Clear();
  EXPECT_EQ(Pen.GetKind(), bkNone);
  EXPECT_EQ(Pen.GetDash(), dsSolid);
  EXPECT_EQ(Pen.GetMiterLimit(), 4.0f);
  EXPECT_EQ(Pen.GetSVGDashOffset()->Raw(), 0.0f);
  EXPECT_EQ(Pen.GetURI(), QString());
  EXPECT_TRUE(Pen.GetDashArrayPreferredUnits().empty());
}

TEST(Pen, StoredValuesLeaveOutWhatIsInherited)
{
  TSVGStyleProperties Inherited;
  TSVGPen Pen;
  Pen.OnIsInherited = InheritedFrom(Inherited);
  EXPECT_EQ(Pen.GetMiterLimit(), 4.0f);
  EXPECT_FALSE(Pen.IsMiterLimitStored() || Pen.IsThicknessStored() || Pen.IsStartCapStored() ||
               Pen.IsJoinStored() || Pen.IsDashStored() || Pen.IsSVGDashOffsetStored());
  Pen.SetMiterLimit(10);
  Pen.SetThickness(2);
  Pen.SetStartCap(lcRound);
  Pen.SetEndCap(lcRound);
  Pen.SetJoin(ljBevel);
  Pen.SetCustomDashArray(Q("1 1"));
  Pen.GetSVGDashOffset()->SetRaw(1);
  EXPECT_TRUE(Pen.IsMiterLimitStored() && Pen.IsThicknessStored() && Pen.IsStartCapStored() &&
              Pen.IsEndCapStored() && Pen.IsJoinStored() && Pen.IsDashStored() && Pen.IsSVGDashOffsetStored());
  Inherited = {ipStrokeMiterLimit, ipStrokeWidth, ipStrokeLinecap, ipStrokeLineJoin, ipStrokeDasharray,
               ipStrokeDashOffset};
  EXPECT_FALSE(Pen.IsMiterLimitStored() || Pen.IsThicknessStored() || Pen.IsStartCapStored() ||
               Pen.IsEndCapStored() || Pen.IsJoinStored() || Pen.IsDashStored() || Pen.IsSVGDashOffsetStored());
  EXPECT_TRUE(Pen.IsCustomDashArrayStored()) << "the custom list does not ask";
}

TEST(Font, WeightSetsTheBoldBit)
{
  struct Case { TSVGFontWeight Weight; bool Bold; };
  const Case Cases[] = {
    {fwNormal, false}, {fwLighter, false}, {fw100, false}, {fw400, false}, {fw500, false},
    {fwBold, true},    {fwBolder, true},   {fw600, true},  {fw700, true},  {fw900, true},
  };
  for (const Case &C : Cases)
    for (bool BoldBefore : {false, true}) {
      TSVGFont Font;
      Font.SetWeight(fwNone);
      Font.SetStyle(BoldBefore ? TVXGPFontStyles{fsBold, fsItalic} : TVXGPFontStyles{fsItalic});
      Font.SetWeight(C.Weight);
      EXPECT_EQ(Font.GetStyle().Contains(fsBold), C.Bold) << int(C.Weight);
      EXPECT_TRUE(Font.GetStyle().Contains(fsItalic));
    }
  TSVGFont Font;
  Font.SetStyle({fsBold});
  Font.SetWeight(fwNone);
  EXPECT_TRUE(Font.GetStyle().Contains(fsBold)) << "fwNone leaves the bit";
  Font.SetStyle({});
  Font.SetWeight(fwNone);
  EXPECT_FALSE(Font.GetStyle().Contains(fsBold)) << "an equal weight changes nothing";
}

TEST(Font, FamiliesPickTheName)
{
  // Whether the font database lists the generic names as families differs between machines.
  const auto GenericOr = [](const char *Generic, const char *Otherwise) {
    return TVXGPFont::IsFontFamilyAvailable(Q(Generic)) ? Generic : Otherwise;
  };
  struct Case { QStringList Families; const char *Name; };
  // Each case starts from the name "Start".
  const Case Cases[] = {
    {{"NoSuchFont"}, "Start"},
    {{"DejaVu Sans"}, "DejaVu Sans"},
    {{"DejaVu Sans", "Liberation Serif"}, "Liberation Serif"},                 // the last available wins
    {{"DejaVu Sans", "serif", "Liberation Serif"}, GenericOr("serif", "DejaVu Sans")},  // up to a generic word
    {{"DejaVu Sans", "MONOSPACE", "Liberation Serif"}, GenericOr("MONOSPACE", "DejaVu Sans")},
    {{"DejaVu Sans", "cursive", "NoSuchFont", "Liberation Serif"}, "Liberation Serif"},
    {{"dejavu sans"}, "dejavu sans"},
  };
  for (const Case &C : Cases) {
    TSVGFont Font;
    Font.SetName(Q("Start"));
    TStringList Families(C.Families);
    Font.SetFamilies(Families);
    EXPECT_EQ(Font.GetName(), Q(C.Name)) << qPrintable(C.Families.join(u',')) << " gave " << qPrintable(Font.GetName());
  }
}

TEST(Font, FamiliesTextDecorationAndClear)
{
  TSVGFont Font;
  TStringList Families(QStringList{Q("Times New Roman"), Q("serif")});
  Font.SetFamilies(Families);
  EXPECT_EQ(Font.FamiliesToString(), Q("'Times New Roman', serif"));

  Font.SetExtendStyles({fsBlink});
  EXPECT_FALSE(Font.IsDecorated());
  Font.SetExtendStyles({fsOverline});
  EXPECT_TRUE(Font.IsDecorated());
  Font.SetExtendStyles({});
  Font.SetStyle({fsStrikeOut});
  EXPECT_TRUE(Font.IsDecorated());

  Font.SetName(Q("DejaVu Sans"));
  Font.SetWeight(fw700);
  Font.SetSize(30);
  Font.SetFontVariant(fvSmallCaps);
  Font.Clear();
  EXPECT_EQ(Font.GetName(), Q("DejaVu Sans")) << "Clear keeps the name";
  EXPECT_EQ(Font.GetWeight(), fw700) << "and the weight";
  EXPECT_EQ(Font.GetSize(), 11.0f);
  EXPECT_TRUE(Font.GetStyle().Empty());
  EXPECT_EQ(Font.GetFontVariant(), fvNormal);
  EXPECT_EQ(Font.Families().Count(), 0);

  TVXGPFont Plain;
  Plain.SetStyle({fsBold});
  Font.Assign(&Plain);
  EXPECT_EQ(Font.GetWeight(), fwBold) << "a canvas font brings its weight through the bold bit";
  Plain.SetStyle({});
  Font.Assign(&Plain);
  EXPECT_EQ(Font.GetWeight(), fwNormal);

  TSVGFont Copy;
  Font.SetWeight(fw300);
  Font.SetFamilies(Families);
  Copy.Assign(&Font);
  EXPECT_EQ(Copy.GetWeight(), fw300);
  EXPECT_EQ(Copy.FamiliesToString(), Font.FamiliesToString());
  EXPECT_EQ(Copy.GetName(), Font.GetName());
}

TEST(Font, StoredValuesLeaveOutWhatIsInherited)
{
  TSVGStyleProperties Inherited;
  TSVGFont Font;
  Font.OnIsInherited = InheritedFrom(Inherited);
  EXPECT_FALSE(Font.IsNameStored() || Font.IsSizeStored() || Font.IsStyleStored() || Font.IsWeightStored() ||
               Font.IsFontVariantStored());
  Font.SetName(Q("DejaVu Sans"));
  Font.SetSize(12);
  Font.SetStyle({fsItalic});
  Font.SetWeight(fwBold);
  Font.SetFontVariant(fvSmallCaps);
  EXPECT_TRUE(Font.IsNameStored() && Font.IsSizeStored() && Font.IsStyleStored() && Font.IsWeightStored() &&
              Font.IsFontVariantStored());
  Inherited = {ipFontFamily, ipFontSize, ipFontStyle, ipFontWeight, ipFontVariant};
  EXPECT_FALSE(Font.IsNameStored() || Font.IsSizeStored() || Font.IsWeightStored() || Font.IsFontVariantStored());
  EXPECT_TRUE(Font.IsStyleStored()) << "the style also carries the decoration, which is not inherited";
  Inherited.Include(ipTextDecoration);
  EXPECT_FALSE(Font.IsStyleStored());
}
