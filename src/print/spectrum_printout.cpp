#include "print/spectrum_printout.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/integers.h"
#include "base/number_text.h"
#include "base/page_text.h"
#include "base/palette.h"
#include "base/runtime_fault.h"
#include "print/energy_axis.h"
#include "spectrum/start_date.h"
#include "view/axes.h"
#include "view/curve.h"
#include "view/plot.h"
#include "view/status_text.h"

namespace kestrel {
namespace {

constexpr double pageTop = 1400;
constexpr double pageBottom = -440;
constexpr double channelTitleTop = -60;  // less a line of labels
constexpr double energyLine = -190;      // of the energy axis, below the labels of the channel axis
constexpr double energyTick = 20;
constexpr double gap = 10;              // between a line or an edge and its text
constexpr double labelDistance = 0.02;  // of the count axis labels, as a part of the width
constexpr const char* printerTrouble = "プリンタに問題があります。";

// Ink on paper: what is white on the screen is black here.
constexpr Palette paperPalette = [] {
    Palette palette = standardPalette;
    palette.back() = standardPalette.front();
    return palette;
}();
constexpr Colour ink = paperPalette.back();

UserScale pageScale(const ViewState& view) {
    const double first = view.viewStartCh;
    const double width = view.viewWidth;
    return {.left = first - 0.05 * width - 0.2 * width,
            .top = pageTop,
            .right = double{static_cast<float>(first + width + 0.2 * width)},
            .bottom = pageBottom};
}

std::string liveTime(const Spectrum& spectrum) {
    return "Live: " + plainNumber(std::int64_t{spectrum.liveTime}) + "sec";
}

// Returns their lower edge, which lies below the top of the plot where the page header is long.
double drawHeaderTexts(const PrintoutInput& input, double headerEnd, Canvas& canvas) {
    const Spectrum& spectrum = input.spectrum;
    const std::vector<std::string> lines = {
        dateHeader(spectrum),
        commentHeader(spectrum),
        liveTime(spectrum),
        "Mca : " + plainNumber(std::int64_t{spectrum.mcaNumber}),
        "Seg : " + plainNumber(std::int64_t{spectrum.segmentNumber}),
    };
    const int first = input.view.viewStartCh;
    const std::int16_t x = toInt16(first + (input.view.viewEndCh - first) / 4.0);
    const double height = canvas.textHeight();
    const double belowPageHeader = pageTop - headerEnd * (pageTop - pageBottom);
    double y =
        std::min(plotTop + gap + static_cast<double>(lines.size()) * height, belowPageHeader);
    for (const std::string& line : lines) {
        printAt(canvas, x, y, line);
        y -= height;
    }
    return y;
}

void printCentred(double x, double y, const std::string& text, Canvas& canvas) {
    printAt(canvas, x - canvas.textWidth(text) / 2, y, text);
}

// A label that ends before the count axis, its middle at the height of a tick.
void printCountLabel(const ViewState& view, double y, const std::string& label, Canvas& canvas) {
    const double end = view.viewStartCh - labelDistance * view.viewWidth;
    printAt(canvas, end - canvas.textWidth(label), y + canvas.textHeight() / 2, label);
}

void drawLinearAxis(const ViewState& view, Canvas& canvas) {
    for (int quarter = 0; quarter <= 4; ++quarter)
        drawCountTick(view, 300.0 * quarter, canvas);
    printCountLabel(view, plotTop, fullScaleLabel(view.yScaleExp), canvas);
    printCountLabel(view, plotTop - canvas.textHeight(), "cnt ", canvas);
}

// Decades as powers of ten, the exponents raised by half a line.
void drawLogAxis(const ViewState& view, Canvas& canvas) {
    for (int decade = 0; decade <= 6; ++decade) {
        const double y = 200.0 * decade;
        drawCountTick(view, y, canvas);
        printCountLabel(view, y, "10 ", canvas);
        printCountLabel(view, y + canvas.textHeight() / 2, plainNumber(std::int64_t{decade}),
                        canvas);
    }
}

// Peaks that run off the top of the scale end there, as at the edge of the main window's plot, and
// never in a text.
void drawClippedCurve(const PrintoutInput& input, double top, Canvas& canvas) {
    const auto unmarked = std::make_unique<ChannelArray<Colour>>();
    const UserScale page = canvas.scale();
    canvas.clipTo({page.left, top, page.right, page.bottom});
    drawCurve({input.spectrum, input.derived, input.view, *unmarked, paperPalette}, canvas);
    canvas.clipTo(page);
}

void drawPage(const PrintoutInput& input, double headerEnd, Canvas& canvas) {
    canvas.setScale(pageScale(input.view));
    canvas.setForeColour(ink);
    const double textEnd = drawHeaderTexts(input, headerEnd, canvas);
    drawChannelAxis(input.view, canvas);
    printCentred((input.view.viewStartCh + input.view.viewEndCh) / 2.0,
                 channelTitleTop - canvas.textHeight(), "CHANNEL", canvas);
    drawCountAxis(input.view, canvas);
    if (input.view.linLogMode == CountAxis::Linear)
        drawLinearAxis(input.view, canvas);
    else
        drawLogAxis(input.view, canvas);
    drawClippedCurve(input, std::min(plotTop, textEnd), canvas);
}

}  // namespace

double printPageHeader(const Spectrum& spectrum, Canvas& canvas, const PageLayout& layout) {
    PageText page(canvas, layout);
    page.printZones({"Kestrel ", "File Name: " + spectrum.filePath,
                     "Date: " + formatStartDate(spectrum.startDate) + "-" +
                         std::string(spectrum.startTime.view()),
                     liveTime(spectrum)});
    return page.used();
}

bool drawPrintedSpectrum(const PrintoutInput& input, double headerEnd, Canvas& canvas,
                         Dialogs& dialogs) {
    // Here the message is the program's own, and the printing ends in good order.
    try {
        drawPage(input, headerEnd, canvas);
        return true;
    } catch (const RuntimeFault&) {
        dialogs.message({.text = printerTrouble});
        return false;
    }
}

void drawEnergyAxis(const PrintoutInput& input, Canvas& canvas) {
    const int first = input.view.viewStartCh;
    const int last = input.view.viewEndCh;
    canvas.line(first, energyLine, last, energyLine, ink);
    const double labelTop = energyLine - energyTick - gap;
    double labelledTo = canvas.scale().left;
    for (const EnergyTick& tick : energyTicks(input.spectrum.calCurrent, first, last)) {
        canvas.line(tick.channel, energyLine, tick.channel, energyLine - energyTick, ink);
        const double width = canvas.textWidth(tick.label + " ");
        if (tick.channel - width / 2 < labelledTo)
            continue;
        printCentred(tick.channel, labelTop, tick.label, canvas);
        labelledTo = tick.channel + width / 2;
    }
    printCentred((first + last) / 2.0, labelTop - canvas.textHeight() - gap, "ENERGY(keV)", canvas);
}

}  // namespace kestrel
