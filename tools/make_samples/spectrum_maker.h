// Made spectra: peaks of known place and area for tests, and whole germanium spectra for the
// samples.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "make_samples/detector_model.h"
#include "make_samples/gamma_lines.h"
#include "spectrum/spectrum.h"

namespace kestrel::samples {

struct Peak {
    double energy = 0;  // keV
    double area = 0;    // expected counts
};

struct PeakPlan {
    std::int16_t channelCount = 4096;
    Calibration calibration{0.0, 0.5, 0.0};
    Resolution resolution{};
    std::vector<Peak> peaks{};
    double background = 0;       // expected counts in channel 0
    double backgroundSlope = 0;  // its change from channel to channel
};

// Gaussian peaks on a straight background: the expected counts, and counts drawn around them.
std::vector<double> expectedPeaks(const PeakPlan& plan);
std::vector<std::int32_t> makePeaks(const PeakPlan& plan, std::uint64_t seed);

// Counts drawn around the expected ones.
std::vector<std::int32_t> drawCounts(std::span<const double> expected, std::uint64_t seed);

// Decays per second times the absolute efficiency at 1332 keV.
struct Source {
    std::span<const GammaLine> lines;
    double strength = 0;
};

struct MeasurementPlan {
    std::int16_t channelCount = 4096;
    Calibration calibration{};
    double liveSeconds = 0;
    std::vector<Source> sources{};
    double background = 1;  // natural background of a room without shielding: 1
};

// All lines of the sources and of the natural background with their continua, drawn from `seed`.
std::vector<std::int32_t> makeMeasurement(const MeasurementPlan& plan, std::uint64_t seed);

}  // namespace kestrel::samples
