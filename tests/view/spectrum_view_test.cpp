#include "view/spectrum_view.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "app/module1.h"
#include "fault_matcher.h"
#include "recording_canvas.h"
#include "scripted_dialogs.h"

namespace kestrel {
namespace {

class FakeWindow : public ViewWindow {
  public:
    void showStatus(std::string_view text) override { status = text; }
    void placeCursorMark(const CursorMark& m) override { mark = m; }
    void pictureDrawn() override { ++drawings; }
    void showCountAxis(CountAxis a) override { axis = a; }
    void focusPlot() override { ++focused; }
    void run(PlotCommand c) override { command = c; }

    std::string status;
    CursorMark mark;
    std::optional<CountAxis> axis;
    int focused = 0;
    int drawings = 0;
    std::optional<PlotCommand> command;
};

// A 4096-channel spectrum shown from 1024 to 2048, peaks at 500, 1500 and 3000.
class View : public testing::Test {
  protected:
    View() {
        module->spectrum.channelCount = 4096;
        for (const int peak : {500, 1500, 3000})
            module->derived.peakSignificance[peak] = 20;
        view.start();
        state.viewWidth = 1024;
        state.cursorCh = 1500;
        view.mouseDown(1500);
        view.expand();
        view.shrink();
        window.focused = 0;
    }

    // Cursor, start and end after a key at a cursor channel of the view 1024 to 2048.
    struct Place {
        int cursor, start, end;
        friend bool operator==(const Place&, const Place&) = default;
        friend std::ostream& operator<<(std::ostream& out, const Place& p) {
            return out << p.cursor << " in " << p.start << ".." << p.end;
        }
    };
    template <typename Action>
    Place after(int cursor, Action action) {
        state.viewStartCh = 1024;
        state.viewEndCh = 2048;
        state.viewWidth = 1024;
        state.cursorCh = static_cast<std::int16_t>(cursor);
        action();
        return {state.cursorCh, state.viewStartCh, state.viewEndCh};
    }
    Place afterKey(int cursor, int key, int shift) {
        return after(cursor, [&] { view.keyDown(key, shift); });
    }

