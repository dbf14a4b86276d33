// Reader of the text files of Oxford's DOS software. Only the labels of the format are known; how
// values follow them is this reader's choice, and docs/file-formats.md tells one from the other.
#pragma once

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Refuses a file that lacks one of the labels, has no channels, counts them with a gap or has a
// channel without counts, and fails where a number does not fit or there are more than 17001
// counts; what was read by then stays. A start date that is missing or not understood stays blank,
// with its time. Neither comment nor calibration is touched. Times are in 20 ms ticks. Faults:
// those of InputFile and LineReader.
ReadResult readDosOxfordFile(InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
