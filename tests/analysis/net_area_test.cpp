#include "analysis/net_area.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "fault_matcher.h"

namespace kestrel {
namespace {

class Area : public testing::Test {
  protected:
    Area() {
        spectrum->channelCount = 4096;
        spectrum->counts.fill(100);
        spectrum->openedLiveTime = {500};  // 10 s
    }
    PeakAreaSet measure(const PeakRegions& regions) const {
        PeakAreaSet set;
        computeNetArea(*spectrum, regions, set);
        return set;
    }
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    const PeakRegions even{
        .bkg1Low = 10, .bkg1High = 19, .pkLow = 20, .pkHigh = 39, .bkg2Low = 40, .bkg2High = 49};
};

TEST_F(Area, OfAFlatSpectrumIsZeroWithTheErrorOfItsSums) {
    const PeakAreaSet set = measure(even);
    EXPECT_EQ(set.net, 0.0F);
    EXPECT_EQ(set.netError, std::sqrt(4000.0F));
    EXPECT_EQ(set.cps, 0.0F);
    EXPECT_EQ(set.cpsError, static_cast<float>(double{set.netError} / 10.0));
}

TEST_F(Area, TakesHalfOfTheBackgroundFromEachSideWhateverItsWidth) {
    // A 5-channel and a 20-channel background under a 10-channel peak: weights 1.0 and 0.25.
    for (int i = 100; i < 105; ++i)
        spectrum->counts[i] = 10;
    for (int i = 115; i < 135; ++i)
        spectrum->counts[i] = 30;
    const PeakAreaSet set = measure({.bkg1Low = 100,
                                     .bkg1High = 104,
                                     .pkLow = 105,
                                     .pkHigh = 114,
                                     .bkg2Low = 115,
                                     .bkg2High = 134});
    EXPECT_EQ(set.net, 1000.0F - 50.0F - 150.0F);
    EXPECT_EQ(set.netError, static_cast<float>(std::sqrt(50.0 + 1000.0 + 0.0625 * 600.0)));
}

// Sums above 2^24 lose their last digits; with double sums the net area would be 1000003.
TEST_F(Area, HoldsItsQuantitiesInSinglePrecision) {
    spectrum->counts.fill(0);
    spectrum->counts[25] = 33554435;  // 2^25 + 3: held as 2^25 + 4
    spectrum->counts[15] = 32554432;  // 2^25 - 1000000, held exactly
    EXPECT_EQ(measure(even).net, 1000004.0F);
    // The weight 21 / 40 is held in single precision, its products are not: with either of the
    // two otherwise, this flat spectrum would have no area at all.
    spectrum->counts.fill(100);
    const PeakRegions flat{
        .bkg1Low = 70, .bkg1High = 89, .pkLow = 90, .pkHigh = 110, .bkg2Low = 111, .bkg2High = 130};
    EXPECT_EQ(measure(flat).net, 9.5367431640625E-05F);
}

TEST_F(Area, EndsInTheFaultThatFits) {
    PeakRegions beyond = even;
    beyond.bkg2High = 17001;
    EXPECT_FAULT(measure(beyond), Fault::SubscriptOutOfRange);
    beyond.bkg2High = 2147483647;
    EXPECT_FAULT(measure(beyond), Fault::SubscriptOutOfRange);
    beyond = even;
    beyond.bkg1Low = -1;
    EXPECT_FAULT(measure(beyond), Fault::SubscriptOutOfRange);
    PeakRegions none = even;
    none.bkg1High = 9;
    EXPECT_FAULT(measure(none), Fault::DivisionByZero);
    spectrum->counts[20] = 2147483647;
    EXPECT_FAULT(measure(even), Fault::Overflow);
    beyond = even;
    beyond.bkg2High = 17001;
    EXPECT_FAULT(measure(beyond), Fault::SubscriptOutOfRange) << "before any sum";
    spectrum->counts.fill(-1);
    EXPECT_FAULT(measure(even), Fault::InvalidCall);
    spectrum->counts.fill(1);
    spectrum->openedLiveTime = {0};
    EXPECT_FAULT(measure(even), Fault::DivisionByZero);
}

TEST_F(Area, FindsNothingPastTheEndOfTheSpectrum) {
    spectrum->channelCount = 45;
    EXPECT_EQ(sumCounts(*spectrum, 40, 49), 500);
    EXPECT_EQ(sumCounts(*spectrum, 50, 59), 0);
    EXPECT_EQ(sumCounts(*spectrum, 9, 3), 0);
}

}  // namespace
}  // namespace kestrel
