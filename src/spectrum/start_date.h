// The acquisition date of a spectrum as text.
#pragma once

#include <string>

#include "base/fixed_text.h"

namespace kestrel {

// DDMMMYYc, c the century mark, as "yyyy/mm/dd"; "DD/MMM/YYYY" where that is no calendar date;
// empty when all characters are blank. Raises no faults.
std::string formatStartDate(const FixedText<8>& startDate);

}  // namespace kestrel
