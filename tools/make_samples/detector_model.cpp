#include "make_samples/detector_model.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kestrel::samples {
namespace {

constexpr double electronMass = 510.999;  // keV

double normalBelow(double x, double sigma) {
    return 0.5 * std::erfc(-x / (std::numbers::sqrt2 * sigma));
}

double normalDensity(double x, double sigma) {
    const double t = x / sigma;
    return std::exp(-0.5 * t * t) / (sigma * std::sqrt(2 * std::numbers::pi));
}

// Part below x of a Gaussian folded with an exponential that reaches towards low values.
double tailedBelow(double x, double sigma, double decay) {
    const double shift = sigma / decay;
    const double exponent = std::min(x / decay + 0.5 * shift * shift, 700.0);
    return normalBelow(x, sigma) +
           std::exp(exponent) * 0.5 * std::erfc((x / sigma + shift) / std::numbers::sqrt2);
}

// Klein-Nishina spectrum of the electron energy t for photons of `energy`, in arbitrary units.
double kleinNishina(double t, double energy) {
    const double alpha = energy / electronMass;
    const double s = t / energy;
    const double r = s / (1 - s);
    return 2 + r * r / (alpha * alpha) + r * (s - 2 / alpha);
}

double comptonEdge(double energy) {
    const double alpha = energy / electronMass;
    return energy * 2 * alpha / (1 + 2 * alpha);
}

// Single-scatter counts per count in the peak: 4 at 1332 keV, as a coaxial detector of medium size
// has.
double comptonToPeak(double energy) {
    return 4 * std::pow(energy / 1332, 1.05);
}

double meanKleinNishina(double energy) {
    constexpr int steps = 200;
    const double edge = comptonEdge(energy);
    double sum = 0;
    for (int i = 0; i < steps; ++i)
        sum += kleinNishina(edge * (i + 0.5) / steps, energy);
    return sum / steps;
}

}  // namespace

double Resolution::fwhm(double energy) const {
    return std::sqrt(constant + slope * std::max(energy, 0.0));
}

double relativeEfficiency(double energy) {
    const double entry = 1 - std::exp(-std::pow(energy / 90, 2.2));  // window and dead layer
    return entry * std::pow(energy / 1332, -0.85);
}

ExpectedSpectrum::ExpectedSpectrum(std::int16_t channelCount, const Calibration& calibration)
    : calibration_(calibration) {
    for (int channel = 0; channel <= channelCount; ++channel)
        edges_.push_back(energyAt(channel - 0.5));
    counts_.resize(edges_.size() - 1);
}

double ExpectedSpectrum::energyAt(double channel) const {
    return (calibration_.c * channel + calibration_.b) * channel + calibration_.a;
}

void ExpectedSpectrum::addPeak(double energy, double area, double fwhm, double tail) {
    const double sigma = fwhm / (2 * std::sqrt(2 * std::numbers::ln2));
    const double decay = 1.2 * sigma;
    const auto below = [&](double edge) {
        const double x = edge - energy;
        const double whole = normalBelow(x, sigma);
        return tail > 0 ? (1 - tail) * whole + tail * tailedBelow(x, sigma, decay) : whole;
    };
    for (std::size_t i = 0; i < counts_.size(); ++i)
        if (edges_[i + 1] > energy - 15 * sigma && edges_[i] < energy + 8 * sigma)
            counts_[i] += area * (below(edges_[i + 1]) - below(edges_[i]));
}

template <typename Density>
void ExpectedSpectrum::addDensity(double upTo, Density density) {
    for (std::size_t i = 0; i < counts_.size() && edges_[i] < upTo; ++i) {
        const double middle = 0.5 * (edges_[i] + edges_[i + 1]);
        if (middle > 0)
            counts_[i] += density(middle) * (edges_[i + 1] - edges_[i]);
    }
}

void ExpectedSpectrum::addContinuum(double energy, double peakArea) {
    const double edge = comptonEdge(energy);
    const double edgeWidth = 1 + 0.006 * energy;  // motion of the struck electron
    const double compton = comptonToPeak(energy) * peakArea / edge;
    const double shape = compton / meanKleinNishina(energy);
    const double multiple = 0.12 * compton;
    const double step = 0.0002 * peakArea;  // photons scattered by a small angle before they arrive
    const double stepWidth = 0.5 * Resolution{}.fwhm(energy);
    const double backscatter = energy - edge;
    const double backscatterWidth = 5 + 0.05 * backscatter;
    const double returned = 0.15 * peakArea * std::min(1.0, edge / 300);
    addDensity(energy + 10 * edgeWidth, [&](double e) {
        return shape * kleinNishina(std::min(e, edge), energy) * normalBelow(edge - e, edgeWidth) +
               (multiple * std::min(1.0, e / edge) * std::max(0.0, 1 - e / energy) + step) *
                   normalBelow(energy - e, stepWidth) +
               returned * normalDensity(e - backscatter, backscatterWidth);
    });
}

void ExpectedSpectrum::addExponential(double level, double decay) {
    addDensity(edges_.back(), [&](double e) { return level * std::exp(-e / decay); });
}

void ExpectedSpectrum::addRamp(double level, double slope) {
    for (double& count : counts_) {
        count += std::max(level, 0.0);
        level += slope;
    }
}

void ExpectedSpectrum::applyThreshold(double energy, double width) {
    for (std::size_t i = 0; i < counts_.size(); ++i) {
        const double x = (edges_[i] - energy) / width;
        const double open = std::clamp(x, 0.0, 1.0);
        counts_[i] *= open * open * (3 - 2 * open);
    }
}

}  // namespace kestrel::samples
