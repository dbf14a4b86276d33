#include "spectrum/formats/chn_reader.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "base/byte_reader.h"
#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::size_t headerSize = 32;
constexpr std::size_t countSize = 4;
constexpr std::size_t commentSize = 64;
constexpr std::size_t trailerSize = 512;
constexpr std::size_t mostUsefulBytes = headerSize + channelLimit * countSize + trailerSize;

enum class ChnKind { CommentOnly, CommentAndExtension, Trailer, Unknown };

void readHeader(const ByteReader& file, Spectrum& spectrum) {
    spectrum.fileType = file.int16At(0);
    spectrum.mcaNumber = file.int16At(2);
    spectrum.segmentNumber = file.int16At(4);
    spectrum.startSecondsRaw = {file.byteAt(6), file.byteAt(7)};
    spectrum.realTime = {file.int32At(8)};
    spectrum.liveTime = {file.int32At(12)};
    spectrum.startDate.assignFromFile(file.textAt(16, 8));
    // Hours and minutes, and after them the two bytes of the channel offset.
    spectrum.startTime.assign(file.textAt(24, 6));
    spectrum.channelCount = file.int16At(30);
}

// The kind shows in the two bytes of the seconds and in the file's length. A file that is exactly
// as long as a comment asks for counts as kind 1 without seconds and as kind 2 with binary ones.
ChnKind kindOf(const Spectrum& spectrum, double fileLength) {
    const double commentEnd =
        static_cast<double>(spectrum.channelCount) * countSize + headerSize + commentSize + 2;
    const auto [b1, b2] = spectrum.startSecondsRaw;
    if (b1 != 0 && b2 != 0)
        return ChnKind::Trailer;
    if (b2 != 0)
        return ChnKind::Unknown;
    const bool commentOnly = b1 == 0 ? commentEnd >= fileLength : commentEnd > fileLength;
    return commentOnly ? ChnKind::CommentOnly : ChnKind::CommentAndExtension;
}

// HHMM as read gets its seconds: two digits from a binary value, or two ASCII digits one by one
// (a byte that is no digit leaves its code minus 48).
void completeStartTime(Spectrum& spectrum) {
    const auto [b1, b2] = spectrum.startSecondsRaw;
    const std::string hoursAndMinutes(spectrum.startTime.characters(1, 4));
    if (b1 != 0 && b2 == 0) {
        spectrum.startTime.assign(hoursAndMinutes + formatNumber(b1, "00"));
    } else if (b1 != 0) {
        spectrum.startTime.assign(hoursAndMinutes + formatNumber(b1 - '0', "0"));
        spectrum.startTime.assign(std::string(spectrum.startTime.trimmed()) +
                                  formatNumber(b2 - '0', "0"));
    }
    spectrum.startTime.assignFromFile(std::string(spectrum.startTime.view()));
}

void readComment(const ByteReader& file, std::size_t offset, Spectrum& spectrum) {
    spectrum.comment.assignFromFile(file.textAt(offset, commentSize));
}

void readExtension(const ByteReader& file, std::size_t offset, Spectrum& spectrum) {
    spectrum.chnExtension.calibration = {file.doubleAt(offset + 32), file.doubleAt(offset + 40),
                                         file.doubleAt(offset + 48)};
    spectrum.calCurrent = spectrum.chnExtension.calibration;
    spectrum.calFromFile = spectrum.chnExtension.calibration;
}

// The description lengths are kept but not consulted: the texts end at their first NUL.
void readTrailer(const ByteReader& file, std::size_t offset, Spectrum& spectrum) {
    ChnTrailer& trailer = spectrum.chnTrailer;
    trailer.calA = file.floatAt(offset + 4);
    trailer.calB = file.floatAt(offset + 8);
    trailer.calC = file.floatAt(offset + 12);
    trailer.resolution = {file.floatAt(offset + 16), file.floatAt(offset + 20),
                          file.floatAt(offset + 24)};
    trailer.detectorLength = file.byteAt(offset + 256);
    trailer.detector.assignFromFile(file.textAt(offset + 257, 63));
    trailer.sampleLength = file.byteAt(offset + 320);
    trailer.sample.assignFromFile(file.textAt(offset + 321, 63));
    spectrum.calCurrent = trailer.calibration();
    spectrum.comment.assign(trailer.sample.view());
    spectrum.calFromFile = spectrum.calCurrent;
}

void readAfterCounts(const ByteReader& file, ChnKind kind, Spectrum& spectrum) {
    const auto channels =
        static_cast<std::size_t>(std::max<std::int16_t>(spectrum.channelCount, 0));
    const std::size_t offset = headerSize + channels * countSize;
    switch (kind) {
        case ChnKind::CommentOnly:
            readComment(file, offset, spectrum);
            break;
        case ChnKind::CommentAndExtension:
            readComment(file, offset, spectrum);
            readExtension(file, offset + commentSize, spectrum);
            break;
        case ChnKind::Trailer:
            readTrailer(file, offset, spectrum);
            break;
        case ChnKind::Unknown:
            break;
    }
}

// What the file lacks, which was read as zeros; nothing as a rule.
std::string missingParts(const Spectrum& spectrum, ChnKind kind, std::uint64_t fileSize) {
    if (fileSize < headerSize)
        return "The file ends in its header: there are no counts.";
    const auto channels =
        static_cast<std::uint64_t>(std::max<std::int16_t>(spectrum.channelCount, 0));
    const std::uint64_t held = (fileSize - headerSize) / countSize;
    if (held < channels)
        return "The file ends before its counts: channels " + std::to_string(held) + " to " +
               std::to_string(channels - 1) + " are missing and shown as 0.";
    if (kind == ChnKind::Trailer && fileSize < headerSize + channels * countSize + trailerSize)
        return "The file ends before its calibration and description, which are shown as 0 and "
               "blank.";
    return {};
}

}  // namespace

ReadResult readChnFile(InputFile& input, Spectrum& spectrum) {
    constexpr auto limit = static_cast<std::int16_t>(channelLimit);
    const std::vector<std::byte> bytes = input.readFront(mostUsefulBytes);
    const ByteReader file(bytes);
    readHeader(file, spectrum);
    if (spectrum.fileType != -1)
        return refused("A CHN file begins with the number -1, this one with " +
                       std::to_string(spectrum.fileType) + ".");
    const std::int16_t channels = spectrum.channelCount;
    file.int32sAt(headerSize, spectrum.counts.span(0, std::min(channels, limit)));
    if (channels > limit)
        return failed(RuntimeFault(Fault::SubscriptOutOfRange), "Number of channels in the header");
    const ChnKind kind = kindOf(spectrum, static_cast<double>(input.size()));
    completeStartTime(spectrum);
    readAfterCounts(file, kind, spectrum);
    return {.missing = missingParts(spectrum, kind, input.size()),
            .tellsCalibration = kind != ChnKind::CommentOnly};
}

}  // namespace kestrel
