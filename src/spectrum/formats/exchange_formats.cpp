#include "spectrum/formats/exchange_formats.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

#include "base/number_text.h"
#include "spectrum/formats/cnf_reader.h"
#include "spectrum/formats/iec_reader.h"
#include "spectrum/formats/n42_reader.h"
#include "spectrum/formats/spc_reader.h"
#include "spectrum/formats/spe_reader.h"
#include "spectrum/formats/table_reader.h"
#include "spectrum/formats/tka_reader.h"

namespace kestrel {
namespace {

constexpr std::array<ExchangeFormat, 8> formats = {{
    {"Genie CAM file (cnf)", "*.cnf", looksLikeCnf, readCnf},
    {"ORTEC spectrum (spc)", "*.spc", looksLikeSpc, readSpc},
    {"ANSI N42.42 (n42)", "*.n42", looksLikeN42, readN42},
    {"IAEA spectrum (spe)", "*.spe", looksLikeSpe, readSpe},
    {"IEC 61455 (iec)", "*.iec", looksLikeIec, readIec},
    {"Text spectrum (spc)", "*.spc", looksLikeTextSpc, readTextSpc},
    {"Times and counts (tka)", "*.tka", looksLikeTka, readTka},
    {"Table of numbers (csv)", "*.csv", looksLikeTable, readTable},
}};

void mendCounts(MeasuredSpectrum& spectrum) {
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    if (std::ranges::all_of(spectrum.counts, [](double c) { return c >= 0 && c <= most; }))
        return;
    std::size_t negative = 0;
    for (std::size_t channel = 0; channel < spectrum.counts.size(); ++channel) {
        double& count = spectrum.counts[channel];
        if (!(std::abs(count) <= most))
            throw FormatError("Channel " + std::to_string(channel) + " has " +
                              (std::isfinite(count) ? plainNumber(count) : "no number of") +
                              " counts; up to 2147483647 can be read.");
        if (count < 0) {
            count = 0;
            ++negative;
        }
    }
    if (negative > 0)
        spectrum.notices.push_back(std::to_string(negative) +
                                   " channels with counts below 0 are shown as 0.");
}

void tellOfTimes(MeasuredSpectrum& spectrum) {
    if (spectrum.liveSeconds && spectrum.realSeconds &&
        *spectrum.liveSeconds > *spectrum.realSeconds)
        spectrum.notices.emplace_back("The live time is longer than the real time.");
}

std::string_view textIn(const std::vector<std::byte>& bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

}  // namespace

std::span<const ExchangeFormat> exchangeFormats() {
    return formats;
}

const ExchangeFormat* exchangeFormatOf(std::string_view front) {
    const auto* const found = std::ranges::find_if(
        formats, [&](const ExchangeFormat& format) { return format.recognises(front); });
    return found == formats.end() ? nullptr : found;
}

std::vector<MeasuredSpectrum> readExchangeBytes(std::string_view bytes) {
    const ExchangeFormat* const format = exchangeFormatOf(bytes.substr(0, recognitionBytes));
    if (format == nullptr)
        throw FormatError("The content is that of no known spectrum format.");
    return readExchangeAs(*format, bytes);
}

std::vector<MeasuredSpectrum> readExchangeAs(const ExchangeFormat& format, std::string_view bytes) {
    std::vector<MeasuredSpectrum> spectra = format.read(bytes);
    for (MeasuredSpectrum& spectrum : spectra) {
        mendCounts(spectrum);
        tellOfTimes(spectrum);
    }
    return spectra;
}

std::vector<MeasuredSpectrum> readExchangeFile(InputFile& file) {
    // A file that is none is not read as a whole.
    const ExchangeFormat* const format = exchangeFormatOf(textIn(file.readFront(recognitionBytes)));
    if (format != nullptr && file.size() > largestExchangeFile)
        throw FormatError("The file is larger than " + std::to_string(largestExchangeFile >> 20U) +
                          " MB.");
    return readExchangeBytes(
        textIn(file.readFront(format == nullptr ? recognitionBytes : largestExchangeFile)));
}

std::size_t preferredSpectrum(const std::vector<MeasuredSpectrum>& spectra) {
    const auto found = std::ranges::find_if(spectra, &MeasuredSpectrum::measured);
    return found == spectra.end() ? 0 : static_cast<std::size_t>(found - spectra.begin());
}

}  // namespace kestrel
