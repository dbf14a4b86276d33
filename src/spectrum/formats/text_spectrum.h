// What the readers of text formats share: how header values come into the fields of the spectrum.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "base/input_file.h"
#include "spectrum/formats/labelled_lines.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// Segment 1, no channels yet, one keV per channel. Analysers that send no number are known by a
// fixed `mcaNumber`, one for each format.
void presetTextSpectrum(Spectrum& spectrum, std::int16_t mcaNumber);

struct TextFormat {
    std::int16_t mcaNumber;
    std::span<const LabelledValue> header;
    // Called once the header is complete. Its faults belong to the line that was read last.
    ReadResult (*readRest)(LineReader& lines, Spectrum& spectrum);
};

// Presets the spectrum and takes the header and the rest. Refusals and failures name the label or
// the line. Faults: those of LineReader.
ReadResult readTextFormat(const TextFormat& format, InputFile& file, Spectrum& spectrum);

// Puts a text into the comment and into the sample description.
void setDescription(Spectrum& spectrum, std::string_view text);

// Puts the calibration of the trailer in force, as the one that the file brought.
void useTrailerCalibration(Spectrum& spectrum);

// A start as the formats give it: day, month name and year digits 2, 3 and 2 characters wide, the
// time as HHMMSS with blanks for leading zeros.
struct StartText {
    std::string day;
    std::string month;
    std::string yearDigits;
    std::string centuryMark;
    std::string time;
};

// No start: date and time are blank.
void clearStart(Spectrum& spectrum);
// A start without month and year leaves the date blank.
void setStart(Spectrum& spectrum, const StartText& start);

// The mark of a century number: 20 gives "1", 19 a blank.
std::string markOfCentury(double century);
// The mark of two year digits alone: 00 to 69 belong to the years from 2000 on.
std::string markOfYearDigits(std::string_view digits);

}  // namespace kestrel
