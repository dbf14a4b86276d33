#include "spectrum/formats/loaded_record.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "base/checked_array.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "spectrum/formats/energy_terms.h"
#include "spectrum/formats/text_spectrum.h"

namespace kestrel {
namespace {

constexpr std::int16_t exchangeMca = 0;
constexpr std::array<const char*, 12> monthNames = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                                    "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
constexpr double mostTicks = std::numeric_limits<std::int32_t>::max();

struct WholeCounts {
    std::vector<std::int32_t> counts;
    bool rounded = false;
};

WholeCounts wholeCounts(const std::vector<double>& counts, std::size_t group) {
    WholeCounts whole;
    for (std::size_t first = 0; first < counts.size(); first += group) {
        double sum = 0;
        for (std::size_t i = first; i < std::min(first + group, counts.size()); ++i)
            sum += counts[i];
        if (!(std::abs(sum) <= std::numeric_limits<std::int32_t>::max()))
            throw FormatError("Channel " + std::to_string(first / group) + " has " +
                              plainNumber(sum) + " counts; up to 2147483647 can be shown.");
        whole.counts.push_back(toInt32(sum));
        whole.rounded = whole.rounded || whole.counts.back() != sum;
    }
    return whole;
}

Ticks ticksOf(const std::optional<double>& seconds) {
    if (seconds && !(std::abs(*seconds) * Ticks::perSecond <= mostTicks))
        throw FormatError("A time of " + plainNumber(*seconds) + " seconds is too long.");
    return Ticks::ofSeconds(seconds.value_or(0));
}

std::string twoDigits(int number) {
    return formatNumber(number, "00");
}

void putStart(const std::optional<LocalTime>& start, Spectrum& spectrum) {
    if (!start) {
        clearStart(spectrum);
        return;
    }
    setStart(spectrum, {.day = twoDigits(start->day),
                        .month = monthNames.at(static_cast<std::size_t>(start->month) - 1),
                        .yearDigits = twoDigits(start->year % 100),
                        .centuryMark = start->year < 2000 ? " " : "1",
                        .time = twoDigits(start->hour) + twoDigits(start->minute) +
                                twoDigits(start->second)});
}

void putCalibration(const Calibration& calibration, Spectrum& spectrum) {
    spectrum.chnTrailer.calA = static_cast<float>(calibration.a);
    spectrum.chnTrailer.calB = static_cast<float>(calibration.b);
    spectrum.chnTrailer.calC = static_cast<float>(calibration.c);
    // With all digits of the file, which the trailer has no room for.
    spectrum.calCurrent = calibration;
    spectrum.calFromFile = calibration;
}

void putDetector(const std::string& detector, Spectrum& spectrum) {
    ChnTrailer& trailer = spectrum.chnTrailer;
    trailer.resolution = {};
    trailer.detector.assignFromFile(detector);
    trailer.detectorLength =
        static_cast<std::uint8_t>(std::min(detector.size(), trailer.detector.view().size()));
}

void tellOfCalibration(const std::optional<FittedCalibration>& fitted,
                       std::vector<std::string>& notices) {
    constexpr double worthTelling = 0.01;  // keV
    if (fitted && fitted->largestDifference > worthTelling)
        notices.push_back(
            "The calibration shown is the nearest parabola; it differs from the "
            "file's by up to " +
            formatNumber(fitted->largestDifference, "0.00") + " keV.");
}

}  // namespace

int channelsToGroup(const MeasuredSpectrum& spectrum) {
    std::size_t group = 1;
    while (spectrum.counts.size() > channelLimit * group)
        group *= 2;
    return static_cast<int>(group);
}

TakenSpectrum takeMeasured(const MeasuredSpectrum& measured, int group, Spectrum& spectrum) {
    const WholeCounts whole = wholeCounts(measured.counts, static_cast<std::size_t>(group));
    const Ticks liveTime = ticksOf(measured.liveSeconds);
    const Ticks realTime = ticksOf(measured.realSeconds);
    const std::optional<FittedCalibration> fitted = fittedCalibration(measured);
    if (whole.counts.size() > channelLimit)
        throw FormatError("The spectrum has more channels than can be shown.");

    presetTextSpectrum(spectrum, exchangeMca);
    std::ranges::copy(whole.counts, spectrum.counts.begin());
    spectrum.channelCount = static_cast<std::int16_t>(whole.counts.size());
    spectrum.liveTime = liveTime;
    spectrum.realTime = realTime;
    putStart(measured.start, spectrum);
    setDescription(spectrum, measured.title);
    putDetector(measured.detector, spectrum);
    if (fitted)
        putCalibration(groupedCalibration(fitted->calibration, group), spectrum);
    spectrum.details = measured.details;

    std::vector<std::string> notices = measured.notices;
    if (group > 1)
        notices.push_back("Groups of " + std::to_string(group) + " channels are added.");
    if (whole.rounded)
        notices.emplace_back("The file's counts have fractions; they are rounded to whole ones.");
    tellOfCalibration(fitted, notices);
    return {notices, fitted.has_value()};
}

}  // namespace kestrel
