// Text files in which a value is found by the label on its line, wherever that line stands.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "base/input_file.h"
#include "spectrum/read_result.h"
#include "spectrum/spectrum.h"

namespace kestrel {

struct LabelledValue {
    std::string_view label;
    void (*take)(std::string_view line, Spectrum& spectrum);
};

// Takes the values in the order of the table, each from the first line of the file that contains
// its label in any letter case. Refused at the first label that is on no line, failed where a value
// raises a fault; the values before it have been taken by then, those after it have not. The file
// is read once, and no further than the last of the lines. Faults: those of LineReader.
ReadResult takeLabelledValues(LineReader& lines, std::span<const LabelledValue> table,
                              Spectrum& spectrum);

// The first line of the file that contains the label; none where no line does. The reading goes on
// below it.
std::optional<std::string> findLine(LineReader& lines, std::string_view label);
// Goes from the start of the file behind that line; false at its end.
bool passLine(LineReader& lines, std::string_view label);

// The leading number of the text from the n-th character of the line on, counted from 1.
double numberFrom(std::string_view line, std::size_t n);
// The same of `width` characters from the n-th on.
double numberIn(std::string_view line, std::size_t n, std::size_t width);

}  // namespace kestrel
