#include "analysis/peak_regions.h"

#include <algorithm>
#include <cmath>

namespace kestrel {
namespace {

constexpr int narrowest = 2;  // channels of a region

struct Span {
    std::size_t first = 0;
    std::size_t last = 0;
    int low = 0;
    int high = 0;
    double fwhm = 0;
};

int whole(double channels) {
    return static_cast<int>(std::clamp(channels, 0.0, 17000.0));
}

// Leaves a background on either side.
Span spanOf(const PeakPlace& place, std::size_t index, int channelCount) {
    const int lowest = 1 + narrowest;
    const int highest = channelCount - 1 - narrowest;
    const int low = whole(std::floor(place.centre - place.reach + 0.5));
    const int high = whole(std::ceil(place.centre + place.reach - 0.5));
    return {index, index, std::clamp(low, lowest, highest - 1),
            std::clamp(high, std::max(lowest, low) + 1, highest), place.fwhm};
}

bool tooNear(const Span& left, const Span& right) {
    const int free = right.low - left.high - 1;
    return free < std::max(narrowest, whole(std::round(0.5 * right.fwhm)));
}

std::vector<Span> spansOf(std::span<const PeakPlace> places, int channelCount) {
    std::vector<Span> spans;
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Span span = spanOf(places[i], i, channelCount);
        if (spans.empty() || !tooNear(spans.back(), span)) {
            spans.push_back(span);
            continue;
        }
        spans.back().last = i;
        spans.back().high = std::max(spans.back().high, span.high);
        spans.back().low = std::min(spans.back().low, span.low);
    }
    return spans;
}

// `below` and `above`: free channels on either side.
PeakRegions regionsAround(const Span& span, int below, int above) {
    const int wanted = std::max(narrowest, whole(std::ceil(2.5 * span.fwhm)));
    const int alike = std::max(std::min(below, above), (wanted + 1) / 2);
    const int low = std::clamp(std::min(alike, wanted), narrowest, below);
    const int high = std::clamp(std::min(alike, wanted), narrowest, above);
    return {.bkg1Low = span.low - low,
            .bkg1High = span.low - 1,
            .pkLow = span.low,
            .pkHigh = span.high,
            .bkg2Low = span.high + 1,
            .bkg2High = span.high + high};
}

}  // namespace

double reachOf(double fwhm, double area, double areaError) {
    struct Step {
        double reach;
        double leftOut;  // share of a Gaussian
    };
    constexpr Step steps[] = {{1.27, 2.8e-3}, {1.4, 9.8e-4}, {1.55, 2.6e-4}, {1.7, 6.2e-5}};
    constexpr double unnoticed = 0.02;  // of the error
    for (const auto& [reach, leftOut] : steps)
        if (leftOut * area < unnoticed * areaError)
            return reach * fwhm;
    return 1.9 * fwhm;
}

std::vector<MeasuredTogether> findRegions(std::span<const PeakPlace> places, int channelCount) {
    const std::vector<Span> spans = spansOf(places, channelCount);
    std::vector<MeasuredTogether> found;
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const int below = spans[i].low - 1 - (i == 0 ? 0 : spans[i - 1].high);
        const int next = i + 1 == spans.size() ? channelCount : spans[i + 1].low;
        found.push_back({spans[i].first, spans[i].last,
                         regionsAround(spans[i], below, next - spans[i].high - 1)});
    }
    return found;
}

}  // namespace kestrel
