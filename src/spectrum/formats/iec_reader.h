// Reader of IEC 61455 files: numbered lines of fixed meaning, each of which begins with "A004".
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeIec(std::string_view front);

// One spectrum. The day stands first in a date, unless one of the file's two dates says otherwise.
// Faults: FormatError.
std::vector<MeasuredSpectrum> readIec(std::string_view bytes);

}  // namespace kestrel
