// The spectrum on paper: the channels that the main window shows, with their axes, under a header.
// Preview and printer are drawn by the same functions.
#pragma once

#include "base/canvas.h"
#include "base/dialogs.h"
#include "base/page_layout.h"
#include "spectrum/derived_arrays.h"
#include "spectrum/spectrum.h"
#include "view/view_state.h"

namespace kestrel {

// What a printout reads, and never writes.
struct PrintoutInput {
    const Spectrum& spectrum;
    const DerivedArrays& derived;
    const ViewState& view;
};

// The line at the top of the page. Returns its lower edge as a part of the page's height.
double printPageHeader(const Spectrum& spectrum, Canvas& canvas, const PageLayout& layout);

// Sets the user scale of the page and draws count axis, channel axis, curve and the header texts of
// the spectrum, these below `headerEnd` of printPageHeader. Any fault ends the drawing with a
// message; false then.
bool drawPrintedSpectrum(const PrintoutInput& input, double headerEnd, Canvas& canvas,
                         Dialogs& dialogs);

// The energies of the channels shown, at round values; a calibration may rise, fall or turn. To be
// drawn on the scale that drawPrintedSpectrum has set.
void drawEnergyAxis(const PrintoutInput& input, Canvas& canvas);

}  // namespace kestrel
