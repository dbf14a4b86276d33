// Where the nuclide database lies: the check at the start, and the two ways in which the user says
// where it is.
#pragma once

#include <string>

#include "base/dialogs.h"

namespace kestrel {

// Asks for the database file; the dialog opens on the one in `bundledFolder`. True when
// `marigoldDir` is now the folder of a file with the right name. A cancelled dialog leaves it as it
// was, another file empties it.
bool locateNuclideDatabase(std::string& marigoldDir, const std::string& bundledFolder,
                           Dialogs& dialogs);

// Locates the database when there is none in `marigoldDir`, and says so when that fails.
void checkNuclideDatabase(std::string& marigoldDir, const std::string& bundledFolder,
                          Dialogs& dialogs);

}  // namespace kestrel
