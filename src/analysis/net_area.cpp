#include "analysis/net_area.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/integers.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

float single(double value) {
    return static_cast<float>(value);
}

double squareRoot(double value) {
    if (value < 0)
        throw RuntimeFault(Fault::InvalidCall);
    return std::sqrt(value);
}

float widthOf(std::int32_t low, std::int32_t high) {
    return static_cast<float>(narrow32(std::int64_t{high} - low + 1));
}

}  // namespace

PeakRegions regionsOf(const PeakAreaSet& set) {
    return {.bkg1Low = set.bkg1Low,
            .bkg1High = set.bkg1High,
            .pkLow = set.pkLow,
            .pkHigh = set.pkHigh,
            .bkg2Low = set.bkg2Low,
            .bkg2High = set.bkg2High};
}

std::int32_t sumCounts(const Spectrum& spectrum, std::int32_t low, std::int32_t high) {
    const auto region = spectrum.counts.span(low, std::int64_t{high} - low + 1);
    const std::int64_t filled = std::clamp<std::int64_t>(
        std::int64_t{spectrum.channelCount} - low, 0, static_cast<std::int64_t>(region.size()));
    std::int32_t sum = 0;
    for (const std::int32_t count : region.first(static_cast<std::size_t>(filled)))
        sum = narrow32(std::int64_t{sum} + count);
    return sum;
}

// Every named quantity is held in single precision (compatibility: single precision). Between two
// of them the arithmetic is double.
NetCounts netCounts(const Spectrum& spectrum, const PeakRegions& regions) {
    const auto s1 = static_cast<float>(sumCounts(spectrum, regions.bkg1Low, regions.bkg1High));
    const auto s2 = static_cast<float>(sumCounts(spectrum, regions.bkg2Low, regions.bkg2High));
    const auto p = static_cast<float>(sumCounts(spectrum, regions.pkLow, regions.pkHigh));
    const double nP{widthOf(regions.pkLow, regions.pkHigh)};
    const double n1{widthOf(regions.bkg1Low, regions.bkg1High)};
    const double n2{widthOf(regions.bkg2Low, regions.bkg2High)};
    const double f1{single(divide(nP, n1 + n1))};
    const double f2{single(divide(nP, n2 + n2))};
    const double background = f1 * double{s1} + f2 * double{s2};
    return {.gross = p,
            .net = single(double{p} - f1 * double{s1} - f2 * double{s2}),
            .netError = single(squareRoot(f1 * f1 * double{s1} + double{p} + f2 * f2 * double{s2})),
            .emptyError = single(std::sqrt(
                std::max(f1 * f1 * double{s1} + background + f2 * f2 * double{s2}, 0.0)))};
}

void computeNetArea(const Spectrum& spectrum, const PeakRegions& regions, PeakAreaSet& set) {
    const NetCounts area = netCounts(spectrum, regions);
    const double seconds = spectrum.openedLiveTime.seconds();
    const float cps = single(divide(double{area.net}, seconds));
    const float cpsError = single(divide(double{area.netError}, seconds));
    set.net = area.net;
    set.netError = area.netError;
    set.cps = cps;
    set.cpsError = cpsError;
}

}  // namespace kestrel
