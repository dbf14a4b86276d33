// How a spectrum of an exchange format becomes the loaded one.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// How many neighbouring channels must be added so that the spectrum fits into the loaded one: 1 as
// a rule, else the lowest power of two.
int channelsToGroup(const MeasuredSpectrum& spectrum);

struct TakenSpectrum {
    std::vector<std::string> notices;  // what a user must know of it, as sentences
    bool tellsCalibration = true;      // else calCurrent and calFromFile are left as they were
};

// Puts `measured` into `spectrum` as a reader would, with `group` channels added into one: times in
// 20 ms ticks, real counts rounded with halves to even. Faults: FormatError, before anything is
// written, where counts or times do not fit.
TakenSpectrum takeMeasured(const MeasuredSpectrum& measured, int group, Spectrum& spectrum);

}  // namespace kestrel
