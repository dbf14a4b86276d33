// CHN files of a few channels, byte by byte, for tests of what reads them.
#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace kestrel::test {

struct ChnBytes {
    std::int16_t firstWord = -1;
    std::string seconds = std::string("\0\0", 2);
    std::int32_t realTime = 15500;
    std::int32_t liveTime = 15000;
    std::string date = "16NOV261";
    std::string time = std::string("1230\0\0", 6);
    std::int16_t channelCount = 4;
    std::vector<std::int32_t> counts = {0, 10, 1000, 7};
    std::string rest = {};  // after the counts

    std::string bytes() const {
        std::string out = number(firstWord) + number<std::int16_t>(7) + number<std::int16_t>(2) +
                          seconds + number(realTime) + number(liveTime) + date + time +
                          number(channelCount);
        for (const std::int32_t count : counts)
            out += number(count);
        return out + rest;
    }

    template <typename T>
    static std::string number(T value) {
        using Bits =
            std::conditional_t<sizeof(T) == 2, std::uint16_t,
                               std::conditional_t<sizeof(T) == 4, std::uint32_t, std::uint64_t>>;
        auto bits = std::bit_cast<Bits>(value);
        std::string out;
        for (std::size_t i = 0; i < sizeof(T); ++i) {
            out += static_cast<char>(bits & 0xFF);
            bits = static_cast<Bits>(bits >> 8U);
        }
        return out;
    }
};

inline std::string padded(std::string text, std::size_t width, char fill = ' ') {
    text.resize(width, fill);
    return text;
}

inline std::string extension(double a, double b, double c) {
    return std::string(32, '\0') + ChnBytes::number(a) + ChnBytes::number(b) + ChnBytes::number(c) +
           std::string(72, '\0');
}

inline std::string trailer(float a, float b, float c, const std::string& sample) {
    return std::string("\x9a\xff\0\0", 4) + ChnBytes::number(a) + ChnBytes::number(b) +
           ChnBytes::number(c) + std::string(12 + 228, '\0') + padded("\x04HPGe", 64, '\0') +
           padded(static_cast<char>(sample.size()) + sample, 64, '\0') + std::string(128, '\0');
}

}  // namespace kestrel::test
