// The table that a spectrum is calibrated with: its peaks, and the energies that they are given.
#pragma once

#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "analysis/calibration_source.h"
#include "analysis/peak_calibration.h"
#include "peaks/peak_list.h"

namespace kestrel {

struct CalibrationRow {
    double channel = 0;
    double channelError = 0;       // one standard deviation
    double fwhm = 0;               // channels; 0 for a point that is no peak of the spectrum
    double net = 0;                // counts; likewise
    std::optional<double> energy;  // keV; none: not a point of the calibration
    bool isUsed = true;
};

struct CalibrationTable {
    std::vector<CalibrationRow> rows;  // ascending
    CalibrationCurve curve = CalibrationCurve::Line;
};

// All peaks, none with an energy.
CalibrationTable calibrationTable(const PeakList& list);

// The rows that have an energy.
CalibrationPoints pointsOf(const CalibrationTable& table);

// Makes these the points, and theirs the curve: each takes the place of the nearest peak within the
// peak's FWHM, or has a row of its own. The other peaks lose their energies.
void takePoints(CalibrationTable& table, const CalibrationPoints& points);

// Gives lines of at least 1 per 100 decays, the strongest first, to the nearest peaks that have no
// energy yet and lie within 0.7 FWHM or 1 keV of them by the calibration.
void takeLines(CalibrationTable& table, std::span<const SourceLine> lines,
               const Calibration& calibration);

// The calibration source that all peaks together are from.
std::optional<RecognizedSource> recognizedSource(const CalibrationTable& table, int channelCount);

// keV, as it is typed with a point or a comma; none where that is no number, or not one from 0.001
// to 100000.
std::optional<double> typedEnergy(std::string_view text);

// Of a channel that need not be whole.
double energyAt(const Calibration& calibration, double channel);

// What the curve is and how well it fits, or why there is none.
std::string calibrationSummary(const FittedPeaks& fitted, const CalibrationTable& table);

}  // namespace kestrel
