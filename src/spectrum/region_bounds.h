// The three regions of a peak as the peak-area dialog has them: six channels in text.
#pragma once

#include <array>
#include <string>

namespace kestrel {

struct RegionBounds {
    bool shown = false;  // the peak-area flag: true while the dialog is open
    // Low and high channel of the low background, the peak and the high background.
    std::array<std::string, 6> texts;
};

}  // namespace kestrel
