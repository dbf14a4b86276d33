// The axes that plot and printout share, in the user scale of the view and in the fore colour.
#pragma once

#include <cstdint>
#include <string>

#include "base/canvas.h"
#include "view/view_state.h"

namespace kestrel {

// The lower end of the count axis and of the channel ticks.
inline constexpr double axisBase = -30.0;

// Text with its upper left corner at (x, y).
void printAt(Canvas& canvas, double x, double y, const std::string& text);

// Base line and ticks at quarters of the width, with their channels.
void drawChannelAxis(const ViewState& view, Canvas& canvas);

void drawCountAxis(const ViewState& view, Canvas& canvas);
// `part` of the full length.
void drawCountTick(const ViewState& view, double y, Canvas& canvas, double part = 1.0);

// Ticks of half the length between those of the two axes.
void drawFineTicks(const ViewState& view, Canvas& canvas);

// Counts on the linear axis as 768, 1.5K, 2M.
std::string countLabel(std::int64_t counts);
// The full scale of 2^exponent counts as 256, 1K, 2M: always with the place of the suffix.
std::string fullScaleLabel(std::int16_t exponent);

}  // namespace kestrel
