#include "nuclide/nuclide_data.h"

#include <algorithm>

#include "base/checked_array.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::size_t shortestKey = 7;
constexpr std::size_t dashPlace = 2;
constexpr std::size_t mostStates = 5;
constexpr std::size_t massWidth = 3;

struct Query {
    std::string element;
    std::string mass;
    bool isomeric;
};

bool hasKeyShape(const std::string& key) {
    return key.size() >= shortestKey && key[dashPlace] == '-';
}

Query queryOf(const std::string& key) {
    constexpr std::size_t massPlace = 4;
    constexpr std::size_t massAndMark = 5;
    std::string mass(trimBlanks(fromCharacter(key, massPlace).substr(0, massAndMark)));
    const double number = parseLeadingNumber(mass);
    mass.insert(0, number < 10 ? 2 : number < 100 ? 1 : 0, ' ');
    const bool ground =
        mass.size() <= massWidth || containsIgnoringCase(mass.substr(massWidth), "g");
    return {toUpper(key.substr(0, 1)) + toLower(key.substr(1, 1)), mass, !ground};
}

struct States {
    CheckedArray<std::int32_t, mostStates> ids;
    std::size_t count = 0;
    std::string halfLife;
    std::string updated;
    std::string decayModes;
};

std::string dateText(std::string text) {
    constexpr std::size_t dateWidth = 10;
    text.resize(std::min(text.size(), dateWidth));
    std::ranges::replace(text, '-', '/');
    return text;
}

States readStates(Recordset records) {
    States states;
    if (records.eof() && records.bof())
        return states;
    records.moveFirst();
    for (bool first = true; !records.eof(); records.moveNext(), first = false) {
        states.decayModes += (first ? "" : "/") + records.text("nc_dmode");
        if (records.isNull("nc_1st_br") || !(records.single("nc_1st_br") > -1.0F))
            continue;
        if (states.count == 0) {
            states.halfLife = records.text("nc_hl");
            states.updated = dateText(records.text("nc_eng_update"));
        }
        states.ids[static_cast<std::int64_t>(states.count)] = records.whole("nc_id");
        ++states.count;
    }
    return states;
}

std::vector<NuclideRow> readLines(Recordset records) {
    std::vector<NuclideRow> rows;
    if (records.eof() && records.bof()) {
        rows.push_back({.energy = "No data", .intensity = {}, .definition = {}});
        return rows;
    }
    for (records.moveFirst(); !records.eof(); records.moveNext())
        rows.push_back({formatNumber(records.number("eng_eng"), "####0.00"),
                        formatNumber(records.number("eng_br"), "###0.00"),
                        records.text("eng_rad") +
                            formatNumber(records.number("eng_gam_num"), "000") + "/" +
                            records.text("eng_dmode") + "/" + records.text("eng_raddef"),
                        intensityColour(records.single("eng_br"))});
    return rows;
}

void summarise(NuclideData& data, const std::string& key, const States& states) {
    data.summary = {"Nuclide    : " + key, "Half Life  : " + states.halfLife,
                    "Decay Mode : " + states.decayModes};
    data.updateText = "Update : " + states.updated;
    data.source.clear();
}

// True when the state is in the database.
bool lookUp(NuclideData& data, const std::string& key, const std::string& marigoldDir,
            NuclideDatabase& database, const std::function<void()>& show) {
    data.rows.assign(2, {});
    summarise(data, key, {});
    show();  // what is seen if the look-up ends in a fault
    database.open(marigoldDir);
    const Query query = queryOf(key);
    const States states =
        readStates(database.queryNuclide(query.element, query.mass, query.isomeric));
    summarise(data, key, states);
    if (states.count == 0)
        return false;
    data.source = database.sourceOfState(states.ids[0]);
    const auto count = static_cast<std::int64_t>(states.count);
    data.rows = readLines(database.queryLinesOfNuclides(states.ids.span(0, count)));
    return true;
}

}  // namespace

LineKind kindOf(const NuclideRow& line) {
    const std::string definition = toUpper(trimBlanks(line.definition));
    if (definition.starts_with('G'))
        return definition.find("/X") == std::string::npos ? LineKind::Gamma : LineKind::XRay;
    if (definition.starts_with('E'))
        return LineKind::Electron;
    return definition.starts_with('B') ? LineKind::Beta : LineKind::Other;
}

bool showNuclideFromDatabase(NuclideData& data, const std::string& selectedNuclide,
                             const std::string& marigoldDir, NuclideDatabase& database,
                             Dialogs& dialogs, const std::function<void()>& show) {
    const bool relocated = data.failed && data.failedFolder != marigoldDir;
    if (selectedNuclide == data.lastShown && !relocated)
        return false;
    data.lastShown = selectedNuclide;
    data.failed = false;
    if (!hasKeyShape(selectedNuclide))
        return false;
    dialogs.setPointer(Pointer::Hourglass);
    MessageBox problem{.icon = Icon::Exclamation};
    try {
        if (!lookUp(data, selectedNuclide, marigoldDir, database, show)) {
            problem.text = "This nucl. does not exist on DB!";
            problem.title = "ERROR";
        }
    } catch (const DatabaseError& error) {
        data.failed = true;
        data.failedFolder = marigoldDir;
        problem.text = error.what();
        problem.title = "ERROR: NuclDB";
    }
    dialogs.setPointer(Pointer::Default);
    show();
    if (!problem.text.empty())
        dialogs.message(problem);
    return true;
}

}  // namespace kestrel
