#include "spectrum/formats/energy_terms.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kestrel {
namespace {

constexpr double highestEnergy = 1e5;  // keV
constexpr std::size_t mostTerms = 16;  // of a polynomial that is worth computing

double polynomialAt(const std::vector<double>& terms, double channel) {
    double energy = 0;
    double power = 1;
    for (const double term : terms) {
        energy += term * power;
        power *= channel;
    }
    return energy;
}

double energyAt(const Calibration& calibration, double channel) {
    return calibration.a + calibration.b * channel + calibration.c * channel * channel;
}

using Row = std::array<double, 4>;

// Gauss elimination of three equations with the largest element as pivot.
std::array<double, 3> solved(std::array<Row, 3> rows) {
    for (std::size_t column = 0; column < 3; ++column) {
        const auto pivot = std::max_element(
            rows.begin() + static_cast<std::ptrdiff_t>(column), rows.end(),
            [&](const Row& a, const Row& b) { return std::abs(a[column]) < std::abs(b[column]); });
        std::swap(rows[column], *pivot);
        for (std::size_t other = 0; other < 3; ++other) {
            const double factor = other == column ? 0 : rows[other][column] / rows[column][column];
            for (std::size_t i = column; i < 4; ++i)
                rows[other][i] -= factor * rows[column][i];
        }
    }
    return {rows[0][3] / rows[0][0], rows[1][3] / rows[1][1], rows[2][3] / rows[2][2]};
}

// Least squares in channels scaled to 0 .. 1, which keeps the normal equations well conditioned.
Calibration parabolaThrough(const std::vector<EnergyPoint>& points, double channels) {
    std::array<Row, 3> rows{};
    for (const EnergyPoint& point : points) {
        const double x = point.channel / channels;
        const std::array<double, 3> powers = {1, x, x * x};
        for (std::size_t i = 0; i < 3; ++i) {
            for (std::size_t k = 0; k < 3; ++k)
                rows[i][k] += powers[i] * powers[k];
            rows[i][3] += powers[i] * point.energy;
        }
    }
    const std::array<double, 3> terms = solved(rows);
    return {terms[0], terms[1] / channels, terms[2] / channels / channels};
}

Calibration lineThrough(const EnergyPoint& first, const EnergyPoint& second) {
    const double slope = (second.energy - first.energy) / (second.channel - first.channel);
    return {first.energy - slope * first.channel, slope, 0};
}

// Evenly spaced energies, as those of a straight line are to the digits that they are written with.
bool isEven(const std::vector<EnergyPoint>& points) {
    const Calibration line = lineThrough(points.front(), points.back());
    return std::ranges::all_of(points, [&](const EnergyPoint& point) {
        return std::abs(energyAt(line, point.channel) - point.energy) <= 1e-3 * std::abs(line.b);
    });
}

Calibration through(const std::vector<EnergyPoint>& points, double channels) {
    if (points.size() == 2 || isEven(points))
        return lineThrough(points.front(), points.back());
    return parabolaThrough(points, channels);
}

// As a polynomial of a higher degree has them.
std::vector<EnergyPoint> pointsOf(const MeasuredSpectrum& spectrum) {
    std::vector<EnergyPoint> points;
    for (std::size_t i = 0; i < spectrum.counts.size(); ++i) {
        const auto channel = static_cast<double>(i);
        points.push_back({channel, polynomialAt(spectrum.coefficients, channel)});
    }
    return points;
}

std::vector<EnergyPoint> inOrder(std::vector<EnergyPoint> points) {
    std::ranges::sort(points, {}, &EnergyPoint::channel);
    const auto sameChannel = [](const EnergyPoint& a, const EnergyPoint& b) {
        return a.channel == b.channel;
    };
    points.erase(std::unique(points.begin(), points.end(), sameChannel), points.end());
    return points;
}

}  // namespace

std::vector<double> shiftedTerms(std::vector<double> terms, double by) {
    // Horner's scheme: each pass settles the lowest term that is still open.
    for (std::size_t lowest = 0; lowest + 1 < terms.size(); ++lowest) {
        for (std::size_t k = terms.size() - 1; k > lowest; --k)
            terms[k - 1] += by * terms[k];
    }
    return terms;
}

bool rises(const Calibration& calibration, double lastChannel) {
    const double lastSlope = calibration.b + 2 * calibration.c * lastChannel;
    const double lastEnergy = energyAt(calibration, lastChannel);
    return std::isfinite(lastEnergy) && std::isfinite(calibration.a) && calibration.b > 0 &&
           lastSlope > 0 && lastEnergy < highestEnergy;
}

std::optional<FittedCalibration> fittedCalibration(const MeasuredSpectrum& spectrum) {
    std::vector<double> terms = spectrum.coefficients;
    while (!terms.empty() && terms.back() == 0)
        terms.pop_back();
    if (terms.size() > mostTerms || terms == std::vector<double>{0, 1})
        return std::nullopt;
    const double channels = static_cast<double>(spectrum.counts.size());
    FittedCalibration fitted;
    std::vector<EnergyPoint> points;
    if (terms.size() == 2 || terms.size() == 3) {
        fitted.calibration = {terms[0], terms[1], terms.size() == 3 ? terms[2] : 0};
    } else {
        points = terms.size() > 3 ? pointsOf(spectrum) : inOrder(spectrum.energies);
        if (points.size() < 2)
            return std::nullopt;
        fitted.calibration = through(points, channels);
    }
    for (const EnergyPoint& point : points)
        fitted.largestDifference =
            std::max(fitted.largestDifference,
                     std::abs(energyAt(fitted.calibration, point.channel) - point.energy));
    return rises(fitted.calibration, channels - 1) ? std::optional(fitted) : std::nullopt;
}

Calibration groupedCalibration(const Calibration& calibration, int group) {
    // Channel k of the sums stands for the channels group * k + (group - 1) / 2 on the average.
    const double middle = (group - 1) / 2.0;
    return {energyAt(calibration, middle), group * (calibration.b + 2 * calibration.c * middle),
            calibration.c * group * group};
}

}  // namespace kestrel
