#include "view/energy_axis.h"

#include <algorithm>
#include <cmath>

#include "base/number_text.h"

namespace kestrel {
namespace {

constexpr double wantedTicks = 8;
// Beyond this many steps from zero neighbouring ticks are not told apart reliably.
constexpr double mostSteps = 1e9;
// Below this many keV, which no spectrum spans, the powers of ten of a step are no longer numbers.
constexpr double leastRange = 1e-200;
// Between two channels, which never share more than the whole range.
constexpr int mostTicks = 20;

double energyAt(const Calibration& calibration, int channel) {
    return (calibration.c * channel + calibration.b) * channel + calibration.a;
}

// A step of digit * 10^exponent keV.
class Step {
  public:
    Step(double digit, double exponent)
        : digit_(digit),
          size_(digit * std::pow(10.0, exponent)),
          divisor_(exponent < 0 ? std::pow(10.0, -exponent) : 0.0) {}

    double size() const { return size_; }
    // The decimal value nearest to n steps.
    double times(double n) const { return divisor_ != 0.0 ? n * digit_ / divisor_ : n * size_; }

  private:
    double digit_;
    double size_;
    double divisor_;  // the power of ten below 1; 0 for one from 1 on
};

Step stepFor(double range) {
    const double wanted = range / wantedTicks;
    const double exponent = std::floor(std::log10(wanted));
    const double digit = wanted / std::pow(10.0, exponent);
    for (const double round : {1.0, 2.0, 5.0}) {
        if (digit <= round)
            return {round, exponent};
    }
    return {1.0, exponent + 1};
}

struct Range {
    double least;
    double greatest;
};

Range energyRange(const Calibration& calibration, int first, int last) {
    Range range{energyAt(calibration, first), energyAt(calibration, first)};
    for (int channel = first; channel <= last; ++channel) {
        const double energy = energyAt(calibration, channel);
        range.least = std::min(range.least, energy);
        range.greatest = std::max(range.greatest, energy);
    }
    return range;
}

// From a channel to the next.
struct Piece {
    int channel;
    double from;  // keV
    double to;
    bool last;
};

void addTicks(std::vector<EnergyTick>& ticks, const Step& step, const Piece& piece) {
    const auto [channel, from, to, last] = piece;
    const auto [low, high] = std::minmax(from, to);
    const double first = std::ceil(low / step.size());
    for (int i = 0; i < mostTicks && step.times(first + i) <= high; ++i) {
        const double energy = step.times(first + i);
        // A tick on a channel belongs to the pair that begins there.
        if (energy < low || (energy == to && !last))
            continue;
        const double part = to == from ? 0.0 : (energy - from) / (to - from);
        ticks.push_back({channel + part, plainNumber(energy)});
    }
}

}  // namespace

std::vector<EnergyTick> energyTicks(const Calibration& calibration, int firstChannel,
                                    int lastChannel) {
    const auto [least, greatest] = energyRange(calibration, firstChannel, lastChannel);
    if (!(greatest - least > leastRange) || !std::isfinite(greatest - least))
        return {};
    const Step step = stepFor(greatest - least);
    if (!(std::max(std::abs(least), std::abs(greatest)) / step.size() < mostSteps))
        return {};
    std::vector<EnergyTick> ticks;
    // Neighbouring ticks that the energies last stood between: most channels have none.
    Range free{1, 0};
    double to = energyAt(calibration, firstChannel);
    for (int channel = firstChannel; channel < lastChannel; ++channel) {
        const double from = to;
        to = energyAt(calibration, channel + 1);
        if (free.least < std::min(from, to) && std::max(from, to) < free.greatest)
            continue;
        addTicks(ticks, step, {channel, from, to, channel + 1 == lastChannel});
        const double steps = std::floor(to / step.size());
        free = {step.times(steps), step.times(steps + 1)};
    }
    return ticks;
}

}  // namespace kestrel
