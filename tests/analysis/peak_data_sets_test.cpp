#include "analysis/peak_data_sets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "fault_matcher.h"
#include "scripted_dialogs.h"

namespace kestrel {
namespace {

using Bounds = std::array<std::string, 6>;

class DataSets : public testing::Test {
  protected:
    DataSets() {
        spectrum->channelCount = 16384;
        spectrum->counts.fill(100);
        spectrum->openedLiveTime = {500};
    }

    void type(const Bounds& bounds) { fields.bounds.texts = bounds; }
    // Regions of a set that can be told from the others by its place.
    static Bounds regionsAt(int channel) {
        Bounds bounds;
        for (int i = 0; i < 6; ++i)
            bounds[static_cast<std::size_t>(i)] = std::to_string(channel + 10 * i);
        return bounds;
    }
    void commitSets(int count) {
        for (int i = 0; i < count; ++i) {
            type(regionsAt(100 * (i + 1)));
            fields.remark = "set " + std::to_string(i);
            nextDataSet(work);
        }
    }
    // Sets enough to fill the table, without measuring each.
    void fillTable(int count) {
        for (int i = 0; i < count; ++i) {
            PeakAreaSet& set = (*sets)[i];
            set = {.bkg1Low = 10, .bkg1High = 20, .bkg2Low = 50, .bkg2High = 60};
            set.pkLow = 30;
            set.pkHigh = 40;
        }
        setCount = static_cast<std::int16_t>(count);
    }
    void goTo(int set) {
        state.currentSet = static_cast<std::int16_t>(set);
        showDataSet(work);
    }
    std::string lastMessage() const {
        return dialogs.messages.empty() ? "" : dialogs.messages.back().text;
    }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<PeakAreaTable> sets = std::make_unique<PeakAreaTable>();
    std::int16_t setCount = 0;
    PeakAreaState state;
    PeakAreaFields& fields = state.fields;
    test::ScriptedDialogs dialogs;
    PeakAreaWork work{*spectrum, *sets, setCount, state, dialogs};
};

TEST_F(DataSets, AreMeasuredAndStoredWithBoundsAndRemark) {
    type({"10", " 19", "20ch", "38.6", "40", "49"});
    fields.remark = "a remark that is longer than its field";
    ASSERT_EQ(computePeakArea(work), AreaStatus::Computed);
    const PeakAreaSet& set = (*sets)[0];
    EXPECT_EQ(set.bkg1Low, 10);
    EXPECT_EQ(set.bkg2Low, 40);
    EXPECT_EQ(set.bkg2High, 49);
    EXPECT_EQ(set.pkHigh, 39);
    EXPECT_EQ(set.netError, std::sqrt(4000.0F));
    EXPECT_EQ(set.name.view(), "a remark that is longer ");
}

TEST_F(DataSets, AreRefusedByTheFailingBoundNearestTheLowEnd) {
    struct Case {
        Bounds bounds;
        const char* line;
    };
    for (const Case& c : {Case{{"10", "10", "20", "30", "40", "50"}, "BKG1(low) >= BKG1(high)"},
                          {{"10", "20", "20", "30", "40", "50"}, "BKG1(high) >= PK(low)"},
                          {{"10", "20", "30", "30", "40", "50"}, "PK(low) >= PK(high)"},
                          {{"10", "20", "30", "40", "40", "50"}, "PK(high) >= BKG2(low)"},
                          {{"10", "20", "30", "40", "50", "50"}, "BKG2(low) >= BKG2(high)"},
                          {{"6", "5", "4", "3", "2", "1"}, "BKG1(low) >= BKG1(high)"},
                          {{"1", "20", "4", "3", "2", "1"}, "BKG1(high) >= PK(low)"},
                          // Far out of every array, yet the order is looked at first.
                          {{"90000", "20", "4", "3", "2", "1"}, "BKG1(low) >= BKG1(high)"}}) {
        type(c.bounds);
        (*sets)[0].net = 7;
        EXPECT_EQ(computePeakArea(work), AreaStatus::Failed);
        EXPECT_EQ(lastMessage(), std::string("Ch Error\r") + c.line);
        EXPECT_EQ(dialogs.messages.back().title, "Error...");
        EXPECT_EQ(dialogs.messages.back().icon, Icon::Question);
        EXPECT_EQ((*sets)[0].net, 7);
    }
}

TEST_F(DataSets, AreEmptyOnlyWhileThereIsNoneAndTheBoundsAddUpToZero) {
    type({"", "0", "-5", "5", "", ""});
    EXPECT_EQ(computePeakArea(work), AreaStatus::Empty);
    EXPECT_TRUE(dialogs.messages.empty());
    setCount = 1;
    EXPECT_EQ(computePeakArea(work), AreaStatus::Failed);
    type({"2147483647", "1", "", "", "", ""});
    EXPECT_FAULT(computePeakArea(work), Fault::Overflow);
}

TEST_F(DataSets, AreShownInTheirFormats) {
    commitSets(1);
    goTo(0);
    EXPECT_EQ(fields.bounds.texts, (Bounds{" 100", " 110", " 120", " 130", " 140", " 150"}));
    EXPECT_EQ(fields.net, "0.0000E+00 +- 4.062E+01");
    EXPECT_EQ(fields.cps, "0.0000E+00 +- 4.062E+00");
    EXPECT_EQ(fields.relativeError, "      ");
    EXPECT_EQ(fields.index, " 0");
    EXPECT_EQ(fields.remark, "set 0");
    EXPECT_EQ(fields.sums, (std::array<std::string, 3>{"    1100", "    1100", "    1100"}));
    spectrum->counts[125] = 1100;  // another spectrum: the set is measured again
    showDataSet(work);
    EXPECT_EQ(fields.net, "1.0000E+03 +- 5.148E+01");
    EXPECT_EQ(fields.relativeError, "5.148");
}

TEST_F(DataSets, KeepAllDigitsOfABoundOf10000OrMore) {
    type({"12000", "12010", "12020", "12030", "12040", "16000"});
    nextDataSet(work);
    goTo(0);
    EXPECT_EQ(fields.bounds.texts[0], "12000");
    EXPECT_EQ((*sets)[0].bkg2High, 16000);
}

TEST_F(DataSets, HaveTheirRemarkTrimmedWhenShown) {
    (*sets)[0].name.assign("  two  blanks ");
    goTo(0);
    EXPECT_EQ(fields.remark, "two  blanks");
    EXPECT_EQ((*sets)[0].name.view(), "two  blanks             ");
}

TEST_F(DataSets, AreCommittedBySteppingAwayFromThem) {
    type(regionsAt(100));
    EXPECT_TRUE(nextDataSet(work));
    EXPECT_EQ(setCount, 1);
    EXPECT_EQ(state.currentSet, 1);
    EXPECT_EQ(fields.bounds.texts[0], "   0");
    type(regionsAt(200));
    EXPECT_TRUE(previousDataSet(work));
    EXPECT_EQ(setCount, 2);
    EXPECT_EQ(state.currentSet, 0);
    EXPECT_FALSE(previousDataSet(work));
    EXPECT_EQ(state.currentSet, 0);
    EXPECT_EQ(setCount, 2);
}

TEST_F(DataSets, AreNotCommittedBackwardsFromTheFirst) {
    type(regionsAt(100));
    EXPECT_FALSE(previousDataSet(work));
    EXPECT_EQ(setCount, 0);
}

// An empty table grows by an empty set.
TEST_F(DataSets, StepForwardFromNothing) {
    EXPECT_TRUE(nextDataSet(work));
    EXPECT_EQ(setCount, 1);
    EXPECT_EQ(state.currentSet, 1);
    EXPECT_TRUE(dialogs.messages.empty());
}

TEST_F(DataSets, ThatAreIncompleteCanBeGivenUpBackwardsOnly) {
    commitSets(1);
    type({"5", "4", "", "", "", ""});
    EXPECT_FALSE(nextDataSet(work));
    EXPECT_EQ(state.currentSet, 1);
    dialogs.messages.clear();
    dialogs.messageAnswer = false;
    EXPECT_FALSE(previousDataSet(work));
    EXPECT_EQ(state.currentSet, 1);
    ASSERT_EQ(dialogs.messages.size(), 2U);
    EXPECT_EQ(lastMessage(), "This data setting is not complete.\rYou miss this data.");
    EXPECT_EQ(dialogs.messages[1].title, "Check...");
    EXPECT_EQ(dialogs.messages[1].icon, Icon::Exclamation);
    EXPECT_EQ(dialogs.messages[1].buttons, Buttons::OkCancel);
    dialogs.messageAnswer = true;
    EXPECT_TRUE(previousDataSet(work));
    EXPECT_EQ(state.currentSet, 0);
    EXPECT_EQ(setCount, 1);
}

// The record 128 is reached, but neither shown nor ever committed.
TEST_F(DataSets, EndWithNumber127) {
    fillTable(128);
    goTo(127);
    fields.remark = "the last";
    for (int press = 0; press < 3; ++press) {
        EXPECT_FALSE(nextDataSet(work));
        EXPECT_EQ(lastMessage(), "Area data sets exceed 128");
        EXPECT_EQ(dialogs.messages.back().title, "Error...");
        EXPECT_EQ(dialogs.messages.back().icon, Icon::Exclamation);
        EXPECT_EQ(state.currentSet, 128);
        EXPECT_EQ(fields.index, " 127");
        EXPECT_EQ(setCount, 128);
    }
    EXPECT_EQ((*sets)[128].pkLow, 0);
    EXPECT_TRUE(previousDataSet(work));
    EXPECT_EQ(state.currentSet, 127);
    EXPECT_EQ(setCount, 128);
}

TEST_F(DataSets, MoveDownWhenOneIsCleared) {
    commitSets(3);
    goTo(0);
    dialogs.messageAnswer = false;
    clearDataSet(work);
    EXPECT_EQ(setCount, 3);
    EXPECT_EQ(lastMessage(), "Do you clear this data set ?");
    EXPECT_EQ(dialogs.messages.back().title, "Check...");
    EXPECT_EQ(dialogs.messages.back().icon, Icon::Question);
    dialogs.messageAnswer = true;
    (*sets)[4] = {.bkg1Low = 9, .net = 5};
    clearDataSet(work);
    EXPECT_EQ(setCount, 2);
    EXPECT_EQ((*sets)[0].bkg1Low, 200);
    EXPECT_EQ((*sets)[1].bkg1Low, 300);
    EXPECT_EQ(fields.remark, "set 1");
    EXPECT_EQ((*sets)[3].bkg1Low, 9);
    EXPECT_EQ((*sets)[4].bkg1Low, 0);  // of the record after the last only the bounds go
    EXPECT_EQ((*sets)[4].net, 5);
}

TEST_F(DataSets, AreAllLeftAloneWhenTheNewOneIsCleared) {
    commitSets(2);
    EXPECT_TRUE(isUntouched(work));
    type(regionsAt(300));
    fields.remark = "new";
    EXPECT_FALSE(isUntouched(work));
    ASSERT_EQ(computePeakArea(work), AreaStatus::Computed);
    clearDataSet(work);
    EXPECT_EQ(setCount, 2);
    EXPECT_EQ((*sets)[1].bkg1Low, 200);
    EXPECT_EQ(fields.net, "0.0000E+00 +- 0.000E+00");
    EXPECT_EQ(fields.remark, "");
    EXPECT_TRUE(isUntouched(work));
    goTo(1);
    type({});
    EXPECT_FALSE(isUntouched(work));  // a committed one
    type({"10", "20", "30", "40", "50", "99999"});
    EXPECT_FAULT(keepEntered(work), Fault::Overflow);
    EXPECT_FAULT(storeRegions({.bkg1Low = 40000}, (*sets)[0]), Fault::Overflow);
}

TEST_F(DataSets, AreNotClearedWhereThereIsNoneOrTheTableIsFull) {
    clearDataSet(work);
    EXPECT_TRUE(dialogs.messages.empty());
    fillTable(128);
    EXPECT_FAULT(clearDataSet(work), Fault::SubscriptOutOfRange);
    EXPECT_EQ(setCount, 128);
}

class CursorChannel : public DataSets {
  protected:
    bool enter(int channel) {
        return enterCursorChannel(work, static_cast<std::int16_t>(channel), [this] {
            ++redraws;
            netWhileRedrawing = fields.net;
        });
    }
    int redraws = 0;
    std::string netWhileRedrawing;
};

TEST_F(CursorChannel, FillsBoundAfterBoundAndMeasuresWithTheLast) {
    spectrum->counts[125] = 1100;
    state.focusedField = 1;
    for (int i = 0; i < 6; ++i) {
        EXPECT_TRUE(enter(100 + 10 * i));
        EXPECT_EQ(state.focusedField, std::min(i + 2, 6));
        EXPECT_EQ(redraws, i + 1);
    }
    EXPECT_EQ(fields.bounds.texts[5], " 150");
    EXPECT_EQ(netWhileRedrawing, "");
    EXPECT_EQ(fields.net, "1.0000E+03 +- 5.148E+01");
    EXPECT_EQ(fields.cps, "1.0000E+02 +- 5.148E+00");
    EXPECT_EQ(fields.relativeError, "5.148");
    EXPECT_EQ(fields.index, " 0");
    EXPECT_EQ(setCount, 0);
    spectrum->counts[125] = 0;
    enter(150);
    EXPECT_EQ(fields.relativeError, "   0.0");
}

TEST_F(CursorChannel, EntersNothingWithoutABoundInTurn) {
    type(regionsAt(100));
    EXPECT_FALSE(enter(5));
    EXPECT_EQ(fields.bounds.texts, regionsAt(100));
    EXPECT_EQ(redraws, 0);
}

// As long as the product of the bounds is below 1 there is no check and no message.
TEST_F(CursorChannel, MeasuresByTheProductOfTheBounds) {
    struct Case {
        Bounds bounds;
        bool measured;
    };
    for (const Case& c : {Case{{"0", "20", "5", "4", "3", "2"}, false},
                          {{"", "20", "5", "4", "3", "2"}, false},
                          {{"-1", "20", "5", "4", "3", "2"}, false},
                          {{"-1", "-20", "5", "4", "3", "2"}, true},
                          {{"9", "20", "5", "4", "3", "2"}, true}}) {
        dialogs.messages.clear();
        type(c.bounds);
        enter(1);
        EXPECT_EQ(!dialogs.messages.empty(), c.measured) << c.bounds[0];
    }
    type({"1", "2", "40000", "3", "4", "5"});
    EXPECT_FAULT(enter(1), Fault::Overflow);
}

}  // namespace
}  // namespace kestrel
