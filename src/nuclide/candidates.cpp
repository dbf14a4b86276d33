#include "nuclide/candidates.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

#include <queue>

#include "nuclide/common_nuclides.h"
#include "nuclide/peak_origins.h"
#include "spectrum/efficiency_shape.h"

namespace kestrel {
namespace {

constexpr double strongShare = 0.1;
constexpr double leastScore = 0.4;
constexpr double leastExplained = 0.1;
constexpr double leastShare = 0.1;  // of the counts of a peak
constexpr std::size_t mostCandidates = 100;
// The efficiency of a detector differs from the coarse shape by up to this factor.
constexpr double efficiencyDoubt = 2.0;
// A nuclide that laboratories and their rooms really hold counts this much more in the order.
constexpr double commonWeight = 2.0;

// Calibrations of real files are off by some keV. Another place of the peaks is believed where the
// common nuclides explain that much more.
constexpr double shiftStep = 0.25;  // keV
constexpr int mostSteps = 12;
constexpr double shiftAdvantage = 1.2;

// The peak nearest to an energy among those that reach it.
std::optional<std::size_t> peakAt(std::span<const MeasuredPeak> peaks, double energy) {
    const auto above = std::ranges::lower_bound(peaks, energy, {}, &MeasuredPeak::energy);
    const auto place = static_cast<std::size_t>(above - peaks.begin());
    std::optional<std::size_t> nearest;
    double least = 0;
    for (std::size_t i = place - std::min<std::size_t>(place, 1);
         i < std::min(place + 1, peaks.size()); ++i) {
        const double distance = std::abs(peaks[i].energy - energy);
        if (distance < peaks[i].tolerance && (!nearest || distance < least)) {
            nearest = i;
            least = distance;
        }
    }
    return nearest;
}

// Counts that a line needs to be seen at an energy: 4.65 standard deviations of the weakest of the
// peaks next to it, which are what Currie's formula allows there, and 2.71 counts.
double detectionLimit(std::span<const MeasuredPeak> peaks, double energy) {
    constexpr std::size_t neighbours = 3;
    const auto above = std::ranges::lower_bound(peaks, energy, {}, &MeasuredPeak::energy);
    const auto place = static_cast<std::size_t>(above - peaks.begin());
    const std::size_t first = place - std::min(place, neighbours);
    const std::size_t last = std::min(place + neighbours, peaks.size());
    double least = peaks[first].netError;
    for (std::size_t i = first; i < last; ++i)
        least = std::min(least, peaks[i].netError);
    return 2.71 + 4.65 * least;
}

double weightOf(const GammaLine& line) {
    return double{line.intensity} * efficiencyShape(double{line.energy});
}

std::vector<CandidateLine> strongLines(const GammaNuclide& nuclide, const EnergyRange& range) {
    std::vector<CandidateLine> lines;
    double heaviest = 0;
    for (const GammaLine& line : nuclide.lines) {
        const double energy = double{line.energy};
        if (energy < range.low || energy > range.high)
            continue;
        const double weight = weightOf(line);
        heaviest = std::max(heaviest, weight);
        lines.push_back({.line = line, .weight = weight, .peak = {}});
    }
    std::erase_if(lines, [&](const CandidateLine& l) { return l.weight < strongShare * heaviest; });
    return lines;
}

double highestActivity(const std::vector<CandidateLine>& lines,
                       std::span<const MeasuredPeak> peaks) {
    std::optional<double> lowest;
    for (const CandidateLine& line : lines) {
        if (!line.peak)
            continue;
        const MeasuredPeak& peak = peaks[*line.peak];
        const double most = (peak.net + 2 * peak.netError) / line.weight;
        lowest = std::min(lowest.value_or(most), most);
    }
    return lowest.value_or(0.0);
}

void markMissing(Candidate& candidate, std::span<const MeasuredPeak> peaks) {
    for (CandidateLine& line : candidate.lines) {
        const double expected = candidate.activity * line.weight / efficiencyDoubt;
        line.missing = !line.peak && expected > detectionLimit(peaks, double{line.line.energy});
    }
}

// By the intensities alone: weights would make much of the lines of low energy, which hide first.
// A line at the place of annihilation tells nothing.
void addShares(Candidate& candidate, std::span<const MeasuredPeak> peaks) {
    double all = 0;
    for (const CandidateLine& line : candidate.lines) {
        if (line.peak && isAnnihilation(peaks[*line.peak]))
            continue;
        const double intensity = double{line.line.intensity};
        all += intensity;
        candidate.foundShare += line.peak ? intensity : 0;
        candidate.missingShare += line.missing ? intensity : 0;
    }
    if (all > 0) {
        candidate.foundShare /= all;
        candidate.missingShare /= all;
    }
}

UnseenLine heaviestAbove(const GammaNuclide& nuclide, double energy, double activity) {
    UnseenLine heaviest;
    for (const GammaLine& line : nuclide.lines) {
        const double counts = efficiencyDoubt * activity * weightOf(line);
        if (double{line.energy} > energy && counts > heaviest.mostCounts)
            heaviest = {double{line.energy}, counts};
    }
    return heaviest;
}

std::optional<Candidate> judge(const GammaNuclide& nuclide, std::span<const MeasuredPeak> peaks,
                               const EnergyRange& range) {
    Candidate candidate{.nuclide = nuclide.key,
                        .halfLife = nuclide.halfLife,
                        .seconds = double{nuclide.seconds},
                        .lines = strongLines(nuclide, range),
                        .unseen = {}};
    for (CandidateLine& line : candidate.lines)
        line.peak = peakAt(peaks, double{line.line.energy});
    candidate.activity = highestActivity(candidate.lines, peaks);
    markMissing(candidate, peaks);
    addShares(candidate, peaks);
    candidate.unseen = heaviestAbove(nuclide, range.high, candidate.activity);
    if (candidate.score() < leastScore)
        return std::nullopt;
    return candidate;
}

// Share of the counts of a peak that a line explains.
double shareOf(const Candidate& candidate, double weight, const MeasuredPeak& peak) {
    const double expected = efficiencyDoubt * candidate.activity * weight;
    return peak.net <= 0 ? 0.0 : std::min(1.0, expected / peak.net);
}

// A peak counts by the logarithm of its significance: one of 10 standard deviations as 1, one of
// 1000 as 3.
double weightOf(const MeasuredPeak& peak) {
    return peak.netError > 0 ? std::log10(1 + peak.net / peak.netError) : 0.0;
}

// Of two energies, from their distance in tolerances: 1, or 1/2 at the limit.
double agreement(double off) {
    return 1 - off * off / 2;
}

struct Judged {
    Candidate candidate;
    const GammaNuclide* nuclide;
    double rank = 0;
};

// With the energies of all peaks moved.
class CandidateSearch {
  public:
    CandidateSearch(std::span<const GammaNuclide> library, std::span<const MeasuredPeak> peaks,
                    const EnergyRange& range, double shift);

