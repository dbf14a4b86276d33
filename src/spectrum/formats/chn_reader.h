// Reader of CHN files, the binary format of ORTEC and SEIKO analysers, in its three kinds.
#pragma once

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Refuses a file whose first word is not that of a CHN file, with the header fields already
// overwritten, and fails after 17001 counts of a longer spectrum; the start time of either is as it
// stands in the file. Times are in 20 ms ticks. Faults: those of InputFile.
ReadResult readChnFile(InputFile& input, Spectrum& spectrum);

}  // namespace kestrel
