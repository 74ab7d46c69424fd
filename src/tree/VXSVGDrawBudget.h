#pragma once
// The work one draw may do through the things that can multiply it: nested pictures, pattern tiles
// and offscreen layers. Each of them can show others of its kind (a picture showing a picture six
// times, a tile filled with a pattern nine times), so a few lines of markup can ask for millions.
// The outermost draw on a thread opens one budget, counted in pixels, that all of them charge
// however deep they sit. Past it the reference is skipped rather than raised: a picture is not
// drawn, a tile paints nothing and a layer is folded (drawn without a raster of its own), while the
// rest of the picture still draws.
#include <cstdint>

namespace vx {

class TSVGDrawScope
{
public:
  // 256 M pixels: a thousand layers the size of a large screen.
  static constexpr std::int64_t Budget = std::int64_t(1) << 28;
  // The least a tile or a layer costs, whatever its size: rendering one has a price of its own.
  static constexpr std::int64_t MinCharge = std::int64_t(1) << 14;
  // What one nested picture costs: 1024 of them fill the budget.
  static constexpr std::int64_t PictureCharge = Budget / 1024;

  // Opened by every draw; the outermost one starts a fresh budget.
  TSVGDrawScope();
  ~TSVGDrawScope();
  TSVGDrawScope(const TSVGDrawScope &) = delete;
  TSVGDrawScope &operator=(const TSVGDrawScope &) = delete;

  // Charges Pixels (at least MinCharge) to the draw under way; false when that would pass the
  // budget, which is then spent: nothing more of these kinds is done in this draw. Work done
  // outside any draw is not counted.
  static bool Charge(std::int64_t Pixels);
  // Whether the draw under way may still charge something.
  static bool Spent();
};

} // namespace vx
