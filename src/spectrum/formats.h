// The table of spectrum file formats: what the open dialog offers, how a file is recognised, what
// it carries, and its reader.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// The entries of the open dialog, counted from 1.
enum class FormatId : int {
    Chn = 1,
    WinOxford,
    DosOxford,
    Labo,
    LaboV154,
    Canberra35,
    NaigE560,
    AllFiles,
};

struct SpectrumFormat {
    FormatId id{};
    const char* name = "";
    const char* pattern = "";
    // Must occur in the path, in any letter case.
    std::string_view ending = {};
    // None: files of this entry cannot be read.
    ReadResult (*read)(InputFile& file, Spectrum& spectrum) = nullptr;
    // The text by which a file is known among those of its ending. The last format of an ending is
    // taken for those that no other knows, and needs none.
    std::string_view mark = {};
    // A missing file gets a message of its own, and is refused.
    bool saysThatFileIsMissing = false;
    // A file that cannot be opened is refused, where that is a fault as a rule.
    bool refusesUnreadable = false;
    // What files of the format speak of.
    bool start = true;
    bool description = true;
    bool calibration = true;
};

// In the order of the open dialog.
const std::array<SpectrumFormat, 8>& spectrumFormats();

// The format of an entry of the open dialog; null outside 1 to 8.
const SpectrumFormat* formatOf(int filterIndex);

// The format of a file by the ending of its name and, where formats share it, by their marks; null
// where no format has such names. A file that is not there is left to the first of its ending,
// which says so. Faults: those of InputFile.
const SpectrumFormat* formatForName(const std::string& path);

// Blanks what the format does not speak of, and reads the file with the format's reader, which must
// exist. Times are in 20 ms ticks. Whatever ends the reading, what was read by then stays in
// `spectrum`. A fault of the reader is a failure without a reason. Faults: none.
ReadResult readAs(const SpectrumFormat& format, InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
