// What the user must know of the spectrum that is shown for as long as it is: that a file was cut
// or refused half-way, or that its numbers had to be changed; and the way back.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "spectrum/derived_arrays.h"
#include "spectrum/spectrum.h"

namespace kestrel {

// All that the opening of a file fills.
struct OpenedSpectrum {
    Spectrum spectrum;
    DerivedArrays derived;
    std::vector<std::string> headerLines;  // what the data information window lists
};

struct Notice {
    std::vector<std::string> lines;  // none: there is nothing to say
    // What was there before a file that was refused; none where nothing was spoilt.
    std::shared_ptr<const OpenedSpectrum> before;

    // A line is said once.
    void add(const std::string& line);
    // The lines, one below the other.
    std::string text() const;
};

// What is to be said after `path` was refused or failed: whether the record is still the one of
// `before` in all but its name.
std::string refusalNotice(const std::string& path, const Spectrum& before, const Spectrum& after);

}  // namespace kestrel
