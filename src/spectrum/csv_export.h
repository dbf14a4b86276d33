// The loaded spectrum as a text file of comma-separated values.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Four lines of header, then a line for each channel. Numbers too long for their column lose their
// leading digits. Faults: SubscriptOutOfRange for more than 17001 channels.
std::string csvText(const Spectrum& spectrum);

// Whether every count stands in its column with all its digits.
bool countsFitCsv(const Spectrum& spectrum);

// Asks for a file, starting in `lastDirectory`, which then becomes the current directory, and
// writes the spectrum to it. From then on spectrum.filePath is the path of the CSV file, also when
// writing it fails. False when the user cancelled. Faults: those of csvText and replaceFile.
bool saveAsCsv(Spectrum& spectrum, std::string& lastDirectory, Dialogs& dialogs);

}  // namespace kestrel
