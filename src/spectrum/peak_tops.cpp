#include "spectrum/peak_tops.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/integers.h"

namespace kestrel {
namespace {

bool isLocalTop(const CurvatureFilter& filter, int channel) {
    const double height = filter.core(channel);
    return height > filter.core(channel - 1) && height >= filter.core(channel + 1);
}

bool curvesDown(const CurvatureFilter& filter, int channel) {
    const int last = std::min(channel + filter.width(), filter.last());
    for (int k = std::max(channel - filter.width(), filter.first()); k <= last; ++k)
        if (-filter.curvature(k) > clearTop * std::sqrt(filter.variance(k)))
            return true;
    return false;
}

// Depth of the valley on one side (step -1 or 1) in standard deviations.
double valley(const CurvatureFilter& filter, int channel, int step, int reach) {
    const double height = filter.core(channel);
    const int end = std::clamp(channel + step * reach, filter.first(), filter.last());
    double lowest = height;
    for (int k = channel; k != end && filter.core(k + step) <= height; k += step)
        lowest = std::min(lowest, filter.core(k + step));
    const double variance = height + std::max(lowest, 0.0);
    return variance > 0 ? (height - lowest) / std::sqrt(variance) : 0;
}

// The vertex of the parabola through the top and the groups beside it.
int centreOf(const CurvatureFilter& filter, int channel) {
    const int step = filter.width();
    const double left = filter.core(channel - step);
    const double right = filter.core(channel + step);
    const double bend = 2 * filter.core(channel) - left - right;
    const double shift = bend > 0 ? 0.5 * (right - left) / bend : 0;
    return toInt32(channel + step * std::clamp(shift, -0.5, 0.5) - filter.middleOffset());
}

}  // namespace

std::vector<Top> findTops(const CurvatureFilter& filter, int first, int last, int reach) {
    std::vector<Top> tops;
    for (int k = std::max(first, filter.first()); k <= std::min(last, filter.last()); ++k) {
        if (!isLocalTop(filter, k) || !curvesDown(filter, k))
            continue;
        const double left = valley(filter, k, -1, reach);
        const double right = valley(filter, k, 1, reach);
        if (std::min(left, right) > visibleValley && std::max(left, right) > clearTop)
            tops.push_back({centreOf(filter, k), std::max(left, right)});
    }
    return tops;
}

}  // namespace kestrel
