#include "analysis/peak_calibration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "analysis/calibration_file.h"
#include "analysis/calibration_source.h"
#include "analysis/peak_measures.h"
#include "base/runtime_fault.h"
#include "opened_file.h"
#include "spectrum/efficiency_shape.h"
#include "temp_folder.h"

namespace kestrel {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr int channelCount = 8192;

TEST(PeakCalibration, IsTheCurveThatThePointsLieOn) {
    CalibrationPoints points{{}, CalibrationCurve::Parabola};
    for (const double n : {100.0, 900.0, 2500.0, 4000.0, 8000.0})
        points.points.push_back({n, 0.1, -1.5 + 0.35 * n + 2e-7 * n * n});
    points.points.push_back({5000, 0.1, 1900, false});
    const FittedPeaks parabola = fitCalibration(points, channelCount);
    EXPECT_EQ(parabola.refusal, "");
    EXPECT_NEAR(parabola.calibration.a, -1.5, 1e-9);
    EXPECT_NEAR(parabola.calibration.b, 0.35, 1e-12);
    EXPECT_NEAR(parabola.calibration.c, 2e-7, 1e-15);
    EXPECT_NEAR(parabola.meanResidual, 0, 1e-9);
    EXPECT_NEAR(parabola.residuals.at(5), 1900 - (-1.5 + 1750 + 5), 1e-8);
    points.curve = CalibrationCurve::Line;
    const FittedPeaks line = fitCalibration(points, channelCount);
    EXPECT_EQ(line.calibration.c, 0);
    EXPECT_GT(line.meanResidual, 0.5);
}

TEST(PeakCalibration, WeighsPeaksByTheErrorsOfTheirChannels) {
    // Of three points with one off the line of the others, an uncertain one counts less.
    const auto residual = [](double error) {
        return fitCalibration({{{1000, 0, 500}, {2000, error, 1010}, {3000, 0, 1500}}}, 4096)
            .residuals.at(1);
    };
    EXPECT_NEAR(residual(0), 10 * 2.0 / 3, 1e-9);
    // Weights 400, 1 / 4.0025 and 400 give 10 (1 - w / (w + 800)).
    EXPECT_NEAR(residual(2), 10 * (1 - 1 / 4.0025 / (1 / 4.0025 + 800)), 1e-9);
}

TEST(PeakCalibration, RefusesWhatGivesNoCurve) {
    struct Case {
        CalibrationPoints points;
        const char* refusal;
    };
    using enum CalibrationCurve;
    for (const auto& [points, refusal] :
         {Case{{{}, Line}, "A straight line needs 2 peaks of different channels; there are 0."},
          {{{{10, 0, 5}, {10, 0, 6}}, Line}, "A straight line needs 2 peaks"},
          {{{{10, 0, 5}, {20, 0, 9, false}}, Line}, "A straight line needs 2 peaks"},
          {{{{10, 0, 5}, {20, 0, 10}}, Parabola}, "A parabola needs 3 peaks"},
          {{{{10, 0, 5}, {20, 0, 5}}, Line}, "The energies do not rise"},
          {{{{0, 0, 0}, {10, 0, 100}, {20, 0, 101}}, Parabola}, "The energies do not rise"}})
        EXPECT_THAT(fitCalibration(points, channelCount).refusal, StartsWith(refusal));
}

TEST(CalibrationFile, IsReadBackWholeOrNotAtAll) {
    const test::TempFolder folder;
    const CalibrationPoints points{{{241.25, 0.03, 121.78}, {2816.5, 0.1, 1408.01, false}},
                                   CalibrationCurve::Parabola};
    saveCalibration(folder.file("a.pcal"), points);
    EXPECT_EQ(loadCalibration(folder.file("a.pcal")).points, points);
    const std::string text = calibrationText(points);
    for (std::size_t i = 0; i < text.size(); ++i) {
        const ReadPoints cut = readCalibrationText(text.substr(0, i));
        EXPECT_TRUE(!cut.refusal.empty() || cut.points.points.size() < 2 || i + 1 == text.size());
        EXPECT_TRUE(cut.refusal.empty() || cut.points.points.empty());
    }
    const std::string head = "Kestrel peak calibration\r\ncurve line\r\n";
    std::string many = head;
    for (int i = 0; i < 1001; ++i)
        many += "1 0 1 used\n";
    struct Case {
        std::string text;
        const char* refusal;
    };
    for (const auto& [bad, refusal] : {Case{"", "no file of a peak calibration"},
                                       {"Kestrel peak calibration\n", "Line 2"},
                                       {head + "1 0 1 used\n17001 0 1 used\n", "Line 4"},
                                       {head + "1 0 nan used", "Line 3"},
                                       {head + "1 0 1e400 used", "Line 3"},
                                       {head + "1 0 0 used", "Line 3"},
                                       {head + "1 0 1 on", "Line 3"},
                                       {head + "1 0 1 used 5", "Line 3"},
                                       {head + std::string(200000, '1'), "more than 1000"},
                                       {many, "more than 1000"}})
        EXPECT_THAT(readCalibrationText(bad).refusal, HasSubstr(refusal)) << bad.substr(0, 80);
    EXPECT_EQ(readCalibrationText(head + "1 0 1 used\r\n").points.points.size(), 1U);
}

std::vector<PeakOfSource> peaksOf(const char* sample) {
    const auto file = test::openedFile(KESTREL_SAMPLES "/" + std::string(sample));
    std::vector<PeakOfSource> peaks;
    for (const PeakRecord& peak : measurePeaks(file->spectrum, file->derived).peaks)
        peaks.push_back({peak.centroid, peak.centroidError, peak.area});
    return peaks;
}

TEST(CalibrationSource, IsRecognizedWithoutACalibration) {
    struct Case {
        const char* sample;
        int channels;
        const char* text;
        Calibration truth;
    };
    for (const Case& c :
         {Case{"eu152-co60-cs137-1024.chn", 1024, "This fits Eu-152: ", {-0.35, 1.5, 0}},
          {"eu152-co60-cs137-4096.chn", 4096, "This fits Eu-152: ", {-0.35, 0.4995, 2e-8}},
          {"eu152-co60-cs137-16384.chn", 16384, "This fits Eu-152: ", {-0.35, 0.124875, 1.25e-9}},
          {"environmental-8192.chn", 8192, "This fits ", {-0.212, 0.34962, 3.1e-8}}}) {
        const auto found = recognizeSource(peaksOf(c.sample), c.channels);
        ASSERT_TRUE(found) << c.sample;
        EXPECT_THAT(recognitionText(*found), StartsWith(c.text));
        EXPECT_LT(found->fitted.meanResidual, std::max(0.3, 0.3 * c.truth.b)) << c.sample;
        const auto at = [&](const Calibration& k, double n) { return k.a + (k.b + k.c * n) * n; };
        const double n = 1400 / c.truth.b;
        EXPECT_NEAR(at(found->fitted.calibration, n), at(c.truth, n), std::max(0.5, c.truth.b));
    }
}

// Every source, seen through the coarse efficiency with other peaks between its lines.
TEST(CalibrationSource, IsFoundAmongOtherPeaksAndNotInNothing) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> anywhere(50, 8000);
    for (const CalibrationSource& source : calibrationSources()) {
        std::vector<PeakOfSource> peaks;
        for (const SourceLine& line : source.lines) {
            const double intensity = line.intensity > 0 ? line.intensity : 50;
            peaks.push_back(
                {(line.energy + 2) / 0.35, 0.05, 1000 * intensity * efficiencyShape(line.energy)});
        }
        for (int i = 0; i < 5; ++i)
            peaks.push_back({anywhere(random), 1, 5});
        const auto found = recognizeSource(peaks, channelCount);
        ASSERT_TRUE(found) << source.name;
        EXPECT_EQ(found->name, source.name);
        EXPECT_EQ(found->found, source.lines.size());
        EXPECT_NEAR(found->fitted.calibration.b, 0.35, 1e-3) << source.name;
    }
    EXPECT_FALSE(recognizeSource({}, channelCount));
    EXPECT_FALSE(recognizeSource(std::vector{PeakOfSource{100, 1, 50}}, channelCount));
}

}  // namespace
}  // namespace kestrel
