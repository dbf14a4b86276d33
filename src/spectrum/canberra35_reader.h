// Reader of the printouts that CANBERRA Series 35+ analysers send over their serial line.
#pragma once

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Reads spectrum.filePath. False when the file is missing, which the user is told, or lacks the
// analyser's name, one of the labels or the table; what was read by then stays. Times are in 20 ms
// ticks. Faults: Overflow, InputPastEnd (nothing follows the table's heading), SubscriptOutOfRange
// after 17001 counts.
bool readCanberra35File(Spectrum& spectrum, Dialogs& dialogs);

}  // namespace kestrel
