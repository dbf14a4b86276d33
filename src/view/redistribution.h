// The counts of one spectrum on the channels of another, by energy.
#pragma once

#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// A channel reaches half a channel to either side of its number, at which the calibration gives the
// energy. Within a channel the counts lie evenly in energy, and each part of them goes to the
// channel that covers it. All counts are still there: those of channels, below and above together
// are those of the source, to the rounding of doubles.
//
// The variance of a channel is the sum of parts^2 * counts: that of the weighted sum of independent
// counts. Channels that share counts are correlated, so variances must not be added up where a
// sum over channels is asked for.
struct Redistributed {
    std::vector<double> counts;
    std::vector<double> variances;
    double below = 0;  // counts of energies before the first channel
    double above = 0;  // and past the last one
};

// The counts of `source` on the channels of `target`. Where either calibration does not rise from
// each channel to the next, channels keep their numbers. Faults: SubscriptOutOfRange where `source`
// has more channels than can be.
Redistributed redistribute(const Spectrum& source, const Spectrum& target);

}  // namespace kestrel
