#include "view/axes.h"

#include <algorithm>
#include <cmath>

#include "base/integers.h"
#include "base/number_text.h"

namespace kestrel {
namespace {

constexpr double fineTick = 0.5;      // of the length of a tick
constexpr double tickLength = 0.008;  // of the count axis, as a part of the width

// The label of a tick starts at it, but stays on the canvas: the last tick lies at its right edge.
void printChannel(Canvas& canvas, int channel) {
    const std::string label = plainNumber(std::int64_t{channel});
    const double rightmost = canvas.scale().right - canvas.textWidth(label);
    printAt(canvas, std::min<double>(channel, rightmost), -50, label);
}

}  // namespace

void printAt(Canvas& canvas, double x, double y, const std::string& text) {
    canvas.moveTo(x, y);
    canvas.print(text);
}

void drawChannelAxis(const ViewState& view, Canvas& canvas) {
    const Colour colour = canvas.foreColour();
    canvas.line(view.viewStartCh, axisBase, view.viewEndCh, axisBase, colour);
    // A view of no width would have ticks without end.
    const int step = std::max<int>(toInt16(view.viewWidth / 4.0), 1);
    for (int x = view.viewStartCh; x <= view.viewEndCh; x += step) {
        canvas.line(x, axisBase, x, 0, colour);
        printChannel(canvas, x);
    }
}

void drawCountAxis(const ViewState& view, Canvas& canvas) {
    canvas.line(view.viewStartCh, plotTop, view.viewStartCh, axisBase, canvas.foreColour());
}

void drawCountTick(const ViewState& view, double y, Canvas& canvas, double part) {
    canvas.line(view.viewStartCh - part * tickLength * view.viewWidth, y, view.viewStartCh, y,
                canvas.foreColour());
}

namespace {

void drawFineCountTicks(const ViewState& view, Canvas& canvas) {
    if (view.linLogMode == CountAxis::Linear) {
        for (int fifth = 1; fifth < 20; ++fifth)
            drawCountTick(view, plotTop * fifth / 20, canvas, fineTick);
        return;
    }
    for (int decade = 0; decade < 6; ++decade) {
        for (int digit = 2; digit <= 9; ++digit)
            drawCountTick(view, 200.0 * (decade + std::log10(digit)), canvas, fineTick);
    }
}

}  // namespace

void drawFineTicks(const ViewState& view, Canvas& canvas) {
    const int step = std::max<int>(toInt16(view.viewWidth / 16.0), 1);
    for (int x = view.viewStartCh; x <= view.viewEndCh; x += step)
        canvas.line(x, axisBase, x, fineTick * axisBase, canvas.foreColour());
    drawFineCountTicks(view, canvas);
}

std::string countLabel(std::int64_t counts) {
    if (counts < 0)
        return "-" + countLabel(-counts);
    auto value = static_cast<double>(counts);
    std::string suffix;
    for (const char* next : {"K", "M"}) {
        if (value >= 1024) {
            value /= 1024;
            suffix = next;
        }
    }
    return plainNumber(value) + suffix;
}

std::string fullScaleLabel(std::int16_t exponent) {
    std::int64_t fullScale = std::int64_t{1} << exponent;
    char suffix = ' ';
    for (const char next : {'K', 'M'}) {
        if (fullScale >= 1024) {
            fullScale /= 1024;
            suffix = next;
        }
    }
    return plainNumber(fullScale) + suffix;
}

}  // namespace kestrel
