// The filters of the energy list: the entries that the user types into, and the test of a line.
#pragma once

#include <array>
#include <string>

#include "nuclide/sqlite.h"

namespace kestrel {

// As the controls hold them; as made, the defaults.
struct EnergyEntries {
    // By the number of the entry; number 8 does not exist.
    std::array<std::string, 10> text = {"0.1", "100.0", "60",  "1e30", "1",
                                        "238", "1",     "110", "",     "3"};
    int decayClass = 0;      // 0: all
    int radiationClass = 0;  // 0: gamma rays
    friend bool operator==(const EnergyEntries&, const EnergyEntries&) = default;
};
inline constexpr std::size_t halfWidthEntry = 9;

// Half of the energy window, in keV. Faults: those of parseLeadingNumber.
double halfWidthOf(const EnergyEntries& entries);

class EnergyFilter {
  public:
    // Faults: those of parseLeadingNumber.
    explicit EnergyFilter(const EnergyEntries& entries);

    // Whether the present row of the energy window's query passes.
    bool passes(const Recordset& line) const;
    // Its parts: of a row that holds a state of a nuclide, and of the intensity of a line, per
    // cent.
    bool passesState(const Recordset& state) const;
    bool passesIntensity(float intensity) const { return inLimits(intensity, 0); }

  private:
    bool inLimits(float value, std::size_t lowest) const {
        return value >= limits_.at(lowest) && value <= limits_.at(lowest + 1);
    }

    std::array<float, 8> limits_{};  // lowest and highest of four quantities
    int decayClass_;
    int radiationClass_;
};

// 0 gamma, 1 beta-, 2 beta+, 3 alpha, 4 electrons.
int radiationClass(const std::string& code);
// 0 none of these, 1 beta-, 2 electron capture, 3 isomeric transition, 4 alpha.
int decayClass(const std::string& modes);

}  // namespace kestrel
