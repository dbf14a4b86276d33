#include "view/spectrum_view.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/integers.h"
#include "base/pointer_scope.h"
#include "spectrum/peak_measure.h"
#include "view/curve.h"
#include "view/status_text.h"

namespace kestrel {
namespace {

// The view scrolls when the cursor comes this close to an edge, in channels.
constexpr int scrollMargin = 10;
constexpr int longStep = 32;
constexpr int anyShift = -1;
// In widths of the view: how far a pointer that rests may move, and how far from it showAt can
// leave what it stands at, with the rounding to whole channels of the narrowest view.
constexpr double tremble = 0.01;
constexpr double snapping = 0.15;
constexpr double mostCounts = 1 << 30;  // beyond every full scale
constexpr std::size_t mostRangesBefore = 50;

}  // namespace

SpectrumView::SpectrumView(const PlotInput& input, ViewState& state, Canvas& canvas,
                           Dialogs& dialogs, ViewWindow& window)
    : input_(input), state_(state), canvas_(canvas), dialogs_(dialogs), window_(window) {}

void SpectrumView::start() {
    state_ = ViewState{};
    state_.viewWidth = toInt16(input_.spectrum.channelCount / 2.0);
    window_.showCountAxis(state_.linLogMode);
    recentre();
}

void SpectrumView::showNewSpectrum() {
    rangesBefore_.clear();
    showAllChannels(state_, input_.spectrum.channelCount);
    drawView();
}

void SpectrumView::showNextSpectrum(std::int16_t channelsBefore) {
    const std::int16_t channels = input_.spectrum.channelCount;
    const bool whole = state_.viewStartCh == 0 && state_.viewEndCh == channelsBefore;
    if (state_.viewEndCh > channels || (whole && channels != channelsBefore))
        showNewSpectrum();
    else
        redraw();
}

void SpectrumView::layout() {
    followShownRange(state_);
    redraw();
}

void SpectrumView::activate() {
    window_.showCountAxis(state_.linLogMode);
}

void SpectrumView::redraw() {
    drawingFaulted_ = true;
    {
        const HourglassScope hourglass(dialogs_);
        drawSpectrum(input_, canvas_);
    }
    drawCursor();
    window_.pictureDrawn();
}

void SpectrumView::recentre() {
    centreViewOnCursor(state_, input_.spectrum.channelCount);
    drawView();
}

void SpectrumView::drawView() {
    canvas_.setScale(plotScale(state_));
    redraw();
}

void SpectrumView::expand() {
    if (!halveWidth(state_))
        return;
    recentre();
    window_.focusPlot();
}

void SpectrumView::shrink() {
    if (!doubleWidth(state_, input_.spectrum.channelCount))
        return;
    recentre();
    window_.focusPlot();
}

void SpectrumView::toggleCountAxis() {
    state_.linLogMode =
        state_.linLogMode == CountAxis::Linear ? CountAxis::Logarithmic : CountAxis::Linear;
    window_.showCountAxis(state_.linLogMode);
    redraw();
    window_.focusPlot();
}

void SpectrumView::lowerScale() {
    if (!lowerFullScale(state_))
        return;
    redraw();
    window_.focusPlot();
}

void SpectrumView::raiseScale() {
    if (!raiseFullScale(state_))
        return;
    redraw();
    window_.focusPlot();
}

// Near an edge the step buttons scroll instead of moving the cursor; the keys do both.
void SpectrumView::stepLeft() {
    if (state_.cursorCh > state_.viewStartCh + scrollMargin) {
        state_.cursorCh = narrow16(state_.cursorCh - 1);
        drawCursor();
    } else {
        recentre();
    }
    window_.focusPlot();
}

void SpectrumView::stepRight() {
    if (state_.cursorCh < state_.viewEndCh - scrollMargin) {
        state_.cursorCh = narrow16(state_.cursorCh + 1);
        drawCursor();
    } else {
        recentre();
    }
    window_.focusPlot();
}

void SpectrumView::setPlotMode(PlotMode mode) {
    state_.plotMode = mode;
    redraw();
    window_.focusPlot();
}

struct SpectrumView::KeyBinding {
    int keyCode = 0;
    int shift = 0;
    void (*action)(SpectrumView& view, int shift) = nullptr;
    const char* name = "";
    const char* does = "";
};

std::span<const SpectrumView::KeyBinding> SpectrumView::keyBindings() {
    using View = SpectrumView;
    static constexpr std::array bindings = {
        KeyBinding{virtual_key::left, anyShift, callWith<&View::leftKey>, "Left",
                   "Cursor to the left, with Shift by 32 channels"},
        KeyBinding{virtual_key::right, anyShift, callWith<&View::rightKey>, "Right",
                   "Cursor to the right, with Shift by 32 channels"},
        KeyBinding{virtual_key::comma, shiftHeld, call<&View::previousPeak>, "<",
                   "Cursor to the previous peak"},
        KeyBinding{virtual_key::fullStop, shiftHeld, call<&View::nextPeak>, ">",
                   "Cursor to the next peak"},
        KeyBinding{virtual_key::up, anyShift, call<&View::upKey>, "Up",
                   "Halve the full scale of the linear axis"},
        KeyBinding{virtual_key::down, anyShift, call<&View::downKey>, "Down",
                   "Double the full scale of the linear axis"},
        KeyBinding{virtual_key::pageUp, anyShift, call<&View::expand>, "PageUp",
                   "Expand the view around the cursor"},
        KeyBinding{virtual_key::pageUpAlso, anyShift, call<&View::expand>, "?",
                   "Expand the view around the cursor"},
        KeyBinding{virtual_key::pageDown, anyShift, call<&View::shrink>, "PageDown",
                   "Shrink the view around the cursor"},
        KeyBinding{virtual_key::pageDownAlso, anyShift, call<&View::shrink>, "@",
                   "Shrink the view around the cursor"},
        KeyBinding{'L', anyShift, call<&View::toggleCountAxis>, "L", "Logarithmic or linear axis"},
        KeyBinding{virtual_key::f1, anyShift, command<PlotCommand::JumpToChannel>, "F1"},
        KeyBinding{'A', anyShift, command<PlotCommand::JumpToChannel>, "A"},
        KeyBinding{'Z', anyShift, command<PlotCommand::JumpToEnergy>, "Z"},
        KeyBinding{virtual_key::f7, anyShift, command<PlotCommand::OpenFile>, "F7"},
        KeyBinding{'G', anyShift, command<PlotCommand::OpenFile>, "G"},
        KeyBinding{virtual_key::f5, anyShift, command<PlotCommand::OpenEnergyList>, "F5"},
        KeyBinding{'E', anyShift, command<PlotCommand::OpenEnergyList>, "E"},
        KeyBinding{'I', anyShift, command<PlotCommand::CalibrateEnergy>, "I"},
        KeyBinding{'B', anyShift, command<PlotCommand::SwitchNuclideMarks>, "B"},
        KeyBinding{virtual_key::home, 0, call<&View::showAll>, "Home"},
        KeyBinding{virtual_key::end, 0, call<&View::fitScale>, "End"},
        KeyBinding{virtual_key::f4, 0, call<&View::zoomBack>, "F4"},
        KeyBinding{'N', anyShift, command<PlotCommand::AskNuclide>, "N",
                   "Show half-life and lines of a nuclide that is typed"},
        KeyBinding{virtual_key::space, 0, command<PlotCommand::ShowPeakOfSet>, "Space",
                   "Cursor to the peak that the open peak-area window shows"},
    };
    return bindings;
}

std::vector<PlotKey> SpectrumView::keys() {
    std::vector<PlotKey> keys;
    for (const KeyBinding& binding : keyBindings())
        keys.push_back({binding.name, binding.does});
    return keys;
}

void SpectrumView::keyDown(int keyCode, int shift) {
    for (const KeyBinding& binding : keyBindings()) {
        if (binding.keyCode == keyCode && (binding.shift == anyShift || binding.shift == shift))
            binding.action(*this, shift);
    }
}

namespace {

// Channels that a cursor key moves; other shift states do not move the cursor, but still scroll.
int stepOf(int shift) {
    if (shift == 0)
        return 1;
    return shift == shiftHeld ? longStep : 0;
}

}  // namespace

void SpectrumView::leftKey(int shift) {
    state_.cursorCh = std::max<std::int16_t>(narrow16(state_.cursorCh - stepOf(shift)), 0);
    if (state_.cursorCh <= state_.viewStartCh + scrollMargin)
        recentre();
    else
        drawCursor();
}

void SpectrumView::rightKey(int shift) {
    // One past the last channel is allowed (compatibility: cursor past the end).
    state_.cursorCh =
        std::min(narrow16(state_.cursorCh + stepOf(shift)), input_.spectrum.channelCount);
    if (state_.cursorCh >= state_.viewEndCh - scrollMargin)
        recentre();
    else
        drawCursor();
}

void SpectrumView::upKey() {
    if (state_.linLogMode == CountAxis::Linear)
        lowerScale();
}

void SpectrumView::downKey() {
    if (state_.linLogMode == CountAxis::Linear)
        raiseScale();
}

bool SpectrumView::isPeak(int channel) const {
    return input_.derived.peakSignificance[channel] > peakCentreMeasure;
}

// Both searches start inside the spectrum, wherever the cursor is, and end one past it.
void SpectrumView::previousPeak() {
    const int last = input_.spectrum.channelCount - 1;
    int channel = std::min(std::max(state_.cursorCh - 1, 0), last);
    while (channel >= 0 && !isPeak(channel))
        --channel;
    jumpTo(channel);
}

void SpectrumView::nextPeak() {
    const int count = input_.spectrum.channelCount;
    int channel = std::max(std::min(state_.cursorCh + 1, count - 1), 0);
    while (channel < count && !isPeak(channel))
        ++channel;
    jumpTo(channel);
}

void SpectrumView::jumpTo(int channel) {
    state_.cursorCh = narrow16(std::min<int>(std::max(channel, 0), input_.spectrum.channelCount));
    recentre();
}

void SpectrumView::mouseDown(double x) {
    state_.cursorCh = toInt16(x);
    drawCursor();
}

void SpectrumView::turnWheel(int notches, double x, int shift) {
    if (shift == shiftHeld)
        pan(notches);
    else if (shift == ctrlHeld)
        changeScale(notches);
    else
        zoomAtPointer(notches, x);
}

void SpectrumView::zoomAtPointer(int notches, double x) {
    const double place = std::clamp(placeInView(state_, x), 0.0, 1.0);
    const bool rests =
        std::fabs(place - wheelTarget_.place) < tremble &&
        std::fabs(placeInView(state_, wheelTarget_.x) - wheelTarget_.place) < snapping;
    if (!rests)
        wheelTarget_ = {state_.viewStartCh + place * state_.viewWidth, place};
    const Range before = range();
    const std::int16_t channelCount = input_.spectrum.channelCount;
    for (int i = 0; i < notches && halveWidth(state_); ++i) {
    }
    for (int i = 0; i > notches && doubleWidth(state_, channelCount); --i) {
    }
    if (state_.viewWidth == before.width)
        return;
    showAt(state_, wheelTarget_.x, wheelTarget_.place, channelCount);
    if (!rests)
        keepForBack(before);
    drawView();
    window_.focusPlot();
}

void SpectrumView::pan(int notches) {
    if (!panView(state_, -notches, input_.spectrum.channelCount))
        return;
    drawView();
    window_.focusPlot();
}

void SpectrumView::changeScale(int notches) {
    if (state_.linLogMode != CountAxis::Linear)
        return;
    bool changed = false;
    for (int i = 0; i < notches && lowerFullScale(state_); ++i)
        changed = true;
    for (int i = 0; i > notches && raiseFullScale(state_); --i)
        changed = true;
    if (changed)
        redraw();
}

void SpectrumView::zoomTo(double from, double to) {
    keepForBack(range());
    showRange(state_, from, to, input_.spectrum.channelCount);
    drawView();
}

void SpectrumView::showAll() {
    keepForBack(range());
    showAllChannels(state_, input_.spectrum.channelCount);
    drawView();
}

void SpectrumView::zoomBack() {
    if (rangesBefore_.empty())
        return;
    const Range before = rangesBefore_.back();
    rangesBefore_.pop_back();
    state_.viewStartCh = before.start;
    state_.viewEndCh = before.end;
    state_.viewWidth = before.width;
    drawView();
}

void SpectrumView::keepForBack(const Range& range) {
    if (rangesBefore_.size() == mostRangesBefore)
        rangesBefore_.erase(rangesBefore_.begin());
    rangesBefore_.push_back(range);
}

// The difference takes as much below its zero as above.
std::int32_t SpectrumView::highestShown() const {
    if (showsDifference(input_))
        return toInt32(std::min(2 * greatestDifference(input_), mostCounts));
    std::int32_t highest = 0;
    const int last = std::min<int>(state_.viewEndCh, input_.spectrum.channelCount - 1);
    for (int channel = state_.viewStartCh; channel <= last; ++channel)
        highest = std::max(highest, input_.spectrum.countsAt(channel));
    return highest;
}

void SpectrumView::fitScale() {
    if (state_.linLogMode != CountAxis::Linear)
        return;
    if (fitFullScale(state_, highestShown()))
        redraw();
}

void SpectrumView::drawCursor() {
    drawingFaulted_ = true;
    const bool shown = isShown(state_, state_.cursorCh);
    if (shown)
        canvas_.setDrawWidth(state_.plotMode == PlotMode::Line ? 1 : 2);
    window_.placeCursorMark({state_.cursorCh + 0.5, shown});
    if (shown)
        window_.showStatus(statusLine(input_.spectrum, input_.derived, state_.cursorCh));
    drawingFaulted_ = false;
}

}  // namespace kestrel
