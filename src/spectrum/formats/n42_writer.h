// Writer of N42 files: XML of ANSI N42.42 in its edition of 2012.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// One measurement with one spectrum, zeros counted. Faults: those of writtenCount.
std::string n42File(const Spectrum& spectrum);
// What users must know of it beyond what the format has no place for, as sentences.
void addN42Losses(const Spectrum& spectrum, std::vector<std::string>& losses);

}  // namespace kestrel
