#include "spectrum/formats/spc_reader.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/byte_reader.h"
#include "base/text.h"
#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::size_t recordSize = 128;
constexpr std::size_t countsInRecord = recordSize / 4;
constexpr std::int16_t integerCounts = 1;
constexpr std::int16_t realCounts = 5;

// Bytes of the first record.
constexpr std::size_t fileTypeAt = 2;
constexpr std::size_t acquisitionAt = 8;
constexpr std::size_t sampleAt = 10;
constexpr std::size_t detectorAt = 12;
constexpr std::size_t calibrationAt = 34;
constexpr std::size_t spectrumAt = 60;
constexpr std::size_t spectrumRecordsAt = 62;
constexpr std::size_t channelsAt = 64;
constexpr std::size_t realTimeAt = 90;  // a float that is not aligned, as the next
constexpr std::size_t liveTimeAt = 94;
constexpr std::size_t expansionAt = 110;

double wholeCount(std::int32_t word) {
    return static_cast<std::uint32_t>(word);
}

double realCount(std::int32_t word) {
    return std::bit_cast<float>(word);
}

class SpcFile {
  public:
    explicit SpcFile(std::string_view bytes)
        : size_(bytes.size()), reader_(std::as_bytes(std::span(bytes))) {}

    MeasuredSpectrum read() const {
        MeasuredSpectrum spectrum;
        takeCounts(spectrum);
        takeTimes(spectrum);
        spectrum.title = text(sampleAt);
        spectrum.detector = text(detectorAt);
        if (const std::size_t record = recordAt(calibrationAt); record != 0)
            takeTerms(record, spectrum);
        takeReport(spectrum);
        return spectrum;
    }

  private:
    std::size_t unsignedAt(std::size_t at) const {
        return static_cast<std::uint16_t>(reader_.int16At(at));
    }
    // The offset of the record that a word of the first one points at; 0 when there is none.
    std::size_t recordAt(std::size_t word) const { return offsetOf(unsignedAt(word)); }
    std::size_t offsetOf(std::size_t record) const {
        const std::size_t offset = record == 0 ? 0 : (record - 1) * recordSize;
        return offset + recordSize <= size_ ? offset : 0;
    }
    std::string text(std::size_t word) const {
        const std::size_t record = recordAt(word);
        return record == 0 ? std::string()
                           : std::string(trimSpace(upToNul(reader_.textAt(record, recordSize))));
    }

    void takeCounts(MeasuredSpectrum& spectrum) const {
        // 65536 channels do not fit the word.
        const std::size_t stated = unsignedAt(channelsAt);
        const std::size_t channels =
            stated != 0 ? stated : unsignedAt(spectrumRecordsAt) * countsInRecord;
        checkedChannelCount(static_cast<double>(channels), FilePlace{.part = "Byte 64: "});
        const std::size_t begin = (unsignedAt(spectrumAt) - 1) * recordSize;
        if (unsignedAt(spectrumAt) < 2 || begin + channels * 4 > size_)
            throw FormatError("The file ends before its " + std::to_string(channels) +
                              " counts, which record " + std::to_string(unsignedAt(spectrumAt)) +
                              " begins.");
        const bool real = reader_.int16At(fileTypeAt) == realCounts;
        std::vector<std::int32_t> words(channels);
        reader_.int32sAt(begin, words);
        spectrum.counts.resize(channels);
        std::ranges::transform(words, spectrum.counts.begin(), real ? realCount : wholeCount);
    }

    void takeTimes(MeasuredSpectrum& spectrum) const {
        if (const double live = reader_.floatAt(liveTimeAt); live > 0)
            spectrum.liveSeconds = live;
        if (const double real = reader_.floatAt(realTimeAt); real > 0)
            spectrum.realSeconds = real;
        const std::size_t record = recordAt(acquisitionAt);
        if (record == 0)
            return;
        // "17-SEP-121": the digit behind the year is 1 from 2000 on.
        const std::string date = reader_.textAt(record + 16, 9);
        const bool thisCentury = reader_.byteAt(record + 25) == '1';
        if (date.size() == 9 && date[2] == '-')
            spectrum.start = dateIn(date.substr(0, 7) + (thisCentury ? "20" : "19") +
                                    date.substr(7) + " " + reader_.textAt(record + 28, 10));
    }

