// Reader of the printouts that CANBERRA Series 35+ analysers send over their serial line.
#pragma once

#include <string_view>

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The analyser's name, with which a printout begins.
inline constexpr std::string_view canberra35Mark = "SERIES 35+  V-2.00";

// Refuses a file that lacks the analyser's name, one of the labels or the table, and fails where a
// number does not fit, nothing follows the table's heading or there are more than 17001 counts;
// what was read by then stays. Times are in 20 ms ticks. Faults: those of InputFile and LineReader.
ReadResult readCanberra35File(InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
