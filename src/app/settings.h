// The settings file kestrel.inf: folders, calibration, window places and peak regions between runs.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "analysis/peak_area_set.h"
#include "base/window_placement.h"
#include "spectrum/spectrum.h"

namespace kestrel {

struct Settings {
    std::string systemDir;      // folder of the settings file
    std::string marigoldDir;    // folder of the nuclide database
    std::string lastDirectory;  // where the open dialog starts
    std::string saveAsDir;      // where results are saved
    WindowPlacements windowPlacement;
    std::int16_t peakSetCount = 0;
    PeakAreaTable peakSets;
};

// Reads the file in settings.systemDir into `settings` and the default calibration and its flag
// into `spectrum`. Every section is searched from the start of the file, so their order does not
// matter. Whatever is wrong with the file ends the reading silently; what has not been read by then
// keeps its value. A systemDir in the file counts only if it is the full path of an existing
// folder. `checkDatabase` is then given the folder of the nuclide database, which it may change.
// Last, the directory lastDirectory is made current, if it exists.
using DatabaseCheck = std::function<void(std::string& marigoldDir)>;
void readSettings(Settings& settings, Spectrum& spectrum, const DatabaseCheck& checkDatabase = {});

// Writes all seven sections anew, and makes the folder systemDir where it is missing. Faults: those
// of replaceFile; the old file then stays as it was.
void writeSettings(const Settings& settings, const Spectrum& spectrum);

}  // namespace kestrel
