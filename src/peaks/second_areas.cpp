#include "peaks/second_areas.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>

namespace kestrel {
namespace {

// Of the channels `low` to `high`, as far as there are such.
double sumOf(const std::vector<double>& counts, std::int32_t low, std::int32_t high) {
    double sum = 0;
    const std::int64_t end = std::min<std::int64_t>(high, std::ssize(counts) - 1);
    for (std::int64_t k = std::max(low, 0); k <= end; ++k)
        sum += counts[static_cast<std::size_t>(k)];
    return sum;
}

// As netCounts has it, of counts that are no whole numbers.
WithError netArea(const std::vector<double>& counts, const PeakRegions& r) {
    const double width = r.pkHigh - r.pkLow + 1;
    const double f1 = width / (2.0 * (r.bkg1High - r.bkg1Low + 1));
    const double f2 = width / (2.0 * (r.bkg2High - r.bkg2Low + 1));
    const double peak = sumOf(counts, r.pkLow, r.pkHigh);
    const double s1 = sumOf(counts, r.bkg1Low, r.bkg1High);
    const double s2 = sumOf(counts, r.bkg2Low, r.bkg2High);
    return {peak - f1 * s1 - f2 * s2, std::sqrt(std::max(peak + f1 * f1 * s1 + f2 * f2 * s2, 0.0))};
}

std::optional<WithError> ratioOf(const PeakRecord& first, const WithError& second) {
    if (!(second.value > quantile * second.error))
        return std::nullopt;
    const double ratio = first.net / second.value;
    return WithError{ratio, std::hypot(first.netError, ratio * second.error) / second.value};
}

}  // namespace

void addSecondAreas(PeakList& list, const SecondCounts& second) {
    for (ListedPeak& peak : list.peaks) {
        const WithError net = netArea(second.counts, peak.measured.regions);
        peak.second = {second.factor * net.value, second.factor * net.error};
        peak.ratio = ratioOf(peak.measured, *peak.second);
    }
}

}  // namespace kestrel
