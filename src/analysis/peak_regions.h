// The regions of a good measurement around each of the peaks of a spectrum.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "analysis/net_area.h"

namespace kestrel {

struct PeakPlace {
    double centre = 0;  // channel
    double fwhm = 0;    // channels
    double reach = 0;   // channels from the centre that belong to the peak region, on either side
};

// How far a peak reaches, so that what is left out of its region stays small beside the error of
// its area: 1.27 widths hold 99.7 % of a Gaussian, which is enough for a weak peak; the strongest
// need 1.9, which hold all but eight of a million counts.
double reachOf(double fwhm, double area, double areaError);

// The regions of one peak, or of a group of them that are measured together.
struct MeasuredTogether {
    std::size_t first = 0;  // places of the peaks
    std::size_t last = 0;
    PeakRegions regions;
};

// Of peaks in ascending order. Peaks are measured together where less than half a width, or fewer
// than two channels, lie free between their regions. Backgrounds adjoin the region, reach as far as
// one peak is wide (2.5 FWHM) and over no other peak; a nearer neighbour narrows both of them
// alike, so that a sloping background cancels, but for the first half, which a side keeps if it has
// it. Regions are always in order: two channels each at least, none touches another, from channel 1
// on. Requires channelCount >= 17, and centres from channel 10 to the seventh from the end.
std::vector<MeasuredTogether> findRegions(std::span<const PeakPlace> places, int channelCount);

}  // namespace kestrel
