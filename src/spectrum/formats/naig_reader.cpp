#include "spectrum/formats/naig_reader.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/integers.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "spectrum/formats/text_spectrum.h"

namespace kestrel {
namespace {

constexpr std::int16_t naigMca = 560;
constexpr char endOfHeader = '\x7f';
constexpr std::size_t longestComment = 64;
constexpr std::size_t bytesBeforeStatus = 2303;
constexpr char noSpectrum = '?';
constexpr std::size_t fieldWidth = 7;
constexpr std::size_t blockSize = 65536;
// One field more than there is room for, so that a longer capture raises its fault.
constexpr std::size_t mostFieldBytes = fieldWidth * (channelLimit + 1);

struct Header {
    std::string text;       // as much of it as a comment takes
    std::uint64_t end = 0;  // offset of the byte behind the mark that ends it
};

std::string_view readText(InputFile& file, std::uint64_t offset, std::vector<std::byte>& block) {
    const std::size_t count = file.read(offset, block);
    return {reinterpret_cast<const char*>(block.data()), count};
}

// None when the mark does not occur.
std::optional<Header> readHeader(InputFile& file) {
    std::vector<std::byte> block(blockSize);
    Header header;
    for (;;) {
        const std::string_view text = readText(file, header.end, block);
        const std::string_view part = text.substr(0, text.find(endOfHeader));
        header.text += part.substr(0, longestComment - header.text.size());
        header.end += part.size();
        if (part.size() < text.size()) {
            ++header.end;
            return header;
        }
        if (text.empty())
            return std::nullopt;
    }
}

bool saysNoSpectrum(InputFile& file, std::uint64_t statusOffset) {
    std::array<std::byte, 1> status{};
    file.read(statusOffset, status);
    return status[0] == std::byte{noSpectrum};
}

// Stores the fields as counts, up to one with a line end; `fields` counts them as they are stored.
void readFields(InputFile& file, std::uint64_t offset, Spectrum& spectrum, std::int32_t& fields) {
    std::vector<std::byte> block(mostFieldBytes);
    const std::string_view text = readText(file, offset, block);
    for (std::size_t at = 0; at < text.size(); at += fieldWidth) {
        const std::string_view field = text.substr(at, fieldWidth);
        if (field.find("\r\n") != std::string_view::npos)
            break;
        spectrum.counts[fields] = parseLeadingInteger(field);
        ++fields;
    }
}

// The first two fields are the times in seconds, and stay in the counts as well.
void takeTimesAndLength(std::int32_t fields, Spectrum& spectrum) {
    spectrum.channelCount = narrow16(fields + 1);
    // The channel that the length counts too many shows nothing of an earlier spectrum.
    if (fields < static_cast<std::int32_t>(channelLimit))
        spectrum.counts[fields] = 0;
    spectrum.liveTime = Ticks::ofSeconds(spectrum.counts[0]);
    spectrum.realTime = fields > 1 ? Ticks::ofSeconds(spectrum.counts[1]) : Ticks{};
}

ReadResult readValues(InputFile& file, std::uint64_t offset, Spectrum& spectrum) {
    std::int32_t fields = 0;
    try {
        readFields(file, offset, spectrum, fields);
        if (fields == 0)
            return refused("The capture ends before its first value.");
        takeTimesAndLength(fields, spectrum);
        return {};
    } catch (const RuntimeFault& fault) {
        return failed(fault, "Value " + std::to_string(fields + 1));
    }
}

}  // namespace

ReadResult readNaigE560File(InputFile& file, Spectrum& spectrum) {
    presetTextSpectrum(spectrum, naigMca);
    if (file.size() > LineReader::largestFile)
        throw RuntimeFault(Fault::PathAccess, file.path());
    const std::optional<Header> header = readHeader(file);
    if (!header || header->end >= file.size())
        return refused("There is nothing behind a byte 127, which ends the header text.");
    const std::uint64_t statusOffset = header->end + bytesBeforeStatus;
    if (saysNoSpectrum(file, statusOffset))
        return {.end = Reading::Refused,
                .reason = "Its status byte is \"?\": the capture holds no spectrum.",
                .keepsFileOpen = true};
    ReadResult result = readValues(file, statusOffset + 1, spectrum);
    if (result.end == Reading::Loaded) {
        setDescription(spectrum, header->text);
        useTrailerCalibration(spectrum);
    }
    return result;
}

}  // namespace kestrel
