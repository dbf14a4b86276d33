// Conversions between channels and energies in keV by a quadratic calibration.
#pragma once

#include <cstdint>

#include "spectrum/spectrum.h"

namespace kestrel {

// Energy of a channel, rounded to 0.1 keV, halves to even. Faults: Overflow where a tenth of a keV
// does not fit 32 bits.
double channelToEnergy(const Calibration& calibration, std::int16_t channel);

// Nearest channel of an energy, halves to even; 0 where the calibration has no slope. Faults:
// Overflow (no 16-bit channel), InvalidCall (the calibration never reaches the energy).
std::int16_t energyToChannel(const Calibration& calibration, double energy);

}  // namespace kestrel
