// Writer of CHN files, in the three kinds that their reader knows.
#pragma once

#include <string>
#include <vector>

#include "spectrum/spectrum.h"

namespace kestrel {

enum class WrittenChn {
    Plain = 1,      // header, counts, 64-byte comment; no seconds
    Extended = 2,   // the same and 128 bytes with the calibration as doubles; seconds in binary
    Trailered = 3,  // header, counts, 512 bytes with the calibration as floats; seconds in digits
};

// The bytes of the file. The calibration is calCurrent (rounded to floats in kind 3), the times are
// in ticks of 20 ms, the comment becomes the sample description of kind 3.
std::string chnFile(const Spectrum& spectrum, WrittenChn kind);

// The kind that users get, and what they must know of it, as sentences.
std::string trailedChnFile(const Spectrum& spectrum);
void addChnLosses(const Spectrum& spectrum, std::vector<std::string>& losses);

}  // namespace kestrel
