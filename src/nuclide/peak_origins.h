// Peaks that are no line of a nuclide: annihilation, escapes from the detector, and sums of two
// lines that are seen as one.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace kestrel {

struct MeasuredPeak {
    double energy = 0;     // keV
    double tolerance = 0;  // keV; a line that lies no further off is found
    double net = 0;        // counts
    double netError = 0;   // one standard deviation
};

inline constexpr double electronMass = 510.999;  // keV

enum class PeakOrigin { Unknown, Annihilation, SingleEscape, DoubleEscape, Sum };

// What a peak is apart from nuclides. Indices of peaks: of the one that escapes, or of the two that
// add up.
struct OriginOfPeak {
    PeakOrigin origin = PeakOrigin::Unknown;
    std::size_t first = 0;
    std::size_t second = 0;
    double unseen = 0;  // keV; of an escape from a line above the spectrum, instead of the peak
};

// A line above the spectrum, which shows by its escapes alone.
struct UnseenLine {
    double energy = 0;      // keV
    double mostCounts = 0;  // that it can have
};

// Of peaks in ascending order, an origin each. `open` tells the share of each peak that no nuclide
// explains: one that is explained by more than half is no escape and no sum. An escape has less
// than a third of the counts of its peak, which lies above 1400 keV, where pairs are made, or fewer
// than its unseen line; a sum less than a tenth of either of its parts, which are among the ten
// largest.
std::vector<OriginOfPeak> findOrigins(std::span<const MeasuredPeak> peaks,
                                      std::span<const double> open,
                                      std::span<const UnseenLine> unseen);

// Whether a peak lies where annihilation does.
bool isAnnihilation(const MeasuredPeak& peak);

// "single escape of 2614.5 keV"; empty for an unknown origin.
std::string originText(const OriginOfPeak& origin, std::span<const MeasuredPeak> peaks);

}  // namespace kestrel
