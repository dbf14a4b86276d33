#include "spectrum/curvature_filter.h"

#include <algorithm>
#include <array>

namespace kestrel {
namespace {

struct Weight {
    int offset;  // in groups
    int weight;
};
constexpr std::array<Weight, 5> weights = {{{-3, 5}, {-1, -3}, {0, -4}, {1, -3}, {3, 5}}};

// Channels at the ends that have no peak measure.
constexpr int skippedAtStart = 10;
constexpr int skippedAtEnd = 6;

}  // namespace

RunningSums::RunningSums(std::span<const std::int32_t> counts) : below_(counts.size() + 1) {
    std::int64_t sum = 0;
    for (std::size_t k = 0; k < counts.size(); ++k)
        below_[k + 1] = static_cast<double>(sum += counts[k]);
}

CurvatureFilter::CurvatureFilter(const RunningSums& sums, int width)
    : sums_(sums),
      width_(width),
      first_(std::max(skippedAtStart, 3 * width + width / 2)),
      last_(std::min(sums.channelCount() - 1 - skippedAtEnd,
                     sums.channelCount() - 4 * width + width / 2)) {}

double CurvatureFilter::varianceOfSum(int first, int last) const {
    // A channel enters the sum once for each filter position whose group covers it: the weights
    // folded with a box as long as the stretch. Each of them then rises from the first channel of
    // its group, stays, and falls again; at each of these places the slope changes.
    const int length = last - first + 1;
    const int begin = first - 3 * width_ - width_ / 2;
    const int covered = length + 7 * width_ - 1;
    std::vector<int> slopeChanges(static_cast<std::size_t>(covered) + 2);
    for (const auto [offset, weight] : weights) {
        int* const rise = slopeChanges.data() + std::ptrdiff_t{offset + 3} * width_;
        rise[0] += weight;
        rise[length] -= weight;
        rise[width_] -= weight;
        rise[length + width_] += weight;
    }
    double variance = 0;
    int slope = 0;
    int weight = 0;
    for (int i = 0; i < covered; ++i) {
        slope += slopeChanges[static_cast<std::size_t>(i)];
        weight += slope;
        variance += static_cast<double>(weight) * weight * sums_.sum(begin + i, 1);
    }
    return variance;
}

}  // namespace kestrel
