// Small operations on single-byte text. All of them take the blank as the only white space and know
// only the letters A to Z, whatever the locale.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kestrel {

std::string_view trimBlanksLeft(std::string_view text);
std::string_view trimBlanks(std::string_view text);

// The text with a blank for each control character, as it goes into files and onto paper: a line
// end of a name or a comment would begin a line of its own there.
std::string withoutControls(std::string_view text);

// The same as a field of a table for other programs: where they would take it for a formula, which
// may run or fetch something, an apostrophe stands in front. Numbers stay numbers.
std::string tableField(std::string_view text);
// And of a file of comma-separated values: in quotes where a comma or another separator would end
// the field.
std::string csvField(std::string_view text);

// The characters before the first one of code 0.
std::string_view upToNul(std::string_view text);

std::string toUpper(std::string_view text);
std::string toLower(std::string_view text);
bool equalIgnoringCase(std::string_view a, std::string_view b);
// Where `part` first begins in `text` without regard to letter case; npos when it does not occur.
std::size_t findIgnoringCase(std::string_view text, std::string_view part, std::size_t from = 0);
bool containsIgnoringCase(std::string_view text, std::string_view part);

// 1-based position of the first character of `text` that is, or is not, in `set`; 0 when none is.
std::size_t positionOfAny(std::string_view text, std::string_view set);
std::size_t positionOfOther(std::string_view text, std::string_view set);

// `text` from its n-th character on (counted from 1); empty when it is shorter.
std::string_view fromCharacter(std::string_view text, std::size_t n);
// `count` characters from the n-th on, padded with blanks where the text is shorter.
std::string charactersPadded(std::string_view text, std::size_t n, std::size_t count);

constexpr bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Right-aligned in a field of `width` characters; a longer text keeps its leftmost characters.
std::string rightAligned(std::string_view text, std::size_t width);
// The last `count` characters of `text`, or all of it when it is shorter.
std::string_view lastCharacters(std::string_view text, std::size_t count);

}  // namespace kestrel
