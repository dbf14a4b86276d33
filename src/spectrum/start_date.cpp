#include "spectrum/start_date.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string_view>

#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr double lastCalendarYear = 9999;

// None for characters such as "1E9", whose value is beyond a 16-bit year.
std::optional<std::int16_t> yearOf(const FixedText<8>& startDate) {
    const std::string digits{startDate.characters(8, 1)};
    const double year = parseLeadingNumber(digits + std::string(startDate.characters(6, 2))) + 1900;
    if (year > std::numeric_limits<std::int16_t>::max())
        return std::nullopt;
    const std::int16_t narrow = toInt16(year);
    // A mark that is no digit counts as 0, so such dates end up in the fourth millennium, on
    // purpose.
    return narrow < 1960 ? narrow16(narrow + 2000) : narrow;
}

// 0 for what is no day number.
unsigned dayOf(std::string_view characters) {
    const std::string_view digits = trimBlanks(characters);
    unsigned day = 0;
    for (const char digit : digits) {
        if (!isDigit(digit))
            return 0;
        day = day * 10 + static_cast<unsigned>(digit - '0');
    }
    return day;
}

// 0 for what is no month name.
unsigned monthOf(std::string_view name) {
    constexpr std::string_view names = "JANFEBMARAPRMAYJUNJULAUGSEPOCTNOVDEC";
    for (unsigned month = 1; month <= 12; ++month) {
        if (equalIgnoringCase(name, names.substr(std::size_t{3} * (month - 1), 3)))
            return month;
    }
    return 0;
}

}  // namespace

std::optional<std::chrono::year_month_day> calendarDate(const FixedText<8>& startDate) {
    const std::optional<std::int16_t> year = yearOf(startDate);
    if (!year || *year > lastCalendarYear)
        return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year(*year),
                                           std::chrono::month(monthOf(startDate.characters(3, 3))),
                                           std::chrono::day(dayOf(startDate.characters(1, 2)))};
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::string formatStartDate(const FixedText<8>& startDate) {
    if (startDate.trimmed().empty())
        return {};
    if (const auto date = calendarDate(startDate))
        return plainNumber(std::int64_t{int{date->year()}}) + "/" +
               formatNumber(unsigned{date->month()}, "00") + "/" +
               formatNumber(unsigned{date->day()}, "00");
    const std::string text = std::string(startDate.characters(1, 2)) + "/" +
                             std::string(startDate.characters(3, 3)) + "/";
    const std::optional<std::int16_t> year = yearOf(startDate);
    return text + (year ? plainNumber(std::int64_t{*year})
                        : std::string(startDate.characters(8, 1)) +
                              std::string(startDate.characters(6, 2)));
}

std::string formatStart(const FixedText<8>& startDate, const FixedText<6>& startTime) {
    return formatStartDate(startDate) + "-" + std::string(startTime.view());
}

}  // namespace kestrel
