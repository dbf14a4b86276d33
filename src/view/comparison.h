// A second spectrum beside the one that is shown: its scale, and the difference of the two.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "spectrum/notice.h"
#include "spectrum/spectrum.h"
#include "view/redistribution.h"

namespace kestrel {

enum class CompareScale : std::int16_t {
    LiveTime,     // as many counts as in the live time of the first
    ShownCounts,  // as many counts as the first has in the channels shown
    OneToOne,
};

// The first spectrum, and the second on its channels.
struct SpectrumPair {
    const Spectrum& first;
    const Spectrum& second;
    const Redistributed& onFirst;
};

// What the counts of the second are multiplied by; none where it cannot be told: without live
// times, or without counts above 0 in channels `from` to `to`. Channels outside the first spectrum
// have none.
std::optional<double> scaleFactor(CompareScale scale, const SpectrumPair& pair, int from, int to);

// What the plot has beside the first spectrum. Off, and without a picture, without a second one.
struct Comparison {
    std::shared_ptr<const OpenedSpectrum> second;
    // As they were when updateComparison was last called.
    Redistributed onFirst;
    std::vector<double> logHeights;  // of its counts on the logarithmic axis; no number below them
    CompareScale scale = CompareScale::LiveTime;
    bool difference = false;  // shown in place of the two, on the linear axis
    Notice notice;            // of the second
};

// Of a comparison that is not off.
SpectrumPair pairOf(const Comparison& comparison, const Spectrum& first);

// To be called after either spectrum, or a calibration, has changed. Faults: those of redistribute.
void updateComparison(Comparison& comparison, const Spectrum& first);

// As scaleFactor, likewise.
std::optional<double> factorOf(const Comparison& comparison, const Spectrum& first, int from,
                               int to);

// The first minus the scaled second, and its standard error.
struct Difference {
    double counts = 0;
    double error = 0;

    // In standard deviations; 0 where there is no error, that is without counts in both.
    double deviations() const { return error > 0 ? counts / error : 0; }
};

// In a channel, with the error sqrt(N1 + factor^2 * V2) of independent Poisson counts, V2 being the
// variance of the second on this channel. The factor counts as exact: an error of its own, as it
// has by shown counts, would be common to all channels. Outside the first spectrum all are 0.
Difference differenceAt(const SpectrumPair& pair, double factor, int channel);

// Of channels `from` to `to`, whatever its sign.
double greatestDifference(const SpectrumPair& pair, double factor, int from, int to);

}  // namespace kestrel
