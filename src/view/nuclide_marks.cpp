#include "view/nuclide_marks.h"

#include <algorithm>
#include <array>

#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "spectrum/energy_calibration.h"

namespace kestrel {
namespace {

// compatibility: mark not centred.
constexpr int channelsBelow = 7;
constexpr int channelsAbove = 6;
constexpr std::size_t fewestLines = 2;
constexpr int lastChannel = static_cast<int>(channelLimit) - 1;

// In the order in which nuclides are chosen, by number in the palette.
constexpr std::array<std::size_t, mostMarkedNuclides> nuclideColours = {14, 11, 13, 10, 12};

// 0 for a line too weak to be marked.
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

bool fits(int channel, const Spectrum& spectrum) {
    return channel + channelsAbove <= spectrum.channelCount;
}

LineMark markOf(const MarkedNuclide& nuclide, const MarkedLine& line, int channel, Colour colour) {
    return {channel, colour, line.intensity,
            nuclide.name + ' ' + formatNumber(line.energy, "###0.0")};
}

}  // namespace

NuclideMarks marksOfOne(const MarkedNuclide& nuclide, bool photonsOnly, const Spectrum& spectrum,
                        const Palette& palette) {
    NuclideMarks marks;
    if (nuclide.lines.size() < fewestLines)
        return marks;
    for (const MarkedLine& line : nuclide.lines) {
        const int channel = markedChannel(spectrum.calCurrent, line.energy);
        if (!fits(channel, spectrum))
            break;
        const std::size_t colour = markColour(line.intensity);
        if (line.photon || !photonsOnly)
            marks.lines.push_back(
                markOf(nuclide, line, channel, colour == 0 ? 0 : palette.at(colour)));
    }
    return marks;
}

NuclideMarks marksOfSeveral(std::span<const MarkedNuclide> nuclides, bool photonsOnly,
                            const Spectrum& spectrum, const Palette& palette) {
    NuclideMarks marks;
    for (const MarkedNuclide& nuclide : nuclides) {
        const Colour colour = palette.at(nuclideColours.at(marks.legend.size()));
        marks.legend.push_back({nuclide.name, colour});
        for (const MarkedLine& line : nuclide.lines) {
            const int channel = markedChannel(spectrum.calCurrent, line.energy);
            const bool shown = line.photon || !photonsOnly;
            if (shown && markColour(line.intensity) != 0 && fits(channel, spectrum))
                marks.lines.push_back(markOf(nuclide, line, channel, colour));
        }
    }
    std::ranges::stable_sort(marks.lines, {}, &LineMark::intensity);
    return marks;
}

void colourChannels(ChannelArray<Colour>& channelColour, const NuclideMarks& marks) {
    channelColour.fill(0);
    for (const LineMark& mark : marks.lines) {
        const int last = std::min(mark.channel + channelsAbove, lastChannel);
        for (int i = std::max(mark.channel - channelsBelow, 1); i <= last; ++i)
            channelColour[i] = mark.colour;
    }
}

}  // namespace kestrel
