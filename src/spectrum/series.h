// Leafing through the spectra of a folder: which file comes next, and opening it.
#pragma once

#include <string>

#include "base/dialogs.h"
#include "spectrum/open_spectrum.h"

namespace kestrel {

enum class Direction { Previous, Next };

// The full path of the spectrum file that comes before or after `path` in its folder; empty where
// none does. The file of that path need not be there itself. Spectrum files are those with an
// ending of a format, in the order of their names: letter case does not count, and numbers count as
// such, so that run9.chn comes before run10.chn.
std::string neighbourFile(const std::string& path, Direction direction);

// Opens the neighbour of `present` as openAnyPath does, or tells that there is none. Where no file
// is present, the first of `lastDirectory` comes next. The neighbour is the present file from then
// on, also where it is refused or ends in a fault, so that leafing goes on behind it; the loaded
// spectrum then stays as it was. Faults: those of openAnyPath.
OpenResult openNeighbour(Direction direction, std::string& present, const OpenTarget& target,
                         std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs);

}  // namespace kestrel
