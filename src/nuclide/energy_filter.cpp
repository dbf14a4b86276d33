#include "nuclide/energy_filter.h"

#include <cmath>
#include <span>

#include "base/number_text.h"
#include "base/text.h"

namespace kestrel {
namespace {

struct Code {
    const char* part;
    int number;
};

// The last code that the text contains counts.
int lastClass(const std::string& text, std::span<const Code> codes) {
    int number = 0;
    for (const Code& code : codes) {
        if (containsIgnoringCase(text, code.part))
            number = code.number;
    }
    return number;
}

}  // namespace

int radiationClass(const std::string& code) {
    static constexpr std::array codes = {Code{"B-", 1}, Code{"B+", 2}, Code{"A", 3}, Code{"E", 4}};
    return lastClass(code, codes);
}

int decayClass(const std::string& modes) {
    static constexpr std::array codes = {Code{"B-", 1}, Code{"EC", 2}, Code{"IT", 3}, Code{"A", 4}};
    return lastClass(modes, codes);
}

double halfWidthOf(const EnergyEntries& entries) {
    return std::abs(parseLeadingNumber(entries.text[halfWidthEntry]));
}

EnergyFilter::EnergyFilter(const EnergyEntries& entries)
    : decayClass_(entries.decayClass), radiationClass_(entries.radiationClass) {
    for (std::size_t i = 0; i < limits_.size(); ++i)
        limits_.at(i) = toSingle(parseLeadingNumber(entries.text.at(i)));
}

bool EnergyFilter::passes(const Recordset& line) const {
    return passesIntensity(line.single("eng_br")) && passesState(line) &&
           radiationClass(line.text("eng_rad")) == radiationClass_;
}

bool EnergyFilter::passesState(const Recordset& state) const {
    return inLimits(state.single("nc_tsec"), 2) && inLimits(state.single("nc_a"), 4) &&
           inLimits(state.single("nc_z"), 6) &&
           (decayClass_ == 0 || decayClass(state.text("nc_dmode")) == decayClass_);
}

}  // namespace kestrel
