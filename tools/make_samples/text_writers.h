// Spectrum records as text files of the kinds that analysers and their software export.
#pragma once

#include <string>

#include "spectrum/spectrum.h"

namespace kestrel::samples {

// Each takes counts, times in ticks of 20 ms, start and comment from the record, and what its form
// can carry of the calibration in use. Lines end in CR LF.
std::string winOxfordFile(const Spectrum& spectrum);
std::string dosOxfordFile(const Spectrum& spectrum);
// The channel count must be a multiple of 8.
std::string canberra35File(const Spectrum& spectrum);
// The live and the real time stand in the places of channels 0 and 1.
std::string naigE560File(const Spectrum& spectrum);

}  // namespace kestrel::samples
