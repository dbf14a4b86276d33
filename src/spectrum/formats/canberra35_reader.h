// Reader of the printouts that CANBERRA Series 35+ analysers send over their serial line.
#pragma once

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// True for a file with the analyser's name, with which a printout begins. Faults: those of
// LineReader.
bool isCanberra35File(InputFile& file);

// Refuses a file that lacks the analyser's name, one of the labels or the table, and fails where a
// number does not fit, nothing follows the table's heading or there are more than 17001 counts;
// what was read by then stays. Times are in 20 ms ticks. Faults: those of InputFile and LineReader.
ReadResult readCanberra35File(InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
