// Reading files of the exchange formats, 16384 channels each, with the least that can be done with
// the same bytes beside it.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_replacement.h"
#include "base/input_file.h"
#include "spectrum/formats/chn_reader.h"
#include "spectrum/formats/exchange_formats.h"
#include "spectrum/formats/n42_writer.h"
#include "spectrum/formats/spe_writer.h"
#include "spectrum/formats/table_writer.h"
#include "spectrum/formats/tka_writer.h"

namespace {

using kestrel::Spectrum;

template <typename T>
void put(std::string& file, std::size_t at, T value) {
    std::memcpy(file.data() + at, &value, sizeof value);
}

void putCounts(std::string& file, std::size_t at, const Spectrum& spectrum) {
    for (std::int32_t channel = 0; channel < spectrum.channelCount; ++channel)
        put(file, at + 4 * static_cast<std::size_t>(channel), spectrum.counts[channel]);
}

// The fewest bytes that make a file of the format.
std::string spcFile(const Spectrum& spectrum) {
    constexpr std::size_t counts = 256;
    std::string file(counts + 4 * static_cast<std::size_t>(spectrum.channelCount), '\0');
    put<std::int16_t>(file, 0, 1);
    put<std::int16_t>(file, 2, 1);
    put<std::int16_t>(file, 60, 3);
    put(file, 64, spectrum.channelCount);
    putCounts(file, counts, spectrum);
    return file;
}

std::string cnfFile(const Spectrum& spectrum) {
    constexpr std::size_t parameters = 0x800;
    constexpr std::size_t counts = 0x1200;
    constexpr std::size_t head = 0x30;
    std::string file(counts + head + 4 * static_cast<std::size_t>(spectrum.channelCount), '\0');
    put<std::uint16_t>(file, 0, 0x0400);
    put<std::uint32_t>(file, 0x06, 0x800);
    put<std::uint16_t>(file, 0x10, head);
    put<std::uint16_t>(file, 0x12, 0x29);
    put<std::uint32_t>(file, 0x70, 0x12000);
    put<std::uint32_t>(file, 0x7A, parameters);
    put<std::uint32_t>(file, 0xA0, 0x12005);
    put<std::uint32_t>(file, 0xAA, counts);
    put<std::uint32_t>(file, parameters, 0x12000);
    put<std::uint32_t>(file, counts, 0x12005);
    put<std::uint16_t>(file, counts + 0x10, head);
    put(file, counts + 0x2A, spectrum.channelCount);
    putCounts(file, counts + head, spectrum);
    return file;
}

constexpr std::array<std::string (*)(const Spectrum&), 6> writers = {
    kestrel::speFile, kestrel::tkaFile, kestrel::energyTable, kestrel::n42File, spcFile, cnfFile};

// A file in the format, made from the sample of 16384 channels.
class ExchangeFile {
  public:
    explicit ExchangeFile(const benchmark::State& state) {
        const auto spectrum = std::make_unique<Spectrum>();
        kestrel::InputFile sample(KESTREL_SAMPLES "/eu152-co60-cs137-16384.chn");
        if (kestrel::readChnFile(sample, *spectrum).end != kestrel::Reading::Loaded)
            std::abort();
        kestrel::replaceFile(path, writers.at(static_cast<std::size_t>(state.range(0)))(*spectrum));
    }
    ~ExchangeFile() { std::filesystem::remove(path); }
    ExchangeFile(const ExchangeFile&) = delete;
    ExchangeFile& operator=(const ExchangeFile&) = delete;

    const std::string path =
        (std::filesystem::temp_directory_path() / "kestrel-exchange-bench").string();
};

void readExchange(benchmark::State& state) {
    const ExchangeFile made(state);
    for (auto _ : state) {
        kestrel::InputFile file(made.path);
        if (kestrel::readExchangeFile(file).at(0).counts.size() != 16384)
            std::abort();
    }
}
BENCHMARK(readExchange)->DenseRange(0, writers.size() - 1);

void splitExchange(benchmark::State& state) {
    const ExchangeFile made(state);
    for (auto _ : state) {
        kestrel::InputFile file(made.path);
        kestrel::LineReader lines(file);
        for (std::string_view line; lines.next(line);)
            benchmark::DoNotOptimize(line.data());
    }
}
BENCHMARK(splitExchange)->DenseRange(0, 2);

void parseExchange(benchmark::State& state) {
    const ExchangeFile made(state);
    for (auto _ : state) {
        pugi::xml_document document;
        benchmark::DoNotOptimize(document.load_file(made.path.c_str()));
    }
}
BENCHMARK(parseExchange)->Arg(3);

void readBytesOfExchange(benchmark::State& state) {
    const ExchangeFile made(state);
    std::vector<char> bytes(100000);
    for (auto _ : state) {
        std::FILE* file = std::fopen(made.path.c_str(), "rb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        benchmark::DoNotOptimize(std::fread(bytes.data(), 1, bytes.size(), file));
        std::fclose(file);
    }
}
BENCHMARK(readBytesOfExchange)->DenseRange(4, 5);

}  // namespace
