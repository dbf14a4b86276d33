// An axis of energies under a range of channels: ticks at round values.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

struct EnergyTick {
    double channel;  // a place between channels, as a rule
    std::string label;
};

// Ticks at 1, 2 or 5 times a power of ten keV between two channels, at most about twenty, in the
// order of their places. A calibration may rise, fall or turn; one that is constant or beyond all
// use has no ticks. The energies are not rounded to 0.1 keV as they are in the status line: the
// ticks of a narrow range would not stand where they belong.
std::vector<EnergyTick> energyTicks(const Calibration& calibration, int firstChannel,
                                    int lastChannel);

}  // namespace kestrel
