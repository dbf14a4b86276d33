#include "base/number_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>

#include "base/integers.h"
#include "fault_matcher.h"

namespace kestrel {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

struct Formatted {
    double value;
    const char* pattern;
    const char* text;
};

TEST(NumberPatterns, RoundHalvesOfTheDecimalTextAwayFromZero) {
    const Formatted cases[] = {
        {1.005, "0.00", "1.01"},
        {2.675, "0.00", "2.68"},
        {-2.675, "0.00", "-2.68"},
        {1.0049999, "0.00", "1.00"},
        {2.5, "0", "3"},
        {0.5, "0", "1"},
        {0.49999, "0", "0"},
        {0.06, "0", "0"},
        {99.95, "####0.0", "100.0"},
        {0.0005, "###0.000", "0.001"},
        {0.00049, "###0.000", "0.000"},
        {999.9995, "###0.000", "1000.000"},
        {1.25e-7, "0.00", "0.00"},
    };
    for (const auto& [value, pattern, text] : cases)
        EXPECT_EQ(formatNumber(value, pattern), text) << value << " as " << pattern;
}

TEST(NumberPatterns, ShowRequiredDigitsAndAllDigitsBeforeThePoint) {
    const Formatted cases[] = {
        {5, "00", "05"},
        {123, "00", "123"},
        {-5, "000", "-005"},
        {0, "###", ""},
        {0.4, "###", ""},
        {12, "###", "12"},
        {0, "#######0", "0"},
        {0, "####0.0", "0.0"},
        {0, "0.00", "0.00"},
        {0.5, "###0.00", "0.50"},
        {600, "0.00", "600.00"},
        {16384, "###0", "16384"},
        {10000.04, "####0.0", "10000.0"},
        {661.6, "####0.00", "661.60"},
        {2147483647, "#####0", "2147483647"},
        {1e22, "0", "10000000000000000000000"},
    };
    for (const auto& [value, pattern, text] : cases)
        EXPECT_EQ(formatNumber(value, pattern), text) << value << " as " << pattern;
}

TEST(NumberPatterns, GiveAnExponentOfAtLeastTwoDigits) {
    const Formatted cases[] = {
        {0, "0.0000E+00", "0.0000E+00"},       {-0.0, "0.000E+00", "0.000E+00"},
        {9.99996, "0.0000E+00", "1.0000E+01"}, {0.999996, "0.0000E+00", "1.0000E+00"},
        {9.99994, "0.0000E+00", "9.9999E+00"}, {-1234.5, "0.0000E+00", "-1.2345E+03"},
        {63.24555, "0.000E+00", "6.325E+01"},  {1.5e-5, "0.000E+00", "1.500E-05"},
        {1e-300, "0.000E+00", "1.000E-300"},   {5e-324, "0.0000E+00", "5.0000E-324"},
    };
    for (const auto& [value, pattern, text] : cases)
        EXPECT_EQ(formatNumber(value, pattern), text) << value << " as " << pattern;
}

TEST(NumberPatterns, GiveNoMinusSignToAValueThatRoundsToZero) {
    EXPECT_EQ(formatNumber(-0.004, "0.00"), "0.00");
    EXPECT_EQ(formatNumber(-0.4, "###"), "");
    EXPECT_EQ(formatNumber(-0.005, "0.00"), "-0.01");
}

TEST(NumberPatterns, RefuseWhatIsNoFiniteNumber) {
    EXPECT_FAULT(formatNumber(infinity, "0"), Fault::Overflow);
    EXPECT_FAULT(formatNumber(std::nan(""), "0.0000E+00"), Fault::Overflow);
}

TEST(PlainNumbers, AreTheShortestTextWithALeadingBlankForTheSign) {
    EXPECT_EQ(signedNumber(661.66 - 2.0), " 659.66");
    EXPECT_EQ(signedNumber(-1.0), "-1");
    EXPECT_EQ(signedNumber(-0.0), " 0");
    EXPECT_EQ(signedNumber(std::int64_t{123}), " 123");
    EXPECT_EQ(signedNumber(std::int64_t{-123}), "-123");
    EXPECT_EQ(plainNumber(0.5), "0.5");
    EXPECT_EQ(plainNumber(100000.0), "100000");
    EXPECT_EQ(plainNumber(0.0001), "0.0001");
    EXPECT_EQ(plainNumber(1e300), "1E+300");
    EXPECT_EQ(plainNumber(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(PlainNumbers, ReadBackAsTheSameValue) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 2000; ++i) {
        const double value = std::ldexp(static_cast<double>(random()) - 9e18,
                                        static_cast<int>(random() % 2000) - 1060);
        if (!std::isfinite(value))
            continue;
        EXPECT_EQ(parseLeadingNumber(signedNumber(value)), value);
    }
}

TEST(LeadingNumbers, EndAtTheFirstCharacterThatCannotBelongToThem) {
    const std::pair<const char*, double> cases[] = {
        {"", 0},
        {"   ", 0},
        {"abc", 0},
        {"-", 0},
        {".", 0},
        {"-.E5", 0},
        {"  12", 12},
        {"1 2", 1},
        {"-.5x", -0.5},
        {"+5.", 5},
        {"1.5.3", 1.5},
        {"1E", 1},
        {"1e+", 1},
        {"1E 5", 1},
        {"1e-2", 0.01},
        {"1E5.5", 1e5},
        {"12,5", 12},
        {"1D5", 1},
        {"0x10", 0},
        {"&H10", 0},
        {"inf", 0},
        {"NaN", 0},
        {"--5", 0},
        {"+-5", 0},
        {"- 5", 0},
        {"\t5", 0},
        {"1e30", 1e30},
        {"007", 7},
        {"300\r\n", 300},
        {"1_000", 1},
        {"-0", 0},
        {"999999999999999", 999999999999999.0},
        {"1234567890123456E1", 1.234567890123456e16},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(parseLeadingNumber(text), value) << text;
}

TEST(LeadingNumbers, OverflowWhenTooLargeAndAreZeroWhenTooSmall) {
    for (const char* text : {"1e309", "-1e309", "1e99999999999999999999"})
        EXPECT_FAULT(parseLeadingNumber(text), Fault::Overflow) << text;
    EXPECT_FAULT(parseLeadingNumber(std::string(400, '9')), Fault::Overflow);
    EXPECT_FAULT(parseLeadingNumber("0." + std::string(400, '0') + "1e800"), Fault::Overflow);
    for (const char* text : {"1e-400", "1e-99999999999999999999", "0E999999999", "0.0e99999999999"})
        EXPECT_EQ(parseLeadingNumber(text), 0) << text;
    EXPECT_EQ(parseLeadingNumber("5e-324"), 5e-324);
    EXPECT_EQ(parseLeadingNumber("1" + std::string(400, '0') + "e-400"), 1);
    EXPECT_EQ(parseLeadingNumber("0." + std::string(400, '0') + "1e-9"), 0);
}

TEST(LeadingNumbers, AsIntegersAreRoundedAndCheckedLikeAnyOther) {
    for (const char* text : {"", "       ", "   1234", "1234   ", "12 34", "-17", "  +8", "12.5",
                             "13.5", "2e3", "12x", "000000000000000000000012", "2147483647"})
        EXPECT_EQ(parseLeadingInteger(text), toInt32(parseLeadingNumber(text))) << text;
    for (const char* text : {"2147483648", "  99999999999", "9999999999999999999", "1e10"})
        EXPECT_FAULT(parseLeadingInteger(text), Fault::Overflow) << text;
}

TEST(LeadingNumbers, OfAMillionDigitsAreReadAtOnce) {
    EXPECT_EQ(parseLeadingNumber("0." + std::string(1'000'000, '3')), 1.0 / 3);
    EXPECT_EQ(parseLeadingNumber(std::string(1'000'000, '0') + "5"), 5);
}

}  // namespace
}  // namespace kestrel
