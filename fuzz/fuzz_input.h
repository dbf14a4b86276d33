// What the fuzz targets share: the input as a file, and dialogs that answer at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "silent_dialogs.h"
#include "temp_folder.h"

namespace kestrel::fuzz {

using test::contentsOf;
using test::SilentDialogs;

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
