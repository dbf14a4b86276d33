#include "analysis/two_point_calibration.h"

#include <gtest/gtest.h>

#include <memory>

#include "fault_matcher.h"
#include "scripted_dialogs.h"
#include "spectrum/energy_calibration.h"

namespace kestrel {
namespace {

class TwoPoints : public testing::Test {
  protected:
    TwoPoints() {
        spectrum->calFromFile = {1, 2, 3};
        spectrum->calCurrent = {4, 5, 6};
    }
    bool accept(const CalibrationTexts& typed) {
        return acceptCalibration(*spectrum, choice, typed, kept, dialogs);
    }
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    CalibrationChoice choice{.useFileCalibration = false};
    CalibrationTexts kept{"a", "b", "c", "d"};
    test::ScriptedDialogs dialogs;
};

TEST_F(TwoPoints, GiveAStraightLineAndAreKeptAsTyped) {
    ASSERT_TRUE(accept({" 100ch", "122", "1000", "1332.0keV"}));
    EXPECT_EQ(spectrum->calCurrent.b, 1210.0 / 900.0);
    EXPECT_EQ(spectrum->calCurrent.a, 122 - 100 * (1210.0 / 900.0));
    EXPECT_EQ(spectrum->calCurrent.c, 0);
    EXPECT_EQ(choice.calDefault, spectrum->calCurrent);
    EXPECT_EQ(channelToEnergy(spectrum->calCurrent, 100), 122.0);
    EXPECT_EQ(kept.channelLow, " 100ch");
    EXPECT_EQ(kept.energyHigh, "1332.0keV");
}

TEST_F(TwoPoints, AreNarrowedToSinglePrecision) {
    ASSERT_TRUE(accept({"0", "121.7817", "1000", "1408.006"}));
    const double low{121.7817F};
    const double high{1408.006F};
    EXPECT_EQ(spectrum->calCurrent.b, (low - high) / -1000.0);
    EXPECT_EQ(spectrum->calCurrent.a, low);
    EXPECT_NE(spectrum->calCurrent.a, 121.7817);
    EXPECT_FAULT(accept({"0", "1", "2", "1e39"}), Fault::Overflow);
}

TEST_F(TwoPoints, ThatDoNotRiseAreRefusedAndChangeNothing) {
    const char* channels = "Ch Error\rCh(low) >= Ch(high)";
    const char* energies = "Energy Error\rEnergy(low) >= Energy(high)";
    struct Case {
        CalibrationTexts typed;
        const char* message;
    };
    for (const Case& c : {Case{{"10", "1", "10", "2"}, channels},
                          {{"", "1", "x", "2"}, channels},
                          {{"1", "2", "3", "2"}, energies},
                          {{"9", "2", "3", "1"}, energies},
                          // The difference is lost in single precision.
                          {{"16777216", "1", "16777217", "2"}, channels}}) {
        const Spectrum before = *spectrum;
        EXPECT_FALSE(accept(c.typed));
        EXPECT_EQ(dialogs.messages.back().text, c.message);
        EXPECT_EQ(dialogs.messages.back().title, "Error...");
        EXPECT_EQ(dialogs.messages.back().icon, Icon::Question);
        EXPECT_EQ(spectrum->calCurrent, before.calCurrent);
        EXPECT_EQ(choice.calDefault, startCalibration);
        EXPECT_EQ(kept.channelLow, "a");
    }
}

TEST_F(TwoPoints, AreNotLookedAtWhereTheFileCalibrationCounts) {
    choice.useFileCalibration = true;
    EXPECT_TRUE(accept({"9", "9", "1", "1"}));
    EXPECT_TRUE(dialogs.messages.empty());
    EXPECT_EQ(spectrum->calCurrent, spectrum->calFromFile);
    EXPECT_EQ(choice.calDefault, startCalibration);
    EXPECT_EQ(kept.channelLow, "a");
}

}  // namespace
}  // namespace kestrel
