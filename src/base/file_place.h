// Where a path leads, for writing: an open folder and a name in it. What happens to the path
// afterwards changes nothing.
#pragma once

#include <sys/stat.h>

#include <optional>
#include <string>

#include "base/handle.h"

namespace kestrel {

struct FilePlace {
    Handle folder;
    std::string name;
    std::optional<struct stat> file;  // what stands there, never a link
};

// Follows a link only if it belongs to the user or to the superuser, and lies in a folder that
// nobody else can write: any other may have been planted to have a file of the user replaced. The
// user's own group does not count as somebody else.
// Faults: BadFileName (a NUL in the path), PathNotFound, PathAccess, DeviceError.
FilePlace findFilePlace(const std::string& path);

// After a call of the C library: unless it succeeded, the fault that errno stands for.
void requireCall(bool succeeded, const std::string& subject);

}  // namespace kestrel
