#pragma once
// The "pattern" paint server. Like a gradient it is never drawn in place: an element whose fill or
// stroke names it asks it, through PaintServerBrush, for a tile, which the pattern renders once
// into a new bitmap that the brush then repeats. Nothing is cached in the pattern; the painted
// element's brush keeps the bitmap until its paint is resolved again.
//
// Loops end quietly instead of hanging: a pattern whose tile is being rendered gives no tile when
// its own contents ask for it again (they paint nothing there), and an href chain that comes back
// to a pattern already drawing stops there. A tile larger than MaxTileSide on a side, or one that
// would take the tiles being rendered (this one and those it is nested in) beyond MaxTilePixels in
// all, is refused: the paint then draws nothing.
#include "platform/rtl/VXExport.h"
#include "platform/vectorkit/VXGPBitmap.h"
#include "tree/VXSVGReferenceListener.h"
#include "tree/VXSVGCustomViewBox.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vx {

// The attributes of a pattern that may be given or left to the pattern its href names.
enum TSVGPatternAttribute : std::uint8_t {
  paX, paY, paWidth, paHeight, paUnits, paContentUnits, paTransform, paAspectRatio
};
using TSVGPatternAttributes = TSet<TSVGPatternAttribute, std::uint16_t>;

class VX_EXPORT TSVGPattern : public TSVGCustomViewBox
{
  VX_SVG_ELEMENT_CLASS(TSVGPattern)

public:
  static constexpr int MaxTileSide = VXMaxBitmapSide;
  static constexpr std::int64_t MaxTilePixels = std::int64_t(1) << 24;

  explicit TSVGPattern(TSVGDocument *Owner);
  ~TSVGPattern() override;

  TSVGElementType SVGType() const override { return etPattern; }
  TSVGElementTypes ChildSVGTypes() const override { return SVGGroupChildTypes(); }
  bool DoShouldDraw() const override { return false; }
  // Never hit where it stands: its contents are hit only where they are drawn.
  TSVGGraphicElement *ElementAtPos(const TMatrix &, TVXGPCanvas &, const TPointF &, const TRectF &,
                                   TSVGFindOptions) override
  {
    return nullptr;
  }
  using TSVGCustomViewBox::ElementAtPos;

  // The id named by "xlink:href", without "#". Setting it makes this pattern a listener of the named
  // element (and no longer of the old one); the target's destruction empties the reference.
  const QString &Reference() const { return FReference; }
  void SetReference(const QString &Value);
  // Read, saved and copied; contents are always drawn in the tile's own space.
  TSVGCoordinateSystemUnit ContentUnits() const { return FContentUnits; }
  void SetContentUnits(TSVGCoordinateSystemUnit Value);
  TSVGCoordinateSystemUnit Units() const { return FUnits; }
  void SetUnits(TSVGCoordinateSystemUnit Value);
  // The attributes loaded from XML or set through this class's setters; a view box counts as given
  // when it is specified.
  TSVGPatternAttributes GivenAttributes() const { return FGiven; }
  // For readers that restore a loaded pattern (the binary component stream).
  void SetGivenAttributes(TSVGPatternAttributes Value) { FGiven = Value; }
  // "patternTransform": it takes the tile and its contents into the painted element's space.
  const TMatrix &PatternMatrix() const { return FPatternMatrix; }
  void SetPatternMatrix(const TMatrix &Value);
  QString GetPatternTransformMatrix() const;
  // Fails as the transform parser does and keeps the old matrix.
  void SetPatternTransformMatrix(const QString &Value);

