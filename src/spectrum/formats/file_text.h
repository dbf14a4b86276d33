// The text of an exchange file: its encoding, its lines, and the numbers and dates in them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

// UTF-16 with a byte order mark becomes UTF-8; the mark itself is left out. Other bytes stay.
std::string textOf(std::string_view bytes);

// The text with every byte that belongs to no UTF-8 sign taken as one of Latin-1.
std::string asUtf8(std::string_view text);

// Blanks, tabs and other signs of white space are taken off both ends.
std::string_view trimSpace(std::string_view text);

// The lines of a text, without white space at their ends. CR LF, LF and CR each end a line.
class TextLines {
  public:
    explicit TextLines(std::string_view text) : rest_(text) {}

    // False at the end of the text.
    bool next(std::string_view& line);
    // Of the line that was delivered last, counted from 1.
    std::size_t number() const { return number_; }
    FilePlace place() const { return {.line = number_}; }

  private:
    std::string_view rest_;
    std::size_t number_ = 0;
};

// Cuts the next word off the front of `text`. Blanks, tabs, commas and semicolons stand between
// words; empty when there is none.
std::string_view takeWord(std::string_view& text);

// The number that `word` is, whole; none for anything else, an infinity or "nan".
std::optional<double> numberIn(std::string_view word);
// All words of a text, each of which must be a number. None when one is not.
std::optional<std::vector<double>> numbersIn(std::string_view text);

// Which of day and month comes first where slashes leave it open.
enum class DateOrder { MonthFirst, DayFirst };

// Date and time of the day in any of the spellings that spectrum files have: 04/26/2017 11:05:11,
// with AM or PM, 2024-03-08T09:31:41.5Z, 01-Oct-2014 14:28:17, 17.08.2014 8:32:14. Of slashes, a
// number above 12 decides the order. Years of two digits from 80 on belong to 1900. None for
// anything else.
std::optional<LocalTime> dateIn(std::string_view text, DateOrder order = DateOrder::MonthFirst);

// Whether the numbers are those of a day of the calendar and of a time.
bool isPossible(const LocalTime& time);

// A term of a calibration with the digits that a user looks at.
std::string shownTerm(double term);

// Appends a count of a text file. Faults: FormatError with `place` where `word` is no number, or
// beyond mostFileChannels counts.
void appendCount(std::string_view word, const FilePlace& place, std::vector<double>& counts);
// The same of all words of a text.
void appendCounts(std::string_view text, const FilePlace& place, std::vector<double>& counts);

}  // namespace kestrel
