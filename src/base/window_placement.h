// Where windows stood, for the next start.
#pragma once

#include <cstdint>

#include "base/checked_array.h"

namespace kestrel {

// Place and size of a window in twips (1/1440 inch, 15 to the pixel at 96 dots per inch); all 0
// when the window was never shown.
struct WindowPlacement {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    friend bool operator==(const WindowPlacement&, const WindowPlacement&) = default;
};

// Record k belongs to the window Formk.
using WindowPlacements = CheckedArray<WindowPlacement, 17>;

}  // namespace kestrel
