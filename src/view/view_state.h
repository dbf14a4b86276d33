// What the main window shows: cursor, channel range, scale and plot mode, and the rules that move
// them.
#pragma once

#include <cstdint>

#include "base/canvas.h"

namespace kestrel {

enum class CountAxis : std::int16_t { Logarithmic = 1, Linear = -1 };
enum class PlotMode : std::int16_t { Line = 1, Dots = -1 };

struct ViewState {
    std::int16_t cursorCh = 0;
    std::int16_t viewStartCh = 0;
    std::int16_t viewEndCh = 16384;
    std::int16_t viewWidth = 16384;
    CountAxis linLogMode = CountAxis::Logarithmic;
    PlotMode plotMode = PlotMode::Line;
    std::int16_t yScaleExp = 10;             // linear full scale: 2^yScaleExp counts
    float yScaleFactor = 1200.0F / 1024.0F;  // plot units per count on the linear axis
};

// Height of the plot above its base line, and of the strip for the channel labels below it.
inline constexpr double plotTop = 1200.0;
inline constexpr double plotBottom = -140.0;

// Places the shown range around the cursor, snapped to a quarter of the width and kept inside the
// spectrum. Faults: Overflow, DivisionByZero.
void centreViewOnCursor(ViewState& view, std::int16_t channelCount);

// Where x, in channels, stands in the shown range: 0 is the start, 1 a width on.
// Faults: DivisionByZero.
double placeInView(const ViewState& view, double x);
// The range in which x stands at that place, as nearly as the snapping of centreViewOnCursor lets
// it, which is by an eighth of the width. Faults: Overflow, DivisionByZero.
void showAt(ViewState& view, double x, double place, std::int16_t channelCount);

// The user scale of the plot: one unit a channel, a margin of a sixteenth of the width at the left.
// The right edge is start plus width, not the last channel shown (compatibility: one channel).
UserScale plotScale(const ViewState& view);

// Each returns false, and changes nothing, where its condition does not hold.
bool halveWidth(ViewState& view);
bool doubleWidth(ViewState& view, std::int16_t channelCount);
bool lowerFullScale(ViewState& view);
bool raiseFullScale(ViewState& view);

// Before the window's controls are laid out the width follows the range shown. A recentring sets
// the last channel to start plus width, so every layout after one widens the view by one channel
// (compatibility: drift).
void followShownRange(ViewState& view);

// A view of all channels, as a new spectrum is shown.
void showAllChannels(ViewState& view, std::int16_t channelCount);

// The narrowest range that showRange makes, where the spectrum has as many channels.
inline constexpr int narrowestRange = 64;
// The channels from one place to another, in either order, widened around their middle where they
// are too few and kept inside the spectrum.
void showRange(ViewState& view, double from, double to, std::int16_t channelCount);

// Moves the range by eighths of its width, above 0 to the right, as far as there are channels.
// False where it stays.
bool panView(ViewState& view, int eighths, std::int16_t channelCount);

// The lowest full scale that `counts` do not exceed, within its limits. False where it is that.
bool fitFullScale(ViewState& view, std::int32_t counts);

bool isShown(const ViewState& view, std::int16_t channel);

}  // namespace kestrel
