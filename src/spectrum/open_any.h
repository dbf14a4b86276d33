// Opening a file by what it contains: the formats of today's programs beside those of the open
// dialog.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/open_spectrum.h"

namespace kestrel {

// Asks for a file of any format and opens it. `lastDirectory` and `lastFilterIndex` as for
// openSpectrumFile; the dialog's own filters leave `lastFilterIndex` alone.
OpenResult openAnySpectrum(const OpenTarget& target, std::string& lastDirectory,
                           int& lastFilterIndex, Dialogs& dialogs,
                           const std::string& title = "Open Any File");

// Opens the file at a full path by its content; what only its name tells goes the way of
// openSpectrumPath. Of several spectra in a file the user chooses one; one of more channels than
// can be shown has neighbours added, if the user agrees. What is refused is told with its reason
// and leaves the loaded spectrum as it was. Faults: those of openSpectrumPath.
OpenResult openAnyPath(const std::string& path, const OpenTarget& target,
                       std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs);

}  // namespace kestrel
