#include "view/status_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "fault_matcher.h"

namespace kestrel {
namespace {

class StatusText : public testing::Test {
  protected:
    std::string line(std::int16_t channel, std::int32_t counts, double energy,
                     double significance) {
        spectrum->calCurrent = {energy, 0, 0};
        spectrum->counts[channel] = counts;
        derived->peakSignificance[channel] = significance;
        return statusLine(*spectrum, *derived, channel);
    }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
};

TEST_F(StatusText, HasFieldsOfFixedWidth) {
    EXPECT_EQ(line(1234, 12345, 661.6, 12), "ch:* 1234( 661.6keV) c:   12345");
    EXPECT_EQ(line(0, 0, 0, 0), "ch:     0(   0.0keV) c:       0");
    EXPECT_EQ(line(16383, 100000, -5.25, 0), "ch: 16383(  -5.2keV) c:  100000");
}

TEST_F(StatusText, CutsTooLongFieldsAtTheRight) {
    EXPECT_EQ(line(1, 123456789, 10000.4, 0), "ch:     1(10000.keV) c:12345678");
}

TEST_F(StatusText, MarksPeaksByStrictComparisons) {
    for (const auto& [value, mark] : {std::pair{0.0, ' '},
                                      {1.0, ' '},
                                      {1.1, '_'},
                                      {2.0, '_'},
                                      {4.0, '_'},
                                      {5.0, '_'},
                                      {8.0, '-'},
                                      {10.0, '-'},
                                      {10.001, '*'}})
        EXPECT_EQ(line(1, 1, 1, value)[3], mark) << value;
}

TEST_F(StatusText, ShowsChannelsPastTheEndAsEmpty) {
    spectrum->calCurrent = {};
    spectrum->counts[100] = 5;
    derived->peakSignificance[100] = 20;
    spectrum->channelCount = 100;
    EXPECT_EQ(statusLine(*spectrum, *derived, 100), "ch:   100(   0.0keV) c:       0");
    EXPECT_FAULT(statusLine(*spectrum, *derived, -1), Fault::SubscriptOutOfRange);
}

TEST_F(StatusText, TellsTheLiveTimeToHundredths) {
    spectrum->openedLiveTime = {30001};
    EXPECT_EQ(liveTimeHeader(*spectrum), "Live: 600.02sec");
}

TEST_F(StatusText, TellsWhatIsUnderThePointer) {
    spectrum->channelCount = 2000;
    spectrum->calCurrent = {0, 0.5, 0};
    spectrum->counts[1323] = 12345;
    EXPECT_EQ(pointerLine(*spectrum, 1322.7), "Channel 1323   661.5 keV   12345 counts");
    for (const double outside : {-0.6, 1999.6, 1e300, std::nan("")})
        EXPECT_EQ(pointerLine(*spectrum, outside), "") << outside;
    spectrum->calCurrent.a = 1e300;
    EXPECT_EQ(pointerLine(*spectrum, 1323), "Channel 1323   12345 counts");
}

TEST_F(StatusText, TellsWhatADrawnRangeHas) {
    spectrum->channelCount = 2000;
    spectrum->counts[1990] = 10;
    spectrum->counts[1995] = 500;
    spectrum->counts[1999] = 20;
    EXPECT_EQ(rangeLine(*spectrum, drawnRange(*spectrum, 2100.5, 1990.4)),
              "Channels 1990 to 1999   10 wide   sum 530   net 380");
    EXPECT_EQ(drawnRange(*spectrum, -50, 3).low, 0);
}
}  // namespace
}  // namespace kestrel
