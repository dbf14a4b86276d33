#include "base/byte_reader.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string_view>
#include <vector>

namespace kestrel {
namespace {

using namespace std::string_literals;

std::span<const std::byte> bytesOf(std::string_view text) {
    return std::as_bytes(std::span<const char>(text.data(), text.size()));
}

TEST(ByteReading, TakesLittleEndianNumbersAtAnyPlace) {
    const std::string data = "x\xFE\xFF\xFF\xFF\0\0\0\x80\0\0\x40\xC0\0\0\0\0\0\0\xE0\x3F"s;
    const ByteReader reader(bytesOf(data));
    EXPECT_EQ(reader.byteAt(1), 0xFE);
    EXPECT_EQ(reader.int16At(1), -2);
    EXPECT_EQ(reader.int32At(1), -2);
    EXPECT_EQ(reader.uint32At(1), 0xFFFFFFFEU);
    EXPECT_EQ(reader.int32At(5), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(reader.floatAt(9), -3.0F);
    EXPECT_EQ(reader.doubleAt(13), 0.5);
    EXPECT_EQ(reader.textAt(0, 2), "x\xFE");
}

TEST(ByteReading, DeliversZeroBytesPastTheEnd) {
    const std::string data = "\x01\x02\x03";
    const ByteReader reader(bytesOf(data));
    EXPECT_EQ(reader.int32At(1), 0x0302);
    EXPECT_EQ(reader.int16At(3), 0);
    EXPECT_EQ(reader.doubleAt(std::numeric_limits<std::size_t>::max()), 0);
    EXPECT_EQ(reader.textAt(2, 3), "\x03\0\0"s);
    EXPECT_EQ(reader.textAt(99, 2), "\0\0"s);
    EXPECT_EQ(ByteReader({}).byteAt(0), 0);
}

TEST(ByteReading, FillsARunOfNumbersWithZerosPastTheEnd) {
    const std::string data = "x\x01\0\0\0\xFF\xFF\xFF\xFF\x05"s;
    std::array<std::int32_t, 4> values{9, 9, 9, 9};
    ByteReader(bytesOf(data)).int32sAt(1, values);
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{1, -1, 5, 0}));
    ByteReader(bytesOf(data)).int32sAt(50, values);
    EXPECT_EQ(values, (std::array<std::int32_t, 4>{}));
}

}  // namespace
}  // namespace kestrel
