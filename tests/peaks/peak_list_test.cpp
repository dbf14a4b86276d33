#include "peaks/peak_list.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "peaks/peak_list_file.h"

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
        for (const PeakColumn& column : shownPeakColumns())
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
    const std::string text = peakListText({{listedPeak()}, false});
    EXPECT_THAT(text, testing::StartsWith("Channel,Channel error,Energy (keV),"));
    EXPECT_THAT(text, testing::HasSubstr("\r\n100.25,0.00,,4.00,,1000,5.0,1.250,20.0,2,"));
    EXPECT_THAT(text, testing::EndsWith("\r\n"));
    EXPECT_EQ(std::ranges::count(text, '\n'), 2);
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
