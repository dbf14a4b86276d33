// The sixteen standard colours, by number.
#pragma once

#include <array>

#include "base/canvas.h"

namespace kestrel {

using Palette = std::array<Colour, 16>;

// 0 black, 1 blue, 2 green, 3 cyan, 4 red, 5 magenta, 6 yellow (brown), 7 white (light grey), 8
// grey, and 9 to 15 the light forms of 1 to 7.
inline constexpr Palette standardPalette = {
    0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
    0x808080, 0xFF0000, 0x00FF00, 0xFFFF00, 0x0000FF, 0xFF00FF, 0x00FFFF, 0xFFFFFF,
};

// Those that are named in more than one place.
namespace palette_number {
inline constexpr int black = 0;
inline constexpr int green = 2;
inline constexpr int grey = 8;
inline constexpr int lightGreen = 10;
inline constexpr int lightRed = 12;
inline constexpr int white = 15;
}  // namespace palette_number

}  // namespace kestrel
