#include "view/axes.h"

#include <algorithm>

#include "base/integers.h"
#include "base/number_text.h"

namespace kestrel {
namespace {

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

void drawCountTick(const ViewState& view, double y, Canvas& canvas) {
    canvas.line(view.viewStartCh - tickLength * view.viewWidth, y, view.viewStartCh, y,
                canvas.foreColour());
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
