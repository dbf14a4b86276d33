// The name of a spectrum, as its results and printouts carry it.
#pragma once

#include <string>

#include "spectrum/spectrum.h"

namespace kestrel {

// The name of the spectrum's file without folder and ending: up to the last point.
std::string baseName(const Spectrum& spectrum);

}  // namespace kestrel
