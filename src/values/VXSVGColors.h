#pragma once
// Paint colours as attribute text: "#rgb", "#rrggbb", "rgb(...)" and the colour keywords, with the
// words "none", "inherit" and "currentColor", and the way back to text.
#include "platform/rtl/VXExport.h"
#include "platform/vectorkit/VXGPColor.h"

#include <QString>

namespace vx {

// Reads a colour. "none" sets IsNone (which is only ever set by that word or cleared by a real
// colour), "inherit" sets IsInherited, "currentColor" gives CurrentColor. rgb() components wrap to
// eight bits instead of being clamped (300 gives 44). An unknown word gives Default without error;
// a malformed hexadecimal or rgb() number raises EConvertError.
VX_EXPORT TVXGPColor ParseColor(const QString &S, TVXGPColor Default, bool &IsNone, bool &IsInherited,
                      TVXGPColor CurrentColor);

// The keyword of Color if it has one, else "#rrggbb" in lower case; alpha is dropped, since export
// writes opacity as its own attribute. 0 prints "#000000".
VX_EXPORT QString SVGColorToString(TVXGPColor Color);
// Color with its alpha replaced by Opacity (0..1) * 255, rounded half to even.
VX_EXPORT TVXGPColor SetColorOpacity(TVXGPColor Color, float Opacity);
// The luminance of Color as a grey, alpha kept.
VX_EXPORT TVXGPColor SVGColorToGrayscale(TVXGPColor Color);

// The colour keyword table, matched without case; the lookups report whether they found anything.
VX_EXPORT bool SVGColorNameToColor(const QString &Name, TVXGPColor &Color);
// The keyword of an exact colour value (the first in the table where names share a value).
VX_EXPORT bool SVGColorToColorName(TVXGPColor Color, QString &Name);

} // namespace vx
