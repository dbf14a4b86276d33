#include "view/plot.h"

#include <algorithm>
#include <string>

#include "base/integers.h"
#include "base/number_text.h"
#include "spectrum/data_information.h"
#include "view/axes.h"
#include "view/curve.h"
#include "view/status_text.h"

namespace kestrel {
namespace {

constexpr double labelDistance = 0.04;  // of the count axis labels, as a part of the width
constexpr double ticksDistance = 0.01;  // of the farthest ends of its ticks, likewise, with a gap

double labelPosition(const ViewState& view) {
    return view.viewStartCh - labelDistance * view.viewWidth;
}

// A label left of the count axis and its ticks, as far as there is room.
void printCountLabel(const ViewState& view, double y, const std::string& label, Canvas& canvas) {
    const double rightmost =
        view.viewStartCh - ticksDistance * view.viewWidth - canvas.textWidth(label);
    const double x = std::min(labelPosition(view), rightmost);
    printAt(canvas, std::max(x, canvas.scale().left), y, label);
}

// Below each tick of the linear axis but the highest, which has the full scale; `zero` is the
// number of the tick at 0.
void labelQuarters(const ViewState& view, int zero, Canvas& canvas) {
    for (int quarter = 0; quarter < 4; ++quarter)
        printCountLabel(view, plotTop * quarter / 4,
                        countLabel((std::int64_t{1} << view.yScaleExp) * (quarter - zero) / 4),
                        canvas);
}

// The full scale has as much above 0 as below.
void drawDifferencePlot(const PlotInput& input, Canvas& canvas) {
    const ViewState& view = input.view;
    drawCountAxis(view, canvas);
    printCountLabel(view, plotTop, countLabel(std::int64_t{1} << (view.yScaleExp - 1)), canvas);
    printAt(canvas, labelPosition(view), plotTop - canvas.textHeight(), "cnt");
    for (int quarter = 0; quarter <= 4; ++quarter)
        drawCountTick(view, plotTop * quarter / 4, canvas);
    labelQuarters(view, 2, canvas);
    drawDifference(input, canvas);
}

void drawLinearPlot(const PlotInput& input, Canvas& canvas) {
    const ViewState& view = input.view;
    drawCountAxis(view, canvas);
    canvas.point(labelPosition(view), plotTop, input.palette[palette_number::white]);
    canvas.print(fullScaleLabel(view.yScaleExp));
    printAt(canvas, labelPosition(view), plotTop - canvas.textHeight(), "cnt");
    for (int quarter = 0; quarter <= 4; ++quarter)
        drawCountTick(view, 300.0 * quarter, canvas);
    drawSecondCurve(input, canvas);
    drawCurve(input, canvas);
}

void drawLogPlot(const PlotInput& input, Canvas& canvas) {
    const ViewState& view = input.view;
    drawCountAxis(view, canvas);
    for (int decade = 0; decade <= 6; ++decade) {
        drawCountTick(view, 200.0 * decade, canvas);
        printAt(canvas, labelPosition(view), 200.0 * decade, plainNumber(std::int64_t{decade}));
    }
    drawSecondCurve(input, canvas);
    drawCurve(input, canvas);
}

void drawFineAxes(const PlotInput& input, Canvas& canvas) {
    drawFineTicks(input.view, canvas);
    if (input.view.linLogMode == CountAxis::Linear && !showsDifference(input))
        labelQuarters(input.view, 0, canvas);
}

// At a quarter and at three quarters of the range shown.
void drawHeaderTexts(const PlotInput& input, Canvas& canvas) {
    const int start = input.view.viewStartCh;
    const int range = input.view.viewEndCh - start;
    const std::int16_t x1 = toInt16(start + range / 4.0);
    const std::int16_t x2 = toInt16(start + 3 * range / 4.0);
    printAt(canvas, x1, 1160, dateLine(input.spectrum));
    printAt(canvas, x1, 1120, "");
    printAt(canvas, x1, 1080, commentLine(input.spectrum));
    printAt(canvas, x2, 1000, liveTimeHeader(input.spectrum));
}

}  // namespace

void drawSpectrum(const PlotInput& input, Canvas& canvas) {
    canvas.clear(input.palette[palette_number::black]);
    drawChannelAxis(input.view, canvas);
    canvas.setForeColour(input.palette[palette_number::lightRed]);
    if (showsDifference(input))
        drawDifferencePlot(input, canvas);
    else if (input.view.linLogMode == CountAxis::Linear)
        drawLinearPlot(input, canvas);
    else
        drawLogPlot(input, canvas);
    if (input.look != nullptr && input.look->fineTicks)
        drawFineAxes(input, canvas);
    drawHeaderTexts(input, canvas);
    drawRegions(input, canvas);
}

}  // namespace kestrel
