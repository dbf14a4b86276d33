// What a germanium detector makes of gamma lines: the expected (noise-free) counts of every
// channel.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel::samples {

// Full width at half maximum in keV: its square is constant + slope * energy.
struct Resolution {
    double constant = 0.565;  // electronics; 0.90 keV at 122 keV with the slope below
    double slope = 0.002008;  // charge carrier statistics; 1.80 keV at 1332 keV
    double fwhm(double energy) const;
};

// Full-energy peak efficiency relative to the one at 1332 keV.
double relativeEfficiency(double energy);

class ExpectedSpectrum {
  public:
    ExpectedSpectrum(std::int16_t channelCount, const Calibration& calibration);

    std::span<const double> counts() const { return counts_; }

    // A Gaussian of `area` counts. `tail` is the part of it that has lost charge on its way and
    // forms an exponential tail towards low energies.
    void addPeak(double energy, double area, double fwhm, double tail = 0);

    // All that a line of `peakArea` counts in its full-energy peak leaves below that peak.
    void addContinuum(double energy, double peakArea);

    // `level` counts per keV at energy 0, falling by e every `decay` keV.
    void addExponential(double level, double decay);

    // The same `level` in every channel, and `slope` more from each channel to the next.
    void addRamp(double level, double slope);

    // Nothing below `energy`, everything from `energy + width` on.
    void applyThreshold(double energy, double width);

  private:
    double energyAt(double channel) const;
    template <typename Density>
    void addDensity(double upTo, Density density);

    Calibration calibration_;
    std::vector<double> edges_;  // energies between the channels, one more than channels
    std::vector<double> counts_;
};

}  // namespace kestrel::samples
