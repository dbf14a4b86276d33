#include "spectrum/open_spectrum.h"

#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/text.h"
#include "spectrum/canberra35_reader.h"
#include "spectrum/chn_reader.h"
#include "spectrum/data_information.h"
#include "spectrum/dos_oxford_reader.h"
#include "spectrum/labelled_lines.h"
#include "spectrum/labo_reader.h"
#include "spectrum/naig_reader.h"
#include "spectrum/win_oxford_reader.h"

namespace kestrel {
namespace {

using Reader = bool (*)(Spectrum&, Dialogs&);

struct Format {
    const char* text = "";
    const char* pattern = "";
    const char* extension = "";  // must occur in the path, in any letter case
    Reader reader = nullptr;     // null: files of this format cannot be read
    // What can be said about a file that was refused; null: nothing.
    std::string (*refusal)(const std::string& path) = nullptr;
};

constexpr std::array<Format, 8> formats = {{
    {"ORTEC, SEIKO (chn)", "*.chn", ".chn", readChnFile},
    {"Win Oxford (asc)", "*.asc", ".asc", readWinOxfordFile},
    {"DOS Oxford (asc)", "*.asc", ".asc", readDosOxfordFile},
    {"Labo (binary)", "*.dat", ".dat", readLaboFile, laboRefusal},
    {"Labo v1.54(binary)", "*.dat", ".dat", readLaboV154File, laboRefusal},
    {"CANBERRA35+ RS232C (txt)", "*.txt", ".txt", readCanberra35File},
    {"NAIG E-560  RS232C (txt)", "*.txt", ".txt", readNaigE560File},
    {"All File", "*.*", "", nullptr},
}};

// What the ending of a name alone calls for. Of two formats with one ending, the second is taken
// for a file without the text that the first always carries.
struct Ending {
    std::string_view text;
    int filterIndex;
    std::string_view mark = {};
    int filterWithoutMark = 0;
};

constexpr std::array<Ending, 4> endings = {{
    {".chn", 1},
    {".asc", 2, winOxfordMark, 3},
    {".dat", 4},
    {".txt", 6, canberra35Mark, 7},
}};

FileDialog openDialog(const std::string& folder, int filterIndex) {
    FileDialog dialog{.title = "Open", .filters = {}, .filterIndex = filterIndex, .folder = folder};
    for (const Format& format : formats)
        dialog.filters.push_back({format.text, format.pattern});
    return dialog;
}

// Null when the path lacks the extension of the filter entry.
const Format* formatFor(int filterIndex, const std::string& path) {
    if (filterIndex < 1 || filterIndex > static_cast<int>(formats.size()))
        return nullptr;
    const Format& format = formats[static_cast<std::size_t>(filterIndex) - 1];
    return containsIgnoringCase(path, format.extension) ? &format : nullptr;
}

bool carries(const std::string& path, std::string_view mark) {
    InputFile file(path);
    LineReader lines(file);
    return passLine(lines, mark);
}

// A file that is not there is left to the first reader of its ending, which says so. 0: no format
// has such names.
int filterForName(const std::string& path) {
    for (const Ending& ending : endings) {
        if (!equalIgnoringCase(lastCharacters(path, ending.text.size()), ending.text))
            continue;
        const bool first = ending.mark.empty() || !fileExists(path) || carries(path, ending.mark);
        return first ? ending.filterIndex : ending.filterWithoutMark;
    }
    return 0;
}

OpenResult openChosenFile(const FileChoice& choice, const OpenTarget& target,
                          std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs) {
    lastFilterIndex = choice.filterIndex;
    lastDirectory = currentDirectory();
    if (choice.path.empty())
        return OpenResult::Cancelled;
    target.spectrum.filePath = choice.path;
    return readSpectrumByFormat(lastFilterIndex, target, dialogs) ? OpenResult::Loaded
                                                                  : OpenResult::Refused;
}

}  // namespace

OpenResult openSpectrumFile(const OpenTarget& target, std::string& lastDirectory,
                            int& lastFilterIndex, Dialogs& dialogs) {
    const FileChoice choice = dialogs.openFile(openDialog(lastDirectory, lastFilterIndex));
    return openChosenFile(choice, target, lastDirectory, lastFilterIndex, dialogs);
}

OpenResult openSpectrumPath(const std::string& path, const OpenTarget& target,
                            std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs) {
    const int filterIndex = filterForName(path);
    if (filterIndex == 0) {
        dialogs.message({.text = "This is no spectrum file by its name, which must end in\n"
                                 ".chn, .asc, .dat or .txt.",
                         .details = path});
        return OpenResult::Refused;
    }
    // As the dialog does with a file that is chosen there.
    std::error_code staysWhereItIs;
    std::filesystem::current_path(std::filesystem::path(path).parent_path(), staysWhereItIs);
    return openChosenFile({path, filterIndex}, target, lastDirectory, lastFilterIndex, dialogs);
}

bool readSpectrumByFormat(int filterIndex, const OpenTarget& target, Dialogs& dialogs) {
    Spectrum& spectrum = target.spectrum;
    const Format* const format = formatFor(filterIndex, spectrum.filePath);
    if (format == nullptr || format->reader == nullptr || !format->reader(spectrum, dialogs)) {
        dialogs.setPointer(Pointer::Default);
        const bool reasoned = format != nullptr && format->refusal != nullptr;
        dialogs.message({.text = "File does not read.\nDifferent format ?!   Check file type !!",
                         .details = reasoned ? format->refusal(spectrum.filePath) : std::string()});
        return false;
    }
    if (spectrum.useFileCalibration == 0)
        spectrum.calCurrent = spectrum.calDefault;
    computeDerivedArrays(spectrum, target.derived);
    // Before the conversion of the times: the live time of the data information is in ticks.
    target.headerLines = buildHeaderLines(spectrum);
    spectrum.liveTimeTicks = spectrum.liveTime;
    spectrum.liveTime = toInt32(spectrum.liveTime / ticksPerSecond);
    spectrum.realTime = toInt32(spectrum.realTime / ticksPerSecond);
    return true;
}

}  // namespace kestrel
