#include "spectrum/formats/chn_writer.h"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

#include "base/text.h"

namespace kestrel {
namespace {

class LittleEndian {
  public:
    void int16(std::int16_t value) { bytes(static_cast<std::uint16_t>(value), 2); }
    void int32(std::int32_t value) { bytes(static_cast<std::uint32_t>(value), 4); }
    void float32(float value) { bytes(std::bit_cast<std::uint32_t>(value), 4); }
    void float64(double value) { bytes(std::bit_cast<std::uint64_t>(value), 8); }
    void byte(int value) { bytes(static_cast<std::uint64_t>(value), 1); }
    void text(std::string_view value) { out_ += value; }
    void zeros(std::size_t count) { out_.append(count, '\0'); }
    void blanks(std::size_t count) { out_.append(count, ' '); }
    std::string take() { return std::move(out_); }

  private:
    void bytes(std::uint64_t value, int width) {
        for (int i = 0; i < width; ++i, value >>= 8)
            out_.push_back(static_cast<char>(value & 0xFFU));
    }

    std::string out_;
};

int twoDigits(std::string_view digits) {
    return (digits[0] - '0') * 10 + (digits[1] - '0');
}

void writeSeconds(LittleEndian& file, std::string_view seconds, WrittenChn kind) {
    switch (kind) {
        case WrittenChn::Plain:
            file.zeros(2);
            break;
        case WrittenChn::Extended:
            file.byte(twoDigits(seconds));
            file.zeros(1);
            break;
        case WrittenChn::Trailered:
            file.text(isDigit(seconds[0]) && isDigit(seconds[1]) ? seconds : "00");
            break;
    }
}

// Behind blanks a reader would show the seconds of kind 3 alone; behind NULs it shows nothing.
void writeHoursAndMinutes(LittleEndian& file, const FixedText<6>& time) {
    if (time.trimmed().empty())
        file.zeros(4);
    else
        file.text(time.characters(1, 4));
}

void writeHeader(LittleEndian& file, const Spectrum& spectrum, WrittenChn kind) {
    file.int16(-1);
    file.int16(spectrum.mcaNumber);
    file.int16(spectrum.segmentNumber);
    writeSeconds(file, spectrum.startTime.characters(5, 2), kind);
    file.int32(static_cast<std::int32_t>(spectrum.realTime.count));
    file.int32(static_cast<std::int32_t>(spectrum.liveTime.count));
    file.text(spectrum.startDate.view());
    writeHoursAndMinutes(file, spectrum.startTime);
    file.int16(0);  // channel offset
    file.int16(spectrum.channelCount);
}

void writeExtension(LittleEndian& file, const Calibration& calibration) {
    file.zeros(2);
    file.blanks(26);
    file.zeros(4);
    file.float64(calibration.a);
    file.float64(calibration.b);
    file.float64(calibration.c);
    file.zeros(40);
    file.blanks(32);
}

void writeDescription(LittleEndian& file, const FixedText<63>& text) {
    file.byte(static_cast<int>(text.trimmed().size()));
    file.text(text.view());
}

void writeTrailer(LittleEndian& file, const Spectrum& spectrum) {
    constexpr std::int16_t quadraticCalibration = -102;
    file.int16(quadraticCalibration);
    file.int16(0);
    file.float32(static_cast<float>(spectrum.calCurrent.a));
    file.float32(static_cast<float>(spectrum.calCurrent.b));
    file.float32(static_cast<float>(spectrum.calCurrent.c));
    for (const float width : spectrum.chnTrailer.resolution)
        file.float32(width);
    file.zeros(228);
    writeDescription(file, spectrum.chnTrailer.detector);
    writeDescription(file, FixedText<63>(spectrum.comment.view()));
    file.zeros(128);
}

}  // namespace

std::string chnFile(const Spectrum& spectrum, WrittenChn kind) {
    LittleEndian file;
    writeHeader(file, spectrum, kind);
    for (const std::int32_t count : spectrum.counts.span(0, spectrum.channelCount))
        file.int32(count);
    if (kind == WrittenChn::Trailered) {
        writeTrailer(file, spectrum);
        return file.take();
    }
    file.text(spectrum.comment.view());
    if (kind == WrittenChn::Extended)
        writeExtension(file, spectrum.calCurrent);
    return file.take();
}

std::string trailedChnFile(const Spectrum& spectrum) {
    return chnFile(spectrum, WrittenChn::Trailered);
}

void addChnLosses(const Spectrum& spectrum, std::vector<std::string>& losses) {
    const Calibration& exact = spectrum.calCurrent;
    const Calibration kept{static_cast<float>(exact.a), static_cast<float>(exact.b),
                           static_cast<float>(exact.c)};
    if (kept != exact)
        losses.emplace_back("CHN keeps seven figures of the calibration.");
    if (spectrum.comment.view().back() != ' ')
        losses.emplace_back("CHN keeps the first 63 characters of the comment.");
}

}  // namespace kestrel
