#include "spectrum/formats/spe_reader.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string>

#include "base/text.h"
#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::size_t mostBlocks = 200000;

struct Block {
    std::string name;  // in capitals, without "$" and ":"
    std::string part;  // "$DATA: "
    std::size_t line = 0;
    std::vector<std::string_view> lines;

    FilePlace place(std::size_t index) const { return {.line = line + 1 + index, .part = part}; }
    std::string_view first() const { return lines.empty() ? std::string_view() : lines.front(); }
};

// The name of a block, "DATA" of "$DATA:"; what stands behind it on its line counts as its first.
Block startBlock(std::string_view line, std::size_t number) {
    const std::string_view body = line.substr(1);
    const std::size_t end = std::min(body.find_first_of(": \t"), body.size());
    Block block{.name = toUpper(body.substr(0, end)), .part = {}, .line = number, .lines = {}};
    std::ranges::replace(block.name, '.', '_');
    block.part = "$" + block.name + ": ";
    if (const std::string_view rest = trimSpace(body.substr(std::min(end + 1, body.size())));
        !rest.empty()) {
        block.lines.push_back(rest);
        --block.line;
    }
    return block;
}

std::vector<Block> blocksOf(std::string_view text) {
    std::vector<Block> blocks;
    TextLines lines(text);
    for (std::string_view line; lines.next(line);) {
        if (line.starts_with('$')) {
            if (blocks.size() == mostBlocks)
                throw FormatError(lines.place().text() + "There are more than " +
                                  std::to_string(mostBlocks) + " blocks.");
            blocks.push_back(startBlock(line, lines.number()));
        } else if (!blocks.empty()) {
            blocks.back().lines.push_back(line);
        }
    }
    return blocks;
}

// The block's lines as one text.
std::string joined(const Block& block) {
    std::string text;
    for (const std::string_view line : block.lines) {
        if (!line.empty())
            text.append(text.empty() ? "" : " ").append(line);
    }
    return text;
}

// All numbers of the block up to the first word that is none, such as the unit.
std::vector<double> leadingNumbers(const Block& block) {
    std::vector<double> numbers;
    for (std::string_view line : block.lines) {
        for (std::string_view word = takeWord(line); !word.empty(); word = takeWord(line)) {
            const std::optional<double> number = numberIn(word);
            if (!number)
                return numbers;
            numbers.push_back(*number);
        }
    }
    return numbers;
}

void takeCounts(const Block& block, MeasuredSpectrum& spectrum) {
    const std::vector<double> range = numbersIn(block.first()).value_or(std::vector<double>());
    if (range.size() != 2 || range[0] < 0 || range[1] < range[0])
        throw FormatError(block.place(0).text() + "First and last channel expected.");
    const std::size_t channels = checkedChannelCount(range[1] + 1, block.place(0));
    std::vector<double>& counts = spectrum.counts;
    counts.reserve(channels);
    counts.assign(static_cast<std::size_t>(range[0]), 0.0);
    std::size_t i = 1;
    for (; i < block.lines.size() && counts.size() < channels; ++i)
        appendCounts(block.lines[i], block.place(i), counts);
    const std::size_t skipped = static_cast<std::size_t>(range[0]);
    if (counts.size() < channels)
        throw FormatError(block.place(0).text() + "promises " + std::to_string(channels - skipped) +
                          " counts, the file has " + std::to_string(counts.size() - skipped) + ".");
    const auto rest = std::span(block.lines).subspan(i);
    if (counts.size() > channels ||
        std::ranges::any_of(rest, [](std::string_view line) { return !line.empty(); }))
        spectrum.notices.push_back("The file has more than the " + std::to_string(channels) +
                                   " counts that it promises; the others are not shown.");
    counts.resize(channels);
}

void takeTimes(const Block& block, MeasuredSpectrum& spectrum) {
    const std::vector<double> seconds = leadingNumbers(block);
    if (!seconds.empty() && seconds[0] > 0)
        spectrum.liveSeconds = seconds[0];
    if (seconds.size() > 1 && seconds[1] > 0)
        spectrum.realSeconds = seconds[1];
}

