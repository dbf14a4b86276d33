#include "spectrum/peak_search.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "base/integers.h"
#include "spectrum/curvature_filter.h"
#include "spectrum/peak_tops.h"

namespace kestrel {
namespace {

// Group widths that are tried: narrow for germanium at few channels, wide for germanium at many
// channels and for scintillators. A filter wider than an eighth of the spectrum tells nothing.
constexpr int widths[] = {1, 2, 4, 8, 16};
constexpr int channelsPerWidth = 64;

// A stretch of channels that curve downwards.
struct Bulge {
    int first = 0;
    int last = 0;
    FoundPeak peak;
    bool dropsOnBothSides = false;
};

// Sums over the channels of a bulge; all of them positive where the counts bulge upwards.
struct BulgeSums {
    double strongest = 0;  // significance of a single channel
    double depth = 0;
    double moment = 0;  // of the depth, about the first channel
    double left = 0;    // depth seen from either side
    double right = 0;
};

BulgeSums sumUp(const CurvatureFilter& filter, int first, int last) {
    BulgeSums sums;
    for (int channel = first; channel <= last; ++channel) {
        const double left = -filter.curvatureFrom(-1, channel);
        const double right = -filter.curvatureFrom(1, channel);
        const double depth = left + right;
        const double variance = filter.variance(channel);
        // A comparison of squares, with room for rounding, spares most of the roots.
        if (variance > 0 && depth * depth > 0.999 * sums.strongest * sums.strongest * variance)
            sums.strongest = std::max(sums.strongest, depth / std::sqrt(variance));
        sums.depth += depth;
        sums.moment += depth * (channel - first);
        sums.left += left;
        sums.right += right;
    }
    return sums;
}

// A peak drops to both sides, the edge of a plateau to one. Even on a slope a peak shows three
// tenths of its depth on either side.
bool dropsOnBothSides(const BulgeSums& sums) {
    return std::min(sums.left, sums.right) > 0.3 * (sums.left + sums.right);
}

int centreOf(const CurvatureFilter& filter, const BulgeSums& sums, int first, int last) {
    const double centroid = first + sums.moment / sums.depth - filter.middleOffset();
    return std::clamp(toInt32(centroid), first, last);
}

// Narrow peaks show best in a single channel, wide ones in the sum over the bulge.
Bulge measureBulge(const CurvatureFilter& filter, int first, int last) {
    const BulgeSums sums = sumUp(filter, first, last);
    const double variance = filter.varianceOfSum(first, last);
    const double together = variance > 0 ? sums.depth / std::sqrt(variance) : 0;
    return {first,
            last,
            {centreOf(filter, sums, first, last), std::max(sums.strongest, together)},
            dropsOnBothSides(sums)};
}

// Below 0 where a channel curves down by more than the threshold: its curvature squared with the
// sign kept, against the square that chance explains.
double margin(const CurvatureFilter& filter, int channel) {
    constexpr double square = candidateThreshold * candidateThreshold;
    const double curvature = filter.curvature(channel);
    return square * filter.variance(channel) + curvature * std::fabs(curvature);
}

bool isCandidate(const CurvatureFilter& filter, int channel) {
    // Counts below 0, as a subtracted background leaves them, may have no variance to compare with.
    return margin(filter, channel) < 0 && filter.variance(channel) >= 0;
}

// The first candidate from `channel` on, or the channel behind the last one. Most channels are none
// and are passed by the block: the compiler turns a loop of constant length that stores what it
// computes into vector instructions.
int nextCandidate(const CurvatureFilter& filter, int channel) {
    std::array<double, 8> margins{};
    constexpr int block = margins.size();
    const auto noneInBlock = [&] {
        for (int i = 0; i < block; ++i)
            margins[static_cast<std::size_t>(i)] = margin(filter, channel + i);
        std::int64_t signs = 0;  // negative when one of the margins is
        for (const double m : margins)
            signs |= std::bit_cast<std::int64_t>(m);
        return signs >= 0;
    };
    while (channel + block <= filter.last() && noneInBlock())
        channel += block;
    while (channel <= filter.last() && !isCandidate(filter, channel))
        ++channel;
    return channel;
}

// A bulge is a stretch of channels that all curve downwards, one of them at least as a candidate.
std::vector<Bulge> significantBulges(const CurvatureFilter& filter) {
    std::vector<Bulge> bulges;
    const auto curvesDown = [&](int channel) { return filter.curvature(channel) < 0; };
    for (int channel = nextCandidate(filter, filter.first()); channel <= filter.last();
         channel = nextCandidate(filter, channel + 1)) {
        int first = channel;
        while (first > filter.first() && curvesDown(first - 1))
            --first;
        while (channel < filter.last() && curvesDown(channel + 1))
            ++channel;
        const Bulge bulge = measureBulge(filter, first, channel);
        if (bulge.peak.significance > peakThreshold)
            bulges.push_back(bulge);
    }
    return bulges;
}

// Lines that stand close together hide each other's feet, and the filter may see them as one bulge.
// Tops are compared in half the filter's width, which is a third to an eighth of such a line, and
// valleys are no further away than two lines.
constexpr int topReach = 6;  // in filter widths

// The tops in and beside the bulges, where there are two or more: a single one tells nothing apart.
std::vector<Top> topsAround(const std::vector<Bulge>& bulges, const RunningSums& sums, int width) {
    const int reach = topReach * width;
    const CurvatureFilter filter(sums, std::max(1, width / 2));
    std::vector<Top> tops;
    for (std::size_t i = 0; i < bulges.size();) {
        const int first = bulges[i].first - reach;
        int last = bulges[i].last + reach;
        while (++i < bulges.size() && bulges[i].first - reach <= last)
            last = bulges[i].last + reach;
        const std::vector<Top> together = findTops(filter, first, last, reach);
        if (together.size() > 1)
            tops.insert(tops.end(), together.begin(), together.end());
    }
    return tops;
}

// A bulge with one top keeps its own centre, which all its channels together tell.
void addBulge(std::vector<FoundPeak>& peaks, const Bulge& bulge, std::span<const Top> tops) {
    if (tops.size() > 1)
        for (const Top& top : tops)
            peaks.push_back({top.centre, top.significance});
    else if (bulge.dropsOnBothSides || tops.size() == 1)
        peaks.push_back(bulge.peak);
}

struct Search {
    int width = 1;
    std::vector<Bulge> bulges;

