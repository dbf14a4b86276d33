#include "spectrum/derived_arrays.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "base/integers.h"
#include "spectrum/peak_measure.h"

namespace kestrel {
namespace {

std::int32_t logHeight(std::int32_t count) {
    return count <= 0 ? emptyLogHeight : toInt32(unitsOfDecade * std::log(count) / std::log(10.0));
}

// Most channels hold few counts: their heights come from a table.
class LogHeights {
  public:
    LogHeights() {
        for (std::size_t count = 0; count < small_.size(); ++count)
            small_[count] = logHeight(static_cast<std::int32_t>(count));
    }
    std::int32_t operator()(std::int32_t count) const {
        const auto index = static_cast<std::size_t>(std::max(count, 0));
        return index < small_.size() ? small_[index] : logHeight(count);
    }

  private:
    std::array<std::int32_t, 256> small_{};
};

}  // namespace

void computeDerivedArrays(const Spectrum& spectrum, DerivedArrays& derived) {
    const auto channels = std::min<std::int64_t>(spectrum.channelCount, channelLimit);
    const auto counts = spectrum.counts.span(0, channels);
    std::ranges::transform(counts, derived.logHeights.span(0, channels).begin(), LogHeights());
    computePeakMeasure(counts, derived.peakSignificance.span(0, channels));
    if (spectrum.channelCount > channels)
        throw RuntimeFault(Fault::SubscriptOutOfRange);
}

}  // namespace kestrel
