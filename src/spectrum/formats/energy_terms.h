// The energy calibration of an exchange file as the straight line or parabola that a loaded
// spectrum has.
#pragma once

#include <optional>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"
#include "spectrum/spectrum.h"

namespace kestrel {

struct FittedCalibration {
    Calibration calibration;
    double largestDifference = 0;  // from the file's energies, keV
};

// The parabola nearest to the file's calibration by least squares over the channels; the file's own
// where it is one. None where the file has no calibration, one keV per channel, which programs
// write that know of none, or energies that do not rise over the channels.
std::optional<FittedCalibration> fittedCalibration(const MeasuredSpectrum& spectrum);

// The terms of a polynomial of channel + by as those of one of channel.
std::vector<double> shiftedTerms(std::vector<double> terms, double by);

// Whether energies rise from channel 0 to the last one and stay in the range of gamma rays.
bool rises(const Calibration& calibration, double lastChannel);

// The calibration of channels that are sums of `group` neighbours: the energy of the sum is that of
// the middle of its channels.
Calibration groupedCalibration(const Calibration& calibration, int group);

}  // namespace kestrel
