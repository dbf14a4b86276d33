// The strong gamma and X-ray lines of the nuclides in the sample spectra.
#pragma once

#include <span>

namespace kestrel::samples {

struct GammaLine {
    double energy;     // keV
    double intensity;  // photons per 100 decays
};

std::span<const GammaLine> europium152();
std::span<const GammaLine> cobalt60();
std::span<const GammaLine> caesium137();  // with its short-lived daughter Ba-137m

// The natural chains are in equilibrium: intensities are per 100 decays of the parent of the chain.
std::span<const GammaLine> potassium40();
std::span<const GammaLine> radiumChain();   // Ra-226 to Bi-214
std::span<const GammaLine> thoriumChain();  // Ac-228 to Tl-208

}  // namespace kestrel::samples
