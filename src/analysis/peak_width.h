// The width of lines by channel: one smooth curve for a whole spectrum.
#pragma once

#include <span>

namespace kestrel {

// Full width at half maximum of a Gaussian of standard deviation 1: 2 sqrt(2 ln 2).
inline constexpr double fwhmOfSigma = 2.3548200450309493;

struct WidthPoint {
    double channel = 0;
    double fwhm = 0;   // channels
    double error = 0;  // of the width, 1 sigma
};

// FWHM^2 = constant + slope * channel: noise of the electronics, and the statistics of charge
// carriers or light, whose number grows with the energy (G. F. Knoll, Radiation Detection and
// Measurement, on the energy resolution of detectors). Neither part is ever below 0.
struct WidthCurve {
    double constant = 0;
    double slope = 0;
    double fwhm(double channel) const;
};

// The curve through most of the points: the median of the slopes between pairs of them (Theil and
// Sen) drops those off by more than a quarter, such as the annihilation line, which no detector
// makes so wide; least squares through the rest, each with its error and two per cent of scatter.
// Of fewer than three points the curve has no slope. Requires at least one.
WidthCurve fitWidthCurve(std::span<const WidthPoint> points);

}  // namespace kestrel
