// The strip of energies below the plot: it has the plot's scale in channels, so that its ticks
// stand below the channels of their energies.
#pragma once

#include "base/canvas.h"
#include "view/plot.h"

namespace kestrel {

// Repaints all of the canvas. A calibration that gives no ticks leaves it empty.
void drawEnergyStrip(const PlotInput& input, Canvas& canvas);

}  // namespace kestrel
