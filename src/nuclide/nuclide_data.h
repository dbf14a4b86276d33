// What the nuclide data window shows of one nuclide state: half-life, decay modes, date and lines.
#pragma once

#include <array>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "base/dialogs.h"
#include "nuclide/database.h"
#include "nuclide/line_colours.h"

namespace kestrel {

// Headings of the table of lines, as those of the energy list.
inline constexpr std::string_view nuclideListFormat = "> |>Energy   |>Int.(%)   |<Rad#/dMode/Def ";

struct NuclideRow {
    std::string energy;      // keV
    std::string intensity;   // percent
    std::string definition;  // radiation and number, decay mode, definition
    int intensityColour = plainColour;
};

enum class LineKind { Gamma, XRay, Electron, Beta, Other };
LineKind kindOf(const NuclideRow& line);

struct NuclideData {
    std::string lastShown;  // key of the last lookup
    std::array<std::string, 3> summary;
    std::string updateText = "Update:";
    std::string source;  // of the gamma lines, with its date; empty where the database has none
    std::vector<NuclideRow> rows;  // below the heading; two empty ones for an unknown nuclide
    std::string failedFolder;      // of a database that could not be used at the last lookup
    bool failed = false;

    // A nuclide that is chosen anew is looked up again after a failure.
    void forgetFailure() {
        if (failed)
            lastShown.clear();
    }
};

// Looks up a key of the form "Eu-152m" and fills `data`; does nothing for the key of the last
// lookup, and nothing for one of another shape. The isomer number of the key does not count: a key
// with a mark other than "g" stands for all isomeric states. A state that is not there and a
// database that cannot be used are shown to the user. True when `data` has changed. Faults:
// SubscriptOutOfRange for more than five states.
bool showNuclideFromDatabase(
    NuclideData& data, const std::string& selectedNuclide, const std::string& marigoldDir,
    NuclideDatabase& database, Dialogs& dialogs, const std::function<void()>& show = [] {});

}  // namespace kestrel
