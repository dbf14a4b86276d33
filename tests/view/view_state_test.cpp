#include "view/view_state.h"

#include <gtest/gtest.h>

#include "fault_matcher.h"

namespace kestrel {
namespace {

TEST(ViewState, CentresOnTheCursorSnappedToAQuarterOfTheWidth) {
    struct Case {
        std::int16_t cursor, width, channels, start, end;
    };
    const Case cases[] = {
        {0, 8192, 16384, 0, 8192},       // as the program starts
        {5, 1024, 4096, 0, 1024},        // clamped at the left
        {4090, 1024, 4096, 3071, 4095},  // clamped at the right: one channel earlier than a quarter
        {2000, 1024, 4096, 1536, 2560},  // 1488 is nearest to six quarters
        {640, 1024, 4096, 0, 1024},      // half a quarter goes to the even one
        {896, 1024, 4096, 512, 1536},
        {100, 250, 4096, 0, 250},
        {225, 250, 4096, 125, 375},  // quarters of 62.5
        {50, 6000, 4096, 0, 4095},   // wider than the spectrum
        {0, 64, 17, 0, 16},
    };
    for (const Case& c : cases) {
        ViewState view{.cursorCh = c.cursor, .viewWidth = c.width};
        centreViewOnCursor(view, c.channels);
        EXPECT_EQ(view.viewStartCh, c.start) << c.cursor << " of " << c.width;
        EXPECT_EQ(view.viewEndCh, c.end) << c.cursor << " of " << c.width;
        EXPECT_EQ(view.viewWidth, c.width);
    }
}

TEST(ViewState, ShowsAChannelAtAPlaceAsNearlyAsTheQuartersLetIt) {
    struct Case {
        double channel, place;
        std::int16_t width, start;
    };
    for (const Case& c : {Case{2000, 0.25, 1024, 1792},
                          {2000, 0, 1024, 2048},
                          {2000, 1, 64, 1936},
                          {100, 0.5, 1024, 0},
                          {4000, 0.1, 1024, 3071}}) {
        ViewState view{.cursorCh = 7, .viewWidth = c.width};
        showAt(view, c.channel, c.place, 4096);
        EXPECT_EQ(view.viewStartCh, c.start) << c.channel << " at " << c.place;
        if (c.start % 16 == 0 && c.start > 0) {
            EXPECT_NEAR(placeInView(view, c.channel), c.place, 0.125);
        }
    }
}

TEST(ViewState, HasItsRightEdgeAtStartPlusWidthAlsoWhenClamped) {
    ViewState view{.cursorCh = 4090, .viewWidth = 1024};
    centreViewOnCursor(view, 4096);
    EXPECT_EQ(plotScale(view), (UserScale{3007, 1200, 4095, -140}));
    view.viewWidth = 1000;
    EXPECT_EQ(plotScale(view).left, 3071 - 62.5);
}

TEST(ViewState, HalvesWidthsFrom128AndDoublesThoseBelowTheChannelCount) {
    for (const auto& [before, after] :
         {std::pair{128, 64}, {127, 127}, {64, 64}, {250, 125}, {255, 128}, {253, 126}}) {
        ViewState view{.viewWidth = static_cast<std::int16_t>(before)};
        EXPECT_EQ(halveWidth(view), before != after);
        EXPECT_EQ(view.viewWidth, after);
    }
    for (const auto& [before, after] :
         {std::pair{2048, 4096}, {3000, 6000}, {4096, 4096}, {6000, 6000}}) {
        ViewState view{.viewWidth = static_cast<std::int16_t>(before)};
        EXPECT_EQ(doubleWidth(view, 4096), before != after);
        EXPECT_EQ(view.viewWidth, after);
    }
    ViewState view{.viewWidth = 16384 + 1};
    EXPECT_FAULT(doubleWidth(view, 17001), Fault::Overflow);
}

TEST(ViewState, KeepsTheFullScaleBetween4And2097152Counts) {
    ViewState view;
    while (lowerFullScale(view)) {
    }
    EXPECT_EQ(view.yScaleExp, 2);
    EXPECT_EQ(view.yScaleFactor, 300.0F);
    while (raiseFullScale(view)) {
    }
    EXPECT_EQ(view.yScaleExp, 21);
    EXPECT_EQ(view.yScaleFactor, 1200.0F / 2097152.0F);
}

TEST(ViewState, RaisesFaultsForASpectrumOfNoWidthButNotForALongOne) {
    ViewState view{.viewWidth = 0};
    EXPECT_FAULT(centreViewOnCursor(view, 4096), Fault::DivisionByZero);
    view = {.cursorCh = -32768, .viewWidth = 32767};
    EXPECT_FAULT(centreViewOnCursor(view, 4096), Fault::Overflow);
    view = {.cursorCh = 17001, .viewWidth = 17001};
    centreViewOnCursor(view, 17001);
    EXPECT_EQ(view.viewEndCh, 17000);
}

TEST(ViewState, ShowsAnyRangeThatIsDrawnButNoneTooNarrow) {
    struct Case {
        double from, to;
        std::int16_t channels, start, end;
    };
    const Case cases[] = {
        {100.4, 300.6, 4096, 100, 301},
        {300, 100, 4096, 100, 300},
        {-50, 9000, 4096, 0, 4095},
        {500, 510, 4096, 473, 537},
        {4090, 4095, 4096, 4031, 4095},
        {1, 0, 4096, 0, 64},
        {5, 9, 20, 0, 19},
        {0, 0, 0, 0, 1},
    };
    for (const Case& c : cases) {
        ViewState view;
        showRange(view, c.from, c.to, c.channels);
        EXPECT_EQ(view.viewStartCh, c.start) << c.from << " to " << c.to;
        EXPECT_EQ(view.viewEndCh, c.end) << c.from << " to " << c.to;
        EXPECT_EQ(view.viewWidth, c.end - c.start);
    }
}

TEST(ViewState, PansByEighthsAsFarAsThereAreChannels) {
    ViewState view{.viewStartCh = 1024, .viewEndCh = 2048, .viewWidth = 1024};
    EXPECT_TRUE(panView(view, 2, 4096));
    EXPECT_EQ(view.viewStartCh, 1280);
    EXPECT_TRUE(panView(view, 100000, 4096));
    EXPECT_EQ(view.viewEndCh, 4095);
    EXPECT_FALSE(panView(view, 1, 4096));
    EXPECT_TRUE(panView(view, -99, 4096));
    EXPECT_EQ(view.viewEndCh - view.viewStartCh, 1024);
    EXPECT_EQ(view.viewStartCh, 0);
}
}  // namespace
}  // namespace kestrel
