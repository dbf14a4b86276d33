// Measured peaks against what was put into made spectra.
#include "analysis/peak_measures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "make_samples/spectrum_maker.h"

namespace kestrel {
namespace {

struct Made {
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();

    explicit Made(const samples::PeakPlan& plan, std::uint64_t seed = 1) {
        spectrum->channelCount = plan.channelCount;
        std::ranges::copy(samples::makePeaks(plan, seed), spectrum->counts.begin());
        computeDerivedArrays(*spectrum, *derived);
    }
    std::vector<PeakRecord> measured() const { return measurePeaks(*spectrum, *derived).peaks; }
};

samples::PeakPlan planOf(double background, double slope) {
    return {.calibration = {0, 1, 0},
            .resolution = {9, 0.003},
            .background = background,
            .backgroundSlope = slope};
}

bool inOrder(const PeakRegions& r) {
    return 0 < r.bkg1Low && r.bkg1Low < r.bkg1High && r.bkg1High < r.pkLow && r.pkLow < r.pkHigh &&
           r.pkHigh < r.bkg2Low && r.bkg2Low < r.bkg2High;
}

struct Pulls {
    double sum = 0;
    double squares = 0;
    int n = 0;
    void add(double pull) {
        sum += pull;
        squares += pull * pull;
        ++n;
    }
    // Four standard errors of mean and spread, and what the stated errors themselves scatter.
    void expectNormal(const char* name) const {
        const double mean = sum / n;
        EXPECT_LT(std::fabs(mean), 0.05 + 4 / std::sqrt(n)) << name;
        EXPECT_NEAR(std::sqrt(squares / n - mean * mean), 1, 0.05 + 4 / std::sqrt(2 * n)) << name;
    }
};

TEST(MeasuredPeaks, AgreeWithWhatWasPutInWithinTheirStatedErrors) {
    for (const double slope : {0.0, -0.04}) {
        samples::PeakPlan plan = planOf(200, slope);
        const double areas[] = {1500, 3000, 1e4, 1e5, 1e6};
        for (int i = 1; i < 40; ++i)
            plan.peaks.push_back({100.37 * i, areas[i % 5]});
        Pulls net;
        Pulls centroid;
        for (std::uint64_t seed = 1; seed <= 8; ++seed)
            for (const PeakRecord& peak : Made(plan, seed).measured()) {
                const double nearest = std::round(peak.channel / 100.37);
                if (nearest < 1 || nearest > 39 || std::fabs(peak.channel - 100.37 * nearest) > 3)
                    continue;  // a false mark
                const auto i = static_cast<std::size_t>(nearest) - 1;
                EXPECT_TRUE(inOrder(peak.regions) && peak.group == 0) << peak.channel;
                net.add((peak.net - plan.peaks[i].area) / peak.netError);
                centroid.add((peak.centroid - plan.peaks[i].energy) / peak.centroidError);
                const double fwhm = plan.resolution.fwhm(peak.centroid);
                EXPECT_NEAR(peak.fwhm, fwhm, (0.02 + 4 * peak.fwhmError / fwhm) * fwhm) << i;
            }
        EXPECT_EQ(net.n, 39 * 8);
        net.expectNormal("net");
        centroid.expectNormal("centroid");
    }
}

TEST(MeasuredPeaks, TooNearForABackgroundBetweenThemAreMeasuredTogether) {
    samples::PeakPlan plan = planOf(100, 0);
    plan.peaks = {{500, 2e5}, {1000, 1e5}, {1007, 4e4}, {1500, 1e5}, {1530, 5e4}};
    const std::vector<PeakRecord> peaks = Made(plan).measured();
    ASSERT_EQ(peaks.size(), 5U);
    const int groups[] = {0, 1, 1, 0, 0};
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        EXPECT_EQ(peaks[i].group, groups[i]) << i;
        EXPECT_TRUE(inOrder(peaks[i].regions)) << i;
        EXPECT_NEAR(peaks[i].centroid, plan.peaks[i].energy, 6 * peaks[i].centroidError) << i;
        EXPECT_NEAR(peaks[i].area, plan.peaks[i].area, 5 * peaks[i].areaError) << i;
    }
    EXPECT_NEAR(peaks[1].net, 1.4e5, 4 * peaks[1].netError);
    EXPECT_LT(peaks[3].regions.bkg2High, peaks[4].regions.pkLow);
    EXPECT_GT(peaks[4].regions.bkg1Low, peaks[3].regions.pkHigh);
}

TEST(MeasuredPeaks, StateDecisionThresholdAndDetectionLimit) {
    samples::PeakPlan plan = planOf(10, 0);
    plan.peaks = {{500, 1e4}};
    const std::vector<PeakRecord> peaks = Made(plan).measured();
    ASSERT_EQ(peaks.size(), 1U);
    const PeakRecord& peak = peaks.front();
    const double background = peak.gross - peak.net;
    EXPECT_GT(peak.decisionThreshold, quantile * std::sqrt(background));
    EXPECT_LT(peak.decisionThreshold, quantile * std::sqrt(2 * background));
    EXPECT_NEAR(peak.detectionLimit, 2.706 + 2 * peak.decisionThreshold, 1e-3);
}

TEST(MeasuredPeaks, AreNoneInAnEmptySpectrumAndKeepTheirBoundsAtItsEnds) {
    samples::PeakPlan plan{.channelCount = 10};
    EXPECT_TRUE(Made(plan).measured().empty());
    Made ends(planOf(5, 0));
    for (const int channel : {10, 12, 4089})
        ends.derived->peakSignificance[channel] = 100;
    for (const PeakRecord& peak : ends.measured()) {
        EXPECT_TRUE(inOrder(peak.regions)) << peak.channel;
        EXPECT_LT(peak.regions.bkg2High, 4096);
    }
    for (const std::int32_t count : {-1'000'000, 2'147'483'647}) {
        ends.spectrum->counts.fill(count);
        const std::vector<PeakRecord> peaks = ends.measured();
        EXPECT_EQ(peaks.size(), 3U) << count;
        EXPECT_EQ(peaks.back().net, 0) << "no sum of such counts has an area";
    }
}

}  // namespace
}  // namespace kestrel
