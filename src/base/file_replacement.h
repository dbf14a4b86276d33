// Writing a file whole or not at all: the new contents go to a temporary file beside the old one,
// which it replaces only when every byte is safely on the disk.
#pragma once

#include <string>
#include <string_view>

namespace kestrel {

// Replaces the file at `path` (or makes it) by `contents`. A link is followed where nobody else can
// have planted it (findFilePlace), and the old file's permissions are kept, but no set-id bit.
// Faults: those of findFilePlace, DiskFull, PermissionDenied (the old file is write-protected),
// PathAccess, DeviceError; the old file is then as it was and nothing else is left.
void replaceFile(const std::string& path, std::string_view contents);

}  // namespace kestrel
