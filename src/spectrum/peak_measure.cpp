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
    // Over nothing above `highest`.
    void setUpTo(std::ptrdiff_t channel, double value, double highest) const {
        if (contains(channel) && at(channel) <= highest)
            at(channel) = value;
    }
    void setUnlessMarked(std::ptrdiff_t channel, double value) const {
        setUpTo(channel, value, background);
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

// The last channel of one side of a peak: down to where the counts stop falling. `step` is -1 or 1.
std::ptrdiff_t footOf(const Marks& marks, std::ptrdiff_t centre, std::ptrdiff_t step) {
    std::ptrdiff_t channel = centre + step;
    while (marks.contains(channel + step) && marks.countAt(channel + step) < marks.countAt(channel))
        channel += step;
    return channel;
}

// Returns how many channels the flank has, as the next one.
std::ptrdiff_t markLeftFlank(const Marks& marks, std::ptrdiff_t centre) {
    const std::ptrdiff_t foot = footOf(marks, centre, -1);
    marks.at(centre - 1) = leftFlank;
    for (std::ptrdiff_t channel = centre - 2; channel >= foot; --channel)
        marks.setUnlessMarked(channel, leftFlank);
    return centre - foot;
}

// It covers everything but the centre of a peak.
std::ptrdiff_t markRightFlank(const Marks& marks, std::ptrdiff_t centre) {
    const std::ptrdiff_t foot = footOf(marks, centre, 1);
    for (std::ptrdiff_t channel = centre + 1; channel <= foot; ++channel)
        marks.setUpTo(channel, rightFlank, peakCentreMeasure);
    return foot - centre;
}

// A flank that noise has cut short reaches at least as far as the one on the other side.
void markSurroundings(const Marks& marks, std::ptrdiff_t centre) {
    const std::ptrdiff_t left = markLeftFlank(marks, centre);
    const std::ptrdiff_t right = markRightFlank(marks, centre);
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
