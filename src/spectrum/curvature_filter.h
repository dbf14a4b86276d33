// The smoothed second difference of a spectrum: negative where the counts bulge upwards, zero on
// any straight background.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace kestrel {

// Sums of counts over any stretch of channels. All sums are whole numbers that a double holds
// exactly.
class RunningSums {
  public:
    explicit RunningSums(std::span<const std::int32_t> counts);

    int channelCount() const { return static_cast<int>(below_.size()) - 1; }
    // Counts of the `width` channels from `first` on.
    double sum(int first, int width) const { return below(first + width) - below(first); }

  private:
    double below(int channel) const { return below_[static_cast<std::size_t>(channel)]; }

    std::vector<double> below_;  // one entry more than channels
};

// Weights 5, 0, -3, -4, -3, 0, 5 on seven neighbouring groups of `width` channels each. Width 1 is
// the filter for peaks of two to five channels at half maximum; width w is the same for peaks w
// times as wide. `sums` must outlive the filter.
class CurvatureFilter {
  public:
    CurvatureFilter(const RunningSums& sums, int width);

    // The channels that have a curvature: not the first ten, not the last six, and all seven groups
    // inside the spectrum. None when first() > last(). The other calls ask for such channels.
    int first() const { return first_; }
    int last() const { return last_; }
    int width() const { return width_; }
    // The middle of the seven groups lies this far below the channel that they belong to.
    double middleOffset() const { return width_ % 2 == 0 ? 0.5 : 0.0; }

    double curvature(int channel) const {
        return 5 * feet(channel) - 3 * shoulders(channel) - 4 * group(channel, 0);
    }
    // Counts of the middle group of these channels, of the three before and the three after them.
    double core(int channel) const { return group(channel, 0); }
    // Variance of the curvature of counts that scatter as random events do.
    double variance(int channel) const {
        return 25 * feet(channel) + 9 * shoulders(channel) + 16 * group(channel, 0);
    }
    // The part of the curvature seen from the left (side -1) or the right (1): half the core
    // against the foot on that side. The two parts add up to the curvature.
    double curvatureFrom(int side, int channel) const {
        return 5 * group(channel, 3 * side) - 3 * group(channel, side) - 2 * group(channel, 0);
    }
    // Variance of the curvatures of the channels first .. last added up; neighbours share counts.
    double varianceOfSum(int first, int last) const;

  private:
    double group(int channel, int offset) const {
        return sums_.sum(channel - width_ / 2 + offset * width_, width_);
    }
    double shoulders(int channel) const { return group(channel, -1) + group(channel, 1); }
    double feet(int channel) const { return group(channel, -3) + group(channel, 3); }

    const RunningSums& sums_;
    int width_;
    int first_;
    int last_;
};

}  // namespace kestrel
