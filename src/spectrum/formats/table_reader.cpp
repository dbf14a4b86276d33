#include "spectrum/formats/table_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <string>

#include "base/number_text.h"
#include "base/text.h"
#include "spectrum/formats/file_text.h"

namespace kestrel {
namespace {

constexpr std::size_t mostColumns = 3;
constexpr std::string_view ownMark = "FILE NAME : ";

bool isComment(std::string_view line) {
    return line.starts_with('#') || line.starts_with("//") || line.starts_with(';');
}

std::string withDecimalPoints(std::string text) {
    const bool parted = text.find_first_of(";\t") != std::string::npos;
    if (parted && text.find('.') == std::string::npos)
        std::ranges::replace(text, ',', '.');
    return text;
}

// A field that may be in quotes, with those inside it doubled.
std::string unquoted(std::string_view field) {
    if (field.size() < 2 || field.front() != '"' || field.back() != '"')
        return std::string(field);
    std::string text;
    field = field.substr(1, field.size() - 2);
    for (std::size_t i = 0; i < field.size(); i += field[i] == '"' ? 2U : 1U)
        text += field[i];
    return text;
}

bool isWhole(double number) {
    return number == std::floor(number);
}

// What stands above the columns.
struct TableHead {
    std::string columns;  // the last line before them
    bool commented = false;
};

class Table {
  public:
    void take(std::string_view line, const FilePlace& place) {
        if (isComment(line)) {
            head_.commented = true;
            return;
        }
        const std::optional<std::vector<double>> row = numbersIn(line);
        if (row && !row->empty() && row->size() <= mostColumns)
            takeRow(*row, place);
        else if (columns_.front().empty())
            takeHeading(line);
        else
            throw FormatError(place.text() + "A row of numbers expected, found \"" +
                              std::string(line.substr(0, 40)) + "\".");
    }

    MeasuredSpectrum finish() {
        if (columns_.front().size() < 2)
            throw FormatError("No table of numbers.");
        switch (width_) {
            case 1:
                takeCountsAlone();
                break;
            case 2:
                takeTwoColumns();
                break;
            default:
                placeCounts(columns_[0], columns_[2]);
                for (std::size_t i = 0; i < columns_[0].size(); ++i)
                    spectrum_.energies.push_back({columns_[0][i], columns_[1][i]});
        }
        return std::move(spectrum_);
    }

  private:
    void takeRow(const std::vector<double>& row, const FilePlace& place) {
        if (width_ == 0)
            width_ = row.size();
        if (row.size() != width_)
            throw FormatError(place.text() + std::to_string(width_) + " columns expected, found " +
                              std::to_string(row.size()) + ".");
        for (std::size_t i = 0; i < width_; ++i)
            columns_[i].push_back(row[i]);
        checkedChannelCount(static_cast<double>(columns_[0].size()), place);
    }

    void takeHeading(std::string_view line) {
        head_.columns = line;
        const auto value = [&](std::string_view label) {
            return line.starts_with(label) ? trimSpace(line.substr(label.size()))
                                           : std::string_view();
        };
        if (const std::string_view comment = value("Comment   : "); !comment.empty())
            spectrum_.title = comment;
        // DDMMMYY, without signs between them.
        if (const std::string_view date = value("Date      : "); date.size() > 7)
            spectrum_.start =
                dateIn(std::string(date.substr(0, 2)) + "-" + std::string(date.substr(2, 3)) + "-" +
                       std::string(date.substr(5)));
        if (std::string_view time = value("Meas. Time: "); !time.empty())
            spectrum_.liveSeconds = numberIn(takeWord(time));
        takeExported(value);
    }

    // The lines of a table that was exported with energies.
    template <typename Value>
    void takeExported(Value value) {
        if (const std::string_view comment = value("Comment,"); !comment.empty())
            spectrum_.title = unquoted(comment);
        if (const std::string_view start = value("Start,"); !start.empty())
            spectrum_.start = dateIn(start);
        if (const std::string_view live = value("Live time (s),"); !live.empty())
            spectrum_.liveSeconds = numberIn(live);
        if (const std::string_view real = value("Real time (s),"); !real.empty())
            spectrum_.realSeconds = numberIn(real);
        if (const std::string_view terms = value("Calibration (keV),"); !terms.empty())
            spectrum_.coefficients = numbersIn(terms).value_or(std::vector<double>());
    }

    void takeCountsAlone() {
        std::vector<double>& counts = columns_[0];
        // The number of the last channel, which some programs put between remarks and counts.
        if (head_.commented && counts.front() == static_cast<double>(counts.size()) - 2)
            counts.erase(counts.begin());
        spectrum_.counts = std::move(counts);
    }

    void takeTwoColumns() {
        const std::vector<double>& first = columns_[0];
        const bool energies = containsIgnoringCase(head_.columns, "energy") ||
                              containsIgnoringCase(head_.columns, "keV");
        if (!energies && std::ranges::all_of(first, isWhole)) {
            placeCounts(first, columns_[1]);
            return;
        }
        if (std::ranges::adjacent_find(first, std::greater_equal<>()) != first.end())
            throw FormatError("The first column does not rise.");
        spectrum_.counts = columns_[1];
        for (std::size_t i = 0; energies && i < first.size(); ++i)
            spectrum_.energies.push_back({static_cast<double>(i), first[i]});
        if (!energies)
            spectrum_.notices.push_back("The first column (" + plainNumber(first.front()) + " to " +
                                        plainNumber(first.back()) +
                                        ") is not used: nothing says what it means.");
    }

    void placeCounts(const std::vector<double>& channels, const std::vector<double>& counts) {
        double last = -1;
        for (std::size_t i = 0; i < channels.size(); ++i) {
            if (!(channels[i] > last) || !isWhole(channels[i]))
                throw FormatError("The channels of the first column do not rise behind " +
                                  plainNumber(last) + ".");
            last = channels[i];
            spectrum_.counts.resize(checkedChannelCount(last + 1, {.part = "First column: "}), 0.0);
            spectrum_.counts.back() = counts[i];
        }
    }

    TableHead head_;
    std::size_t width_ = 0;
    std::array<std::vector<double>, mostColumns> columns_;
    MeasuredSpectrum spectrum_;
};

}  // namespace

bool looksLikeTable(std::string_view front) {
    constexpr std::size_t fewestRows = 16;
    const std::string text = withDecimalPoints(textOf(front));
    std::size_t rows = 0;
    TextLines lines(text);
    for (std::string_view line; rows < fewestRows && lines.next(line);) {
        const std::optional<std::vector<double>> row = numbersIn(line);
        const bool fits = row && !row->empty() && row->size() <= mostColumns;
        if (!line.empty())
            rows = fits ? rows + 1 : 0;
    }
    return rows >= fewestRows && text.find('\0') == std::string::npos;
}

std::vector<MeasuredSpectrum> readTable(std::string_view bytes) {
    const std::string raw = textOf(bytes);
    const bool own = raw.starts_with(ownMark);
    const std::string text = own ? raw : withDecimalPoints(raw);
    Table table;
    TextLines lines(text);
    for (std::string_view line; lines.next(line);) {
        if (!line.empty())
            table.take(line, lines.place());
    }
    return asOnly(table.finish());
}

}  // namespace kestrel
