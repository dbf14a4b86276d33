// Everything that is known of each marked peak of a spectrum: place, width, area, and what could
// have been seen there.
#pragma once

#include <vector>

#include "analysis/net_area.h"
#include "analysis/peak_width.h"
#include "spectrum/derived_arrays.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Places and widths in channels, all errors 1 sigma.
struct PeakRecord {
    int channel = 0;  // that is marked
    double centroid = 0;
    double centroidError = 0;
    double fwhm = 0;
    double fwhmError = 0;  // 0: the width is that of the curve, not of the peak itself
    // Of the regions. Peaks of a group have them in common, and everything up to detectionLimit.
    // Gross, net and netError are 0 where netCounts ends in a fault.
    PeakRegions regions;
    double gross = 0;
    double net = 0;
    double netError = 0;
    double significance = 0;  // net / netError
    double decisionThreshold = 0;
    double detectionLimit = 0;
    int group = 0;  // 1, 2 ... for peaks that are measured together, 0 for one by itself
    // The counts of this peak alone, by the fit.
    double area = 0;
    double areaError = 0;
};

struct PeakMeasures {
    std::vector<PeakRecord> peaks;  // ascending
    WidthCurve width;
};

// Probability of a false detection, and of missing what is there: 5 % each.
inline constexpr double quantile = 1.645;

// Centroid and width are those of the fit (gaussian_fit.h) from the start of the lower background
// to the end of the upper one. The width is free for strong peaks that stand alone; these make the
// curve (peak_width.h) that gives the others their width. Regions are those of peak_regions.h,
// their net area and its error those of net_area.h. Decision threshold k u(0) and detection limit
// k^2 + 2 k u(0) with k = `quantile` are those of L. A. Currie, Anal. Chem. 40 (1968) 586, and of
// ISO 11929-1 for equal probabilities of both errors; u(0) is the error of the net area when it is
// nothing.
PeakMeasures measurePeaks(const Spectrum& spectrum, const DerivedArrays& derived);

}  // namespace kestrel
