// The bytes of an SQLite database with all user tables of an Access file, and its stored SELECT
// queries as views.
#pragma once

#include <string>

namespace kestrel::jet {

// Throws JetError, for a query of the nuclide database that cannot be rebuilt as well.
std::string importJetFile(const std::string& path);

}  // namespace kestrel::jet
