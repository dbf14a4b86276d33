#include "view/nuclide_marks.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace kestrel {
namespace {

class NuclideMarks : public testing::Test {
  protected:
    void build(const std::vector<MarkedLine>& lines, bool on = true) {
        buildNuclideMarks(*colours, on, lines, *spectrum, standardPalette);
    }
    int marked() const {
        return static_cast<int>(
            std::ranges::count_if(*colours, [](Colour colour) { return colour != 0; }));
    }
    std::unique_ptr<ChannelArray<Colour>> colours = std::make_unique<ChannelArray<Colour>>();
    std::unique_ptr<Spectrum> spectrum = std::make_unique<Spectrum>();
    // Out of the way, and too weak to be seen.
    const MarkedLine weak{8000, 1};

    NuclideMarks() {
        spectrum->channelCount = 4096;
        spectrum->calCurrent = {0, 1, 0};
    }
};

TEST_F(NuclideMarks, StandAroundEachLineInTheColourOfItsIntensity) {
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

TEST_F(NuclideMarks, EndWithTheSpectrum) {
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

TEST_F(NuclideMarks, OverwriteEachOtherInTheOrderOfTheLines) {
    build({{1000, 90}, {1005, 0.5}});
    EXPECT_EQ(marked(), 5);
    EXPECT_EQ((*colours)[997], standardPalette[12]);
    EXPECT_EQ((*colours)[998], 0);
}

TEST_F(NuclideMarks, AreGoneWhenSwitchedOffAndWhateverTheCalibrationIs) {
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

}  // namespace
}  // namespace kestrel
