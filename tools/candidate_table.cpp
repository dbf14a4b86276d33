// Prints the candidates for the peaks of spectrum files: candidate_table FOLDER FILE..., the folder
// that of the nuclide database.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>

#include "nuclide/candidates.h"
#include "rough_peaks.h"

namespace {

using namespace kestrel;

void print(const CandidateList& list, std::span<const MeasuredPeak> peaks) {
    constexpr std::size_t shown = 12;
    for (std::size_t i = 0; i < std::min(shown, list.candidates.size()); ++i) {
        const Candidate& c = list.candidates[i];
        std::printf("  %-9s %-10s score %5.2f = %4.2f - %4.2f  explains %5.2f:", c.nuclide.c_str(),
                    c.halfLife.c_str(), c.score(), c.foundShare, c.missingShare, c.explained);
        for (const CandidateLine& line : c.lines)
            std::printf(" %.1f%s", double{line.line.energy},
                        line.peak ? "" : (line.missing ? " missing" : " not seen"));
        std::printf("\n");
    }
    for (std::size_t i = 0; i < peaks.size(); ++i) {
        const std::string text = originText(list.origins[i], peaks);
        if (!text.empty())
            std::printf("  %.1f keV: %s\n", peaks[i].energy, text.c_str());
    }
}

void show(const std::string& path, std::span<const GammaNuclide> library) {
    const test::RoughPeaks measured = test::roughPeaks(*test::openedSpectrum(path));
    const auto start = std::chrono::steady_clock::now();
    const CandidateList list = findCandidates(library, measured.peaks, measured.range);
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    std::printf("%s: %zu peaks, %zu candidates in %.2f ms, shift %.2f keV\n", path.c_str(),
                measured.peaks.size(), list.candidates.size(), took.count(), list.shift);
    print(list, measured.peaks);
}

}  // namespace

int main(int count, char** arguments) {
    try {
        NuclideDatabase database;
        database.open(count > 1 ? arguments[1] : "");
        const auto start = std::chrono::steady_clock::now();
        const auto library = readGammaLibrary(database, {});
        const std::chrono::duration<double, std::milli> took =
            std::chrono::steady_clock::now() - start;
        std::printf("%zu nuclides read in %.0f ms\n", library.size(), took.count());
        for (int i = 2; i < count; ++i)
            show(std::filesystem::absolute(arguments[i]).string(), library);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
