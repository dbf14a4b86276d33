// The spectrum view: what keys, buttons and the mouse do to the range shown and to the cursor, and
// the redraws that follow.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "base/canvas.h"
#include "base/dialogs.h"
#include "base/virtual_key.h"
#include "view/plot.h"
#include "view/view_state.h"

namespace kestrel {

// The cursor mark: a green line on the plot. Where it stood before, the picture under it shows
// again.
struct CursorMark {
    double x = 0;  // user coordinate, the middle of the channel's step
    bool shown = false;
    friend bool operator==(const CursorMark&, const CursorMark&) = default;

    // Its vertical extent.
    static constexpr double bottom = 10.0;
    static constexpr double top = plotTop;
    static constexpr int colour = palette_number::green;
};

// Commands of the main window that have a key on the plot.
enum class PlotCommand {
    JumpToChannel,
    JumpToEnergy,
    OpenFile,
    OpenEnergyList,
    CalibrateEnergy,
    SwitchNuclideMarks,
    AskNuclide,
    ShowPeakOfSet,
};

// A key of the plot, as people are told.
struct PlotKey {
    std::string_view name;
    std::string_view does;  // none: a command of the main window, which tells it
};

// What the view asks of the window that it is part of.
class ViewWindow {
  public:
    virtual ~ViewWindow() = default;
    virtual void showStatus(std::string_view text) = 0;
    virtual void placeCursorMark(const CursorMark& mark) = 0;
    // What is drawn beside the picture, in its scale, must be drawn again.
    virtual void pictureDrawn() = 0;
    // The caption of the Log/Lin button, and whether the full-scale buttons are there.
    virtual void showCountAxis(CountAxis axis) = 0;
    virtual void focusPlot() = 0;
    virtual void run(PlotCommand command) = 0;
};

class SpectrumView {
  public:
    // The objects behind `input` and the others must outlive the view; `state` is the one in
    // `input`.
    SpectrumView(const PlotInput& input, ViewState& state, Canvas& canvas, Dialogs& dialogs,
                 ViewWindow& window);

    // Start values, the view of the first half of the channels, and the first drawing.
    void start();
    // The whole of a spectrum that has just been opened; the cursor keeps its channel.
    void showNewSpectrum();
    // The next of a series, in the range that is shown; the whole of it where the whole of the one
    // before, of so many channels, was shown, or where it has not that range.
    void showNextSpectrum(std::int16_t channelsBefore);
    // The plot got another size.
    void layout();
    // The window became the active one.
    void activate();
    // The whole picture anew, nothing moved.
    void redraw();
    // Whether the last drawing of picture or cursor ended in a fault; the same one would again.
    bool drawingFaulted() const { return drawingFaulted_; }
    // The shown range around the cursor, and the whole picture anew.
    void recentre();

    void expand();
    void shrink();
    void toggleCountAxis();
    void lowerScale();
    void raiseScale();
    void stepLeft();
    void stepRight();
    void setPlotMode(PlotMode mode);
    void showAll();
    // On the linear axis: the lowest full scale that the counts shown, or their difference, fit in.
    void fitScale();
    // The range before the last drag, turn of the wheel or showing of all; nothing without one.
    void zoomBack();
    // The cursor on a channel, or on the nearest that it may stand on, in the middle of the view.
    void jumpTo(int channel);

    // All keys; those that do the same stand beside each other.
    static std::vector<PlotKey> keys();
    // Faults: Overflow for a cursor step out of 16 bits; those of drawing.
    void keyDown(int keyCode, int shift);
    // A press of any button at a place in the user scale. Faults: Overflow.
    void mouseDown(double x);
    // Notches of the wheel with the pointer at x in the user scale, away from the user above 0:
    // expands or shrinks once for each. What is under the pointer stays there as nearly as showAt
    // lets it; the cursor keeps its channel, also where that is no longer shown.
    // Faults: those of doubleWidth and showAt.
    // With Shift the range moves, towards higher channels below 0; with Ctrl the full scale of the
    // linear axis changes, lower above 0.
    void turnWheel(int notches, double x, int shift = 0);
    // A range drawn with the mouse, from a place in the user scale to another.
    void zoomTo(double from, double to);

  private:
    struct KeyBinding;
    static std::span<const KeyBinding> keyBindings();
    template <void (SpectrumView::*member)()>
    static void call(SpectrumView& view, int) {
        (view.*member)();
    }
    template <void (SpectrumView::*member)(int shift)>
    static void callWith(SpectrumView& view, int shift) {
        (view.*member)(shift);
    }
    template <PlotCommand which>
    static void command(SpectrumView& view, int) {
        view.window_.run(which);
    }

    void leftKey(int shift);
    void rightKey(int shift);
    void upKey();
    void downKey();
    void previousPeak();
    void nextPeak();
    bool isPeak(int channel) const;

    std::int32_t highestShown() const;
    // The scale of the shown range, and the whole picture anew.
    void drawView();
    void drawCursor();

    void zoomAtPointer(int notches, double x);
    void pan(int notches);
    void changeScale(int notches);

    struct Range {
        std::int16_t start;
        std::int16_t end;
        std::int16_t width;
    };
    Range range() const { return {state_.viewStartCh, state_.viewEndCh, state_.viewWidth}; }
    void keepForBack(const Range& range);

    PlotInput input_;
    ViewState& state_;
    Canvas& canvas_;
    Dialogs& dialogs_;
    ViewWindow& window_;
    bool drawingFaulted_ = false;
    // What the wheel is turned at. Kept while the pointer rests, since what each notch leaves
    // between it and the pointer would add up, and grow with the expansion.
    struct Target {
        double x = 0;
        double place = 0;
    };
    Target wheelTarget_;
    std::vector<Range> rangesBefore_;  // the last one is what zoomBack shows
};

}  // namespace kestrel
