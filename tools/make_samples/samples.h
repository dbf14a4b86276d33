// The sample spectra of the project, as the files in samples/ hold them.
#pragma once

#include <string>
#include <vector>

namespace kestrel::samples {

struct SampleFile {
    std::string name;
    std::string bytes;
};

std::vector<SampleFile> sampleFiles();

}  // namespace kestrel::samples
