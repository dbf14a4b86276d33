// Numbers to text and back: the format patterns, the number with a leading blank, and the
// leading-number parse. Independent of the locale.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kestrel {

// Formats by a pattern of digits "#" (optional, only before the point) and "0" (required), one
// point, and an exponent part such as "E+00": "00", "####0.0", "###0.000", "0.0000E+00". Halves are
// rounded away from zero on the shortest decimal text of the value, so 2.675 in "0.00" gives 2.68;
// a value that rounds to zero has no minus sign. A 32-bit float must be widened by the caller, and
// then counts as that double. Faults: Overflow for an infinity or a value that is not a number.
std::string formatNumber(double value, std::string_view pattern);

// The shortest decimal text that reads back as the same value, without a leading blank. There is
// always a digit before the point; very large and very small values have an exponent, written with
// "E".
std::string plainNumber(double value);
std::string plainNumber(std::int64_t value);

// The same with the place of the sign kept: a leading blank for a value that is not negative.
std::string signedNumber(double value);
std::string signedNumber(std::int64_t value);

// Reads the number that `text` begins with: blanks in front are skipped; then sign, digits, one
// point, and an exponent with E or e. Reading stops at the first character that cannot belong to
// the number ("1 2" is 1, "1E" is 1); no number gives 0. Faults: Overflow beyond a double's range.
double parseLeadingNumber(std::string_view text);
// That number rounded as toInt32 does it, with its faults; quick for the plain digits that tables
// of counts are full of.
std::int32_t parseLeadingInteger(std::string_view text);

}  // namespace kestrel
