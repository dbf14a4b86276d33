#include "base/integers.h"

#include <gtest/gtest.h>

#include <cfenv>
#include <cmath>
#include <limits>
#include <utility>

#include "base/checked_array.h"
#include "base/runtime_fault.h"
#include "fault_matcher.h"

namespace kestrel {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Rounding, GoesToTheEvenNeighbourInEveryRoundingMode) {
    const std::pair<double, double> cases[] = {
        {62.5, 62},     {127.5, 128},
        {-0.5, 0},      {-1.5, -2},
        {2.5, 2},       {0.4999, 0},
        {-2.51, -3},    {0.49999999999999994, 0},
        {1e300, 1e300}, {4503599627370495.5, 4503599627370496.0},
        {-1e-20, 0},
    };
    for (const int mode : {FE_TONEAREST, FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        std::fesetround(mode);
        for (const auto& [value, expected] : cases)
            EXPECT_EQ(roundHalfEven(value), expected) << value << " in mode " << mode;
    }
    std::fesetround(FE_TONEAREST);
}

TEST(ConversionTo16Bits, OverflowsOnlyWhereTheRoundedValueDoesNotFit) {
    EXPECT_EQ(toInt16(32767.4), 32767);
    EXPECT_EQ(toInt16(-32768.5), -32768);
    for (const double value : {32767.5, -32768.6, 1e300, notANumber, infinity, -infinity})
        EXPECT_FAULT(toInt16(value), Fault::Overflow) << value;
}

TEST(ConversionTo32Bits, OverflowsOnlyWhereTheRoundedValueDoesNotFit) {
    EXPECT_EQ(toInt32(2147483647.4), 2147483647);
    EXPECT_EQ(toInt32(-2147483648.5), std::numeric_limits<std::int32_t>::min());
    for (const double value : {2147483647.5, -2147483649.0, notANumber, infinity})
        EXPECT_FAULT(toInt32(value), Fault::Overflow) << value;
}

TEST(Narrowing, KeepsTheLimitsAndOverflowsBeyondThem) {
    EXPECT_EQ(narrow16(-32768), -32768);
    EXPECT_EQ(narrow32(2147483647), 2147483647);
    EXPECT_FAULT(narrow16(32768), Fault::Overflow);
    EXPECT_FAULT(narrow16(65536), Fault::Overflow);
    EXPECT_FAULT(narrow32(-2147483649), Fault::Overflow);
}

// Fails in an optimised build without the switch that keeps GCC's vectoriser off.
struct Neighbours {
    double a, b;
};
[[gnu::noinline]] Neighbours inSinglePrecision(const Neighbours& n) {
    return {double{static_cast<float>(n.a)}, double{static_cast<float>(n.b)}};
}

TEST(SinglePrecision, IsNotLostWhereTwoNeighboursAreRounded) {
    const volatile double tenth = 0.1;  // not known while it is compiled
    const Neighbours rounded = inSinglePrecision({tenth, 7 * tenth});
    EXPECT_EQ(rounded.a, 0x1.99999ap-4);
    EXPECT_EQ(rounded.b, 0x1.666666p-1);
}

TEST(Division, ByZeroIsAFaultWhateverIsDivided) {
    EXPECT_EQ(divide(1, -4), -0.25);
    EXPECT_FAULT(divide(0, 0), Fault::DivisionByZero);
    EXPECT_FAULT(divide(1, -0.0), Fault::DivisionByZero);
}

TEST(ChannelArrays, FaultOnEveryIndexOutside0To17000) {
    ChannelArray<int> array;
    array[17000] = 7;
    EXPECT_EQ(array[17000], 7);
    EXPECT_FAULT(array[17001], Fault::SubscriptOutOfRange);
    EXPECT_FAULT(array[-1], Fault::SubscriptOutOfRange);
}

TEST(ChannelArrays, CheckBothEndsOfASpan) {
    ChannelArray<int> array;
    EXPECT_EQ(array.span(0, 17001).size(), 17001U);
    EXPECT_EQ(&array.span(16999, 2)[1], &array[17000]);
    EXPECT_TRUE(array.span(20000, 0).empty());
    EXPECT_FAULT(array.span(17000, 2), Fault::SubscriptOutOfRange);
    EXPECT_FAULT(array.span(-1, 2), Fault::SubscriptOutOfRange);
}

TEST(RunTimeFaults, ShowNumberBlankLineAndText) {
    const RuntimeFault fault(Fault::FileNotFound, "a.chn");
    EXPECT_EQ(fault.message(), "Run-time error '53':\n\nFile not found");
    EXPECT_EQ(fault.subject(), "a.chn");
    EXPECT_EQ(RuntimeFault(Fault::Printer).message(), "Run-time error '482':\n\nPrinter error");
    EXPECT_EQ(RuntimeFault(Fault::PathAccess).text(), "Path/File access error");
}

}  // namespace
}  // namespace kestrel
