#include "spectrum/energy_calibration.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "fault_matcher.h"

namespace kestrel {
namespace {

TEST(EnergyCalibration, GivesEnergiesInTenthsOfAKiloElectronVolt) {
    const double gain = 1210.0 / 900.0;
    struct Case {
        Calibration calibration;
        std::int16_t channel = 0;
        double energy = 0;
    };
    for (const auto& [calibration, channel, energy] : {
             Case{{122 - 100 * gain, gain, 0}, 100, 122.0},
             Case{{0, 0.25, 0}, 1, 0.2},  // 0.25 and 0.75: halves go to the even tenth
             Case{{0, 0.25, 0}, 3, 0.8},
             Case{{-10, 0.25, 0}, -1, -10.2},
             Case{{1, 2, 0.003}, 32767, 3286563.9},
         })
        EXPECT_EQ(channelToEnergy(calibration, channel), energy) << channel;
    EXPECT_FAULT(channelToEnergy({0, 10000, 0}, 32767), Fault::Overflow);
}

TEST(EnergyCalibration, FindsTheNearestChannelOfAnEnergy) {
    struct Case {
        Calibration calibration;
        double energy = 0;
        int channel = 0;
    };
    for (const auto& [calibration, energy, channel] : {
             Case{{0, 0.5, 0}, 662, 1324}, Case{{0, 1, 0}, 62.5, 62}, Case{{0, 1, 0}, 63.5, 64},
             Case{{10, 1, 0}, 0, -10}, Case{{5, 0, 0}, 662, 0},  // no slope
             Case{{4, 1, 1}, 1e9, 0},                            // A equals 4 C
             Case{{0, 0.5, 1e-6}, 501, 1000},
             Case{{1.2, 0.5, -1e-7}, 1999.6, 4000},  // the other root is near channel 5,000,000
             Case{{1.2, 0.5, -1e-7}, 1.2, 0}, Case{{0, 0.5, -1e-5}, 4000, 10000},
             Case{{0, 0.5, -1e-5}, 6000, 30000},  // fits, so it comes before 20000
         })
        EXPECT_EQ(energyToChannel(calibration, energy), channel) << energy;
}

TEST(EnergyCalibration, RefusesEnergiesWithoutAChannel) {
    EXPECT_FAULT(energyToChannel({0, 0.5, 0}, 16384), Fault::Overflow);
    EXPECT_FAULT(energyToChannel({0, 0.5, 1e-9}, 20000), Fault::Overflow);
    EXPECT_FAULT(energyToChannel({0, 0.5, -1e-7}, 19840), Fault::Overflow);  // channel 40000
    EXPECT_FAULT(energyToChannel({0, 0.5, -1e-7}, -5), Fault::Overflow);     // channel -10
    EXPECT_FAULT(energyToChannel({0, 0.5, -1e-5}, 7000), Fault::InvalidCall);
}

}  // namespace
}  // namespace kestrel
