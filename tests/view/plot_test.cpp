#include "view/plot.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "fault_matcher.h"
#include "recording_canvas.h"
#include "view/curve.h"

namespace kestrel {
namespace {

using test::Line;
using test::Point;

constexpr Colour white = 0xFFFFFF;
constexpr Colour lightRed = 0x0000FF;

class Plot : public testing::Test {
  protected:
    // A spectrum whose counts are 1, 10, 100, 1000, 1, 10 ... : log heights 0, 200, 400, 600.
    Plot() { setChannels(4096); }

    void setChannels(int channels) {
        spectrum->channelCount = static_cast<std::int16_t>(channels);
        for (int k = 0; k < channels; ++k) {
            spectrum->counts[k] = static_cast<std::int32_t>(std::pow(10, k % 4));
            derived->logHeights[k] = 200 * (k % 4);
        }
    }

    void draw(int start, int end) {
        view.viewStartCh = static_cast<std::int16_t>(start);
        view.viewEndCh = static_cast<std::int16_t>(end);
        view.viewWidth = static_cast<std::int16_t>(end - start);
        canvas.setScale(plotScale(view));
        drawSpectrum(input(), canvas);
    }
    PlotInput input() const {
        return {*spectrum, *derived, view, *colours, standardPalette, nullptr, &look};
    }

