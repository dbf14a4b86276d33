// Prints the peaks of spectrum files and the candidates for them: candidate_table FOLDER FILE...,
// the folder that of the nuclide database, the files with their full paths.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>

#include "opened_file.h"
#include "peaks/peak_candidates.h"

namespace {

using namespace kestrel;

using Milliseconds = std::chrono::duration<double, std::milli>;

void print(const PeakCandidates& found) {
    constexpr std::size_t shown = 12;
    for (std::size_t i = 0; i < std::min(shown, found.candidates.size()); ++i) {
        const Candidate& c = found.candidates[i];
        std::printf("  %-9s %-10s score %5.2f = %4.2f - %4.2f  explains %5.2f:", c.nuclide.c_str(),
                    c.halfLife.c_str(), c.score(), c.foundShare, c.missingShare, c.explained);
        for (const CandidateLine& line : c.lines)
            std::printf(" %.1f%s", double{line.line.energy},
                        line.peak ? "" : (line.missing ? " missing" : " not seen"));
        std::printf("\n");
    }
}

void print(const PeakList& list) {
    for (const ListedPeak& peak : list.peaks)
        std::printf("  %9.2f keV %9.0f +- %5.0f  FWHM %5.2f  %s\n", peak.energy.value_or(0),
                    peak.net, peak.netError, peak.energyFwhm.value_or(0), peak.candidates.c_str());
}

void show(const std::string& path, std::span<const GammaNuclide> library) {
    const auto file = test::openedFile(path);
    const auto start = std::chrono::steady_clock::now();
    PeakList list = listPeaks(file->spectrum, file->derived);
    const auto listed = std::chrono::steady_clock::now();
    const PeakCandidates found = findPeakCandidates(list, file->spectrum, library);
    nameCandidates(found, list);
    const auto end = std::chrono::steady_clock::now();
    std::printf("%s: %zu peaks in %.2f ms, %zu candidates in %.2f ms, shift %.2f keV\n",
                path.c_str(), list.peaks.size(), Milliseconds(listed - start).count(),
                found.candidates.size(), Milliseconds(end - listed).count(), found.shift);
    print(found);
    print(list);
}

}  // namespace

int main(int count, char** arguments) {
    try {
        NuclideDatabase database;
        database.open(count > 1 ? arguments[1] : "");
        const auto start = std::chrono::steady_clock::now();
        const auto library = readGammaLibrary(database, {});
        const Milliseconds took = std::chrono::steady_clock::now() - start;
        std::printf("%zu nuclides read in %.0f ms\n", library.size(), took.count());
        for (int i = 2; i < count; ++i)
            show(arguments[i], library);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
