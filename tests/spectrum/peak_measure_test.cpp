#include "spectrum/peak_measure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "base/integers.h"
#include "fault_matcher.h"
#include "make_samples/gamma_lines.h"
#include "make_samples/spectrum_maker.h"
#include "spectrum/energy_calibration.h"
#include "spectrum/formats/chn_reader.h"

namespace kestrel {
namespace {

using samples::PeakPlan;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::IsSupersetOf;

std::vector<double> measureOf(std::span<const std::int32_t> counts) {
    std::vector<double> measure(counts.size(), -1);
    computePeakMeasure(counts, measure);
    return measure;
}

std::vector<int> centres(std::span<const std::int32_t> counts) {
    const std::vector<double> measure = measureOf(counts);
    std::vector<int> found;
    for (std::size_t k = 0; k < measure.size(); ++k)
        if (measure[k] > 10.0)
            found.push_back(static_cast<int>(k));
    return found;
}

// Counts without noise.
std::vector<std::int32_t> drawn(int channels, const std::function<double(int)>& countAt) {
    std::vector<std::int32_t> counts(static_cast<std::size_t>(channels));
    int k = 0;
    for (std::int32_t& count : counts)
        count = toInt32(countAt(k++));
    return counts;
}

std::vector<std::int32_t> spike(int channels, int at, std::int32_t count) {
    return drawn(channels, [&](int k) { return k == at ? count : 0; });
}

// One keV a channel, and all peaks equally wide.
PeakPlan planWithWidth(double fwhm, std::int16_t channelCount, double background) {
    return {.channelCount = channelCount,
            .calibration = {0.0, 1.0, 0.0},
            .resolution = {fwhm * fwhm, 0.0},
            .background = background};
}

class PeaksOfWidth : public testing::TestWithParam<double> {};

TEST_P(PeaksOfWidth, GetOneChannelEachAtTheirCentre) {
    const double fwhm = GetParam();
    for (const double background : {0.0, 30.0, 3000.0}) {
        PeakPlan plan = planWithWidth(fwhm, fwhm < 8 ? 4096 : 16384, background);
        for (int i = 1; i <= 20; ++i)  // twenty times the scatter of the counts below, and more
            plan.peaks.push_back({i * plan.channelCount / 21.0 + 0.31 * i,
                                  (400 + 25 * std::sqrt(background * 1.5 * fwhm)) * i});
        const std::vector<int> found = centres(samples::makePeaks(plan, 5));
        ASSERT_EQ(found.size(), plan.peaks.size()) << background;
        for (std::size_t i = 0; i < found.size(); ++i)
            EXPECT_NEAR(found[i], plan.peaks[i].energy, std::max(1.0, 0.15 * fwhm)) << background;
    }
}

INSTANTIATE_TEST_SUITE_P(Channels, PeaksOfWidth, testing::Values(1.2, 2.0, 3.5, 5.0, 14.0, 30.0));

TEST(PeakMeasure, MarksEveryLineWithATopOfItsOwnBesideAStrongerOne) {
    for (const auto& [ratio, distance] :
         {std::pair{1.0, 5.6}, std::pair{0.3, 6.4}, std::pair{0.1, 7.2}, std::pair{0.05, 8.0}}) {
        PeakPlan plan = planWithWidth(4, 1024, 50);
        for (double at = 100.3; at < 1000; at += 100.1)
            for (const double side : {-1.0, 1.0}) {
                plan.peaks = {{at, 2e5}, {at + side * distance, 2e5 * ratio}};
                const std::vector<int> found = centres(samples::makePeaks(plan, 1));
                EXPECT_EQ(found.size(), 2U) << ratio << " " << at << " " << side;
                for (const int centre : found)
                    EXPECT_TRUE(std::ranges::any_of(plan.peaks, [&](const samples::Peak& peak) {
                        return std::fabs(centre - peak.energy) <= 2;
                    })) << centre;
            }
    }
}

TEST(PeakMeasure, RoundsTheCentreOfAWidePeakToTheNearestChannel) {
    PeakPlan plan = planWithWidth(14, 4096, 10);
    plan.peaks = {{1000.3, 1e6}, {2000.7, 1e6}};
    const std::vector<double> expected = samples::expectedPeaks(plan);
    EXPECT_THAT(centres(drawn(4096, [&](int k) { return expected[static_cast<std::size_t>(k)]; })),
                ElementsAre(1000, 2001));
}

std::unique_ptr<Spectrum> sample(const char* name) {
    auto spectrum = std::make_unique<Spectrum>();
    InputFile file(std::string(KESTREL_SAMPLES "/") + name);
    EXPECT_EQ(readChnFile(file, *spectrum).end, Reading::Loaded);
    return spectrum;
}

std::vector<int> centresOf(const Spectrum& spectrum) {
    return centres(spectrum.counts.span(0, spectrum.channelCount));
}

// At 1.5 keV a channel: 40.1 and 45.4 keV, 238.6 and 244.7 keV.
TEST(PeakMeasure, FindsLinesThatStandInEachOthersFeet) {
    EXPECT_THAT(centresOf(*sample("eu152-co60-cs137-1024.chn")), IsSupersetOf({27, 31, 159, 163}));
}

struct Sample {
    const char* name;
    int tolerance;  // channels
    friend void PrintTo(const Sample& sample, std::ostream* out) { *out << sample.name; }
};

class PeaksOfSample : public testing::TestWithParam<Sample> {
  protected:
    bool hasCentreAt(double energy) const {
        const int channel = energyToChannel(spectrum->calCurrent, energy);
        return std::ranges::count_if(found, [&](int centre) {
                   return std::abs(centre - channel) <= GetParam().tolerance;
               }) == 1;
    }

