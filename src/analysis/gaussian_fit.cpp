#include "analysis/gaussian_fit.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>

namespace kestrel {
namespace {

constexpr std::size_t backgroundTerms = 3;
constexpr std::size_t mostTerms = backgroundTerms + 2 * mostFittedLines + 1;
constexpr int mostSteps = 8;

using Row = std::array<double, mostTerms>;

double distribution(double x) {
    return 0.5 * std::erfc(-x * std::numbers::sqrt2 / 2);
}

double density(double x) {
    return std::exp(-0.5 * x * x) * std::numbers::inv_sqrtpi / std::numbers::sqrt2;
}

// The normal equations, and by Cholesky's method their solution and their inverse.
class NormalEquations {
  public:
    explicit NormalEquations(std::size_t terms) : terms_(terms) {}

    void add(const Row& row, double value, double weight) {
        for (std::size_t i = 0; i < terms_; ++i) {
            const double weighted = weight * row[i];
            for (std::size_t j = 0; j <= i; ++j)
                matrix_[i][j] += weighted * row[j];
            right_[i] += weighted * value;
        }
    }
    // False where the counts do not determine every term.
    bool factorise();
    Row solve(Row right) const;
    Row solution() const { return solve(right_); }
    double variance(std::size_t term) const {
        Row unit{};
        unit[term] = 1;
        return solve(unit)[term];
    }

  private:
    std::size_t terms_;
    std::array<Row, mostTerms> matrix_{};  // its lower half; once factorised the factor
    Row right_{};
};

bool NormalEquations::factorise() {
    for (std::size_t i = 0; i < terms_; ++i)
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = matrix_[i][j];
            for (std::size_t k = 0; k < j; ++k)
                sum -= matrix_[i][k] * matrix_[j][k];
            if (i == j && !(sum > 1e-12 * matrix_[i][i]))
                return false;
            matrix_[i][j] = i == j ? std::sqrt(sum) : sum / matrix_[j][j];
        }
    return true;
}

Row NormalEquations::solve(Row right) const {
    for (std::size_t i = 0; i < terms_; ++i) {
        for (std::size_t k = 0; k < i; ++k)
            right[i] -= matrix_[i][k] * right[k];
        right[i] /= matrix_[i][i];
    }
    for (std::size_t i = terms_; i-- > 0;) {
        for (std::size_t k = i + 1; k < terms_; ++k)
            right[i] -= matrix_[k][i] * right[k];
        right[i] /= matrix_[i][i];
    }
    return right;
}

// What one line adds at one channel, by its parameters. The lower edge of a channel is the upper
// one of the channel before.
struct LineAtEdge {
    double distribution = 0;
    double density = 0;
    double x = 0;
};

class Fit {
  public:
    Fit(std::span<const std::int32_t> counts, int first, int last, std::span<const double> centres,
        double sigma, LineWidth width)
        : counts_(counts),
          first_(first),
          last_(last),
          start_(centres.begin(), centres.end()),
          startSigma_(sigma),
          free_(width == LineWidth::Free),
          sigma_(sigma),
          centres_(start_),
          areas_(start_.size(), 1.0) {}

    GaussianFit run();

  private:
    std::size_t terms() const { return backgroundTerms + 2 * start_.size() + (free_ ? 1 : 0); }
    static std::size_t areaTerm(std::size_t line) { return backgroundTerms + 2 * line; }

    LineAtEdge edge(std::size_t line, double place) const;
    double expected(const Row& row) const;
    double weight(int channel, double expected, bool firstStep) const;
    Row derivatives(int channel);
    NormalEquations equations(bool firstStep);
    bool step(const Row& change);
    bool inPlace() const;
    GaussianFit result(const NormalEquations& normal) const;

