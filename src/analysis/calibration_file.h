// The peaks of a calibration as a small text file, <name>.pcal.
#pragma once

#include <string>
#include <string_view>

#include "analysis/peak_calibration.h"

namespace kestrel {

inline constexpr std::string_view calibrationFileEnding = ".pcal";

// A line "Kestrel peak calibration", one "curve line" or "curve parabola", and a line of channel,
// its error, energy in keV, and "used" or "unused" for each peak, separated by blanks.
std::string calibrationText(const CalibrationPoints& points);

// Reads it back whole or not at all; the refusal says what is wrong and in which line.
// At most 1000 peaks; channels in 0 .. 17000, energies above 0 and below 100 MeV.
struct ReadPoints {
    CalibrationPoints points;
    std::string refusal;  // empty where the text was read
};
ReadPoints readCalibrationText(std::string_view text);

// The same with files. Faults: those of replaceFile; those of InputFile.
void saveCalibration(const std::string& path, const CalibrationPoints& points);
ReadPoints loadCalibration(const std::string& path);

}  // namespace kestrel
