#include "peaks/peak_list.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

#include "base/number_text.h"
#include "spectrum/formats/written_record.h"

namespace kestrel {
namespace {

std::string textOf(double value, std::string_view pattern) {
    return std::isfinite(value) ? formatNumber(value, pattern) : std::string();
}

std::string textOf(const std::optional<double>& value, std::string_view pattern) {
    return value ? textOf(*value, pattern) : std::string();
}

// To four digits, without an exponent.
std::string rateText(const ListedPeak& peak) {
    static constexpr std::array patterns = {"0.000000", "0.00000", "0.0000", "0.000",
                                            "0.00",     "0.0",     "0"};
    const double size = std::abs(peak.rate.value_or(0));
    const double digits = size > 0 ? std::floor(std::log10(size)) + 1 : 1;
    return textOf(peak.rate,
                  patterns.at(static_cast<std::size_t>(std::clamp(digits + 2, 0.0, 6.0))));
}

std::string netText(const ListedPeak& peak) {
    return peak.netError > 0 ? textOf(peak.net, "0") : std::string();
}

std::string relativeErrorText(const ListedPeak& peak) {
    return peak.net > 0 ? textOf(100 * peak.netError / peak.net, "0.0") : std::string();
}

std::string significanceText(const ListedPeak& peak) {
    return peak.netError > 0 ? textOf(peak.net / peak.netError, "0.0") : std::string();
}

std::string groupText(const ListedPeak& peak) {
    return peak.measured.group > 0 ? plainNumber(std::int64_t{peak.measured.group}) : std::string();
}

// A column of a number with its pattern.
template <auto member>
std::string measuredText(const ListedPeak& peak) {
    return textOf(peak.measured.*member, "0.00");
}

template <auto member>
std::string wholeText(const ListedPeak& peak) {
    return textOf(peak.measured.*member, "0");
}

template <auto bound>
std::string boundText(const ListedPeak& peak) {
    return plainNumber(std::int64_t{peak.measured.regions.*bound});
}

std::string textOf(const std::optional<WithError>& shown, std::string_view pattern) {
    return shown ? textOf(shown->value, pattern) + " +- " + textOf(shown->error, pattern)
                 : std::string();
}

// Value or error by itself.
template <auto member, auto part>
std::string comparedText(const ListedPeak& peak) {
    return peak.*member ? textOf((*(peak.*member)).*part, "0.0000") : std::string();
}

// A group whose fit did not end tells no counts of its peaks.
void setNet(ListedPeak& peak) {
    const PeakRecord& measured = peak.measured;
    peak.net = measured.group > 0 ? measured.area : measured.net;
    peak.netError = measured.group > 0 ? measured.areaError : measured.netError;
}

void setEnergies(ListedPeak& peak, const Calibration& calibration) {
    const double n = peak.measured.centroid;
    peak.energy = calibration.a + (calibration.b + calibration.c * n) * n;
    peak.energyFwhm = peak.measured.fwhm * (calibration.b + 2 * calibration.c * n);
}

}  // namespace

std::optional<Calibration> knownCalibration(const Spectrum& spectrum) {
    if (spectrum.calCurrent == startCalibration)
        return std::nullopt;
    return writtenCalibration(spectrum);
}

PeakList listPeaks(const Spectrum& spectrum, const DerivedArrays& derived) {
    const std::optional<Calibration> calibration = knownCalibration(spectrum);
    const double seconds = spectrum.openedLiveTime.seconds();
    PeakList list{.peaks = {}, .calibrated = calibration.has_value()};
    for (const PeakRecord& measured : measurePeaks(spectrum, derived).peaks) {
        ListedPeak& peak = list.peaks.emplace_back();
        peak.measured = measured;
        setNet(peak);
        if (seconds > 0 && peak.netError > 0)
            peak.rate = peak.net / seconds;
        if (calibration)
            setEnergies(peak, *calibration);
    }
    std::ranges::stable_sort(list.peaks, {},
                             [](const ListedPeak& peak) { return peak.measured.centroid; });
    return list;
}

std::vector<PeakColumn> peakColumns(bool compared) {
    using P = PeakRecord;
    using R = PeakRegions;
    std::vector<PeakColumn> columns = {
        PeakColumn{">Channel ", "Channel", "Centroid", measuredText<&P::centroid>},
        PeakColumn{"", "Channel error", "", measuredText<&P::centroidError>},
        PeakColumn{">  Energy", "Energy (keV)", "Energy of the centroid, keV",
                   [](const ListedPeak& peak) { return textOf(peak.energy, "0.00"); }},
        PeakColumn{">FWHM(ch)", "FWHM (channels)", "Full width at half maximum, channels",
                   measuredText<&P::fwhm>},
        PeakColumn{">FWHM(keV)", "FWHM (keV)", "Full width at half maximum, keV",
                   [](const ListedPeak& peak) { return textOf(peak.energyFwhm, "0.00"); }},
        PeakColumn{">     Net", "Net", "Net counts; of a peak in a group its own share, by the fit",
                   netText},
        PeakColumn{">Err(%)", "Error (%)", "One standard deviation of the net counts, per cent",
                   relativeErrorText},
        PeakColumn{">     cps", "Counts per second", "Net counts per second of live time",
                   rateText},
        PeakColumn{">Signif.", "Significance", "Net counts, in their standard deviations",
                   significanceText},
        PeakColumn{">Group", "Group", "Peaks of one number overlap and are measured together",
                   groupText},
        PeakColumn{"<Candidate       ", "Candidate",
                   "Nuclides that could explain the peak, or what else it could be; never a claim",
                   [](const ListedPeak& peak) { return peak.candidates; }},
        PeakColumn{"", "Gross of the regions", "", wholeText<&P::gross>},
        PeakColumn{"", "Net of the regions", "", wholeText<&P::net>},
        PeakColumn{"", "Decision threshold", "", wholeText<&P::decisionThreshold>},
        PeakColumn{"", "Detection limit", "", wholeText<&P::detectionLimit>},
        PeakColumn{"", "First channel", "", boundText<&R::pkLow>},
        PeakColumn{"", "Last channel", "", boundText<&R::pkHigh>},
    };
    if (compared)
        columns.insert(
            columns.end(),
            {{">      Second Net", "",
              "Net counts of the second spectrum in the same regions, scaled",
              [](const ListedPeak& peak) { return textOf(peak.second, "0.0"); }},
             {">            Ratio", "", "Net counts of the regions to those of the second spectrum",
              [](const ListedPeak& peak) { return textOf(peak.ratio, "0.000"); }},
             {"", "Second net", "", comparedText<&ListedPeak::second, &WithError::value>},
             {"", "Second net error", "", comparedText<&ListedPeak::second, &WithError::error>},
             {"", "Ratio", "", comparedText<&ListedPeak::ratio, &WithError::value>},
             {"", "Ratio error", "", comparedText<&ListedPeak::ratio, &WithError::error>}});
    return columns;
}

std::vector<PeakColumn> shownPeakColumns(bool compared) {
    std::vector<PeakColumn> columns = peakColumns(compared);
    std::erase_if(columns, [](const PeakColumn& column) { return column.heading.empty(); });
    return columns;
}

std::string peakDetails(const ListedPeak& peak) {
    const PeakRegions& r = peak.measured.regions;
    const auto channels = [](std::int32_t low, std::int32_t high) {
        return plainNumber(std::int64_t{low}) + " to " + plainNumber(std::int64_t{high});
    };
    return "Channel " + measuredText<&PeakRecord::centroid>(peak) + " +- " +
           measuredText<&PeakRecord::centroidError>(peak) + ", measured from " +
           channels(r.pkLow, r.pkHigh) + " over the background of " +
           channels(r.bkg1Low, r.bkg1High) + " and " + channels(r.bkg2Low, r.bkg2High) +
           (peak.measured.fwhmError > 0 ? "" : "; width of its place") + ". Decision threshold " +
           wholeText<&PeakRecord::decisionThreshold>(peak) + ", detection limit " +
           wholeText<&PeakRecord::detectionLimit>(peak) + " counts." +
           (peak.candidates.empty() ? "" : " Candidates: " + peak.candidates + ".");
}

std::string remarkOn(const PeakList& list) {
    if (list.peaks.empty())
        return "No peaks are marked.";
    const std::string count = plainNumber(std::int64_t(list.peaks.size())) + " peaks.";
    return list.calibrated ? count
                           : count + " Not calibrated: there are no energies, and no candidates.";
}

}  // namespace kestrel