    std::vector<Line> linesIn(Colour colour) const {
        std::vector<Line> result;
        std::ranges::copy_if(canvas.lines, std::back_inserter(result),
                             [colour](const Line& line) { return line.colour == colour; });
        return result;
    }

    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    std::unique_ptr<DerivedArrays> derived = std::make_unique<DerivedArrays>();
    std::unique_ptr<ChannelArray<Colour>> colours = std::make_unique<ChannelArray<Colour>>();
    ViewState view;
    PlotLook look;
    test::RecordingCanvas canvas;
};

TEST_F(Plot, DrawsTheChannelAxisWithFiveLabelledTicks) {
    draw(1024, 2048);
    const Colour own = 0x123456;
    EXPECT_TRUE(canvas.has({1024, -30, 2048, -30, own}));
    for (const int channel : {1024, 1280, 1536, 1792, 2048}) {
        EXPECT_TRUE(canvas.has({double(channel), -30, double(channel), 0, own})) << channel;
        const auto label = canvas.textBeginning(std::to_string(channel));
        ASSERT_TRUE(label) << channel;
        EXPECT_EQ(label->y, -50);
        EXPECT_EQ(label->colour, own);
        // The last one would lie beyond the right edge.
        const double rightmost = canvas.scale().right - canvas.textWidth(label->text);
        EXPECT_EQ(label->x, channel == 2048 ? rightmost : channel);
    }
    EXPECT_EQ(canvas.foreColour(), lightRed);
    draw(1024, 2048);
    EXPECT_TRUE(canvas.has({1024, -30, 2048, -30, lightRed}));
}

TEST_F(Plot, LabelsDecadesOnTheLogarithmicAxis) {
    draw(0, 1024);
    EXPECT_TRUE(canvas.has({0, 1200, 0, -30, lightRed}));
    for (int decade = 0; decade <= 6; ++decade) {
        const bool found = std::ranges::any_of(canvas.texts, [decade](const test::Text& text) {
            return text.text == std::to_string(decade) && text.x == -40.96 &&
                   text.y == 200 * decade;
        });
        EXPECT_TRUE(found) << decade;
    }
}

TEST_F(Plot, LabelsTheFullScaleOfTheLinearAxis) {
    view.linLogMode = CountAxis::Linear;
    for (const auto& [exponent, label] :
         {std::pair{2, "4 "}, {8, "256 "}, {10, "1K"}, {19, "512K"}, {20, "1M"}, {21, "2M"}}) {
        view.yScaleExp = static_cast<std::int16_t>(exponent);
        draw(0, 1024);
        const auto text = canvas.textBeginning(label);
        ASSERT_TRUE(text) << label;
        EXPECT_EQ(text->text, label);
        EXPECT_EQ(text->x, -40.96);
    }
}

TEST_F(Plot, AddsFineTicksAndLabelsByChoiceOnly) {
    for (const CountAxis axis : {CountAxis::Linear, CountAxis::Logarithmic}) {
        view = {.linLogMode = axis, .yScaleExp = 12};
        look.fineTicks = false;
        draw(1024, 2048);
        draw(1024, 2048);
        const std::vector<Line> plain = canvas.lines;
        look.fineTicks = true;
        draw(1024, 2048);
        const std::size_t countTicks = axis == CountAxis::Linear ? 19 : 48;
        EXPECT_EQ(canvas.lines.size(), plain.size() + 17 + countTicks);
        for (const Line& line : plain)
            EXPECT_TRUE(canvas.has(line)) << line.x1 << ", " << line.y1;
    }
    EXPECT_TRUE(canvas.has({1024 - 0.004 * 1024, 200 * (1 + std::log10(2)), 1024,
                            200 * (1 + std::log10(2)), lightRed}));
    view = {.linLogMode = CountAxis::Linear, .yScaleExp = 11};
    draw(0, 64);
    ASSERT_TRUE(canvas.textBeginning("1.5K"));
    EXPECT_EQ(canvas.textBeginning("1.5K")->y, 900);
    EXPECT_EQ(canvas.textBeginning("512")->y, 300);
}

TEST_F(Plot, PlacesTheHeaderTextsAtQuartersOfTheRange) {
    draw(1000, 2024);
    struct Case {
        const char* start;
        double x, y;
    };
    for (const Case& c :
         {Case{"Date     : ", 1256, 1160}, {"Comment  : ", 1256, 1080}, {"Live: ", 1768, 1000}}) {
        const auto text = canvas.textBeginning(c.start);
        ASSERT_TRUE(text) << c.start;
        EXPECT_EQ(text->x, c.x);
        EXPECT_EQ(text->y, c.y);
        EXPECT_EQ(text->colour, lightRed);
    }
}

TEST_F(Plot, DrawsEveryChannelOfANarrowViewAsAHistogram) {
    (*colours)[2] = 0x00FF00;
    draw(0, 2043);
    const auto curve = linesIn(white);
    ASSERT_EQ(curve.size(), 2U * 2042U);
    EXPECT_EQ(curve[0], (Line{0, 0, 1, 0, white}));
    EXPECT_EQ(curve[1], (Line{1, 0, 1, 200, white}));
    EXPECT_EQ(linesIn(0x00FF00),
              (std::vector<Line>{{1, 200, 2, 200, 0x00FF00}, {2, 200, 2, 400, 0x00FF00}}));
    (*colours)[4096] = 0x00AA55;  // a mark may reach one past the end
    draw(3000, 4100);
    EXPECT_EQ(linesIn(0x00AA55).size(), 2U);
    EXPECT_EQ(canvas.drawWidth, 1);
}

TEST_F(Plot, DrawsPointsTwoUnitsWideInDotsMode) {
    view.plotMode = PlotMode::Dots;
    draw(0, 4);
    EXPECT_EQ(
        canvas.points,
        (std::vector<Point>{{1, 200, white}, {2, 400, white}, {3, 600, white}, {4, 0, white}}));
    EXPECT_EQ(canvas.drawWidth, 2);
    EXPECT_TRUE(linesIn(white).empty());
}

TEST_F(Plot, GroupsChannelsOfWideViewsByTheirExtremes) {
    setChannels(16384);
    derived->logHeights[9] = 1000;
    derived->logHeights[14] = -15;
    // (8192 + 4) / 4096 rounds to 2: groups of four channels, the next one included.
    draw(0, 8192);
    const auto curve = linesIn(white);
    ASSERT_EQ(curve.size(), 3U * 2048U);
    // Channels 1 to 5: the highest is 3 and the lowest 4; 9 to 13: 9 and 12; 13 to 17: 14
    // before 15.
    EXPECT_EQ(curve[0], (Line{0, 0, 1, 600, white}));
    EXPECT_EQ(curve[1], (Line{1, 600, 1, 0, white}));
    EXPECT_EQ(curve[2], (Line{1, 0, 3, 0, white}));
    EXPECT_EQ(curve[7], (Line{9, 1000, 9, 0, white}));
    EXPECT_EQ(curve[10], (Line{13, -15, 13, 600, white}));

    view.plotMode = PlotMode::Dots;
    draw(0, 8192);
    EXPECT_EQ(canvas.points[0], (Point{1, 600, white}));
    EXPECT_EQ(canvas.points[1], (Point{3, 0, white}));
    EXPECT_EQ(canvas.points.size(), 2U * 2048U);
}

TEST_F(Plot, ChoosesTheGroupLengthWithHalvesToEven) {
    setChannels(16384);
    for (const auto& [width, elements] :
         {std::pair{2043, 4086}, {2044, 4088}, {2045, 3069}, {16384, 6144}}) {
        draw(0, width);
        EXPECT_EQ(linesIn(white).size(), static_cast<std::size_t>(elements)) << width;
    }
}

TEST_F(Plot, DrawsLinearHeightsUnclippedAndRoundedToEven) {
    view.linLogMode = CountAxis::Linear;
    spectrum->counts[1] = 4000;
    spectrum->counts[2] = 2;
    view.yScaleFactor = 1.25F;
    draw(0, 2);
    EXPECT_TRUE(canvas.has({1, 1, 1, 5000, white}));
    EXPECT_TRUE(canvas.has({2, 5000, 2, 2, white}));
    spectrum->counts[1] = 2147483647;
    EXPECT_FAULT(draw(0, 2), Fault::Overflow);
    // In groups of two: only a channel that one of them reads counts.
    spectrum->counts[1] = 1;
    spectrum->counts[3002] = 2000000000;
    EXPECT_NO_THROW(draw(0, 3000));
    EXPECT_FAULT(draw(0, 3001), Fault::Overflow);
    EXPECT_FAULT(drawCurve(input(), canvas), Fault::Overflow);
}

TEST_F(Plot, DrawsNoCurveForAnEmptySpectrum) {
    spectrum->counts.fill(0);
    spectrum->counts[4095] = 1;  // the last channel alone does not count
    draw(0, 4095);
    EXPECT_TRUE(linesIn(white).empty());
    EXPECT_TRUE(canvas.textBeginning("Comment"));
}

TEST_F(Plot, ShowsNothingOfAnEarlierLongerSpectrum) {
    setChannels(100);
    spectrum->channelCount = 50;
    draw(48, 52);
    EXPECT_TRUE(canvas.has({50, 200, 50, emptyLogHeight, white}));
    EXPECT_TRUE(canvas.has({52, emptyLogHeight, 52, emptyLogHeight, white}));
    setChannels(17001);
    draw(0, 17001);
    EXPECT_EQ(linesIn(white).size(), 3U * 2126U);
    spectrum->channelCount = 17002;
    EXPECT_FAULT(draw(0, 17001), Fault::SubscriptOutOfRange);
    spectrum->channelCount = 27680;  // as a refused text file leaves it
    draw(0, 1024);
    EXPECT_EQ(linesIn(white).size(), 2U * 1024U);
    spectrum->counts.fill(0);
    EXPECT_FAULT(draw(0, 1024), Fault::SubscriptOutOfRange);
}

TEST_F(Plot, EndsForAViewOfNoWidth) {
    spectrum->channelCount = -3;
    view.viewWidth = 0;
    draw(0, 0);
    EXPECT_TRUE(linesIn(white).empty());
}

}  // namespace
}  // namespace kestrel
