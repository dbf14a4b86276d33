// The energy list file eng_list/all_nucl.elf: all lines in records of 48 bytes, by ascending
// energy.
#pragma once

#include <string>

#include "nuclide/energy_list.h"

namespace kestrel {

// Its path below the folder of the nuclide database, in any letter case.
std::string energyListFilePath(const std::string& marigoldDir);

// The 100 records around an energy in keV, the first of them at most 50 records before it. Few
// records are read, however long the file is. Faults: those of InputFile; PathAccess also for a
// file of more than ten million records.
EnergyList listFromFile(const std::string& path, double energy);

}  // namespace kestrel
