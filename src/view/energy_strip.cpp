#include "view/energy_strip.h"

#include <string>
#include <string_view>
#include <vector>

#include "view/axes.h"
#include "view/energy_axis.h"

namespace kestrel {
namespace {

// In heights of the strip.
constexpr double strip = 1.0;
constexpr double tickEnd = 0.78;
constexpr double labelTop = 0.74;
constexpr double labelGap = 0.01;  // between labels, as a part of the width
constexpr std::string_view unit = "keV";

void drawTicks(const PlotInput& input, const std::vector<EnergyTick>& ticks, Canvas& canvas) {
    const UserScale scale = canvas.scale();
    const double gap = labelGap * (scale.right - scale.left);
    // The unit stands at the left end. A calibration may fall or turn, but ticks come from there.
    printAt(canvas, scale.left, labelTop, std::string(unit));
    double free = scale.left + canvas.textWidth(unit) + gap;
    for (const EnergyTick& tick : ticks) {
        canvas.line(tick.channel, strip, tick.channel, tickEnd, canvas.foreColour());
        const double width = canvas.textWidth(tick.label);
        const double left = tick.channel - width / 2;
        if (left < free || left + width > scale.right)
            continue;
        printAt(canvas, left, labelTop, tick.label);
        free = left + width + gap;
    }
    canvas.line(input.view.viewStartCh, strip, input.view.viewEndCh, strip, canvas.foreColour());
}

}  // namespace

void drawEnergyStrip(const PlotInput& input, Canvas& canvas) {
    const UserScale plot = plotScale(input.view);
    canvas.setScale({.left = plot.left, .top = strip, .right = plot.right, .bottom = 0});
    canvas.clear(input.palette[palette_number::black]);
    canvas.setForeColour(input.palette[palette_number::lightRed]);
    const auto ticks =
        energyTicks(input.spectrum.calCurrent, input.view.viewStartCh, input.view.viewEndCh);
    if (!ticks.empty())
        drawTicks(input, ticks, canvas);
}

}  // namespace kestrel
