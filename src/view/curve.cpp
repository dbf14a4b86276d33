#include "view/curve.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/integers.h"
#include "base/number_text.h"
#include "view/plot.h"

namespace kestrel {
namespace {

constexpr int channelsPerPicture = 4096;  // more than that many are drawn in groups

// Whether a channel before the last has counts. The search ends at the first one: a channel count
// that is out of range, as a refused file may leave it, matters only for an empty spectrum.
bool hasCurve(const Spectrum& spectrum) {
    const int channels = spectrum.channelCount - 1;
    const int limit = static_cast<int>(channelLimit);
    const auto counts = spectrum.counts.span(0, std::min(channels, limit));
    if (std::ranges::any_of(counts, [](std::int32_t count) { return count > 0; }))
        return true;
    if (channels > limit)
        throw RuntimeFault(Fault::SubscriptOutOfRange);
    return false;
}

// Plot heights of the channels from `first` on. Channels past the end of the spectrum are empty.
class Heights {
  public:
    Heights(const PlotInput& input, std::int64_t first, std::int64_t last) : first_(first) {
        const std::int64_t count = std::max<std::int64_t>(last - first + 1, 1);
        const std::int64_t filled =
            std::clamp<std::int64_t>(input.spectrum.channelCount - first, 0, count);
        const bool linear = input.view.linLogMode == CountAxis::Linear;
        values_.assign(static_cast<std::size_t>(count), linear ? 0 : emptyLogHeight);
        if (linear)
            fillLinear(input.spectrum.counts.span(first, filled), input.view.yScaleFactor);
        else
            std::ranges::copy(input.derived.logHeights.span(first, filled), values_.begin());
    }

    std::int32_t operator[](std::int64_t channel) const {
        return values_[static_cast<std::size_t>(channel - first_)];
    }

  private:
    void fillLinear(std::span<const std::int32_t> counts, float factor) {
        std::ranges::transform(counts, values_.begin(),
                               [factor](std::int32_t c) { return toInt32(c * double{factor}); });
    }

    std::int64_t first_;
    std::vector<std::int32_t> values_;
};

// Channels in half a group; below 1 every channel is drawn by itself.
std::int16_t decimationStep(const ViewState& view) {
    return toInt16((view.viewEndCh - view.viewStartCh + 4) / double{channelsPerPicture});
}

// The curve of the channels after the first one shown.
class CurvePainter {
  public:
    CurvePainter(const PlotInput& input, Canvas& canvas)
        : input_(input),
          canvas_(canvas),
          first_(input.view.viewStartCh),
          last_(input.view.viewEndCh),
          group_(std::int64_t{2} * decimationStep(input.view)),
          heights_(input, first_, lastRead()),
          lines_(input.view.plotMode == PlotMode::Line) {}

    void draw() { drawPart(first_ + 1, last_); }

    // The shown channels of `low` to `high` once more, in one colour, exactly where they stand.
    void drawAgain(std::int64_t low, std::int64_t high, Colour colour) {
        fixedColour_ = colour;
        drawPart(std::max(low, first_ + 1), std::min(high, last_));
    }

  private:
    void drawPart(std::int64_t from, std::int64_t to) {
        if (from > to)
            return;
        if (group_ < 2)
            drawChannels(from, to);
        else
            drawGroups(from - (from - first_ - 1) % group_, to);
    }

    // The last channel of the last group: only what is drawn can be too high for the plot.
    std::int64_t lastRead() const {
        if (group_ < 2 || last_ <= first_)
            return last_;
        return last_ - (last_ - first_ - 1) % group_ + group_;
    }

    Colour colourOf(std::int64_t channel) const {
        if (fixedColour_)
            return *fixedColour_;
        // A mark may reach one channel past the end, as the cursor may.
        const bool marked = channel <= input_.spectrum.channelCount &&
                            channel < static_cast<std::int64_t>(channelLimit);
        const Colour colour = marked ? input_.channelColour[channel] : 0;
        return colour == 0 ? input_.palette[palette_number::white] : colour;
    }

