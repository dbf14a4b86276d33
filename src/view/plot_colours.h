// The colours that the plot can be drawn in.
#pragma once

#include <cstdint>

namespace kestrel {

enum class ColourScheme : std::int16_t {
    Black,  // light on black
    Light,  // dark on white, for slides and paper
    Safe,   // told apart also by those who see no red or green
};

}  // namespace kestrel