    std::span<const std::int32_t> counts_;
    int first_;
    int last_;
    std::vector<double> start_;
    double startSigma_;
    bool free_;
    std::array<double, backgroundTerms> background_{};
    double sigma_;
    std::vector<double> centres_;
    std::vector<double> areas_;
    std::array<LineAtEdge, mostFittedLines> below_{};
    double totalArea_ = 1;
};

LineAtEdge Fit::edge(std::size_t line, double place) const {
    const double x = (place - centres_[line]) / sigma_;
    if (std::fabs(x) > 8)
        return {x > 0 ? 1.0 : 0.0, 0, x};
    return {distribution(x), density(x), x};
}

// To be called from the first channel on. Areas that are not above 0 leave their lines' places
// undetermined: their derivatives are those of one count.
Row Fit::derivatives(int channel) {
    Row row{};
    row[0] = 1;
    row[1] = (2.0 * channel - first_ - last_) / (last_ - first_);
    double& width = row[backgroundTerms + 2 * centres_.size()];
    for (std::size_t i = 0; i < centres_.size(); ++i) {
        const LineAtEdge low = below_[i];
        const LineAtEdge high = below_[i] = edge(i, channel + 0.5);
        const double area = std::max(areas_[i], 1.0);
        row[2] += area / totalArea_ * 0.5 * (low.distribution + high.distribution);
        row[areaTerm(i)] = high.distribution - low.distribution;
        row[areaTerm(i) + 1] = area * (low.density - high.density) / sigma_;
        if (free_)
            width += area * (low.density * low.x - high.density * high.x) / sigma_;
    }
    return row;
}

double Fit::expected(const Row& row) const {
    double sum = 0;
    for (std::size_t i = 0; i < backgroundTerms; ++i)
        sum += background_[i] * row[i];
    for (std::size_t i = 0; i < areas_.size(); ++i)
        sum += areas_[i] * row[areaTerm(i)];
    return sum;
}

// The first step knows no expected counts yet.
double Fit::weight(int channel, double expected, bool firstStep) const {
    constexpr double fewest = 0.3;
    const double count = counts_[static_cast<std::size_t>(channel)];
    return 1 / (firstStep ? std::max(count, 1.0) : std::max(expected, fewest));
}

NormalEquations Fit::equations(bool firstStep) {
    totalArea_ = 0;
    for (std::size_t i = 0; i < areas_.size(); ++i) {
        totalArea_ += std::max(areas_[i], 1.0);
        below_[i] = edge(i, first_ - 0.5);
    }
    NormalEquations normal(terms());
    for (int k = first_; k <= last_; ++k) {
        const Row row = derivatives(k);
        const double model = expected(row);
        normal.add(row, counts_[static_cast<std::size_t>(k)] - model, weight(k, model, firstStep));
    }
    return normal;
}

// The first step places areas and background, at the places that the fit starts with. True when the
// fit moves no more.
bool Fit::step(const Row& change) {
    for (std::size_t i = 0; i < backgroundTerms; ++i)
        background_[i] += change[i];
    double moved = 0;
    for (std::size_t i = 0; i < areas_.size(); ++i) {
        areas_[i] += change[areaTerm(i)];
        const double shift = std::clamp(change[areaTerm(i) + 1], -0.5 * sigma_, 0.5 * sigma_);
        centres_[i] += shift;
        moved = std::max(moved, std::fabs(shift) / sigma_);
    }
    if (free_) {
        const double wider = std::clamp(change[terms() - 1], -0.3 * sigma_, 0.3 * sigma_);
        sigma_ += wider;
        moved = std::max(moved, std::fabs(wider) / sigma_);
    }
    return moved < 2e-3;
}

bool Fit::inPlace() const {
    for (std::size_t i = 0; i < centres_.size(); ++i)
        if (!(std::fabs(centres_[i] - start_[i]) < 2 * startSigma_ + 1))
            return false;
    return sigma_ > 0.2 && sigma_ > 0.3 * startSigma_ && sigma_ < 3 * startSigma_;
}

GaussianFit Fit::result(const NormalEquations& normal) const {
    GaussianFit fit;
    for (std::size_t i = 0; i < centres_.size(); ++i)
        fit.lines.push_back({centres_[i], std::sqrt(normal.variance(areaTerm(i) + 1)), areas_[i],
                             std::sqrt(normal.variance(areaTerm(i)))});
    fit.sigma = sigma_;
    fit.sigmaError = free_ ? std::sqrt(normal.variance(terms() - 1)) : 0;
    fit.converged = true;
    return fit;
}

// Areas and background come first, with the places held: a place moves in proportion to one over
// its area.
GaussianFit Fit::run() {
    for (int i = 0; i < mostSteps; ++i) {
        NormalEquations normal = equations(i == 0);
        if (!normal.factorise())
            break;
        Row change = normal.solution();
        if (i == 0)
            for (std::size_t line = 0; line < areas_.size(); ++line)
                change[areaTerm(line) + 1] = 0;
        if (i == 0 && free_)
            change[terms() - 1] = 0;
        const bool settled = step(change) && i > 1;
        if (!inPlace())
            break;
        if (settled)
            return result(normal);
    }
    return {};
}

}  // namespace

GaussianFit fitGaussians(std::span<const std::int32_t> counts, int first, int last,
                         std::span<const double> centres, double sigma, LineWidth width) {
    const auto terms = static_cast<int>(backgroundTerms + 2 * centres.size() + 1);
    if (centres.empty() || centres.size() > mostFittedLines || last - first < terms)
        return {};
    return Fit(counts, first, last, centres, sigma, width).run();
}

}  // namespace kestrel
