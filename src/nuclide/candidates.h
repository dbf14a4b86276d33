// Candidates: which nuclides could explain the peaks of a spectrum, and what speaks for and against
// each. Never a claim.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "nuclide/gamma_library.h"
#include "nuclide/peak_origins.h"

namespace kestrel {

struct EnergyRange {
    double low = 0;  // keV
    double high = 0;
};

struct CandidateLine {
    GammaLine line;
    double weight = 0;                // intensity times efficiencyShape
    std::optional<std::size_t> peak;  // that it is found in
    bool missing = false;             // ought to be seen, but is not
};

// One nuclide. Its strong lines are those with at least a tenth of the weight of its heaviest line
// within the range. The activity is the highest that no found line contradicts: the lowest of
// (net + 2 errors) / weight. A line that is not found is missing when half of its counts at that
// activity exceed the detection limit of its place.
struct Candidate {
    std::string nuclide;
    std::string halfLife;
    double seconds = 0;       // the same
    double foundShare = 0;    // of the intensity of the strong lines
    double missingShare = 0;  // the same
    double activity = 0;      // counts per weight
    // Peaks that no candidate before it explains, each by the logarithm of its significance, times
    // the square of the score.
    double explained = 0;
    std::vector<CandidateLine> lines;  // the strong ones, ascending
    UnseenLine unseen;                 // the heaviest line above the range

    double score() const { return foundShare - missingShare; }
};

struct CandidateList {
    std::vector<Candidate> candidates;  // the one that explains most first
    std::vector<OriginOfPeak> origins;  // of each peak
    // Of each peak, the places of the candidates with a line, strong or weak, that explains at
    // least a tenth of its counts.
    std::vector<std::vector<std::size_t>> candidatesOfPeak;
    // keV that were added to the energies of the peaks, because the common nuclides explain far
    // more of them there: the calibration is off by as much.
    double shift = 0;
};

// The peaks stand in ascending order, in a spectrum that shows the energies of `range`. Time grows
// with the number of peaks and of lines of the library, memory with that of the candidates.
CandidateList findCandidates(std::span<const GammaNuclide> library,
                             std::span<const MeasuredPeak> peaks, const EnergyRange& range);

}  // namespace kestrel
