#include "peaks/peak_candidates.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr double toleranceOfFwhm = 0.7;

// A peak whose own counts are not known has at most those of its group.
MeasuredPeak measuredPeak(const ListedPeak& peak) {
    const bool known = peak.netError > 0;
    return {.energy = *peak.energy,
            .tolerance = toleranceOfFwhm * *peak.energyFwhm,
            .net = std::max(known ? peak.net : peak.measured.net, 0.0),
            .netError = known ? peak.netError : peak.measured.netError};
}

EnergyRange shownEnergies(const Spectrum& spectrum) {
    const Calibration& c = spectrum.calCurrent;
    const double last = spectrum.channelCount - 1.0;
    return {c.a, c.a + (c.b + c.c * last) * last};
}

// Leaves a database as it was, open or not.
class OpenDatabase {
  public:
    OpenDatabase(NuclideDatabase& database, const std::string& folder)
        : database_(database), wasOpen_(database.isOpen()) {
        database.open(folder);
    }
    ~OpenDatabase() {
        if (!wasOpen_)
            database_.close();
    }
    OpenDatabase(const OpenDatabase&) = delete;
    OpenDatabase& operator=(const OpenDatabase&) = delete;

  private:
    NuclideDatabase& database_;
    bool wasOpen_;
};

template <typename Test>
std::int64_t countLines(const Candidate& candidate, Test test) {
    return std::ranges::count_if(candidate.lines, test);
}

}  // namespace

std::span<const GammaNuclide> CandidateLibrary::read(NuclideDatabase& database,
                                                     const std::string& marigoldDir,
                                                     const EnergyEntries& entries) {
    if (folder_ == marigoldDir && entries_ == entries)
        return nuclides_;
    folder_.reset();
    const OpenDatabase open(database, marigoldDir);
    nuclides_ = readGammaLibrary(database, entries);
    folder_ = marigoldDir;
    entries_ = entries;
    return nuclides_;
}

PeakCandidates findPeakCandidates(const PeakList& list, const Spectrum& spectrum,
                                  std::span<const GammaNuclide> library) {
    PeakCandidates found;
    if (!list.calibrated)
        return found;
    std::ranges::transform(list.peaks, std::back_inserter(found.peaks), measuredPeak);
    static_cast<CandidateList&>(found) =
        findCandidates(library, found.peaks, shownEnergies(spectrum));
    return found;
}

void nameCandidates(const PeakCandidates& found, PeakList& list) {
    for (std::size_t i = 0; i < found.peaks.size(); ++i) {
        std::string& text = list.peaks[i].candidates;
        text = originText(found.origins[i], found.peaks);
        for (const std::size_t place : found.candidatesOfPeak[i])
            text.append(text.empty() ? "" : ", ").append(found.candidates[place].nuclide);
    }
}

const std::vector<std::string_view>& candidateExplanations() {
    static const std::vector<std::string_view> texts = {
        "The one that explains most of the peaks first; never a claim",
        "",
        "Share of its strong lines, by intensity, that is found, less the share that is missing",
        "Strong lines that are found in peaks",
        "Strong lines that ought to be seen and are not",
    };
    return texts;
}

std::array<std::string, 5> candidateTexts(const Candidate& candidate) {
    const auto found = countLines(candidate, [](const auto& line) { return !!line.peak; });
    const auto missing = countLines(candidate, [](const auto& line) { return line.missing; });
    return {candidate.nuclide, candidate.halfLife, formatNumber(candidate.score(), "0.00"),
            plainNumber(found) + " of " +
                plainNumber(static_cast<std::int64_t>(candidate.lines.size())),
            missing > 0 ? plainNumber(missing) : std::string()};
}

std::array<std::string, 3> candidateLineTexts(const CandidateLine& line,
                                              std::span<const MeasuredPeak> peaks) {
    const std::string peak = line.peak      ? formatNumber(peaks[*line.peak].energy, "0.00")
                             : line.missing ? "missing"
                                            : "too weak to be seen";
    return {formatNumber(double{line.line.energy}, "0.00"),
            formatNumber(double{line.line.intensity}, "0.00"), peak};
}

std::string shiftText(const PeakCandidates& found) {
    if (found.shift == 0)
        return {};
    return "The candidates fit best with all energies " +
           formatNumber(std::abs(found.shift), "0.00") + " keV " +
           (found.shift > 0 ? "higher" : "lower") + ": the calibration may be off by as much.";
}

}  // namespace kestrel
