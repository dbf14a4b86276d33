#include "spectrum/formats/canberra35_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/formats/text_spectrum.h"

namespace kestrel {
namespace {

constexpr std::int16_t canberra35Mca = 445;
constexpr std::string_view mark = "SERIES 35+  V-2.00";
constexpr std::string_view tableHeading = "CHANNEL#";
constexpr int countsPerLine = 8;
constexpr std::size_t firstCountColumn = 12;
constexpr std::size_t countWidth = 7;
constexpr std::size_t countPitch = 9;

void takeStart(std::string_view line, Spectrum& spectrum) {
    const std::string yearDigits = charactersPadded(line, 66, 2);
    setStart(spectrum,
             {.day = charactersPadded(line, 59, 2),
              .month = charactersPadded(line, 62, 3),
              .yearDigits = yearDigits,
              .centuryMark = markOfYearDigits(yearDigits),
              .time = charactersPadded(line, 70, 2) + charactersPadded(line, 73, 2) + "00"});
}

constexpr std::array<LabelledValue, 5> header = {{
    {mark, [](std::string_view, Spectrum&) {}},
    {"LIVE TIME=", [](std::string_view line,
                      Spectrum& s) { s.liveTime = Ticks::ofSeconds(numberFrom(line, 27)); }},
    {"TRUE TIME=", [](std::string_view line,
                      Spectrum& s) { s.realTime = Ticks::ofSeconds(numberFrom(line, 48)); }},
    {"TAG NO. =", [](std::string_view line, Spectrum& s) { setDescription(s, line); }},
    {"MEMORY=", takeStart},
}};

void readCountLine(std::string_view line, std::int32_t firstChannel, Spectrum& spectrum) {
    std::size_t column = firstCountColumn;
    for (int i = 0; i < countsPerLine; ++i, column += countPitch)
        spectrum.counts[firstChannel + i] =
            parseLeadingInteger(fromCharacter(line, column).substr(0, countWidth));
}

// The first line of the table stands right below its heading; the others are those with a channel
// number above 0, so that headings of further pages and blank lines are passed over.
void readCounts(LineReader& lines, Spectrum& spectrum) {
    readCountLine(lines.require(), 0, spectrum);
    std::int32_t channels = countsPerLine;
    for (std::string_view line; lines.next(line);) {
        if (numberIn(line, 2, 5) > 0) {
            readCountLine(line, channels, spectrum);
            channels += countsPerLine;
        }
    }
    spectrum.channelCount = narrow16(channels);
}

ReadResult readRest(LineReader& lines, Spectrum& spectrum) {
    useTrailerCalibration(spectrum);
    spectrum.comment.assign(spectrum.chnTrailer.sample.view());
    if (!passLine(lines, tableHeading))
        return refused("There is no line with \"CHANNEL#\", the heading of the counts.");
    readCounts(lines, spectrum);
    return {};
}

}  // namespace

bool isCanberra35File(InputFile& file) {
    LineReader lines(file);
    return passLine(lines, mark);
}

ReadResult readCanberra35File(InputFile& file, Spectrum& spectrum) {
    return readTextFormat({canberra35Mca, header, readRest}, file, spectrum);
}

}  // namespace kestrel
