// Reader of CHN files, the binary format of ORTEC and SEIKO analysers, in its three kinds.
#pragma once

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Reads spectrum.filePath. False, with the header fields already overwritten and the pointer left
// as the hourglass, when the first word is not that of a CHN file. Times are in 20 ms ticks.
// Faults: those of InputFile; SubscriptOutOfRange, after 17001 counts, for a longer spectrum.
bool readChnFile(Spectrum& spectrum, Dialogs& dialogs);

}  // namespace kestrel
