#include "view/status_text.h"

#include <algorithm>

#include "base/integers.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "base/text.h"
#include "spectrum/energy_calibration.h"
#include "spectrum/peak_measure.h"

namespace kestrel {

char peakMark(double significance) {
    if (significance > peakCentreMeasure)
        return '*';
    if (significance > 5.0)
        return '-';
    return significance > 1.0 ? '_' : ' ';
}

std::string statusLine(const Spectrum& spectrum, const DerivedArrays& derived,
                       std::int16_t channel) {
    const double significance =
        channel >= spectrum.channelCount ? 0.0 : derived.peakSignificance[channel];
    const double energy = channelToEnergy(spectrum.calCurrent, channel);
    return std::string("ch:") + peakMark(significance) +
           rightAligned(formatNumber(channel, "####0"), 5) + "(" +
           rightAligned(formatNumber(energy, "####0.0"), 6) + "keV)" +
           " c:" + rightAligned(formatNumber(spectrum.countsAt(channel), "#####0"), 8);
}

namespace {

// Empty where the calibration is beyond all use.
std::string energyText(const Spectrum& spectrum, std::int16_t channel) {
    try {
        return formatNumber(channelToEnergy(spectrum.calCurrent, channel), "0.0") + " keV   ";
    } catch (const RuntimeFault&) {
        return {};
    }
}

}  // namespace

std::string pointerLine(const Spectrum& spectrum, double x) {
    const double place = roundHalfEven(x);
    if (!(place >= 0 && place < std::min<double>(spectrum.channelCount, channelLimit)))
        return {};
    const std::int16_t channel = toInt16(place);
    return "Channel " + plainNumber(std::int64_t{channel}) + "   " + energyText(spectrum, channel) +
           plainNumber(std::int64_t{spectrum.counts[channel]}) + " counts";
}

ChannelRange drawnRange(const Spectrum& spectrum, double from, double to) {
    const double last = std::max(spectrum.channelCount - 1, 0);
    const auto channel = [last](double x) { return toInt16(std::clamp(x, 0.0, last)); };
    return {channel(std::min(from, to)), channel(std::max(from, to))};
}

std::string rangeLine(const Spectrum& spectrum, const ChannelRange& range) {
    std::int64_t sum = 0;
    for (int channel = range.low; channel <= range.high; ++channel)
        sum += spectrum.counts[channel];
    const int width = range.high - range.low + 1;
    const double ends = 1.0 * spectrum.counts[range.low] + spectrum.counts[range.high];
    return "Channels " + plainNumber(std::int64_t{range.low}) + " to " +
           plainNumber(std::int64_t{range.high}) + "   " + plainNumber(std::int64_t{width}) +
           " wide   sum " + plainNumber(sum) + "   net " +
           formatNumber(static_cast<double>(sum) - width * ends / 2, "0");
}

std::string liveTimeHeader(const Spectrum& spectrum) {
    return "Live: " + formatNumber(spectrum.openedLiveTime.seconds(), "0.00") + "sec";
}

}  // namespace kestrel
