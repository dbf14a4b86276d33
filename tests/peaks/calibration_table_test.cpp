#include "peaks/calibration_table.h"

#include <gtest/gtest.h>

namespace kestrel {
namespace {

CalibrationTable tableOf(std::initializer_list<double> channels) {
    CalibrationTable table;
    for (const double channel : channels)
        table.rows.push_back({.channel = channel, .fwhm = 4, .net = 100, .energy = std::nullopt});
    return table;
}

TEST(CalibrationTable, TakesPointsAtTheirPeaksAndKeepsThoseWithoutOne) {
    CalibrationTable table = tableOf({100, 200, 203});
    table.rows[0].energy = 7;
    const CalibrationPoints points{{{201, 0.1, 60}, {204, 0.1, 61, false}, {900, 0.2, 400}},
                                   CalibrationCurve::Parabola};
    for (int times = 0; times < 2; ++times) {
        takePoints(table, points);
        EXPECT_EQ(pointsOf(table), points);
        EXPECT_EQ(table.rows.size(), 4U);
    }
}

TEST(CalibrationTable, GivesEachLineToOnePeak) {
    CalibrationTable table = tableOf({100, 102, 300});
    takeLines(table, std::vector<SourceLine>{{101.5, 5}, {99, 20}, {300, 0.9}, {350, 50}},
              {0, 1, 0});
    EXPECT_EQ(table.rows[0].energy, 99);
    EXPECT_EQ(table.rows[1].energy, 101.5);
    EXPECT_EQ(table.rows[2].energy, std::nullopt);
}

TEST(CalibrationTable, TakesEnergiesAsTheyAreTyped) {
    EXPECT_EQ(typedEnergy(" 661,66 "), 661.66);
    for (const char* bad : {"", "x", "1x", "1.2.3", "0", "-5", "1e9", "nan", "inf"})
        EXPECT_EQ(typedEnergy(bad), std::nullopt) << bad;
}

}  // namespace
}  // namespace kestrel
