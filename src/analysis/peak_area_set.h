// One peak-area measurement: the bounds of its three regions, its results and a remark.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/checked_array.h"
#include "base/fixed_text.h"

namespace kestrel {

struct PeakAreaSet {
    static constexpr std::size_t nameBytes = 24;

    std::int16_t bkg1Low = 0;
    std::int16_t bkg1High = 0;
    std::int16_t bkg2Low = 0;
    std::int16_t bkg2High = 0;
    std::int16_t pkLow = 0;
    std::int16_t pkHigh = 0;
    float net = 0;       // counts
    float netError = 0;  // counts
    float cps = 0;       // counts per second of live time
    float cpsError = 0;
    FixedText<nameBytes> name{};
};

// Sets 0 to 127 can be committed; the one after the last committed set is the one being filled.
using PeakAreaTable = CheckedArray<PeakAreaSet, 129>;
inline constexpr std::int16_t mostPeakSets = 128;

}  // namespace kestrel