    void takeTerms(std::size_t record, MeasuredSpectrum& spectrum) const {
        constexpr std::size_t energyAt = 20;
        constexpr std::size_t widthAt = 32;
        constexpr std::size_t terms = 3;
        std::string width;
        for (std::size_t i = 0; i < terms; ++i) {
            spectrum.coefficients.push_back(reader_.floatAt(record + energyAt + i * 4));
            width += (i == 0 ? "" : " ") + shownTerm(reader_.floatAt(record + widthAt + i * 4));
        }
        if (width != "0 0 0")
            spectrum.details.push_back({"FWHM terms (channels)", width});
    }

    // What portable instruments tell beside the spectrum: position, neutrons, nuclides found.
    void takeReport(MeasuredSpectrum& spectrum) const {
        constexpr std::int16_t expansionMark = 111;
        constexpr std::size_t longestReport = 2000;
        const std::size_t expansion = recordAt(expansionAt);
        if (expansion == 0 || reader_.int16At(expansion) != expansionMark)
            return;
        const std::size_t report = offsetOf(unsignedAt(expansion + 4));
        if (report == 0)
            return;
        std::string text = reader_.textAt(report + 4, std::min(unsignedAt(report), longestReport));
        std::ranges::replace(text, '\0', '\n');
        TextLines lines(text);
        for (std::string_view line; lines.next(line);)
            takeReportLine(line, spectrum);
    }

    // "Altitude:  49M", or a line of another form.
    static void takeReportLine(std::string_view line, MeasuredSpectrum& spectrum) {
        const std::size_t colon = line.find(':');
        if (colon != std::string_view::npos)
            spectrum.details.push_back({std::string(line.substr(0, colon)),
                                        std::string(trimSpace(line.substr(colon + 1)))});
        else if (!line.empty())
            spectrum.details.push_back({"Report", std::string(line)});
    }

    std::size_t size_;
    ByteReader reader_;
};

// "a=0.0e+000 b=0.0 c=7.19e-001 d=-2.1e-001", the term of the highest power first.
std::vector<double> textTerms(std::string_view text) {
    std::vector<double> terms;
    for (std::string_view word = takeWord(text); !word.empty(); word = takeWord(text)) {
        const std::size_t sign = word.find('=');
        const auto number = numberIn(word.substr(sign == std::string_view::npos ? 0 : sign + 1));
        if (!number)
            return {};
        terms.push_back(*number);
    }
    std::ranges::reverse(terms);
    return terms;
}

void takeTextValue(std::string_view name, std::string_view value, MeasuredSpectrum& spectrum) {
    const auto seconds = [&] { return numberIn(value).value_or(0); };
    if (name == "SpectrumName")
        spectrum.title = value;
    else if (name == "Realtime" && seconds() > 0)
        spectrum.realSeconds = seconds();
    else if (name == "Livetime" && seconds() > 0)
        spectrum.liveSeconds = seconds();
    else if (name == "Starttime")
        spectrum.start = dateIn(value, DateOrder::DayFirst);
    else if (name == "CalibCoeff")
        spectrum.coefficients = textTerms(value);
    else if (!value.empty())
        spectrum.details.push_back({std::string(name), std::string(value)});
}

}  // namespace

bool looksLikeSpc(std::string_view front) {
    if (front.size() < recordSize)
        return false;
    const ByteReader reader(std::as_bytes(std::span(front)));
    const std::int16_t type = reader.int16At(fileTypeAt);
    return reader.int16At(0) == 1 && (type == integerCounts || type == realCounts);
}

bool looksLikeTextSpc(std::string_view front) {
    const std::string text = textOf(front);
    return text.starts_with("SpectrumName") && text.find("\nCalibCoeff") != std::string::npos;
}

std::vector<MeasuredSpectrum> readSpc(std::string_view bytes) {
    return asOnly(SpcFile(bytes).read());
}

std::vector<MeasuredSpectrum> readTextSpc(std::string_view bytes) {
    const std::string text = textOf(bytes);
    MeasuredSpectrum spectrum;
    double channels = 0;
    TextLines lines(text);
    for (std::string_view line; lines.next(line);) {
        if (const std::size_t colon = line.find(" :"); colon != std::string_view::npos) {
            const std::string_view name = trimSpace(line.substr(0, colon));
            const std::string_view value = trimSpace(line.substr(colon + 2));
            if (name == "Length")
                channels = numberIn(value).value_or(0);
            else
                takeTextValue(name, value, spectrum);
            continue;
        }
        appendCounts(line, lines.place(), spectrum.counts);
    }
    if (spectrum.counts.size() != checkedChannelCount(channels, {.part = "\"Length\": "}))
        throw FormatError("\"Length\" promises " + std::to_string(static_cast<int>(channels)) +
                          " counts, the file has " + std::to_string(spectrum.counts.size()) + ".");
    return asOnly(std::move(spectrum));
}

}  // namespace kestrel
