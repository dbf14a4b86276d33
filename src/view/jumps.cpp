#include "view/jumps.h"

#include "base/integers.h"
#include "base/number_text.h"
#include "spectrum/energy_calibration.h"

namespace kestrel {
namespace {

double askNumber(const char* prompt, Dialogs& dialogs) {
    return parseLeadingNumber(
        dialogs.input({.prompt = prompt, .title = "Jump Cursol", .isNumber = true}));
}

}  // namespace

std::int16_t askChannel(Dialogs& dialogs) {
    return toInt16(askNumber("Input channel", dialogs));
}

std::int16_t askEnergy(const Calibration& calibration, Dialogs& dialogs) {
    return energyToChannel(calibration, askNumber("Input energy", dialogs));
}

}  // namespace kestrel
