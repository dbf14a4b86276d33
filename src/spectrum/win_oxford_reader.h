// Reader of the text files that the Windows software of Oxford analysers exports.
#pragma once

#include <string_view>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The one of its labels that says how many channels follow, and that the DOS form does not know.
inline constexpr std::string_view winOxfordMark = "Conversion Gain:";

// Reads spectrum.filePath. False when the file is missing, which the user is told, lacks one of the
// header labels or declares no channels; what was read by then stays. Times are in 20 ms ticks.
// Faults: Overflow, InputPastEnd (the table is shorter than the header says), SubscriptOutOfRange
// after 17001 counts.
bool readWinOxfordFile(Spectrum& spectrum, Dialogs& dialogs);

}  // namespace kestrel
