// What the tests of every reader need: a folder for the file, a spectrum and what the reader says.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "fault_matcher.h"
#include "spectrum/formats.h"
#include "spectrum/spectrum.h"
#include "temp_folder.h"

namespace kestrel::test {

class ReaderTest : public testing::Test {
  protected:
    explicit ReaderTest(FormatId id) : format(&formatOf(id)) {}

    // Raises the fault with which a reading failed.
    bool read(std::string_view bytes) { return readPath(folder.write("file", bytes)); }
    bool readPath(const std::string& path) {
        spectrum.filePath = path;
        InputFile file(path);
        result = readAs(*format, file, spectrum);
        if (result.end == Reading::Failed)
            throw RuntimeFault(result.fault);
        return result.end == Reading::Loaded;
    }

    const SpectrumFormat* format;
    ReadResult result;
    TempFolder folder;
    std::unique_ptr<Spectrum> owned = std::make_unique<Spectrum>();
    Spectrum& spectrum = *owned;
};

// The text with its first `from` replaced; `from` must occur.
inline std::string changed(std::string text, std::string_view from, std::string_view to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

}  // namespace kestrel::test
