#include "view/redistribution.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>

namespace kestrel {
namespace {

// The energies between channels, from before the first to past the last one.
using Edges = std::vector<double>;

Edges edgesOf(const Calibration& calibration, int channels) {
    Edges edges;
    for (int k = 0; k <= channels; ++k) {
        const double x = k - 0.5;
        edges.push_back((calibration.c * x + calibration.b) * x + calibration.a);
    }
    return edges;
}

// False also for what is no number, or too large to subtract.
bool rise(const Edges& edges) {
    return std::ranges::adjacent_find(edges, std::not_fn(std::less<>())) == edges.end() &&
           std::isfinite(edges.back() - edges.front());
}

// Takes the channels of the source from the lowest energy on.
class Sorter {
  public:
    explicit Sorter(const Edges& edges) : edges_(edges) {
        result_.counts.assign(edges.size() - 1, 0);
        result_.variances.assign(edges.size() - 1, 0);
    }

    // What is past the channel that the counts end in stays for the last part, so that rounding
    // loses none.
    void add(double low, double high, double counts) {
        while (next_ < edges_.size() && edges_[next_] <= low)
            ++next_;
        double left = counts;
        double from = low;
        for (std::size_t k = next_; k < edges_.size() && edges_[k] < high; ++k) {
            const double part = (edges_[k] - from) / (high - low);
            put(k, part, part * counts, counts);
            left -= part * counts;
            from = edges_[k];
            next_ = k + 1;
        }
        put(next_, (high - from) / (high - low), left, counts);
    }

    Redistributed result() && { return std::move(result_); }

  private:
    // The part of a channel's counts that lies before an edge.
    void put(std::size_t edge, double part, double counts, double ofCounts) {
        if (edge == 0) {
            result_.below += counts;
        } else if (edge == edges_.size()) {
            result_.above += counts;
        } else {
            result_.counts[edge - 1] += counts;
            result_.variances[edge - 1] += part * part * std::max(ofCounts, 0.0);
        }
    }

    const Edges& edges_;
    std::size_t next_ = 0;  // the first edge above what has been taken
    Redistributed result_;
};

}  // namespace

Redistributed redistribute(const Spectrum& source, const Spectrum& target) {
    const int sourceChannels = std::max<int>(source.channelCount, 0);
    const int targetChannels = std::max<int>(target.channelCount, 0);
    Edges from = edgesOf(source.calCurrent, sourceChannels);
    Edges to = edgesOf(target.calCurrent, targetChannels);
    if (!rise(from) || !rise(to)) {
        constexpr Calibration byNumber{0, 1, 0};
        from = edgesOf(byNumber, sourceChannels);
        to = edgesOf(byNumber, targetChannels);
    }
    Sorter sorter(to);
    std::size_t k = 0;
    for (const std::int32_t counts : source.counts.span(0, sourceChannels)) {
        sorter.add(from[k], from[k + 1], counts);
        ++k;
    }
    return std::move(sorter).result();
}

}  // namespace kestrel
