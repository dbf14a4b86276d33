#include "base/file_replacement.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <random>
#include <system_error>

#include "base/runtime_fault.h"

#if defined(__unix__)
#include <unistd.h>
#endif

namespace kestrel {
namespace {

namespace fs = std::filesystem;

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

void check(int error, const std::string& subject) {
    if (error != 0)
        throw RuntimeFault(faultFor(error), subject);
}

// Where the links lead, also when there is no file yet.
fs::path followLinks(fs::path path) {
    constexpr int longestChain = 40;
    std::error_code error;
    for (int i = 0; i < longestChain && fs::is_symlink(path, error); ++i)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

bool isWriteProtected([[maybe_unused]] const fs::path& file, fs::perms permissions) {
    // The bits count for the superuser as well, whom the system would let through.
    constexpr fs::perms writing =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if ((permissions & writing) == fs::perms::none)
        return true;
#if defined(__unix__)
    return ::access(file.c_str(), W_OK) != 0 && (errno == EACCES || errno == EPERM);
#else
    return false;
#endif
}

// The permissions of the file that is to be replaced; perms::unknown when there is none.
fs::perms checkOldFile(const fs::path& target, const std::string& subject) {
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    if (status.type() == fs::file_type::not_found)
        return fs::perms::unknown;
    if (status.type() == fs::file_type::none)
        check(error.default_error_condition().value(), subject);
    if (status.type() != fs::file_type::regular)
        throw RuntimeFault(Fault::PathAccess, subject);
    if (isWriteProtected(target, status.permissions()))
        throw RuntimeFault(Fault::PermissionDenied, subject);
    return status.permissions();
}

int sync(std::FILE* file) {
#if defined(__unix__)
    return ::fsync(::fileno(file));
#else
    return std::fflush(file);
#endif
}

// The new contents until they have their final name; removed again when they never get it.
class TemporaryFile {
  public:
    TemporaryFile(const fs::path& folder, const std::string& subject) : subject_(subject) {
        constexpr int attempts = 100;
        for (int i = 0; i < attempts && !file_; ++i) {
            path_ = (folder / (".kestrel-" + std::to_string(std::random_device()()))).string();
            file_.reset(std::fopen(path_.c_str(), "wbx"));
            if (!file_ && errno != EEXIST)
                break;
        }
        require(file_ != nullptr);
        // The contents come in one piece; without a buffer a failure shows where it happens.
        std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    }
    ~TemporaryFile() {
        file_.reset();
        if (!renamed_)
            std::remove(path_.c_str());
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void setPermissions(fs::perms permissions) {
        // A file system without permissions has none to keep.
        std::error_code ignored;
        fs::permissions(path_, permissions, ignored);
    }

    void write(std::string_view contents) {
        require(std::fwrite(contents.data(), 1, contents.size(), file_.get()) == contents.size());
        require(sync(file_.get()) == 0);
        require(std::fclose(file_.release()) == 0);
    }

    void renameTo(const fs::path& target) {
        std::error_code error;
        fs::rename(path_, target, error);
        check(error.default_error_condition().value(), subject_);
        renamed_ = true;
    }

  private:
    // After a call of the C library.
    void require(bool succeeded) const {
        if (!succeeded)
            check(errno == 0 ? EIO : errno, subject_);
    }

    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    const std::string& subject_;
    std::string path_;
    std::unique_ptr<std::FILE, Closer> file_;
    bool renamed_ = false;
};

}  // namespace

void replaceFile(const std::string& path, std::string_view contents) {
    const fs::path target = followLinks(path);
    const fs::perms permissions = checkOldFile(target, path);
    TemporaryFile temporary(target.parent_path(), path);
    if (permissions != fs::perms::unknown)
        temporary.setPermissions(permissions);
    temporary.write(contents);
    temporary.renameTo(target);
}

}  // namespace kestrel
