// The texts of the four queries that are sent to the nuclide database, to the character.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace kestrel {

// Lines between two energies in keV, exclusive; the two parameters are single-precision numbers.
inline constexpr std::string_view energyWindowQuery =
    "select eng_eng, eng_rad, eng_br, eng_raddef, nc_a, nc_z, nc_dmode, elm_name, nc_i_num, nc_hl, "
    "nc_tsec, nc_1st_br_eng, nc_1st_br from q_eng_order_id where eng_eng > ? and eng_eng < ? and  "
    "eng_br > 0.1 ;";

// Gamma lines within 2 keV of an energy in keV.
std::string gammaLinesQuery(double centre);

// One state of a nuclide, or all its isomeric states.
std::string nuclideQuery(std::string_view element, std::string_view massText, bool isomeric);

// All lines of the states with these identifiers.
std::string linesOfNuclidesQuery(std::span<const std::int32_t> ids);

}  // namespace kestrel
