#include <algorithm>
#include <array>
#include <cstddef>
#include <stdexcept>
#include <unordered_map>

#include "base/file_replacement.h"
#include "base/integers.h"
#include "base/text.h"
#include "make_nuclide_data/nuclide_tables.h"

namespace kestrel {
namespace {

// Appends a value in units of 1/`scale` as an unsigned 32-bit little-endian number.
void addNumber(std::string& record, double value, double scale) {
    const auto units = static_cast<std::uint32_t>(toInt32(value * scale));
    for (unsigned shift = 0; shift < 32; shift += 8)
        record += static_cast<char>(units >> shift);
}

void addText(std::string& record, const std::string& text, std::size_t width) {
    record += charactersPadded(text, 1, width);
}

std::string massText(const NuclideEntry& nuclide) {
    return rightAligned(std::to_string(nuclide.a), 3) +
           (nuclide.isomer == 0 ? "g" : "m" + std::to_string(nuclide.isomer));
}

std::string recordOf(const LineEntry& line, const NuclideEntry& nuclide) {
    constexpr double energyScale = 100;      // 0.01 keV
    constexpr double intensityScale = 1000;  // 0.001 %
    const std::size_t blank = nuclide.halfLife.find(' ');
    const std::string unit = nuclide.halfLife.substr(blank + 1);
    std::string record;
    addNumber(record, line.energy, energyScale);
    addNumber(record, line.intensity, intensityScale);
    addText(record, nuclide.element, 3);
    addText(record, massText(nuclide), 9);
    addText(record, nuclide.halfLife.substr(0, blank), 9);
    addText(record, rightAligned(unit, 2), 3);
    addNumber(record, nuclide.strongestEnergy, energyScale);
    addNumber(record, nuclide.strongestIntensity, intensityScale);
    addText(record, line.definition.empty() ? line.radiation : line.definition, 8);
    return record;
}

}  // namespace

void writeEnergyListFile(const NuclideTables& tables, const std::string& path) {
    std::unordered_map<std::int32_t, const NuclideEntry*> nuclides;
    for (const NuclideEntry& nuclide : tables.nuclides)
        nuclides[nuclide.id] = &nuclide;
    std::vector<const LineEntry*> lines;
    for (const LineEntry& line : tables.lines)
        lines.push_back(&line);
    std::ranges::stable_sort(lines, {}, [](const LineEntry* line) { return line->energy; });
    std::string contents;
    for (const LineEntry* line : lines)
        contents += recordOf(*line, *nuclides.at(line->nuclide));
    replaceFile(path, contents);
}

}  // namespace kestrel