    void drawChannels(std::int64_t from, std::int64_t to) {
        canvas_.moveTo(static_cast<double>(from - 1), heights_[from - 1]);
        for (std::int64_t i = from; i <= to; ++i) {
            const Colour colour = colourOf(i);
            const auto x = static_cast<double>(i);
            if (lines_) {
                canvas_.lineTo(x, heights_[i - 1], colour);
                canvas_.lineTo(x, heights_[i], colour);
            } else {
                canvas_.point(x, heights_[i], colour);
            }
        }
    }

    // A group shows its highest and its lowest channel, in channel order, so that neither a peak
    // nor a valley is lost when many channels share a pixel.
    void drawGroups(std::int64_t from, std::int64_t to) {
        moveToEndBefore(from);
        for (std::int64_t i = from; i <= to; i += group_) {
            const auto [earlier, later] = extremes(i);
            const Colour colour = colourOf(i);
            const auto x = static_cast<double>(i);
            const double middle = middleOf(i);
            if (lines_) {
                canvas_.lineTo(x, earlier, colour);
                canvas_.lineTo(x, later, colour);
                canvas_.lineTo(middle, later, colour);
            } else {
                canvas_.point(x, earlier, colour);
                canvas_.point(middle, later, colour);
            }
        }
    }

    double middleOf(std::int64_t group) const {
        return static_cast<double>(group) + static_cast<double>(group_) / 2.0;
    }

    // Where the curve stands when the group that begins with channel `from` is drawn.
    void moveToEndBefore(std::int64_t from) {
        if (from == first_ + 1)
            canvas_.moveTo(static_cast<double>(first_), heights_[first_]);
        else
            canvas_.moveTo(middleOf(from - group_), extremes(from - group_).later);
    }

    struct Extremes {
        std::int32_t earlier;
        std::int32_t later;
    };

    // Of channels i to i + group, the next group's first one included; of equal heights the first.
    Extremes extremes(std::int64_t i) const {
        std::int64_t highest = i;
        std::int64_t lowest = i;
        for (std::int64_t k = i + 1; k <= i + group_; ++k) {
            if (heights_[k] > heights_[highest])
                highest = k;
            if (heights_[k] < heights_[lowest])
                lowest = k;
        }
        return {heights_[std::min(highest, lowest)], heights_[std::max(highest, lowest)]};
    }

    const PlotInput& input_;
    Canvas& canvas_;
    std::int64_t first_;
    std::int64_t last_;
    std::int64_t group_;
    Heights heights_;
    bool lines_;
    std::optional<Colour> fixedColour_;
};

}  // namespace

void drawCurve(const PlotInput& input, Canvas& canvas) {
    const ViewState& view = input.view;
    if (!hasCurve(input.spectrum))
        return;
    canvas.setDrawWidth(view.plotMode == PlotMode::Line ? 1 : 2);
    CurvePainter(input, canvas).draw();
}

// A bound of 0 counts as channel 1.
void drawRegions(const PlotInput& input, Canvas& canvas) {
    if (input.regions == nullptr || !input.regions->shown)
        return;
    std::array<std::int16_t, 6> bounds{};
    std::ranges::transform(input.regions->texts, bounds.begin(), [](const std::string& text) {
        const std::int16_t bound = toInt16(parseLeadingNumber(text));
        return bound == 0 ? std::int16_t{1} : bound;
    });
    if (!hasCurve(input.spectrum))
        return;
    const Colour background = input.palette[palette_number::lightGreen];
    CurvePainter curve(input, canvas);
    curve.drawAgain(bounds[0], bounds[1], background);
    curve.drawAgain(bounds[2], bounds[3], input.palette[palette_number::lightRed]);
    curve.drawAgain(bounds[4], bounds[5], background);
}

}  // namespace kestrel
