#pragma once
// The text engine of the standard road: font matching and per-character fallback through
// fontconfig, shaping through HarfBuzz (pair kerning, ligatures, marks, clusters), bidirectional
// runs through FriBidi, and unhinted glyph outlines in font units. It knows nothing of SVG: the text
// layout asks it for faces, shaped runs and outlines, and places them itself.
#include "platform/rtl/VXExport.h"

#include <QByteArray>
#include <QHash>
#include <QPainterPath>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

struct hb_font_t;

namespace vx {

// What a text asks of a font. Weight is 100 to 900, Width a percentage of the normal width.
struct VX_EXPORT TVXFontQuery
{
  QStringList Families;
  int Weight = 400;
  enum TSlant : std::uint8_t { slRoman, slItalic, slOblique } Slant = slRoman;
  int Width = 100;
  // Axis settings such as "wght" 650, applied to variable fonts.
  std::vector<std::pair<QByteArray, float>> Variations;

  QString Key() const;
};

// Design metrics in font units, y upwards as fonts have them (descent and underline below 0).
struct VX_EXPORT TVXFontMetrics
{
  double UnitsPerEm = 1000;
  double Ascent = 800, Descent = -200;
  double UnderlinePosition = -100, UnderlineThickness = 50;
  double StrikeoutPosition = 250, StrikeoutThickness = 50;
  double XHeight = 450;
  double SubscriptOffset = 200, SuperscriptOffset = 400;
};

// One font file at one set of axis values. Faces are shared and live as long as the engine's cache.
class VX_EXPORT TVXFontFace
{
public:
  TVXFontFace(const QByteArray &File, int Index, const QString &Family,
              const std::vector<std::pair<QByteArray, float>> &Variations);
  ~TVXFontFace();
  TVXFontFace(const TVXFontFace &) = delete;
  TVXFontFace &operator=(const TVXFontFace &) = delete;

  bool IsValid() const { return FFont != nullptr; }
  const QString &Family() const { return FFamily; }
  const TVXFontMetrics &Metrics() const { return FMetrics; }
  hb_font_t *Font() const { return FFont; }
  bool HasCharacter(char32_t Ch) const;
  // Whether the font has the variation axis Tag ("opsz", "wght" ...).
  bool HasAxis(const char *Tag) const;
  // Whether the font carries small capitals of its own (the OpenType feature "smcp").
  bool HasSmallCaps() const;
  // The unhinted outline in font units with y downwards; kept once made.
  QPainterPath GlyphOutline(std::uint32_t Glyph) const;

private:
  QString FFamily;
  hb_font_t *FFont = nullptr;
  TVXFontMetrics FMetrics;
  mutable std::mutex FOutlineLock;
  mutable QHash<std::uint32_t, QPainterPath> FOutlines;
};
using TVXFontFacePtr = std::shared_ptr<const TVXFontFace>;

// One glyph of a shaped text. Cluster is the index in the text (UTF-16) of the first character the
// glyph stands for; advances and offsets are in font units of Face, y upwards.
struct VX_EXPORT TVXShapedGlyph
{
  std::uint32_t Glyph = 0;
  int Cluster = 0;
  float XAdvance = 0, YAdvance = 0, XOffset = 0, YOffset = 0;
  const TVXFontFace *Face = nullptr;
  // The bidirectional level of the run: odd levels run right to left.
  std::uint8_t Level = 0;
};

// A piece of a text shaped in one face: Text[Start, Start + Length) with its typographic features.
struct VX_EXPORT TVXShapeRun
{
  int Start = 0, Length = 0;
  TVXFontFacePtr Face;
  TVXFontQuery Query;
  bool Kerning = true;
  bool SmallCaps = false;
  bool Ligatures = true;
};

class VX_EXPORT TVXTextEngine
{
public:
  // The first family of the query that the system has (a generic family always matches); none:
  // the system's serif face. Never nil: a query that finds no file answers an invalid face.
  static TVXFontFacePtr MatchFont(const TVXFontQuery &Query);
  // A face near Query that has Ch, for characters the chosen face lacks; nil when no font has it.
  static TVXFontFacePtr FallbackFont(char32_t Ch, const TVXFontQuery &Query);
  // Shapes Text as runs (each in its own face, with the whole text as context), falling back per
  // character to fonts that have what a run's face lacks, and orders the result visually by the
  // bidirectional levels of the text (a left-to-right paragraph). Glyphs of one cluster stay
  // together in visual order.
  static std::vector<TVXShapedGlyph> Shape(const QString &Text, const std::vector<TVXShapeRun> &Runs);
  // Adds the fonts of Folder to those matched, for applications and tests with fonts of their own;
  // false when Folder is no folder.
  static bool AddFontFolder(const QString &Folder);
};

} // namespace vx
