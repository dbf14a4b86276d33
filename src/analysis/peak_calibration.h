// The energy calibration through many peaks: a straight line or a parabola by weighted least
// squares.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

struct CalibrationPoint {
    double channel = 0;
    double channelError = 0;  // one standard deviation
    double energy = 0;        // keV
    bool isUsed = true;
    friend bool operator==(const CalibrationPoint&, const CalibrationPoint&) = default;
};

enum class CalibrationCurve { Line, Parabola };

// What was typed and chosen; the calibration follows from it.
struct CalibrationPoints {
    std::vector<CalibrationPoint> points;
    CalibrationCurve curve = CalibrationCurve::Line;
    friend bool operator==(const CalibrationPoints&, const CalibrationPoints&) = default;
};

struct FittedPeaks {
    std::string refusal;  // why there is no calibration, as a sentence; empty where there is one
    Calibration calibration;
    std::vector<double>
        residuals;            // of every point, used or not: its energy minus the curve's, keV
    double meanResidual = 0;  // root of the mean square over the points used, keV
};

// The curve through the points that are used, for a spectrum of `channelCount` channels. It makes
// sum of w (E - A - B n - C n^2)^2 least, with w = 1 / (s^2 + 0.05^2), s the error of the channel:
// the energies are known far better than the channels, and no peak of a real detector lies on the
// curve to better than a twentieth of a channel. The normal equations are solved in a channel
// counted from the mean in units of the spread, in which they are well conditioned. Refused: fewer
// points than the curve has coefficients (two of the same channel count as one), and a curve that
// does not rise all over the spectrum.
FittedPeaks fitCalibration(const CalibrationPoints& points, int channelCount);

// Makes it the user's calibration, in force for this spectrum and for all that are opened from now
// on, until the files' own are chosen again.
void keepCalibration(const Calibration& calibration, Spectrum& spectrum, CalibrationChoice& choice);

}  // namespace kestrel
