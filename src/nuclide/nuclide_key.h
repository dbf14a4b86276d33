// The key of a nuclide state: symbol in two characters, "-", mass number in three, state mark:
// "Eu-152m1", "Co- 60g", "H -  3g".
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/dialogs.h"

namespace kestrel {

// The key of a state in the database; the isomer number is 0 for the ground state.
std::string nuclideKey(std::string_view element, std::int32_t mass, std::int32_t isomer);

// The key that a typed name stands for; nothing for a name without a digit or without a letter. A
// name typed in the nuclide window keeps up to two characters of the state mark, one typed on the
// plot a single letter. They differ too where a name begins with a digit: of "60Co" the window's
// rule takes "60" for the symbol, the plot's "6 ".
std::optional<std::string> keyFromWindowName(std::string_view typed);
std::optional<std::string> keyFromPlotName(std::string_view typed);

// Whether a key, or a nuclide as the energy list shows it, begins with what is typed: "cs137" and
// "Cs-13" begin "Cs-137g". Letter case, blanks and hyphens do not count.
bool beginsWith(std::string_view key, std::string_view typed);

// Asks for a name; nothing when it is cancelled or, after a message, refused.
using NameRule = std::optional<std::string> (*)(std::string_view typed);
std::optional<std::string> askNuclideKey(NameRule rule, Dialogs& dialogs);

}  // namespace kestrel
