// Colours, by number in the palette, that tell intensities, half-lives and near energies apart.
#pragma once

namespace kestrel {

inline constexpr int plainColour = 15;

// Intensity in percent.
int intensityColour(float intensity);
// Half-life in seconds.
int halfLifeColour(float seconds);
// A line within half a keV of the cursor's energy stands out. Both in keV.
int energyColour(float lineEnergy, double cursorEnergy);

}  // namespace kestrel
