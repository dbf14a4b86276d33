// The two binary forms of Labo files, which are recognised and refused: their layout is not known,
// and a guess would show wrong counts.
#pragma once

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Refuses every file of either form, and says whether it is a Labo file. Faults: those of
// InputFile.
ReadResult readLaboFile(InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
