#include "make_samples/poisson.h"

#include <cmath>

#include "base/integers.h"

namespace kestrel::samples {

std::int32_t PoissonSource::draw(double mean) {
    constexpr double smallMean = 10;
    if (!(mean > 0))
        return 0;
    return toInt32(mean < smallMean ? drawSmall(mean) : drawLarge(mean));
}

double PoissonSource::uniform() {
    constexpr double step = 1.0 / 9007199254740992.0;  // 2^-53
    return (static_cast<double>(generator_() >> 11) + 0.5) * step;
}

// Arrivals counted until their waiting times exceed the mean.
double PoissonSource::drawSmall(double mean) {
    const double limit = std::exp(-mean);
    double product = uniform();
    double count = 0;
    while (product > limit) {
        product *= uniform();
        ++count;
    }
    return count;
}

// Transformed rejection (PTRS): W. Hoermann, Insurance: Mathematics and Economics 12 (1993) 39.
double PoissonSource::drawLarge(double mean) {
    const double b = 0.931 + 2.53 * std::sqrt(mean);
    const double a = -0.059 + 0.02483 * b;
    const double inverseAlpha = 1.1239 + 1.1328 / (b - 3.4);
    const double acceptAtOnce = 0.9277 - 3.6224 / (b - 2);
    for (;;) {
        const double u = uniform() - 0.5;
        const double v = uniform();
        const double distance = 0.5 - std::fabs(u);
        const double count = std::floor((2 * a / distance + b) * u + mean + 0.43);
        if (distance >= 0.07 && v <= acceptAtOnce)
            return count;
        if (count < 0 || (distance < 0.013 && v > distance))
            continue;
        if (std::log(v * inverseAlpha / (a / (distance * distance) + b)) <=
            count * std::log(mean) - mean - std::lgamma(count + 1))
            return count;
    }
}

}  // namespace kestrel::samples
