#include "spectrum/derived_arrays.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "fault_matcher.h"

namespace kestrel {
namespace {

class DerivedArraysTest : public testing::Test {
  protected:
    void derive() { computeDerivedArrays(*spectrum, *derived); }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
};

TEST_F(DerivedArraysTest, HeightsAre200ADecadeAndBelowTheBaseLineForEmptyChannels) {
    struct Case {
        std::int32_t count, height;
    };
    const Case cases[] = {
        {0, -15},   {-5, -15},   {1, 0},         {2, 60},
        {3, 95},    {10, 200},   {255, 481},     {256, 482},
        {257, 482},  // where the table ends
        {999, 600}, {1000, 600}, {100000, 1000}, {std::numeric_limits<std::int32_t>::max(), 1866},
    };
    spectrum->channelCount = std::size(cases);
    for (std::size_t k = 0; k < std::size(cases); ++k)
        spectrum->counts[static_cast<std::int64_t>(k)] = cases[k].count;
    derive();
    for (std::size_t k = 0; k < std::size(cases); ++k)
        EXPECT_EQ(derived->logHeights[static_cast<std::int64_t>(k)], cases[k].height)
            << cases[k].count;
}

TEST_F(DerivedArraysTest, FillsBothArraysUpToTheChannelCountAndLeavesTheRest) {
    spectrum->channelCount = 100;
    spectrum->counts[50] = 1000;
    derived->logHeights.fill(77);
    derived->peakSignificance.fill(7.5);
    derive();
    EXPECT_EQ(derived->logHeights[99], -15);
    EXPECT_EQ(derived->logHeights[100], 77);
    EXPECT_GT(derived->peakSignificance[50], 10.0);
    EXPECT_EQ(derived->peakSignificance[99], 0.0);
    EXPECT_EQ(derived->peakSignificance[100], 7.5);
}

TEST_F(DerivedArraysTest, WorksForEveryChannelCountThatTheArraysHold) {
    for (const int channelCount : {-1, 0, 1, 16, 17, 16384, 17001}) {
        spectrum->channelCount = static_cast<std::int16_t>(channelCount);
        EXPECT_FAULT(derive(), Fault{}) << channelCount;
    }
    spectrum->channelCount = 17002;
    spectrum->counts[17000] = 1000;
    EXPECT_FAULT(derive(), Fault::SubscriptOutOfRange);
    EXPECT_EQ(derived->logHeights[17000], 600);
}

TEST_F(DerivedArraysTest, HeightsAreThereWhenThePeakMeasureOverflows) {
    spectrum->channelCount = 100;
    spectrum->counts[50] = spectrum->counts[52] = std::numeric_limits<std::int32_t>::max();
    EXPECT_FAULT(derive(), Fault::Overflow);
    EXPECT_EQ(derived->logHeights[52], 1866);
}

}  // namespace
}  // namespace kestrel
