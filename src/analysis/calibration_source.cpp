#include "analysis/calibration_source.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number_text.h"
#include "spectrum/efficiency_shape.h"

namespace kestrel {
namespace {

// Energies and intensities as in the nuclide data of the program.
constexpr std::array americium = {SourceLine{26.34, 2.31}, SourceLine{59.54, 35.9}};
constexpr std::array barium = {SourceLine{81.0, 32.95}, SourceLine{276.4, 7.16},
                               SourceLine{302.85, 18.34}, SourceLine{356.01, 62.05},
                               SourceLine{383.85, 8.94}};
constexpr std::array bismuth = {SourceLine{569.7, 97.75}, SourceLine{1063.66, 74.5},
                                SourceLine{1770.23, 6.87}};
// With the K-alpha rays of barium.
constexpr std::array caesium = {SourceLine{32.06, 5.6}, SourceLine{661.66, 85.1}};
constexpr std::array cobalt57 = {SourceLine{122.06, 85.6}, SourceLine{136.47, 10.68}};
constexpr std::array cobalt60 = {SourceLine{1173.23, 99.85}, SourceLine{1332.49, 99.98}};
constexpr std::array europium152 = {SourceLine{121.78, 28.53},  SourceLine{244.7, 7.55},
                                    SourceLine{344.28, 26.59},  SourceLine{443.96, 2.83},
                                    SourceLine{778.9, 12.93},   SourceLine{867.38, 4.23},
                                    SourceLine{964.06, 14.51},  SourceLine{1085.84, 10.12},
                                    SourceLine{1112.08, 13.67}, SourceLine{1408.01, 20.87}};
constexpr std::array europium154 = {
    SourceLine{123.07, 40.41}, SourceLine{247.93, 6.89},   SourceLine{591.76, 4.95},
    SourceLine{723.3, 20.06},  SourceLine{756.8, 4.52},    SourceLine{873.18, 12.08},
    SourceLine{996.29, 10.48}, SourceLine{1004.76, 18.01}, SourceLine{1274.43, 34.83}};
constexpr std::array sodium = {SourceLine{511.0, 180.7}, SourceLine{1274.54, 99.94}};
constexpr std::array radium = {SourceLine{186.21, 3.64},   SourceLine{242.0, 7.26},
                               SourceLine{295.22, 18.47},  SourceLine{351.93, 35.72},
                               SourceLine{609.32, 45.44},  SourceLine{768.36, 4.89},
                               SourceLine{1120.29, 14.9},  SourceLine{1238.12, 5.83},
                               SourceLine{1764.49, 15.29}, SourceLine{2204.1, 4.92}};
constexpr std::array thorium = {SourceLine{238.63, 43.6}, SourceLine{338.32, 11.27},
                                SourceLine{583.19, 30.5}, SourceLine{727.33, 6.67},
                                SourceLine{911.2, 25.8},  SourceLine{968.97, 15.8},
                                SourceLine{2614.51, 35.8}};
constexpr std::array yttrium = {SourceLine{898.04, 93.68}, SourceLine{1836.06, 99.24}};
// Their shares differ from source to source.
constexpr std::array mixed = {SourceLine{59.54}, SourceLine{661.66}, SourceLine{1173.23},
                              SourceLine{1332.49}};
constexpr std::array background = {SourceLine{238.63},  SourceLine{295.22},  SourceLine{351.93},
                                   SourceLine{583.19},  SourceLine{609.32},  SourceLine{911.2},
                                   SourceLine{1120.29}, SourceLine{1460.82}, SourceLine{1764.49},
                                   SourceLine{2614.51}};

constexpr std::array<CalibrationSource, 14> sources = {{
    {"Eu-152", europium152},
    {"Co-60", cobalt60},
    {"Cs-137", caesium},
    {"Ba-133", barium},
    {"Am-241", americium},
    {"Na-22", sodium},
    {"Co-57", cobalt57},
    {"Ra-226", radium},
    {"Th-232", thorium},
    {"Eu-154", europium154},
    {"Bi-207", bismuth},
    {"Y-88", yttrium},
    {"Am-241, Cs-137 and Co-60", mixed},
    {"the natural background", background},
}};

constexpr std::size_t mostPeaks = 24;
constexpr std::size_t mostPairLines = 6;
constexpr double farthestStart = 30;                // keV, energy of channel 0
constexpr double intensityDoubt = 4;                // factor
constexpr double leastShare = 2.0 / 3;              // of the lines
constexpr double leastExplained = 0.2;              // of the peaks
constexpr std::array fullRange = {100.0, 20000.0};  // keV

// Peaks by channel, of which the largest are taken.
std::vector<PeakOfSource> largestPeaks(std::span<const PeakOfSource> peaks) {
    std::vector<PeakOfSource> largest(peaks.begin(), peaks.end());
    std::ranges::stable_sort(largest, std::ranges::greater{}, &PeakOfSource::net);
    largest.resize(std::min(largest.size(), mostPeaks));
    std::ranges::sort(largest, {}, &PeakOfSource::channel);
    return largest;
}

double weightOf(const SourceLine& line) {
    return line.intensity * efficiencyShape(line.energy);
}

// The heaviest lines, ascending in energy.
std::vector<SourceLine> pairLines(const CalibrationSource& source) {
    std::vector<SourceLine> lines(source.lines.begin(), source.lines.end());
    std::ranges::stable_sort(lines, std::ranges::greater{}, weightOf);
    lines.resize(std::min(lines.size(), mostPairLines));
    std::ranges::sort(lines, {}, &SourceLine::energy);
    return lines;
}

struct Match {
    SourceLine line;
    PeakOfSource peak;
};

double toleranceOf(const SourceLine& line) {
    return 1.0 + 0.002 * line.energy;
}

std::vector<Match> matchesOn(const Calibration& c, const CalibrationSource& source,
                             std::span<const PeakOfSource> peaks) {
    std::vector<Match> matches;
    for (const SourceLine& line : source.lines) {
        const auto distance = [&](const PeakOfSource& peak) {
            return std::abs(c.a + (c.b + c.c * peak.channel) * peak.channel - line.energy);
        };
        const auto nearest = std::ranges::min_element(peaks, {}, distance);
        if (distance(*nearest) <= std::max(toleranceOf(line), c.b))
            matches.push_back({line, *nearest});
    }
    return matches;
}

double activityOf(const Match& match) {
    return match.peak.net / weightOf(match.line);
}

// Keeps the lines whose counts agree with the middle one's.
void dropByIntensity(std::vector<Match>& matches) {
    std::vector<double> activities;
    for (const Match& match : matches) {
        if (match.line.intensity > 0)
            activities.push_back(activityOf(match));
    }
    if (activities.empty())
        return;
    const auto middle = activities.begin() + static_cast<std::ptrdiff_t>(activities.size() / 2);
    std::ranges::nth_element(activities, middle);
    std::erase_if(matches, [median = *middle](const Match& match) {
        const double activity = activityOf(match);
        return match.line.intensity > 0 &&
               (activity > intensityDoubt * median || activity * intensityDoubt < median);
    });
}

struct Attempt {
    const CalibrationSource* source = nullptr;
    std::vector<Match> matches;
    double worth = 0;
};

// All lines of a source of up to four, two thirds of more.
bool isEnough(std::size_t found, std::size_t lines) {
    constexpr std::size_t few = 4;
    return lines <= few ? found == lines : 3 * found >= 2 * lines;
}

// Peaks count by the square roots of their counts, so that one of them does not outweigh all.
double worthOf(const Attempt& attempt, std::span<const PeakOfSource> peaks) {
    double all = 0;
    double explained = 0;
    for (const PeakOfSource& peak : peaks)
        all += std::sqrt(peak.net);
    for (const Match& match : attempt.matches)
        explained += std::sqrt(match.peak.net);
    const auto found = static_cast<double>(attempt.matches.size());
    const std::size_t lines = attempt.source->lines.size();
    const bool counts =
        isEnough(attempt.matches.size(), lines) && explained >= leastExplained * all;
    return counts ? found * found / static_cast<double>(lines) * explained / all : 0;
}

// The straight line through two peaks taken as two lines; no slope where it makes no sense.
Calibration lineThrough(const PeakOfSource& low, const PeakOfSource& high, double lowEnergy,
                        double highEnergy, int channelCount) {
    if (high.channel - low.channel < 1)
        return {};
    const double b = (highEnergy - lowEnergy) / (high.channel - low.channel);
    const double a = lowEnergy - b * low.channel;
    const double range = b * channelCount;
    const bool sensible =
        std::abs(a) <= farthestStart && range >= fullRange.front() && range <= fullRange.back();
    return sensible ? Calibration{a, b, 0} : Calibration{};
}

void tryLine(const Calibration& line, const CalibrationSource& source,
             std::span<const PeakOfSource> peaks, Attempt& best) {
    Attempt attempt{.source = &source, .matches = matchesOn(line, source, peaks)};
    dropByIntensity(attempt.matches);
    attempt.worth = worthOf(attempt, peaks);
    if (attempt.worth > best.worth)
        best = std::move(attempt);
}

void trySource(const CalibrationSource& source, std::span<const PeakOfSource> peaks,
               int channelCount, Attempt& best) {
    const std::vector<SourceLine> lines = pairLines(source);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        for (std::size_t j = i + 1; j < lines.size(); ++j) {
            for (std::size_t p = 0; p < peaks.size(); ++p) {
                for (std::size_t q = p + 1; q < peaks.size(); ++q) {
                    const Calibration line = lineThrough(peaks[p], peaks[q], lines[i].energy,
                                                         lines[j].energy, channelCount);
                    if (line.b > 0)
                        tryLine(line, source, peaks, best);
                }
            }
        }
    }
}

std::vector<CalibrationPoint> pointsOf(const std::vector<Match>& matches) {
    std::vector<CalibrationPoint> points;
    points.reserve(matches.size());
    for (const Match& match : matches)
        points.push_back({match.peak.channel, match.peak.channelError, match.line.energy, true});
    return points;
}

// Without those that are far off the curve.
std::vector<CalibrationPoint> nearPoints(const RecognizedSource& source) {
    const double most = std::max(0.4, 0.8 * source.fitted.calibration.b);
    std::vector<CalibrationPoint> kept;
    for (std::size_t i = 0; i < source.fitted.residuals.size(); ++i) {
        if (std::abs(source.fitted.residuals[i]) <= most)
            kept.push_back(source.points.points[i]);
    }
    return kept;
}

void fit(RecognizedSource& found, std::vector<CalibrationPoint> points, int channelCount) {
    constexpr std::size_t enoughForParabola = 5;
    found.points.curve =
        points.size() < enoughForParabola ? CalibrationCurve::Line : CalibrationCurve::Parabola;
    found.points.points = std::move(points);
    found.found = found.points.points.size();
    found.fitted = fitCalibration(found.points, channelCount);
}

// Finds the lines once more among all peaks, on the curve through those found at first.
RecognizedSource refined(const Attempt& attempt, std::span<const PeakOfSource> peaks,
                         int channelCount) {
    RecognizedSource found{.name = attempt.source->name,
                           .strong = attempt.source->lines.size(),
                           .points = {},
                           .fitted = {}};
    fit(found, pointsOf(attempt.matches), channelCount);
    if (!found.fitted.refusal.empty())
        return found;
    std::vector<Match> matches = matchesOn(found.fitted.calibration, *attempt.source, peaks);
    dropByIntensity(matches);
    fit(found, pointsOf(matches), channelCount);
    fit(found, nearPoints(found), channelCount);
    return found;
}

}  // namespace

std::span<const CalibrationSource> calibrationSources() {
    return sources;
}

std::optional<RecognizedSource> recognizeSource(std::span<const PeakOfSource> peaks,
                                                int channelCount) {
    const std::vector<PeakOfSource> largest = largestPeaks(peaks);
    Attempt best;
    for (const CalibrationSource& source : sources)
        trySource(source, largest, channelCount, best);
    if (best.source == nullptr)
        return std::nullopt;
    RecognizedSource found = refined(best, peaks, channelCount);
    if (!found.fitted.refusal.empty() || !isEnough(found.found, found.strong))
        return std::nullopt;
    return found;
}

std::string recognitionText(const RecognizedSource& source) {
    return "This fits " + std::string(source.name) + ": " + std::to_string(source.found) + " of " +
           std::to_string(source.strong) + " strong lines, residual " +
           formatNumber(source.fitted.meanResidual, "0.00") + " keV.";
}

}  // namespace kestrel
