#include "spectrum/open_spectrum.h"

#include <array>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/text.h"
#include "spectrum/canberra35_reader.h"
#include "spectrum/chn_reader.h"
#include "spectrum/data_information.h"
#include "spectrum/dos_oxford_reader.h"
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

constexpr double ticksPerSecond = 50.0;

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

}  // namespace

OpenResult openSpectrumFile(const OpenTarget& target, std::string& lastDirectory,
                            int& lastFilterIndex, Dialogs& dialogs) {
    const FileChoice choice = dialogs.openFile(openDialog(lastDirectory, lastFilterIndex));
    lastFilterIndex = choice.filterIndex;
    lastDirectory = currentDirectory();
    if (choice.path.empty())
        return OpenResult::Cancelled;
    target.spectrum.filePath = choice.path;
    return readSpectrumByFormat(lastFilterIndex, target, dialogs) ? OpenResult::Loaded
                                                                  : OpenResult::Refused;
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
