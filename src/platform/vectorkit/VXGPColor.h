#pragma once

#include <cstdint>

namespace vx {

// A colour as the drawing layer takes it: 0xAARRGGBB, alpha in the top byte.
using TVXGPColor = std::uint32_t;

constexpr std::uint8_t VXColorAlpha(TVXGPColor color) { return std::uint8_t(color >> 24); }
constexpr std::uint8_t VXColorRed(TVXGPColor color) { return std::uint8_t(color >> 16); }
constexpr std::uint8_t VXColorGreen(TVXGPColor color) { return std::uint8_t(color >> 8); }
constexpr std::uint8_t VXColorBlue(TVXGPColor color) { return std::uint8_t(color); }

constexpr TVXGPColor VXMakeColor(std::uint8_t alpha, std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  return (TVXGPColor(alpha) << 24) | (TVXGPColor(red) << 16) | (TVXGPColor(green) << 8) | TVXGPColor(blue);
}

}  // namespace vx
