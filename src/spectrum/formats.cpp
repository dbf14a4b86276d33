#include "spectrum/formats.h"

#include "base/text.h"
#include "spectrum/canberra35_reader.h"
#include "spectrum/chn_reader.h"
#include "spectrum/dos_oxford_reader.h"
#include "spectrum/labelled_lines.h"
#include "spectrum/labo_reader.h"
#include "spectrum/naig_reader.h"
#include "spectrum/text_spectrum.h"
#include "spectrum/win_oxford_reader.h"

namespace kestrel {
namespace {

constexpr std::array<SpectrumFormat, 8> formats = {{
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
     .mark = winOxfordMark,
     .saysThatFileIsMissing = true},
    {.id = FormatId::DosOxford,
     .name = "DOS Oxford (asc)",
     .pattern = "*.asc",
     .ending = ".asc",
     .read = readDosOxfordFile,
     .saysThatFileIsMissing = true,
     .description = false,
     .calibration = false},
    {.id = FormatId::Labo,
     .name = "Labo (binary)",
     .pattern = "*.dat",
     .ending = ".dat",
     .read = readLaboFile,
     .saysThatFileIsMissing = true,
     .refusesUnreadable = true},
    {.id = FormatId::LaboV154,
     .name = "Labo v1.54(binary)",
     .pattern = "*.dat",
     .ending = ".dat",
     .read = readLaboFile,
     .saysThatFileIsMissing = true,
     .refusesUnreadable = true},
    {.id = FormatId::Canberra35,
     .name = "CANBERRA35+ RS232C (txt)",
     .pattern = "*.txt",
     .ending = ".txt",
     .read = readCanberra35File,
     .mark = canberra35Mark,
     .saysThatFileIsMissing = true},
    {.id = FormatId::NaigE560,
     .name = "NAIG E-560  RS232C (txt)",
     .pattern = "*.txt",
     .ending = ".txt",
     .read = readNaigE560File,
     .start = false},
    {.id = FormatId::AllFiles, .name = "All File", .pattern = "*.*"},
}};

bool carries(const std::string& path, std::string_view mark) {
    InputFile file(path);
    LineReader lines(file);
    return passLine(lines, mark);
}

void blankWhatIsNotCarried(const SpectrumFormat& format, Spectrum& spectrum) {
    if (!format.start)
        clearStart(spectrum);
    if (!format.description)
        setDescription(spectrum, "");
    if (!format.calibration)
        spectrum.calCurrent = spectrum.calDefault;
}

}  // namespace

const std::array<SpectrumFormat, 8>& spectrumFormats() {
    return formats;
}

const SpectrumFormat* formatOf(int filterIndex) {
    for (const SpectrumFormat& format : formats) {
        if (static_cast<int>(format.id) == filterIndex)
            return &format;
    }
    return nullptr;
}

const SpectrumFormat* formatForName(const std::string& path) {
    for (const SpectrumFormat& format : formats) {
        if (format.read == nullptr ||
            !equalIgnoringCase(lastCharacters(path, format.ending.size()), format.ending))
            continue;
        if (format.mark.empty() || !fileExists(path) || carries(path, format.mark))
            return &format;
    }
    return nullptr;
}

ReadResult readAs(const SpectrumFormat& format, InputFile& file, Spectrum& spectrum) {
    blankWhatIsNotCarried(format, spectrum);
    try {
        return format.read(file, spectrum);
    } catch (const RuntimeFault& fault) {
        return {.end = Reading::Failed, .fault = fault.fault()};
    }
}

}  // namespace kestrel