    // What tells one shift from another: annihilation, and nuclides with two lines or more. A
    // single line is anywhere.
    double evidence() const;
    CandidateList takeList();

  private:
    std::vector<Judged> judgeAll(std::span<const GammaNuclide> library,
                                 const EnergyRange& range) const;
    void rank(Judged& one) const;
    double explainedBy(const Candidate& candidate) const;
    void putInOrder(std::vector<Judged> judged);
    void take(Judged& judged);
    void closePeaks(std::span<const GammaLine> lines);

    std::vector<MeasuredPeak> peaks_;
    std::vector<double> open_;  // share of each that nothing explains yet
    CandidateList list_;
};

CandidateSearch::CandidateSearch(std::span<const GammaNuclide> library,
                                 std::span<const MeasuredPeak> peaks, const EnergyRange& range,
                                 double shift)
    : peaks_(peaks.begin(), peaks.end()), open_(peaks.size(), 1.0) {
    list_.shift = shift;
    list_.candidatesOfPeak.resize(peaks_.size());
    for (MeasuredPeak& peak : peaks_)
        peak.energy += shift;
    if (const auto peak = peakAt(peaks_, electronMass))
        open_[*peak] = 0;
    putInOrder(judgeAll(library, range));
}

std::vector<Judged> CandidateSearch::judgeAll(std::span<const GammaNuclide> library,
                                              const EnergyRange& range) const {
    std::vector<Judged> judged;
    if (peaks_.empty())
        return judged;
    // Below the first peak nothing tells what would be seen.
    const double first = peaks_.front().energy - peaks_.front().tolerance;
    for (const GammaNuclide& nuclide : library) {
        if (auto candidate = judge(nuclide, peaks_, {std::max(range.low, first), range.high})) {
            judged.push_back({std::move(*candidate), &nuclide});
            rank(judged.back());
        }
    }
    return judged;
}

void CandidateSearch::rank(Judged& one) const {
    Candidate& candidate = one.candidate;
    candidate.explained = explainedBy(candidate);
    one.rank = candidate.explained * (isCommonNuclide(candidate.nuclide) ? commonWeight : 1.0);
}

// Peaks that are still open, and how well their energies agree.
double CandidateSearch::explainedBy(const Candidate& candidate) const {
    double sum = 0;
    for (const CandidateLine& line : candidate.lines) {
        if (!line.peak)
            continue;
        const MeasuredPeak& peak = peaks_[*line.peak];
        const double off = (peak.energy - double{line.line.energy}) / peak.tolerance;
        sum += weightOf(peak) * agreement(off) *
               std::min(open_[*line.peak], shareOf(candidate, line.weight, peak));
    }
    return candidate.score() * candidate.score() * sum;
}

// Time and again the one that explains most of what is still open; of equals the first of the
// library. As that only ever becomes less, the first one that stays in front with its rank of now
// is it.
void CandidateSearch::putInOrder(std::vector<Judged> judged) {
    std::priority_queue<std::pair<double, std::ptrdiff_t>> order;
    for (std::size_t i = 0; i < judged.size(); ++i)
        order.emplace(judged[i].rank, -static_cast<std::ptrdiff_t>(i));
    while (!order.empty() && list_.candidates.size() < mostCandidates) {
        const std::ptrdiff_t place = order.top().second;
        order.pop();
        Judged& best = judged[static_cast<std::size_t>(-place)];
        rank(best);
        if (best.candidate.explained < leastExplained)
            continue;
        if (const std::pair now(best.rank, place); !order.empty() && now < order.top())
            order.push(now);
        else
            take(best);
    }
}

void CandidateSearch::take(Judged& judged) {
    list_.candidates.push_back(std::move(judged.candidate));
    closePeaks(judged.nuclide->lines);
    closePeaks(judged.nuclide->xrays);
}

// By the candidate at the end of the list. Also weak lines and X-rays explain peaks, once a nuclide
// is there.
void CandidateSearch::closePeaks(std::span<const GammaLine> lines) {
    const std::size_t place = list_.candidates.size() - 1;
    for (const GammaLine& line : lines) {
        const auto peak = peakAt(peaks_, double{line.energy});
        if (!peak)
            continue;
        const double share = shareOf(list_.candidates.back(), weightOf(line), peaks_[*peak]);
        open_[*peak] = std::max(0.0, open_[*peak] - share);
        std::vector<std::size_t>& told = list_.candidatesOfPeak[*peak];
        if (share >= leastShare && (told.empty() || told.back() != place))
            told.push_back(place);
    }
}

double CandidateSearch::evidence() const {
    double sum = 0;
    for (const Candidate& candidate : list_.candidates) {
        if (std::ranges::count_if(candidate.lines, [](const auto& l) { return !!l.peak; }) > 1)
            sum += candidate.explained;
    }
    for (const MeasuredPeak& peak : peaks_) {
        const double off = (peak.energy - electronMass) / peak.tolerance;
        sum += std::abs(off) <= 1 ? agreement(off) * weightOf(peak) : 0;
    }
    return sum;
}

CandidateList CandidateSearch::takeList() {
    std::vector<UnseenLine> unseen;
    std::ranges::transform(list_.candidates, std::back_inserter(unseen), &Candidate::unseen);
    list_.origins = findOrigins(peaks_, open_, unseen);
    return std::move(list_);
}

// Each once, whatever the library holds.
std::vector<GammaNuclide> commonOf(std::span<const GammaNuclide> library) {
    std::vector<GammaNuclide> common;
    for (const GammaNuclide& nuclide : library) {
        if (isCommonNuclide(nuclide.key) &&
            std::ranges::find(common, nuclide.key, &GammaNuclide::key) == common.end())
            common.push_back(nuclide);
    }
    return common;
}

}  // namespace

CandidateList findCandidates(std::span<const GammaNuclide> library,
                             std::span<const MeasuredPeak> peaks, const EnergyRange& range) {
    const std::vector<GammaNuclide> common = commonOf(library);
    double shift = 0;
    double most = shiftAdvantage * CandidateSearch(common, peaks, range, shift).evidence();
    for (int step = -mostSteps; step <= mostSteps; ++step) {
        const double tried = step * shiftStep;
        const double evidence = CandidateSearch(common, peaks, range, tried).evidence();
        if (evidence > most) {
            most = evidence;
            shift = tried;
        }
    }
    return CandidateSearch(library, peaks, range, shift).takeList();
}

}  // namespace kestrel
