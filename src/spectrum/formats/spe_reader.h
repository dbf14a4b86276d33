// Reader of SPE files, the text format of the IAEA: blocks that begin with a line like "$DATA:".
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeSpe(std::string_view front);

// The spectra of the file in its order; "$ENDRECORD:" ends each but the last. Of several
// calibrations, that of $MCA_CAL comes before $ENER_FIT, and this before tables of energies: it has
// more digits. Faults: FormatError.
std::vector<MeasuredSpectrum> readSpe(std::string_view bytes);

}  // namespace kestrel
