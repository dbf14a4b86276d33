// The energy list: the lines of the nuclide database near the energy at the cursor.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/dialogs.h"
#include "nuclide/database.h"
#include "nuclide/energy_filter.h"
#include "nuclide/line_colours.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// One row of a grid: the columns' texts and the numbers of their background colours.
struct EnergyRow {
    static constexpr std::size_t columns = 8;
    EnergyRow() { colour.fill(plainColour); }
    std::array<std::string, columns> text;
    std::array<int, columns> colour{};
    std::optional<double> halfLife;  // s
};

// Headings of the list from the database and of the list from the energy list file: columns
// separated by "|", ">" right-aligned, "<" left-aligned.
inline constexpr std::string_view databaseListFormat =
    "> |>Engy(keV) |>Int.(%)   |<Nuclide |>HalfLife    |>engy(maxBR)|>MaxInt(%) |<Def   ";
inline constexpr std::string_view fileListFormat =
    "> |>Energy   |>B.R.(%)   |<Nuclide |>HalfLife  |>energy   |>b.r.(%)   ";
inline constexpr std::size_t energyColumn = 1;
inline constexpr std::size_t nuclideColumn = 3;
inline constexpr std::size_t halfLifeColumn = 4;

struct EnergyList {
    std::string_view format = databaseListFormat;
    std::vector<EnergyRow> rows;  // row 1 of the grid first
    // Rows counted from 1; 0 for none.
    int firstVisible = 0;
    int current = 0;
    int nearest = 0;               // the row whose energy is nearest to the cursor's
    double energy = 0;             // of the cursor, keV
    std::size_t linesInRange = 0;  // of the database, with those that the Gate hides
};

// Sets the nearest row; the first of those that are equally near. There must be lines.
void markNearest(EnergyList& list);

// What stands below a list: "Cursor: 661.7 keV", and behind it how many lines the Gate hides.
std::string cursorText(const EnergyList& list);
std::string hiddenLinesText(const EnergyList& list);

// What the window keeps between two refreshes.
struct EnergyListState {
    EnergyList list;
    std::string updateText = "Update:";
    std::int16_t lastCursorChannel = 0;
    bool forceRefresh = false;
    std::string failure;       // why the database could not be used; empty when it was
    std::string failedFolder;  // where that was
};

struct EnergyListInput {
    std::int16_t cursorCh;
    const Calibration& calibration;
    const EnergyEntries& entries;
    const std::string& marigoldDir;
};

// Rebuilds the list when the cursor has moved since the last time, when that is forced, or when the
// database failed and its folder has been changed; true when the list is another one now. Without a
// usable database, which is shown to the user, the list comes from the energy list file if there is
// one. Faults: those of listFromDatabase.
bool refreshEnergyList(EnergyListState& state, const EnergyListInput& input,
                       NuclideDatabase& database, Dialogs& dialogs);

// The list around an energy (keV), sorted, with its middle row as the current one. The database
// must be open and its energy window query prepared. Throws DatabaseError. Faults: those of
// EnergyFilter.
EnergyList listFromDatabase(NuclideDatabase& database, const EnergyEntries& entries, double energy);

// The key of the nuclide that a row is of; empty where it names none.
std::string nuclideOfRow(const EnergyRow& row);

// Day of the last change of a file, "yyyy/mm/dd", in local time; empty when that is not known.
std::string fileDate(const std::string& path);

}  // namespace kestrel
