// The sample spectra of the project, as the files in samples/ hold them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "spectrum/formats.h"

namespace kestrel::samples {

struct SampleFile {
    std::string name;
    std::string bytes;
};

std::vector<SampleFile> sampleFiles();

// How a measurement is written in a format; one for each that can be read.
struct SampleWriter {
    FormatId format;
    const char* nameEnd;
    std::string (*write)(const Spectrum&);
};
std::span<const SampleWriter> sampleWriters();

// The name of the file in samples/ that holds, in every format, the same measurement.
std::string commonSample(const SampleWriter& writer);

}  // namespace kestrel::samples
