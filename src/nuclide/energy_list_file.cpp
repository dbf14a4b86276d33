#include "nuclide/energy_list_file.h"

#include <algorithm>
#include <array>

#include "base/byte_reader.h"
#include "base/input_file.h"
#include "base/number_text.h"
#include "base/runtime_fault.h"
#include "base/text.h"

namespace kestrel {
namespace {

constexpr std::size_t recordSize = 48;
constexpr std::int64_t mostRecords = 10'000'000;  // all known lines are some 100,000
constexpr std::int64_t coarseStep = 100;
constexpr std::int64_t recordsBefore = 50;
constexpr std::int64_t recordsShown = 100;
constexpr double energyUnit = 100;      // units in a keV
constexpr double intensityUnit = 1000;  // units in a percent
constexpr std::size_t energyWidth = 8;

struct Unit {
    std::string_view name;
    float seconds;
};
constexpr std::array<Unit, 7> units = {{{"US", 1e-6F},
                                        {"MS", 0.001F},
                                        {" S", 1.0F},
                                        {" M", 60.0F},
                                        {" H", 3600.0F},
                                        {" D", 86400.0F},
                                        {" Y", 31557600.0F}}};

// Records by number, counted from 1. A part of a record at the end is none.
class Records {
  public:
    explicit Records(const std::string& path)
        : file_(path), count_(static_cast<std::int64_t>(file_.size() / recordSize)) {
        // The search, a hundredth of the records, would take minutes.
        if (count_ > mostRecords)
            throw RuntimeFault(Fault::PathAccess, path);
    }

    std::int64_t count() const { return count_; }
    ByteReader at(std::int64_t number) {
        record_ = {};
        file_.read(static_cast<std::uint64_t>(number - 1) * recordSize, record_);
        return ByteReader(record_);
    }
    double energyUnits(std::int64_t number) { return at(number).uint32At(0); }

  private:
    InputFile file_;
    std::int64_t count_;
    std::array<std::byte, recordSize> record_{};
};

// The first record above the target (in units of the file), or the one after the last.
std::int64_t firstAbove(Records& records, double target) {
    std::int64_t r = 1;
    while (r <= records.count() && records.energyUnits(r) <= target)
        r += coarseStep;
    // When the very first record is above the target already, there is nothing to step back to.
    r = std::max<std::int64_t>(r - coarseStep, 1);
    while (r <= records.count() && records.energyUnits(r) <= target)
        ++r;
    return r;
}

float halfLifeSeconds(const std::string& value, std::string_view unit) {
    const auto* known =
        std::ranges::find_if(units, [&](const Unit& u) { return unit.starts_with(u.name); });
    const float factor = known == units.end() ? 1.0F : known->seconds;
    return toSingle(parseLeadingNumber(value)) * factor;
}

std::string halfLifeText(std::string_view value, std::string_view unit) {
    return std::string(trimBlanks(value)) + " " + std::string(trimBlanks(unit));
}

std::string energyText(double keV) {
    const std::string text = formatNumber(keV, "####0.00");
    return text.size() < energyWidth ? rightAligned(text, energyWidth) : text;
}

std::string withoutEndBlanks(std::string text) {
    text.resize(text.find_last_not_of(' ') + 1);
    return text;
}

EnergyRow rowOf(const ByteReader& record, double cursorEnergy) {
    const double energy = record.uint32At(0) / energyUnit;
    const double intensity = record.uint32At(4) / intensityUnit;
    const double strongest = record.uint32At(36) / intensityUnit;
    const std::string halfLife = record.textAt(20, 8);
    const std::string unit = record.textAt(29, 3);
    EnergyRow row;
    row.text[1] = energyText(energy);
    row.colour[1] = energyColour(toSingle(energy), cursorEnergy);
    row.text[2] = formatNumber(intensity, "###0.00");
    row.colour[2] = intensityColour(toSingle(intensity));
    row.text[3] = record.textAt(8, 2) + "-" + withoutEndBlanks(record.textAt(11, 5));
    row.text[4] = halfLifeText(halfLife, unit);
    row.text[5] = formatNumber(record.uint32At(32) / energyUnit, "####0.00");
    row.text[6] = formatNumber(strongest, "###0.00");
    row.colour[6] = intensityColour(toSingle(strongest));
    row.halfLife = double{halfLifeSeconds(halfLife, unit)};
    row.colour[4] = halfLifeColour(halfLifeSeconds(halfLife, unit));
    return row;
}

}  // namespace

std::string energyListFilePath(const std::string& marigoldDir) {
    return marigoldDir.empty()
               ? std::string()
               : pathIgnoringCase(pathIgnoringCase(marigoldDir, "eng_list"), "all_nucl.elf");
}

EnergyList listFromFile(const std::string& path, double energy) {
    Records records(path);
    const std::int64_t above = firstAbove(records, energy * energyUnit);
    const std::int64_t first = std::max<std::int64_t>(above - recordsBefore, 1);
    const std::int64_t last = std::min(first + recordsShown - 1, records.count());
    EnergyList list{.format = fileListFormat, .rows = {}, .energy = energy};
    for (std::int64_t k = first; k <= last; ++k)
        list.rows.push_back(rowOf(records.at(k), energy));
    if (list.rows.empty()) {
        list.rows.emplace_back().text[energyColumn] = "No Data";
        return list;
    }
    list.current =
        static_cast<int>(std::clamp<std::int64_t>(above - first + 1, 1, last - first + 1));
    list.firstVisible = std::max(list.current - 2, 1);
    markNearest(list);
    return list;
}

}  // namespace kestrel
