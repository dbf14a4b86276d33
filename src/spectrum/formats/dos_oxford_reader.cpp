#include "spectrum/formats/dos_oxford_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/input_file.h"
#include "base/integers.h"
#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/formats/text_spectrum.h"

namespace kestrel {
namespace {

constexpr std::int16_t dosOxfordMca = 444;
constexpr std::string_view tableHeading = "Chn    Counts";
constexpr std::string_view dateLabel = "Acq Date";
constexpr std::string_view noDate = "No Acq Date";

std::string_view textBehind(std::string_view line, std::string_view label) {
    return line.substr(findIgnoringCase(line, label) + label.size());
}

constexpr std::array<LabelledValue, 2> header = {{
    {"Elt:",
     [](std::string_view line, Spectrum& s) {
         s.liveTime = Ticks::ofSeconds(parseLeadingNumber(textBehind(line, "Elt:")));
     }},
    {"Real Time:",
     [](std::string_view line, Spectrum& s) {
         s.realTime = Ticks::ofSeconds(parseLeadingNumber(textBehind(line, "Real Time:")));
     }},
}};

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// The runs of digits and of letters, up to `most` of them.
std::vector<std::string_view> words(std::string_view text, std::size_t most) {
    std::vector<std::string_view> result;
    for (std::size_t at = 0; at < text.size() && result.size() < most;) {
        const auto sameKind = isDigit(text[at]) ? isDigit : isLetter;
        std::size_t end = at;
        while (end < text.size() && sameKind(text[end]))
            ++end;
        if (end > at)
            result.push_back(text.substr(at, end - at));
        at = std::max(end, at + 1);
    }
    return result;
}

// None for what is no number of one or two digits up to `most`.
std::optional<int> shortNumber(std::string_view word, int most) {
    if (word.empty() || word.size() > 2 || !std::ranges::all_of(word, isDigit))
        return std::nullopt;
    const int value = toInt16(parseLeadingNumber(word));
    return value <= most ? std::optional(value) : std::nullopt;
}

// Hour, minute, perhaps second, then perhaps "am" or "pm", as HHMMSS.
std::optional<std::string> timeOf(std::span<const std::string_view> words) {
    std::array<int, 3> parts{};
    std::size_t count = 0;
    for (; count < parts.size() && count < words.size(); ++count) {
        const std::optional<int> part = shortNumber(words[count], count == 0 ? 23 : 59);
        if (!part)
            break;
        parts[count] = *part;
    }
    if (count < 2)
        return std::nullopt;
    const std::string_view half = count < words.size() ? words[count] : "";
    if (equalIgnoringCase(half, "am"))
        parts[0] %= 12;
    else if (equalIgnoringCase(half, "pm"))
        parts[0] = parts[0] % 12 + 12;
    return formatNumber(parts[0], "00") + formatNumber(parts[1], "00") +
           formatNumber(parts[2], "00");
}

// Day, month name, year of two or four digits, then the time.
std::optional<StartText> startOf(std::string_view text) {
    const std::vector<std::string_view> parts = words(text, 7);
    if (parts.size() < 3)
        return std::nullopt;
    const std::string_view year = parts[2];
    const bool dated = shortNumber(parts[0], 31) && isLetter(parts[1].front()) &&
                       parts[1].size() >= 3 && isDigit(year.front()) &&
                       (year.size() == 2 || year.size() == 4);
    const std::optional<std::string> time = timeOf(std::span(parts).subspan(3));
    if (!dated || !time)
        return std::nullopt;
    return StartText{.day = rightAligned(parts[0], 2),
                     .month = std::string(parts[1].substr(0, 3)),
                     .yearDigits = std::string(lastCharacters(year, 2)),
                     .centuryMark = year.size() == 4
                                        ? markOfCentury(parseLeadingNumber(year.substr(0, 2)))
                                        : markOfYearDigits(year),
                     .time = *time};
}

void readStart(LineReader& lines, Spectrum& spectrum) {
    clearStart(spectrum);
    const std::optional<std::string> line = findLine(lines, dateLabel);
    if (!line || containsIgnoringCase(*line, noDate))
        return;
    if (const std::optional<StartText> start = startOf(textBehind(*line, dateLabel)))
        setStart(spectrum, *start);
}

// The counts behind a channel number: blanks, tabulators or one comma, then a number up to a blank
// or the end of the line. None for anything else, such as ": 5", ",5,6" or nothing.
std::optional<std::string_view> countsBehind(std::string_view rest) {
    constexpr std::string_view gap = " \t";
    const std::size_t gapEnd = std::min(rest.find_first_not_of(gap), rest.size());
    const bool comma = rest.substr(gapEnd).starts_with(',');
    if (gapEnd == 0 && !comma)
        return std::nullopt;
    rest.remove_prefix(gapEnd + (comma ? 1 : 0));
    rest.remove_prefix(std::min(rest.find_first_not_of(gap), rest.size()));
    const std::string_view number = rest.substr(0, rest.find_first_of(gap));
    const bool plain = number.find_first_not_of("0123456789.+-Ee") == std::string_view::npos;
    return plain && std::ranges::any_of(number, isDigit) ? std::optional(number) : std::nullopt;
}

std::string atLine(const LineReader& lines, const char* what) {
    return "Line " + std::to_string(lines.lineNumber()) + ": " + what;
}

// Channel number and counts on each line, up to the end; lines that begin with no number are passed
// over. Where the channels do not count on from 0 or 1, or a number has no counts behind it, the
// table is none of this kind.
ReadResult readCounts(LineReader& lines, Spectrum& spectrum) {
    bool fromOne = false;
    std::int32_t channels = 0;
    for (std::string_view line; lines.next(line);) {
        const std::string_view text = trimBlanksLeft(line);
        if (text.empty() || !isDigit(text.front()))
            continue;
        const double channel = parseLeadingNumber(text);
        if (channels == 0)
            fromOne = channel == 1;
        if (channel != channels + (fromOne ? 1 : 0))
            return refused(atLine(lines, "the number of the next channel expected."));
        const auto numberEnd = std::ranges::find_if_not(text, isDigit);
        const auto counts = countsBehind({numberEnd, text.end()});
        if (!counts)
            return refused(atLine(lines, "counts expected behind the channel number."));
        spectrum.counts[channels] = parseLeadingInteger(*counts);
        ++channels;
    }
    spectrum.channelCount = narrow16(channels);
    return channels > 0 ? ReadResult{} : refused("There are no channels below \"Chn    Counts\".");
}

ReadResult readRest(LineReader& lines, Spectrum& spectrum) {
    readStart(lines, spectrum);
    if (!passLine(lines, tableHeading))
        return refused("There is no line with \"Chn    Counts\", the heading of the counts.");
    return readCounts(lines, spectrum);
}

}  // namespace

ReadResult readDosOxfordFile(InputFile& file, Spectrum& spectrum) {
    return readTextFormat({dosOxfordMca, header, readRest}, file, spectrum);
}

}  // namespace kestrel
