#include "text/VXSVGTextBrowserLayout.h"

#include "text/VXSVGText.h"
#include "platform/vectorkit/VXGPPath.h"

#include <algorithm>
#include <cmath>

namespace vx {

namespace {

// The weight of Element from 100 to 900, with bolder and lighter relative to the parent's.
int NumericWeight(const TSVGGraphicElement &Element)
{
  const TSVGGraphicElement *Parent = Element.GetGraphicParent();
  const int ParentWeight = Parent ? NumericWeight(*Parent) : 400;
  if (Parent && Element.Inherits().Value().Contains(ipFontWeight))
    return ParentWeight;
  switch (const_cast<TSVGGraphicElement &>(Element).GetFont().GetWeight()) {
  case fwBold:
    return 700;
  case fwBolder:
    return ParentWeight < 400 ? 400 : ParentWeight < 600 ? 700 : 900;
  case fwLighter:
    return ParentWeight < 600 ? 100 : ParentWeight < 800 ? 400 : 700;
  case fw100:
  case fw200:
  case fw300:
  case fw400:
  case fw500:
  case fw600:
  case fw700:
  case fw800:
  case fw900:
    return 100 * (int(const_cast<TSVGGraphicElement &>(Element).GetFont().GetWeight()) - int(fw100) + 1);
  default:
    return 400;
  }
}

// The family list that Element uses: its own, or that of the nearest ancestor that has one.
QStringList FamiliesOf(const TSVGGraphicElement &Element)
{
  const TSVGGraphicElement *Source = &Element;
  while (Source->GetGraphicParent() && Source->Inherits().Value().Contains(ipFontFamily))
    Source = Source->GetGraphicParent();
  QStringList Result;
  const TStrings &Families = const_cast<TSVGGraphicElement *>(Source)->GetFont().Families();
  for (int I = 0; I < Families.Count(); ++I)
    if (const QString Family = Families[I].trimmed(); !Family.isEmpty())
      Result.append(Family);
  return Result;
}

// The spacing property that holds for Element: browsers inherit letter-spacing, word-spacing and
// kerning, so the nearest element that sets one decides. Nil: the automatic value.
const TSVGStylePropertyAutoLength *InheritedSpacing(const TSVGGraphicElement &Element,
                                                    TSVGStylePropertyAutoLength &(TSVGGraphicElement::*Property)() const)
{
  for (const TSVGGraphicElement *E = &Element; E; E = E->GetGraphicParent())
    if (!(E->*Property)().IsAutomatic())
      return &(E->*Property)();
  return nullptr;
}

// A spacing in user units. A percentage is of the viewport's width; the length keeps it as the
// number written, so its value over that width is a hundred times too large.
float SpacingValue(const TSVGStylePropertyAutoLength &Spacing)
{
  return Spacing.IsPercent() ? Spacing.GetValue() / 100 : Spacing.GetValue();
}

// A text property written on Element or, as browsers inherit it, on its nearest text ancestor.
QString InheritedProperty(const TSVGCustomText &Element, QString TSVGBrowserTextProperties::*Property,
                          const TSVGBrowserTextProperties &(*Of)(const TSVGCustomText &))
{
  for (const TSVGCustomText *E = &Element; E; E = E->TextParent())
    if (const QString &Value = Of(*E).*Property; !Value.isEmpty() && Value != QLatin1String("inherit"))
      return Value;
  return {};
}

// "'wght' 700, 'wdth' 50" into axis settings.
std::vector<std::pair<QByteArray, float>> ParseVariations(const QString &Text)
{
  std::vector<std::pair<QByteArray, float>> Result;
  for (const QString &Item : Text.split(QLatin1Char(','))) {
    const QString Setting = Item.trimmed();
    if (Setting.size() < 7 || (Setting[0] != QLatin1Char('\'') && Setting[0] != QLatin1Char('"')) ||
        Setting[5] != Setting[0])
      continue;
    bool Ok = false;
    const float Value = Setting.mid(6).trimmed().toFloat(&Ok);
    if (Ok)
      Result.emplace_back(Setting.mid(1, 4).toLatin1(), Value);
  }
  return Result;
}

// font-stretch as a percentage of the normal width; 0 when not understood.
int StretchPercent(const QString &Text)
{
  static const std::pair<const char *, int> Keywords[] = {
    {"ultra-condensed", 50}, {"extra-condensed", 62}, {"condensed", 75},      {"semi-condensed", 87},
    {"normal", 100},         {"semi-expanded", 112},  {"expanded", 125},      {"extra-expanded", 150},
    {"ultra-expanded", 200}};
  for (const auto &[Name, Percent] : Keywords)
    if (Text == QLatin1String(Name))
      return Percent;
  if (Text.endsWith(QLatin1Char('%'))) {
    bool Ok = false;
    const double Percent = Text.chopped(1).toDouble(&Ok);
    return Ok ? int(std::lround(Percent)) : 0;
  }
  return 0;
}

double Scale(const TVXFontFace &Face, float Size)
{
  return double(Size) / Face.Metrics().UnitsPerEm;
}

// The downward shift of one baseline keyword, as browsers place it from the font's metrics.
double AlignmentShift(TSVGAlignmentBaseline Alignment, const TVXFontMetrics &M, double Scale)
{
  const double Ascent = M.Ascent * Scale, Descent = M.Descent * Scale;
  switch (Alignment) {
  case abBeforeEdge:
  case abTextBeforeEdge:
    return Ascent;
  case abMiddle:
    return M.XHeight * Scale * 0.5;
  case abCentral:
    return Ascent - (Ascent - Descent) * 0.5;
  case abAfterEdge:
  case abTextAfterEdge:
  case abIdeographic:
    return Descent;
  case abHanging:
    return Ascent * 0.8;
  case abMathematical:
    return Ascent * 0.5;
  default:
    return 0;
  }
}

TSVGAlignmentBaseline DominantAsAlignment(TSVGDominantBaseline Dominant)
{
  switch (Dominant) {
  case dbIdeographic:
    return abIdeographic;
  case dbHanging:
    return abHanging;
  case dbMathematical:
    return abMathematical;
  case dbCentral:
    return abCentral;
  case dbMiddle:
    return abMiddle;
  case dbTextAfterEdge:
    return abTextAfterEdge;
  case dbTextBeforeEdge:
    return abTextBeforeEdge;
  default:
    return abAuto;
  }
}

// Browsers inherit dominant-baseline: the nearest text element that names one decides.
TSVGDominantBaseline InheritedDominantBaseline(const TSVGCustomText &Element)
{
  for (const TSVGCustomText *E = &Element; E; E = E->TextParent())
    if (const TSVGDominantBaseline Value = E->GetDominantBaseline(); Value != dbNone && Value != dbAuto)
      return Value;
  return dbAuto;
}

// Baseline shifts add up from the element through its text ancestors (below the text element).
double BaselineShiftOf(TSVGCustomText &Owner, const TVXFontMetrics &M, double Scale)
{
  double Up = 0;
  for (TSVGCustomText *E = &Owner; E && E->TextParent(); E = E->TextParent()) {
    const TSVGBaselineShiftLength &Shift = E->BaselineShift();
    if (Shift.IsParentValue())
      continue;
    const double Size = E->GetFont().GetSize();
    switch (Shift.GetShift()) {
    case bsSubscript:
      Up -= M.SubscriptOffset * Scale;
      break;
    case bsSuperscript:
      Up += M.SuperscriptOffset * Scale;
      break;
    case bsPercentage:
      Up += Shift.GetPixels() * Size;
      break;
    case bsLength:
      Up += Shift.GetPixels();
      break;
    default:
      break;
    }
  }
  return Up;
}

// Characters that stand upright in vertical text: the scripts and symbols of East Asia.
bool IsUpright(char32_t Ch)
{
  return (Ch >= 0x1100 && Ch <= 0x11FF) || (Ch >= 0x2E80 && Ch <= 0xA4CF) || (Ch >= 0xAC00 && Ch <= 0xD7AF) ||
         (Ch >= 0xF900 && Ch <= 0xFAFF) || (Ch >= 0xFE30 && Ch <= 0xFE4F) || (Ch >= 0xFF00 && Ch <= 0xFFEF) ||
         (Ch >= 0x1F000 && Ch <= 0x1FAFF) || (Ch >= 0x20000 && Ch <= 0x3FFFD);
}

bool IsWordSeparator(char32_t Ch)
{
  return Ch == 0x20 || Ch == 0xA0 || Ch == 0x1361 || Ch == 0x10100 || Ch == 0x10101 || Ch == 0x1039F ||
         Ch == 0x1091F;
}

// Cursive scripts join their letters: spacing between them would break the joins.
bool TakesLetterSpacing(char32_t Ch)
{
  switch (QChar::script(Ch)) {
  case QChar::Script_Arabic:
  case QChar::Script_Syriac:
  case QChar::Script_Nko:
  case QChar::Script_Manichaean:
  case QChar::Script_PsalterPahlavi:
  case QChar::Script_Mandaic:
  case QChar::Script_Mongolian:
  case QChar::Script_PhagsPa:
  case QChar::Script_Devanagari:
  case QChar::Script_Bengali:
  case QChar::Script_Gurmukhi:
  case QChar::Script_Modi:
  case QChar::Script_Sharada:
  case QChar::Script_SylotiNagri:
  case QChar::Script_Tirhuta:
  case QChar::Script_Ogham:
    return false;
  default:
    return true;
  }
}

template <typename TSegment>
QPointF CubicPoint(const TSegment &S, double T)
{
  const double U = 1 - T;
  return U * U * U * S.P0 + 3 * U * U * T * S.P1 + 3 * U * T * T * S.P2 + T * T * T * S.P3;
}

template <typename TSegment>
QPointF CubicTangent(const TSegment &S, double T)
{
  const double U = 1 - T;
  return 3 * U * U * (S.P1 - S.P0) + 6 * U * T * (S.P2 - S.P1) + 3 * T * T * (S.P3 - S.P2);
}

void AppendCode(QString &Text, char32_t Code)
{
  if (Code > 0xFFFF) {
    Text += QChar(QChar::highSurrogate(Code));
    Text += QChar(QChar::lowSurrogate(Code));
  } else {
    Text += QChar(char16_t(Code));
  }
}

} // namespace

TSVGBrowserTextLayout::TSVGBrowserTextLayout(TSVGText &Root) : FRoot(Root)
{
}

bool TSVGBrowserTextLayout::Handles(const TSVGText &Root)
{
  // Vertical text along a path keeps the documented placement.
  if (!Root.IsVertical())
    return true;
  std::vector<const TSVGElement *> Pending{&Root};
  while (!Pending.empty()) {
    const TSVGElement *E = Pending.back();
    Pending.pop_back();
    if (dynamic_cast<const TSVGTextPath *>(E))
      return false;
    for (int I = 0; I < E->Count(); ++I)
      Pending.push_back((*E)[I]);
  }
  return true;
}

void TSVGBrowserTextLayout::Run()
{
  Collect(FRoot, nullptr);
  CollapseWhiteSpace();
  ResolvePositions();
  for (const TRange &R : FRanges)
    if (R.Element->FBrowserProperties.TextLength >= 0)
      FLengthRanges.push_back(R);
  const int Count = int(FChars.size());
  for (int Start = 0; Start < Count;) {
    int End = Start + 1;
    while (End < Count && !FChars[std::size_t(End)].X && !FChars[std::size_t(End)].Y &&
           FChars[std::size_t(End)].Path == FChars[std::size_t(End - 1)].Path)
      ++End;
    LayOutChunk(Start, End);
    Start = End;
  }
  // Outlines are handed over rather than copied: a long text's would otherwise live twice.
  for (auto &[Owner, Path] : FPaths)
    if (QPainterPath &Shape = Owner->FShape.QPath(); Shape.isEmpty()) {
      const Qt::FillRule Rule = Shape.fillRule();
      std::swap(Shape, Path);
      Shape.setFillRule(Rule);
    } else {
      Shape.addPath(Path);
    }
}

// --- characters --------------------------------------------------------------------------------

void TSVGBrowserTextLayout::Collect(TSVGCustomText &Element, TSVGTextPath *Path)
{
  if (auto *TextPath = dynamic_cast<TSVGTextPath *>(&Element))
    Path = TextPath;
  const bool Preserve = Element.FPreserveSpace;
  const int Begin = int(FChars.size());
  const std::size_t Range = FRanges.size();
  FRanges.push_back({&Element, Begin, Begin});
  // A part that is not displayed takes no room and no place in the lists.
  if (!Element.IsDisplayed())
    return;
  const QString Text = Element.GetText();
  for (int I = 0; I < Text.size(); ++I) {
    char32_t Code = Text.at(I).unicode();
    if (Text.at(I).isHighSurrogate() && I + 1 < Text.size() && Text.at(I + 1).isLowSurrogate()) {
      Code = QChar::surrogateToUcs4(Text.at(I), Text.at(I + 1));
      ++I;
    }
    // Line breaks vanish unless the space is preserved; tabs and preserved breaks are blanks.
    if (Code == '\n' || Code == '\r') {
      if (!Preserve)
        continue;
      Code = ' ';
    }
    if (Code == '\t')
      Code = ' ';
    TChar Char;
    Char.Code = Code;
    Char.Owner = &Element;
    Char.Preserve = Preserve;
    Char.Path = Path;
    if (Element.GetFont().GetFontVariant() == fvSmallCaps && QChar::isLower(Code) && !StyleOf(&Element).SmallCaps) {
      Char.Code = QChar::toUpper(Code);
      Char.SmallCap = true;
    }
    FChars.push_back(Char);
  }
  for (int I = 0; I < Element.Count(); ++I)
    if (auto *Child = dynamic_cast<TSVGCustomText *>(Element[I]))
      Collect(*Child, Path);
  FRanges[Range].End = int(FChars.size());
}

void TSVGBrowserTextLayout::CollapseWhiteSpace()
{
  // Blanks collapse across spans: none at the start, none after another, none at the end.
  std::vector<bool> Keep(FChars.size(), true);
  bool AfterBlank = true;
  for (std::size_t I = 0; I < FChars.size(); ++I) {
    const TChar &C = FChars[I];
    if (C.Preserve) {
      AfterBlank = false;
      continue;
    }
    if (C.Code == ' ') {
      Keep[I] = !AfterBlank;
      AfterBlank = true;
    } else {
      AfterBlank = false;
    }
  }
  for (std::size_t I = FChars.size(); I-- > 0;) {
    if (!Keep[I])
      continue;
    if (FChars[I].Preserve || FChars[I].Code != ' ')
      break;
    Keep[I] = false;
  }
  std::vector<int> Kept(FChars.size() + 1, 0);
  std::vector<TChar> Chars;
  for (std::size_t I = 0; I < FChars.size(); ++I) {
    Kept[I] = int(Chars.size());
    if (Keep[I])
      Chars.push_back(FChars[I]);
  }
  Kept[FChars.size()] = int(Chars.size());
  for (TRange &R : FRanges) {
    R.Begin = Kept[std::size_t(R.Begin)];
    R.End = Kept[std::size_t(R.End)];
  }
  FChars = std::move(Chars);
}

void TSVGBrowserTextLayout::ResolvePositions()
{
  // Ranges are in document order, so an inner element's lists overwrite those of the outer ones.
  for (const TRange &R : FRanges) {
    TSVGCustomText &E = *R.Element;
    const int N = R.End - R.Begin;
    auto Apply = [&](const TSVGLengths &List, bool Width, auto Store) {
      for (int K = 0; K < std::min(List.Count(), N); ++K)
        Store(FChars[std::size_t(R.Begin + K)], E.ListValue(List, K, Width));
    };
    Apply(*E.FX, true, [](TChar &C, float V) { C.X = V; });
    Apply(*E.FY, false, [](TChar &C, float V) { C.Y = V; });
    Apply(*E.FDX, true, [](TChar &C, float V) { C.DX = V; });
    Apply(*E.FDY, false, [](TChar &C, float V) { C.DY = V; });
    // The last angle goes on for the rest of the element's characters.
    if (!E.FRotate.empty())
      for (int K = 0; K < N; ++K)
        FChars[std::size_t(R.Begin + K)].Rotate = E.FRotate[std::min(std::size_t(K), E.FRotate.size() - 1)];
  }
}

// --- styles ------------------------------------------------------------------------------------

const TSVGBrowserTextLayout::TStyle &TSVGBrowserTextLayout::StyleOf(const TChar &Char)
{
  if (!Char.SmallCap)
    return StyleOf(Char.Owner);
  const std::pair<const TSVGCustomText *, bool> Key{Char.Owner, true};
  if (auto It = FStyles.find(Key); It != FStyles.end())
    return It->second;
  // Small capitals the font lacks are capitals at the size browsers make them.
  TStyle Style = StyleOf(Char.Owner);
  Style.Size *= 0.7f;
  return FStyles.emplace(Key, Style).first->second;
}

const TSVGBrowserTextLayout::TStyle &TSVGBrowserTextLayout::StyleOf(TSVGCustomText *Owner)
{
  if (auto It = FStyles.find({Owner, false}); It != FStyles.end())
    return It->second;
  TSVGFont &Font = Owner->GetFont();
  TStyle Style;
  Style.Query.Families = FamiliesOf(*Owner);
  Style.Query.Weight = NumericWeight(*Owner);
  auto Properties = [](const TSVGCustomText &E) -> const TSVGBrowserTextProperties & { return E.FBrowserProperties; };
  if (Font.GetStyle().Contains(fsItalic))
    Style.Query.Slant =
      InheritedProperty(*Owner, &TSVGBrowserTextProperties::FontStyle, Properties) == QLatin1String("oblique")
        ? TVXFontQuery::slOblique
        : TVXFontQuery::slItalic;
  if (const int Stretch = StretchPercent(InheritedProperty(*Owner, &TSVGBrowserTextProperties::FontStretch, Properties)))
    Style.Query.Width = Stretch;
  Style.Query.Variations =
    ParseVariations(InheritedProperty(*Owner, &TSVGBrowserTextProperties::FontVariationSettings, Properties));
  Style.Size = std::isfinite(Font.GetSize()) ? std::max(0.0f, Font.GetSize()) : 0.0f;
  Style.Face = TVXTextEngine::MatchFont(Style.Query);
  // Optical sizes follow the font size unless the settings name one.
  if (Style.Face->HasAxis("opsz")) {
    Style.Query.Variations.insert(Style.Query.Variations.begin(), {QByteArray("opsz"), Style.Size});
    Style.Face = TVXTextEngine::MatchFont(Style.Query);
  }
  const TSVGStylePropertyAutoLength *Kerning = InheritedSpacing(*Owner, &TSVGGraphicElement::Kerning);
  // Browsers take a kerning length as turning the font's kerning off, and ignore a percentage.
  Style.Kerning = (!Kerning || Kerning->IsPercent()) &&
                  InheritedProperty(*Owner, &TSVGBrowserTextProperties::FontKerning, Properties) != QLatin1String("none");
  Style.SmallCaps = Font.GetFontVariant() == fvSmallCaps && Style.Face->HasSmallCaps();
  if (const TSVGStylePropertyAutoLength *Spacing = InheritedSpacing(*Owner, &TSVGGraphicElement::LetterSpacing))
    Style.LetterSpacing = SpacingValue(*Spacing);
  if (const TSVGStylePropertyAutoLength *Spacing = InheritedSpacing(*Owner, &TSVGGraphicElement::WordSpacing))
    Style.WordSpacing = SpacingValue(*Spacing);
  const TVXFontMetrics &M = Style.Face->Metrics();
  const double S = Scale(*Style.Face, Style.Size);
  TSVGAlignmentBaseline Alignment = Owner->Inherits().Value().Contains(ipAlignmentBaseline)
                                      ? abAuto
                                      : Owner->GetAlignmentBaseline();
  if (Alignment == abNone || Alignment == abAuto || Alignment == abBaseline)
    Alignment = DominantAsAlignment(InheritedDominantBaseline(*Owner));
  Style.BaselineOffset = float(AlignmentShift(Alignment, M, S) - BaselineShiftOf(*Owner, M, S));
  return FStyles.emplace(std::pair<const TSVGCustomText *, bool>{Owner, false}, Style).first->second;
}

// --- chunks ------------------------------------------------------------------------------------

void TSVGBrowserTextLayout::LayOutChunk(int Start, int End)
{
  // The chunk's text, and for every UTF-16 unit the character it belongs to.
  QString Text;
  std::vector<int> CharOfUnit;
  std::vector<TVXShapeRun> Runs;
  for (int I = Start; I < End; ++I) {
    const TChar &C = FChars[std::size_t(I)];
    const int Unit = int(Text.size());
    AppendCode(Text, C.Code);
    CharOfUnit.resize(std::size_t(Text.size()), I);
    const TStyle &S = StyleOf(C);
    TVXShapeRun *Last = Runs.empty() ? nullptr : &Runs.back();
    if (Last && Last->Face == S.Face && Last->Kerning == S.Kerning && Last->SmallCaps == S.SmallCaps &&
        Last->Query.Key() == S.Query.Key()) {
      Last->Length = int(Text.size()) - Last->Start;
    } else {
      TVXShapeRun Run;
      Run.Start = Unit;
      Run.Length = int(Text.size()) - Unit;
      Run.Face = S.Face;
      Run.Query = S.Query;
      Run.Kerning = S.Kerning;
      Run.SmallCaps = S.SmallCaps;
      Runs.push_back(std::move(Run));
    }
  }
  const std::vector<TVXShapedGlyph> Glyphs = TVXTextEngine::Shape(Text, Runs);

  // Clusters in visual order, with their advances and the spacing of their owners.
  std::vector<TCluster> Clusters;
  for (const TVXShapedGlyph &G : Glyphs) {
    const int Char = CharOfUnit[std::size_t(G.Cluster)];
    if (Clusters.empty() || Clusters.back().Unit != G.Cluster || Clusters.back().Glyphs.front()->Face != G.Face) {
      Clusters.emplace_back();
      Clusters.back().Char = Char;
      Clusters.back().Unit = G.Cluster;
    }
    TCluster &C = Clusters.back();
    C.Glyphs.push_back(&G);
    const TStyle &S = StyleOf(FChars[std::size_t(Char)]);
    C.Width += float(G.XAdvance * Scale(*G.Face, S.Size));
  }
  for (std::size_t I = 0; I < Clusters.size(); ++I) {
    TCluster &C = Clusters[I];
    const TChar &Char = FChars[std::size_t(C.Char)];
    const TStyle &S = StyleOf(Char);
    C.Advance = C.Width;
    // No spacing after the last cluster: it would move the anchor and the box.
    if (I + 1 < Clusters.size() && TakesLetterSpacing(Char.Code))
      C.Advance += S.LetterSpacing;
    // A letter squeezed below nothing vanishes, as in browsers; word spacing may go backwards.
    if (C.Advance < 0) {
      C.Advance = 0;
      C.Glyphs.clear();
    }
    if (IsWordSeparator(Char.Code))
      C.Advance += S.WordSpacing;
  }

  AdjustLengths(Start, End, Clusters);

  // Anchored on the advances, from the chunk's first character.
  double Width = 0;
  for (const TCluster &C : Clusters)
    Width += C.Advance;
  const TChar &First = FChars[std::size_t(Start)];
  double X = 0, Y = 0;
  switch (First.Owner->TSVGGraphicElement::GetTextAlign()) {
  case staCenter:
    X = -Width / 2;
    break;
  case staTrailing:
    X = -Width;
    break;
  default:
    break;
  }
  if (First.Path) {
    // Along a path, the chunk's x is one more offset along it.
    PlaceOnPath(*First.Path, X + First.X.value_or(0), Clusters);
    EmitOutlines(Clusters, true);
    return;
  }
  const float ChunkX = First.X ? *First.X : FLastX;
  const float ChunkY = First.Y ? *First.Y : FLastY;
  const bool Vertical = FRoot.IsVertical();
  for (TCluster &C : Clusters) {
    const TChar &Char = FChars[std::size_t(C.Char)];
    // Vertical text is laid out as a line and turned a quarter: dx runs down, dy leftwards.
    X += Vertical ? Char.DY : Char.DX;
    Y += Vertical ? -Char.DX : Char.DY;
    C.RelativeShift = Char.DX != 0 || Char.DY != 0;
    C.Transform.translate(X, Y);
    if (Vertical && !IsUpright(Char.Code)) {
      // Sideways glyphs sit on the central baseline, as browsers place them.
      const TStyle &S = StyleOf(Char);
      const TVXFontMetrics &M = S.Face->Metrics();
      C.Transform.translate(0, (M.Ascent + M.Descent) * Scale(*S.Face, S.Size) / 2);
    }
    if (Char.Rotate && *Char.Rotate != 0) {
      C.Transform.rotate(*Char.Rotate);
      C.RelativeShift = true;
    }
    X += C.Advance;
  }
  if (!Vertical) {
    FLastX = float(ChunkX + X);
    FLastY = float(ChunkY + Y);
    for (TCluster &C : Clusters)
      C.Transform *= QTransform::fromTranslate(ChunkX, ChunkY);
    EmitOutlines(Clusters, false);
    return;
  }
  FLastX = float(ChunkX + Y);
  FLastY = float(ChunkY + X);
  for (TCluster &C : Clusters) {
    const TChar &Char = FChars[std::size_t(C.Char)];
    const TStyle &S = StyleOf(Char);
    if (IsUpright(Char.Code)) {
      // Upright glyphs turn back a quarter about the middle of their advance.
      const double Width = C.Width, Height = (S.Face->Metrics().Ascent - S.Face->Metrics().Descent) * Scale(*S.Face, S.Size);
      QTransform Upright;
      Upright.translate(Width / 2, 0);
      Upright.rotate(-90);
      Upright.translate(-Width / 2, -(Width - Height));
      C.GlyphTransform = Upright;
    }
    C.Transform *= QTransform::fromTranslate(0, S.BaselineOffset) * QTransform().rotate(90) *
                   QTransform::fromTranslate(ChunkX, ChunkY);
  }
  EmitOutlines(Clusters, true);
}

void TSVGBrowserTextLayout::EmitOutlines(const std::vector<TCluster> &Clusters, bool OnPath)
{
  // Outlines into the paths of the owners; each owner's baseline moves its own glyphs (on a path
  // the placement has done so already).
  // Each owner with its clusters, owners in the order they first come; a chunk may run through
  // many thousand spans, so they are gathered in one pass.
  std::vector<std::pair<TSVGCustomText *, std::vector<int>>> Owners;
  std::unordered_map<TSVGCustomText *, std::size_t> OwnerIndex;
  for (int I = 0; I < int(Clusters.size()); ++I) {
    const TCluster &C = Clusters[std::size_t(I)];
    TSVGCustomText *Owner = FChars[std::size_t(C.Char)].Owner;
    const TStyle &S = StyleOf(FChars[std::size_t(C.Char)]);
    const auto [It, Added] = OwnerIndex.try_emplace(Owner, Owners.size());
    if (Added)
      Owners.emplace_back(Owner, std::vector<int>());
    Owners[It->second].second.push_back(I);
    if (!(S.Size > 0) || C.Hidden)
      continue;
    const QTransform Chunk = QTransform::fromTranslate(0, OnPath ? 0 : S.BaselineOffset);
    QPainterPath &Path = PathOf(Owner);
    double Pen = 0;
    for (const TVXShapedGlyph *G : C.Glyphs) {
      const double Sc = Scale(*G->Face, S.Size);
      const QTransform Place = QTransform(Sc, 0, 0, Sc, (Pen + G->XOffset) * Sc, -G->YOffset * Sc) *
                               C.GlyphTransform * QTransform::fromScale(C.XScale, 1) * C.Transform * Chunk;
      Path.addPath(Place.map(G->Face->GlyphOutline(G->Glyph)));
      Pen += G->XAdvance;
    }
  }
  for (const auto &[Owner, Own] : Owners)
    AddDecorations(Owner, StyleOf(Owner), Clusters, Own,
                   QTransform::fromTranslate(0, OnPath ? 0 : StyleOf(Owner).BaselineOffset));
}

void TSVGBrowserTextLayout::AdjustLengths(int Start, int End, std::vector<TCluster> &Clusters)
{
  // Clusters by character, so that each element finds its own without a scan of the chunk.
  std::vector<TCluster *> ByChar;
  for (const TRange &R : FLengthRanges) {
    const TSVGBrowserTextProperties &P = R.Element->FBrowserProperties;
    if (R.End <= Start || R.Begin >= End)
      continue;
    if (ByChar.empty()) {
      for (TCluster &C : Clusters)
        ByChar.push_back(&C);
      std::stable_sort(ByChar.begin(), ByChar.end(), [](const TCluster *A, const TCluster *B) { return A->Char < B->Char; });
    }
    const auto CharBelow = [](const TCluster *C, int Char) { return C->Char < Char; };
    const auto First = std::lower_bound(ByChar.begin(), ByChar.end(), R.Begin, CharBelow);
    const auto Last = std::lower_bound(First, ByChar.end(), R.End, CharBelow);
    const std::vector<TCluster *> Own(First, Last);
    double Width = 0;
    for (const TCluster *C : Own)
      Width += C->Width;
    if (Own.empty())
      continue;
    // The spacing properties give way to the length asked for.
    if (!P.SpacingAndGlyphs) {
      const double Gap = Own.size() > 1 ? (P.TextLength - Width) / double(Own.size() - 1) : 0;
      for (TCluster *C : Own)
        C->Advance = float(C->Width + Gap);
      continue;
    }
    const double Factor = Width > 0 ? P.TextLength / Width : 0;
    if (Factor < 0.001)
      continue;
    for (TCluster *C : Own) {
      C->XScale = float(Factor);
      C->Advance = float(C->Width * Factor);
    }
  }
}

// --- text on a path ----------------------------------------------------------------------------

const TSVGBrowserTextLayout::TFlowPath &TSVGBrowserTextLayout::FlowPathOf(TSVGTextPath &TextPath)
{
  if (auto It = FFlowPaths.find(&TextPath); It != FFlowPaths.end())
    return It->second;
  TFlowPath Flow;
  TVXGPPath Outline(nullptr);
  Outline.Assign(TextPath.GetPath());
  const QPainterPath &Path = Outline.QPath();
  QPointF Current;
  for (int I = 0; I < Path.elementCount(); ++I) {
    const QPainterPath::Element E = Path.elementAt(I);
    TFlowPath::TSegment Segment;
    if (E.isMoveTo()) {
      Current = E;
      continue;
    }
    const bool Line = !E.isCurveTo() || I + 2 >= Path.elementCount();
    if (!Line) {
      Segment = {Current, E, Path.elementAt(I + 1), Path.elementAt(I + 2), Flow.Length, {}};
      I += 2;
    } else {
      // Control points at the thirds make the parameter run evenly along the line.
      const QPointF End = E;
      Segment = {Current, Current + (End - Current) / 3, Current + (End - Current) * 2 / 3, End, Flow.Length, {}};
    }
    // Lines need one step; curves enough for lengths well below a hundredth of a unit.
    const int Steps = Line ? 1 : 256;
    Segment.Lengths.reserve(std::size_t(Steps) + 1);
    Segment.Lengths.push_back(0);
    QPointF Previous = Segment.P0;
    for (int K = 1; K <= Steps; ++K) {
      const QPointF P = CubicPoint(Segment, double(K) / Steps);
      Segment.Lengths.push_back(Segment.Lengths.back() + QLineF(Previous, P).length());
      Previous = P;
    }
    Flow.Length += Segment.Lengths.back();
    Current = Segment.P3;
    Flow.Segments.push_back(std::move(Segment));
  }
  return FFlowPaths.emplace(&TextPath, std::move(Flow)).first->second;
}

bool TSVGBrowserTextLayout::TFlowPath::At(double Distance, QPointF &Point, double &Angle) const
{
  if (Distance < 0 || Distance > Length)
    return false;
  for (const TSegment &S : Segments) {
    const double Own = S.Lengths.back();
    if (Distance > S.Start + Own && &S != &Segments.back())
      continue;
    const double D = std::clamp(Distance - S.Start, 0.0, Own);
    const auto Step = std::lower_bound(S.Lengths.begin(), S.Lengths.end(), D);
    const std::size_t K = std::max<std::size_t>(1, std::size_t(Step - S.Lengths.begin()));
    const double L0 = S.Lengths[std::min(K, S.Lengths.size() - 1) - 1], L1 = S.Lengths[std::min(K, S.Lengths.size() - 1)];
    const double Steps = double(S.Lengths.size() - 1);
    const double T = std::clamp((double(K - 1) + (L1 > L0 ? (D - L0) / (L1 - L0) : 0)) / Steps, 0.0, 1.0);
    Point = CubicPoint(S, T);
    QPointF Tangent = CubicTangent(S, T);
    if (Tangent.isNull())
      Tangent = S.P3 - S.P0;
    Angle = std::atan2(Tangent.y(), Tangent.x()) * 180 / M_PI;
    return true;
  }
  return false;
}

void TSVGBrowserTextLayout::PlaceOnPath(TSVGTextPath &TextPath, double Offset, std::vector<TCluster> &Clusters)
{
  const TFlowPath &Flow = FlowPathOf(TextPath);
  const TSVGLength &StartOffset = TextPath.StartOffset();
  Offset += StartOffset.IsPercent() ? StartOffset.GetPercentValue(0, float(Flow.Length)) : StartOffset.GetPixels();
  double Advance = Offset, DY = 0;
  for (TCluster &C : Clusters) {
    const TChar &Char = FChars[std::size_t(C.Char)];
    Advance += Char.DX;
    DY += Char.DY;
    // Glyphs turn about the middle of their advance on the baseline.
    const double Half = C.Width / 2;
    const double Middle = Advance + Half;
    Advance += C.Advance;
    C.RelativeShift = true;
    QPointF At;
    double Angle = 0;
    if (!Flow.At(Middle, At, Angle)) {
      C.Hidden = true;
      continue;
    }
    QTransform Placed = QTransform::fromTranslate(At.x() - Half, At.y());
    Placed.translate(Half, 0);
    Placed.rotate(Angle);
    Placed.translate(-Half, 0);
    Placed.translate(0, DY + StyleOf(Char.Owner).BaselineOffset);
    if (Char.Rotate && *Char.Rotate != 0)
      Placed.rotate(*Char.Rotate);
    C.Transform = Placed;
    FLastX = float(At.x() + C.Advance);
    FLastY = float(At.y());
  }
}

QPainterPath &TSVGBrowserTextLayout::PathOf(TSVGCustomText *Owner)
{
  const auto [It, Added] = FPathIndex.try_emplace(Owner, FPaths.size());
  if (Added) {
    FPaths.emplace_back(Owner, QPainterPath());
    FPaths.back().second.setFillRule(Qt::WindingFill);
  }
  return FPaths[It->second].second;
}

// --- decorations -------------------------------------------------------------------------------

void TSVGBrowserTextLayout::AddDecorations(TSVGCustomText *Owner, const TStyle &Style,
                                           const std::vector<TCluster> &Clusters, const std::vector<int> &Own,
                                           const QTransform &ChunkTransform)
{
  // Each line comes from the nearest element that declares it, and is painted as that element.
  enum { Underline, Overline, LineThrough };
  TSVGCustomText *Declarers[3] = {nullptr, nullptr, nullptr};
  for (TSVGCustomText *E = Owner; E; E = E->TextParent()) {
    if (E->TextParent() && E->Inherits().Value().Contains(ipTextDecoration))
      continue;
    TSVGFont &Font = E->GetFont();
    if (!Declarers[Underline] && Font.GetStyle().Contains(fsUnderline))
      Declarers[Underline] = E;
    if (!Declarers[Overline] && Font.GetExtendStyles().Contains(fsOverline))
      Declarers[Overline] = E;
    if (!Declarers[LineThrough] && Font.GetStyle().Contains(fsStrikeOut))
      Declarers[LineThrough] = E;
  }
  if (!Declarers[Underline] && !Declarers[Overline] && !Declarers[LineThrough])
    return;
  // Lines run under the owner's clusters and break where a character was moved on its own, and
  // where a hidden cluster or one of another element comes between.
  struct TLine
  {
    float Width;
    QTransform Transform;
  };
  std::vector<TLine> Lines;
  int Previous = -2;
  for (const int I : Own) {
    const TCluster &C = Clusters[std::size_t(I)];
    if (C.Hidden)
      continue;
    if (I == Previous + 1 && !C.RelativeShift)
      Lines.back().Width += C.Advance;
    else
      Lines.push_back({C.Advance, C.Transform});
    Previous = I;
  }
  const TVXFontMetrics &M = Style.Face->Metrics();
  const double S = Scale(*Style.Face, Style.Size);
  const double Thickness = M.UnderlineThickness * S;
  const double Offsets[3] = {-M.UnderlinePosition * S, -M.Ascent * S, -M.StrikeoutPosition * S};
  for (int Kind = Underline; Kind <= LineThrough; ++Kind) {
    if (!Declarers[Kind])
      continue;
    QPainterPath &Path = PathOf(Declarers[Kind]);
    for (const TLine &L : Lines) {
      QPainterPath Bar;
      Bar.addRect(QRectF(0, -Thickness / 2, L.Width, Thickness));
      Path.addPath((QTransform::fromTranslate(0, Offsets[Kind]) * L.Transform * ChunkTransform).map(Bar));
    }
  }
}

} // namespace vx
