// Data sets that are filled from marked peaks and from saved lists.
#include "analysis/measured_sets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "analysis/pkm_file.h"
#include "analysis/result_list.h"
#include "make_samples/spectrum_maker.h"
#include "scripted_dialogs.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

class MeasuredSets : public testing::Test {
  protected:
    void make(int peaks) {
        samples::PeakPlan plan{.channelCount = 16384, .calibration = {0, 1, 0}, .background = 50};
        for (int i = 0; i < peaks; ++i)
            plan.peaks.push_back({100.0 + 100 * i, 20000});
        spectrum->channelCount = plan.channelCount;
        spectrum->openedLiveTime = spectrum->liveTime = {500};
        std::ranges::copy(samples::makePeaks(plan, 1), spectrum->counts.begin());
        computeDerivedArrays(*spectrum, *derived);
    }
    // True for the row that appends, false for the one that replaces.
    bool measureAll(bool append = true) {
        dialogs.rowAnswer = append ? 0 : 1;
        return measureAllPeaks(work, source);
    }
    double centreOf(int set) const { return ((*sets)[set].pkLow + (*sets)[set].pkHigh) / 2.0; }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
    std::unique_ptr<PeakAreaTable> sets = std::make_unique<PeakAreaTable>();
    std::int16_t setCount = 0;
    std::int16_t cursorCh = 0;
    PeakAreaState state;
    test::TempFolder folder;
    std::string listFolder = folder.path();
    test::ScriptedDialogs dialogs;
    PeakAreaWork work{*spectrum, *sets, setCount, state, dialogs};
    RegionSource source{*derived, cursorCh, listFolder};
};

TEST_F(MeasuredSets, AreThoseOfAllPeaksInPlaceOfOthersOrAfterThem) {
    make(5);
    ASSERT_TRUE(measureAll());
    EXPECT_TRUE(dialogs.choices.empty()) << "there is nothing to ask while there is no set";
    ASSERT_EQ(setCount, 5);
    for (int i = 0; i < 5; ++i) {
        EXPECT_NEAR(centreOf(i), 100 + 100 * i, 1.5);
        EXPECT_NEAR(double{(*sets)[i].net}, 20000, 5 * double{(*sets)[i].netError});
    }
    EXPECT_EQ(state.currentSet, 0);
    EXPECT_EQ(shownPeak(work, source).centroid.substr(0, 4), "100.");

    // One of them and a set by hand, which is not committed yet: four are new.
    (*sets)[0].pkLow = 1;
    std::fill(sets->begin() + 1, sets->end(), PeakAreaSet{});
    setCount = state.currentSet = 1;
    state.fields.bounds.texts = {"1000", "1010", "1020", "1040", "1050", "1060"};
    dialogs.messageAnswer = false;
    EXPECT_FALSE(measureAll());
    dialogs.messageAnswer = true;
    ASSERT_TRUE(measureAll());
    EXPECT_EQ(setCount, 2 + 5);
    EXPECT_EQ(centreOf(1), 1030);
    EXPECT_GT((*sets)[1].netError, 0);
    EXPECT_EQ(state.currentSet, 2);
    ASSERT_TRUE(measureAll());
    EXPECT_EQ(setCount, 7);
    EXPECT_EQ(dialogs.messages.back().text, "All of these peaks have a set already.");
    ASSERT_TRUE(measureAll(false));
    EXPECT_EQ(setCount, 5);
    EXPECT_EQ(state.currentSet, 0);
}

TEST_F(MeasuredSets, EndAt128AndTellWhatIsLeftOut) {
    make(150);
    ASSERT_TRUE(measureAll());
    EXPECT_EQ(setCount, mostPeakSets);
    ASSERT_EQ(dialogs.messages.size(), 1U);
    EXPECT_EQ(dialogs.messages[0].text, "Area data sets exceed 128");
    EXPECT_TRUE(dialogs.messages[0].details.starts_with("Left out: 22, from channel 12900."))
        << dialogs.messages[0].details;
    state.currentSet = mostPeakSets;
    EXPECT_FALSE(measureNearestPeak(work, source));
}

TEST_F(MeasuredSets, TakeThePeakNearestToTheCursorAndKeepTheirRemark) {
    make(5);
    cursorCh = 260;
    state.fields.remark = "mine";
    ASSERT_TRUE(measureNearestPeak(work, source));
    EXPECT_NEAR(centreOf(0), 300, 1.5);
    EXPECT_EQ(setCount, 0) << "it is committed as one by hand is";
    EXPECT_EQ((*sets)[0].name.trimmed(), "mine");
    EXPECT_TRUE(resultsAreOfBounds(work));
    make(0);
    EXPECT_FALSE(measureNearestPeak(work, source));
    EXPECT_EQ(dialogs.messages.back().text, "No peak is marked in this spectrum.");
}

TEST_F(MeasuredSets, GoBackStepByStep) {
    make(3);
    AreaHistory history;
    for (std::size_t i = 0; i < AreaHistory::mostSteps + 5; ++i) {
        state.fields.remark = std::to_string(i);
        history.keep(work);
    }
    measureAll();
    for (std::size_t i = AreaHistory::mostSteps + 5; i-- > 5;) {
        history.back(work);
        EXPECT_EQ(state.fields.remark, std::to_string(i));
    }
    EXPECT_EQ(setCount, 0);
    EXPECT_EQ(centreOf(0), 0);
    EXPECT_TRUE(history.isEmpty());
}

TEST_F(MeasuredSets, ComeBackFromTheListThatWasSaved) {
    make(5);
    measureAll();
    const PeakAreaTable measured = *sets;
    spectrum->filePath = "/made.chn";
    writePkmFile(*spectrum, folder.path(), buildResultList(*spectrum, *sets, setCount));
    const std::string list = folder.read("made.pkm");
    make(6);
    setCount = 0;
    const auto load = [&](const std::string& text) {
        dialogs.fileAnswer = {.path = folder.write("list.pkm", text)};
        return loadSets(work, source);
    };
    ASSERT_TRUE(load(list));
    ASSERT_EQ(setCount, 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(regionsOf((*sets)[i]), regionsOf(measured[i])) << i;

    const std::size_t lines = list.rfind('-') + 3;
    const auto changed = [&](std::size_t from, std::size_t size, const char* by) {
        return std::string(list).replace(from, size, by);
    };
    for (const auto& [text, why] :
         {std::pair{std::string(), "There are no headings of a list."},
          {list.substr(0, lines + 200), "Line 11: is no line of a list"},
          {list.substr(0, lines), "The list is empty."},
          {changed(lines + 64, 5, "99999"), "Line 9: has a bound that is no channel"},
          {changed(lines + 64, 5, "   -1"), "Line 9: has a bound that is no channel"},
          {changed(lines + 64, 5, "16000"), "Line 9: BKG1(low) >= BKG1(high)"}}) {
        EXPECT_FALSE(load(text)) << why;
        EXPECT_EQ(dialogs.messages.back().details, why + ("\n" + folder.file("list.pkm")));
    }
    std::string longest = list.substr(0, lines);
    for (int i = 0; i < 129; ++i)
        longest += list.substr(lines, 96);
    EXPECT_EQ(readPkmText(longest).refusal, "Line 137: is one more than 128");
    EXPECT_EQ(setCount, 5);
}

}  // namespace
}  // namespace kestrel
