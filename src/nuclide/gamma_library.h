// The gamma lines of all nuclides that pass the filters, read once from the nuclide database.
#pragma once

#include <string>
#include <vector>

#include "nuclide/database.h"
#include "nuclide/energy_filter.h"

namespace kestrel {

struct GammaLine {
    float energy = 0;     // keV
    float intensity = 0;  // per 100 decays
};

struct GammaNuclide {
    std::string key;               // "Eu-152g"
    std::string halfLife;          // as the database writes it
    float seconds = 0;             // the same in seconds
    std::vector<GammaLine> lines;  // ascending; without X-rays
    std::vector<GammaLine> xrays;
};

// The nuclides that have gamma lines, with their X-rays, which tell the element at most.
// Annihilation, which tells nothing, is left out. All filters count but the class of radiation. The
// database must be open; what a stranger's one can make of it is bounded by the rows of a query.
// Throws DatabaseError. Faults: those of EnergyFilter.
std::vector<GammaNuclide> readGammaLibrary(NuclideDatabase& database, const EnergyEntries& entries);

}  // namespace kestrel
