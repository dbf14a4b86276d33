// When a spectrum was taken, as text.
#pragma once

#include <chrono>
#include <optional>
#include <string>

#include "base/fixed_text.h"

namespace kestrel {

// The day of DDMMMYYc; none where that is no calendar date. Raises no faults.
std::optional<std::chrono::year_month_day> calendarDate(const FixedText<8>& startDate);

// DDMMMYYc, c the century mark, as "yyyy/mm/dd"; "DD/MMM/YYYY" where that is no calendar date;
// empty when all characters are blank. Raises no faults.
std::string formatStartDate(const FixedText<8>& startDate);

// The start of a measurement: that date, a "-", and the time as it stands in the file.
std::string formatStart(const FixedText<8>& startDate, const FixedText<6>& startTime);

}  // namespace kestrel
