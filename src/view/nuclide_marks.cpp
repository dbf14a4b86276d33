#include "view/nuclide_marks.h"

#include <algorithm>
#include <array>

#include "base/runtime_fault.h"
#include "spectrum/energy_calibration.h"

namespace kestrel {
namespace {

// compatibility: mark not centred.
constexpr int channelsBelow = 7;
constexpr int channelsAbove = 6;
constexpr std::size_t fewestLines = 2;
constexpr int lastChannel = static_cast<int>(channelLimit) - 1;

std::size_t markColour(double intensity) {
    struct Step {
        double above;
        std::size_t colour;
    };
    static constexpr std::array<Step, 5> steps = {
        {{1, 10}, {10, 14}, {30, 11}, {70, 13}, {80, 12}}};
    std::size_t colour = 0;
    for (const Step& step : steps) {
        if (intensity > step.above)
            colour = step.colour;
    }
    return colour;
}

// The channel of a line; far above the spectrum or far below it where none is that of its energy.
int markedChannel(const Calibration& calibration, double energy) {
    constexpr int farAbove = 100000;
    constexpr int farBelow = -100000;
    try {
        return energyToChannel(calibration, energy);
    } catch (const RuntimeFault& fault) {
        const bool below = (energy - calibration.a) * calibration.b < 0;
        return fault.fault() != Fault::Overflow || below ? farBelow : farAbove;
    }
}

}  // namespace

void buildNuclideMarks(ChannelArray<Colour>& channelColour, bool nuclRoiOn,
                       std::span<const MarkedLine> lines, const Spectrum& spectrum,
                       const Palette& palette) {
    channelColour.fill(0);
    if (!nuclRoiOn || lines.size() < fewestLines)
        return;
    for (const MarkedLine& line : lines) {
        const int channel = markedChannel(spectrum.calCurrent, line.energy);
        if (channel + channelsAbove > spectrum.channelCount)
            return;
        const Colour colour = palette.at(markColour(line.intensity));
        const int last = std::min(channel + channelsAbove, lastChannel);
        for (int i = std::max(channel - channelsBelow, 1); i <= last; ++i)
            channelColour[i] = colour;
    }
}

}  // namespace kestrel
