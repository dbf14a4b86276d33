// Exporting the loaded spectrum as a file of another program's format.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Asks for a format and a file, starting in `lastDirectory`, which then becomes the current
// directory, with the entry `lastFormat` (counted from 1), which becomes the one that was chosen. A
// name with the ending of one of the formats is of that format; any other gets the ending of the
// entry. What the format cannot hold is told first, and the user may cancel. A file that cannot be
// written is told by its name. The spectrum stays what it was, with the name of its own file.
void exportAs(const Spectrum& spectrum, std::string& lastDirectory, int& lastFormat,
              Dialogs& dialogs);

}  // namespace kestrel
