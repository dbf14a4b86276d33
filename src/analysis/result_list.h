// The results of all committed peak-area sets as lines of text: one list for window, file and
// printout.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "analysis/peak_area_set.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Of a line of the list, and of the rules above and below it.
inline constexpr std::size_t resultLineLength = 94;
// At the end of it stand the six bounds, low to high.
inline constexpr std::size_t boundLength = 5;

// The headings of the columns of a result line.
inline constexpr std::string_view resultHeadings =
    "  No    ch    energy   "
    "  NET       error  "
    "     cps       error   "
    "   bkg(L)    peak      bkg(H)";

// Measures a set again with the bounds it has. Faults: those of computeNetArea.
void recomputeSet(const Spectrum& spectrum, PeakAreaSet& set);

// One line for each of the sets 0 to setCount - 1, by rising centre of the peak region; all listed
// sets are measured again. Of sets with the same centre the first stands in the list repeatedly,
// and a centre of 0 is passed over (compatibility: same centres). Faults: Overflow (centre beyond
// 16 bits), those of recomputeSet.
std::vector<std::string> buildResultList(const Spectrum& spectrum, PeakAreaTable& sets,
                                         std::int16_t setCount);

// The eight lines above the list: file, comment, analyser, date, live time and column headings.
std::vector<std::string> resultHeader(const Spectrum& spectrum);
// The line below the list.
std::string resultFooter();

}  // namespace kestrel
