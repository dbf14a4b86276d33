#include "make_samples/spectrum_maker.h"

#include "make_samples/poisson.h"

namespace kestrel::samples {
namespace {

constexpr double tail = 0.03;

void addLine(ExpectedSpectrum& spectrum, double energy, double area, double fwhm) {
    spectrum.addPeak(energy, area, fwhm, tail);
    spectrum.addContinuum(energy, area);
}

void addSource(ExpectedSpectrum& spectrum, const Source& source, double seconds) {
    for (const GammaLine& line : source.lines)
        addLine(spectrum, line.energy,
                source.strength * seconds * line.intensity / 100 * relativeEfficiency(line.energy),
                Resolution{}.fwhm(line.energy));
}

// Walls, floor and air, and what cosmic rays make in the detector and around it.
void addNaturalBackground(ExpectedSpectrum& spectrum, double seconds) {
    addSource(spectrum, {potassium40(), 12.0}, seconds);
    addSource(spectrum, {radiumChain(), 1.0}, seconds);
    addSource(spectrum, {thoriumChain(), 1.2}, seconds);
    // The annihilating pair is moving, which makes the line wider than any other.
    addLine(spectrum, 510.999, 0.8 * seconds, 2.7);
    spectrum.addExponential(0.25 * seconds, 180);
    spectrum.addExponential(0.012 * seconds, 1500);
}

}  // namespace

std::vector<double> expectedPeaks(const PeakPlan& plan) {
    ExpectedSpectrum spectrum(plan.channelCount, plan.calibration);
    spectrum.addRamp(plan.background, plan.backgroundSlope);
    for (const Peak& peak : plan.peaks)
        spectrum.addPeak(peak.energy, peak.area, plan.resolution.fwhm(peak.energy));
    const auto counts = spectrum.counts();
    return {counts.begin(), counts.end()};
}

std::vector<std::int32_t> makePeaks(const PeakPlan& plan, std::uint64_t seed) {
    return drawCounts(expectedPeaks(plan), seed);
}

std::vector<std::int32_t> drawCounts(std::span<const double> expected, std::uint64_t seed) {
    PoissonSource source(seed);
    std::vector<std::int32_t> counts;
    counts.reserve(expected.size());
    for (const double mean : expected)
        counts.push_back(source.draw(mean));
    return counts;
}

std::vector<std::int32_t> makeMeasurement(const MeasurementPlan& plan, std::uint64_t seed) {
    ExpectedSpectrum spectrum(plan.channelCount, plan.calibration);
    for (const Source& source : plan.sources)
        addSource(spectrum, source, plan.liveSeconds);
    addNaturalBackground(spectrum, plan.liveSeconds * plan.background);
    spectrum.applyThreshold(14, 4);
    return drawCounts(spectrum.counts(), seed);
}

}  // namespace kestrel::samples
