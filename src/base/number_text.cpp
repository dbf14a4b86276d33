#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <optional>
#include <system_error>

#include "base/integers.h"
#include "base/runtime_fault.h"
#include "base/text.h"

namespace kestrel {
namespace {

// Room for the shortest text of any double or 64-bit integer.
using Characters = std::array<char, 32>;

// 0.d1d2d3... x 10^point; without digits the value is zero.
struct Decimal {
    std::string digits;
    int point = 0;
};

Decimal shortestDecimal(double magnitude) {
    Decimal decimal;
    if (magnitude == 0.0)
        return decimal;
    Characters buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), magnitude,
                                       std::chars_format::scientific);
    char* const exponent = std::find(buffer.data(), written.ptr, 'e');
    std::remove_copy(buffer.data(), exponent, std::back_inserter(decimal.digits), '.');
    const char* const power = exponent + (exponent[1] == '+' ? 2 : 1);
    std::from_chars(power, written.ptr, decimal.point);
    ++decimal.point;
    return decimal;
}

// Keeps `count` digits, the last one rounded half up.
void roundTo(Decimal& decimal, int count) {
    if (count >= static_cast<int>(decimal.digits.size()))
        return;
    const bool up = count >= 0 && decimal.digits[static_cast<std::size_t>(count)] >= '5';
    decimal.digits.resize(static_cast<std::size_t>(std::max(count, 0)));
    if (!up)
        return;
    while (!decimal.digits.empty() && decimal.digits.back() == '9')
        decimal.digits.pop_back();
    if (decimal.digits.empty()) {
        decimal.digits = "1";
        ++decimal.point;
    } else {
        ++decimal.digits.back();
    }
}

// `count` digits from place `first` on; places outside the stored digits are zero.
std::string digitsFrom(const Decimal& decimal, int first, int count) {
    std::string result;
    for (int place = first; place < first + count; ++place) {
        const bool stored = place >= 0 && place < static_cast<int>(decimal.digits.size());
        result += stored ? decimal.digits[static_cast<std::size_t>(place)] : '0';
    }
    return result;
}

struct Pattern {
    int places = 0;    // "#" and "0" in front of the point
    int required = 0;  // "0" in front of the point
    bool point = false;
    int decimals = 0;
    int exponentDigits = 0;  // 0: no exponent part
};

int countOf(std::string_view text, char c) {
    return static_cast<int>(std::count(text.begin(), text.end(), c));
}

Pattern parsePattern(std::string_view text) {
    const std::size_t exponent = std::min(text.find('E'), text.size());
    const std::string_view mantissa = text.substr(0, exponent);
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const std::string_view front = mantissa.substr(0, point);
    Pattern pattern;
    pattern.places = static_cast<int>(front.size());
    pattern.required = countOf(front, '0');
    pattern.point = point < mantissa.size();
    pattern.decimals = countOf(mantissa.substr(point), '0');
    pattern.exponentDigits = countOf(text.substr(exponent), '0');
    return pattern;
}

std::string mantissaText(const Decimal& decimal, const Pattern& pattern) {
    // Digits in front of the point that the pattern asks for and the value does not have are zeros.
    const int front = std::max(decimal.digits.empty() ? 0 : decimal.point, pattern.required);
    std::string result = digitsFrom(decimal, decimal.point - front, front);
    if (pattern.point)
        result += '.';
    return result + digitsFrom(decimal, decimal.point, pattern.decimals);
}

std::string exponentText(int exponent, int minimumDigits) {
    std::string digits = std::to_string(std::abs(exponent));
    digits.insert(
        0, static_cast<std::size_t>(std::max(minimumDigits - static_cast<int>(digits.size()), 0)),
        '0');
    return (exponent < 0 ? "E-" : "E+") + digits;
}

template <typename Number>
std::string shortestText(Number value) {
    Characters buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    return toUpper({buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data())});
}

std::size_t skipDigits(std::string_view text, std::size_t at) {
    while (at < text.size() && isDigit(text[at]))
        ++at;
    return at;
}

// The parts of a number as written, without its sign.
struct WrittenNumber {
    std::string_view whole;
    std::string_view decimals;
    std::size_t length = 0;
    bool negativeExponent = false;
    std::string_view exponent;
};

