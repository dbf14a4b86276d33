// The net area of a peak: the counts of its region less the background that the regions on both
// sides predict under it.
#pragma once

#include <cstdint>

#include "analysis/peak_area_set.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// First and last channel of each region, both included.
struct PeakRegions {
    std::int32_t bkg1Low = 0;
    std::int32_t bkg1High = 0;
    std::int32_t pkLow = 0;
    std::int32_t pkHigh = 0;
    std::int32_t bkg2Low = 0;
    std::int32_t bkg2High = 0;
    friend bool operator==(const PeakRegions&, const PeakRegions&) = default;
};

PeakRegions regionsOf(const PeakAreaSet& set);

// Counts of the channels `low` to `high`; 0 for an empty range. Channels past the end of the
// spectrum are empty. Faults: SubscriptOutOfRange outside 0 .. 17000, Overflow.
std::int32_t sumCounts(const Spectrum& spectrum, std::int32_t low, std::int32_t high);

struct NetCounts {
    float gross = 0;  // counts of the peak region
    float net = 0;
    float netError = 0;  // 1 sigma
    // Of a net area of nothing: the background under the peak and what it is predicted from.
    float emptyError = 0;
};

// The net area without its rate. Faults: as below, but for the live time.
NetCounts netCounts(const Spectrum& spectrum, const PeakRegions& regions);

// Puts net area and count rate with their errors (1 sigma) into `set`. The order of the regions is
// not checked. Half of the background comes from the mean of each side, whatever their widths.
// Faults: those of sumCounts, DivisionByZero (no live time, a region of no channels), InvalidCall
// (negative counts).
void computeNetArea(const Spectrum& spectrum, const PeakRegions& regions, PeakAreaSet& set);

}  // namespace kestrel
