// The two binary forms of Labo files, which are recognised and refused: their layout is not known,
// and a guess would show wrong counts.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Always false; a missing file is told to the user.
bool readLaboFile(Spectrum& spectrum, Dialogs& dialogs);
bool readLaboV154File(Spectrum& spectrum, Dialogs& dialogs);

// Why a file was refused: that it is a Labo file or cannot be read, or nothing where it is none.
std::string laboRefusal(const std::string& path);

}  // namespace kestrel
