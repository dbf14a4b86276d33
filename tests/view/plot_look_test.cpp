#include "view/plot_look.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace kestrel {
namespace {

using Light = std::array<double, 3>;

// Linear light of a colour: red, green, blue from 0 to 1.
Light linear(Colour colour) {
    Light light{};
    for (std::size_t i = 0; i < 3; ++i) {
        const double part = ((colour >> (8 * i)) & 0xFF) / 255.0;
        light[i] = part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    }
    return light;
}

double luminance(const Light& light) {
    return 0.2126 * light[0] + 0.7152 * light[1] + 0.0722 * light[2];
}

double contrast(Colour a, Colour b) {
    const auto [low, high] = std::minmax({luminance(linear(a)), luminance(linear(b))});
    return (high + 0.05) / (low + 0.05);
}

// What somebody without the red or the green cones sees (Vienot, Brettel, Mollon 1999).
Light seen(const Light& light, bool withoutRed) {
    const double red = withoutRed ? 0.11238 : 0.29275;
    const double blue = withoutRed ? 0.00401 : -0.02234;
    const double redGreen = red * light[0] + (1 - red) * light[1];
    return {redGreen, redGreen, blue * light[0] - blue * light[1] + light[2]};
}

double distance(Colour a, Colour b, bool withoutRed) {
    const Light x = seen(linear(a), withoutRed);
    const Light y = seen(linear(b), withoutRed);
    double sum = 0;
    for (std::size_t i = 0; i < 3; ++i)
        sum += std::pow(std::cbrt(std::max(x[i], 0.0)) - std::cbrt(std::max(y[i], 0.0)), 2);
    return std::sqrt(sum);
}

// Of curve and marks, the least that two of them differ for the colour-blind.
double leastDistance(const Palette& palette) {
    constexpr std::array<std::size_t, 6> numbers = {10, 11, 12, 13, 14, 15};
    double least = 10;
    for (const std::size_t a : numbers) {
        for (const std::size_t b : numbers) {
            if (a < b)
                least = std::min({least, distance(palette.at(a), palette.at(b), true),
                                  distance(palette.at(a), palette.at(b), false)});
        }
    }
    return least;
}

TEST(PlotLook, HasColoursThatStandOutFromTheBackgroundAndFromEachOther) {
    for (const ColourScheme scheme :
         {ColourScheme::Black, ColourScheme::Light, ColourScheme::Safe}) {
        const Palette& palette = plotPalette(scheme);
        for (const std::size_t number : {2U, 10U, 11U, 12U, 13U, 14U, 15U})
            EXPECT_GT(contrast(palette.at(number), palette[0]), number == 2 ? 3.0 : 3.2)
                << static_cast<int>(scheme) << ": " << number;
    }
    EXPECT_EQ(plotPalette(ColourScheme::Black), standardPalette);
    EXPECT_GT(leastDistance(plotPalette(ColourScheme::Safe)), 0.15);
    EXPECT_LT(leastDistance(standardPalette), 0.1) << "or nobody would need the other";
}

}  // namespace
}  // namespace kestrel
