#include "view/curve.h"

#include <algorithm>
#include <array>
#include <cmath>
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

// Plot heights of the channels first to last, whole numbers.
using HeightList = std::vector<double>;
using HeightsOf = HeightList (*)(const PlotInput& input, std::int64_t first, std::int64_t last);

// Channels past the end of the spectrum are empty.
HeightList emptyHeights(const PlotInput& input, std::int64_t first, std::int64_t last) {
    const bool linear = input.view.linLogMode == CountAxis::Linear;
    return HeightList(static_cast<std::size_t>(std::max<std::int64_t>(last - first + 1, 1)),
                      linear ? 0 : emptyLogHeight);
}

HeightList heightsOfFirst(const PlotInput& input, std::int64_t first, std::int64_t last) {
    HeightList values = emptyHeights(input, first, last);
    const std::int64_t filled = std::clamp<std::int64_t>(input.spectrum.channelCount - first, 0,
                                                         static_cast<std::int64_t>(values.size()));
    const double factor{input.view.yScaleFactor};
    if (input.view.linLogMode == CountAxis::Linear)
        std::ranges::transform(input.spectrum.counts.span(first, filled), values.begin(),
                               [factor](std::int32_t c) { return toInt32(c * factor); });
    else
        std::ranges::copy(input.derived.logHeights.span(first, filled), values.begin());
    return values;
}

// Scaled counts are no whole numbers, and may be too high for any picture. Rounds to the nearest
// whole number, in a way that takes no time: a picture has thousands of heights.
double heightInPicture(double height, double lowest) {
    constexpr double highest = 100 * plotTop;
    constexpr double nextIsOneAway = 0x1.8p52;
    return std::min(std::max(lowest, height + nextIsOneAway - nextIsOneAway), highest);
}

// The entries from `first` on, at most so many.
std::span<const double> partOf(const std::vector<double>& values, std::int64_t first,
                               std::size_t most) {
    const auto start =
        std::min(static_cast<std::size_t>(std::max<std::int64_t>(first, 0)), values.size());
    return std::span(values).subspan(start, std::min(most, values.size() - start));
}

double factorInView(const PlotInput& input) {
    return factorOf(*input.comparison, input.spectrum, input.view.viewStartCh, input.view.viewEndCh)
        .value_or(1);
}

HeightList heightsOfSecond(const PlotInput& input, std::int64_t first, std::int64_t last) {
    const Comparison& comparison = *input.comparison;
    const double factor = factorInView(input);
    HeightList values = emptyHeights(input, first, last);
    if (input.view.linLogMode == CountAxis::Linear) {
        const double slope = factor * double{input.view.yScaleFactor};
        std::ranges::transform(
            partOf(comparison.onFirst.counts, first, values.size()), values.begin(),
            [=](double counts) { return heightInPicture(slope * counts, -plotTop); });
    } else {
        const double shift = unitsOfDecade * std::log10(factor);
        std::ranges::transform(
            partOf(comparison.logHeights, first, values.size()), values.begin(),
            [=](double height) { return heightInPicture(height + shift, emptyLogHeight); });
    }
    return values;
}

// Of the difference and so many standard errors. What is below the base line would hide labels.
template <int errors>
HeightList heightsOfDifference(const PlotInput& input, std::int64_t first, std::int64_t last) {
    HeightList values = emptyHeights(input, first, last);
    const SpectrumPair pair = pairOf(*input.comparison, input.spectrum);
    const double factor = factorInView(input);
    const double slope{input.view.yScaleFactor};
    auto channel = static_cast<int>(first);
    for (double& value : values) {
        const Difference here = differenceAt(pair, factor, channel++);
        value = heightInPicture(differenceZero + slope * (here.counts + errors * here.error), 0);
    }
    return values;
}

// Channels in half a group; below 1 every channel is drawn by itself.
std::int16_t decimationStep(const ViewState& view) {
    return toInt16((view.viewEndCh - view.viewStartCh + 4) / double{channelsPerPicture});
}

