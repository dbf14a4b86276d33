// The list of all peaks of a spectrum: what it tells of each, column by column.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/peak_measures.h"

namespace kestrel {

struct WithError {
    double value = 0;
    double error = 0;  // 1 sigma
};

struct ListedPeak {
    PeakRecord measured;
    // Of this peak alone: of its regions, or of the fit where it is one of a group. No error where
    // the fit told nothing.
    double net = 0;
    double netError = 0;
    std::optional<double> rate;        // counts per second; none without that or a live time
    std::optional<double> energy;      // keV; none without a calibration
    std::optional<double> energyFwhm;  // keV; likewise
    std::string candidates;            // that could explain it
    std::optional<WithError> second;   // net area of a second spectrum in the same regions, scaled
    std::optional<WithError> ratio;    // of the net area of the regions to that
};

struct PeakList {
    std::vector<ListedPeak> peaks;  // ascending by their centroids
    bool calibrated = false;
    bool compared = false;  // with a second spectrum
};

// The calibration in force; none where its energies do not rise, or where it is the one that the
// program starts with, of which nobody has said that it is the spectrum's.
std::optional<Calibration> knownCalibration(const Spectrum& spectrum);

// Faults: those of measurePeaks.
PeakList listPeaks(const Spectrum& spectrum, const DerivedArrays& derived);

struct PeakColumn {
    // ">" or "<" for the side of its texts, and as wide as they are; none: a column of the file.
    std::string_view heading;
    std::string_view fileHeading;  // none: a column of the table
    std::string_view explanation;
    std::string (*text)(const ListedPeak& peak);  // empty where there is nothing to tell
};

// All columns of a list from left to right. Those of a second spectrum are there only with one.
std::vector<PeakColumn> peakColumns(bool compared);

// Those that the table shows.
std::vector<PeakColumn> shownPeakColumns(bool compared);

// What else is known of a peak: regions, errors, and what could have been seen there.
std::string peakDetails(const ListedPeak& peak);

// What holds for all of them: how many there are, and whether energies are missing.
std::string remarkOn(const PeakList& list);

}  // namespace kestrel
