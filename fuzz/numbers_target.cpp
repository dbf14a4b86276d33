// Reads the input as a number and writes it by every pattern of the program.
#include <cmath>
#include <optional>

#include "base/integers.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "fuzz_input.h"

namespace kestrel::fuzz {
namespace {

void write(double value) {
    for (const char* pattern :
         {"00", "000", "0", "0.00", "0.0", "###", "####0", "#####0", "####0.0", "####0.00",
          "###0.00", "###0.000", "0.0000E+00", "0.000E+00"})
        require(!formatNumber(value, pattern).empty() || value < 1);
    require(parseLeadingNumber(plainNumber(value)) == value);
    require(parseLeadingNumber(signedNumber(value)) == value);
    toInt16(value);
    toInt32(value);
}

// The quick way to a whole number comes to the same number, or the same fault.
void readWhole(std::string_view text) {
    const auto number = [](auto read) -> std::optional<std::int32_t> {
        try {
            return read();
        } catch (const RuntimeFault&) {
            return std::nullopt;
        }
    };
    require(number([&] { return parseLeadingInteger(text); }) ==
            number([&] { return toInt32(parseLeadingNumber(text)); }));
}

}  // namespace
}  // namespace kestrel::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kestrel::fuzz;
    try {
        readWhole(asText(data, size));
        const double value = kestrel::parseLeadingNumber(asText(data, size));
        require(std::isfinite(value));
        write(value);
        if (size > 0 && data[0] == '#')
            kestrel::formatNumber(kestrel::parseLeadingNumber(asText(data + 1, size - 1)),
                                  asText(data, size));
    } catch (const kestrel::RuntimeFault&) {
        // Too large for a double or an integer.
    }
    return 0;
}
