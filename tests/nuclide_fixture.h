// Nuclide databases for tests: the one that comes with the program, a small Access file, and made
// ones.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "make_nuclide_data/nuclide_tables.h"
#include "nuclide/database.h"
#include "temp_folder.h"

namespace kestrel::test {

inline NuclideDatabase nuclideDatabase() {
    return NuclideDatabase(KESTREL_JET_READER);
}

// The reason for which the database of a folder is refused; empty when it opens. It names the file.
inline std::string refusalOf(const std::string& folder) {
    NuclideDatabase database = nuclideDatabase();
    try {
        database.open(folder);
    } catch (const DatabaseError& error) {
        const std::string why = error.what();
        EXPECT_NE(why.find(folder), std::string::npos) << why;
        EXPECT_FALSE(database.isOpen());
        return why;
    }
    return {};
}

inline std::string smallJetFile() {
    return KESTREL_TEST_DATA "/jet/nuc2k.mdb";
}

// Bytes of the small Access file.
inline std::string smallJetBytes() {
    return contentsOf(smallJetFile());
}

// One gamma line of 661.66 keV, and what a test changes of it.
inline NuclideTables oneLine() {
    NuclideTables tables;
    tables.nuclides.push_back(
        {1, "Cs", 55, 137, 0, "30.07 Y", 9.5e8, "B-", 661.66, 85.1, "2023-09-01"});
    tables.lines.push_back({1, 1, 661.66, 85.1, "G", "B-", ""});
    return tables;
}

inline void writeDatabase(const TempFolder& folder, const NuclideTables& tables) {
    writeNuclideDatabase(tables, folder.file("nuc2k.mdb"));
}

}  // namespace kestrel::test
