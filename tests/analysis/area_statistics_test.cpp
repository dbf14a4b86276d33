// Areas of made peaks against what was put in.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "analysis/net_area.h"
#include "make_samples/spectrum_maker.h"

namespace kestrel {
namespace {

TEST(AreasOfMadePeaks, AgreeWithWhatWasPutInWithinTheirStatedErrors) {
    constexpr int spacing = 100;
    constexpr int peaksEach = 39;
    constexpr int spectra = 8;
    samples::PeakPlan plan{.background = 200, .backgroundSlope = -0.04};
    for (int i = 0; i < peaksEach; ++i)
        plan.peaks.push_back(
            {.energy = 0.5 * (spacing * (i + 1) + 0.5), .area = 300.0 * (1 + i % 7) * (1 + i % 5)});
    auto spectrum = std::make_unique<Spectrum>();
    spectrum->channelCount = plan.channelCount;
    spectrum->openedLiveTime = {30000};
    double sum = 0;
    double squares = 0;
    for (int seed = 1; seed <= spectra; ++seed) {
        std::ranges::copy(samples::makePeaks(plan, static_cast<std::uint64_t>(seed)),
                          spectrum->counts.begin());
        for (int i = 0; i < peaksEach; ++i) {
            const int centre = spacing * (i + 1);
            PeakAreaSet set;
            computeNetArea(*spectrum,
                           {.bkg1Low = centre - 32,
                            .bkg1High = centre - 15,
                            .pkLow = centre - 12,
                            .pkHigh = centre + 12,
                            .bkg2Low = centre + 15,
                            .bkg2High = centre + 32},
                           set);
            const double pull = (double{set.net} - plan.peaks[static_cast<std::size_t>(i)].area) /
                                double{set.netError};
            sum += pull;
            squares += pull * pull;
        }
    }
    constexpr double n = peaksEach * spectra;
    const double mean = sum / n;
    const double width = std::sqrt(squares / n - mean * mean);
    RecordProperty("peaks", static_cast<int>(n));
    RecordProperty("mean", std::to_string(mean));
    RecordProperty("width", std::to_string(width));
    // Three standard errors of mean and width.
    EXPECT_LT(std::fabs(mean), 3 / std::sqrt(n));
    EXPECT_LT(std::fabs(width - 1), 3 / std::sqrt(2 * n));
}

}  // namespace
}  // namespace kestrel
