#include "view/energy_axis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kestrel {
namespace {

using Places = std::vector<std::pair<double, std::string>>;

Places ticks(const Calibration& calibration, int first, int last) {
    Places result;
    for (const EnergyTick& tick : energyTicks(calibration, first, last))
        result.emplace_back(tick.channel, tick.label);
    return result;
}

TEST(EnergyAxis, HasRoundEnergiesWhereTheirChannelsAre) {
    struct Case {
        const char* about;
        Calibration calibration;
        int first, last;
        Places ticks;
    };
    const Case cases[] = {
        {"rising, a tick on either end",
         {0, 0.5, 0},
         0,
         400,
         {{0, "0"}, {100, "50"}, {200, "100"}, {300, "150"}, {400, "200"}}},
        {"between channels",
         {-10, 0.4, 0},
         0,
         64,
         {{0, "-10"}, {12.5, "-5"}, {25, "0"}, {37.5, "5"}, {50, "10"}, {62.5, "15"}}},
        {"falling",
         {100, -1, 0},
         90,
         110,
         {{90, "10"}, {95, "5"}, {100, "0"}, {105, "-5"}, {110, "-10"}}},
        {"parts of a keV",
         {0, 0.01, 0},
         0,
         100,
         {{0, "0"}, {20, "0.2"}, {40, "0.4"}, {60, "0.6"}, {80, "0.8"}, {100, "1"}}},
        {"constant", {5, 0, 0}, 0, 100, {}},
        {"one channel", {0, 1, 0}, 7, 7, {}},
        {"steps lost in the size of the energies", {1e300, 1e284, 0}, 0, 100, {}},
        {"smaller than any energy", {0, 1e-318, 0}, 0, 100, {}},
        {"beyond all numbers", {0, std::numeric_limits<double>::max(), 0}, 0, 100, {}},
    };
    for (const Case& c : cases) {
        const Places found = ticks(c.calibration, c.first, c.last);
        ASSERT_EQ(found.size(), c.ticks.size()) << c.about;
        for (std::size_t i = 0; i < found.size(); ++i) {
            EXPECT_NEAR(found[i].first, c.ticks[i].first, 1e-9) << c.about;
            EXPECT_EQ(found[i].second, c.ticks[i].second) << c.about;
        }
    }
}

TEST(EnergyAxis, ACalibrationThatTurnsHasTheSameEnergyOnBothSides) {
    const Places found = ticks({0, 2, -0.01}, 0, 200);
    int hundreds = 0;
    for (const auto& [channel, label] : found) {
        EXPECT_NEAR((-0.01 * channel + 2) * channel, std::stoi(label), 0.01);
        hundreds += label == "80" ? 1 : 0;
    }
    EXPECT_EQ(hundreds, 2);
    EXPECT_LE(found.size(), 22U);
}

TEST(EnergyAxis, HasFewTicksWhateverTheCalibrationIs) {
    std::vector<double> values{0, std::numeric_limits<double>::quiet_NaN()};
    for (int exponent = -1076; exponent <= 1021; exponent += 29)
        values.insert(values.end(), {std::ldexp(7, exponent), std::ldexp(-7, exponent)});
    for (const double b : values) {
        for (const double c : values)
            ASSERT_LE(energyTicks({b, c, b}, 0, 9).size() + energyTicks({1, b, c}, 0, 9).size(),
                      44U)
                << b << ' ' << c;
    }
}

}  // namespace
}  // namespace kestrel