WrittenNumber splitNumber(std::string_view text) {
    WrittenNumber number;
    std::size_t end = skipDigits(text, 0);
    number.whole = text.substr(0, end);
    if (end < text.size() && text[end] == '.') {
        const std::size_t first = end + 1;
        end = skipDigits(text, first);
        number.decimals = text.substr(first, end - first);
    }
    number.length = end;
    if (end >= text.size() || (text[end] != 'E' && text[end] != 'e'))
        return number;
    std::size_t first = end + 1;
    if (first < text.size() && (text[first] == '+' || text[first] == '-'))
        number.negativeExponent = text[first++] == '-';
    end = skipDigits(text, first);
    number.exponent = text.substr(first, end - first);
    if (!number.exponent.empty())
        number.length = end;
    return number;
}

// Whether a number outside the range of a double is too large rather than too small. It has a
// digit that is not zero.
bool isHuge(const WrittenNumber& number) {
    std::int32_t exponent = 0;
    const char* const end = number.exponent.data() + number.exponent.size();
    const auto read = std::from_chars(number.exponent.data(), end, exponent);
    if (read.ec == std::errc::result_out_of_range)
        return !number.negativeExponent;
    const std::size_t lead = number.whole.find_first_not_of('0');
    const std::int64_t place =
        lead != std::string_view::npos
            ? static_cast<std::int64_t>(number.whole.size() - lead)
            : -static_cast<std::int64_t>(number.decimals.find_first_not_of('0'));
    return place + (number.negativeExponent ? -exponent : exponent) > 0;
}

// Digits that a double holds exactly, and that nothing follows which could belong to the number:
// what tables of counts are full of.
std::optional<std::int64_t> shortWholeNumber(std::string_view text) {
    constexpr std::size_t mostDigits = 15;
    std::int64_t value = 0;
    std::size_t at = 0;
    for (; at < text.size() && isDigit(text[at]); ++at) {
        if (at == mostDigits)
            return std::nullopt;
        value = value * 10 + (text[at] - '0');
    }
    if (at < text.size() && (text[at] == '.' || text[at] == 'E' || text[at] == 'e'))
        return std::nullopt;
    return value;
}

bool allZeros(std::string_view digits) {
    return digits.find_first_not_of('0') == std::string_view::npos;
}

}  // namespace

std::string formatNumber(double value, std::string_view pattern) {
    if (!std::isfinite(value))
        throw RuntimeFault(Fault::Overflow);
    const Pattern parsed = parsePattern(pattern);
    Decimal decimal = shortestDecimal(std::fabs(value));
    std::string suffix;
    if (parsed.exponentDigits > 0) {
        roundTo(decimal, parsed.places + parsed.decimals);
        const int exponent = decimal.digits.empty() ? 0 : decimal.point - parsed.places;
        suffix = exponentText(exponent, parsed.exponentDigits);
        decimal.point -= exponent;
    } else {
        roundTo(decimal, decimal.point + parsed.decimals);
    }
    const std::string sign = value < 0 && !decimal.digits.empty() ? "-" : "";
    return sign + mantissaText(decimal, parsed) + suffix;
}

std::string plainNumber(double value) {
    if (value == 0.0)
        return "0";
    // As people write it, unless that would be a long row of zeros.
    const double size = std::fabs(value);
    if (size < 1e-5 || size >= 1e15)
        return shortestText(value);
    Characters buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::fixed);
    return {buffer.data(), static_cast<std::size_t>(written.ptr - buffer.data())};
}
std::string plainNumber(std::int64_t value) {
    return shortestText(value);
}

std::string signedNumber(double value) {
    return (value < 0 ? "" : " ") + plainNumber(value);
}
std::string signedNumber(std::int64_t value) {
    return (value < 0 ? "" : " ") + plainNumber(value);
}

double parseLeadingNumber(std::string_view text) {
    text = trimBlanksLeft(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    if (const std::optional<std::int64_t> value = shortWholeNumber(text))
        return static_cast<double>(negative ? -*value : *value);
    const WrittenNumber number = splitNumber(text);
    if (allZeros(number.whole) && allZeros(number.decimals))
        return 0;
    double value = 0;
    const auto read = std::from_chars(text.data(), text.data() + number.length, value);
    if (read.ec == std::errc::result_out_of_range) {
        if (isHuge(number))
            throw RuntimeFault(Fault::Overflow);
        return 0;
    }
    return negative ? -value : value;
}

std::int32_t parseLeadingInteger(std::string_view text) {
    constexpr std::size_t mostCharacters = 18;
    if (text.size() > mostCharacters)
        return toInt32(parseLeadingNumber(text));
    std::size_t at = 0;
    while (at < text.size() && text[at] == ' ')
        ++at;
    std::int64_t value = 0;
    for (; at < text.size(); ++at) {
        if (!isDigit(text[at]))
            return toInt32(parseLeadingNumber(text));
        value = value * 10 + (text[at] - '0');
    }
    return narrow32(value);
}

}  // namespace kestrel
