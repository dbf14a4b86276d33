#include "spectrum/formats/labelled_lines.h"

#include <cstdint>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

struct FoundLine {
    std::string text;
    std::uint64_t number = 0;  // counted from 1; 0: not found
};
using FoundLines = std::vector<FoundLine>;

FoundLines findLines(LineReader& lines, std::span<const LabelledValue> table) {
    FoundLines found(table.size());
    std::size_t missing = table.size();
    lines.rewind();
    for (std::string_view line; missing > 0 && lines.next(line);) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (found[i].number == 0 && containsIgnoringCase(line, table[i].label)) {
                found[i] = {std::string(line), lines.lineNumber()};
                --missing;
            }
        }
    }
    return found;
}

}  // namespace

ReadResult takeLabelledValues(LineReader& lines, std::span<const LabelledValue> table,
                              Spectrum& spectrum) {
    const FoundLines found = findLines(lines, table);
    for (std::size_t i = 0; i < table.size(); ++i) {
        const std::string label = '"' + std::string(table[i].label) + '"';
        if (found[i].number == 0)
            return refused("There is no line with " + label + ".");
        try {
            table[i].take(found[i].text, spectrum);
        } catch (const RuntimeFault& fault) {
            return failed(fault, "Line " + std::to_string(found[i].number) + ", " + label);
        }
    }
    return {};
}

std::optional<std::string> findLine(LineReader& lines, std::string_view label) {
    lines.rewind();
    for (std::string_view line; lines.next(line);) {
        if (containsIgnoringCase(line, label))
            return std::string(line);
    }
    return std::nullopt;
}

bool passLine(LineReader& lines, std::string_view label) {
    return findLine(lines, label).has_value();
}

double numberFrom(std::string_view line, std::size_t n) {
    return parseLeadingNumber(fromCharacter(line, n));
}

double numberIn(std::string_view line, std::size_t n, std::size_t width) {
    return parseLeadingNumber(fromCharacter(line, n).substr(0, width));
}

}  // namespace kestrel
