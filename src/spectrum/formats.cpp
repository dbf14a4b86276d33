#include "spectrum/formats.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/text.h"
#include "spectrum/formats/canberra35_reader.h"
#include "spectrum/formats/chn_reader.h"
#include "spectrum/formats/dos_oxford_reader.h"
#include "spectrum/formats/labo_reader.h"
#include "spectrum/formats/naig_reader.h"
#include "spectrum/formats/text_spectrum.h"
#include "spectrum/formats/win_oxford_reader.h"

namespace kestrel {
namespace {

constexpr auto formats = std::to_array<SpectrumFormat>({
    {.id = FormatId::Chn,
     .name = "ORTEC, SEIKO (chn)",
     .pattern = "*.chn",
     .ending = ".chn",
     .read = readChnFile},
    {.id = FormatId::WinOxford,
     .name = "Win Oxford (asc)",
     .pattern = "*.asc",
     .ending = ".asc",
     .read = readWinOxfordFile,
     .recognises = isWinOxfordFile,
     .saysThatFileIsMissing = true,
     .layout = Layout::Lines,
     .start = StartOf::Minute},
    {.id = FormatId::DosOxford,
     .name = "DOS Oxford (asc)",
     .pattern = "*.asc",
     .ending = ".asc",
     .read = readDosOxfordFile,
     .saysThatFileIsMissing = true,
     .layout = Layout::Lines,
     .description = false,
     .calibration = CalibrationOf::User},
    {.id = FormatId::Labo,
     .name = "Labo (binary)",
     .pattern = "*.dat",
     .ending = ".dat",
     .read = readLaboFile,
     .saysThatFileIsMissing = true,
     .refusesAll = true},
    {.id = FormatId::LaboV154,
     .name = "Labo v1.54(binary)",
     .pattern = "*.dat",
     .ending = ".dat",
     .read = readLaboFile,
     .saysThatFileIsMissing = true,
     .refusesAll = true},
    {.id = FormatId::Canberra35,
     .name = "CANBERRA35+ RS232C (txt)",
     .pattern = "*.txt",
     .ending = ".txt",
     .read = readCanberra35File,
     .recognises = isCanberra35File,
     .saysThatFileIsMissing = true,
     .layout = Layout::Lines,
     .start = StartOf::Minute,
     .calibration = CalibrationOf::OneKeV},
    {.id = FormatId::NaigE560,
     .name = "NAIG E-560  RS232C (txt)",
     .pattern = "*.txt",
     .ending = ".txt",
     .read = readNaigE560File,
     .layout = Layout::Fields,
     .start = StartOf::None,
     .calibration = CalibrationOf::OneKeV,
     .timesInChannels = true},
    {.id = FormatId::AllFiles, .name = "All File", .pattern = "*.*"},
});

constexpr std::size_t placeOf(FormatId id) {
    return static_cast<std::size_t>(id) - 1;
}

constexpr bool standInOrder() {
    for (std::size_t place = 0; place < formats.size(); ++place) {
        if (placeOf(formats[place].id) != place)
            return false;
    }
    return true;
}
static_assert(standInOrder());

void blankWhatIsNotCarried(const SpectrumFormat& format, Spectrum& spectrum) {
    spectrum.chnTrailer.detector.assign("");
    spectrum.chnTrailer.detectorLength = 0;
    spectrum.chnTrailer.resolution = {};
    if (format.start == StartOf::None)
        clearStart(spectrum);
    if (!format.description)
        setDescription(spectrum, "");
}

std::vector<const SpectrumFormat*> formatsOfEnding(const std::string& path) {
    std::vector<const SpectrumFormat*> found;
    for (const SpectrumFormat& format : formats) {
        if (format.read != nullptr &&
            equalIgnoringCase(lastCharacters(path, format.ending.size()), format.ending))
            found.push_back(&format);
    }
    return found;
}

}  // namespace

std::span<const SpectrumFormat> spectrumFormats() {
    return formats;
}

const SpectrumFormat& formatOf(FormatId id) {
    return formats[placeOf(id)];
}

std::span<const SpectrumFormat> dialogFormats() {
    return spectrumFormats().first(placeOf(FormatId::AllFiles) + 1);
}

const SpectrumFormat* formatOfEntry(int filterIndex) {
    const bool offered =
        filterIndex >= 1 && filterIndex <= static_cast<int>(dialogFormats().size());
    return offered ? &formatOf(FormatId{filterIndex}) : nullptr;
}

const SpectrumFormat* formatForName(const std::string& path) {
    const std::vector<const SpectrumFormat*> candidates = formatsOfEnding(path);
    if (candidates.size() <= 1 || !fileExists(path))
        return candidates.empty() ? nullptr : candidates.front();
    InputFile file(path);
    const auto knows = [&](const SpectrumFormat* format) {
        return format->recognises != nullptr && format->recognises(file);
    };
    const auto known = std::ranges::find_if(candidates, knows);
    if (known != candidates.end())
        return *known;
    const auto rest = std::ranges::find_if(
        candidates, [](const SpectrumFormat* format) { return format->recognises == nullptr; });
    return rest == candidates.end() ? candidates.front() : *rest;
}

std::string knownEndings() {
    std::vector<std::string_view> endings;
    for (const SpectrumFormat& format : formats) {
        if (format.read != nullptr && std::ranges::find(endings, format.ending) == endings.end())
            endings.push_back(format.ending);
    }
    std::string text(endings.front());
    for (std::size_t i = 1; i < endings.size(); ++i)
        text.append(i + 1 < endings.size() ? ", " : " or ").append(endings[i]);
    return text;
}

ReadResult readAs(const SpectrumFormat& format, InputFile& file, Spectrum& spectrum) {
    blankWhatIsNotCarried(format, spectrum);
    try {
        ReadResult result = format.read(file, spectrum);
        if (format.calibration == CalibrationOf::User)
            result.tellsCalibration = false;
        return result;
    } catch (const RuntimeFault& fault) {
        return {.end = Reading::Failed, .fault = fault.fault()};
    }
}

}  // namespace kestrel
