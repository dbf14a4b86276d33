// Reader of TKA files: the live time, the real time and the counts, a number a line.
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeTka(std::string_view front);

// One spectrum. Where the lines are a power of two, as in nearly all files, the times stand in the
// place of the counts of channels 0 and 1, which become 0; where the lines behind the times are
// one, the third line is channel 0. Faults: FormatError.
std::vector<MeasuredSpectrum> readTka(std::string_view bytes);

}  // namespace kestrel
