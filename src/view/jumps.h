// The input boxes of the Jump menu.
#pragma once

#include <cstdint>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The channel that the user types, or that of the energy in keV that the user types; 0 and 0 keV
// for a cancelled box or a text that is no number. Not bounded. Faults: Overflow, those of
// energyToChannel.
std::int16_t askChannel(Dialogs& dialogs);
std::int16_t askEnergy(const Calibration& calibration, Dialogs& dialogs);

}  // namespace kestrel
