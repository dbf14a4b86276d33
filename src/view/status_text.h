// The status line of the cursor, and the live time of the plot.
#pragma once

#include <cstdint>
#include <string>

#include "spectrum/derived_arrays.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// " " for no peak, "_" and "-" for the surroundings of one, "*" for its centre.
char peakMark(double significance);

// For example "ch:* 1234( 661.6keV) c:   12345". Faults: SubscriptOutOfRange for a negative
// channel, those of channelToEnergy.
std::string statusLine(const Spectrum& spectrum, const DerivedArrays& derived,
                       std::int16_t channel);

// What is under the pointer at x in the user scale, whose channel is the one that a press would
// move the cursor to: "Channel 1323   661.6 keV   12345 counts". Empty outside the spectrum.
std::string pointerLine(const Spectrum& spectrum, double x);

// First and last channel, both included.
struct ChannelRange {
    std::int16_t low = 0;
    std::int16_t high = 0;
};
// What is drawn from one place in the user scale to another, inside the spectrum.
ChannelRange drawnRange(const Spectrum& spectrum, double from, double to);

// "Channels 1310 to 1340   31 wide   sum 12345   net 10012": the net counts are those above the
// straight line between the ends.
std::string rangeLine(const Spectrum& spectrum, const ChannelRange& range);

std::string liveTimeHeader(const Spectrum& spectrum);

}  // namespace kestrel
