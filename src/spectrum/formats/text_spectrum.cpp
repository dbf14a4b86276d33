#include "spectrum/formats/text_spectrum.h"

#include <algorithm>

#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

std::uint8_t digitValue(char c) {
    return isDigit(c) ? static_cast<std::uint8_t>(c - '0') : std::uint8_t{0};
}

}  // namespace

void presetTextSpectrum(Spectrum& spectrum, std::int16_t mcaNumber) {
    spectrum.mcaNumber = mcaNumber;
    spectrum.segmentNumber = 1;
    spectrum.channelCount = 0;
    spectrum.chnTrailer.calA = 0;
    spectrum.chnTrailer.calB = 1;
    spectrum.chnTrailer.calC = 0;
}

ReadResult readTextFormat(const TextFormat& format, InputFile& file, Spectrum& spectrum) {
    presetTextSpectrum(spectrum, format.mcaNumber);
    LineReader lines(file);
    try {
        ReadResult header = takeLabelledValues(lines, format.header, spectrum);
        return header.end == Reading::Loaded ? format.readRest(lines, spectrum) : header;
    } catch (const RuntimeFault& fault) {
        return failed(fault, "Line " + std::to_string(lines.lineNumber()));
    }
}

void setDescription(Spectrum& spectrum, std::string_view text) {
    ChnTrailer& trailer = spectrum.chnTrailer;
    spectrum.comment.assignFromFile(text);
    trailer.sample.assignFromFile(text);
    trailer.sampleLength =
        static_cast<std::uint8_t>(std::min(upToNul(text).size(), trailer.sample.view().size()));
}

void useTrailerCalibration(Spectrum& spectrum) {
    spectrum.calCurrent = spectrum.chnTrailer.calibration();
    spectrum.calFromFile = spectrum.calCurrent;
}

void clearStart(Spectrum& spectrum) {
    spectrum.startDate.assign("");
    spectrum.startTime.assign("");
    spectrum.startSecondsRaw = {};
}

void setStart(Spectrum& spectrum, const StartText& start) {
    const bool dated = !trimBlanks(start.month + start.yearDigits).empty();
    spectrum.startDate.assignFromFile(
        dated ? start.day + start.month + start.yearDigits + start.centuryMark : "");
    std::string time = start.time;
    std::ranges::replace(time, ' ', '0');
    spectrum.startTime.assignFromFile(time);
    const std::string_view seconds = spectrum.startTime.characters(5, 2);
    spectrum.startSecondsRaw = {digitValue(seconds[0]), digitValue(seconds[1])};
}

std::string markOfCentury(double century) {
    const std::string mark = plainNumber(century - 19);
    return mark == "0" ? " " : mark.substr(0, 1);
}

std::string markOfYearDigits(std::string_view digits) {
    return parseLeadingNumber(digits) < 70 ? "1" : " ";
}

}  // namespace kestrel
