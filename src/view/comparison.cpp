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

// The first may have changed since the second was brought onto its channels.
int channelsOf(const SpectrumPair& pair) {
    const auto most = std::min(pair.onFirst.counts.size(), std::size_t{channelLimit});
    return std::min<int>(pair.first.channelCount, static_cast<int>(most));
}

std::optional<double> ratioOfCounts(const SpectrumPair& pair, int from, int to) {
    double first = 0;
    double second = 0;
    const int end = std::min(to, channelsOf(pair) - 1);
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

void updateComparison(Comparison& comparison, const Spectrum& first) {
    if (comparison.second == nullptr)
        return;
    comparison.onFirst = redistribute(comparison.second->spectrum, first);
    comparison.logHeights.clear();
    for (const double counts : comparison.onFirst.counts)
        comparison.logHeights.push_back(unitsOfDecade * std::log10(counts));
}

SpectrumPair pairOf(const Comparison& comparison, const Spectrum& first) {
    return {first, comparison.second->spectrum, comparison.onFirst};
}

std::optional<double> factorOf(const Comparison& comparison, const Spectrum& first, int from,
                               int to) {
    return scaleFactor(comparison.scale, pairOf(comparison, first), from, to);
}

Difference differenceAt(const SpectrumPair& pair, double factor, int channel) {
    if (channel < 0 || channel >= channelsOf(pair))
        return {};
    const auto k = static_cast<std::size_t>(channel);
    const double first = pair.first.counts[channel];
    const double variance = std::max(first, 0.0) + factor * factor * pair.onFirst.variances.at(k);
    return {first - factor * pair.onFirst.counts.at(k), std::sqrt(variance)};
}

double greatestDifference(const SpectrumPair& pair, double factor, int from, int to) {
    double greatest = 0;
    for (int k = from; k <= to; ++k)
        greatest = std::max(greatest, std::fabs(differenceAt(pair, factor, k).counts));
    return greatest;
}

}  // namespace kestrel
