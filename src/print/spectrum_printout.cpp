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
#include "base/text.h"
#include "spectrum/data_information.h"
#include "spectrum/start_date.h"
#include "view/axes.h"
#include "view/curve.h"
#include "view/energy_axis.h"
#include "view/plot.h"

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

// The frame of a page whose texts need `textPart` of its height: where that is more than the room
// above the plot, the frame begins lower on the page.
UserScale pageScale(const ViewState& view, double textPart) {
    const double first = view.viewStartCh;
    const double width = view.viewWidth;
    const double topForTexts = (plotTop - pageBottom * textPart) / (1 - textPart);
    return {.left = first - 0.05 * width - 0.2 * width,
            .top = textPart < 1 ? std::max(pageTop, topForTexts) : pageTop,
            .right = double{static_cast<float>(first + width + 0.2 * width)},
            .bottom = pageBottom};
}

std::string liveTime(const Spectrum& spectrum) {
    return "Live: " + plainNumber(std::int64_t{spectrum.liveTime.wholeSeconds()}) + "sec";
}

std::vector<std::string> headerLines(const Spectrum& spectrum) {
    return {
        withoutControls(dateLine(spectrum)),
        withoutControls(commentLine(spectrum)),
        liveTime(spectrum),
        "Mca : " + plainNumber(std::int64_t{spectrum.mcaNumber}),
        "Seg : " + plainNumber(std::int64_t{spectrum.segmentNumber}),
    };
}

// Where the header texts begin: at a quarter of the range, or as far to the left as the longest
// needs.
double headerLeft(const ViewState& view, const std::vector<std::string>& lines,
                  const Canvas& canvas) {
    const UserScale page = canvas.scale();
    double widest = 0;
    for (const std::string& line : lines)
        widest = std::max(widest, canvas.textWidth(trimBlanks(line)));
    const int first = view.viewStartCh;
    const double quarter = toInt16(first + (view.viewEndCh - first) / 4.0);
    return std::max(std::min(quarter, page.right - widest), page.left);
}

// Above the plot, the last line standing on `base`.
void drawHeaderTexts(const std::vector<std::string>& lines, double x, double base, double headerEnd,
                     Canvas& canvas) {
    const UserScale page = canvas.scale();
    const double height = canvas.textHeight();
    const double belowPageHeader = page.top - headerEnd * (page.top - page.bottom);
    double y = std::min(base + static_cast<double>(lines.size()) * height, belowPageHeader);
    for (const std::string& line : lines) {
        printAt(canvas, x, y, line);
        y -= height;
    }
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

// What runs off the scale ends at the frame, as at the edges of the main window's plot, and never
// in a text.
void drawClippedCurve(const PrintoutInput& input, Canvas& canvas) {
    const auto unmarked = std::make_unique<ChannelArray<Colour>>();
    const UserScale page = canvas.scale();
    canvas.clipTo({page.left, plotTop, page.right, axisBase});
    drawCurve({input.spectrum, input.derived, input.view, *unmarked, paperPalette}, canvas);
    canvas.clipTo(page);
}

void drawPage(const PrintoutInput& input, double headerEnd, Canvas& canvas) {
    const ViewState& view = input.view;
    const std::vector<std::string> lines = headerLines(input.spectrum);
    canvas.setScale(pageScale(view, 0));
    const double line = canvas.textHeight() / (pageTop - pageBottom);
    const double left = headerLeft(view, lines, canvas);
    // Left of the plot they stand above the uppermost label of the count axis.
    const bool aboveLabel = left < view.viewStartCh;
    const double room = static_cast<double>(lines.size()) + (aboveLabel ? 1 : 0);
    canvas.setScale(pageScale(view, headerEnd + room * line));
    canvas.setForeColour(ink);
    const double base = plotTop + gap + (aboveLabel ? canvas.textHeight() : 0);
    drawHeaderTexts(lines, left, base, headerEnd, canvas);
    drawChannelAxis(view, canvas);
    printCentred((view.viewStartCh + view.viewEndCh) / 2.0, channelTitleTop - canvas.textHeight(),
                 "CHANNEL", canvas);
    drawCountAxis(view, canvas);
    if (view.linLogMode == CountAxis::Linear)
        drawLinearAxis(view, canvas);
    else
        drawLogAxis(view, canvas);
    drawClippedCurve(input, canvas);
}

}  // namespace

double printPageHeader(const Spectrum& spectrum, Canvas& canvas, const PageLayout& layout) {
    PageText page(canvas, layout);
    page.printZones({"Kestrel ", "File Name: " + spectrum.filePath,
                     "Date: " + formatStart(spectrum.startDate, spectrum.startTime),
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
