// Opening text files of 16384 channels, with the splitting of the same bytes into lines beside it.

#include <benchmark/benchmark.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/file_replacement.h"
#include "base/input_file.h"
#include "make_samples/text_writers.h"
#include "silent_dialogs.h"
#include "spectrum/formats/canberra35_reader.h"
#include "spectrum/formats/chn_reader.h"
#include "spectrum/formats/dos_oxford_reader.h"
#include "spectrum/formats/win_oxford_reader.h"
#include "spectrum/open_spectrum.h"

namespace {

using kestrel::Spectrum;

struct Form {
    std::string (*write)(const Spectrum&);
    kestrel::ReadResult (*read)(kestrel::InputFile&, Spectrum&);
    int filterIndex;
    const char* extension;
};
constexpr std::array<Form, 3> forms = {{
    {kestrel::samples::winOxfordFile, kestrel::readWinOxfordFile, 2, ".asc"},
    {kestrel::samples::dosOxfordFile, kestrel::readDosOxfordFile, 3, ".asc"},
    {kestrel::samples::canberra35File, kestrel::readCanberra35File, 6, ".txt"},
}};

// A spectrum whose path names a text file of the form, made from the sample of 16384 channels.
std::unique_ptr<Spectrum> textFile(std::size_t form) {
    auto spectrum = std::make_unique<Spectrum>();
    kestrel::InputFile sample(KESTREL_SAMPLES "/eu152-co60-cs137-16384.chn");
    if (kestrel::readChnFile(sample, *spectrum).end != kestrel::Reading::Loaded)
        std::abort();
    const std::string text = forms[form].write(*spectrum);
    spectrum->filePath = (std::filesystem::temp_directory_path() / "kestrel-text-bench").string() +
                         forms[form].extension;
    kestrel::replaceFile(spectrum->filePath, text);
    return spectrum;
}

void splitText(benchmark::State& state) {
    const auto spectrum = textFile(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        kestrel::InputFile file(spectrum->filePath);
        kestrel::LineReader lines(file);
        for (std::string_view line; lines.next(line);)
            benchmark::DoNotOptimize(line.data());
    }
    std::filesystem::remove(spectrum->filePath);
}
BENCHMARK(splitText)->DenseRange(0, forms.size() - 1);

void readText(benchmark::State& state) {
    const auto form = static_cast<std::size_t>(state.range(0));
    const auto spectrum = textFile(form);
    for (auto _ : state) {
        kestrel::InputFile file(spectrum->filePath);
        if (forms[form].read(file, *spectrum).end != kestrel::Reading::Loaded)
            std::abort();
    }
    std::filesystem::remove(spectrum->filePath);
}
BENCHMARK(readText)->DenseRange(0, forms.size() - 1);

// The reader and all that is derived from what it reads.
void openText(benchmark::State& state) {
    const auto form = static_cast<std::size_t>(state.range(0));
    kestrel::test::SilentDialogs dialogs;
    const auto spectrum = textFile(form);
    const auto derived = std::make_unique<kestrel::DerivedArrays>();
    std::vector<std::string> headerLines;
    kestrel::Notice notice;
    for (auto _ : state) {
        if (!kestrel::readSpectrumByFormat(forms[form].filterIndex,
                                           {*spectrum, *derived, headerLines, notice}, dialogs))
            std::abort();
    }
    std::filesystem::remove(spectrum->filePath);
}
BENCHMARK(openText)->DenseRange(0, forms.size() - 1);

}  // namespace
