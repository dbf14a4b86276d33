// Writer of TKA files: the live time, the real time and the counts, a number a line.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// The times stand in the place of the counts of channels 0 and 1. Faults: those of writtenCount.
std::string tkaFile(const Spectrum& spectrum);
// What users must know of it beyond what the format has no place for, as sentences.
void addTkaLosses(const Spectrum& spectrum, std::vector<std::string>& losses);

}  // namespace kestrel
