// Reader of the printouts that CANBERRA Series 35+ analysers send over their serial line.
#pragma once

#include <string_view>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The analyser's name, with which a printout begins.
inline constexpr std::string_view canberra35Mark = "SERIES 35+  V-2.00";

// Reads spectrum.filePath. False when the file is missing, which the user is told, or lacks the
// analyser's name, one of the labels or the table; what was read by then stays. Times are in 20 ms
// ticks. Faults: Overflow, InputPastEnd (nothing follows the table's heading), SubscriptOutOfRange
// after 17001 counts.
bool readCanberra35File(Spectrum& spectrum, Dialogs& dialogs);

}  // namespace kestrel
