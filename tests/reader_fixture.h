// What the tests of every reader need: a folder for the file, scripted dialogs and a spectrum.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "fault_matcher.h"
#include "scripted_dialogs.h"
#include "spectrum/spectrum.h"
#include "temp_folder.h"

namespace kestrel::test {

class ReaderTest : public testing::Test {
  protected:
    using Reader = bool (*)(Spectrum&, Dialogs&);
    explicit ReaderTest(Reader theReader) : reader(theReader) {}

    bool read(std::string_view bytes) {
        spectrum.filePath = folder.write("file", bytes);
        return reader(spectrum, dialogs);
    }
    bool readMissing() {
        spectrum.filePath = folder.file("gone");
        return reader(spectrum, dialogs);
    }

    Reader reader;
    TempFolder folder;
    ScriptedDialogs dialogs;
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
