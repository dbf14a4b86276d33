#include "spectrum/peak_measure.h"

#include <algorithm>
#include <cstddef>

#include "base/integers.h"
#include "spectrum/peak_search.h"

namespace kestrel {
namespace {

constexpr double background = 1.0;  // a measure up to this is none of a peak
constexpr double leftFlank = 4.0;
constexpr double rightFlank = 8.0;
constexpr double mirroredFlank = 2.0;

// One spectrum's counts and the measure that is being written for them.
struct Marks {
    std::span<const std::int32_t> counts;
    std::span<double> measure;

    bool contains(std::ptrdiff_t channel) const {
        return channel >= 0 && channel < static_cast<std::ptrdiff_t>(counts.size());
    }
    std::int32_t countAt(std::ptrdiff_t channel) const {
        return counts[static_cast<std::size_t>(channel)];
    }
    double& at(std::ptrdiff_t channel) const { return measure[static_cast<std::size_t>(channel)]; }
    void setUnlessMarked(std::ptrdiff_t channel, double value) const {
        if (contains(channel) && at(channel) <= background)
            at(channel) = value;
    }
};

// The sums of the two neighbours of a channel, and of the two channels three away, are 32-bit
// numbers. They are formed from the eleventh channel to the seventh from the end.
void requireSumsFit(std::span<const std::int32_t> counts) {
    // Two counts of half the range always fit.
    constexpr std::int32_t half = 0x40000000;
    if (std::ranges::all_of(counts, [](std::int32_t y) { return y >= -half && y < half; }))
        return;
    std::int64_t largest = 0;
    std::int64_t smallest = 0;
    for (std::size_t k = 10; k + 6 < counts.size(); ++k) {
        const std::int64_t shoulders = std::int64_t{counts[k - 1]} + counts[k + 1];
        const std::int64_t feet = std::int64_t{counts[k - 3]} + counts[k + 3];
        largest = std::max({largest, shoulders, feet});
        smallest = std::min({smallest, shoulders, feet});
    }
    narrow32(largest);
    narrow32(smallest);
}

// Marks one side of a peak down to where the counts stop falling; `step` is -1 or 1. Returns how
// many channels the flank has.
std::ptrdiff_t markFlank(const Marks& marks, std::ptrdiff_t centre, std::ptrdiff_t step,
                         double value) {
    std::ptrdiff_t channel = centre + step;
    marks.at(channel) = value;
    while (marks.contains(channel + step) &&
           marks.countAt(channel + step) < marks.countAt(channel)) {
        channel += step;
        marks.setUnlessMarked(channel, value);
    }
    return (channel - centre) * step;
}

// A flank that noise has cut short reaches at least as far as the one on the other side.
void markSurroundings(const Marks& marks, std::ptrdiff_t centre) {
    const std::ptrdiff_t left = markFlank(marks, centre, -1, leftFlank);
    const std::ptrdiff_t right = markFlank(marks, centre, 1, rightFlank);
    for (std::ptrdiff_t distance = 1; distance <= std::max(left, right); ++distance) {
        marks.setUnlessMarked(centre - distance, mirroredFlank);
        marks.setUnlessMarked(centre + distance, mirroredFlank);
    }
}

}  // namespace

void computePeakMeasure(std::span<const std::int32_t> counts, std::span<double> measure) {
    std::ranges::fill(measure, 0.0);
    requireSumsFit(counts);
    const std::vector<FoundPeak> peaks = findPeaks(counts);
    const Marks marks{counts, measure};
    for (const FoundPeak& peak : peaks)
        marks.at(peak.centre) = peakCentreMeasure * peak.significance / peakThreshold;
    for (const FoundPeak& peak : peaks)
        markSurroundings(marks, peak.centre);
}

}  // namespace kestrel
