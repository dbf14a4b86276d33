// Tops that stand clear of the valleys on both sides: how lines are told apart that stand too close
// together for a filter, and lines from edges.
#pragma once

#include <vector>

#include "spectrum/curvature_filter.h"

namespace kestrel {

struct Top {
    int centre = 0;           // channel
    double significance = 0;  // of the deeper valley, in standard deviations
};

// A top stands above the lowest place on either side, before the counts rise above the top, by more
// than these standard deviations of the difference of the two counts: the first on both sides,
// which is what makes a valley visible, the second on one of them at least. By the second its
// curvature stands out as well: the scatter on a plateau beside an edge makes tops, but none that
// curve so.
inline constexpr double visibleValley = 3.0;
inline constexpr double clearTop = 4.5;

// The tops in channels first .. last, in ascending order. Counts are compared in the filter's
// groups, and valleys sought up to `reach` channels away.
std::vector<Top> findTops(const CurvatureFilter& filter, int first, int last, int reach);

}  // namespace kestrel
