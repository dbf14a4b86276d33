#include "view/plot.h"

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

double labelPosition(const ViewState& view) {
    return view.viewStartCh - labelDistance * view.viewWidth;
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

// Below each tick of the linear axis but the highest, which has the full scale.
void labelQuarters(const ViewState& view, Canvas& canvas) {
    for (int quarter = 0; quarter < 4; ++quarter)
        printAt(canvas, labelPosition(view), plotTop * quarter / 4,
                countLabel((std::int64_t{1} << view.yScaleExp) * quarter / 4));
}

void drawFineAxes(const ViewState& view, Canvas& canvas) {
    drawFineTicks(view, canvas);
    if (view.linLogMode == CountAxis::Linear)
        labelQuarters(view, canvas);
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
    if (input.view.linLogMode == CountAxis::Linear)
        drawLinearPlot(input, canvas);
    else
        drawLogPlot(input, canvas);
    if (input.look != nullptr && input.look->fineTicks)
        drawFineAxes(input.view, canvas);
    drawHeaderTexts(input, canvas);
    drawRegions(input, canvas);
}

}  // namespace kestrel
