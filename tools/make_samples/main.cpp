// make_samples FOLDER: writes the sample spectra into a folder.
#include <cstdio>
#include <string>

#include "base/file_replacement.h"
#include "base/runtime_fault.h"
#include "make_samples/samples.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_samples FOLDER\n", stderr);
        return 2;
    }
    try {
        for (const auto& sample : kestrel::samples::sampleFiles())
            kestrel::replaceFile(std::string(argv[1]) + "/" + sample.name, sample.bytes);
    } catch (const kestrel::RuntimeFault& fault) {
        std::fprintf(stderr, "make_samples: %s\n", fault.what());
        return 1;
    }
}
