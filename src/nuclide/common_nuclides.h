// The nuclides that laboratories and their rooms really hold: of two that the same peaks speak for,
// the common one is named first.
#pragma once

#include <string_view>

namespace kestrel {

// By its key, as "Cs-137g".
bool isCommonNuclide(std::string_view key);

}  // namespace kestrel
