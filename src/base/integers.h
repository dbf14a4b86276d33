// Conversions of computed values to the system's integer widths. Nowhere else is a floating-point
// value turned into an integer.
#pragma once

#include <cstdint>

namespace kestrel {

// Rounds to the nearest whole number, halves to the even neighbour (62.5 gives 62, 127.5 gives
// 128), whatever rounding mode the processor is in.
double roundHalfEven(double value);

// Round half to even, then the overflow fault when the result does not fit (or is not a number).
std::int16_t toInt16(double value);
std::int32_t toInt32(double value);

// Exact integer results narrowed to the system's widths; the overflow fault outside the range.
std::int16_t narrow16(std::int64_t value);
std::int32_t narrow32(std::int64_t value);

// a / b with the division fault for b = 0.
double divide(double a, double b);

}  // namespace kestrel
