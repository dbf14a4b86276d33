#include "spectrum/labelled_lines.h"

#include <optional>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

using FoundLines = std::vector<std::optional<std::string>>;

FoundLines findLines(LineReader& lines, std::span<const LabelledValue> table) {
    FoundLines found(table.size());
    std::size_t missing = table.size();
    lines.rewind();
    for (std::string_view line; missing > 0 && lines.next(line);) {
        for (std::size_t i = 0; i < table.size(); ++i) {
            if (!found[i] && containsIgnoringCase(line, table[i].label)) {
                found[i] = line;
                --missing;
            }
        }
    }
    return found;
}

}  // namespace

bool takeLabelledValues(LineReader& lines, std::span<const LabelledValue> table,
                        Spectrum& spectrum) {
    const FoundLines found = findLines(lines, table);
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (!found[i])
            return false;
        table[i].take(*found[i], spectrum);
    }
    return true;
}

bool passLine(LineReader& lines, std::string_view label) {
    lines.rewind();
    for (std::string_view line; lines.next(line);) {
        if (containsIgnoringCase(line, label))
            return true;
    }
    return false;
}

double numberFrom(std::string_view line, std::size_t n) {
    return parseLeadingNumber(fromCharacter(line, n));
}

double numberIn(std::string_view line, std::size_t n, std::size_t width) {
    return parseLeadingNumber(fromCharacter(line, n).substr(0, width));
}

}  // namespace kestrel