    std::unique_ptr<Module1> module = std::make_unique<Module1>();
    ViewState& state = module->view;
    test::RecordingCanvas canvas;
    test::ScriptedDialogs dialogs;
    FakeWindow window;
    SpectrumView view{
        {module->spectrum, module->derived, state, module->channelColour, module->palette},
        state,
        canvas,
        dialogs,
        window};
};

TEST_F(View, StartsWithTheFirstHalfOfTheChannels) {
    module->spectrum.channelCount = 16384;
    state = {.cursorCh = 77, .linLogMode = CountAxis::Linear, .yScaleExp = 5};
    view.start();
    EXPECT_EQ(state.viewStartCh, 0);
    EXPECT_EQ(state.viewEndCh, 8192);
    EXPECT_EQ(state.viewWidth, 8192);
    EXPECT_EQ(state.cursorCh, 0);
    EXPECT_EQ(state.yScaleExp, 10);
    EXPECT_EQ(window.axis, CountAxis::Logarithmic);
    EXPECT_EQ(window.status, "ch:     0(   0.0keV) c:       0");
}

TEST_F(View, ShowsAWholeNewSpectrumAndKeepsTheCursor) {
    view.showNewSpectrum();
    EXPECT_EQ(state.viewStartCh, 0);
    EXPECT_EQ(state.viewEndCh, 4096);
    EXPECT_EQ(state.viewWidth, 4097);
    EXPECT_EQ(state.cursorCh, 1500);
    EXPECT_EQ(canvas.scale(), (UserScale{-4097 / 16.0, 1200, 4097, -140}));
    view.layout();
    EXPECT_EQ(state.viewWidth, 4097);
}

TEST_F(View, WidensByOneChannelAtALayoutAfterARecentring) {
    after(1500, [&] { view.keyDown(virtual_key::pageDown, 0); });
    EXPECT_EQ(state.viewWidth, 2048);
    view.layout();
    EXPECT_EQ(state.viewWidth, 2049);
}

TEST_F(View, MovesTheCursorByKeysAndScrollsNearTheEdges) {
    const int left = virtual_key::left;
    const int right = virtual_key::right;
    struct Case {
        int cursor, key, shift;
        Place expected;
    };
    const Case cases[] = {
        {1500, left, 0, {1499, 1024, 2048}},  {1500, left, 1, {1468, 1024, 2048}},
        {1500, left, 2, {1500, 1024, 2048}},  {1500, right, 0, {1501, 1024, 2048}},
        {1500, right, 1, {1532, 1024, 2048}}, {1500, right, 3, {1500, 1024, 2048}},
        {1036, left, 0, {1035, 1024, 2048}},  {1035, left, 0, {1034, 512, 1536}},
        {1034, left, 2, {1034, 512, 1536}},   {2036, right, 0, {2037, 1024, 2048}},
        {2037, right, 0, {2038, 1536, 2560}}, {5, left, 1, {0, 0, 1024}},
        {4090, right, 1, {4096, 3071, 4095}}, {4086, right, 1, {4096, 3071, 4095}},
        {1500, 'Q', 0, {1500, 1024, 2048}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(afterKey(c.cursor, c.key, c.shift), c.expected)
            << c.cursor << " " << c.key << " " << c.shift;
    EXPECT_FAULT(afterKey(-32768, left, 0), Fault::Overflow);
}

TEST_F(View, ScrollsInsteadOfSteppingByTheButtonsNearTheEdges) {
    EXPECT_EQ(after(1500, [&] { view.stepLeft(); }), (Place{1499, 1024, 2048}));
    EXPECT_EQ(after(1035, [&] { view.stepLeft(); }), (Place{1034, 1024, 2048}));
    EXPECT_EQ(after(1034, [&] { view.stepLeft(); }), (Place{1034, 512, 1536}));
    EXPECT_EQ(after(2037, [&] { view.stepRight(); }), (Place{2038, 1024, 2048}));
    EXPECT_EQ(after(2038, [&] { view.stepRight(); }), (Place{2038, 1536, 2560}));
    EXPECT_EQ(window.focused, 5);
}

TEST_F(View, JumpsFromPeakToPeakWithTheShiftedSigns) {
    const int previous = virtual_key::comma;
    const int next = virtual_key::fullStop;
    struct Case {
        int cursor, key, expected;
    };
    for (const Case& c : {Case{1500, next, 3000},
                          {1500, previous, 500},
                          {1499, next, 1500},
                          {3000, next, 4096},
                          {500, previous, 0},
                          {-20, next, 500},
                          {-20, previous, 0},
                          {9000, previous, 3000},
                          {9000, next, 4096},
                          {4096, previous, 3000},
                          {0, previous, 0},
                          {4096, next, 4096}}) {
        EXPECT_EQ(afterKey(c.cursor, c.key, 1).cursor, c.expected) << c.cursor << " " << c.key;
        EXPECT_EQ(afterKey(c.cursor, c.key, 0).cursor, c.cursor);
    }
    EXPECT_EQ(afterKey(1500, next, 1), (Place{3000, 2560, 3584}));
    module->derived.peakSignificance[3000] = 10.0;
    EXPECT_EQ(afterKey(1500, next, 1).cursor, 4096);
    module->spectrum.channelCount = 0;
    EXPECT_EQ(afterKey(1500, next, 1).cursor, 0);
}

TEST_F(View, ExpandsShrinksAndTogglesByKeysWithAnyShiftState) {
    for (const int key : {33, 63}) {
        EXPECT_EQ(afterKey(1500, key, 1), (Place{1500, 1280, 1792}));
        EXPECT_EQ(state.viewWidth, 512);
    }
    for (const int key : {34, 64})
        EXPECT_EQ(afterKey(1500, key, 2), (Place{1500, 512, 2560}));
    view.keyDown('L', 0);
    EXPECT_EQ(state.linLogMode, CountAxis::Linear);
    EXPECT_EQ(window.axis, CountAxis::Linear);
    view.keyDown(virtual_key::up, 4);
    EXPECT_EQ(state.yScaleExp, 9);
    view.keyDown(virtual_key::down, 0);
    EXPECT_EQ(state.yScaleExp, 10);
    view.keyDown('L', 1);
    EXPECT_EQ(state.linLogMode, CountAxis::Logarithmic);
    view.keyDown(virtual_key::up, 0);
    EXPECT_EQ(state.yScaleExp, 10);
}

TEST_F(View, LeavesTheFocusWhenAButtonsConditionFails) {
    state.viewWidth = 127;
    view.expand();
    state.viewWidth = 4096;
    view.shrink();
    state.yScaleExp = 2;
    view.lowerScale();
    state.yScaleExp = 21;
    view.raiseScale();
    EXPECT_EQ(window.focused, 0);
}

TEST_F(View, ReachesTheCommandsOfTheMainWindow) {
    for (const auto& [key, command] : {std::pair{112, PlotCommand::JumpToChannel},
                                       {65, PlotCommand::JumpToChannel},
                                       {90, PlotCommand::JumpToEnergy},
                                       {118, PlotCommand::OpenFile},
                                       {71, PlotCommand::OpenFile},
                                       {116, PlotCommand::OpenEnergyList},
                                       {69, PlotCommand::OpenEnergyList},
                                       {73, PlotCommand::CalibrateEnergy},
                                       {66, PlotCommand::SwitchNuclideMarks},
                                       {78, PlotCommand::AskNuclide},
                                       {32, PlotCommand::ShowPeakOfSet}}) {
        window.command.reset();
        view.keyDown(key, 0);
        EXPECT_EQ(window.command, command) << key;
    }
}

TEST_F(View, PutsTheCursorUnderTheMouseWithHalvesToEven) {
    for (const auto& [x, cursor] : {std::pair{1500.5, 1500}, {1501.5, 1502}, {1499.6, 1500}}) {
        view.mouseDown(x);
        EXPECT_EQ(state.cursorCh, cursor);
    }
    const std::string status = window.status;
    view.mouseDown(-3.2);
    EXPECT_EQ(state.cursorCh, -3);
    EXPECT_EQ(window.status, status);
    EXPECT_FALSE(window.mark.shown);
    EXPECT_FAULT(view.mouseDown(40000), Fault::Overflow);
}

TEST_F(View, MarksTheMiddleOfTheCursorsStep) {
    after(1500, [&] { view.mouseDown(1450); });
    EXPECT_EQ(window.mark, (CursorMark{1450.5, true}));
}

// Snapping moves what is under a resting pointer by up to an eighth of the width at each notch.
TEST_F(View, ExpandsAndShrinksByTheWheelAroundWhatIsUnderThePointer) {
    for (const double place : {0.1, 0.43, 0.77}) {
        state = {.cursorCh = 50, .viewStartCh = 0, .viewEndCh = 4096, .viewWidth = 4096};
        const double target = place * 4096;
        const auto pointer = [&] { return state.viewStartCh + place * state.viewWidth; };
        for (const int width : {2048, 1024, 512, 256, 128, 64, 64}) {
            view.turnWheel(1, pointer());
            EXPECT_EQ(state.viewWidth, width);
            EXPECT_NEAR(placeInView(state, target), place, 0.15) << width;
            EXPECT_EQ(canvas.scale(), plotScale(state));
        }
        view.turnWheel(-3, pointer());
        EXPECT_EQ(state.viewWidth, 512);
        EXPECT_NEAR(placeInView(state, target), place, 0.15);
        view.turnWheel(-20, pointer());
        EXPECT_EQ(state.viewWidth, 4096);
        EXPECT_EQ(state.cursorCh, 50);
    }
}

TEST_F(View, TakesAnotherTargetForTheWheelOnceThePointerOrTheViewHasMoved) {
    state = {.viewStartCh = 0, .viewEndCh = 4096, .viewWidth = 4096};
    view.turnWheel(2, 1024);  // now 768 to 1792
    view.turnWheel(1, 1700);
    EXPECT_NEAR(placeInView(state, 1700), 932 / 1024.0, 0.125);
    view.jumpTo(3500);
    const double pointer = state.viewStartCh + 0.9 * state.viewWidth;
    view.turnWheel(1, pointer);
    EXPECT_NEAR(placeInView(state, pointer), 0.9, 0.125);
}

// The margin with the labels counts as the first channel.
TEST_F(View, ExpandsAtTheNearerEndWhereThePointerIsBesideThePlot) {
    state = {.viewStartCh = 1024, .viewEndCh = 2048, .viewWidth = 1024};
    view.turnWheel(1, 970);
    EXPECT_EQ(state.viewStartCh, 1024);
    view.turnWheel(1, 5000);
    EXPECT_EQ(state.viewEndCh, 1024 + 512);
    EXPECT_EQ(state.viewWidth, 256);
}

TEST_F(View, GoesBackThroughDragsTurnsOfTheWheelAndTheShowingOfAll) {
    const auto place = after(1500, [&] { view.zoomTo(1600, 1200); });
    EXPECT_EQ(place, (Place{1500, 1200, 1600}));
    view.turnWheel(1, 1400);
    view.turnWheel(1, 1400);
    view.turnWheel(-1, 1400, shiftHeld);
    view.keyDown(virtual_key::home, 0);
    EXPECT_EQ(state.viewEndCh, 4096);
    const int drawings = window.drawings;
    for (int i = 0; i < 9; ++i)
        view.keyDown(virtual_key::f4, 0);
    EXPECT_EQ(window.drawings, drawings + 3);
    EXPECT_EQ(state.viewStartCh, 1024);
    EXPECT_EQ(state.viewEndCh, 2048);
    view.zoomTo(0, 100);
    view.showNewSpectrum();
    view.zoomBack();
    EXPECT_EQ(state.viewEndCh, 4096) << "a range of another spectrum";
}

TEST_F(View, FitsTheLinearScaleToTheHighestPeakShown) {
    const auto key = [&](int code) { after(1500, [&] { view.keyDown(code, 0); }); };
    module->spectrum.counts[1100] = 5000;
    module->spectrum.counts[3000] = 100000;
    key(virtual_key::end);
    EXPECT_EQ(state.yScaleExp, 10) << "the logarithmic axis has no full scale";
    view.toggleCountAxis();
    key(virtual_key::end);
    EXPECT_EQ(state.yScaleExp, 13);
    view.turnWheel(2, 1500, ctrlHeld);
    EXPECT_EQ(state.yScaleExp, 11);
    view.turnWheel(-99, 1500, ctrlHeld);
    EXPECT_EQ(state.yScaleExp, 21);
    module->spectrum.counts[1100] = 8192;
    key(virtual_key::end);
    EXPECT_EQ(state.yScaleExp, 13) << "2^13 just fits";
}
}  // namespace
}  // namespace kestrel
