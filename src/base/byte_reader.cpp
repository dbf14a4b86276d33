#include "base/byte_reader.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace kestrel {
namespace {

std::span<const std::byte> cutAt(std::span<const std::byte> bytes, std::size_t offset,
                                 std::size_t count) {
    const auto rest = bytes.subspan(std::min(offset, bytes.size()));
    return rest.first(std::min(count, rest.size()));
}

}  // namespace

template <typename T>
T ByteReader::numberAt(std::size_t offset) const {
    const auto present = cutAt(bytes_, offset, sizeof(T));
    std::array<std::byte, sizeof(T)> number{};
    std::copy(present.begin(), present.end(), number.begin());
    if constexpr (std::endian::native == std::endian::big)
        std::reverse(number.begin(), number.end());
    return std::bit_cast<T>(number);
}

std::uint8_t ByteReader::byteAt(std::size_t offset) const {
    return numberAt<std::uint8_t>(offset);
}
std::int16_t ByteReader::int16At(std::size_t offset) const {
    return numberAt<std::int16_t>(offset);
}
std::int32_t ByteReader::int32At(std::size_t offset) const {
    return numberAt<std::int32_t>(offset);
}
std::uint32_t ByteReader::uint32At(std::size_t offset) const {
    return numberAt<std::uint32_t>(offset);
}
float ByteReader::floatAt(std::size_t offset) const {
    return numberAt<float>(offset);
}
double ByteReader::doubleAt(std::size_t offset) const {
    return numberAt<double>(offset);
}

std::string ByteReader::textAt(std::size_t offset, std::size_t count) const {
    const auto present = cutAt(bytes_, offset, count);
    std::string text(reinterpret_cast<const char*>(present.data()), present.size());
    text.resize(count, '\0');
    return text;
}

void ByteReader::int32sAt(std::size_t offset, std::span<std::int32_t> values) const {
    if constexpr (std::endian::native == std::endian::big) {
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = int32At(offset + i * sizeof(std::int32_t));
    } else {
        const auto present = cutAt(bytes_, offset, values.size_bytes());
        const auto target = std::as_writable_bytes(values);
        const auto rest = std::copy(present.begin(), present.end(), target.begin());
        std::fill(rest, target.end(), std::byte{0});
    }
}

}  // namespace kestrel
