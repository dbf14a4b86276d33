// The peak-area results as a text file <name of the spectrum>.pkm.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "analysis/net_area.h"
#include "base/dialogs.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The name of the spectrum's file without folder and ending, and ".pkm".
std::string pkmFileName(const Spectrum& spectrum);

// Writes header and `lines` into `folder`, over an older file; lines end with CR LF, and texts keep
// the bytes that they have. Faults: those of replaceFile.
void writePkmFile(const Spectrum& spectrum, const std::string& folder,
                  const std::vector<std::string>& lines);

// The same, once the user agrees to the loss of an older file. False when the user does not; that
// file then stays. Faults: those of writePkmFile.
bool savePkmFile(const Spectrum& spectrum, const std::string& folder,
                 const std::vector<std::string>& lines, Dialogs& dialogs);

// The regions of the lines of such a file, at most mostPeakSets.
struct ReadRegions {
    std::vector<PeakRegions> regions;
    std::string refusal = {};  // why, and in which line; empty where the file was read
};
ReadRegions readPkmText(std::string_view text);
// Faults: those of InputFile.
ReadRegions loadPkmFile(const std::string& path);

}  // namespace kestrel
