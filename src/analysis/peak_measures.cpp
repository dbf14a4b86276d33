#include "analysis/peak_measures.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

#include "analysis/gaussian_fit.h"
#include "analysis/peak_regions.h"
#include "base/runtime_fault.h"
#include "spectrum/peak_measure.h"
#include "spectrum/peak_search.h"

namespace kestrel {
namespace {

using Counts = std::span<const std::int32_t>;

constexpr WidthCurve usualWidth{9, 0};  // of a spectrum whose peaks tell none
constexpr std::size_t mostWidths = 60;  // that make the curve
constexpr double strongEnough = 15;     // peak measure over its threshold, for a width of its own
constexpr double wellKnown = 0.05;      // relative error of such a width

struct Mark {
    int channel = 0;
    double measure = 0;
};

std::vector<Mark> marksOf(const DerivedArrays& derived, int channelCount) {
    std::vector<Mark> marks;
    const auto measures = derived.peakSignificance.span(0, channelCount);
    for (int k = 0; k < channelCount; ++k)
        if (const double measure = measures[static_cast<std::size_t>(k)];
            measure > peakCentreMeasure)
            marks.push_back({k, measure});
    return marks;
}

// Channels from the top to half of the height above the lowest count on that side, which is sought
// up to `end`; 0 where the counts do not fall so far.
double halfWidth(Counts counts, int top, int step, int end) {
    const auto at = [&](int k) { return double{0} + counts[static_cast<std::size_t>(k)]; };
    double lowest = at(top);
    for (int k = top; k != end; k += step)
        lowest = std::min(lowest, at(k + step));
    const double half = 0.5 * (at(top) + lowest);
    for (int k = top; k != end; k += step)
        if (at(k + step) < half)
            return std::abs(k - top) + (at(k) - half) / (at(k) - at(k + step));
    return 0;
}

// Good to some ten per cent: the fits start with it. The nearer side of the two tells more where a
// neighbour fills the valley on the other.
std::vector<WidthPoint> roughWidths(Counts counts, std::span<const Mark> marks) {
    constexpr int furthest = 150;
    std::vector<WidthPoint> points;
    for (std::size_t i = 0; i < marks.size(); ++i) {
        const int top = marks[i].channel;
        const int before = i == 0 ? 0 : marks[i - 1].channel;
        const int after =
            i + 1 == marks.size() ? static_cast<int>(counts.size()) - 1 : marks[i + 1].channel;
        const double left = halfWidth(counts, top, -1, std::max(before, top - furthest));
        const double right = halfWidth(counts, top, 1, std::min(after, top + furthest));
        if (const double fwhm = 2 * std::min(left, right); fwhm > 0)
            points.push_back(
                {double(top), fwhm, 0.1 * fwhm * peakCentreMeasure / marks[i].measure});
    }
    return points;
}

// The points with the least relative error.
void keepBest(std::vector<WidthPoint>& points) {
    std::ranges::sort(points, {}, [](const WidthPoint& point) { return point.error / point.fwhm; });
    points.resize(std::min(points.size(), mostWidths));
}

WidthCurve curveThrough(std::vector<WidthPoint> points, const WidthCurve& without) {
    keepBest(points);
    return points.empty() ? without : fitWidthCurve(points);
}

// One spectrum's marks on their way to records.
class Measurement {
  public:
    Measurement(const Spectrum& spectrum, std::vector<Mark> marks, int channelCount)
        : spectrum_(spectrum),
          counts_(spectrum.counts.span(0, channelCount)),
          marks_(std::move(marks)),
          lines_(marks_.size()),
          widths_(marks_.size()) {}

    PeakMeasures run();

  private:
    std::vector<MeasuredTogether> regions() const {
        return findRegions(places_, static_cast<int>(counts_.size()));
    }
    void placeByMarks();
    void placeByFits();
    GaussianFit fit(const MeasuredTogether& together, double fwhm, LineWidth width) const;
    void fitStrong(const MeasuredTogether& alone);
    void fitRest(const MeasuredTogether& together);
    void keepMark(std::size_t peak);
    bool hasOwnWidth(std::size_t peak) const { return widths_[peak].fwhm > 0; }
    WidthCurve ownWidths() const;
    NetCounts areaOf(const MeasuredTogether& together) const;
    void record(const MeasuredTogether& together, int group, std::vector<PeakRecord>& peaks) const;

