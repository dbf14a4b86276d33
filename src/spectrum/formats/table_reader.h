// Reader of tables of numbers: counts alone, channels or energies and counts, or all three, and the
// CSV files of this program.
#pragma once

#include <string_view>
#include <vector>

#include "spectrum/formats/measured_spectrum.h"

namespace kestrel {

bool looksLikeTable(std::string_view front);

// One spectrum. Blanks, tabs, commas or semicolons part the columns; a comma is a decimal sign
// where there are semicolons or tabs and no point. A first column of whole numbers counts channels,
// one whose heading speaks of energy or keV gives energies; any other is told and left alone.
// Faults: FormatError.
std::vector<MeasuredSpectrum> readTable(std::string_view bytes);

}  // namespace kestrel
