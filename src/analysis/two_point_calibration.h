// The energy calibration dialog's decision: the file's own calibration, or the straight line
// through two points.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The two points as they are typed.
struct CalibrationTexts {
    std::string channelLow;
    std::string energyLow;  // keV
    std::string channelHigh;
    std::string energyHigh;
};

// OK of the dialog: sets the calibration in force. With useFileCalibration it is the file's, and
// `typed` is not looked at. With 0 it is the line through the two points; it becomes the user's
// calibration as well, and `typed` is kept in `kept`. False, after a message and without a change,
// when the points do not rise. Faults: Overflow (a number beyond single precision).
bool acceptCalibration(Spectrum& spectrum, CalibrationChoice& choice, const CalibrationTexts& typed,
                       CalibrationTexts& kept, Dialogs& dialogs);

}  // namespace kestrel
