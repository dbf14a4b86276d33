#include "view/comparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numeric>
#include <random>
#include <tuple>
#include <utility>

#include "fault_matcher.h"
#include "recording_canvas.h"
#include "view/curve.h"
#include "view/plot.h"

namespace kestrel {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class Comparing : public testing::Test {
  protected:
    static void fill(Spectrum& spectrum, int channels, double mean, std::mt19937& random) {
        std::poisson_distribution<std::int32_t> counts(mean);
        spectrum.channelCount = static_cast<std::int16_t>(channels);
        for (int k = 0; k < channels; ++k)
            spectrum.counts[k] = counts(random);
    }
    static double sum(const std::vector<double>& values) {
        return std::accumulate(values.begin(), values.end(), 0.0);
    }
    double countsOfSecond() const {
        const auto counts = second->counts.span(0, second->channelCount);
        return std::accumulate(counts.begin(), counts.end(), 0.0);
    }
    Redistributed redistributed() const { return redistribute(*second, *first); }

    std::mt19937 random{20};
    std::unique_ptr<Spectrum> first = std::make_unique<Spectrum>();
    std::unique_ptr<Spectrum> second = std::make_unique<Spectrum>();
};

TEST_F(Comparing, RedistributionKeepsTheCountsOfAnyCalibration) {
    std::uniform_real_distribution<double> offset(-300, 300);
    std::uniform_real_distribution<double> slope(-0.2, 3);
    std::uniform_real_distribution<double> bend(-1e-4, 1e-4);
    std::uniform_int_distribution<int> channels(1, 3000);
    for (int round = 0; round < 300; ++round) {
        fill(*second, channels(random), 50, random);
        first->channelCount = static_cast<std::int16_t>(channels(random));
        first->calCurrent = {offset(random), slope(random), bend(random)};
        second->calCurrent = {offset(random), slope(random), bend(random)};
        const Redistributed result = redistributed();
        ASSERT_EQ(result.counts.size(), static_cast<std::size_t>(first->channelCount));
        const double total = sum(result.counts) + result.below + result.above;
        EXPECT_NEAR(total, countsOfSecond(), 1e-12 * countsOfSecond()) << round;
    }
}

TEST_F(Comparing, CountsGoWhereTheirEnergyIs) {
    first->channelCount = 4;
    second->channelCount = 4;
    for (int k = 0; k < 4; ++k)
        second->counts[k] = 8 << k;
    struct Case {
        Calibration first;
        Calibration second;
        std::vector<double> counts;
        std::vector<double> variances;
        double below;
        double above;
    };
    const Calibration one{0, 1, 0};
    const Case cases[] = {
        {one, one, {8, 16, 32, 64}, {8, 16, 32, 64}, 0, 0},
        {one, {0.25, 1, 0}, {6, 14, 28, 56}, {4.5, 9.5, 19, 38}, 0, 16},
        {one, {-2, 1, 0}, {32, 64, 0, 0}, {32, 64, 0, 0}, 24, 0},
        {{0.5, 2, 0}, one, {24, 96, 0, 0}, {24, 96, 0, 0}, 0, 0},
        {one, {0.5, 2, 0}, {4, 4, 8, 8}, {2, 2, 4, 4}, 0, 96},
        // What does not rise, or is no number, goes by the channels' numbers.
        {one, {3, -1, 0}, {8, 16, 32, 64}, {8, 16, 32, 64}, 0, 0},
        {{0, 0, 0}, {7, 1, 0}, {8, 16, 32, 64}, {8, 16, 32, 64}, 0, 0},
        {{0, notANumber, 0}, {7, 1, 0}, {8, 16, 32, 64}, {8, 16, 32, 64}, 0, 0},
        {{0, 1e308, 0}, {7, 1, 0}, {8, 16, 32, 64}, {8, 16, 32, 64}, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        first->calCurrent = c.first;
        second->calCurrent = c.second;
        const Redistributed result = redistributed();
        EXPECT_EQ(result.counts, c.counts);
        EXPECT_EQ(result.variances, c.variances);
        EXPECT_EQ(result.below, c.below);
        EXPECT_EQ(result.above, c.above);
    }
    second->channelCount = 17002;
    EXPECT_FAULT(redistribute(*second, *first), Fault::SubscriptOutOfRange);
}

TEST_F(Comparing, TheErrorIsThatOfTenThousandPoissonPairs) {
    first->openedLiveTime = Ticks::ofSeconds(300);
    second->openedLiveTime = Ticks::ofSeconds(100);
    // Of channels as wide, half a channel apart; narrower; wider.
    for (const Calibration& calibration : {Calibration{0, 0.5, 0}, Calibration{0.25, 0.5, 0},
                                           Calibration{0, 0.35, 0}, Calibration{0, 0.8, 0}}) {
        SCOPED_TRACE(calibration.b);
        const int channels = static_cast<int>(5000 / calibration.b) + 2;
        second->calCurrent = calibration;
        fill(*first, 10000, 300, random);
        fill(*second, channels, 200 * calibration.b, random);
        const Redistributed onFirst = redistributed();
        const SpectrumPair pair{*first, *second, onFirst};
        const double factor = scaleFactor(CompareScale::LiveTime, pair, 0, 0).value_or(0);
        double deviations = 0;
        double squares = 0;
        for (int k = 1; k < 9999; ++k) {
            const double here = differenceAt(pair, factor, k).deviations();
            deviations += here;
            squares += here * here;
        }
        EXPECT_NEAR(deviations / 9998, 0, 0.05);
        EXPECT_NEAR(std::sqrt(squares / 9998), 1, 0.03);
    }
}

TEST_F(Comparing, ScalesWhereThereIsSomethingToScaleBy) {
    first->channelCount = second->channelCount = 3;
    for (int k = 0; k < 3; ++k) {
        first->counts[k] = 10 * k;
        second->counts[k] = k;
    }
    const Redistributed onFirst = redistributed();
    const SpectrumPair pair{*first, *second, onFirst};
    EXPECT_EQ(scaleFactor(CompareScale::OneToOne, pair, 0, 2), 1.0);
    EXPECT_EQ(scaleFactor(CompareScale::ShownCounts, pair, -5, 16384), 10.0);
    EXPECT_EQ(scaleFactor(CompareScale::ShownCounts, pair, 0, 0), std::nullopt);
    first->openedLiveTime = Ticks::ofSeconds(60);
    EXPECT_EQ(scaleFactor(CompareScale::LiveTime, pair, 0, 2), std::nullopt);
    second->openedLiveTime = Ticks::ofSeconds(40);
    EXPECT_EQ(scaleFactor(CompareScale::LiveTime, pair, 0, 2), 1.5);
    EXPECT_EQ(differenceAt(pair, 2, 1).counts, 8);
    EXPECT_EQ(differenceAt(pair, 2, 1).error, std::sqrt(10 + 4));
    for (const int none : {-1, 0, 3})
        EXPECT_EQ(differenceAt(pair, 2, none).deviations(), 0) << none;
}

// A second spectrum with half the counts in half the time is drawn where the first one is.
TEST_F(Comparing, TheSecondIsDrawnInGreyExactlyBehindTheFirst) {
    const auto opened = std::make_shared<OpenedSpectrum>();
    const auto derived = std::make_unique<DerivedArrays>();
    const auto colours = std::make_unique<ChannelArray<Colour>>();
    std::uniform_int_distribution<std::int32_t> counts(0, 3000);
    first->channelCount = opened->spectrum.channelCount = 10000;
    for (int k = 0; k < 10000; ++k)
        first->counts[k] = 2 * (opened->spectrum.counts[k] = counts(random));
    first->openedLiveTime = Ticks::ofSeconds(60);
    opened->spectrum.openedLiveTime = Ticks::ofSeconds(30);
    computeDerivedArrays(*first, *derived);
    Comparison comparison;
    comparison.second = opened;
    updateComparison(comparison, *first);
    for (const auto axis : {CountAxis::Linear, CountAxis::Logarithmic})
        for (const auto mode : {PlotMode::Line, PlotMode::Dots})
            for (const int end : {400, 9999, 16384}) {
                ViewState view{.viewEndCh = static_cast<std::int16_t>(end)};
                view.linLogMode = axis;
                view.plotMode = mode;
                test::RecordingCanvas both;
                test::RecordingCanvas one;
                const PlotInput input{*first, *derived, view, *colours, standardPalette};
                drawCurve(input, one);
                drawSecondCurve(input, one);  // none: nothing
                drawSecondCurve({*first, *derived, view, *colours, standardPalette, nullptr,
                                 nullptr, &comparison},
                                both);
                for (auto& line : both.lines)
                    line.colour = line.colour == standardPalette[palette_number::grey]
                                      ? standardPalette[palette_number::white]
                                      : -1;
                for (auto& point : both.points)
                    point.colour = standardPalette[palette_number::white];
                EXPECT_FALSE(one.lines.empty() && one.points.empty());
                EXPECT_EQ(both.lines, one.lines) << end;
                EXPECT_EQ(both.points, one.points) << end;
            }
}

TEST_F(Comparing, TheDifferenceHasItsOwnZeroAndItsError) {
    const auto opened = std::make_shared<OpenedSpectrum>();
    const auto derived = std::make_unique<DerivedArrays>();
    const auto colours = std::make_unique<ChannelArray<Colour>>();
    first->channelCount = opened->spectrum.channelCount = 4;
    const int counts[][2] = {{0, 0}, {16, 0}, {0, 9}, {1000, 0}};
    for (int k = 0; k < 4; ++k)
        std::tie(first->counts[k], opened->spectrum.counts[k]) =
            std::tie(counts[k][0], counts[k][1]);
    Comparison comparison;
    comparison.second = opened;
    comparison.difference = true;
    updateComparison(comparison, *first);
    ViewState view{.viewEndCh = 3, .viewWidth = 3};
    view.plotMode = PlotMode::Dots;
    view.linLogMode = CountAxis::Linear;
    view.yScaleExp = 6;
    view.yScaleFactor = 18.75F;  // 16 counts are a quarter of the height
    const PlotInput input{*first,          *derived, view,    *colours,
                          standardPalette, nullptr,  nullptr, &comparison};
    test::RecordingCanvas canvas;
    drawSpectrum(input, canvas);
    const Colour grey = standardPalette[palette_number::grey];
    const Colour white = standardPalette[palette_number::white];
    const auto beyond = 600 + 18.75 * 1000;
    const test::Point points[] = {{1, 825, grey},    {2, 375, grey},  {1, 975, grey},
                                  {2, 487.5, grey},  {1, 900, white}, {2, 431.25, white},
                                  {3, beyond, white}};
    for (const test::Point& point : points)
        EXPECT_EQ(std::ranges::count_if(canvas.points,
                                        [&](const test::Point& p) {
                                            return p.x == point.x && p.colour == point.colour &&
                                                   std::fabs(p.y - point.y) <= 0.5;
                                        }),
                  1)
            << point.x << " " << point.y;
    for (const auto& [y, text] :
         {std::pair(1200, "32"), {900, "16"}, {600, "0"}, {300, "-16"}, {0, "-32"}})
        EXPECT_TRUE(std::ranges::any_of(canvas.texts, [&, y = y, text = text](const auto& label) {
            return label.y == y && label.text == text;
        })) << text;
    EXPECT_EQ(greatestDifference(input), 1000);
    comparison.difference = false;
    EXPECT_FALSE(showsDifference(input));
}

}  // namespace
}  // namespace kestrel
