#include "spectrum/efficiency_shape.h"

#include <cmath>

namespace kestrel {

double efficiencyShape(double energy) {
    constexpr double top = 150;  // keV
    return energy < top ? energy / top : std::pow(energy / top, -0.9);
}

}  // namespace kestrel
