// The energy list of the nuclide database by the number of its lines, with the plain query of the
// same rows beside it, the first use of an Access database, and the candidates for peaks.

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <system_error>

#include "make_nuclide_data/nuclide_tables.h"
#include "nuclide/energy_list.h"
#include "nuclide/queries.h"
#include "opened_file.h"
#include "peaks/peak_candidates.h"

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

// Folders with made databases by their numbers of lines, as long as the program runs.
struct MadeFolders {
    std::map<std::int64_t, std::string> folders;
    ~MadeFolders() {
        std::error_code ignored;
        for (const auto& [lines, folder] : folders)
            std::filesystem::remove_all(folder, ignored);
    }
};

const std::string& madeFolder(std::int64_t lines) {
    static MadeFolders made;
    std::string& folder = made.folders[lines];
    if (folder.empty()) {
        folder =
            (std::filesystem::temp_directory_path() / ("kestrel-bench-" + std::to_string(lines)))
                .string();
        std::filesystem::create_directories(folder);
        writeNuclideDatabase(madeTables(static_cast<std::int32_t>(lines)), folder + "/nuc2k.mdb");
    }
    return folder;
}

constexpr double cursorEnergy = 60;  // keV; even the smallest made database has lines there
constexpr double halfWidth = 3;

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
    rebuild(state, madeFolder(state.range(0)), cursorEnergy);
}
BENCHMARK(rebuildMade)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

// All columns of the same rows as the library delivers them.
void plainQuery(benchmark::State& state) {
    const std::string path = madeFolder(state.range(0)) + "/nuc2k.mdb";
    sqlite3* connection = nullptr;
    sqlite3_open_v2(path.c_str(), &connection, SQLITE_OPEN_READONLY, nullptr);
    sqlite3_stmt* query = nullptr;
    sqlite3_prepare_v2(connection, energyWindowQuery.data(), -1, &query, nullptr);
    sqlite3_bind_double(query, 1, cursorEnergy - halfWidth);
    sqlite3_bind_double(query, 2, cursorEnergy + halfWidth);
    int rows = 0;
    for ([[maybe_unused]] auto _ : state) {
        for (rows = 0; sqlite3_step(query) == SQLITE_ROW; ++rows) {
            for (int column = 0; column < sqlite3_column_count(query); ++column)
                benchmark::DoNotOptimize(sqlite3_column_text(query, column));
        }
        sqlite3_reset(query);
    }
    state.counters["rows"] = rows;
    sqlite3_finalize(query);
    sqlite3_close(connection);
}
BENCHMARK(plainQuery)->Arg(10000)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

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

// Of the bundled database, for the peaks of the sample of 16384 channels.
void candidates(benchmark::State& state) {
    const auto file = test::openedFile(KESTREL_SAMPLES "/eu152-co60-cs137-16384.chn");
    const PeakList list = listPeaks(file->spectrum, file->derived);
    NuclideDatabase database(KESTREL_JET_READER);
    CandidateLibrary library;
    const auto nuclides = library.read(database, KESTREL_NUCLIDE_DATA, {});
    for ([[maybe_unused]] auto _ : state)
        benchmark::DoNotOptimize(findPeakCandidates(list, file->spectrum, nuclides));
    state.counters["nuclides"] = static_cast<double>(nuclides.size());
}
BENCHMARK(candidates)->Unit(benchmark::kMillisecond);

void readCandidateLibrary(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        NuclideDatabase database(KESTREL_JET_READER);
        benchmark::DoNotOptimize(CandidateLibrary().read(database, KESTREL_NUCLIDE_DATA, {}));
    }
}
BENCHMARK(readCandidateLibrary)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
