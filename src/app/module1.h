// Module1: the one owner of all state that windows share. `main` makes it and hands it out by
// reference.
#pragma once

#include <string>
#include <vector>

#include "analysis/peak_data_sets.h"
#include "analysis/two_point_calibration.h"
#include "app/preferences.h"
#include "app/settings.h"
#include "base/palette.h"
#include "nuclide/database.h"
#include "nuclide/nuclide_data.h"
#include "spectrum/notice.h"
#include "view/comparison.h"
#include "view/nuclide_marks.h"
#include "view/view_state.h"

namespace kestrel {

struct Module1 {
    Spectrum spectrum;
    CalibrationChoice calibrationChoice;
    DerivedArrays derived;
    std::vector<std::string> headerLines;  // what the data information window lists
    Notice notice;                         // what the main window says of the spectrum
    ViewState view;
    Comparison comparison;                  // with a second spectrum
    ChannelArray<Colour> channelColour;     // 0: no nuclide mark
    Palette palette = standardPalette;      // of the tables
    Palette plotPalette = standardPalette;  // by the colours that the user has chosen
    Settings settings;
    Preferences preferences;
    int lastFilterIndex = 1;            // of the open dialog
    int lastExportFormat = 1;           // the entry of the export dialog
    std::string seriesFile;             // from which leafing goes on; none: the folder's begin
    CalibrationTexts calibrationTexts;  // the two points last accepted in this run
    PeakAreaState peakArea;
    NuclideDatabase database;
    NuclideData nuclide;                        // what the nuclide data window shows
    std::string selectedNuclide;                // its key, such as "Eu-152m" or "Co- 60g"
    bool nuclRoiOn = true;                      // the marks of nuclides are shown
    std::vector<MarkedNuclide> markedNuclides;  // chosen to be marked at once
    NuclideMarks marks;                         // as the plot shows them
};

// The state at a start of the program: settings read from `systemDir`, then a blank spectrum of
// 16384 channels. The calibration of the settings file does not last beyond this: every start is
// with 0.5 keV a channel and the files' own calibrations, and that is what the exit saves again.
// `checkDatabase` as in readSettings.
void startModule1(Module1& module, const std::string& systemDir,
                  const DatabaseCheck& checkDatabase = {});

}  // namespace kestrel
