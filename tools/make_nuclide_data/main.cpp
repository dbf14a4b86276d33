// make_nuclide_data FROM TO: makes nuc2k.mdb and eng_list/all_nucl.elf in the folder TO of the
// tables in the folder FROM.

#include <exception>
#include <filesystem>
#include <iostream>

#include "make_nuclide_data/nuclide_tables.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "Usage: make_nuclide_data FROM TO\n";
        return 2;
    }
    try {
        const std::filesystem::path to = argv[2];
        std::filesystem::create_directories(to / "eng_list");
        const kestrel::NuclideTables tables = kestrel::readNuclideTables(argv[1]);
        kestrel::writeNuclideDatabase(tables, (to / "nuc2k.mdb").string());
        kestrel::writeEnergyListFile(tables, (to / "eng_list" / "all_nucl.elf").string());
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
