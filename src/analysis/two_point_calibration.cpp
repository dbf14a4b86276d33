#include "analysis/two_point_calibration.h"

#include <cmath>
#include <limits>

#include "base/number_text.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

// A typed number (compatibility: single precision). 0.1 becomes 0.10000000149.
double singleNumber(const std::string& text) {
    const double value = parseLeadingNumber(text);
    const auto narrowed = static_cast<float>(value);
    if (std::isinf(narrowed))
        throw RuntimeFault(Fault::Overflow);
    return double{narrowed};
}

void refuse(const char* text, Dialogs& dialogs) {
    dialogs.message({.text = text, .title = "Error...", .icon = Icon::Question});
}

}  // namespace

bool acceptCalibration(Spectrum& spectrum, CalibrationChoice& choice, const CalibrationTexts& typed,
                       CalibrationTexts& kept, Dialogs& dialogs) {
    if (choice.useFileCalibration) {
        spectrum.calCurrent = spectrum.calFromFile;
        return true;
    }
    const double channelLow = singleNumber(typed.channelLow);
    const double energyLow = singleNumber(typed.energyLow);
    const double channelHigh = singleNumber(typed.channelHigh);
    const double energyHigh = singleNumber(typed.energyHigh);
    // With both wrong, only the energies are named.
    if (energyLow >= energyHigh) {
        refuse("Energy Error\rEnergy(low) >= Energy(high)", dialogs);
        return false;
    }
    if (channelLow >= channelHigh) {
        refuse("Ch Error\rCh(low) >= Ch(high)", dialogs);
        return false;
    }
    const double slope = (energyLow - energyHigh) / (channelLow - channelHigh);
    choice.calDefault = {.a = energyLow - channelLow * slope, .b = slope, .c = 0};
    spectrum.calCurrent = choice.calDefault;
    kept = typed;
    return true;
}

}  // namespace kestrel
