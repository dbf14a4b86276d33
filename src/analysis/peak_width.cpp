#include "analysis/peak_width.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace kestrel {
namespace {

constexpr double furthestOff = 0.25;
constexpr double scatter = 0.02;

double square(double x) {
    return x * x;
}

double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

WidthCurve constantCurve(std::span<const WidthPoint> points) {
    std::vector<double> squares;
    for (const WidthPoint& point : points)
        squares.push_back(square(point.fwhm));
    return {median(squares), 0};
}

// Through the median of the slopes and of what each point then leaves for the constant.
WidthCurve medianCurve(std::span<const WidthPoint> points) {
    std::vector<double> values;
    for (std::size_t i = 0; i < points.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (const double apart = points[i].channel - points[j].channel; apart != 0)
                values.push_back((square(points[i].fwhm) - square(points[j].fwhm)) / apart);
    WidthCurve curve{0, values.empty() ? 0 : median(values)};
    values.clear();
    for (const WidthPoint& point : points)
        values.push_back(square(point.fwhm) - curve.slope * point.channel);
    curve.constant = median(values);
    return curve;
}

// One over the variance of the squared width.
double weightOf(const WidthPoint& point) {
    return 1 / (4 * square(point.fwhm) * (square(point.error) + square(scatter * point.fwhm)));
}

// Least squares, where a part that comes out below 0 is left out.
WidthCurve straightCurve(std::span<const WidthPoint> points) {
    double sum = 0;
    double x = 0;
    double xx = 0;
    double y = 0;
    double xy = 0;
    for (const WidthPoint& point : points) {
        const double weight = weightOf(point);
        sum += weight;
        x += weight * point.channel;
        xx += weight * square(point.channel);
        y += weight * square(point.fwhm);
        xy += weight * point.channel * square(point.fwhm);
    }
    const double determinant = sum * xx - x * x;
    const double slope = determinant > 0 ? (sum * xy - x * y) / determinant : 0;
    const double constant = (y - slope * x) / sum;
    if (slope <= 0)
        return {y / sum, 0};
    return constant < 0 ? WidthCurve{0, xy / xx} : WidthCurve{constant, slope};
}

}  // namespace

double WidthCurve::fwhm(double channel) const {
    return std::sqrt(std::max(constant + slope * channel, 0.0));
}

WidthCurve fitWidthCurve(std::span<const WidthPoint> points) {
    if (points.size() < 3)
        return constantCurve(points);
    const WidthCurve rough = medianCurve(points);
    std::vector<WidthPoint> near;
    for (const WidthPoint& point : points)
        if (std::fabs(point.fwhm - rough.fwhm(point.channel)) < furthestOff * point.fwhm)
            near.push_back(point);
    return near.size() < 3 ? constantCurve(points) : straightCurve(near);
}

}  // namespace kestrel
