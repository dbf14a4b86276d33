// Where the program finds what was built or installed with it.
#pragma once

#include <string>

namespace kestrel {

struct Places {
    std::string nuclideData;  // folder of the nuclide database that comes with the program
    std::string jetReader;    // the program that reads Access databases
};

// Beside the program in its build folder, or under the prefix that it is installed in. What is not
// there keeps the path at which it should be.
Places findPlaces();
// The same for a program in this folder.
Places findPlaces(const std::string& programFolder);

}  // namespace kestrel
