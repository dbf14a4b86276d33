// Reader of N42 files: XML of ANSI N42.42 in its editions of 2006 and 2012.
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeN42(std::string_view front);

// All spectra of 8 channels and more that are not those of a neutron or Geiger-Mueller detector, in
// the order of the file. Only the local names of elements count: many files have prefixes that
// nothing declares. Faults: FormatError.
std::vector<MeasuredSpectrum> readN42(std::string_view bytes);

}  // namespace kestrel
