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
    for (std::size_t k = 0; k < counts.size(); ++k)
        below_[k + 1] = below_[k] + counts[k];
}

CurvatureFilter::CurvatureFilter(const RunningSums& sums, int width)
    : sums_(sums),
      width_(width),
      first_(std::max(skippedAtStart, 3 * width + width / 2)),
      last_(std::min(sums.channelCount() - 1 - skippedAtEnd,
                     sums.channelCount() - 4 * width + width / 2)) {}

double CurvatureFilter::varianceOfSum(int first, int last) const {
    // A channel enters the sum once for each filter position whose group covers it: the weights
    // folded with a box as long as the stretch.
    const auto weightOf = [&](int channel) {
        int sum = 0;
        for (const auto [offset, weight] : weights) {
            const int latest = channel - offset * width_ + width_ / 2;
            const int positions = std::min(last, latest) - std::max(first, latest - width_ + 1) + 1;
            sum += weight * std::max(positions, 0);
        }
        return static_cast<double>(sum);
    };
    const int begin = first - 3 * width_ - width_ / 2;
    const int end = last + 4 * width_ - width_ / 2;
    double variance = 0;
    for (int channel = begin; channel < end; ++channel) {
        const double weight = weightOf(channel);
        variance += weight * weight * sums_.sum(channel, 1);
    }
    return variance;
}

}  // namespace kestrel