    std::unique_ptr<Spectrum> spectrum = sample(GetParam().name);
    std::vector<int> found = centresOf(*spectrum);
};

TEST_P(PeaksOfSample, AreTheLinesOfItsNuclidesAndOfTheBackgroundAndNoOthers) {
    for (const double energy :
         {40.1,   121.8,  238.6,  244.7,  295.6,  338.3,  344.3,  351.9,  367.8,  411.1,
          444.0,  488.7,  511.0,  564.0,  583.2,  586.3,  609.3,  661.7,  678.6,  688.7,
          778.9,  867.4,  911.2,  919.3,  964.1,  969.0,  1005.3, 1085.8, 1089.7, 1112.1,
          1173.2, 1212.9, 1299.1, 1332.5, 1408.0, 1460.8, 1764.5})
        EXPECT_TRUE(hasCentreAt(energy)) << energy;

    std::vector<double> known = {510.999};
    for (const auto lines :
         {samples::europium152(), samples::cobalt60(), samples::caesium137(),
          samples::potassium40(), samples::radiumChain(), samples::thoriumChain()})
        for (const samples::GammaLine& line : lines)
            known.push_back(line.energy);
    for (const int centre : found) {
        const double energy =
            channelToEnergy(spectrum->calCurrent, static_cast<std::int16_t>(centre));
        EXPECT_TRUE(std::ranges::any_of(known, [&](double line) {
            return std::abs(line - energy) < 1.2;
        })) << energy;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, PeaksOfSample,
                         testing::Values(Sample{"eu152-co60-cs137-4096.chn", 1},
                                         Sample{"eu152-co60-cs137-16384.chn", 2}));

TEST(PeakMeasure, StaysLowOnFlatBackground) {
    std::size_t marked = 0;
    int spectra = 0;
    for (const double level : {0.1, 1.0, 10.0, 100.0, 1000.0, 1e4, 1e5})
        for (std::uint64_t seed = 1; seed <= 20; ++seed, ++spectra) {
            const auto found = centres(samples::makePeaks(planWithWidth(3, 4096, level), seed));
            EXPECT_LE(found.size(), 2U) << level << " " << seed;
            marked += found.size();
        }
    EXPECT_LT(static_cast<double>(marked) / spectra, 0.2);
}

TEST(PeakMeasure, TakesNoEdgeAndNoSlopeForAPeak) {
    const std::function<double(int)> shapes[] = {
        [](int k) { return k < 500 ? 10000 : 0; },
        [](int k) { return k < 500 ? 1000 : 10000; },
        [](int k) { return k < 500 ? 10000 : 8000; },
        [](int k) { return 300 + 700 * std::erfc((k - 500) / 10.0); },  // a Compton edge
        [](int k) { return 1e6 * std::exp(-k / 10.0); },
        [](int k) { return 1e6 * std::exp(-k / 300.0); },
        [](int k) { return 100.0 * k; },
    };
    for (const auto& shape : shapes) {
        EXPECT_THAT(centres(drawn(1024, shape)), IsEmpty()) << shape(499) << " " << shape(500);
        for (const int line : {485, 491, 509, 515}) {
            const auto withLine = [&](int k) {
                return shape(k) + 20000 * std::exp(-(k - line) * (k - line) / 5.8);
            };
            EXPECT_THAT(centres(drawn(1024, withLine)), ElementsAre(line)) << shape(499);
        }
    }
}

TEST(PeakMeasure, IsTenTimesTheSignificanceOverItsThreshold) {
    // All the counts in one channel: the significance is the root of their number.
    EXPECT_THAT(centres(spike(200, 100, 20)), IsEmpty());
    const auto counts = spike(200, 100, 21);
    EXPECT_THAT(centres(counts), ElementsAre(100));
    EXPECT_NEAR(measureOf(counts)[100], 10 * std::sqrt(21.0) / 4.5, 1e-12);
}

TEST(PeakMeasure, MarksTheFallingFlanksAndMirrorsTheLongerOne) {
    std::vector<std::int32_t> counts(200, 100);
    const std::int32_t peak[] = {150, 400, 1000, 400, 150, 120, 110};
    std::ranges::copy(peak, counts.begin() + 98);
    const std::vector<double> measure = measureOf(counts);
    const std::vector<double> around(measure.begin() + 94, measure.begin() + 107);
    using testing::Gt;
    EXPECT_THAT(around, ElementsAre(0, 2, 2, 4, 4, 4, Gt(10.0), 8, 8, 8, 8, 8, 0));
    EXPECT_EQ(std::ranges::count(measure, 0.0), 200 - 11);
}

// The long left foot of the first, mirrored, reaches over the second.
TEST(PeakMeasure, MarksARightFlankOverEverythingButACentre) {
    std::vector<std::int32_t> counts(200, 100);
    for (int k = 0; k < 20; ++k)
        counts[static_cast<std::size_t>(78 + k)] = 101 + k;
    const std::int32_t peaks[] = {3000, 9000, 3000, 200, 100, 100, 200, 3000, 9000, 3000, 200, 150};
    std::ranges::copy(peaks, counts.begin() + 98);
    const std::vector<double> measure = measureOf(counts);
    using testing::Gt;
    EXPECT_THAT(std::vector<double>(measure.begin() + 105, measure.begin() + 112),
                ElementsAre(4, Gt(10.0), 8, 8, 8, 8, 2));
}

TEST(PeakMeasure, StopsItsFlanksAtTheEndsOfTheSpectrum) {
    auto counts =
        drawn(40, [](int k) { return 10000 * std::exp(-std::abs(k - 12) / 2.0) + 12 - k; });
    EXPECT_THAT(centres(counts), ElementsAre(12));
    EXPECT_EQ(measureOf(counts)[0], 4.0);
}

TEST(PeakMeasure, HasNoCentreInTheFirstTenAndTheLastSixChannels) {
    struct Case {
        int channels, at;
        bool found;
    };
    for (const auto& [channels, at, found] :
         {Case{100, 8, false}, Case{100, 11, true}, Case{100, 92, true}, Case{100, 95, false},
          Case{17, 10, true}, Case{16, 10, false}, Case{1, 0, false}, Case{0, 0, false}}) {
        const auto result = centres(spike(channels, at, 1000));
        EXPECT_EQ(!result.empty(), found) << channels << " " << at;
        for (const int centre : result)
            EXPECT_TRUE(centre >= 10 && centre < channels - 6) << centre;
    }
}

TEST(PeakMeasure, FaultsWhenTwoCountsTogetherExceed32Bits) {
    constexpr std::int32_t half = std::numeric_limits<std::int32_t>::max() / 2 + 1;
    for (const std::size_t distance : {1U, 3U}) {
        std::vector<std::int32_t> counts(100);
        counts[50] = half;
        counts[50 + 2 * distance] = half - 1;
        EXPECT_FAULT(measureOf(counts), Fault{});
        counts[50] = half + 1;
        EXPECT_FAULT(measureOf(counts), Fault::Overflow);
    }
    std::vector<std::int32_t> counts(100);
    // Pairs that are never added.
    counts[5] = counts[7] = counts[95] = counts[97] = std::numeric_limits<std::int32_t>::max();
    EXPECT_FAULT(measureOf(counts), Fault{});
}

// As a subtracted background leaves them.
TEST(PeakMeasure, ToleratesNegativeCounts) {
    std::vector<std::int32_t> noise(4096);
    std::uint32_t state = 1;
    for (std::int32_t& count : noise) {
        state = state * 1664525U + 1013904223U;
        count = static_cast<std::int32_t>(state >> 30U) - 1;
    }
    std::vector<std::int32_t> dip(4096, 100);
    std::fill_n(dip.begin() + 1000, 7, -3);
    for (const std::vector<std::int32_t>& counts :
         {std::vector<std::int32_t>(100, -5), noise, dip}) {
        std::vector<double> measure(counts.size());
        EXPECT_FAULT(computePeakMeasure(counts, measure), Fault{});
        for (const double value : measure)
            EXPECT_TRUE(std::isfinite(value));
    }
}

}  // namespace
}  // namespace kestrel
