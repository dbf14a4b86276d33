// The peak measure: which channels are the centres of peaks, and which belong to their flanks.
#pragma once

#include <cstdint>
#include <span>

namespace kestrel {

// A measure above this is that of the centre of a peak.
inline constexpr double peakCentreMeasure = 10.0;

// Writes the measure of every channel of `counts` into `measure`, which has the same length.
// Faults: Overflow when the sum of two counts does not fit 32 bits.
void computePeakMeasure(std::span<const std::int32_t> counts, std::span<double> measure);

}  // namespace kestrel
