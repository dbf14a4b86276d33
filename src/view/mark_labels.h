// The texts that are laid over the plot for nuclide marks: a legend, and the nuclide and energy of
// each line.
#pragma once

#include <string>
#include <vector>

#include "base/canvas.h"
#include "view/nuclide_marks.h"
#include "view/view_state.h"

namespace kestrel {

// Its upper left corner in the scale of the plot.
struct PlacedText {
    double x = 0;
    double y = 0;
    std::string text;
    Colour colour = 0;
};

// Below the header texts: the legend, then, where the user wants them, labels above the marks in
// the shown range, the strongest first. What has no room beside those before it is left out.
// `canvas`, with the plot's scale, is only measured.
std::vector<PlacedText> markTexts(const NuclideMarks& marks, bool labels, const ViewState& view,
                                  const Canvas& canvas);

// On a canvas with the plot's scale, each on a ground of its own so that it can be read.
void drawMarkTexts(const std::vector<PlacedText>& texts, Colour ground, Canvas& canvas);

}  // namespace kestrel
