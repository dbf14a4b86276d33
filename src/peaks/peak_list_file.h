// The list of peaks as a text file of comma-separated values.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "peaks/peak_list.h"

namespace kestrel {

// A line of headings, then a line for each peak, with all columns.
std::string peakListText(const PeakList& list);

// Asks for a file, starting in `lastDirectory`, which then becomes the current directory, and
// writes the list to it. The name offered is that of the spectrum. Faults: those of replaceFile.
void savePeakList(const PeakList& list, const Spectrum& spectrum, std::string& lastDirectory,
                  Dialogs& dialogs);

}  // namespace kestrel
