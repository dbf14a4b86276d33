#include "peaks/peak_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "peaks/peak_list_file.h"
#include "peaks/second_areas.h"

namespace kestrel {
namespace {

// 1000 counts in channel 100 or so, and what a test changes of it.
ListedPeak listedPeak() {
    ListedPeak peak;
    peak.measured.centroid = 100.25;
    peak.measured.fwhm = 4;
    peak.measured.group = 2;
    peak.net = 1000;
    peak.netError = 50;
    peak.rate = 1.25;
    return peak;
}

TEST(PeakColumns, HaveNoTextWhereThereIsNothingToTell) {
    ListedPeak peak = listedPeak();
    const auto row = [&] {
        std::string texts;
        for (const PeakColumn& column : shownPeakColumns(false))
            texts += column.text(peak) + "|";
        return texts;
    };
    EXPECT_THAT(row(), testing::StartsWith("100.25||4.00||1000|5.0|1.250|20.0|2|"));
    peak.energy = 50.125;
    peak.energyFwhm = 2;
    peak.rate = 0.00123456;
    peak.measured.group = 0;
    EXPECT_THAT(row(), testing::StartsWith("100.25|50.13|4.00|2.00|1000|5.0|0.001235|20.0||"));
    peak.net = peak.netError = 0;
    peak.rate = std::nullopt;
    EXPECT_THAT(row(), testing::StartsWith("100.25|50.13|4.00|2.00||||||"));
    for (const auto& [rate, text] : {std::pair{123456.7, "123457"},
                                     {99.994, "99.99"},
                                     {-0.5, "-0.5000"},
                                     {1e-9, "0.000000"}}) {
        peak.rate = rate;
        EXPECT_THAT(row(), testing::HasSubstr(std::string("|") + text + "|"));
    }
}

TEST(PeakListText, HasAFieldForEachColumnAndNoFormula) {
    const std::string text = peakListText({{listedPeak()}});
    EXPECT_THAT(text, testing::StartsWith("Channel,Channel error,Energy (keV),"));
    EXPECT_THAT(text, testing::HasSubstr("\r\n100.25,0.00,,4.00,,1000,5.0,1.250,20.0,2,"));
    EXPECT_THAT(text, testing::EndsWith("\r\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 2);
}

// The second has the counts of the first shared out, or half of them, or nothing but background.
TEST(SecondAreas, AreThoseOfTheSameRegions) {
    PeakList list{.peaks = {listedPeak()}};
    PeakRecord& measured = list.peaks[0].measured;
    measured.regions = {10, 13, 20, 27, 34, 37};
    measured.net = 600;
    measured.netError = 30;
    list.compared = true;
    SecondCounts second{std::vector<double>(36, 2.5), 2};  // the last two channels are past its end
    second.counts[22] = 302.5;
    addSecondAreas(list, second);
    // 320 - 10 - 5, and its variance 320 + 10 + 5, twice and four times.
    EXPECT_NEAR(list.peaks[0].second->value, 610, 1e-9);
    EXPECT_NEAR(list.peaks[0].second->error, 2 * std::sqrt(335), 1e-9);
    EXPECT_NEAR(list.peaks[0].ratio->value, 600 / 610.0, 1e-9);
    EXPECT_NEAR(list.peaks[0].ratio->error, std::hypot(30, 36.60601 * 600 / 610) / 610, 1e-6);
    EXPECT_THAT(peakListText(list),
                testing::HasSubstr("Second net,Second net error,Ratio,Ratio error\r\n"));
    EXPECT_THAT(peakListText(list), testing::EndsWith(",610.0000,36.6060,0.9836,0.0768\r\n"));
    EXPECT_EQ(shownPeakColumns(true).back().text(list.peaks[0]), "0.984 +- 0.077");
    second.counts[22] = 0;
    addSecondAreas(list, second);
    EXPECT_FALSE(list.peaks[0].ratio);
}

TEST(KnownCalibration, IsNotTheOneThatTheProgramStartsWith) {
    const auto spectrum = std::make_unique<Spectrum>();
    EXPECT_FALSE(knownCalibration(*spectrum));
    spectrum->calCurrent = {0, 0.51, 0};
    EXPECT_TRUE(knownCalibration(*spectrum));
    spectrum->calCurrent = {0, -0.51, 0};
    EXPECT_FALSE(knownCalibration(*spectrum));
}

}  // namespace
}  // namespace kestrel
