#include "spectrum/formats/file_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <span>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::array<std::string_view, 12> monthNames = {"jan", "feb", "mar", "apr", "may", "jun",
                                                         "jul", "aug", "sep", "oct", "nov", "dec"};

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isBetweenWords(char c) {
    return isSpace(c) || c == ',' || c == ';';
}

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

// Most numbers of these files are short counts, which need no more than this.
std::optional<double> shortWhole(std::string_view word) {
    constexpr std::size_t mostDigits = 9;
    if (word.empty() || word.size() > mostDigits)
        return std::nullopt;
    std::int32_t number = 0;
    for (const char c : word) {
        if (!isDigit(c))
            return std::nullopt;
        number = number * 10 + (c - '0');
    }
    return number;
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

void appendUtf8(std::uint32_t code, std::string& text) {
    const auto follow = [&](unsigned shift) {
        text += static_cast<char>(0x80U | ((code >> shift) & 0x3FU));
    };
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0U | (code >> 6U));
        follow(0);
    } else if (code < 0x10000) {
        text += static_cast<char>(0xE0U | (code >> 12U));
        follow(6);
        follow(0);
    } else {
        text += static_cast<char>(0xF0U | (code >> 18U));
        follow(12);
        follow(6);
        follow(0);
    }
}

std::string fromUtf16(std::string_view bytes, bool bigEndian) {
    const auto unitAt = [&](std::size_t at) {
        const std::uint32_t first = static_cast<unsigned char>(bytes[at]);
        const std::uint32_t second = static_cast<unsigned char>(bytes[at + 1]);
        return bigEndian ? (first << 8U) | second : (second << 8U) | first;
    };
    std::string text;
    for (std::size_t at = 0; at + 1 < bytes.size(); at += 2) {
        std::uint32_t code = unitAt(at);
        const bool high = (code & 0xFC00U) == 0xD800;
        if (high && at + 3 < bytes.size() && (unitAt(at + 2) & 0xFC00U) == 0xDC00) {
            at += 2;
            code = 0x10000 + ((code & 0x3FFU) << 10U) + (unitAt(at) & 0x3FFU);
        }
        appendUtf8(code, text);
    }
    return text;
}

// The bytes of the UTF-8 sign that the text begins with; 0 where it begins with none.
std::size_t utf8Length(std::string_view text) {
    const auto byteAt = [&](std::size_t at) {
        return std::uint32_t{static_cast<unsigned char>(text[at])};
    };
    const std::uint32_t first = byteAt(0);
    if (first < 0x80)
        return 1;
    const std::size_t length = first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (length == 0 || first > 0xF4 || text.size() < length)
        return 0;
    std::uint32_t code = first & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0U) != 0x80)
            return 0;
        code = (code << 6U) | (byteAt(i) & 0x3FU);
    }
    // The shortest way to write it, and a sign that XML allows.
    constexpr std::array<std::uint32_t, 5> lowest = {0, 0, 0x80, 0x800, 0x10000};
    const bool allowed = code < 0xD800 || (code >= 0xE000 && code < 0xFFFE) || code >= 0x10000;
    return code >= lowest.at(length) && code < 0x110000 && allowed ? length : 0;
}

// A run of digits or a run of letters of a date.
struct DatePart {
    char before = 0;  // the sign in front of it
    std::string_view text;
    int number = -1;  // of digits
};

int smallNumber(std::string_view digits) {
    constexpr std::size_t widest = 9;
    int number = -1;
    std::from_chars(digits.data(), digits.data() + std::min(digits.size(), widest), number);
    return number;
}

std::vector<DatePart> datePartsOf(std::string_view text) {
    constexpr std::size_t most = 12;
    std::vector<DatePart> parts;
    std::size_t at = 0;
    while (at < text.size() && parts.size() < most) {
        const bool digits = isDigit(text[at]);
        if (!digits && !isLetter(text[at])) {
            ++at;
            continue;
        }
        const std::size_t begin = at;
        while (at < text.size() && (digits ? isDigit(text[at]) : isLetter(text[at])))
            ++at;
        const std::string_view part = text.substr(begin, at - begin);
        parts.push_back({.before = begin == 0 ? '\0' : text[begin - 1],
                         .text = part,
                         .number = digits ? smallNumber(part) : -1});
    }
    return parts;
}

int monthNamed(std::string_view name) {
    const auto* const found = std::ranges::find_if(
        monthNames, [&](std::string_view month) { return equalIgnoringCase(name, month); });
    return found == monthNames.end() ? -1 : static_cast<int>(found - monthNames.begin()) + 1;
}

int fullYear(const DatePart& part) {
    constexpr int firstOfThe1900s = 80;
    if (part.text.size() > 2)
        return part.number;
    return part.number + (part.number >= firstOfThe1900s ? 1900 : 2000);
}

