// How the plot looks by the user's choice: its colours, ticks and texts.
#pragma once

#include <cstdint>

#include "base/palette.h"

namespace kestrel {

enum class ColourScheme : std::int16_t {
    Black,  // light on black
    Light,  // dark on white, for slides and paper
    Safe,   // told apart also by those who see no red or green
};

struct PlotLook {
    ColourScheme colours = ColourScheme::Black;
    bool fineTicks = false;  // minor ticks, and labels at all ticks of the linear axis
    bool largeTexts = false;

    double textPoints() const { return largeTexts ? 13.0 : 10.0; }
};

// The sixteen colours by the numbers of standardPalette, which is that of Black. Number 0 is the
// background.
const Palette& plotPalette(ColourScheme colours);

}  // namespace kestrel
