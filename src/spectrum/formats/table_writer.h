// Writer of tables with channel, energy and counts, for table programs.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// Lines of a label and its value, then the columns; without a calibration that of energies is left
// out. Faults: those of writtenCount.
std::string energyTable(const Spectrum& spectrum);
// What users must know of it beyond what the format has no place for, as sentences.
void addTableLosses(const Spectrum& spectrum, std::vector<std::string>& losses);

}  // namespace kestrel
