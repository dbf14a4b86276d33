// The marks of a nuclide's lines on the plot: the channels around each line in a colour that tells
// its intensity.
#pragma once

#include <cstdint>
#include <span>

#include "base/canvas.h"
#include "base/checked_array.h"
#include "base/palette.h"
#include "spectrum/spectrum.h"

namespace kestrel {

struct MarkedLine {
    double energy = 0;     // keV
    double intensity = 0;  // percent
};

// Sets all channels to unmarked, then, if the marks are on, marks the lines in their order. Fewer
// than two lines give no mark. A line beyond the end of the spectrum ends the marking. No faults,
// whatever the calibration is.
void buildNuclideMarks(ChannelArray<Colour>& channelColour, bool nuclRoiOn,
                       std::span<const MarkedLine> lines, const Spectrum& spectrum,
                       const Palette& palette);

}  // namespace kestrel
