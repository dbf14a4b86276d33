#include "spectrum/formats/cnf_reader.h"

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/byte_reader.h"
#include "base/text.h"
#include "spectrum/formats/energy_terms.h"
#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::size_t directoryAt = 0x70;
constexpr std::size_t directoryEnd = 0x800;
constexpr std::size_t entrySize = 0x30;

enum class BlockId : std::uint32_t { Parameters = 0x12000, Sample = 0x12001, Counts = 0x12005 };

constexpr double ticksInSecond = 1e7;
// From the day on which the clock of these files begins, 17 November 1858, to 1970.
constexpr std::int64_t secondsTo1970 = 3506716800;

std::optional<LocalTime> localTime(std::int64_t secondsSince1970) {
    using namespace std::chrono;
    const sys_seconds moment{seconds(secondsSince1970)};
    const sys_days date = floor<days>(moment);
    const year_month_day day(date);
    const hh_mm_ss time(moment - date);
    const LocalTime result{.year = static_cast<int>(day.year()),
                           .month = static_cast<int>(static_cast<unsigned>(day.month())),
                           .day = static_cast<int>(static_cast<unsigned>(day.day())),
                           .hour = static_cast<int>(time.hours().count()),
                           .minute = static_cast<int>(time.minutes().count()),
                           .second = static_cast<int>(time.seconds().count())};
    return isPossible(result) ? std::optional(result) : std::nullopt;
}

class CnfFile {
  public:
    explicit CnfFile(std::string_view bytes)
        : size_(bytes.size()), reader_(std::as_bytes(std::span(bytes))) {}

    MeasuredSpectrum read() const {
        MeasuredSpectrum spectrum;
        const std::size_t parameters = block(BlockId::Parameters);
        if (parameters == 0)
            throw FormatError("No block of parameters (12000).");
        takeParameters(parameters, spectrum);
        takeCounts(parameters, spectrum);
        if (const std::size_t sample = block(BlockId::Sample); sample != 0)
            takeSample(sample + entrySize, spectrum);
        return spectrum;
    }

  private:
    std::size_t wordAt(std::size_t at) const {
        return static_cast<std::uint16_t>(reader_.int16At(at));
    }
    std::uint64_t longAt(std::size_t at) const {
        return reader_.uint32At(at) | std::uint64_t{reader_.uint32At(at + 4)} << 32U;
    }
    // A float of the PDP-11: the words exchanged, and the exponent two higher.
    double realAt(std::size_t at) const {
        const std::uint32_t bits = reader_.uint32At(at);
        return bits == 0 ? 0.0 : double{std::bit_cast<float>(std::rotl(bits, 16))} / 4;
    }
    std::string textAt(std::size_t at, std::size_t count) const {
        return std::string(trimSpace(upToNul(reader_.textAt(at, count))));
    }

    // The offset of a block; 0 when there is none. Directories name blocks that are not there.
    std::size_t block(BlockId id) const {
        const auto number = static_cast<std::uint32_t>(id);
        for (std::size_t at = directoryAt; at + entrySize <= directoryEnd; at += entrySize) {
            const std::size_t place = reader_.uint32At(at + 0x0A);
            if (reader_.uint32At(at) == number && reader_.uint32At(place) == number)
                return place;
        }
        return 0;
    }

    void takeParameters(std::size_t block, MeasuredSpectrum& spectrum) const {
        const std::size_t common = block + entrySize;
        const std::size_t records = common + wordAt(block + 0x22);
        const std::size_t times = common + wordAt(block + 0x24);
        spectrum.start = startAt(times + 0x01);
        spectrum.realSeconds = durationAt(times + 0x09);
        spectrum.liveSeconds = durationAt(times + 0x11);
        spectrum.detector = textAt(records + 0x108, 16);
        const std::string mode = textAt(common + 0x80, 4);
        if (mode.starts_with("MCS"))
            spectrum.notices.emplace_back("The channels of this file are steps of time (MCS).");
        else
            takeTerms(records, spectrum);
        if (const std::string type = textAt(records + 0x9C, 24); !type.empty())
            spectrum.details.push_back({"MCA type", type});
    }

    std::optional<LocalTime> startAt(std::size_t at) const {
        const std::uint64_t ticks = longAt(at);
        if (ticks == 0 || ticks == ~std::uint64_t{0})
            return std::nullopt;
        return localTime(
            static_cast<std::int64_t>(ticks / static_cast<std::uint64_t>(ticksInSecond)) -
            secondsTo1970);
    }