    // Of what is a peak by itself.
    double totalSignificance() const {
        double sum = 0;
        for (const Bulge& bulge : bulges)
            if (bulge.dropsOnBothSides)
                sum += bulge.peak.significance;
        return sum;
    }
};

std::vector<FoundPeak> peaksOf(const Search& search, const RunningSums& sums) {
    const CurvatureFilter filter(sums, search.width);
    const std::vector<Top> tops = topsAround(search.bulges, sums, search.width);
    std::vector<FoundPeak> peaks;
    auto top = tops.begin();
    const auto addTopsBelow = [&](int channel) {
        for (; top != tops.end() && top->centre < channel; ++top)
            if (top->centre >= filter.first() && top->centre <= filter.last())
                peaks.push_back({top->centre, top->significance});
    };
    for (const Bulge& bulge : search.bulges) {
        addTopsBelow(bulge.first - search.width);
        const auto inside = top;
        while (top != tops.end() && top->centre <= bulge.last + search.width)
            ++top;
        addBulge(peaks, bulge, {inside, top});
    }
    addTopsBelow(sums.channelCount());
    return peaks;
}

std::vector<Search> searchAllWidths(const RunningSums& sums) {
    std::vector<Search> searches;
    for (const int width : widths)
        if (width == 1 || sums.channelCount() >= channelsPerWidth * width)
            searches.push_back({width, significantBulges(CurvatureFilter(sums, width))});
    return searches;
}

// All lines of one detector are about as wide as each other, but how wide differs from one detector
// and channel number to the next. The narrowest filter that sees the lines nearly as clearly as the
// best one does separates them best.
std::size_t bestSearch(const std::vector<Search>& searches) {
    double clearest = 0;
    for (const Search& search : searches)
        clearest = std::max(clearest, search.totalSignificance());
    std::size_t best = 0;
    while (searches[best].totalSignificance() < 0.6 * clearest)
        ++best;
    return best;
}

// Where two marks fall into neighbouring channels they are of one line.
void joinNeighbours(std::vector<FoundPeak>& peaks) {
    std::vector<FoundPeak> apart;
    for (const FoundPeak& peak : peaks)
        if (apart.empty() || peak.centre > apart.back().centre + 1)
            apart.push_back(peak);
        else if (peak.significance > apart.back().significance)
            apart.back() = peak;
    peaks = std::move(apart);
}

// Weak peaks show better in a wider filter; those that stand clear of all others are added.
void addMissedPeaks(std::vector<FoundPeak>& peaks, const Search& wider, const RunningSums& sums) {
    const std::vector<FoundPeak> narrow = peaks;
    for (const FoundPeak& peak : peaksOf(wider, sums)) {
        const auto tooNear = [&](const FoundPeak& other) {
            return 2 * std::abs(other.centre - peak.centre) <= 5 * wider.width;
        };
        if (std::ranges::none_of(narrow, tooNear))
            peaks.push_back(peak);
    }
}

}  // namespace

std::vector<FoundPeak> findPeaks(std::span<const std::int32_t> counts) {
    const RunningSums sums(counts);
    const std::vector<Search> searches = searchAllWidths(sums);
    const std::size_t best = bestSearch(searches);
    std::vector<FoundPeak> peaks = peaksOf(searches[best], sums);
    if (best + 1 < searches.size())
        addMissedPeaks(peaks, searches[best + 1], sums);
    std::ranges::sort(peaks, {}, &FoundPeak::centre);
    joinNeighbours(peaks);
    return peaks;
}

}  // namespace kestrel
