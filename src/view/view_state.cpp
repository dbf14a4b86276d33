#include "view/view_state.h"

#include <algorithm>

#include "base/integers.h"

namespace kestrel {
namespace {

constexpr std::int16_t narrowestHalved = 128;
constexpr std::int16_t lowestFullScale = 2;
constexpr std::int16_t highestFullScale = 21;

void setFullScale(ViewState& view, std::int16_t exponent) {
    view.yScaleExp = exponent;
    view.yScaleFactor = static_cast<float>(plotTop) / static_cast<float>(1 << exponent);
}

}  // namespace

void centreViewOnCursor(ViewState& view, std::int16_t channelCount) {
    showAt(view, view.cursorCh, 0.5, channelCount);
}

double placeInView(const ViewState& view, double x) {
    return divide(x - view.viewStartCh, view.viewWidth);
}

void showAt(ViewState& view, double x, double place, std::int16_t channelCount) {
    const std::int16_t lastChannel = narrow16(channelCount - 1);
    view.viewStartCh = toInt16(x - place * view.viewWidth);
    if (view.viewStartCh < 0)
        view.viewStartCh = 0;
    const double quarter = view.viewWidth / 4.0;
    const std::int16_t quarters = toInt16(divide(view.viewStartCh, quarter));
    view.viewStartCh = toInt16(quarter * quarters);
    view.viewEndCh = narrow16(view.viewStartCh + view.viewWidth);
    if (view.viewEndCh > lastChannel) {
        view.viewEndCh = lastChannel;
        view.viewStartCh = narrow16(lastChannel - view.viewWidth);
    }
    if (view.viewStartCh < 0)
        view.viewStartCh = 0;
}

UserScale plotScale(const ViewState& view) {
    return {.left = view.viewStartCh - view.viewWidth / 16.0,
            .top = plotTop,
            .right = static_cast<double>(view.viewStartCh) + view.viewWidth,
            .bottom = plotBottom};
}

bool halveWidth(ViewState& view) {
    if (view.viewWidth < narrowestHalved)
        return false;
    view.viewWidth = toInt16(view.viewWidth / 2.0);
    return true;
}

bool doubleWidth(ViewState& view, std::int16_t channelCount) {
    if (view.viewWidth >= channelCount)
        return false;
    view.viewWidth = narrow16(std::int64_t{view.viewWidth} * 2);
    return true;
}

bool lowerFullScale(ViewState& view) {
    if (view.yScaleExp <= lowestFullScale)
        return false;
    setFullScale(view, narrow16(view.yScaleExp - 1));
    return true;
}

bool raiseFullScale(ViewState& view) {
    if (view.yScaleExp >= highestFullScale)
        return false;
    setFullScale(view, narrow16(view.yScaleExp + 1));
    return true;
}

void followShownRange(ViewState& view) {
    view.viewWidth = narrow16(view.viewEndCh - view.viewStartCh + 1);
}

void showAllChannels(ViewState& view, std::int16_t channelCount) {
    view.viewStartCh = 0;
    view.viewEndCh = channelCount;
    followShownRange(view);
}

void showRange(ViewState& view, double from, double to, std::int16_t channelCount) {
    const int last = std::max(channelCount - 1, 1);
    const int width = std::min(narrowestRange, last);
    int first = int{toInt16(std::clamp<double>(std::min(from, to), 0, last))};
    int end = int{toInt16(std::clamp<double>(std::max(from, to), 0, last))};
    if (end - first < width) {
        first = std::clamp((first + end - width) / 2, 0, last - width);
        end = first + width;
    }
    view.viewStartCh = narrow16(first);
    view.viewEndCh = narrow16(end);
    view.viewWidth = narrow16(end - first);
}

bool panView(ViewState& view, int eighths, std::int16_t channelCount) {
    const int length = view.viewEndCh - view.viewStartCh;
    const int farthest = std::max(channelCount - 1 - length, 0);
    const std::int64_t step = std::max(length / 8, 1);
    const std::int64_t start = view.viewStartCh + step * eighths;
    const auto before = view.viewStartCh;
    view.viewStartCh = narrow16(std::clamp<std::int64_t>(start, 0, farthest));
    view.viewEndCh = narrow16(view.viewStartCh + length);
    return view.viewStartCh != before;
}

bool fitFullScale(ViewState& view, std::int32_t counts) {
    std::int16_t exponent = lowestFullScale;
    while (exponent < highestFullScale && (1 << exponent) < counts)
        ++exponent;
    if (view.yScaleExp == exponent)
        return false;
    setFullScale(view, exponent);
    return true;
}

bool isShown(const ViewState& view, std::int16_t channel) {
    return channel >= view.viewStartCh && channel <= view.viewEndCh;
}

}  // namespace kestrel
