#include "peaks/calibration_table.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr double weakestLine = 1;  // per 100 decays
constexpr double toleranceOfFwhm = 0.7;
constexpr double leastTolerance = 1;  // keV

// Those without an energy alone; null where there is none.
CalibrationRow* nearestFree(CalibrationTable& table, double channel) {
    CalibrationRow* nearest = nullptr;
    for (CalibrationRow& row : table.rows) {
        const bool nearer = nearest == nullptr ||
                            std::abs(row.channel - channel) < std::abs(nearest->channel - channel);
        if (!row.energy && nearer)
            nearest = &row;
    }
    return nearest;
}

void takePoint(CalibrationTable& table, const CalibrationPoint& point) {
    CalibrationRow* row = nearestFree(table, point.channel);
    if (row == nullptr || std::abs(row->channel - point.channel) > row->fwhm)
        row = &table.rows.emplace_back();
    row->channel = point.channel;
    row->channelError = point.channelError;
    row->energy = point.energy;
    row->isUsed = point.isUsed;
}

double distanceOf(const CalibrationRow& row, const SourceLine& line,
                  const Calibration& calibration) {
    return std::abs(energyAt(calibration, row.channel) - line.energy);
}

double toleranceOf(const CalibrationRow& row, const Calibration& calibration) {
    const double slope = calibration.b + 2 * calibration.c * row.channel;
    return std::max(toleranceOfFwhm * row.fwhm * slope, leastTolerance);
}

void takeLine(CalibrationTable& table, const SourceLine& line, const Calibration& calibration) {
    CalibrationRow* nearest = nullptr;
    for (CalibrationRow& row : table.rows) {
        const double distance = distanceOf(row, line, calibration);
        if (!row.energy && distance <= toleranceOf(row, calibration) &&
            (nearest == nullptr || distance < distanceOf(*nearest, line, calibration)))
            nearest = &row;
    }
    if (nearest != nullptr) {
        nearest->energy = line.energy;
        nearest->isUsed = true;
    }
}

}  // namespace

CalibrationTable calibrationTable(const PeakList& list) {
    CalibrationTable table;
    for (const ListedPeak& peak : list.peaks)
        table.rows.push_back({.channel = peak.measured.centroid,
                              .channelError = peak.measured.centroidError,
                              .fwhm = peak.measured.fwhm,
                              .net = peak.net,
                              .energy = std::nullopt});
    return table;
}

CalibrationPoints pointsOf(const CalibrationTable& table) {
    CalibrationPoints points{.points = {}, .curve = table.curve};
    for (const CalibrationRow& row : table.rows) {
        if (row.energy)
            points.points.push_back({row.channel, row.channelError, *row.energy, row.isUsed});
    }
    return points;
}

void takePoints(CalibrationTable& table, const CalibrationPoints& points) {
    std::erase_if(table.rows, [](const CalibrationRow& row) { return row.fwhm == 0; });
    for (CalibrationRow& row : table.rows)
        row.energy.reset();
    for (const CalibrationPoint& point : points.points)
        takePoint(table, point);
    std::ranges::stable_sort(table.rows, {}, &CalibrationRow::channel);
    table.curve = points.curve;
}

void takeLines(CalibrationTable& table, std::span<const SourceLine> lines,
               const Calibration& calibration) {
    std::vector<SourceLine> strongest(lines.begin(), lines.end());
    std::erase_if(strongest, [](const SourceLine& line) { return line.intensity < weakestLine; });
    std::ranges::stable_sort(strongest, std::ranges::greater{}, &SourceLine::intensity);
    for (const SourceLine& line : strongest)
        takeLine(table, line, calibration);
}

std::optional<RecognizedSource> recognizedSource(const CalibrationTable& table, int channelCount) {
    std::vector<PeakOfSource> peaks;
    for (const CalibrationRow& row : table.rows) {
        if (row.net > 0)
            peaks.push_back({row.channel, row.channelError, row.net});
    }
    return recognizeSource(peaks, channelCount);
}

std::optional<double> typedEnergy(std::string_view text) {
    constexpr double lowest = 1e-3;
    constexpr double highest = 1e5;
    std::string digits(trimBlanks(text));
    std::ranges::replace(digits, ',', '.');
    double energy = 0;
    const char* const end = digits.data() + digits.size();
    const auto read = std::from_chars(digits.data(), end, energy);
    // Neither holds for what is not a number.
    const bool valid =
        read.ec == std::errc() && read.ptr == end && energy >= lowest && energy <= highest;
    return valid ? std::optional(energy) : std::nullopt;
}

double energyAt(const Calibration& calibration, double channel) {
    return calibration.a + (calibration.b + calibration.c * channel) * channel;
}

std::string calibrationSummary(const FittedPeaks& fitted, const CalibrationTable& table) {
    if (!fitted.refusal.empty())
        return fitted.refusal;
    const auto& [a, b, c] = fitted.calibration;
    const auto used = std::ranges::count_if(
        table.rows, [](const CalibrationRow& row) { return row.energy && row.isUsed; });
    return "Energy = " + formatNumber(a, "0.000") + " + " + formatNumber(b, "0.000000") + " n" +
           (c == 0 ? "" : " + " + formatNumber(c, "0.000E+00") + " n^2") + " keV; residual " +
           formatNumber(fitted.meanResidual, "0.000") + " keV over " +
           plainNumber(std::int64_t{used}) + " peaks.";
}

}  // namespace kestrel
