// Reader of the spectra that NAIG E-560 analysers send over their serial line.
#pragma once

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Refuses a capture that ends before its first value, or that says with a question mark that it
// holds no spectrum; that file is to stay open. Fails where a value does not fit, and after 17001
// values. channelCount becomes one more than there are values; times are in 20 ms ticks; the start
// is not touched. Faults: those of InputFile; PathAccess for a file above LineReader::largestFile.
ReadResult readNaigE560File(InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
