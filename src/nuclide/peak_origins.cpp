#include "nuclide/peak_origins.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/number_text.h"

namespace kestrel {
namespace {

constexpr double leastOpen = 0.5;
constexpr double pairThreshold = 1400;  // keV
constexpr double escapeShare = 1.0 / 3;
constexpr double sumShare = 0.1;
constexpr std::size_t mostParts = 10;

bool liesAt(const MeasuredPeak& peak, double energy) {
    return std::abs(peak.energy - energy) <= peak.tolerance;
}

bool escapes(const MeasuredPeak& peak, const MeasuredPeak& from, double lost) {
    return from.energy > pairThreshold && peak.net < escapeShare * from.net &&
           liesAt(peak, from.energy - lost);
}

OriginOfPeak escapeOf(const MeasuredPeak& peak, std::span<const MeasuredPeak> peaks) {
    for (std::size_t from = 0; from < peaks.size(); ++from) {
        if (escapes(peak, peaks[from], electronMass))
            return {PeakOrigin::SingleEscape, from, 0};
        if (escapes(peak, peaks[from], 2 * electronMass))
            return {PeakOrigin::DoubleEscape, from, 0};
    }
    return {};
}

std::vector<std::size_t> largest(std::span<const MeasuredPeak> peaks) {
    std::vector<std::size_t> order(peaks.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::stable_sort(order, std::ranges::greater{},
                             [&](std::size_t i) { return peaks[i].net; });
    order.resize(std::min(order.size(), mostParts));
    return order;
}

OriginOfPeak sumOf(const MeasuredPeak& peak, std::span<const MeasuredPeak> peaks,
                   const std::vector<std::size_t>& parts) {
    for (const std::size_t first : parts) {
        for (const std::size_t second : parts) {
            const double least = std::min(peaks[first].net, peaks[second].net);
            if (first <= second && peak.net < sumShare * least &&
                liesAt(peak, peaks[first].energy + peaks[second].energy))
                return {PeakOrigin::Sum, first, second};
        }
    }
    return {};
}

std::string energyText(const MeasuredPeak& peak) {
    return formatNumber(peak.energy, "####0.0");
}

}  // namespace

std::vector<OriginOfPeak> findOrigins(std::span<const MeasuredPeak> peaks,
                                      std::span<const double> open) {
    const std::vector<std::size_t> parts = largest(peaks);
    std::vector<OriginOfPeak> origins(peaks.size());
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        if (liesAt(peaks[i], electronMass)) {
            origins[i].origin = PeakOrigin::Annihilation;
        } else if (open[i] >= leastOpen) {
            origins[i] = escapeOf(peaks[i], peaks);
            if (origins[i].origin == PeakOrigin::Unknown)
                origins[i] = sumOf(peaks[i], peaks, parts);
        }
    }
    return origins;
}

std::string originText(const OriginOfPeak& origin, std::span<const MeasuredPeak> peaks) {
    switch (origin.origin) {
        case PeakOrigin::Annihilation:
            return "annihilation";
        case PeakOrigin::SingleEscape:
            return "single escape of " + energyText(peaks[origin.first]) + " keV";
        case PeakOrigin::DoubleEscape:
            return "double escape of " + energyText(peaks[origin.first]) + " keV";
        case PeakOrigin::Sum:
            return "sum of " + energyText(peaks[origin.first]) + " and " +
                   energyText(peaks[origin.second]) + " keV";
        case PeakOrigin::Unknown:
            break;
    }
    return {};
}

}  // namespace kestrel
