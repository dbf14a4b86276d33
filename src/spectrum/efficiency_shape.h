// How well a germanium detector sees gamma rays of an energy, coarsely.
#pragma once

namespace kestrel {

// Relative to 150 keV: below it as E, above as E^-0.9. Real coaxial detectors stay within a factor
// of two of it from 60 keV to 3 MeV.
double efficiencyShape(double energy);

}  // namespace kestrel
