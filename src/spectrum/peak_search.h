// The search for peaks: where a spectrum bulges upwards by more than chance and edges can explain.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kestrel {

struct FoundPeak {
    int centre = 0;           // channel
    double significance = 0;  // in standard deviations; above peakThreshold
};

// Standard deviations below zero that make a curvature a candidate, and a whole bulge a peak.
inline constexpr double candidateThreshold = 2.5;
inline constexpr double peakThreshold = 1.8 * candidateThreshold;

// The peaks in ascending order, no two of them in neighbouring channels.
std::vector<FoundPeak> findPeaks(std::span<const std::int32_t> counts);

}  // namespace kestrel
