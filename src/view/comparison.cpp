#include "view/comparison.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace kestrel {
namespace {

std::optional<double> ratio(double first, double second) {
    if (first > 0 && second > 0)
        return first / second;
    return std::nullopt;
}

bool isIn(const SpectrumPair& pair, int channel) {
    return channel >= 0 && channel < pair.first.channelCount;
}

std::optional<double> ratioOfCounts(const SpectrumPair& pair, int from, int to) {
    double first = 0;
    double second = 0;
    const int end = std::min<int>(to, pair.first.channelCount - 1);
    for (int k = std::max(from, 0); k <= end; ++k) {
        first += pair.first.counts[k];
        second += pair.onFirst.counts.at(static_cast<std::size_t>(k));
    }
    return ratio(first, second);
}

}  // namespace

std::optional<double> scaleFactor(CompareScale scale, const SpectrumPair& pair, int from, int to) {
    switch (scale) {
        case CompareScale::LiveTime:
            return ratio(pair.first.openedLiveTime.seconds(), pair.second.openedLiveTime.seconds());
        case CompareScale::ShownCounts:
            return ratioOfCounts(pair, from, to);
        case CompareScale::OneToOne:
            break;
    }
    return 1.0;
}

Difference differenceAt(const SpectrumPair& pair, double factor, int channel) {
    if (!isIn(pair, channel))
        return {};
    const auto k = static_cast<std::size_t>(channel);
    const double first = pair.first.counts[channel];
    const double variance = std::max(first, 0.0) + factor * factor * pair.onFirst.variances.at(k);
    return {first - factor * pair.onFirst.counts.at(k), std::sqrt(variance)};
}

}  // namespace kestrel
