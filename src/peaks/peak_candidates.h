// Candidates for the peaks of a list, and how the window tells of them.
#pragma once

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "nuclide/candidates.h"
#include "peaks/peak_list.h"

namespace kestrel {

// The nuclides that pass the filters, read from the database when it or they have changed.
class CandidateLibrary {
  public:
    // An open database stays open, a closed one is closed again. Throws DatabaseError. Faults:
    // Overflow.
    std::span<const GammaNuclide> read(NuclideDatabase& database, const std::string& marigoldDir,
                                       const EnergyEntries& entries);

  private:
    std::optional<std::string> folder_;
    EnergyEntries entries_;
    std::vector<GammaNuclide> nuclides_;
};

struct PeakCandidates : CandidateList {
    std::vector<MeasuredPeak> peaks;  // those of the list; none without a calibration
};

// A line is found in a peak whose centroid lies within 0.7 FWHM of it.
PeakCandidates findPeakCandidates(const PeakList& list, const Spectrum& spectrum,
                                  std::span<const GammaNuclide> library);

// Puts them beside their peaks: nuclides, the first candidate first, and what else a peak is.
void nameCandidates(const PeakCandidates& found, PeakList& list);

// Tables as a grid takes them: candidates, and the strong lines of one of them.
inline constexpr std::string_view candidateFormat =
    "> |<Candidate|>HalfLife    |>Score|>Found   |<Missing";
inline constexpr std::string_view candidateLineFormat = "> |>   Energy|>Int.(%) |<Peak            ";
inline constexpr std::size_t candidateHalfLifeColumn = 1;
const std::vector<std::string_view>& candidateExplanations();
std::array<std::string, 5> candidateTexts(const Candidate& candidate);
std::array<std::string, 3> candidateLineTexts(const CandidateLine& line,
                                              std::span<const MeasuredPeak> peaks);

// Where the energies of the peaks had to be moved; empty where not.
std::string shiftText(const PeakCandidates& found);

}  // namespace kestrel