void takeDay(std::span<const DatePart> parts, DateOrder order, LocalTime& time) {
    constexpr int months = 12;
    if (parts[0].text.size() == 4) {
        time.year = parts[0].number;
        time.month = parts[1].number;
        time.day = parts[2].number;
        return;
    }
    time.year = fullYear(parts[2]);
    time.day = parts[0].number;
    if (parts[1].number < 0) {
        time.month = monthNamed(parts[1].text);
        return;
    }
    time.month = parts[1].number;
    const bool monthFirst = parts[1].before != '.' && order == DateOrder::MonthFirst;
    if (monthFirst ? time.day <= months : time.month > months)
        std::swap(time.day, time.month);
}

void takeTimeOfDay(std::span<const DatePart> parts, LocalTime& time) {
    constexpr int noon = 12;
    const std::array<int*, 3> fields = {&time.hour, &time.minute, &time.second};
    std::size_t field = 0;
    for (const DatePart& part : parts) {
        const bool afternoon = equalIgnoringCase(part.text, "PM");
        if (part.number >= 0 && field < fields.size())
            *fields[field++] = part.number;
        else if (afternoon || equalIgnoringCase(part.text, "AM"))
            time.hour = time.hour % noon + (afternoon ? noon : 0);
    }
}

}  // namespace

std::string textOf(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF"))
        return fromUtf16(bytes.substr(2), bytes.front() == '\xFE');
    return std::string(bytes.starts_with("\xEF\xBB\xBF") ? bytes.substr(3) : bytes);
}

std::string asUtf8(std::string_view text) {
    std::string result;
    while (!text.empty()) {
        const std::size_t length = utf8Length(text);
        if (length == 0)
            appendUtf8(static_cast<unsigned char>(text.front()), result);
        else
            result += text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return result;
}

std::string_view trimSpace(std::string_view text) {
    while (!text.empty() && isSpace(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && isSpace(text.back()))
        text.remove_suffix(1);
    return text;
}

bool TextLines::next(std::string_view& line) {
    if (rest_.empty())
        return false;
    const auto end =
        static_cast<std::size_t>(std::ranges::find_if(rest_, isLineEnd) - rest_.begin());
    line = trimSpace(rest_.substr(0, end));
    const bool two = rest_.substr(end).starts_with("\r\n");
    rest_.remove_prefix(std::min(end + (two ? 2 : 1), rest_.size()));
    ++number_;
    return true;
}

std::string_view takeWord(std::string_view& text) {
    const auto* const begin = std::ranges::find_if_not(text, isBetweenWords);
    const auto* const end = std::find_if(begin, text.end(), isBetweenWords);
    text = {end, text.end()};
    return {begin, end};
}

std::optional<double> numberIn(std::string_view word) {
    if (const std::optional<double> whole = shortWhole(word))
        return whole;
    if (word.starts_with('+'))
        word.remove_prefix(1);
    double number = 0;
    const char* const end = word.data() + word.size();
    const auto [stop, error] = std::from_chars(word.data(), end, number);
    if (error != std::errc() || stop != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

std::optional<std::vector<double>> numbersIn(std::string_view text) {
    std::vector<double> numbers;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        const std::optional<double> number = numberIn(word);
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

bool isPossible(const LocalTime& time) {
    using namespace std::chrono;
    const year_month_day date(year(time.year), month(static_cast<unsigned>(time.month)),
                              day(static_cast<unsigned>(time.day)));
    return time.year >= 1900 && time.year < 2100 && time.month > 0 && time.day > 0 && date.ok() &&
           time.hour < 24 && time.minute < 60 && time.second < 60;
}

std::optional<LocalTime> dateIn(std::string_view text, DateOrder order) {
    const std::vector<DatePart> parts = datePartsOf(text);
    if (parts.size() < 3)
        return std::nullopt;
    LocalTime time;
    takeDay(std::span(parts).first(3), order, time);
    takeTimeOfDay(std::span(parts).subspan(3), time);
    return isPossible(time) ? std::optional(time) : std::nullopt;
}

std::string shownTerm(double term) {
    return term == 0 || !std::isfinite(term) ? plainNumber(term) : formatNumber(term, "0.0000E+00");
}

void appendCount(std::string_view word, const FilePlace& place, std::vector<double>& counts) {
    const std::optional<double> count = numberIn(word);
    if (!count)
        throw FormatError(place.text() + "Counts expected, found \"" +
                          std::string(word.substr(0, 40)) + "\".");
    if (counts.size() == mostFileChannels)
        checkedChannelCount(static_cast<double>(counts.size() + 1), place);
    counts.push_back(*count);
}

void appendCounts(std::string_view text, const FilePlace& place, std::vector<double>& counts) {
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text))
        appendCount(word, place, counts);
}

}  // namespace kestrel
