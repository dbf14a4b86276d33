#include "spectrum/formats/written_record.h"

#include <algorithm>
#include <chrono>

#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/formats/energy_terms.h"
#include "spectrum/formats/file_text.h"
#include "spectrum/start_date.h"

namespace kestrel {
namespace {

// Two digits of HHMMSS, or blanks for 0; -1 for anything else.
int pairAt(const FixedText<6>& time, std::size_t first) {
    const std::string_view pair = time.characters(first, 2);
    if (trimBlanks(pair).empty())
        return 0;
    return isDigit(pair[0]) && isDigit(pair[1]) ? (pair[0] - '0') * 10 + (pair[1] - '0') : -1;
}

std::string twoDigits(int number) {
    return formatNumber(number, "00");
}

}  // namespace

std::optional<LocalTime> writtenStart(const Spectrum& spectrum) {
    const std::optional<std::chrono::year_month_day> date = calendarDate(spectrum.startDate);
    if (!date)
        return std::nullopt;
    const LocalTime time{.year = int{date->year()},
                         .month = static_cast<int>(unsigned{date->month()}),
                         .day = static_cast<int>(unsigned{date->day()}),
                         .hour = pairAt(spectrum.startTime, 1),
                         .minute = pairAt(spectrum.startTime, 3),
                         .second = pairAt(spectrum.startTime, 5)};
    const bool digits = std::min({time.hour, time.minute, time.second}) >= 0;
    return digits && isPossible(time) ? std::optional(time) : std::nullopt;
}

std::string isoTime(const LocalTime& time, char between) {
    return std::to_string(time.year) + "-" + twoDigits(time.month) + "-" + twoDigits(time.day) +
           between + twoDigits(time.hour) + ":" + twoDigits(time.minute) + ":" +
           twoDigits(time.second);
}

std::optional<Calibration> writtenCalibration(const Spectrum& spectrum) {
    return rises(spectrum.calCurrent, spectrum.channelCount - 1.0)
               ? std::optional(spectrum.calCurrent)
               : std::nullopt;
}

std::string writtenSeconds(Ticks time) {
    return plainNumber(std::max(time.seconds(), 0.0));
}

std::int64_t writtenCount(const Spectrum& spectrum, std::int32_t channel) {
    return std::max(spectrum.counts[channel], 0);
}

std::string writtenText(std::string_view text) {
    const std::string plain = withoutControls(text);
    return std::string(trimBlanks(plain));
}

}  // namespace kestrel
