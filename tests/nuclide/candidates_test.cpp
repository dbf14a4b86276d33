#include "nuclide/candidates.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "nuclide_fixture.h"

namespace kestrel {
namespace {

using testing::ElementsAre;

MeasuredPeak peak(double energy, double net) {
    return {.energy = energy, .tolerance = 1, .net = net, .netError = std::sqrt(net)};
}

GammaNuclide nuclide(const char* key, std::vector<GammaLine> lines) {
    return {.key = key, .halfLife = "1 Y", .seconds = 3e7F, .lines = std::move(lines), .xrays = {}};
}

std::vector<std::string> names(const CandidateList& list, std::size_t first) {
    std::vector<std::string> keys;
    for (std::size_t i = 0; i < std::min(first, list.candidates.size()); ++i)
        keys.push_back(list.candidates[i].nuclide);
    return keys;
}

constexpr EnergyRange wholeRange{0, 3000};

TEST(Candidates, TellTheLinesThatAreFoundAndThoseThatOughtToBe) {
    const std::vector<GammaNuclide> library = {
        nuclide("Aa-100g", {{200, 60}, {400, 60}, {1000, 1}, {2000, 50}})};
    const auto lines = [&](const std::vector<MeasuredPeak>& peaks) {
        std::string told;
        for (const Candidate& c : findCandidates(library, peaks, wholeRange).candidates) {
            for (const CandidateLine& line : c.lines)
                told += line.peak ? 'F' : (line.missing ? 'M' : '-');
        }
        return told;
    };
    EXPECT_EQ(lines({peak(200, 10000), peak(400.5, 6000), peak(2000, 2000)}), "FFF");
    EXPECT_EQ(lines({peak(200, 10000), peak(400.5, 6000), peak(700, 30)}), "FFM");
    EXPECT_EQ(lines({peak(200, 30), peak(400, 30)}), "FF-");
    // Two of three lines miss their peaks: no candidate.
    EXPECT_EQ(lines({peak(200, 10000), peak(403, 6000)}), "");
    EXPECT_EQ(lines({}), "");
}

TEST(Candidates, ThatExplainMoreComeFirstAndTakeTheirPeaksFromTheOthers) {
    std::vector<GammaNuclide> library = {
        nuclide("Xx-  1g", {{400, 50}}),     nuclide("Aa-100g", {{200, 50}, {400, 50}, {300, 0.5}}),
        nuclide("Xx-  2g", {{300, 50}}),     nuclide("K - 40g", {{1460.8F, 10}}),
        nuclide("Xx-  3g", {{1460.8F, 10}}), nuclide("Xx-  4g", {{40, 50}})};
    library[1].xrays = {{40, 10}};
    const CandidateList list =
        findCandidates(library,
                       std::vector{peak(40, 900), peak(200, 10000), peak(300, 70), peak(400, 6000),
                                   peak(1460.8, 500)},
                       wholeRange);
    EXPECT_THAT(names(list, 9), ElementsAre("Aa-100g", "K - 40g"));
    using Places = std::vector<std::size_t>;
    EXPECT_THAT(list.candidatesOfPeak,
                ElementsAre(Places{0}, Places{0}, Places{0}, Places{0}, Places{1}));
}

TEST(Candidates, NameAnnihilationEscapesAndSums) {
    const std::vector<MeasuredPeak> peaks = {
        peak(511.2, 5000), peak(800, 9000),  peak(1591.8, 300), peak(1600, 9000),
        peak(2103.5, 400), peak(2400.3, 90), peak(2614.5, 8000)};
    const auto texts = [&](std::span<const GammaNuclide> library, std::size_t count) {
        const std::span<const MeasuredPeak> first(peaks.begin(), count);
        std::vector<std::string> all;
        for (const OriginOfPeak& origin :
             findCandidates(library, first, {0, first.back().energy + 10}).origins)
            all.push_back(originText(origin, first));
        return all;
    };
    EXPECT_THAT(texts({}, 7),
                ElementsAre("annihilation", "", "double escape of 2614.5 keV", "",
                            "single escape of 2614.5 keV", "sum of 800.0 and 1600.0 keV", ""));
    const std::vector library = {nuclide("Tl-208g", {{510.8F, 20}, {800, 50}, {2614.5F, 50}})};
    EXPECT_THAT(texts(library, 5),
                ElementsAre("annihilation", "", "double escape of 2614.5 keV, unseen", "",
                            "single escape of 2614.5 keV, unseen"));
    const std::vector other = {nuclide("Xx-  5g", {{511.0F, 90}, {1800, 20}})};
    EXPECT_TRUE(findCandidates(other, peaks, wholeRange).candidates.empty()) << "annihilation";
}

TEST(GammaLibrary, HoldsPlainGammasOfTheNuclidesThatPassTheFilters) {
    test::TempFolder folder;
    NuclideTables tables = test::oneLine();
    tables.nuclides.push_back({2, "Cs", 55, 138, 0, "33 M", 1980, "B-", 0, 0, ""});
    for (const auto& [energy, kind, definition] :
         {std::tuple{32.1, "G", "XKA1"}, {511.0, "G", "ANN"}, {624.0, "E", ""}, {283.5, "G", ""}})
        tables.lines.push_back({1, 2, energy, 5, kind, "B-", definition});
    for (const auto& [energy, intensity] : {std::pair{1435.8, 76.0}, {1e300, 5.0}, {500.0, 1e300}})
        tables.lines.push_back({2, 1, energy, intensity, "G", "B-", ""});
    test::writeDatabase(folder, tables);
    const auto told = [&](const EnergyEntries& entries) {
        NuclideDatabase database = test::nuclideDatabase();
        database.open(folder.path());
        std::vector<std::string> all;
        for (const GammaNuclide& n : readGammaLibrary(database, entries))
            all.push_back(n.key + " " + std::to_string(n.lines.size()) + "+" +
                          std::to_string(n.xrays.size()));
        return all;
    };
    EnergyEntries entries;
    EXPECT_THAT(told(entries), ElementsAre("Cs-137g 2+1", "Cs-138g 1+0"));
    entries.radiationClass = 4;
    entries.text[2] = "1e4";
    EXPECT_THAT(told(entries), ElementsAre("Cs-137g 2+1"));
    entries.text[0] = "80";
    EXPECT_THAT(told(entries), ElementsAre("Cs-137g 1+0"));
}

}  // namespace
}  // namespace kestrel
