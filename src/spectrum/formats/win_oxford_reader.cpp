#include "spectrum/formats/win_oxford_reader.h"

#include <array>
#include <cmath>
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

constexpr std::int16_t winOxfordMca = 444;
constexpr std::string_view mark = "Conversion Gain:";
constexpr int linesBeforeTable = 15;
constexpr std::size_t countColumn = 8;

float coefficientIn(std::string_view line) {
    // Rounded first: a value just above the largest single is that single.
    const auto coefficient = static_cast<float>(numberFrom(line, 54));
    if (std::isinf(coefficient))
        throw RuntimeFault(Fault::Overflow);
    return coefficient;
}

// A line without a century has its year between 1970 and 2069.
void takeStart(std::string_view line, Spectrum& spectrum) {
    const double century = numberIn(line, 27, 2);
    const std::string yearDigits = charactersPadded(line, 29, 2);
    setStart(spectrum,
             {.day = rightAligned(plainNumber(numberIn(line, 19, 3)), 2),
              .month = charactersPadded(line, 23, 3),
              .yearDigits = yearDigits,
              .centuryMark = century < 19 ? markOfYearDigits(yearDigits) : markOfCentury(century),
              .time = charactersPadded(line, 32, 2) + charactersPadded(line, 35, 2) + "00"});
}

// The file's "A" is the quadratic term and its "C" the offset, the reverse of the record's names.
constexpr std::array<LabelledValue, 8> header = {{
    {mark,
     [](std::string_view line, Spectrum& s) { s.channelCount = toInt16(numberFrom(line, 27)); }},
    {"Elapsed Live Time:",
     [](std::string_view line, Spectrum& s) {
         s.liveTime = Ticks::ofSeconds(numberFrom(line, 20));
     }},
    {"Elapsed Real Time:",
     [](std::string_view line, Spectrum& s) {
         s.realTime = Ticks::ofSeconds(numberFrom(line, 20));
     }},
    {"ID:", [](std::string_view line, Spectrum& s) { setDescription(s, fromCharacter(line, 4)); }},
    {"Acquisition Date:", takeStart},
    {"A =", [](std::string_view line, Spectrum& s) { s.chnTrailer.calC = coefficientIn(line); }},
    {"B =", [](std::string_view line, Spectrum& s) { s.chnTrailer.calB = coefficientIn(line); }},
    {"C =", [](std::string_view line, Spectrum& s) { s.chnTrailer.calA = coefficientIn(line); }},
}};

void readCounts(LineReader& lines, Spectrum& spectrum) {
    lines.rewind();
    for (int i = 0; i < linesBeforeTable; ++i)
        lines.require();
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel)
        spectrum.counts[channel] = parseLeadingInteger(fromCharacter(lines.require(), countColumn));
}

ReadResult readRest(LineReader& lines, Spectrum& spectrum) {
    useTrailerCalibration(spectrum);
    spectrum.comment.assign(spectrum.chnTrailer.sample.view());
    if (spectrum.channelCount == 0)
        return refused("There are no channels: the number behind \"Conversion Gain:\" is 0.");
    readCounts(lines, spectrum);
    return {};
}

}  // namespace

bool isWinOxfordFile(InputFile& file) {
    LineReader lines(file);
    return passLine(lines, mark);
}

ReadResult readWinOxfordFile(InputFile& file, Spectrum& spectrum) {
    return readTextFormat({winOxfordMca, header, readRest}, file, spectrum);
}

}  // namespace kestrel