    // Durations are negative. Those with the byte 80 on top are in years.
    std::optional<double> durationAt(std::size_t at) const {
        const std::uint64_t ticks = longAt(at);
        const bool inYears = ticks >> 56U == 0x80;
        const double seconds =
            -static_cast<double>(static_cast<std::int64_t>(ticks)) / ticksInSecond;
        return inYears || seconds <= 0 ? std::nullopt : std::optional(seconds);
    }

    std::vector<double> realsAt(std::size_t at, std::size_t count) const {
        std::vector<double> reals;
        for (std::size_t i = 0; i < count; ++i)
            reals.push_back(realAt(at + i * 4));
        return reals;
    }

    void takeTerms(std::size_t records, MeasuredSpectrum& spectrum) const {
        std::vector<double> terms = realsAt(records + 0x44, 4);
        const double inKeV = textAt(records + 0x5C, 8) == "MeV" ? 1000 : 1;
        for (double& term : terms)
            term *= inKeV;
        if (terms != std::vector<double>{0, 1, 0, 0})
            spectrum.coefficients = shiftedTerms(std::move(terms), 1);
        if (const std::vector<double> width = realsAt(records + 0xDC, 2);
            width[0] != 0 || width[1] != 0)
            spectrum.details.push_back(
                {"FWHM", shownTerm(width[0]) + " + " + shownTerm(width[1]) + " x root of energy"});
    }

    void takeCounts(std::size_t parameters, MeasuredSpectrum& spectrum) const {
        const std::size_t counts = block(BlockId::Counts);
        if (counts == 0)
            throw FormatError("No block of counts (12005).");
        const std::size_t stated = reader_.uint32At(parameters + entrySize + 0x89);
        // More than 65535 do not fit the word of the block.
        const std::size_t inBlock = wordAt(counts + 0x2A);
        const bool cutOff = stated > inBlock && (stated & 0xFFFFU) == inBlock;
        const std::size_t channels =
            checkedChannelCount(static_cast<double>(inBlock == 0 || cutOff ? stated : inBlock),
                                FilePlace{.part = "Channels: "});
        const std::size_t begin = counts + wordAt(counts + 0x10) + wordAt(counts + 0x28);
        if (begin + channels * 4 > size_)
            throw FormatError("The file ends before its " + std::to_string(channels) +
                              " counts, which begin at byte " + std::to_string(begin) + ".");
        std::vector<std::int32_t> words(channels);
        reader_.int32sAt(begin, words);
        spectrum.counts.resize(channels);
        std::ranges::transform(words, spectrum.counts.begin(), [](std::int32_t word) {
            return static_cast<double>(static_cast<std::uint32_t>(word));
        });
        blankTimes(spectrum);
    }

    // Some writers put the times in seconds into the first two channels.
    static void blankTimes(MeasuredSpectrum& spectrum) {
        if (spectrum.counts.size() < 2 || !spectrum.liveSeconds || !spectrum.realSeconds)
            return;
        const auto whole = [](double seconds) {
            return static_cast<double>(static_cast<std::int64_t>(seconds));
        };
        if (spectrum.counts[0] != whole(*spectrum.liveSeconds) ||
            spectrum.counts[1] != whole(*spectrum.realSeconds))
            return;
        spectrum.counts[0] = 0;
        spectrum.counts[1] = 0;
        spectrum.notices.emplace_back(
            "Channels 0 and 1 held the live and the real time and are shown as 0.");
    }

    void takeSample(std::size_t at, MeasuredSpectrum& spectrum) const {
        spectrum.title = textAt(at, 64);
        const auto detail = [&](const char* name, std::size_t offset, std::size_t count) {
            if (std::string value = textAt(at + offset, count); !value.empty())
                spectrum.details.push_back({name, std::move(value)});
        };
        detail("Sample id", 0x40, 16);
        detail("Sample type", 0x80, 16);
        detail("Geometry", 0xA4, 16);
        detail("Description", 0x33E, 256);
    }

    std::size_t size_;
    ByteReader reader_;
};

}  // namespace

bool looksLikeCnf(std::string_view front) {
    const ByteReader reader(std::as_bytes(std::span(front)));
    return front.size() >= directoryAt && reader.byteAt(0) == 0 && reader.byteAt(1) == 4 &&
           reader.uint32At(6) == directoryEnd && reader.int16At(0x10) == 0x30 &&
           reader.int16At(0x12) == 0x29;
}

std::vector<MeasuredSpectrum> readCnf(std::string_view bytes) {
    return asOnly(CnfFile(bytes).read());
}

}  // namespace kestrel
