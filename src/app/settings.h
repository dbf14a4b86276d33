// The settings file kestrel.inf: folders, calibration, window places and peak regions between runs.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "analysis/peak_area_set.h"
#include "base/window_placement.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The lines of each section of the file.
using SettingsSections = std::array<std::string, 7>;

struct Settings {
    std::string systemDir;      // folder of the settings file
    std::string marigoldDir;    // folder of the nuclide database
    std::string lastDirectory;  // where the open dialog starts
    std::string saveAsDir;      // where results are saved
    WindowPlacements windowPlacement;
    std::int16_t peakSetCount = 0;
    PeakAreaTable peakSets;
    SettingsSections asStored;  // as this run has read or last written them
};

// Reads the file in settings.systemDir into `settings` and `choice`. Every section is searched from
// the start of the file, so their order does not matter. Whatever is wrong with the file ends the
// reading silently; what has not been read by then keeps its value. The systemDir in the file,
// which may be a copy, is passed over. `checkDatabase` is then given the folder of the nuclide
// database, which it may change. Last, the directory lastDirectory is made current, if it exists.
using DatabaseCheck = std::function<void(std::string& marigoldDir)>;
void readSettings(Settings& settings, CalibrationChoice& choice,
                  const DatabaseCheck& checkDatabase = {});

// Writes the file anew, and makes the folder systemDir where it is missing. Sections that have not
// changed since they were read or written are taken as they stand in the file by now: another
// instance of the program may have changed them. Faults: those of replaceFile; the old file then
// stays as it was.
void writeSettings(Settings& settings, const CalibrationChoice& choice);

// Likewise, but leaves the file alone where no peak region or remark has changed.
void writePeakRegions(Settings& settings, const CalibrationChoice& choice);

}  // namespace kestrel
