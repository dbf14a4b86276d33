// The energy list of the nuclide database by the number of its lines, and the first use of an
// Access database.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include "make_nuclide_data/nuclide_tables.h"
#include "nuclide/energy_list.h"

namespace {

using namespace kestrel;

// Lines spread evenly, a hundred of them in a keV, over as many keV as that takes: the more lines,
// the longer the spectrum, and the same number of them in the list.
NuclideTables madeTables(std::int32_t lines) {
    constexpr std::int32_t linesOfNuclide = 50;
    constexpr double linesInKeV = 100;
    NuclideTables tables;
    for (std::int32_t i = 0; i * linesOfNuclide < lines; ++i)
        tables.nuclides.push_back({i + 1, "Eu", 63, 100 + i % 138, 0, "13.5 Y", 4.3e8, "EC,B-",
                                   121.8, 28.5, "2023-09-01"});
    const auto nuclides = static_cast<std::int32_t>(tables.nuclides.size());
    for (std::int32_t i = 0; i < lines; ++i)
        tables.lines.push_back(
            {i % nuclides + 1, i / nuclides + 1, 10 + i / linesInKeV, 1.5, "G", "B-", ""});
    return tables;
}

// A folder with a made database, kept for the whole run.
const std::string& madeFolder(std::int32_t lines) {
    static std::map<std::int32_t, std::string> folders;
    std::string& folder = folders[lines];
    if (folder.empty()) {
        folder =
            (std::filesystem::temp_directory_path() / ("kestrel-bench-" + std::to_string(lines)))
                .string();
        std::filesystem::create_directories(folder);
        writeNuclideDatabase(madeTables(lines), folder + "/nuc2k.mdb");
    }
    return folder;
}

void rebuild(benchmark::State& state, const std::string& folder, double energy) {
    NuclideDatabase database(KESTREL_JET_READER);
    database.open(folder);
    database.prepareEnergyWindowQuery();
    const EnergyEntries entries;
    std::size_t rows = 0;
    for ([[maybe_unused]] auto _ : state)
        rows = listFromDatabase(database, entries, energy).rows.size();
    state.counters["rows"] = static_cast<double>(rows);
}

void rebuildMade(benchmark::State& state) {
    rebuild(state, madeFolder(static_cast<std::int32_t>(state.range(0))), 661.7);
}
BENCHMARK(rebuildMade)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

void rebuildBundled(benchmark::State& state) {
    rebuild(state, KESTREL_NUCLIDE_DATA, 661.7);
}
BENCHMARK(rebuildBundled)->Unit(benchmark::kMicrosecond);

// The Access file named by KESTREL_BENCH_JET, else the small one of the tests: opened, checked, and
// one list built.
void firstUseOfJet(benchmark::State& state) {
    const char* named = std::getenv("KESTREL_BENCH_JET");
    const std::string folder = named == nullptr ? KESTREL_TEST_DATA "/jet" : named;
    for ([[maybe_unused]] auto _ : state) {
        NuclideDatabase database(KESTREL_JET_READER);
        database.open(folder);
        database.prepareEnergyWindowQuery();
        benchmark::DoNotOptimize(listFromDatabase(database, EnergyEntries{}, 661.7).rows.size());
    }
}
BENCHMARK(firstUseOfJet)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
