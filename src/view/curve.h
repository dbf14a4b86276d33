// The spectrum's curve, on a canvas that has the user scale of the view: for the plot and for
// paper.
#pragma once

#include "base/canvas.h"
#include "view/view_state.h"

namespace kestrel {

struct PlotInput;

// The curve of the channels after the first one shown; nothing where no channel before the last has
// counts. At most about 2 x 4096 elements are drawn, however many channels are shown. Faults:
// SubscriptOutOfRange for a channel count beyond 17001 in an empty spectrum; Overflow on the linear
// axis for counts that a group reads and whose height does not fit 32 bits.
void drawCurve(const PlotInput& input, Canvas& canvas);

// The curve of the second spectrum, scaled, in grey; nothing without one. Where no factor can be
// told it is drawn one to one.
void drawSecondCurve(const PlotInput& input, Canvas& canvas);

// Whether the difference of the two spectra stands in place of them.
bool showsDifference(const PlotInput& input);
// Where it is 0, in plot units.
inline constexpr double differenceZero = plotTop / 2;

// The greatest one shown, in counts, whatever its sign.
double greatestDifference(const PlotInput& input);

// The first minus the scaled second with its colours, a line where it is 0, and in grey one
// standard error above and below. Faults likewise.
void drawDifference(const PlotInput& input, Canvas& canvas);

// The regions that the peak-area dialog has, over the curve. Faults likewise.
void drawRegions(const PlotInput& input, Canvas& canvas);

}  // namespace kestrel
