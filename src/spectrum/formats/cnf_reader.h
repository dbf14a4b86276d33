// Reader of CNF files: the blocks of a Canberra CAM file.
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeCnf(std::string_view front);

// One spectrum. Its calibration is turned from channels that count from 1, which these files speak
// of, to channels from 0. Faults: FormatError.
std::vector<MeasuredSpectrum> readCnf(std::string_view bytes);

}  // namespace kestrel
