// Reader of the text files of Oxford's DOS software. Only the labels of the format are known; how
// values follow them is this reader's choice, and docs/file-formats.md tells one from the other.
#pragma once

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Reads spectrum.filePath. False when the file is missing, which the user is told, lacks one of the
// labels, has no channels or counts them with a gap; what was read by then stays. A start date that
// is missing or not understood stays blank, with its time. Times are in 20 ms ticks.
// Faults: Overflow; SubscriptOutOfRange after 17001 counts.
bool readDosOxfordFile(Spectrum& spectrum, Dialogs& dialogs);

}  // namespace kestrel
