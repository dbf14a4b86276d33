#include "nuclide/candidates.h"

#include <algorithm>
#include <cmath>
#include <iterator>

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
        if (distance <= peaks[i].tolerance && (!nearest || distance < least)) {
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

std::vector<CandidateLine> strongLines(const GammaNuclide& nuclide, const EnergyRange& range) {
    std::vector<CandidateLine> lines;
    double heaviest = 0;
    for (const GammaLine& line : nuclide.lines) {
        const double energy = double{line.energy};
        if (energy < range.low || energy > range.high)
            continue;
        const double weight = double{line.intensity} * efficiencyShape(energy);
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

void addShares(Candidate& candidate) {
    double all = 0;
    for (const CandidateLine& line : candidate.lines)
        all += line.weight;
    for (const CandidateLine& line : candidate.lines) {
        candidate.foundShare += line.peak ? line.weight / all : 0;
        candidate.missingShare += line.missing ? line.weight / all : 0;
    }
}

std::optional<Candidate> judge(const GammaNuclide& nuclide, std::span<const MeasuredPeak> peaks,
                               const EnergyRange& range) {
    Candidate candidate{.nuclide = nuclide.key,
                        .halfLife = nuclide.halfLife,
                        .seconds = double{nuclide.seconds},
                        .lines = strongLines(nuclide, range)};
    for (CandidateLine& line : candidate.lines)
        line.peak = peakAt(peaks, double{line.line.energy});
    candidate.activity = highestActivity(candidate.lines, peaks);
    markMissing(candidate, peaks);
    addShares(candidate);
    if (candidate.score() < leastScore)
        return std::nullopt;
    return candidate;
}

// Share of the counts of a peak that a line explains.
double shareOf(const Candidate& candidate, const CandidateLine& line, const MeasuredPeak& peak) {
    const double expected = efficiencyDoubt * candidate.activity * line.weight;
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

// Peaks that a candidate explains and that are still open, and how well their energies agree.
double explainedBy(const Candidate& candidate, std::span<const MeasuredPeak> peaks,
                   const std::vector<double>& open) {
    double sum = 0;
    for (const CandidateLine& line : candidate.lines) {
        if (!line.peak)
            continue;
        const MeasuredPeak& peak = peaks[*line.peak];
        const double off = (peak.energy - double{line.line.energy}) / peak.tolerance;
        sum += weightOf(peak) * agreement(off) *
               std::min(open[*line.peak], shareOf(candidate, line, peak));
    }
    return candidate.score() * candidate.score() * sum;
}

// Also its weak lines explain peaks, once a nuclide is there. `place` is its own in the list.
void closePeaks(const Candidate& candidate, const GammaNuclide& nuclide, std::size_t place,
                std::span<const MeasuredPeak> peaks, std::vector<double>& open,
                CandidateList& list) {
    for (const GammaLine& line : nuclide.lines) {
        const double energy = double{line.energy};
        const auto peak = peakAt(peaks, energy);
        if (!peak)
            continue;
        const CandidateLine weighed{
            .line = line, .weight = double{line.intensity} * efficiencyShape(energy), .peak = peak};
        const double share = shareOf(candidate, weighed, peaks[*peak]);
        open[*peak] = std::max(0.0, open[*peak] - share);
        std::vector<std::size_t>& told = list.candidatesOfPeak[*peak];
        if (share >= leastShare && (told.empty() || told.back() != place))
            told.push_back(place);
    }
}

void closeAnnihilation(std::span<const MeasuredPeak> peaks, std::vector<double>& open) {
    if (const auto peak = peakAt(peaks, electronMass))
        open[*peak] = 0;
}

struct Judged {
    Candidate candidate;
    const GammaNuclide* nuclide;
    double rank = 0;
};

std::vector<Judged> judgeAll(std::span<const GammaNuclide> library,
                             std::span<const MeasuredPeak> peaks, const EnergyRange& range) {
    std::vector<Judged> judged;
    for (const GammaNuclide& nuclide : library) {
        if (std::optional<Candidate> candidate = judge(nuclide, peaks, range))
            judged.push_back({std::move(*candidate), &nuclide});
    }
    return judged;
}

void rankAll(std::vector<Judged>& judged, std::span<const MeasuredPeak> peaks,
             const std::vector<double>& open) {
    for (Judged& one : judged) {
        one.candidate.explained = explainedBy(one.candidate, peaks, open);
        one.rank =
            one.candidate.explained * (isCommonNuclide(one.candidate.nuclide) ? commonWeight : 1.0);
    }
}

// Time and again the one that explains most of what is still open.
void putInOrder(std::vector<Judged> judged, std::span<const MeasuredPeak> peaks,
                std::vector<double>& open, CandidateList& list) {
    while (!judged.empty() && list.candidates.size() < mostCandidates) {
        rankAll(judged, peaks, open);
        const auto best = std::ranges::max_element(judged, {}, &Judged::rank);
        if (best->candidate.explained < leastExplained)
            break;
        closePeaks(best->candidate, *best->nuclide, list.candidates.size(), peaks, open, list);
        list.candidates.push_back(std::move(best->candidate));
        judged.erase(best);
    }
}

// What tells a place of the peaks from another: annihilation, and nuclides with two lines or more.
// A single line is anywhere.
double evidenceOf(const CandidateList& list, std::span<const MeasuredPeak> peaks) {
    double sum = 0;
    for (const Candidate& candidate : list.candidates) {
        if (std::ranges::count_if(candidate.lines, [](const auto& l) { return !!l.peak; }) > 1)
            sum += candidate.explained;
    }
    for (const MeasuredPeak& peak : peaks) {
        const double off = (peak.energy + list.shift - electronMass) / peak.tolerance;
        sum += std::abs(off) <= 1 ? agreement(off) * weightOf(peak) : 0;
    }
    return sum;
}

// With the energies of all peaks moved.
CandidateList candidatesAt(std::span<const GammaNuclide> library,
                           std::span<const MeasuredPeak> peaks, const EnergyRange& range,
                           double shift) {
    if (peaks.empty())
        return {};
    std::vector<MeasuredPeak> moved(peaks.begin(), peaks.end());
    for (MeasuredPeak& peak : moved)
        peak.energy += shift;
    // Below the first peak nothing tells what would be seen.
    const double first = moved.front().energy - moved.front().tolerance;
    std::vector<double> open(moved.size(), 1.0);
    closeAnnihilation(moved, open);
    CandidateList list;
    list.shift = shift;
    list.candidatesOfPeak.resize(moved.size());
    putInOrder(judgeAll(library, moved, {std::max(range.low, first), range.high}), moved, open,
               list);
    list.origins = findOrigins(moved, open);
    return list;
}

}  // namespace

CandidateList findCandidates(std::span<const GammaNuclide> library,
                             std::span<const MeasuredPeak> peaks, const EnergyRange& range) {
    std::vector<GammaNuclide> common;
    std::ranges::copy_if(library, std::back_inserter(common),
                         [](const GammaNuclide& n) { return isCommonNuclide(n.key); });
    CandidateList best = candidatesAt(common, peaks, range, 0);
    double most = shiftAdvantage * evidenceOf(best, peaks);
    for (int step = -mostSteps; step <= mostSteps; ++step) {
        CandidateList list = candidatesAt(common, peaks, range, step * shiftStep);
        const double evidence = evidenceOf(list, peaks);
        if (evidence <= most)
            continue;
        most = evidence;
        best = std::move(list);
    }
    return candidatesAt(library, peaks, range, best.shift);
}

}  // namespace kestrel
