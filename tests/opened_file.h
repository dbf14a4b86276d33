// A spectrum file, opened as the program opens one that is handed over.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "silent_dialogs.h"
#include "spectrum/open_any.h"

namespace kestrel::test {

struct OpenedFile {
    Spectrum spectrum;
    DerivedArrays derived;
};

inline std::unique_ptr<OpenedFile> openedFile(const std::string& path) {
    auto file = std::make_unique<OpenedFile>();
    std::vector<std::string> headerLines;
    Notice notice;
    std::string directory;
    int filter = 1;
    SilentDialogs dialogs;
    if (openAnyPath(path, {file->spectrum, file->derived, headerLines, notice}, directory, filter,
                    dialogs) != OpenResult::Loaded)
        throw std::runtime_error(path + " cannot be read");
    return file;
}

}  // namespace kestrel::test
