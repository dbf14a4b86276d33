#include "peaks/peak_candidates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nuclide_fixture.h"
#include "opened_file.h"

namespace kestrel {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

class PeakCandidatesOfSamples : public testing::Test {
  protected:
    PeakCandidatesOfSamples() { library = libraryReader.read(database, KESTREL_NUCLIDE_DATA, {}); }
    PeakCandidates candidates(const std::string& sample, double off) {
        const auto file = test::openedFile(KESTREL_SAMPLES "/" + sample);
        file->spectrum.calCurrent.a += off;
        list = listPeaks(file->spectrum, file->derived);
        PeakCandidates found = findPeakCandidates(list, file->spectrum, library);
        nameCandidates(found, list);
        return found;
    }
    std::string nameAt(double energy) const {
        for (const ListedPeak& peak : list.peaks) {
            if (std::abs(*peak.energy - energy) < 1)
                return peak.candidates;
        }
        return "no peak";
    }
    static std::vector<std::string> head(const CandidateList& found, std::size_t count) {
        std::vector<std::string> keys;
        for (std::size_t i = 0; i < std::min(count, found.candidates.size()); ++i)
            keys.push_back(found.candidates[i].nuclide);
        return keys;
    }

    NuclideDatabase database = test::nuclideDatabase();
    CandidateLibrary libraryReader;
    std::span<const GammaNuclide> library;
    PeakList list;
};

TEST_F(PeakCandidatesOfSamples, AreHeadedByTheTrueNuclides) {
    for (const double off : {0.0, -2.5, 2.0}) {
        for (const char* file : {"eu152-co60-cs137-4096.chn", "eu152-co60-cs137-16384.chn"})
            EXPECT_THAT(head(candidates(file, off), 3),
                        ElementsAre("Eu-152g", "Co- 60g", "Cs-137g"))
                << file << off;
        const PeakCandidates found = candidates("environmental-8192.chn", off);
        EXPECT_THAT(head(found, 6), IsSupersetOf({"K - 40g", "Tl-208g", "Bi-214g", "Pb-214g"}))
            << off;
        EXPECT_EQ(shiftText(found).empty(), off == 0) << shiftText(found);
    }
}

TEST_F(PeakCandidatesOfSamples, StandBesideTheirPeaks) {
    const PeakCandidates found = candidates("eu152-co60-cs137-4096.chn", 0);
    EXPECT_EQ(nameAt(661.66), "Cs-137g");
    EXPECT_EQ(nameAt(1112.1), "Eu-152g") << "a weak line";
    EXPECT_EQ(nameAt(511), "annihilation, Tl-208g");
    EXPECT_THAT(candidateTexts(found.candidates[1]),
                ElementsAre("Co- 60g", "5.2711 Y", "1.00", "2 of 2", ""));
    const std::vector<CandidateLine>& lines = found.candidates[1].lines;
    EXPECT_THAT(candidateLineTexts(lines[0], found.peaks)[0], "1173.23");
    EXPECT_THAT(candidateLineTexts(lines[0], found.peaks)[2], testing::StartsWith("1173."));
    EXPECT_THAT(candidateLineTexts({.line = {500, 12}, .weight = 1, .peak = {}, .missing = true},
                                   found.peaks),
                ElementsAre("500.00", "12.00", "missing"));
    EXPECT_TRUE(candidates("eu152-co60-cs137-1024.chn", 0).candidates.empty()) << "not calibrated";
}

TEST_F(PeakCandidatesOfSamples, AreReadAnewForOtherFiltersOnly) {
    EXPECT_FALSE(database.isOpen());
    EXPECT_EQ(libraryReader.read(database, KESTREL_NUCLIDE_DATA, {}).data(), library.data());
    EnergyEntries entries;
    entries.text[2] = "1e9";
    EXPECT_LT(libraryReader.read(database, KESTREL_NUCLIDE_DATA, entries).size(), 300U);
    EXPECT_THROW(libraryReader.read(database, "/nowhere", {}), DatabaseError);
    EXPECT_GT(libraryReader.read(database, KESTREL_NUCLIDE_DATA, {}).size(), 900U);
}

}  // namespace
}  // namespace kestrel
