#include "nuclide/energy_list.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "base/text.h"
#include "nuclide/energy_list_file.h"
#include "nuclide/nuclide_key.h"
#include "spectrum/energy_calibration.h"

namespace kestrel {
namespace {

constexpr std::string_view energyPattern = "####0.00";
constexpr std::string_view intensityPattern = "###0.00";

std::string positiveText(double value, std::string_view pattern) {
    return formatNumber(value > 0 ? value : 0.0, pattern);
}

// What the line is; sums over several lines say "TOT".
std::string definitionOf(const Recordset& line) {
    std::string text = line.text("eng_raddef");
    return text.empty() ? line.text("eng_rad") : text;
}

EnergyRow rowOf(const Recordset& line, double cursorEnergy) {
    EnergyRow row;
    row.text[1] = formatNumber(line.number("eng_eng"), energyPattern);
    row.colour[1] = energyColour(line.single("eng_eng"), cursorEnergy);
    row.text[2] = formatNumber(line.number("eng_br"), intensityPattern);
    row.colour[2] = intensityColour(line.single("eng_br"));
    row.text[3] = nuclideKey(line.text("elm_name"), line.whole("nc_a"), line.whole("nc_i_num"));
    row.text[4] = line.text("nc_hl");
    row.halfLife = line.number("nc_tsec");
    row.colour[4] = halfLifeColour(line.single("nc_tsec"));
    row.text[5] = positiveText(line.number("nc_1st_br_eng"), energyPattern);
    row.text[6] = positiveText(line.number("nc_1st_br"), intensityPattern);
    row.text[7] = definitionOf(line);
    return row;
}

// Ascending by the energies as they are shown; equal ones stay in the order of the view.
void sortByEnergy(std::vector<EnergyRow>& rows) {
    std::vector<std::pair<double, std::size_t>> order;
    order.reserve(rows.size());
    for (const EnergyRow& row : rows)
        order.emplace_back(parseLeadingNumber(row.text[energyColumn]), order.size());
    if (std::ranges::is_sorted(order))
        return;
    std::ranges::sort(order);
    std::vector<EnergyRow> sorted;
    sorted.reserve(rows.size());
    for (const auto& [energy, index] : order)
        sorted.push_back(std::move(rows[index]));
    rows = std::move(sorted);
}

// The lines nearest to the cursor's energy stand in the middle, since the window is symmetric.
void goToMiddle(EnergyList& list) {
    const double rowCount = static_cast<double>(list.rows.size() + 1);
    list.current = toInt32(rowCount / 2);
    list.firstVisible = std::max(list.current - 2, 1);
}

double distanceOf(const EnergyRow& row, double energy) {
    return std::fabs(parseLeadingNumber(row.text[energyColumn]) - energy);
}

bool mustRebuild(EnergyListState& state, const EnergyListInput& input) {
    const bool relocated = !state.failure.empty() && state.failedFolder != input.marigoldDir;
    if (input.cursorCh == state.lastCursorChannel && !state.forceRefresh && !relocated)
        return false;
    state.forceRefresh = false;
    state.lastCursorChannel = input.cursorCh;
    return true;
}

bool refreshFromDatabase(EnergyListState& state, const EnergyListInput& input,
                         NuclideDatabase& database) {
    database.open(input.marigoldDir);
    database.prepareEnergyWindowQuery();
    if (input.cursorCh < 1)
        return false;
    const double energy = channelToEnergy(input.calibration, input.cursorCh);
    EnergyList list = listFromDatabase(database, input.entries, energy);
    state.updateText = "DB Update : " + fileDate(nuclideDatabasePath(input.marigoldDir));
    state.list = std::move(list);
    return true;
}

// False when there is no such file, or none that can be read.
bool refreshFromFile(EnergyListState& state, const EnergyListInput& input) {
    const std::string path = energyListFilePath(input.marigoldDir);
    if (input.cursorCh < 1 || !fileExists(path))
        return false;
    const double energy = channelToEnergy(input.calibration, input.cursorCh);
    try {
        state.list = listFromFile(path, energy);
    } catch (const RuntimeFault&) {
        return false;
    }
    state.updateText = "Update : " + fileDate(path) + " (energy list file, no database)";
    return true;
}

// Where the energy list file stands in, the same failure is told only once.
bool recover(EnergyListState& state, const EnergyListInput& input, const std::string& failure,
             Dialogs& dialogs) {
    const bool filled = refreshFromFile(state, input);
    const bool told = failure == state.failure;
    state.failure = failure;
    state.failedFolder = input.marigoldDir;
    dialogs.setPointer(Pointer::Default);
    if (!filled || !told)
        dialogs.message({.text = failure, .title = "ERROR: NuclDB", .icon = Icon::Exclamation});
    return filled;
}

}  // namespace

void markNearest(EnergyList& list) {
    const auto nearest = std::ranges::min_element(
        list.rows, {}, [&list](const EnergyRow& row) { return distanceOf(row, list.energy); });
    list.nearest = static_cast<int>(nearest - list.rows.begin()) + 1;
}

std::string cursorText(const EnergyList& list) {
    return list.energy == 0 ? std::string()
                            : "Cursor: " + formatNumber(list.energy, "0.0") + " keV";
}

std::string hiddenLinesText(const EnergyList& list) {
    const std::size_t shown = list.current == 0 ? 0 : list.rows.size();
    if (shown >= list.linesInRange)
        return {};
    return std::to_string(shown) + " of " + std::to_string(list.linesInRange) +
           " lines shown; the Gate hides the others";
}

EnergyList listFromDatabase(NuclideDatabase& database, const EnergyEntries& entries,
                            double energy) {
    const EnergyFilter filter(entries);
    const double halfWidth = halfWidthOf(entries);
    EnergyList list{.rows = {}, .energy = energy};
    const float low = toSingle(energy - halfWidth);
    const float high = toSingle(energy + halfWidth);
    Recordset& lines = database.queryEnergyWindow(low, high);
    for (; !lines.eof(); lines.moveNext()) {
        // The database compares its doubles with single bounds; a line at a bound is none of the
        // list.
        const float line = lines.single("eng_eng");
        if (line <= low || line >= high || definitionOf(lines).find("TOT") != std::string::npos)
            continue;
        ++list.linesInRange;
        if (filter.passes(lines))
            list.rows.push_back(rowOf(lines, energy));
    }
    if (list.rows.empty()) {
        list.rows.emplace_back().text[energyColumn] = "No Data";
        return list;
    }
    sortByEnergy(list.rows);
    goToMiddle(list);
    markNearest(list);
    return list;
}

bool refreshEnergyList(EnergyListState& state, const EnergyListInput& input,
                       NuclideDatabase& database, Dialogs& dialogs) {
    if (!mustRebuild(state, input))
        return false;
    dialogs.setPointer(Pointer::Hourglass);
    try {
        const bool filled = refreshFromDatabase(state, input, database);
        state.failure.clear();
        dialogs.setPointer(Pointer::Default);
        return filled;
    } catch (const DatabaseError& error) {
        return recover(state, input, error.what(), dialogs);
    }
}

std::string nuclideOfRow(const EnergyRow& row) {
    const std::string& label = row.text[nuclideColumn];
    const std::size_t dash = label.find('-');
    if (dash == std::string::npos || dash < 2)
        return {};
    return std::string(trimBlanks(std::string_view(label).substr(dash - 2)));
}

std::string fileDate(const std::string& path) {
    namespace chrono = std::chrono;
    std::error_code error;
    const std::filesystem::file_time_type changed = std::filesystem::last_write_time(path, error);
    if (error)
        return {};
    const std::time_t seconds =
        chrono::system_clock::to_time_t(chrono::time_point_cast<chrono::system_clock::duration>(
            chrono::file_clock::to_sys(changed)));
    const std::tm* const day = std::localtime(&seconds);
    if (day == nullptr)
        return {};
    return formatNumber(day->tm_year + 1900, "0000") + "/" + formatNumber(day->tm_mon + 1, "00") +
           "/" + formatNumber(day->tm_mday, "00");
}

}  // namespace kestrel