// The number of terms and the terms.
void takeCountedTerms(const Block& block, std::vector<double>& terms) {
    const std::vector<double> numbers = leadingNumbers(block);
    if (numbers.empty() || numbers[0] < 1)
        return;
    const double present = static_cast<double>(numbers.size() - 1);
    const auto count = static_cast<std::ptrdiff_t>(std::min(numbers[0], present));
    terms.assign(numbers.begin() + 1, numbers.begin() + 1 + count);
}

void takeEnergyPairs(const Block& block, MeasuredSpectrum& spectrum) {
    const std::vector<double> numbers = leadingNumbers(block);
    for (std::size_t i = 1; i + 1 < numbers.size(); i += 2)
        spectrum.energies.push_back({.channel = numbers[i], .energy = numbers[i + 1]});
}

// All zero, and one keV per channel, are what programs write that know of no calibration.
bool isCalibration(const std::vector<double>& terms) {
    const bool bent =
        std::ranges::any_of(terms.begin() + std::min<std::ptrdiff_t>(1, std::ssize(terms)),
                            terms.end(), [](double term) { return term != 0; });
    return bent && terms != std::vector<double>{0, 1};
}

class SpectrumOfBlocks {
  public:
    void take(const Block& block) {
        if (block.name == "DATA")
            takeCounts(block, spectrum_);
        else if (block.name == "MEAS_TIM")
            takeTimes(block, spectrum_);
        else if (block.name == "DATE_MEA")
            spectrum_.start = dateIn(block.first());
        else if (block.name == "SPEC_ID")
            spectrum_.title = joined(block);
        else if (block.name == "MCA_CAL")
            takeCountedTerms(block, mcaTerms_);
        else if (block.name == "ENER_FIT")
            fitTerms_ = leadingNumbers(block);
        else if (block.name == "ENER_DATA" || block.name == "ENER_TABLE" ||
                 block.name == "MCA_CAL_DATA")
            takeEnergyPairs(block, spectrum_);
        else if (block.name != "ROI" && block.name != "ROI_INFO")
            spectrum_.details.push_back({block.name, joined(block).substr(0, longestDetail)});
    }

    MeasuredSpectrum finish() {
        if (spectrum_.counts.empty())
            throw FormatError("No block $DATA: with the counts.");
        if (isCalibration(mcaTerms_))
            spectrum_.coefficients = mcaTerms_;
        else if (isCalibration(fitTerms_))
            spectrum_.coefficients = fitTerms_;
        return std::move(spectrum_);
    }

    bool empty() const { return spectrum_.counts.empty(); }
    std::size_t channels() const { return spectrum_.counts.size(); }

  private:
    static constexpr std::size_t longestDetail = 200;

    MeasuredSpectrum spectrum_;
    std::vector<double> mcaTerms_;
    std::vector<double> fitTerms_;
};

}  // namespace

bool looksLikeSpe(std::string_view front) {
    const std::string text = textOf(front);
    if (text.find('\0') != std::string::npos)
        return false;
    if (trimSpace(text).starts_with('$'))
        return true;
    constexpr std::array<std::string_view, 2> certain = {"\n$MEAS_TIM:", "\n$DATE_MEA:"};
    return std::ranges::any_of(certain,
                               [&](auto mark) { return containsIgnoringCase(text, mark); });
}

std::vector<MeasuredSpectrum> readSpe(std::string_view bytes) {
    const std::string text = textOf(bytes);
    std::vector<MeasuredSpectrum> spectra;
    SpectrumOfBlocks current;
    std::size_t total = 0;
    for (const Block& block : blocksOf(text)) {
        if (block.name != "ENDRECORD") {
            current.take(block);
            // A few bytes can promise channels without counts, and a block may come again.
            total += block.name == "DATA" ? current.channels() : 0;
            if (total > mostFileCounts || spectra.size() >= mostFileSpectra)
                throw FormatError(block.place(0).text() + "The file holds more than " +
                                  std::to_string(mostFileSpectra) + " spectra or " +
                                  std::to_string(mostFileCounts) + " counts.");
            continue;
        }
        spectra.push_back(current.finish());
        current = SpectrumOfBlocks();
    }
    if (spectra.empty() || !current.empty())
        spectra.push_back(current.finish());
    return spectra;
}

}  // namespace kestrel
