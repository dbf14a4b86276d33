#include "analysis/peak_calibration.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace kestrel {
namespace {

constexpr double leastError = 0.05;  // channels

struct Scale {
    double mean = 0;
    double spread = 1;  // channels
    double of(double channel) const { return (channel - mean) / spread; }
};

Scale scaleOf(std::span<const CalibrationPoint> points) {
    const auto [low, high] = std::ranges::minmax(points, {}, &CalibrationPoint::channel);
    return {(low.channel + high.channel) / 2, (high.channel - low.channel) / 2};
}

std::vector<CalibrationPoint> usedPoints(const CalibrationPoints& points) {
    std::vector<CalibrationPoint> used;
    std::ranges::copy_if(points.points, std::back_inserter(used), &CalibrationPoint::isUsed);
    return used;
}

// Rows of the normal equations with their right sides.
using Equations = std::array<std::array<double, 4>, 3>;

Equations equationsOf(std::span<const CalibrationPoint> points, const Scale& scale) {
    Equations rows{};
    for (const CalibrationPoint& point : points) {
        const double u = scale.of(point.channel);
        const std::array powers = {1.0, u, u * u};
        const double weight =
            1 / (point.channelError * point.channelError + leastError * leastError);
        for (std::size_t i = 0; i < rows.size(); ++i) {
            for (std::size_t j = 0; j < powers.size(); ++j)
                rows.at(i).at(j) += weight * powers.at(i) * powers.at(j);
            rows.at(i).back() += weight * powers.at(i) * point.energy;
        }
    }
    return rows;
}

// Gauss and Jordan over the first `size` unknowns; the matrix is positive definite, so that the
// diagonal serves. The others are 0.
std::array<double, 3> solve(Equations rows, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        for (std::size_t k = 0; k < size; ++k) {
            const double factor = k == i ? 0 : rows.at(k).at(i) / rows.at(i).at(i);
            for (std::size_t j = 0; j < rows.at(k).size(); ++j)
                rows.at(k).at(j) -= factor * rows.at(i).at(j);
        }
    }
    std::array<double, 3> unknowns{};
    for (std::size_t i = 0; i < size; ++i)
        unknowns.at(i) = rows.at(i).back() / rows.at(i).at(i);
    return unknowns;
}

Calibration inChannels(const std::array<double, 3>& p, const Scale& scale) {
    const double b = p[1] / scale.spread;
    const double c = p[2] / (scale.spread * scale.spread);
    return {.a = p[0] - b * scale.mean + c * scale.mean * scale.mean,
            .b = b - 2 * c * scale.mean,
            .c = c};
}

std::string refusalOf(std::span<const CalibrationPoint> used, std::size_t needed) {
    std::set<double> channels;
    for (const CalibrationPoint& point : used)
        channels.insert(point.channel);
    if (channels.size() >= needed)
        return {};
    const std::string curve = needed == 2 ? "A straight line needs 2" : "A parabola needs 3";
    return curve + " peaks of different channels; there are " + std::to_string(channels.size()) +
           ".";
}

bool rises(const Calibration& calibration, int channelCount) {
    const double atEnd = calibration.b + 2 * calibration.c * (channelCount - 1);
    return std::isfinite(calibration.a) && calibration.b > 0 && atEnd > 0 && std::isfinite(atEnd);
}

void addResiduals(FittedPeaks& fitted, const CalibrationPoints& points) {
    const auto& [a, b, c] = fitted.calibration;
    double sum = 0;
    double count = 0;
    for (const CalibrationPoint& point : points.points) {
        const double residual = point.energy - (a + (b + c * point.channel) * point.channel);
        fitted.residuals.push_back(residual);
        sum += point.isUsed ? residual * residual : 0;
        count += point.isUsed ? 1 : 0;
    }
    fitted.meanResidual = std::sqrt(sum / count);
}

}  // namespace

FittedPeaks fitCalibration(const CalibrationPoints& points, int channelCount) {
    const std::vector<CalibrationPoint> used = usedPoints(points);
    const std::size_t coefficients = points.curve == CalibrationCurve::Line ? 2 : 3;
    FittedPeaks fitted;
    fitted.refusal = refusalOf(used, coefficients);
    if (!fitted.refusal.empty())
        return fitted;
    const Scale scale = scaleOf(used);
    fitted.calibration = inChannels(solve(equationsOf(used, scale), coefficients), scale);
    if (!rises(fitted.calibration, channelCount)) {
        fitted.refusal = "The energies do not rise with the channels.";
        fitted.calibration = {};
        return fitted;
    }
    addResiduals(fitted, points);
    return fitted;
}

void keepCalibration(const Calibration& calibration, Spectrum& spectrum,
                     CalibrationChoice& choice) {
    choice = {.useFileCalibration = false, .calDefault = calibration};
    spectrum.calCurrent = calibration;
}

}  // namespace kestrel
