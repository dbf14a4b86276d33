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

std::string liveTimeHeader(const Spectrum& spectrum) {
    return "Live: " + formatNumber(spectrum.openedLiveTime.seconds(), "0.00") + "sec";
}

}  // namespace kestrel
