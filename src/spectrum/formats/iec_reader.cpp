#include "spectrum/formats/iec_reader.h"

#include <algorithm>
#include <optional>
#include <string>

#include "base/text.h"
#include "spectrum/formats/energy_terms.h"
#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::string_view lineMark = "A004";

// The records, counted from 1, of files that mark nothing else.
constexpr std::size_t offsetRecord = 1;
constexpr std::size_t timesRecord = 2;
constexpr std::size_t dateRecord = 3;
constexpr std::size_t termsRecord = 4;
constexpr std::size_t widthRecord = 5;
constexpr std::size_t firstTitle = 6;
constexpr std::size_t lastTitle = 9;
constexpr std::size_t firstPairs = 11;
constexpr std::size_t lastPairs = 22;
constexpr std::size_t userText = 47;
constexpr std::size_t firstCounts = 59;

// Numbers that may touch: "8.0E-01-2.9E-08". A sign begins a number unless an exponent's letter
// stands in front of it.
std::vector<double> touchingNumbers(std::string_view text) {
    std::string parted;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool sign = text[i] == '-' || text[i] == '+';
        const bool ofExponent = i > 0 && (text[i - 1] == 'E' || text[i - 1] == 'e');
        if (sign && !ofExponent)
            parted += ' ';
        parted += text[i];
    }
    return numbersIn(parted).value_or(std::vector<double>());
}

class IecFile {
  public:
    void take(std::string_view body, std::size_t record, const FilePlace& place) {
        if (body.starts_with("SPARE")) {
            pairsFrom_ = record + 1;
        } else if (body.starts_with("USERDEFINED") && record != userText) {
            countsFrom_ = record + 1;
        } else if (record == offsetRecord) {
            // Analysers with a digital offset count their channels from there.
            offset_ = numberIn(trimSpace(body.substr(std::min<std::size_t>(24, body.size()), 6)))
                          .value_or(0);
        } else if (record == timesRecord) {
            takeTimes(body, place);
        } else if (record == dateRecord) {
            takeDate(body);
        } else if (record == termsRecord) {
            terms_ = touchingNumbers(body);
        } else if (record == widthRecord) {
            takeWidth(body);
        } else if (record >= firstTitle && record <= lastTitle && record < pairsFrom_) {
            const std::string_view words = trimSpace(body);
            spectrum_.title.append(spectrum_.title.empty() || words.empty() ? "" : " ")
                .append(words);
        } else if (record >= countsFrom_) {
            takeCounts(body, place);
        } else if (record >= pairsFrom_ && record < pairsFrom_ + lastPairs - firstPairs + 1) {
            takePairs(body);
        }
    }

    MeasuredSpectrum finish() {
        if (present_ < promised_ || present_ == 0)
            throw FormatError("Line 2 promises " + std::to_string(promised_) +
                              " counts, the file has " + std::to_string(present_) + ".");
        if (std::ranges::any_of(terms_, isNotZero))
            spectrum_.coefficients = shiftedTerms(terms_, offset_);
        for (EnergyPoint& point : spectrum_.energies)
            point.channel -= offset_;
        return std::move(spectrum_);
    }

  private:
    void takeTimes(std::string_view body, const FilePlace& place) {
        const std::vector<double> numbers = numbersIn(body).value_or(std::vector<double>());
        if (numbers.size() != 3)
            throw FormatError(place.text() +
                              "Live time, real time and number of channels expected.");
        if (numbers[0] > 0)
            spectrum_.liveSeconds = numbers[0];
        if (numbers[1] > 0)
            spectrum_.realSeconds = numbers[1];
        promised_ = checkedChannelCount(numbers[2], place);
        spectrum_.counts.assign(promised_, 0.0);
    }

    // A number above 12 in either of the two dates decides which of day and month stands first.
    void takeDate(std::string_view body) {
        constexpr std::size_t width = 18;
        const std::string_view second = body.substr(std::min(width, body.size()));
        const std::string_view first = body.substr(0, width);
        const bool monthFirst = isMonthFirst(first) || isMonthFirst(second);
        spectrum_.start = dateIn(first, monthFirst ? DateOrder::MonthFirst : DateOrder::DayFirst);
        const bool open = !monthFirst && spectrum_.start && spectrum_.start->day <= 12 &&
                          spectrum_.start->day != spectrum_.start->month;
        if (open)
            spectrum_.notices.emplace_back(
                "The file leaves open which of day and month of its start "
                "comes first; it was read with the day first.");
    }

    void takeWidth(std::string_view body) {
        if (std::ranges::any_of(touchingNumbers(body), isNotZero))
            spectrum_.details.push_back({"FWHM terms", std::string(trimSpace(body))});
    }
    static bool isNotZero(double number) { return number != 0; }

    static bool isMonthFirst(std::string_view date) {
        const std::size_t slash = date.find('/');
        if (slash == std::string_view::npos)
            return false;
        return numberIn(trimSpace(date.substr(slash + 1, 2))).value_or(0) > 12;
    }

    void takePairs(std::string_view body) {
        const std::vector<double> numbers = touchingNumbers(body);
        for (std::size_t i = 0; i + 1 < numbers.size(); i += 2) {
            if (numbers[i] != 0 || numbers[i + 1] != 0)
                spectrum_.energies.push_back({.channel = numbers[i + 1], .energy = numbers[i]});
        }
    }

    // The number of the first channel and up to five counts.
    void takeCounts(std::string_view body, const FilePlace& place) {
        constexpr std::size_t channelWidth = 6;
        constexpr std::size_t countWidth = 10;
        if (body.empty())
            return;
        const std::optional<double> first = numberIn(trimSpace(body.substr(0, channelWidth)));
        if (!first || !(*first >= 0 && *first <= static_cast<double>(mostFileChannels)))
            throw FormatError(place.text() + "Number of a channel expected.");
        auto channel = static_cast<std::size_t>(*first);
        for (std::size_t at = channelWidth; at < body.size(); at += countWidth) {
            const std::string_view word = trimSpace(body.substr(at, countWidth));
            if (word.empty())
                continue;
            std::vector<double> count;
            appendCount(word, place, count);
            store(channel++, count.front(), place);
        }
    }
    void store(std::size_t channel, double count, const FilePlace& place) {
        // The last line is filled up with zeros.
        if (channel >= promised_ && count == 0)
            return;
        if (channel > promised_)
            throw FormatError(place.text() + "Channel " + std::to_string(channel) + " of " +
                              std::to_string(promised_) + ".");
        // Some writers count from 1: their last channel lies behind the end.
        spectrum_.counts.resize(std::max(spectrum_.counts.size(), channel + 1));
        spectrum_.counts[channel] = count;
        ++present_;
    }

    MeasuredSpectrum spectrum_;
    std::vector<double> terms_;
    std::size_t pairsFrom_ = firstPairs;
    std::size_t countsFrom_ = firstCounts;
    double offset_ = 0;
    std::size_t promised_ = 0;
    std::size_t present_ = 0;
};

}  // namespace

bool looksLikeIec(std::string_view front) {
    return textOf(front).starts_with(lineMark);
}

std::vector<MeasuredSpectrum> readIec(std::string_view bytes) {
    const std::string text = textOf(bytes);
    IecFile file;
    TextLines lines(text);
    std::size_t record = 0;
    for (std::string_view line; lines.next(line);) {
        if (line.starts_with(lineMark))
            file.take(line.substr(lineMark.size()), ++record, lines.place());
    }
    return asOnly(file.finish());
}

}  // namespace kestrel
