// Reader of SPC files: records of 128 bytes that point at one another, as ORTEC programs write
// them, and the text form of the same ending.
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeSpc(std::string_view front);
bool looksLikeTextSpc(std::string_view front);

// One spectrum. Times come from the two numbers of the first record, the start from the text of the
// acquisition record: the number of days beside it is hours off in some files. Faults: FormatError.
std::vector<MeasuredSpectrum> readSpc(std::string_view bytes);

// Lines like "Realtime : 849.510", then the counts. Faults: FormatError.
std::vector<MeasuredSpectrum> readTextSpc(std::string_view bytes);

}  // namespace kestrel
