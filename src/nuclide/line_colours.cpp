#include "nuclide/line_colours.h"

#include "nuclide/sqlite.h"

namespace kestrel {
namespace {

constexpr int lightGreen = 10;
constexpr int lightCyan = 11;
constexpr int lightRed = 12;
constexpr int lightMagenta = 13;
constexpr int yellow = 14;

constexpr float secondsPerYear = 31557600.0F;
constexpr float secondsPerDay = 86400.0F;
constexpr float secondsPerHour = 3600.0F;
constexpr double nearby = 0.5;  // keV

}  // namespace

int intensityColour(float intensity) {
    if (intensity > 80.0F)
        return lightRed;
    if (intensity > 70.0F)
        return lightMagenta;
    if (intensity > 30.0F)
        return lightCyan;
    if (intensity > 10.0F)
        return yellow;
    return intensity > 1.0F ? lightGreen : plainColour;
}

int halfLifeColour(float seconds) {
    if (seconds > secondsPerYear)
        return lightGreen;
    if (seconds > secondsPerDay)
        return lightCyan;
    return seconds > secondsPerHour ? yellow : plainColour;
}

int energyColour(float lineEnergy, double cursorEnergy) {
    const bool near = toSingle(cursorEnergy - nearby) < lineEnergy &&
                      lineEnergy < toSingle(cursorEnergy + nearby);
    return near ? lightGreen : plainColour;
}

}  // namespace kestrel
