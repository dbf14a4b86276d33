#include "view/plot_look.h"

namespace kestrel {
namespace {

constexpr Palette lightPalette = {
    0xFFFFFF, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080, 0x008080, 0x404040,
    0x808080, 0xFF0000, 0x00A03C, 0x8C7800, 0x0000C0, 0xAA00AA, 0x006EA0, 0x000000,
};

// Green, cyan, red, magenta and yellow are the hues that Okabe and Ito chose for all kinds of
// colour vision ("Color Universal Design", 2002): sky blue, bluish green, vermilion, reddish purple
// and yellow.
constexpr Palette safePalette = {
    0x000000, 0x800000, 0x739E00, 0x808000, 0x000080, 0x800080, 0x008080, 0xC0C0C0,
    0x808080, 0xFF0000, 0xE9B456, 0x739E00, 0x005ED5, 0xA779CC, 0x42E4F0, 0xFFFFFF,
};

}  // namespace

const Palette& plotPalette(ColourScheme colours) {
    switch (colours) {
        case ColourScheme::Light:
            return lightPalette;
        case ColourScheme::Safe:
            return safePalette;
        case ColourScheme::Black:
            break;
    }
    return standardPalette;
}

}  // namespace kestrel
