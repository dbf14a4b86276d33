// Reading and deriving, with a plain read of the same bytes beside them.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "peaks/peak_list.h"
#include "spectrum/derived_arrays.h"
#include "spectrum/formats/chn_reader.h"
#include "spectrum/spectrum.h"

namespace {

using kestrel::Spectrum;

std::string samplePath(std::int64_t channels) {
    return KESTREL_SAMPLES "/eu152-co60-cs137-" + std::to_string(channels) + ".chn";
}

void plainRead(benchmark::State& state) {
    const std::string path = samplePath(state.range(0));
    std::vector<char> bytes(100000);
    for (auto _ : state) {
        std::FILE* file = std::fopen(path.c_str(), "rb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), file));
        std::fclose(file);
    }
}
BENCHMARK(plainRead)->Arg(1024)->Arg(4096)->Arg(16384);

void readChn(benchmark::State& state) {
    const auto spectrum = std::make_unique<Spectrum>();
    for (auto _ : state) {
        kestrel::InputFile file(samplePath(state.range(0)));
        benchmark::DoNotOptimize(kestrel::readChnFile(file, *spectrum));
    }
}
BENCHMARK(readChn)->Arg(1024)->Arg(4096)->Arg(16384);

void deriveArrays(benchmark::State& state) {
    const auto spectrum = std::make_unique<Spectrum>();
    const auto derived = std::make_unique<kestrel::DerivedArrays>();
    kestrel::InputFile file(samplePath(state.range(0)));
    benchmark::DoNotOptimize(kestrel::readChnFile(file, *spectrum));
    for (auto _ : state) {
        kestrel::computeDerivedArrays(*spectrum, *derived);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(deriveArrays)->Arg(1024)->Arg(4096)->Arg(16384);

void allPeaks(benchmark::State& state) {
    const auto spectrum = std::make_unique<Spectrum>();
    const auto derived = std::make_unique<kestrel::DerivedArrays>();
    kestrel::InputFile file(samplePath(state.range(0)));
    benchmark::DoNotOptimize(kestrel::readChnFile(file, *spectrum));
    std::size_t peaks = 0;
    for (auto _ : state) {
        kestrel::computeDerivedArrays(*spectrum, *derived);
        peaks = kestrel::listPeaks(*spectrum, *derived).peaks.size();
    }
    state.counters["peaks"] = static_cast<double>(peaks);
}
BENCHMARK(allPeaks)->Arg(1024)->Arg(4096)->Arg(16384);

}  // namespace

BENCHMARK_MAIN();
