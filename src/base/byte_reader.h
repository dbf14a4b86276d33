// Little-endian numbers and texts at any place of a byte buffer. Reads past the end deliver zero
// bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace kestrel {

class ByteReader {
  public:
    explicit ByteReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

    std::uint8_t byteAt(std::size_t offset) const;
    std::int16_t int16At(std::size_t offset) const;
    std::int32_t int32At(std::size_t offset) const;
    std::uint32_t uint32At(std::size_t offset) const;
    float floatAt(std::size_t offset) const;
    double doubleAt(std::size_t offset) const;
    std::string textAt(std::size_t offset, std::size_t count) const;
    // Fills `values` with consecutive signed 32-bit numbers.
    void int32sAt(std::size_t offset, std::span<std::int32_t> values) const;

  private:
    template <typename T>
    T numberAt(std::size_t offset) const;

    std::span<const std::byte> bytes_;
};

}  // namespace kestrel
