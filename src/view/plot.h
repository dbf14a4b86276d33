// Painting the spectrum: axes, labels, curve and header texts, on any canvas that has the user
// scale of the view.
#pragma once

#include "base/canvas.h"
#include "base/checked_array.h"
#include "base/palette.h"
#include "spectrum/derived_arrays.h"
#include "spectrum/region_bounds.h"
#include "spectrum/spectrum.h"
#include "view/comparison.h"
#include "view/plot_look.h"
#include "view/view_state.h"

namespace kestrel {

// What the plot reads, and never writes.
struct PlotInput {
    const Spectrum& spectrum;
    const DerivedArrays& derived;
    const ViewState& view;
    const ChannelArray<Colour>& channelColour;  // 0: drawn white
    const Palette& palette;
    const RegionBounds* regions = nullptr;   // null: a plot that never shows any
    const PlotLook* look = nullptr;          // null: without additions
    const Comparison* comparison = nullptr;  // null: a plot that never shows a second spectrum
};

// Repaints all of the canvas. It leaves the fore colour light red, in which the base line and the
// channel ticks of the next repaint are drawn. At most about 2 x 4096 curve elements are drawn,
// however many channels are shown. While the regions of a peak are shown, their channels are drawn
// once more in light green and light red. A second spectrum lies behind the first, in grey. Faults:
// those of drawCurve; Overflow for a bound beyond 16 bits.
void drawSpectrum(const PlotInput& input, Canvas& canvas);

}  // namespace kestrel
