// What the fuzz targets share: the input as a file, and dialogs that answer at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/dialogs.h"

namespace kestrel::fuzz {

class SilentDialogs : public Dialogs {
  public:
    bool message(const MessageBox&) override { return true; }
    std::string input(const InputBox&) override { return {}; }
    FileChoice openFile(const FileDialog&) override { return {}; }
    FileChoice saveFile(const FileDialog&) override { return {}; }
    std::unique_ptr<PrintJob> print() override { return nullptr; }
    void setPointer(Pointer) override {}
};

// A folder of this process, in memory where the system has such a place.
const std::string& folder();

// Writes a file into the folder and returns its path.
std::string writeFile(std::string_view name, std::string_view contents);

inline std::string_view asText(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

// Ends the program with a finding.
void require(bool condition);

}  // namespace kestrel::fuzz
