#include "nuclide/gamma_library.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <unordered_map>

#include "nuclide/nuclide_key.h"

namespace kestrel {
namespace {

struct StateTable {
    std::vector<GammaNuclide> nuclides;
    std::unordered_map<std::int32_t, std::size_t> place;  // by the number of the state
};

StateTable readStates(NuclideDatabase& database, const EnergyFilter& filter) {
    StateTable table;
    for (Recordset state = database.queryAllStates(); !state.eof(); state.moveNext()) {
        if (!filter.passesState(state))
            continue;
        table.place.emplace(state.whole("nc_id"), table.nuclides.size());
        table.nuclides.push_back({.key = nuclideKey(state.text("elm_name"), state.whole("nc_a"),
                                                    state.whole("nc_i_num")),
                                  .halfLife = state.text("nc_hl"),
                                  .seconds = state.single("nc_tsec"),
                                  .lines = {},
                                  .xrays = {}});
    }
    return table;
}

// Numbers beyond single precision are infinite.
bool isPossible(const GammaLine& line) {
    return line.energy > 0 && std::isfinite(line.energy) && std::isfinite(line.intensity);
}

void readLines(NuclideDatabase& database, const EnergyFilter& filter, StateTable& table) {
    for (Recordset line = database.queryAllGammas(); !line.eof(); line.moveNext()) {
        const GammaLine gamma{line.single("eng_eng"), line.single("eng_br")};
        const auto state = table.place.find(line.whole("eng_nc"));
        if (state == table.place.end() || !isPossible(gamma) ||
            !filter.passesIntensity(gamma.intensity))
            continue;
        GammaNuclide& nuclide = table.nuclides[state->second];
        (line.text("eng_raddef").empty() ? nuclide.lines : nuclide.xrays).push_back(gamma);
    }
}

}  // namespace

std::vector<GammaNuclide> readGammaLibrary(NuclideDatabase& database,
                                           const EnergyEntries& entries) {
    const EnergyFilter filter(entries);
    StateTable table = readStates(database, filter);
    readLines(database, filter, table);
    std::erase_if(table.nuclides, [](const GammaNuclide& n) { return n.lines.empty(); });
    for (GammaNuclide& nuclide : table.nuclides)
        std::ranges::sort(nuclide.lines, {}, &GammaLine::energy);
    return std::move(table.nuclides);
}

}  // namespace kestrel
