// The table of the formats that the loaded spectrum can be exported to, and what each cannot hold.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// What files of a format have a place for.
struct PlacesFor {
    bool start = false;
    bool calibration = false;
    bool comment = false;
    bool detector = false;
    bool numbers = false;  // of analyser and segment
};

struct ExportFormat {
    const char* name = "";            // in the dialog
    std::string_view shortName = {};  // in sentences
    std::string_view ending = {};     // of file names, with its point
    std::string (*write)(const Spectrum& spectrum) = nullptr;
    void (*addOwnLosses)(const Spectrum& spectrum, std::vector<std::string>& losses) = nullptr;
    PlacesFor placesFor;
    int fewestChannels = 1;  // that readers take for a spectrum
    // Fields are written as they stand, also those that say nothing.
    bool keepsFields = false;
};

std::span<const ExportFormat> exportFormats();

// What a file of the format will not tell of the spectrum, as sentences; none as a rule where the
// format has a place for all.
std::vector<std::string> whatIsLost(const Spectrum& spectrum, const ExportFormat& format);

}  // namespace kestrel
