#include "view/nuclide_marks.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "recording_canvas.h"
#include "view/mark_labels.h"
#include "view/plot_look.h"

namespace kestrel {
namespace {

class NuclideMarksTest : public testing::Test {
  protected:
    void build(const std::vector<MarkedLine>& lines, bool on = true) {
        const MarkedNuclide nuclide{"Xx-1", lines};
        colourChannels(
            *colours, on ? marksOfOne(nuclide, false, *spectrum, standardPalette) : NuclideMarks{});
    }
    int marked() const {
        return static_cast<int>(
            std::ranges::count_if(*colours, [](Colour colour) { return colour != 0; }));
    }
    std::unique_ptr<ChannelArray<Colour>> colours = std::make_unique<ChannelArray<Colour>>();
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    // Out of the way, and too weak to be seen.
    const MarkedLine weak{8000, 1};

    NuclideMarksTest() {
        spectrum->channelCount = 4096;
        spectrum->calCurrent = {0, 1, 0};
    }
};

TEST_F(NuclideMarksTest, StandAroundEachLineInTheColourOfItsIntensity) {
    struct Case {
        double intensity;
        std::size_t colour;
    };
    for (const Case& c : {Case{1, 0},
                          {1.01, 10},
                          {10, 10},
                          {10.01, 14},
                          {30, 14},
                          {30.01, 11},
                          {70, 11},
                          {70.01, 13},
                          {80, 13},
                          {80.01, 12},
                          {-5, 0}}) {
        build({{1000, c.intensity}, weak});
        EXPECT_EQ((*colours)[993], standardPalette.at(c.colour)) << c.intensity;
        EXPECT_EQ((*colours)[1006], standardPalette.at(c.colour)) << c.intensity;
        EXPECT_EQ(marked(), c.colour == 0 ? 0 : 14) << c.intensity;
    }
}

TEST_F(NuclideMarksTest, EndWithTheSpectrum) {
    struct Case {
        std::vector<MarkedLine> lines;
        int marked;
    };
    const Case cases[] = {
        {{{3, 50}, weak}, 9},          {{{-6, 50}, weak}, 0},         {{{-5, 50}, weak}, 1},
        {{{4090, 50}, {100, 50}}, 28}, {{{4091, 50}, {100, 50}}, 0},  {{{100, 50}}, 0},
        {{{1e9, 50}, {100, 50}}, 0},   {{{-1e9, 50}, {100, 50}}, 14}, {{}, 0},
    };
    int number = 0;
    for (const Case& c : cases) {
        build(c.lines);
        EXPECT_EQ(marked(), c.marked) << number;
        ++number;
    }
    spectrum->channelCount = 17001;
    build({{16995, 50}, weak});
    EXPECT_EQ(marked(), 13 + 0);
}

TEST_F(NuclideMarksTest, OverwriteEachOtherInTheOrderOfTheLines) {
    build({{1000, 90}, {1005, 0.5}});
    EXPECT_EQ(marked(), 5);
    EXPECT_EQ((*colours)[997], standardPalette[12]);
    EXPECT_EQ((*colours)[998], 0);
}

TEST_F(NuclideMarksTest, AreGoneWhenSwitchedOffAndWhateverTheCalibrationIs) {
    build({{1000, 90}, weak});
    build({{1000, 90}, weak}, false);
    EXPECT_EQ(marked(), 0);
    for (const Calibration& calibration : {Calibration{0, 0, 0},
                                           {0, 1e-9, 0},
                                           {0, -1e-9, 0},
                                           {0, 1, -1},
                                           {0, 1, 1e-12},
                                           {1e300, 1, 1},
                                           {0, 0, 1}}) {
        spectrum->calCurrent = calibration;
        EXPECT_NO_THROW(build({{1000, 90}, {1e6, 90}, {-1e6, 90}})) << calibration.b;
    }
}

TEST_F(NuclideMarksTest, OfSeveralHaveAColourEachAndTheStrongerLineOnTop) {
    const MarkedNuclide nuclides[] = {{"A-1", {{100, 90}, {200, 1}, {300, 50, false}}},
                                      {"B-2", {{104, 20}, {4095, 90}, {500, 2}}}};
    const NuclideMarks all = marksOfSeveral(nuclides, false, *spectrum, standardPalette);
    colourChannels(*colours, all);
    EXPECT_EQ((*colours)[106], all.legend[0].colour) << "of the stronger line";
    EXPECT_EQ((*colours)[107], all.legend[1].colour);
    EXPECT_EQ((*colours)[500], all.legend[1].colour);
    EXPECT_EQ((*colours)[300], all.legend[0].colour);
    EXPECT_EQ(marked(), 18 + 14 + 14);
    colourChannels(*colours, marksOfSeveral(nuclides, true, *spectrum, standardPalette));
    EXPECT_EQ((*colours)[300], 0) << "an electron line";
}

TEST_F(NuclideMarksTest, LeaveAWeakLineWithoutAColourInEveryPalette) {
    for (const ColourScheme scheme : {ColourScheme::Light, ColourScheme::Safe})
        EXPECT_EQ(
            marksOfOne({"A-1", {{100, 0.5}, {200, 50}}}, false, *spectrum, plotPalette(scheme))
                .lines[0]
                .colour,
            0);
}

TEST_F(NuclideMarksTest, HaveTextsThatNeitherOverlapNorLeaveThePlot) {
    MarkedNuclide crowded{"Xx-123", {}};
    for (int i = 0; i < 200; ++i)
        crowded.lines.push_back({20.0 * i, 2.0 + i % 90});
    const std::vector<MarkedNuclide> nuclides(mostMarkedNuclides, crowded);
    const ViewState view{.viewStartCh = 0, .viewEndCh = 2048, .viewWidth = 2048};
    test::RecordingCanvas canvas;
    canvas.setScale(plotScale(view));
    const NuclideMarks marks = marksOfSeveral(nuclides, false, *spectrum, standardPalette);
    EXPECT_EQ(markTexts(marks, false, view, canvas).size(), mostMarkedNuclides) << "a legend";
    const std::vector<PlacedText> texts = markTexts(marks, true, view, canvas);
    ASSERT_GT(texts.size(), mostMarkedNuclides + 10);
    const auto right = [&](const PlacedText& t) { return t.x + canvas.textWidth(t.text); };
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_TRUE(texts[i].x >= 0 && right(texts[i]) <= canvas.scale().right) << texts[i].text;
        for (std::size_t k = 0; k < i; ++k)
            EXPECT_TRUE(std::abs(texts[i].y - texts[k].y) >= canvas.textHeight() ||
                        right(texts[i]) < texts[k].x || right(texts[k]) < texts[i].x)
                << texts[i].text << ' ' << texts[k].text;
    }
}

}  // namespace
}  // namespace kestrel
