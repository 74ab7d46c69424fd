#include "platform/textengine/VXTextEngine.h"

#include <fontconfig/fontconfig.h>
#include <fribidi.h>
#include <hb-ot.h>
#include <hb.h>

#include <QChar>
#include <QFileInfo>

#include <algorithm>
#include <map>
#include <mutex>

namespace vx {

namespace {

// Generic families stand for whatever the system configured, so any answer to them is a match.
bool IsGenericFamily(const QString &Family)
{
  static const char *const Generic[] = {"serif", "sans-serif", "monospace", "cursive", "fantasy", "system-ui"};
  return std::any_of(std::begin(Generic), std::end(Generic),
                     [&](const char *G) { return Family.compare(QLatin1String(G), Qt::CaseInsensitive) == 0; });
}

int FontconfigSlant(TVXFontQuery::TSlant Slant)
{
  switch (Slant) {
  case TVXFontQuery::slItalic:
    return FC_SLANT_ITALIC;
  case TVXFontQuery::slOblique:
    return FC_SLANT_OBLIQUE;
  default:
    return FC_SLANT_ROMAN;
  }
}

// A pattern for one family of Query, substituted as fontconfig's own matching would.
FcPattern *QueryPattern(const QString &Family, const TVXFontQuery &Query)
{
  FcPattern *Pattern = FcPatternCreate();
  if (!Family.isEmpty())
    FcPatternAddString(Pattern, FC_FAMILY, reinterpret_cast<const FcChar8 *>(Family.toUtf8().constData()));
  FcPatternAddDouble(Pattern, FC_WEIGHT, FcWeightFromOpenTypeDouble(std::clamp(Query.Weight, 1, 1000)));
  FcPatternAddInteger(Pattern, FC_SLANT, FontconfigSlant(Query.Slant));
  FcPatternAddInteger(Pattern, FC_WIDTH, std::clamp(Query.Width, 50, 200));
  FcConfigSubstitute(nullptr, Pattern, FcMatchPattern);
  FcDefaultSubstitute(Pattern);
  return Pattern;
}

bool PatternHasFamily(FcPattern *Pattern, const QString &Family)
{
  FcChar8 *Name = nullptr;
  for (int I = 0; FcPatternGetString(Pattern, FC_FAMILY, I, &Name) == FcResultMatch; ++I)
    if (QString::fromUtf8(reinterpret_cast<const char *>(Name)).compare(Family, Qt::CaseInsensitive) == 0)
      return true;
  return false;
}

QString PatternFamily(FcPattern *Pattern)
{
  FcChar8 *Name = nullptr;
  if (FcPatternGetString(Pattern, FC_FAMILY, 0, &Name) != FcResultMatch)
    return {};
  return QString::fromUtf8(reinterpret_cast<const char *>(Name));
}

// Faces by file, index and axis values, shared by every text of the process.
std::mutex CacheLock;

TVXFontFacePtr CachedFace(FcPattern *Pattern, const TVXFontQuery &Query)
{
  static std::map<QByteArray, TVXFontFacePtr> Faces;
  FcChar8 *File = nullptr;
  int Index = 0;
  if (FcPatternGetString(Pattern, FC_FILE, 0, &File) != FcResultMatch)
    return nullptr;
  FcPatternGetInteger(Pattern, FC_INDEX, 0, &Index);
  // Named instances of variable fonts carry the instance number above the face index.
  Index &= 0xFFFF;
  QByteArray Key = QByteArray(reinterpret_cast<const char *>(File)) + '#' + QByteArray::number(Index) + '#' +
                   QByteArray::number(Query.Weight) + '#' + QByteArray::number(Query.Width);
  for (const auto &[Tag, Value] : Query.Variations)
    Key += '#' + Tag + '=' + QByteArray::number(Value);
  auto It = Faces.find(Key);
  if (It != Faces.end())
    return It->second;
  // Variable fonts follow the weight and width asked for; explicit settings come last and win.
  std::vector<std::pair<QByteArray, float>> Axes{{"wght", float(Query.Weight)}, {"wdth", float(Query.Width)}};
  // An oblique face leans by the default angle of CSS.
  if (Query.Slant == TVXFontQuery::slOblique)
    Axes.push_back({"slnt", -14});
  Axes.insert(Axes.end(), Query.Variations.begin(), Query.Variations.end());
  auto Face = std::make_shared<const TVXFontFace>(QByteArray(reinterpret_cast<const char *>(File)), Index,
                                                  PatternFamily(Pattern), Axes);
  Faces.emplace(Key, Face);
  return Face;
}

// --- outlines ----------------------------------------------------------------------------------

void MoveTo(hb_draw_funcs_t *, void *Path, hb_draw_state_t *, float X, float Y, void *)
{
  static_cast<QPainterPath *>(Path)->moveTo(X, -Y);
}

void LineTo(hb_draw_funcs_t *, void *Path, hb_draw_state_t *, float X, float Y, void *)
{
  static_cast<QPainterPath *>(Path)->lineTo(X, -Y);
}

void QuadraticTo(hb_draw_funcs_t *, void *Path, hb_draw_state_t *, float CX, float CY, float X, float Y, void *)
{
  static_cast<QPainterPath *>(Path)->quadTo(CX, -CY, X, -Y);
}

void CubicTo(hb_draw_funcs_t *, void *Path, hb_draw_state_t *, float C1X, float C1Y, float C2X, float C2Y, float X,
             float Y, void *)
{
  static_cast<QPainterPath *>(Path)->cubicTo(C1X, -C1Y, C2X, -C2Y, X, -Y);
}

void ClosePath(hb_draw_funcs_t *, void *Path, hb_draw_state_t *, void *)
{
  static_cast<QPainterPath *>(Path)->closeSubpath();
}

hb_draw_funcs_t *PathDrawFuncs()
{
  static hb_draw_funcs_t *Funcs = [] {
    hb_draw_funcs_t *F = hb_draw_funcs_create();
    hb_draw_funcs_set_move_to_func(F, MoveTo, nullptr, nullptr);
    hb_draw_funcs_set_line_to_func(F, LineTo, nullptr, nullptr);
    hb_draw_funcs_set_quadratic_to_func(F, QuadraticTo, nullptr, nullptr);
    hb_draw_funcs_set_cubic_to_func(F, CubicTo, nullptr, nullptr);
    hb_draw_funcs_set_close_path_func(F, ClosePath, nullptr, nullptr);
    hb_draw_funcs_make_immutable(F);
    return F;
  }();
  return Funcs;
}

// --- shaping -----------------------------------------------------------------------------------

// Marks, joiners and selectors belong to the character before them and take its face.
bool JoinsPrevious(char32_t Ch)
{
  const QChar::Category Category = QChar::category(Ch);
  return Category == QChar::Mark_NonSpacing || Category == QChar::Mark_SpacingCombining ||
         Category == QChar::Mark_Enclosing || Ch == 0x200D || (Ch >= 0xFE00 && Ch <= 0xFE0F) ||
         (Ch >= 0xE0100 && Ch <= 0xE01EF) || (Ch >= 0x1F3FB && Ch <= 0x1F3FF);
}

// The bidirectional level of every UTF-16 index of Text, in a left-to-right paragraph.
std::vector<std::uint8_t> BidiLevels(const QString &Text)
{
  std::vector<std::uint8_t> Result(std::size_t(Text.size()), 0);
  const std::u32string Wide = Text.toStdU32String();
  bool AllLeftToRight = std::all_of(Wide.begin(), Wide.end(), [](char32_t C) { return C < 0x0590; });
  if (AllLeftToRight || Wide.empty())
    return Result;
  const auto N = FriBidiStrIndex(Wide.size());
  std::vector<FriBidiCharType> Types(Wide.size());
  std::vector<FriBidiBracketType> Brackets(Wide.size());
  std::vector<FriBidiLevel> Levels(Wide.size());
  const auto *Chars = reinterpret_cast<const FriBidiChar *>(Wide.data());
  fribidi_get_bidi_types(Chars, N, Types.data());
  fribidi_get_bracket_types(Chars, N, Types.data(), Brackets.data());
  FriBidiParType Direction = FRIBIDI_PAR_LTR;
  if (!fribidi_get_par_embedding_levels_ex(Types.data(), Brackets.data(), N, &Direction, Levels.data()))
    return Result;
  qsizetype Unit = 0;
  for (std::size_t I = 0; I < Wide.size(); ++I) {
    const int Width = Wide[I] > 0xFFFF ? 2 : 1;
    for (int K = 0; K < Width && Unit < Text.size(); ++K)
      Result[std::size_t(Unit++)] = std::uint8_t(Levels[I]);
  }
  return Result;
}

// A stretch of the text shaped at once: one face, one direction.
struct TItem
{
  int Start, Length;
  const TVXShapeRun *Run;
  TVXFontFacePtr Face;
  std::uint8_t Level;
};

char32_t CodePointAt(const QString &Text, int I, int &Width)
{
  const QChar C = Text.at(I);
  if (C.isHighSurrogate() && I + 1 < Text.size() && Text.at(I + 1).isLowSurrogate()) {
    Width = 2;
    return QChar::surrogateToUcs4(C, Text.at(I + 1));
  }
  Width = 1;
  return C.unicode();
}

// Splits Run where the level changes or a character needs a fallback face.
void Itemize(const QString &Text, const TVXShapeRun &Run, const std::vector<std::uint8_t> &Levels,
             std::vector<TItem> &Items)
{
  TVXFontFacePtr Current;
  for (int I = Run.Start, Width = 1; I < Run.Start + Run.Length; I += Width) {
    const char32_t Ch = CodePointAt(Text, I, Width);
    TVXFontFacePtr Face = Run.Face;
    if (Current && JoinsPrevious(Ch))
      Face = Current;
    else if (Run.Face && !Run.Face->HasCharacter(Ch) && Ch >= 0x20)
      if (TVXFontFacePtr Fallback = TVXTextEngine::FallbackFont(Ch, Run.Query))
        Face = Fallback;
    const std::uint8_t Level = Levels[std::size_t(I)];
    if (!Items.empty() && Items.back().Run == &Run && Items.back().Face == Face && Items.back().Level == Level &&
        Items.back().Start + Items.back().Length == I)
      Items.back().Length += Width;
    else
      Items.push_back({I, Width, &Run, Face, Level});
    Current = Face;
  }
}

void ShapeItem(const QString &Text, const TItem &Item, std::vector<TVXShapedGlyph> &Glyphs)
{
  if (!Item.Face || !Item.Face->IsValid())
    return;
  hb_buffer_t *Buffer = hb_buffer_create();
  hb_buffer_add_utf16(Buffer, reinterpret_cast<const uint16_t *>(Text.utf16()), int(Text.size()),
                      unsigned(Item.Start), Item.Length);
  hb_buffer_set_direction(Buffer, Item.Level % 2 ? HB_DIRECTION_RTL : HB_DIRECTION_LTR);
  hb_buffer_guess_segment_properties(Buffer);
  std::vector<hb_feature_t> Features;
  auto Feature = [&](const char *Tag, unsigned Value) {
    Features.push_back({hb_tag_from_string(Tag, -1), Value, HB_FEATURE_GLOBAL_START, HB_FEATURE_GLOBAL_END});
  };
  if (!Item.Run->Kerning)
    Feature("kern", 0);
  if (Item.Run->SmallCaps)
    Feature("smcp", 1);
  if (!Item.Run->Ligatures) {
    Feature("liga", 0);
    Feature("clig", 0);
  }
  hb_shape(Item.Face->Font(), Buffer, Features.data(), unsigned(Features.size()));
  unsigned Count = 0;
  const hb_glyph_info_t *Infos = hb_buffer_get_glyph_infos(Buffer, &Count);
  const hb_glyph_position_t *Positions = hb_buffer_get_glyph_positions(Buffer, nullptr);
  for (unsigned I = 0; I < Count; ++I)
    Glyphs.push_back({Infos[I].codepoint, int(Infos[I].cluster), float(Positions[I].x_advance),
                      float(Positions[I].y_advance), float(Positions[I].x_offset), float(Positions[I].y_offset),
                      Item.Face.get(), Item.Level});
  hb_buffer_destroy(Buffer);
}

// Reverses the runs of items at each level from the highest down to the lowest odd one.
void OrderVisually(std::vector<TItem> &Items)
{
  if (Items.empty())
    return;
  std::uint8_t Highest = 0, LowestOdd = 255;
  for (const TItem &Item : Items) {
    Highest = std::max(Highest, Item.Level);
    if (Item.Level % 2)
      LowestOdd = std::min(LowestOdd, Item.Level);
  }
  for (int Level = Highest; Level >= LowestOdd && Level > 0; --Level)
    for (std::size_t I = 0; I < Items.size();) {
      if (Items[I].Level < Level) {
        ++I;
        continue;
      }
      std::size_t End = I;
      while (End < Items.size() && Items[End].Level >= Level)
        ++End;
      std::reverse(Items.begin() + std::ptrdiff_t(I), Items.begin() + std::ptrdiff_t(End));
      I = End;
    }
}

} // namespace

QString TVXFontQuery::Key() const
{
  QString Result = Families.join(QLatin1Char(',')) + QLatin1Char('|') + QString::number(Weight) +
                   QLatin1Char('|') + QString::number(int(Slant)) + QLatin1Char('|') + QString::number(Width);
  for (const auto &[Tag, Value] : Variations)
    Result += QLatin1Char('|') + QString::fromLatin1(Tag) + QLatin1Char('=') + QString::number(Value);
  return Result;
}

// --- faces -------------------------------------------------------------------------------------

TVXFontFace::TVXFontFace(const QByteArray &File, int Index, const QString &Family,
                         const std::vector<std::pair<QByteArray, float>> &Variations)
  : FFamily(Family)
{
  hb_blob_t *Blob = hb_blob_create_from_file_or_fail(File.constData());
  if (!Blob)
    return;
  hb_face_t *Face = hb_face_create(Blob, unsigned(Index));
  hb_blob_destroy(Blob);
  const unsigned UnitsPerEm = hb_face_get_upem(Face);
  if (UnitsPerEm == 0 || hb_face_get_glyph_count(Face) == 0) {
    hb_face_destroy(Face);
    return;
  }
  FFont = hb_font_create(Face);
  hb_face_destroy(Face);
  if (hb_ot_var_has_data(hb_font_get_face(FFont))) {
    std::vector<hb_variation_t> Axes;
    for (const auto &[Tag, Value] : Variations)
      Axes.push_back({hb_tag_from_string(Tag.constData(), int(Tag.size())), Value});
    hb_font_set_variations(FFont, Axes.data(), unsigned(Axes.size()));
  }
  FMetrics.UnitsPerEm = UnitsPerEm;
  auto Metric = [&](hb_ot_metrics_tag_t Tag, double &Into) {
    hb_position_t Value = 0;
    if (hb_ot_metrics_get_position(FFont, Tag, &Value))
      Into = Value;
  };
  const double Em = UnitsPerEm;
  // Fonts without the optional tables get the proportions most applications assume.
  FMetrics.UnderlinePosition = -Em / 9;
  FMetrics.UnderlineThickness = Em / 12;
  FMetrics.XHeight = Em * 0.45;
  FMetrics.SubscriptOffset = Em * 0.2;
  FMetrics.SuperscriptOffset = Em * 0.4;
  Metric(HB_OT_METRICS_TAG_HORIZONTAL_ASCENDER, FMetrics.Ascent);
  Metric(HB_OT_METRICS_TAG_HORIZONTAL_DESCENDER, FMetrics.Descent);
  Metric(HB_OT_METRICS_TAG_UNDERLINE_OFFSET, FMetrics.UnderlinePosition);
  Metric(HB_OT_METRICS_TAG_UNDERLINE_SIZE, FMetrics.UnderlineThickness);
  Metric(HB_OT_METRICS_TAG_X_HEIGHT, FMetrics.XHeight);
  FMetrics.StrikeoutPosition = FMetrics.XHeight / 2;
  FMetrics.StrikeoutThickness = FMetrics.UnderlineThickness;
  Metric(HB_OT_METRICS_TAG_STRIKEOUT_OFFSET, FMetrics.StrikeoutPosition);
  Metric(HB_OT_METRICS_TAG_STRIKEOUT_SIZE, FMetrics.StrikeoutThickness);
  Metric(HB_OT_METRICS_TAG_SUBSCRIPT_EM_Y_OFFSET, FMetrics.SubscriptOffset);
  Metric(HB_OT_METRICS_TAG_SUPERSCRIPT_EM_Y_OFFSET, FMetrics.SuperscriptOffset);
}

TVXFontFace::~TVXFontFace()
{
  if (FFont)
    hb_font_destroy(FFont);
}

bool TVXFontFace::HasCharacter(char32_t Ch) const
{
  hb_codepoint_t Glyph = 0;
  return FFont && hb_font_get_nominal_glyph(FFont, Ch, &Glyph);
}

bool TVXFontFace::HasAxis(const char *Tag) const
{
  hb_ot_var_axis_info_t Axis;
  return FFont && hb_ot_var_find_axis_info(hb_font_get_face(FFont), hb_tag_from_string(Tag, -1), &Axis);
}

bool TVXFontFace::HasSmallCaps() const
{
  if (!FFont)
    return false;
  hb_face_t *Face = hb_font_get_face(FFont);
  unsigned Index = 0;
  return hb_ot_layout_language_find_feature(Face, HB_OT_TAG_GSUB, 0, HB_OT_LAYOUT_DEFAULT_LANGUAGE_INDEX,
                                            hb_tag_from_string("smcp", 4), &Index) ||
         hb_ot_layout_language_find_feature(Face, HB_OT_TAG_GSUB, 1, HB_OT_LAYOUT_DEFAULT_LANGUAGE_INDEX,
                                            hb_tag_from_string("smcp", 4), &Index);
}

QPainterPath TVXFontFace::GlyphOutline(std::uint32_t Glyph) const
{
  // Faces are shared between threads; an outline is made once and then copied cheaply.
  std::lock_guard Lock(FOutlineLock);
  auto It = FOutlines.constFind(Glyph);
  if (It != FOutlines.constEnd())
    return *It;
  QPainterPath Path;
  Path.setFillRule(Qt::WindingFill);
  if (FFont)
    hb_font_get_glyph_shape(FFont, Glyph, PathDrawFuncs(), &Path);
  // Fonts with very many glyphs start their store afresh now and then.
  if (FOutlines.size() >= 16384)
    FOutlines.clear();
  FOutlines.insert(Glyph, Path);
  return Path;
}

// --- the engine --------------------------------------------------------------------------------

TVXFontFacePtr TVXTextEngine::MatchFont(const TVXFontQuery &Query)
{
  std::lock_guard Lock(CacheLock);
  static QHash<QString, TVXFontFacePtr> Matches;
  const QString Key = Query.Key();
  if (auto It = Matches.constFind(Key); It != Matches.constEnd())
    return *It;
  TVXFontFacePtr Result;
  QStringList Candidates = Query.Families;
  Candidates.append(QStringLiteral("serif"));
  for (const QString &Family : Candidates) {
    FcPattern *Pattern = QueryPattern(Family, Query);
    FcResult Status = FcResultNoMatch;
    FcPattern *Match = FcFontMatch(nullptr, Pattern, &Status);
    if (Match && (IsGenericFamily(Family) || PatternHasFamily(Match, Family)))
      Result = CachedFace(Match, Query);
    if (Match)
      FcPatternDestroy(Match);
    FcPatternDestroy(Pattern);
    if (Result)
      break;
  }
  if (!Result)
    Result = std::make_shared<const TVXFontFace>(QByteArray(), 0, QString(), Query.Variations);
  if (Matches.size() > 1024)
    Matches.clear();
  Matches.insert(Key, Result);
  return Result;
}

TVXFontFacePtr TVXTextEngine::FallbackFont(char32_t Ch, const TVXFontQuery &Query)
{
  std::lock_guard Lock(CacheLock);
  static QHash<QString, TVXFontFacePtr> Fallbacks;
  const QString Key = Query.Key() + QLatin1Char('#') + QString::number(quint32(Ch));
  if (auto It = Fallbacks.constFind(Key); It != Fallbacks.constEnd())
    return *It;
  TVXFontFacePtr Result;
  FcPattern *Pattern = QueryPattern(Query.Families.value(0), Query);
  FcCharSet *Wanted = FcCharSetCreate();
  FcCharSetAddChar(Wanted, Ch);
  FcPatternAddCharSet(Pattern, FC_CHARSET, Wanted);
  FcResult Status = FcResultNoMatch;
  if (FcFontSet *Sorted = FcFontSort(nullptr, Pattern, FcFalse, nullptr, &Status)) {
    for (int I = 0; I < Sorted->nfont && !Result; ++I) {
      FcCharSet *Has = nullptr;
      if (FcPatternGetCharSet(Sorted->fonts[I], FC_CHARSET, 0, &Has) != FcResultMatch || !FcCharSetHasChar(Has, Ch))
        continue;
      FcPattern *Font = FcFontRenderPrepare(nullptr, Pattern, Sorted->fonts[I]);
      TVXFontFacePtr Face = CachedFace(Font, Query);
      FcPatternDestroy(Font);
      if (Face && Face->HasCharacter(Ch))
        Result = Face;
    }
    FcFontSetDestroy(Sorted);
  }
  FcCharSetDestroy(Wanted);
  FcPatternDestroy(Pattern);
  if (Fallbacks.size() > 4096)
    Fallbacks.clear();
  Fallbacks.insert(Key, Result);
  return Result;
}

std::vector<TVXShapedGlyph> TVXTextEngine::Shape(const QString &Text, const std::vector<TVXShapeRun> &Runs)
{
  const std::vector<std::uint8_t> Levels = BidiLevels(Text);
  std::vector<TItem> Items;
  for (const TVXShapeRun &Run : Runs)
    if (Run.Length > 0 && Run.Start >= 0 && Run.Start + Run.Length <= Text.size())
      Itemize(Text, Run, Levels, Items);
  OrderVisually(Items);
  std::vector<TVXShapedGlyph> Glyphs;
  Glyphs.reserve(std::size_t(Text.size()));
  for (const TItem &Item : Items)
    ShapeItem(Text, Item, Glyphs);
  return Glyphs;
}

bool TVXTextEngine::AddFontFolder(const QString &Folder)
{
  // fontconfig accepts a folder that does not exist; a caller must learn that no fonts came.
  if (!QFileInfo(Folder).isDir())
    return false;
  std::lock_guard Lock(CacheLock);
  return FcConfigAppFontAddDir(nullptr, reinterpret_cast<const FcChar8 *>(Folder.toUtf8().constData()));
}

} // namespace vx
