#pragma once
// The work one draw may do through the things that can multiply it: nested pictures, pattern tiles
// and offscreen layers. Each of them can show others of its kind (a picture showing a picture six
// times, a tile filled with a pattern nine times), so a few lines of markup can ask for millions.
// The outermost draw on a thread opens one budget that all of them charge however deep they sit:
// a number of renderings, and the pixels of the rasters they fill. Past it the reference is skipped
// rather than raised: a picture is not drawn, a tile paints nothing and a layer is folded (drawn
// without a raster of its own), while the rest of the picture still draws.
#include "platform/rtl/VXExport.h"

#include <cstdint>

namespace vx {

class VX_EXPORT TSVGDrawScope
{
public:
  // Renderings of a tile or a layer in one draw; a nested picture counts as PictureRenderings.
  static constexpr std::int64_t MaxRenderings = 16384;
  static constexpr std::int64_t PictureRenderings = 16;
  // 1 G pixels: four layers the size of the largest bitmap, or five hundred the size of a large screen.
  static constexpr std::int64_t MaxPixels = std::int64_t(1) << 30;

  // Opened by every draw; the outermost one starts a fresh budget.
  TSVGDrawScope();
  ~TSVGDrawScope();
  TSVGDrawScope(const TSVGDrawScope &) = delete;
  TSVGDrawScope &operator=(const TSVGDrawScope &) = delete;

  // Charges Renderings and Pixels to the draw under way; false when that would pass the budget,
  // which is then spent: nothing more of these kinds is done in this draw. Work done outside any
  // draw is not counted.
  static bool Charge(std::int64_t Pixels, std::int64_t Renderings = 1);
  // Whether the draw under way has spent its budget.
  static bool Spent();
};

} // namespace vx
