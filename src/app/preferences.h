// The settings file kestrel.ini: what stands beside the described settings is kept in it between
// runs.
#pragma once

#include <string>
#include <vector>

#include "base/keyed_lines.h"
#include "base/window_placement.h"
#include "view/plot_look.h"

namespace kestrel {

// Each has a line in the table of preferences.cpp.
struct Preferences : PlotLook {
    std::string folder;  // of the file
    bool energyAxis = true;
    bool markLabels = false;
    bool photonsOnly = false;  // marks of gamma and X-rays, no electron lines
    WindowPlacement peaksWindow;
    WindowPlacement peakCalibrationWindow;
    std::string peakCalibration;           // applied last, as a file of it; none: empty
    std::vector<std::string> recentFiles;  // the last one first
    KeyedLines asStored;                   // as this run has read or last written them
};

// Reads the file in preferences.folder. What is missing or makes no sense keeps its value.
void readPreferences(Preferences& preferences);

// Writes those that have changed since they were read or written, and leaves the rest of the file,
// which another version or instance of the program may have written, as it is. Where none has
// changed the file is not touched. Faults: those of replaceFile; the old file then stays as it was.
void writePreferences(Preferences& preferences);

}  // namespace kestrel
