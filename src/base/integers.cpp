#include "base/integers.h"

#include <cmath>
#include <limits>

#include "base/runtime_fault.h"

namespace kestrel {
namespace {

// A value that is not a number fits nowhere.
template <typename Integer>
bool fits(double value) {
    return value >= std::numeric_limits<Integer>::min() &&
           value <= std::numeric_limits<Integer>::max();
}

template <typename Integer>
Integer toInteger(double value) {
    // Most values are whole numbers; rounding those takes the time that reading a table takes.
    if (fits<Integer>(value) && static_cast<Integer>(value) == value)
        return static_cast<Integer>(value);
    const double rounded = roundHalfEven(value);
    if (!fits<Integer>(rounded))
        throw RuntimeFault(Fault::Overflow);
    return static_cast<Integer>(rounded);
}

template <typename Integer>
Integer narrow(std::int64_t value) {
    if (value < std::numeric_limits<Integer>::min() || value > std::numeric_limits<Integer>::max())
        throw RuntimeFault(Fault::Overflow);
    return static_cast<Integer>(value);
}

}  // namespace

double roundHalfEven(double value) {
    const double whole = std::trunc(value);
    // Exact, as is every sum below: no step depends on the rounding mode.
    const double fraction = std::fabs(value - whole);
    if (fraction > 0.5 || (fraction == 0.5 && std::fmod(whole, 2.0) != 0.0))
        return whole + std::copysign(1.0, value);
    return whole;
}

std::int16_t toInt16(double value) {
    return toInteger<std::int16_t>(value);
}
std::int32_t toInt32(double value) {
    return toInteger<std::int32_t>(value);
}

std::int16_t narrow16(std::int64_t value) {
    return narrow<std::int16_t>(value);
}
std::int32_t narrow32(std::int64_t value) {
    return narrow<std::int32_t>(value);
}

double divide(double a, double b) {
    if (b == 0.0)
        throw RuntimeFault(Fault::DivisionByZero);
    return a / b;
}

}  // namespace kestrel
