#include "base/file_place.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <utility>

#include "base/runtime_fault.h"

namespace kestrel {
namespace {

constexpr int longestChain = 40;

#if defined(O_PATH)
constexpr int toSearch = O_PATH;  // also a folder that cannot be listed
#else
constexpr int toSearch = O_RDONLY;
#endif

Fault faultFor(int error) {
    switch (error) {
        case ENOSPC:
        case EFBIG:
#if defined(EDQUOT)
        case EDQUOT:
#endif
            return Fault::DiskFull;
        case EACCES:
        case EPERM:
        case EROFS:
        case EISDIR:
        case ELOOP:
        case ENAMETOOLONG:
            return Fault::PathAccess;
        case ENOENT:
        case ENOTDIR:
            return Fault::PathNotFound;
        default:
            return Fault::DeviceError;
    }
}

bool othersCanWrite(const struct stat& folder) {
    const bool foreignGroup = folder.st_gid != ::getegid();
    return (folder.st_mode & (foreignGroup ? S_IWGRP | S_IWOTH : S_IWOTH)) != 0;
}

// The way along one path, a component at a time.
class Walk {
  public:
    explicit Walk(const std::string& path)
        : path_(path), rest_(path), folder_(openFolder(AT_FDCWD, start())) {}

    FilePlace end() {
        while (true) {
            std::string name = nextName();
            const std::optional<struct stat> status = statusOf(name);
            if (status && S_ISLNK(status->st_mode))
                follow(name, *status);
            else if (isLast())
                return {std::move(folder_), std::move(name), status};
            else
                folder_ = openFolder(folder_.get(), name.c_str());
        }
    }

  private:
    const char* start() const { return rest_.starts_with('/') ? "/" : "."; }
    bool isLast() const { return rest_.find_first_not_of('/') == std::string::npos; }

    Handle openFolder(int above, const char* name) const {
        Handle folder(::openat(above, name, toSearch | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
        requireCall(folder.isOpen(), path_);
        return folder;
    }

    std::string nextName() {
        rest_.erase(0, std::min(rest_.find_first_not_of('/'), rest_.size()));
        const std::size_t end = std::min(rest_.find('/'), rest_.size());
        std::string name = rest_.substr(0, end);
        rest_.erase(0, end);
        return name;
    }

    // None where the last name stands for nothing yet.
    std::optional<struct stat> statusOf(const std::string& name) const {
        struct stat status {};
        const int answer = ::fstatat(folder_.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW);
        if (answer != 0 && errno == ENOENT && isLast())
            return std::nullopt;
        requireCall(answer == 0, path_);
        return status;
    }

    void follow(const std::string& name, const struct stat& link) {
        struct stat folder {};
        requireCall(::fstat(folder_.get(), &folder) == 0, path_);
        const bool own = link.st_uid == ::geteuid() || link.st_uid == 0;
        if (!own || othersCanWrite(folder) || ++links_ > longestChain)
            throw RuntimeFault(Fault::PathAccess, path_);
        std::array<char, PATH_MAX> target{};
        const ssize_t size =
            ::readlinkat(folder_.get(), name.c_str(), target.data(), target.size());
        requireCall(size >= 0, path_);
        rest_.insert(0, target.data(), static_cast<std::size_t>(size));
        if (rest_.starts_with('/'))
            folder_ = openFolder(AT_FDCWD, "/");
    }

    const std::string& path_;
    std::string rest_;
    Handle folder_;
    int links_ = 0;
};

}  // namespace

FilePlace findFilePlace(const std::string& path) {
    // The system's calls would take it for the part in front.
    if (path.find('\0') != std::string::npos)
        throw RuntimeFault(Fault::BadFileName, path);
    return Walk(path).end();
}

void requireCall(bool succeeded, const std::string& subject) {
    if (!succeeded)
        throw RuntimeFault(faultFor(errno), subject);
}

}  // namespace kestrel
