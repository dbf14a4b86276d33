// Reader of the text files that the Windows software of Oxford analysers exports.
#pragma once

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// True for a file with the one of its labels that says how many channels follow, and that the DOS
// form does not know. Faults: those of LineReader.
bool isWinOxfordFile(InputFile& file);

// Refuses a file that lacks one of the header labels or declares no channels, and fails where a
// number does not fit, the table is shorter than the header says or has more than 17001 counts;
// what was read by then stays. Times are in 20 ms ticks. Faults: those of InputFile and LineReader.
ReadResult readWinOxfordFile(InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