// The curve of the channels after the first one shown.
class CurvePainter {
  public:
    CurvePainter(const PlotInput& input, Canvas& canvas, HeightsOf heightsOf = heightsOfFirst)
        : input_(input),
          canvas_(canvas),
          first_(input.view.viewStartCh),
          last_(input.view.viewEndCh),
          group_(std::int64_t{2} * decimationStep(input.view)),
          heights_(heightsOf(input, first_, lastRead())),
          lines_(input.view.plotMode == PlotMode::Line) {}

    void draw() { drawPart(first_ + 1, last_); }
    void draw(Colour colour) { drawAgain(first_ + 1, last_, colour); }

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

    double height(std::int64_t channel) const {
        return heights_[static_cast<std::size_t>(channel - first_)];
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
        canvas_.moveTo(static_cast<double>(from - 1), height(from - 1));
        for (std::int64_t i = from; i <= to; ++i) {
            const Colour colour = colourOf(i);
            const auto x = static_cast<double>(i);
            if (lines_) {
                canvas_.lineTo(x, height(i - 1), colour);
                canvas_.lineTo(x, height(i), colour);
            } else {
                canvas_.point(x, height(i), colour);
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
            canvas_.moveTo(static_cast<double>(first_), height(first_));
        else
            canvas_.moveTo(middleOf(from - group_), extremes(from - group_).later);
    }

    struct Extremes {
        double earlier;
        double later;
    };

    // Of channels i to i + group, the next group's first one included; of equal heights the first.
    Extremes extremes(std::int64_t i) const {
        const auto heights = std::span(heights_).subspan(static_cast<std::size_t>(i - first_),
                                                         static_cast<std::size_t>(group_ + 1));
        double highest = heights.front();
        double lowest = heights.front();
        for (const double height : heights) {
            highest = std::max(highest, height);
            lowest = std::min(lowest, height);
        }
        const auto earlier = std::ranges::find_if(
            heights, [=](double height) { return height == highest || height == lowest; });
        return {*earlier, *earlier == highest ? lowest : highest};
    }

    const PlotInput& input_;
    Canvas& canvas_;
    std::int64_t first_;
    std::int64_t last_;
    std::int64_t group_;
    HeightList heights_;
    bool lines_;
    std::optional<Colour> fixedColour_;
};

int drawWidthOf(const ViewState& view) {
    return view.plotMode == PlotMode::Line ? 1 : 2;
}

}  // namespace

void drawCurve(const PlotInput& input, Canvas& canvas) {
    if (!hasCurve(input.spectrum))
        return;
    canvas.setDrawWidth(drawWidthOf(input.view));
    CurvePainter(input, canvas).draw();
}

void drawSecondCurve(const PlotInput& input, Canvas& canvas) {
    if (input.comparison == nullptr || input.comparison->second == nullptr)
        return;
    canvas.setDrawWidth(drawWidthOf(input.view));
    CurvePainter(input, canvas, heightsOfSecond).draw(input.palette[palette_number::grey]);
}

bool showsDifference(const PlotInput& input) {
    return input.comparison != nullptr && input.comparison->second != nullptr &&
           input.comparison->difference && input.view.linLogMode == CountAxis::Linear;
}

double greatestDifference(const PlotInput& input) {
    return greatestDifference(pairOf(*input.comparison, input.spectrum), factorInView(input),
                              input.view.viewStartCh, input.view.viewEndCh);
}

void drawDifference(const PlotInput& input, Canvas& canvas) {
    canvas.setDrawWidth(drawWidthOf(input.view));
    const Colour grey = input.palette[palette_number::grey];
    CurvePainter(input, canvas, heightsOfDifference<-1>).draw(grey);
    CurvePainter(input, canvas, heightsOfDifference<1>).draw(grey);
    canvas.line(input.view.viewStartCh, differenceZero, input.view.viewEndCh, differenceZero,
                canvas.foreColour());
    CurvePainter(input, canvas, heightsOfDifference<0>).draw();
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
    CurvePainter curve(input, canvas,
                       showsDifference(input) ? heightsOfDifference<0> : heightsOfFirst);
    curve.drawAgain(bounds[0], bounds[1], background);
    curve.drawAgain(bounds[2], bounds[3], input.palette[palette_number::lightRed]);
    curve.drawAgain(bounds[4], bounds[5], background);
}

}  // namespace kestrel
