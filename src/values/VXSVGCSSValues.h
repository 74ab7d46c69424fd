#pragma once
// Paint, colour and opacity text as browsers read it: the CSS Color 4 forms, paints with a fallback
// behind a reference, opacities as percentages. Unlike the classic parsers these never raise and
// never fall back to a default: they answer false for text that is not valid, and the caller
// ignores the declaration.
#include "platform/rtl/VXExport.h"
#include "platform/vectorkit/VXGPColor.h"

#include <QString>

#include <cstdint>

namespace vx {

// Keywords, "transparent", "#rgb", "#rgba", "#rrggbb", "#rrggbbaa", rgb()/rgba() with numbers or
// percentages (commas or blanks between, an alpha after a comma or a slash), hsl()/hsla().
// Components are clamped, not wrapped. "currentColor" is no colour here: the caller resolves it.
VX_EXPORT bool TryParseCSSColor(const QString &S, TVXGPColor &Color);

// A number, or a percentage of 1, clamped to 0..1.
VX_EXPORT bool TryParseCSSOpacity(const QString &S, float &Opacity);

// What a paint names besides a reference: nothing, a colour, the colour property, or the fill or
// stroke of the element that a marker or a use stands for.
enum TSVGPaintKeyword : std::uint8_t { pkAbsent, pkNone, pkColor, pkCurrentColor, pkContextFill, pkContextStroke };

struct VX_EXPORT TSVGCSSPaint
{
  // Whether the text starts with url(...), and the id it names in this document (empty for a
  // reference into another file, which never resolves).
  bool HasReference = false;
  QString URI;
  // The paint itself, or, behind a reference, the fallback (pkAbsent when none is given).
  TSVGPaintKeyword Keyword = pkAbsent;
  TVXGPColor Color = 0;
};

// "none", a colour, "currentColor", "context-fill", "context-stroke", or "url(#id)" optionally
// followed by one of the first three. "inherit" is left to the caller.
VX_EXPORT bool TryParseCSSPaint(const QString &S, TSVGCSSPaint &Paint);

// A transform of the CSS property in the attribute's syntax: the units that CSS writes behind
// angles and lengths ("deg", "px") are dropped.
VX_EXPORT QString CSSTransformToSVG(const QString &S);

// The point that transform-origin names, in user units, for a reference box of Width by Height:
// one or two keywords (left, center, right, top, bottom), percentages of the box, or numbers in
// pixels; a third value (the depth) is read past. False for text that is no origin.
VX_EXPORT bool TryParseTransformOrigin(const QString &S, float Width, float Height, float &X, float &Y);

} // namespace vx