  // A new bitmap with the tile for Element, drawn under Matrix, whose bounds are Rect: the box of
  // the tile rectangle (width and height fractions of Rect in bounding-box units) under the pattern
  // transform and Matrix, truncated to whole pixels, with the contents drawn into it. The pattern's
  // own attributes make the tile: an href lends contents only. The bitmap tiles from the canvas origin, so the contents
  // are laid in with the phase that puts a tile's corner where the tile rectangle's corner is. Nil
  // when the tile is refused or already being rendered further out.
  virtual std::shared_ptr<TVXGPBitmap> GetPattern(TSVGGraphicElement &Element, const TMatrix &Matrix,
                                                  const TRectF &Rect);
  // By the standard rules false when the pattern has nothing to paint for Client (no stops or
  // contents, or a box without area in bounding-box units); Target then paints nothing, and the
  // caller may paint a fallback instead.
  bool PaintServerBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Rect,
                        TVXGPBrush &Target) override;

  // A paint server takes no room: it adds nothing to the bounds of its container.
  TRectF GetBoundsRect() const override { return TRectF{}; }
  TRectF GetBoundsRect(const TMatrix &) const override { return TRectF{}; }

  void NotifyListener(TSVGElement *Element) override;
  void AssignProperties(const TSVGElement *Source) override;
  void Clear() override;

protected:
  void DoLoadFromXML(const IXMLNode &Node) override;
  // Writes x, y, width, height, the href, the transform and both units (defaults included).
  void DoSaveToXML(const IXMLNode &Node) override;
  // Own contents, then those of the pattern the href names, drawn on top, under Matrix, into which
  // GetPattern has already composed the pattern transform.
  void InternalDraw(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect) override;

private:
  // Whether the tile is made by the standard rules: every attribute not given and the contents,
  // when the pattern has none, are taken through the href chain; the tile lies at x, y of the
  // pattern's space, which patternTransform takes to the painted element's user space, and the
  // brush places the bitmap there, rotated or skewed as the transform says; contents in
  // bounding-box units are scaled by the box unless a view box maps them. Otherwise the classic
  // rules of GetPattern, with an href that lends contents only.
  bool TilesByStandardRules() const { return FollowsStandardSVG(); }
  // This pattern and those its href chain names, nearest first, ending before a repeated one.
  std::vector<TSVGPattern *> TemplateChain();
  // What the href chain resolves to by the standard rules.
  struct TStandardAttributes
  {
    std::vector<TSVGPattern *> Chain;
    // The nearest patterns with a specified view box and with contents, or nil.
    TSVGPattern *ViewBox = nullptr;
    TSVGPattern *Contents = nullptr;
    // The tile, or the contents, in bounding-box units.
    bool BoxUnits = true;
    bool BoxContents = false;
    // The nearest pattern of the chain that was given Attribute, or nil.
    TSVGPattern *GiverOf(TSVGPatternAttribute Attribute) const;
  };
  TStandardAttributes ResolveStandardAttributes();
  // The tile rectangle in the pattern's space, for an element whose box is Box.
  static TRectF StandardTile(const TStandardAttributes &Attributes, const TSVGGraphicElement &Client,
                             const TRectF &Box);
  // The contents' space in the tile's space, whose origin is the tile's corner; false for a view
  // box without area.
  bool StandardContentsMatrix(const TStandardAttributes &Attributes, const TRectF &Box, const TSizeF &Tile,
                              TMatrix &Result) const;
  // The standard road of PaintServerBrush: false when the pattern paints nothing for Client.
  bool StandardBrush(TSVGGraphicElement &Client, const TMatrix &Matrix, const TRectF &Box, TVXGPBrush &Target);
  // Draws this pattern's own children under Matrix, without the href target's.
  void DrawOwnContents(const TMatrix &Matrix, TVXGPCanvas &Canvas, const TRectF &Rect);
  void GiveLoadedAttributes(const IXMLNode &Node);

  // Draws the contents into Bitmap under Matrix, which puts the tile's corner at the origin. Corner is
  // that corner in device units, Offset the top left of the tile's box from it.
  void RenderTile(TVXGPBitmap &Bitmap, const TMatrix &Matrix, const TPointF &Corner, const TPointF &Offset);

  TSVGCoordinateSystemUnit FContentUnits = csuUserSpaceOnUse;
  TSVGCoordinateSystemUnit FUnits = csuObjectBoundingBox;
  QString FReference;
  TMatrix FPatternMatrix = VXIdentityMatrix;
  TSVGPatternAttributes FGiven;
  TSVGReferenceListener FListener;
};

} // namespace vx
