// Writing a file whole or not at all: the new contents go to a temporary file beside the old one,
// which it replaces only when every byte is safely on the disk.
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace kestrel {

// The calls that can fail while a file is written, so that tests can make each of them fail.
// Each returns 0 or the error number (errno) of its failure.
class FileCalls {
  public:
    virtual ~FileCalls() = default;
    virtual int create(const std::string& path) = 0;
    virtual int write(std::string_view bytes) = 0;
    virtual int sync() = 0;
    virtual int close() = 0;
    virtual int rename(const std::string& from, const std::string& to) = 0;
    virtual void remove(const std::string& path) noexcept = 0;
};

std::unique_ptr<FileCalls> systemFileCalls();

// Replaces the file at `path` (or makes it) by `contents`. A link is followed, and the old file's
// permissions are kept. Faults: DiskFull, PermissionDenied (the old file is write-protected),
// PathNotFound, PathAccess, DeviceError; the old file is then as it was and nothing else is left.
void replaceFile(const std::string& path, std::string_view contents);
void replaceFile(const std::string& path, std::string_view contents, FileCalls& calls);

}  // namespace kestrel
