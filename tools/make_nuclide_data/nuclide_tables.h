// The two tables of evaluated decay data, data/nuclides.csv and data/lines.csv.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kestrel {

struct NuclideEntry {
    std::int32_t id = 0;
    std::string element;
    std::int32_t z = 0;
    std::int32_t a = 0;
    std::int32_t isomer = 0;  // 0: ground state
    std::string halfLife;     // number, blank, unit
    double halfLifeSeconds = 0;
    std::string decayModes;
    double strongestEnergy = 0;  // keV; 0 where the state has no gamma line
    double strongestIntensity = 0;
    std::string updated;  // yyyy-mm-dd
};

struct LineEntry {
    std::int32_t nuclide = 0;
    std::int32_t number = 0;
    double energy = 0;     // keV
    double intensity = 0;  // per 100 decays
    std::string radiation;
    std::string decayMode;
    std::string definition;
};

struct NuclideTables {
    std::vector<NuclideEntry> nuclides;
    std::vector<LineEntry> lines;
};

// Throws std::runtime_error that names file and line.
NuclideTables readNuclideTables(const std::string& folder);

// As nuc2k.mdb: an SQLite database with the tables elm, nc and eng, and the three views.
void writeNuclideDatabase(const NuclideTables& tables, const std::string& path);

// All lines by ascending energy in records of 48 bytes, as eng_list/all_nucl.elf.
void writeEnergyListFile(const NuclideTables& tables, const std::string& path);

}  // namespace kestrel
