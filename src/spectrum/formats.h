// The table of spectrum file formats: what the open dialog offers, how a file is recognised, what
// it carries, and its reader.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Up to AllFiles the entries of the open dialog, counted from 1. Formats that the dialog does not
// offer follow.
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

// Lines: text whose line ends may be any. Fields: text at fixed places.
enum class Layout { Binary, Lines, Fields };
enum class StartOf { None, Minute, Second };
// What comes into calCurrent: the coefficients of the file, 1 keV a channel, or the user's.
enum class CalibrationOf { File, OneKeV, User };

struct SpectrumFormat {
    FormatId id{};
    const char* name = "";
    const char* pattern = "";
    // Must occur in the path, in any letter case.
    std::string_view ending = {};
    // None: files of this entry cannot be read.
    ReadResult (*read)(InputFile& file, Spectrum& spectrum) = nullptr;
    // Knows the format's files among those of the same ending. None: takes those that no other
    // knows.
    bool (*recognises)(InputFile& file) = nullptr;
    // A missing file gets a message of its own, and is refused.
    bool saysThatFileIsMissing = false;
    // How the counts stand in the file is not known: every file is refused, also one that cannot be
    // opened.
    bool refusesAll = false;

    // What files of the format carry.
    Layout layout = Layout::Binary;
    StartOf start = StartOf::Second;
    bool description = true;
    CalibrationOf calibration = CalibrationOf::File;
    // The times, in whole seconds, stand in the places of channels 0 and 1.
    bool timesInChannels = false;
};

// Every format, each at the place of its FormatId - 1.
std::span<const SpectrumFormat> spectrumFormats();
const SpectrumFormat& formatOf(FormatId id);

// Those that the open dialog offers, in its order.
std::span<const SpectrumFormat> dialogFormats();
// The format of an entry of the dialog, counted from 1; null outside it.
const SpectrumFormat* formatOfEntry(int filterIndex);

// The format of a file by the ending of its name and, where formats share it, by what is in the
// file; null where no format has such names. A file that is not there is left to the first of its
// ending, which says so. Faults: those of InputFile.
const SpectrumFormat* formatForName(const std::string& path);

// The endings that formatForName knows, as ".a, .b or .c".
std::string knownEndings();

// Blanks what the format does not speak of, and reads the file with the format's reader, which must
// exist. Times are in 20 ms ticks. Whatever ends the reading, what was read by then stays in
// `spectrum`. A fault of the reader is a failure without a reason. Faults: none.
ReadResult readAs(const SpectrumFormat& format, InputFile& file, Spectrum& spectrum);

}  // namespace kestrel
