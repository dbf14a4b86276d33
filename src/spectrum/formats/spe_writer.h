// Writer of SPE files: the blocks of IAEA ASCII spectra.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// Faults: those of writtenCount.
std::string speFile(const Spectrum& spectrum);
// What users must know of it beyond what the format has no place for, as sentences.
void addSpeLosses(const Spectrum& spectrum, std::vector<std::string>& losses);

}  // namespace kestrel
