// The peaks of a spectrum file, roughly measured: as candidates and calibrations need them.
#pragma once

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "nuclide/candidates.h"
#include "silent_dialogs.h"
#include "spectrum/open_any.h"
#include "spectrum/peak_search.h"

namespace kestrel::test {

struct RoughPeaks {
    std::vector<double> channels;
    std::vector<MeasuredPeak> peaks;
    EnergyRange range;
};

inline std::unique_ptr<Spectrum> openedSpectrum(const std::string& path) {
    auto spectrum = std::make_unique<Spectrum>();
    const auto derived = std::make_unique<DerivedArrays>();
    std::vector<std::string> headerLines;
    Notice notice;
    std::string directory;
    int filter = 1;
    SilentDialogs dialogs;
    if (openAnyPath(path, {*spectrum, *derived, headerLines, notice}, directory, filter, dialogs) !=
        OpenResult::Loaded)
        throw std::runtime_error(path + " cannot be read");
    return spectrum;
}

// Counts above the straight line between the ends of a window of twice the width at half height,
// and their centre.
inline void measure(const Spectrum& spectrum, int centre, RoughPeaks& into) {
    const Calibration& c = spectrum.calCurrent;
    const auto energyAt = [&](double n) { return c.a + (c.b + c.c * n) * n; };
    const double width = std::sqrt(1.0 + 0.0018 * std::max(0.0, energyAt(centre)));  // keV
    const int half = std::max(2, static_cast<int>(std::lround(1.2 * width / c.b)));
    const auto at = [&](int n) { return static_cast<double>(spectrum.countsAt(n)); };
    if (centre < half + 2 || centre + half + 2 >= spectrum.channelCount)
        return;
    const double low = (at(centre - half - 2) + at(centre - half - 1) + at(centre - half)) / 3;
    const double high = (at(centre + half + 2) + at(centre + half + 1) + at(centre + half)) / 3;
    double gross = 0;
    double net = 0;
    double moment = 0;
    for (int n = centre - half; n <= centre + half; ++n) {
        const double share = (n - centre + half) / (2.0 * half);
        const double above = at(n) - low - (high - low) * share;
        gross += at(n);
        net += above;
        moment += n * above;
    }
    const double channel = net > 0 ? std::clamp(moment / net, centre - 1.0, centre + 1.0) : centre;
    into.channels.push_back(channel);
    into.peaks.push_back(
        {energyAt(channel), width, std::max(net, 0.0), std::sqrt(gross + half * (low + high))});
}

inline RoughPeaks roughPeaks(const Spectrum& spectrum) {
    RoughPeaks result;
    for (const FoundPeak& peak : findPeaks(spectrum.counts.span(0, spectrum.channelCount)))
        measure(spectrum, peak.centre, result);
    const Calibration& c = spectrum.calCurrent;
    const double last = spectrum.channelCount - 1.0;
    result.range = {c.a, c.a + (c.b + c.c * last) * last};
    return result;
}

}  // namespace kestrel::test
