// The second spectrum of a comparison: how it is opened, changes places with the first, and is
// told.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/open_spectrum.h"
#include "view/comparison.h"
#include "view/view_state.h"

namespace kestrel {

// Asks for a file of any format and puts it beside the first spectrum, which is not touched. What
// is refused, cancelled or fails leaves the comparison as it was. `lastDirectory`,
// `lastFilterIndex` and faults as for openAnySpectrum.
OpenResult openSecond(Comparison& comparison, const OpenTarget& first, std::string& lastDirectory,
                      int& lastFilterIndex, Dialogs& dialogs);

// The first and the second change places, with all that was opened, and calibrated since, with
// each. Nothing without a second one.
void swapSpectra(Comparison& comparison, const OpenTarget& first);

// The second goes; how it was compared stays for the next one.
void removeSecond(Comparison& comparison);

// What is told of the second at the cursor, on the channels of the first: "Second x 1.5000   c:
// 123.0   difference: -12.3 +- 4.5 (-2.7 sd)   back.chn". Empty without one.
std::string secondLine(const Comparison& comparison, const Spectrum& first, const ViewState& view);

}  // namespace kestrel
