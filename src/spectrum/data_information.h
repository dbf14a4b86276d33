// The header of the loaded spectrum as six lines of text.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

// The line of date and time, and the one of the comment.
std::string dateLine(const Spectrum& spectrum);
std::string commentLine(const Spectrum& spectrum);

// File name, date and time, comment, live time, analyser number and segment number, each with its
// label. The live time is given as the record holds it: the open command builds the lines before it
// turns 20 ms ticks into seconds, so users see ticks with "sec" behind them.
std::vector<std::string> buildHeaderLines(const Spectrum& spectrum);

}  // namespace kestrel
