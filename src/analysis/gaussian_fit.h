// Lines fitted to the counts of a stretch of channels: Gaussians of one width on a straight
// background with a step under the lines.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace kestrel {

// Areas in counts, places in channels; the middle of channel k is at k. Errors are 1 sigma.
struct FittedLine {
    double centre = 0;
    double centreError = 0;
    double area = 0;
    double areaError = 0;
};

struct GaussianFit {
    std::vector<FittedLine> lines;  // in the order of the start
    double sigma = 0;
    double sigmaError = 0;  // 0 where the width was given
    bool converged = false;
};

inline constexpr std::size_t mostFittedLines = 8;

enum class LineWidth { Given, Free };

// The expected count of channel k is
//     b0 + b1 x + s P(k) + sum of A_i [F((k + 1/2 - c_i) / sigma) - F((k - 1/2 - c_i) / sigma)]
// with x from -1 to 1 over the stretch, F the normal distribution, and P the distribution of all
// the lines together: what scatters out of a line stands below it. The parameters are those of
// least squares by Gauss and Newton, the weight of a channel one over its expected count of the
// step before, which keeps areas free of bias (weights from the counts themselves would not).
// Errors are from the inverse of the normal matrix. Starts at `centres` and `sigma`; channels
// `first` .. `last` lie inside `counts`. Does not converge with more than mostFittedLines lines,
// too few channels, or lines that leave their places.
GaussianFit fitGaussians(std::span<const std::int32_t> counts, int first, int last,
                         std::span<const double> centres, double sigma, LineWidth width);

}  // namespace kestrel
