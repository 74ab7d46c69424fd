#pragma once
// The standard road of text layout: a text tree laid out as browsers do. The characters of the
// whole tree are collected with their white space processed across spans, given their x, y, dx, dy
// and rotate by their index in the whole text, cut into chunks at absolutely positioned characters,
// shaped per chunk by the text engine (kerning, ligatures, fallback fonts, right-to-left runs),
// anchored on their advances, moved by their baseline shifts, and turned into outlines in the shapes
// of the elements that own them, so that drawing, clipping and hit testing are those of the
// documented road.
#include "platform/textengine/VXTextEngine.h"

#include <QPainterPath>
#include <QTransform>

#include <map>
#include <optional>
#include <unordered_map>
#include <vector>

namespace vx {

class TSVGCustomText;
class TSVGText;
class TSVGTextPath;

class TSVGBrowserTextLayout
{
public:
  explicit TSVGBrowserTextLayout(TSVGText &Root);
  // Builds the outlines into the shapes of the text tree (which the caller has emptied).
  void Run();
  // Whether a text tree is one this road lays out; vertical text on a path keeps the documented
  // layout.
  static bool Handles(const TSVGText &Root);

private:
  // One addressable character (a code point) with the element that owns it.
  struct TChar
  {
    char32_t Code = 0;
    TSVGCustomText *Owner = nullptr;
    bool Preserve = false;
    std::optional<float> X, Y;
    float DX = 0, DY = 0;
    std::optional<float> Rotate;
    // A lower-case letter drawn as a smaller capital, for fonts without small capitals.
    bool SmallCap = false;
    // The text path the character flows along, if any.
    TSVGTextPath *Path = nullptr;
  };
  // What the shaping of one owner needs: its face, size and features.
  struct TStyle
  {
    TVXFontFacePtr Face;
    TVXFontQuery Query;
    float Size = 0;
    bool Kerning = true;
    bool SmallCaps = false;
    float LetterSpacing = 0;
    float WordSpacing = 0;
    // Downwards, in user units: baseline-shift and the dominant and alignment baselines.
    float BaselineOffset = 0;
  };
  // Glyphs of one cluster, placed.
  struct TCluster
  {
    int Char = 0;
    // The UTF-16 index in the chunk's text that the shaper gave it.
    int Unit = 0;
    // The shaped advance, and that with the spacing properties.
    float Width = 0;
    float Advance = 0;
    bool RelativeShift = false;
    // Off the end of its text path.
    bool Hidden = false;
    // The horizontal stretch of lengthAdjust="spacingAndGlyphs".
    float XScale = 1;
    // Turns the glyphs within the cluster (upright glyphs of vertical text).
    QTransform GlyphTransform;
    QTransform Transform;
    std::vector<const TVXShapedGlyph *> Glyphs;
  };

  // The characters of an element and its descendants (its range).
  struct TRange
  {
    TSVGCustomText *Element;
    int Begin, End;
  };

  // The outline of a text path as cubic segments, each with the arc length at even steps of its
  // parameter, so that a distance along the path finds its point and direction exactly.
  struct TFlowPath
  {
    struct TSegment
    {
      QPointF P0, P1, P2, P3;
      double Start = 0;
      std::vector<double> Lengths;
    };
    std::vector<TSegment> Segments;
    double Length = 0;
    // The point at Distance and the direction there in degrees; false past either end.
    bool At(double Distance, QPointF &Point, double &Angle) const;
  };

  void Collect(TSVGCustomText &Element, TSVGTextPath *Path);
  void CollapseWhiteSpace();
  // The x, y, dx, dy and rotate of every element onto its range of characters, outer first.
  void ResolvePositions();
  void LayOutChunk(int Start, int End);
  // textLength of the elements whose characters are in the chunk, outer elements first.
  void AdjustLengths(int Start, int End, std::vector<TCluster> &Clusters);
  // Places the clusters of a chunk along its text path; clusters off the path are hidden.
  void PlaceOnPath(TSVGTextPath &TextPath, double Offset, std::vector<TCluster> &Clusters);
  const TFlowPath &FlowPathOf(TSVGTextPath &TextPath);
  // The outlines and decorations of placed clusters into the paths of their elements.
  void EmitOutlines(const std::vector<TCluster> &Clusters, bool OnPath);
  const TStyle &StyleOf(TSVGCustomText *Owner);
  const TStyle &StyleOf(const TChar &Char);
  QPainterPath &PathOf(TSVGCustomText *Owner);
  // The lines under, over and through the clusters Own (indices into Clusters) of Owner.
  void AddDecorations(TSVGCustomText *Owner, const TStyle &Style, const std::vector<TCluster> &Clusters,
                      const std::vector<int> &Own, const QTransform &ChunkTransform);

  TSVGText &FRoot;
  std::vector<TChar> FChars;
  std::vector<TRange> FRanges;
  // Those of the elements that ask for a textLength, in the same order.
  std::vector<TRange> FLengthRanges;
  std::vector<std::pair<TSVGCustomText *, QPainterPath>> FPaths;
  // Where each owner's entry of FPaths is, so that many spans cost no scan per glyph.
  std::unordered_map<TSVGCustomText *, std::size_t> FPathIndex;
  // By element, and whether for its synthesized small capitals.
  std::map<std::pair<const TSVGCustomText *, bool>, TStyle> FStyles;
  std::map<const TSVGTextPath *, TFlowPath> FFlowPaths;
  // The pen after the last chunk.
  float FLastX = 0, FLastY = 0;
};

} // namespace vx
