#include "make_samples/samples.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "make_samples/poisson.h"
#include "make_samples/spectrum_maker.h"
#include "spectrum/formats/chn_reader.h"
#include "temp_folder.h"

namespace kestrel::samples {
namespace {

TEST(Samples, AreWhatTheToolMakes) {
    for (const SampleFile& sample : sampleFiles())
        EXPECT_TRUE(test::contentsOf(KESTREL_SAMPLES "/" + sample.name) == sample.bytes)
            << sample.name;
}

TEST(Samples, AreReadInTheirKindWithTheirLabels) {
    struct Case {
        const char *name, *comment, *startTime;
        std::int16_t channelCount;
        std::int32_t liveSeconds;
        double slope;
    };
    for (const auto& [name, comment, startTime, channelCount, liveSeconds, slope] : {
             Case{"eu152-co60-cs137-4096.chn", "Eu-152 + Co-60", "101530", 4096, 600, 0.4995},
             Case{"eu152-co60-cs137-16384.chn", "Eu-152 + Co-60", "101530", 16384, 600, 0.124875},
             Case{"eu152-co60-cs137-1024.chn", "Eu-152 + Co-60", "1015", 1024, 600, 0.5},
             Case{"environmental-8192.chn", "Natural backgr", "1730", 8192, 72000, 0.34962},
             Case{"empty-4096.chn", "Nothing counted", "095900", 4096, 10, 0.4995},
         }) {
        const auto spectrum = std::make_unique<Spectrum>();
        InputFile file(std::string(KESTREL_SAMPLES "/") + name);
        ASSERT_EQ(readChnFile(file, *spectrum).end, Reading::Loaded) << name;
        EXPECT_EQ(spectrum->comment.view().substr(0, 14), std::string_view(comment).substr(0, 14));
        EXPECT_EQ(spectrum->startTime.view().substr(0, std::string_view(startTime).size()),
                  startTime);
        EXPECT_EQ(spectrum->channelCount, channelCount) << name;
        EXPECT_EQ(spectrum->liveTime.count, 50 * liveSeconds) << name;
        EXPECT_NEAR(spectrum->calCurrent.b, slope, 1e-7) << name;
    }
}

TEST(MadePeaks, HoldTheirAreaAtTheirEnergy) {
    const PeakPlan plan{.calibration = {-0.35, 0.4995, 2e-8}, .peaks = {{661.657, 10000}}};
    const std::vector<double> counts = expectedPeaks(plan);
    double area = 0;
    double energies = 0;
    for (std::size_t k = 0; k < counts.size(); ++k) {
        const auto channel = static_cast<double>(k);
        area += counts[k];
        energies += counts[k] * (-0.35 + 0.4995 * channel + 2e-8 * channel * channel);
    }
    EXPECT_NEAR(area, 10000, 0.01);
    EXPECT_NEAR(energies / area, 661.657, 0.001);
}

TEST(PoissonSource, HasEqualMeanAndVariance) {
    for (const double mean : {0.0, 0.3, 9.5, 10.5, 300.0, 1e5}) {
        PoissonSource source(7);
        constexpr int draws = 20000;
        double sum = 0;
        double squares = 0;
        for (int i = 0; i < draws; ++i) {
            const double difference = source.draw(mean) - mean;
            sum += difference;
            squares += difference * difference;
        }
        EXPECT_NEAR(sum / draws, 0, 4 * std::sqrt(mean / draws)) << mean;
        EXPECT_NEAR(squares / draws, mean, 4 * mean * std::sqrt((2 + 1 / (mean + 0.01)) / draws))
            << mean;
    }
}

TEST(PoissonSource, GivesTheSameCountsEverywhere) {
    PoissonSource source(1);
    std::vector<std::int32_t> counts;
    for (const double mean : {0.5, 3.0, 50.0, 2e4})
        counts.push_back(source.draw(mean));
    EXPECT_EQ(counts, (std::vector<std::int32_t>{0, 2, 47, 19988}));
}

}  // namespace
}  // namespace kestrel::samples
