#include "spectrum/open_spectrum.h"

#include <array>
#include <filesystem>
#include <system_error>

#include "base/integers.h"
#include "base/text.h"
#include "spectrum/chn_reader.h"
#include "spectrum/data_information.h"

namespace kestrel {
namespace {

using Reader = bool (*)(Spectrum&, Dialogs&);

struct Format {
    const char* text;
    const char* pattern;
    const char* extension;  // must occur in the path, in any letter case
    Reader reader;          // null: files of this format cannot be read
};

constexpr std::array<Format, 8> formats = {{
    {"ORTEC, SEIKO (chn)", "*.chn", ".chn", readChnFile},
    {"Win Oxford (asc)", "*.asc", ".asc", nullptr},
    {"DOS Oxford (asc)", "*.asc", ".asc", nullptr},
    {"Labo (binary)", "*.dat", ".dat", nullptr},
    {"Labo v1.54(binary)", "*.dat", ".dat", nullptr},
    {"CANBERRA35+ RS232C (txt)", "*.txt", ".txt", nullptr},
    {"NAIG E-560  RS232C (txt)", "*.txt", ".txt", nullptr},
    {"All File", "*.*", "", nullptr},
}};

constexpr double ticksPerSecond = 50.0;

std::string currentDirectory() {
    std::error_code failed;
    return std::filesystem::current_path(failed).string();
}

FileDialog openDialog(const std::string& folder, int filterIndex) {
    FileDialog dialog{.title = "Open", .filters = {}, .filterIndex = filterIndex, .folder = folder};
    for (const Format& format : formats)
        dialog.filters.push_back({format.text, format.pattern});
    return dialog;
}

bool runReader(int filterIndex, Spectrum& spectrum, Dialogs& dialogs) {
    if (filterIndex < 1 || filterIndex > static_cast<int>(formats.size()))
        return false;
    const Format& format = formats[static_cast<std::size_t>(filterIndex) - 1];
    return format.reader != nullptr && containsIgnoringCase(spectrum.filePath, format.extension) &&
           format.reader(spectrum, dialogs);
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
    if (!runReader(filterIndex, spectrum, dialogs)) {
        dialogs.setPointer(Pointer::Default);
        dialogs.message({"File does not read.\nDifferent format ?!   Check file type !!"});
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
