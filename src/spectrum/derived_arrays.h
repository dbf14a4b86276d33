// The two per-channel arrays derived once from every spectrum that is opened.
#pragma once

#include <cstdint>

#include "base/checked_array.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Of the logarithmic axis, in plot units.
inline constexpr double unitsOfDecade = 200.0;
// Height of an empty channel on it: just below the base line.
inline constexpr std::int32_t emptyLogHeight = -15;

struct DerivedArrays {
    // Height on the logarithmic axis.
    ChannelArray<std::int32_t> logHeights;
    // Peak measure: above 10.0 the channel is the centre of a peak; 2.0, 4.0 and 8.0 mark its
    // surroundings.
    ChannelArray<double> peakSignificance;
};

// Fills both arrays for channels 0 to channelCount - 1 and leaves the rest as it was.
// Faults: Overflow, SubscriptOutOfRange; the arrays are then partly filled.
void computeDerivedArrays(const Spectrum& spectrum, DerivedArrays& derived);

}  // namespace kestrel
