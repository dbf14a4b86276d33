// The marks of nuclides' lines on the plot: the channels around each line in a colour that tells
// its intensity or, where several nuclides are marked at once, its nuclide.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "base/canvas.h"
#include "base/checked_array.h"
#include "base/palette.h"
#include "spectrum/spectrum.h"

namespace kestrel {

inline constexpr std::size_t mostMarkedNuclides = 5;

struct MarkedLine {
    double energy = 0;     // keV
    double intensity = 0;  // percent
    bool photon = true;    // a gamma or X-ray
};

struct MarkedNuclide {
    std::string name;
    std::vector<MarkedLine> lines;
};

struct LineMark {
    int channel = 0;
    Colour colour = 0;  // 0: takes the colour of others away
    double intensity = 0;
    std::string label;
};

struct NuclideMarks {
    struct Entry {
        std::string name;
        Colour colour = 0;
    };
    std::vector<LineMark> lines;  // a later one covers those before it
    std::vector<Entry> legend;
};

// The marks of one nuclide, in the order of its lines. Fewer than two lines give no mark. A line
// beyond the end of the spectrum ends the marking. No faults, whatever the calibration is.
NuclideMarks marksOfOne(const MarkedNuclide& nuclide, bool photonsOnly, const Spectrum& spectrum,
                        const Palette& palette);

// The marks of up to five nuclides, each in its colour and in the legend: all lines above 1 % that
// the spectrum has, a stronger one over a weaker.
NuclideMarks marksOfSeveral(std::span<const MarkedNuclide> nuclides, bool photonsOnly,
                            const Spectrum& spectrum, const Palette& palette);

// Sets all channels to unmarked, then marks those of the lines.
void colourChannels(ChannelArray<Colour>& channelColour, const NuclideMarks& marks);

}  // namespace kestrel
