#include "spectrum/formats/tka_writer.h"

#include <bit>
#include <cstdint>

#include "base/number_text.h"
#include "spectrum/formats/written_record.h"

namespace kestrel {
namespace {

constexpr std::int32_t timeLines = 2;

// Two lines more than a power of two would be read as that many counts behind the times.
bool needsAChannelMore(const Spectrum& spectrum) {
    return spectrum.channelCount > timeLines &&
           std::has_single_bit(static_cast<unsigned>(spectrum.channelCount - timeLines));
}

}  // namespace

std::string tkaFile(const Spectrum& spectrum) {
    std::string file = writtenSeconds(spectrum.liveTime) + "\r\n";
    file += writtenSeconds(spectrum.realTime) + "\r\n";
    for (std::int32_t channel = timeLines; channel < spectrum.channelCount; ++channel)
        file += plainNumber(writtenCount(spectrum, channel)) + "\r\n";
    return needsAChannelMore(spectrum) ? file + "0\r\n" : file;
}

void addTkaLosses(const Spectrum& spectrum, std::vector<std::string>& losses) {
    std::int64_t inTimes = 0;
    for (std::int32_t channel = 0; channel < timeLines; ++channel)
        inTimes += spectrum.countsAt(channel) > 0 ? spectrum.countsAt(channel) : 0;
    if (inTimes > 0)
        losses.push_back("TKA has the times in the place of channels 0 and 1: their " +
                         plainNumber(inTimes) + " counts are left out.");
    if (needsAChannelMore(spectrum))
        losses.emplace_back("In TKA a last channel without counts is added.");
    if (spectrum.realTime.count <= 0 || spectrum.liveTime.count > spectrum.realTime.count)
        losses.emplace_back(
            "A TKA file is known by a real time that is not below the live time; here it is, and "
            "programs may take the file for a table.");
}

}  // namespace kestrel
