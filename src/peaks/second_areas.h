// The areas of a second spectrum under the peaks of the first.
#pragma once

#include <vector>

#include "peaks/peak_list.h"

namespace kestrel {

struct SecondCounts {
    std::vector<double> counts;  // on the channels of the first
    double factor = 1;           // that they are multiplied by

    bool operator==(const SecondCounts&) const = default;
};

// Adds to each peak the net area of the second in the same regions, and the ratio of the first's to
// it; no ratio where the second has no peak that could be told from its background. Counts shared
// out to channels count as independent in the errors, which are too large by that, at most, what
// the channels at the ends of the regions have.
void addSecondAreas(PeakList& list, const SecondCounts& second);

}  // namespace kestrel