    const Spectrum& spectrum_;
    Counts counts_;
    std::vector<Mark> marks_;
    std::vector<FittedLine> lines_;
    std::vector<WidthPoint> widths_;  // of the strong peaks that stand alone
    std::vector<PeakPlace> places_;
    WidthCurve curve_;
};

void Measurement::placeByMarks() {
    for (const Mark& mark : marks_) {
        const double fwhm = curve_.fwhm(mark.channel);
        places_.push_back({double(mark.channel), fwhm, reachOf(fwhm, 0, 1)});
    }
}

// The fit of a weak peak leans towards the scatter beside it: such a peak stays at its mark.
void Measurement::placeByFits() {
    places_.clear();
    for (std::size_t i = 0; i < marks_.size(); ++i) {
        const double fwhm = curve_.fwhm(lines_[i].centre);
        const double reach = reachOf(fwhm, lines_[i].area, lines_[i].areaError);
        const bool strong = lines_[i].areaError < 0.1 * lines_[i].area;
        places_.push_back({strong ? lines_[i].centre : marks_[i].channel, fwhm, reach});
    }
}

GaussianFit Measurement::fit(const MeasuredTogether& together, double fwhm, LineWidth width) const {
    std::vector<double> centres;
    for (std::size_t i = together.first; i <= together.last; ++i)
        centres.push_back(marks_[i].channel);
    return fitGaussians(counts_, together.regions.bkg1Low, together.regions.bkg2High, centres,
                        fwhm / fwhmOfSigma, width);
}

void Measurement::fitStrong(const MeasuredTogether& alone) {
    const Mark& mark = marks_[alone.first];
    if (alone.first != alone.last ||
        mark.measure < strongEnough * peakCentreMeasure / peakThreshold)
        return;
    const GaussianFit found = fit(alone, curve_.fwhm(mark.channel), LineWidth::Free);
    if (!found.converged || found.sigmaError > wellKnown * found.sigma)
        return;
    lines_[alone.first] = found.lines.front();
    widths_[alone.first] = {found.lines.front().centre, fwhmOfSigma * found.sigma,
                            fwhmOfSigma * found.sigmaError};
}

WidthCurve Measurement::ownWidths() const {
    std::vector<WidthPoint> own;
    for (std::size_t i = 0; i < widths_.size(); ++i)
        if (hasOwnWidth(i))
            own.push_back(widths_[i]);
    return curveThrough(std::move(own), curve_);
}

// Where no fit tells: the mark, with the place uncertain by the width.
void Measurement::keepMark(std::size_t peak) {
    const double centre = marks_[peak].channel;
    lines_[peak] = {centre, curve_.fwhm(centre) / fwhmOfSigma, 0, 0};
}

void Measurement::fitRest(const MeasuredTogether& together) {
    if (together.first == together.last && hasOwnWidth(together.first))
        return;
    const double middle = 0.5 * (together.regions.pkLow + together.regions.pkHigh);
    const GaussianFit found = fit(together, curve_.fwhm(middle), LineWidth::Given);
    const bool usable =
        found.converged && std::ranges::is_sorted(found.lines, {}, &FittedLine::centre);
    for (std::size_t i = together.first; i <= together.last; ++i)
        if (usable)
            lines_[i] = found.lines[i - together.first];
        else
            keepMark(i);
}

// Sums beyond 32 bits and negative counts have no area.
NetCounts Measurement::areaOf(const MeasuredTogether& together) const {
    try {
        return netCounts(spectrum_, together.regions);
    } catch (const RuntimeFault&) {
        return {};
    }
}

void Measurement::record(const MeasuredTogether& together, int group,
                         std::vector<PeakRecord>& peaks) const {
    const NetCounts counts = areaOf(together);
    const double threshold = quantile * double{counts.emptyError};
    PeakRecord peak{.regions = together.regions,
                    .gross = counts.gross,
                    .net = counts.net,
                    .netError = counts.netError,
                    .significance = counts.netError > 0 ? counts.net / counts.netError : 0,
                    .decisionThreshold = threshold,
                    .detectionLimit = quantile * quantile + 2 * threshold,
                    .group = group};
    for (std::size_t i = together.first; i <= together.last; ++i) {
        peak.channel = marks_[i].channel;
        peak.centroid = lines_[i].centre;
        peak.centroidError = lines_[i].centreError;
        peak.fwhm = hasOwnWidth(i) ? widths_[i].fwhm : curve_.fwhm(peak.centroid);
        peak.fwhmError = widths_[i].error;
        peak.area = lines_[i].area;
        peak.areaError = lines_[i].areaError;
        peaks.push_back(peak);
    }
}

PeakMeasures Measurement::run() {
    curve_ = curveThrough(roughWidths(counts_, marks_), usualWidth);
    placeByMarks();
    const std::vector<MeasuredTogether> start = regions();
    for (const MeasuredTogether& together : start)
        fitStrong(together);
    curve_ = ownWidths();
    for (const MeasuredTogether& together : start)
        fitRest(together);
    placeByFits();
    PeakMeasures measures{.peaks = {}, .width = curve_};
    int groups = 0;
    for (const MeasuredTogether& together : regions())
        record(together, together.first == together.last ? 0 : ++groups, measures.peaks);
    return measures;
}

}  // namespace

PeakMeasures measurePeaks(const Spectrum& spectrum, const DerivedArrays& derived) {
    const auto channels =
        static_cast<int>(std::clamp<std::int64_t>(spectrum.channelCount, 0, channelLimit));
    return Measurement(spectrum, marksOf(derived, channels), channels).run();
}

}  // namespace kestrel
