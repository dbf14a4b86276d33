// Poisson-distributed counts from a fixed seed, the same on every platform.
#pragma once

#include <cstdint>
#include <random>

namespace kestrel::samples {

// The generator of the standard library is the same everywhere; its distributions are not.
class PoissonSource {
  public:
    explicit PoissonSource(std::uint64_t seed) : generator_(seed) {}

    // A count with the given mean; 0 for a mean of 0 or less.
    std::int32_t draw(double mean);

  private:
    double uniform();  // above 0, below 1
    double drawSmall(double mean);
    double drawLarge(double mean);

    std::mt19937_64 generator_;
};

}  // namespace kestrel::samples
