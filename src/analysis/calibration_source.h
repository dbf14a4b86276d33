// Which calibration source the peaks of a spectrum are from, found without any calibration.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/peak_calibration.h"

namespace kestrel {

struct PeakOfSource {
    double channel = 0;
    double channelError = 0;
    double net = 0;  // counts
};

struct SourceLine {
    double energy = 0;     // keV
    double intensity = 0;  // per 100 decays; 0 where it is not to be compared
};

struct CalibrationSource {
    std::string_view name;
    std::span<const SourceLine> lines;  // the strong ones, ascending
};

std::span<const CalibrationSource> calibrationSources();

struct RecognizedSource {
    std::string_view name;
    std::size_t found = 0;  // of its strong lines
    std::size_t strong = 0;
    CalibrationPoints points;  // the lines that were found
    FittedPeaks fitted;
};

// Pairs of the 24 largest peaks are tried as pairs of the six heaviest lines of each source; each
// pair gives a straight line, on which the other lines are looked for. A line is found where a peak
// lies within 1 keV and 0.2 % of it and has the counts of its intensity to a factor of four. Of the
// straight lines only those count that put channel 0 at -30 to 30 keV. The source with the most
// lines found, weighed by its share of lines and of counts, is fitted, and lines off by more than
// 0.4 keV and 0.8 channels are dropped. Of a source of up to four lines all must be found, of more
// two thirds. A source explains at
// least a fifth of the peaks. Peaks in any order; time is bounded by 14 million comparisons.
std::optional<RecognizedSource> recognizeSource(std::span<const PeakOfSource> peaks,
                                                int channelCount);

// "This fits Eu-152: 10 of 10 strong lines, residual 0.1 keV."
std::string recognitionText(const RecognizedSource& source);

}  // namespace kestrel
