// What a nuclide database must hold: one table, three views, and the columns that are read of them.
#pragma once

#include "nuclide/sqlite.h"

namespace kestrel {

// Throws DatabaseError that names every table, view and column that is missing.
void checkNuclideSchema(SqliteConnection& connection);

}  // namespace kestrel
