// Reader of the spectra that NAIG E-560 analysers send over their serial line.
#pragma once

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Reads spectrum.filePath. False when the capture ends before its first value, or says with a
// question mark that it holds no spectrum; the file then stays open in spectrum.fileLeftOpen.
// channelCount becomes one more than there are values; times are in 20 ms ticks.
// A capture has no start. Faults: those of InputFile; PathAccess for a file above
// LineReader::largestFile; Overflow; SubscriptOutOfRange after 17001 values.
bool readNaigE560File(Spectrum& spectrum, Dialogs& dialogs);

}  // namespace kestrel
