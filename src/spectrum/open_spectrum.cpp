#include "spectrum/open_spectrum.h"

#include <filesystem>
#include <limits>
#include <memory>
#include <system_error>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/pointer_scope.h"
#include "base/text.h"
#include "spectrum/data_information.h"
#include "spectrum/formats.h"

namespace kestrel {
namespace {

FileDialog openDialog(const std::string& folder, int filterIndex) {
    FileDialog dialog{.title = "Open", .filters = {}, .filterIndex = filterIndex, .folder = folder};
    for (const SpectrumFormat& format : dialogFormats())
        dialog.filters.push_back({format.name, format.pattern});
    return dialog;
}

// After the second of two refused files there is still the way back to what was there before both.
void tellOfRefusal(const std::shared_ptr<const OpenedSpectrum>& before, const OpenTarget& target) {
    Notice& notice = target.notice;
    if (notice.before == nullptr)
        notice.before = before;
    const Spectrum& spectrum = target.spectrum;
    notice.lines = {refusalNotice(spectrum.filePath, notice.before->spectrum, spectrum)};
}

OpenResult openChosenFile(const FileChoice& choice, const OpenTarget& target,
                          std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs) {
    lastFilterIndex = choice.filterIndex;
    lastDirectory = currentDirectory();
    if (choice.path.empty())
        return OpenResult::Cancelled;
    const std::shared_ptr<const OpenedSpectrum> before = copyOf(target);
    target.spectrum.filePath = choice.path;
    try {
        if (readSpectrumByFormat(lastFilterIndex, target, dialogs))
            return OpenResult::Loaded;
    } catch (const RuntimeFault&) {
        tellOfRefusal(before, target);
        throw;
    }
    tellOfRefusal(before, target);
    return OpenResult::Refused;
}

// Stands where no reader can put a time.
constexpr Ticks notRead{std::numeric_limits<std::int64_t>::min()};

// What a file that was not read to its end leaves in the record: what was read of it by then, its
// start time as text, and what its format does not speak of as it was. Of its live time the number
// of ticks is told as if it were seconds: 15000 for the 300 s of a whole file.
void leaveRemains(const SpectrumFormat& format, const Spectrum& before, Spectrum& spectrum) {
    if (spectrum.liveTime == notRead)
        spectrum.liveTime = before.liveTime;
    else
        spectrum.liveTime.count *= Ticks::perSecond;
    spectrum.startTime.assignFromFile(std::string(spectrum.startTime.view()));
    if (format.start == StartOf::None) {
        spectrum.startDate = before.startDate;
        spectrum.startTime = before.startTime;
        spectrum.startSecondsRaw = before.startSecondsRaw;
    }
    if (!format.description) {
        spectrum.comment = before.comment;
        spectrum.chnTrailer.sample = before.chnTrailer.sample;
        spectrum.chnTrailer.sampleLength = before.chnTrailer.sampleLength;
    }
}

ReadResult readPath(const SpectrumFormat& format, Spectrum& spectrum) {
    const auto file = std::make_shared<InputFile>(spectrum.filePath);
    const auto before = std::make_unique<Spectrum>(spectrum);
    spectrum.liveTime = notRead;
    ReadResult result = readAs(format, *file, spectrum);
    if (result.end != Reading::Loaded)
        leaveRemains(format, *before, spectrum);
    if (result.keepsFileOpen)
        spectrum.fileLeftOpen = file;
    return result;
}

ReadResult readOrRefuse(const SpectrumFormat& format, Spectrum& spectrum, Dialogs& dialogs) {
    if (format.saysThatFileIsMissing && !fileExists(spectrum.filePath)) {
        dialogs.message({"File does not exist."});
        return refused({});
    }
    const HourglassScope hourglass(dialogs);
    try {
        return readPath(format, spectrum);
    } catch (const RuntimeFault&) {
        if (!format.refusesAll)
            throw;
        return refused("The file cannot be read.");
    }
}

// Of a filter entry that may be none, and of a file whose name need not fit it.
ReadResult readWithFilter(int filterIndex, Spectrum& spectrum, Dialogs& dialogs) {
    const SpectrumFormat* const format = formatOfEntry(filterIndex);
    if (format == nullptr || format->read == nullptr)
        return refused("The file type that was chosen has no reader.");
    if (!containsIgnoringCase(spectrum.filePath, format->ending))
        return refused("There is no \"" + std::string(format->ending) + "\" in the file name.");
    ReadResult result = readOrRefuse(*format, spectrum, dialogs);
    if (result.end == Reading::Failed)
        throw RuntimeFault(result.fault, result.reason + '\n' + spectrum.filePath);
    return result;
}

}  // namespace

OpenResult openSpectrumFile(const OpenTarget& target, std::string& lastDirectory,
                            int& lastFilterIndex, Dialogs& dialogs) {
    const FileChoice choice = dialogs.openFile(openDialog(lastDirectory, lastFilterIndex));
    return openChosenFile(choice, target, lastDirectory, lastFilterIndex, dialogs);
}

OpenResult openSpectrumPath(const std::string& path, const OpenTarget& target,
                            std::string& lastDirectory, int& lastFilterIndex, Dialogs& dialogs) {
    const SpectrumFormat* const format = formatForName(path);
    if (format == nullptr) {
        dialogs.message({.text = "This is no spectrum file by its name, which must end in\n" +
                                 knownEndings() + ".",
                         .details = path});
        return OpenResult::Refused;
    }
    // As the dialog does with a file that is chosen there.
    std::error_code staysWhereItIs;
    std::filesystem::current_path(std::filesystem::path(path).parent_path(), staysWhereItIs);
    return openChosenFile({path, static_cast<int>(format->id)}, target, lastDirectory,
                          lastFilterIndex, dialogs);
}

void finishOpening(const OpenTarget& target, bool tellsCalibration) {
    Spectrum& spectrum = target.spectrum;
    const CalibrationChoice& choice = target.calibrationChoice;
    if (!tellsCalibration || !choice.useFileCalibration)
        spectrum.calCurrent = choice.calDefault;
    computeDerivedArrays(spectrum, target.derived);
    target.notice = {};
    target.headerLines = buildHeaderLines(spectrum);
    for (const NamedValue& detail : spectrum.details)
        target.headerLines.push_back(detail.name + ": " + detail.value);
    spectrum.openedLiveTime = spectrum.liveTime;
}

std::shared_ptr<const OpenedSpectrum> copyOf(const OpenTarget& target) {
    auto copy = std::make_shared<OpenedSpectrum>();
    copy->spectrum = target.spectrum;
    copy->derived = target.derived;
    copy->headerLines = target.headerLines;
    return copy;
}

void bringBack(const OpenedSpectrum& opened, const OpenTarget& target) {
    target.spectrum = opened.spectrum;
    target.derived = opened.derived;
    target.headerLines = opened.headerLines;
}

void restoreBefore(const OpenTarget& target) {
    const std::shared_ptr<const OpenedSpectrum> before = target.notice.before;
    if (before == nullptr)
        return;
    bringBack(*before, target);
    target.notice = {};
}

bool readSpectrumByFormat(int filterIndex, const OpenTarget& target, Dialogs& dialogs) {
    Spectrum& spectrum = target.spectrum;
    const ReadResult result = readWithFilter(filterIndex, spectrum, dialogs);
    if (result.end == Reading::Refused) {
        dialogs.message({.text = "File does not read.\nDifferent format ?!   Check file type !!",
                         .details = result.reason.empty()
                                        ? spectrum.filePath
                                        : result.reason + '\n' + spectrum.filePath});
        return false;
    }
    spectrum.details.clear();
    finishOpening(target, result.tellsCalibration);
    if (!result.missing.empty())
        target.notice.add(result.missing);
    return true;
}

}  // namespace kestrel
