#include "nuclide/peak_origins.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <optional>
#include <string_view>
#include <utility>

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

// The first peak that another one, which has lost this energy, can come from.
std::optional<std::size_t> sourceOf(const MeasuredPeak& peak, std::span<const MeasuredPeak> peaks,
                                    double lost) {
    const double least = std::max(peak.energy + lost - peak.tolerance, pairThreshold);
    const double most = peak.energy + lost + peak.tolerance;
    const auto first = std::ranges::lower_bound(peaks, least, {}, &MeasuredPeak::energy);
    const auto last = std::ranges::upper_bound(peaks, most, {}, &MeasuredPeak::energy);
    for (auto from = first; from < last; ++from) {
        if (peak.net < escapeShare * from->net)
            return static_cast<std::size_t>(from - peaks.begin());
    }
    return std::nullopt;
}

OriginOfPeak escapeOf(const MeasuredPeak& peak, std::span<const MeasuredPeak> peaks,
                      std::span<const UnseenLine> unseen) {
    static constexpr std::array kinds = {std::pair{PeakOrigin::SingleEscape, electronMass},
                                         std::pair{PeakOrigin::DoubleEscape, 2 * electronMass}};
    for (const auto& [kind, lost] : kinds) {
        if (const auto from = sourceOf(peak, peaks, lost))
            return {.origin = kind, .first = *from};
        for (const UnseenLine& line : unseen) {
            if (peak.net < line.mostCounts && liesAt(peak, line.energy - lost))
                return {.origin = kind, .unseen = line.energy};
        }
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
                return {.origin = PeakOrigin::Sum, .first = first, .second = second};
        }
    }
    return {};
}

constexpr std::string_view pattern = "####0.0";

std::string energyText(double energy) {
    return formatNumber(energy, pattern) + " keV";
}

std::string sourceText(const OriginOfPeak& origin, std::span<const MeasuredPeak> peaks) {
    return origin.unseen > 0 ? energyText(origin.unseen) + ", unseen"
                             : energyText(peaks[origin.first].energy);
}

}  // namespace

std::vector<OriginOfPeak> findOrigins(std::span<const MeasuredPeak> peaks,
                                      std::span<const double> open,
                                      std::span<const UnseenLine> unseen) {
    const std::vector<std::size_t> parts = largest(peaks);
    std::vector<OriginOfPeak> origins(peaks.size());
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        if (isAnnihilation(peaks[i])) {
            origins[i].origin = PeakOrigin::Annihilation;
        } else if (open[i] >= leastOpen) {
            origins[i] = escapeOf(peaks[i], peaks, unseen);
            if (origins[i].origin == PeakOrigin::Unknown)
                origins[i] = sumOf(peaks[i], peaks, parts);
        }
    }
    return origins;
}

bool isAnnihilation(const MeasuredPeak& peak) {
    return liesAt(peak, electronMass);
}

std::string originText(const OriginOfPeak& origin, std::span<const MeasuredPeak> peaks) {
    switch (origin.origin) {
        case PeakOrigin::Annihilation:
            return "annihilation";
        case PeakOrigin::SingleEscape:
            return "single escape of " + sourceText(origin, peaks);
        case PeakOrigin::DoubleEscape:
            return "double escape of " + sourceText(origin, peaks);
        case PeakOrigin::Sum:
            return "sum of " + formatNumber(peaks[origin.first].energy, pattern) + " and " +
                   energyText(peaks[origin.second].energy);
        case PeakOrigin::Unknown:
            break;
    }
    return {};
}

}  // namespace kestrel
