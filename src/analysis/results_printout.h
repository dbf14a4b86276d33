// The peak-area results on paper: the lines of the .pkm file under a title.
#pragma once

#include <string>
#include <vector>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Prints title, header, `lines` and the closing rule on as many pages as they need. On each further
// page the file's name, the page's number and the column headings stand above them. `printoutDate`
// is the current date and time. The document is left open.
// Faults: those of the print job.
void printResults(const Spectrum& spectrum, const std::vector<std::string>& lines,
                  const std::string& printoutDate, PrintJob& job);

}  // namespace kestrel
