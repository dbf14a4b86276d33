// The regions of a peak in the plot: their channels once more, in colour, exactly where they stand.
#include <gtest/gtest.h>

#include <iterator>
#include <memory>

#include "fault_matcher.h"
#include "recording_canvas.h"
#include "view/plot.h"

namespace kestrel {
namespace {

using test::Line;
using test::Point;

constexpr Colour white = 0xFFFFFF;
constexpr Colour green = 0x00FF00;
constexpr Colour red = 0x0000FF;

class Overlay : public testing::Test {
  protected:
    Overlay() {
        spectrum->channelCount = 16384;
        for (int k = 0; k < 16384; ++k) {
            spectrum->counts[k] = 1 + k % 97;
            derived->logHeights[k] = 3 * (k % 89);
        }
        regions.shown = true;
        regions.texts = {" 100", " 120", "130", "150ch", "160.4", "180"};
    }
    void draw(int start, int end) {
        view.viewStartCh = static_cast<std::int16_t>(start);
        view.viewEndCh = static_cast<std::int16_t>(end);
        view.viewWidth = static_cast<std::int16_t>(end - start);
        drawSpectrum({*spectrum, *derived, view, *colours, standardPalette, &regions}, canvas);
    }
    template <typename Element>
    static std::vector<Element> in(const std::vector<Element>& all, Colour colour, double from,
                                   double to) {
        std::vector<Element> found;
        std::ranges::copy_if(all, std::back_inserter(found), [&](const Element& e) {
            return e.colour == colour && right(e) >= from && right(e) <= to;
        });
        for (Element& element : found)
            element.colour = 0;
        return found;
    }
    static double right(const Line& line) { return line.x2; }
    static double right(const Point& point) { return point.x; }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
    std::unique_ptr<ChannelArray<Colour>> colours = std::make_unique<ChannelArray<Colour>>();
    ViewState view;
    RegionBounds regions;
    test::RecordingCanvas canvas;
};

TEST_F(Overlay, LiesExactlyOverTheCurveInEveryScaleAndPlotMode) {
    for (const CountAxis axis : {CountAxis::Logarithmic, CountAxis::Linear}) {
        for (const PlotMode mode : {PlotMode::Line, PlotMode::Dots}) {
            view.linLogMode = axis;
            view.plotMode = mode;
            draw(0, 1024);
            const auto same = [](const auto& all, Colour colour, double from, double to) {
                return in(all, colour, from, to) == in(all, white, from, to);
            };
            if (mode == PlotMode::Line) {
                EXPECT_EQ(in(canvas.lines, green, 100, 120).size(), 42U);
                EXPECT_TRUE(same(canvas.lines, green, 100, 120));
                EXPECT_TRUE(same(canvas.lines, red, 130, 150));
                EXPECT_TRUE(same(canvas.lines, green, 160, 180));
            } else {
                EXPECT_EQ(in(canvas.points, green, 100, 120).size(), 21U);
                EXPECT_TRUE(same(canvas.points, green, 100, 120));
                EXPECT_TRUE(same(canvas.points, red, 130, 150));
                EXPECT_TRUE(same(canvas.points, green, 160, 180));
            }
        }
    }
}

TEST_F(Overlay, LiesExactlyOverTheGroupsOfAWideView) {
    for (const auto& [start, group] : {std::pair{0, 8}, {3, 8}}) {
        draw(start, start + 16000);
        const auto painted = in(canvas.lines, white, -1e9, 1e9);
        const auto marked = in(canvas.lines, green, 0, 1e9);
        // 21 channels: the groups that hold the first and the last of them, and those between.
        EXPECT_GE(marked.size(), 2U * 3U * (21U / static_cast<unsigned>(group)));
        for (const Line& line : marked)
            EXPECT_EQ(std::ranges::count(painted, line), 1);
        const auto channels = in(canvas.lines, green, 100 - group, 100);
        EXPECT_FALSE(channels.empty());
    }
}

TEST_F(Overlay, TakesABoundOfZeroForChannelOne) {
    regions.texts = {"", "3", "", "", "", ""};
    draw(0, 64);
    EXPECT_EQ(in(canvas.lines, green, 0, 3).size(), 6U + 2U);  // the last region is channel 1 too
    EXPECT_EQ(in(canvas.lines, red, 1, 1).size(), 2U);
}

TEST_F(Overlay, StaysInsideTheShownRange) {
    draw(110, 140);
    EXPECT_EQ(in(canvas.lines, green, 0, 20000).size(), 20U);
    regions.texts = {"-5", "-2", "17500", "20000", "30", "20"};
    draw(0, 1024);
    EXPECT_TRUE(in(canvas.lines, green, -100, 20000).empty());
}

TEST_F(Overlay, IsOnlyThereWhileTheDialogIsOpenAndASpectrumIsDrawn) {
    regions.texts[0] = "40000";
    EXPECT_FAULT(draw(0, 1024), Fault::Overflow);
    regions.shown = false;
    draw(0, 1024);
    EXPECT_TRUE(in(canvas.lines, green, 0, 20000).empty());
    regions.shown = true;
    regions.texts[0] = "100";
    spectrum->counts.fill(0);
    draw(0, 1024);
    EXPECT_TRUE(in(canvas.lines, green, 0, 20000).empty());
}

}  // namespace
}  // namespace kestrel
