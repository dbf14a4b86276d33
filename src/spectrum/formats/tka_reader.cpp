#include "spectrum/formats/tka_reader.h"

#include <bit>
#include <cmath>
#include <optional>
#include <string>

#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::size_t timeLines = 2;

// Live and real time, which tell a TKA file from a plain column of counts.
bool arePlausibleTimes(double live, double real) {
    return live >= 0 && real > 0 && live <= real * 1.0001;
}

}  // namespace

bool looksLikeTka(std::string_view front) {
    constexpr std::size_t fewestLines = 18;
    constexpr std::size_t longestLine = 32;
    const std::string text = textOf(front);
    TextLines lines(text);
    std::vector<double> numbers;
    for (std::string_view line; numbers.size() < fewestLines && lines.next(line);) {
        const std::optional<double> number = numberIn(line);
        const bool isCount =
            number && (numbers.size() < timeLines || *number == std::floor(*number));
        if (!isCount || line.size() > longestLine)
            return false;
        numbers.push_back(*number);
    }
    return numbers.size() == fewestLines && arePlausibleTimes(numbers[0], numbers[1]);
}

std::vector<MeasuredSpectrum> readTka(std::string_view bytes) {
    MeasuredSpectrum spectrum;
    std::vector<double>& counts = spectrum.counts;
    const std::string text = textOf(bytes);
    TextLines lines(text);
    for (std::string_view line; lines.next(line);) {
        if (!line.empty())
            appendCount(line, lines.place(), counts);
    }
    if (counts.size() <= timeLines)
        throw FormatError("The live time, the real time and counts expected.");
    spectrum.liveSeconds = counts[0];
    spectrum.realSeconds = counts[1];
    if (std::has_single_bit(counts.size() - timeLines)) {
        counts.erase(counts.begin(), counts.begin() + timeLines);
        return asOnly(std::move(spectrum));
    }
    if (!std::has_single_bit(counts.size()))
        spectrum.notices.push_back("The file has " + std::to_string(counts.size()) +
                                   " lines, which is no power of two: it may be cut.");
    counts[0] = 0;
    counts[1] = 0;
    return asOnly(std::move(spectrum));
}

}  // namespace kestrel
