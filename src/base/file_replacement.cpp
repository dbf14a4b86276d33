#include "base/file_replacement.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <random>
#include <system_error>

#include "base/runtime_fault.h"

#if defined(__unix__)
#include <unistd.h>
#endif

namespace kestrel {
namespace {

namespace fs = std::filesystem;

class SystemFileCalls final : public FileCalls {
  public:
    int create(const std::string& path) override {
        file_.reset(std::fopen(path.c_str(), "wbx"));
        if (!file_)
            return errno;
        // The contents come in one piece; without a buffer a failure shows where it happens.
        std::setvbuf(file_.get(), nullptr, _IONBF, 0);
        return 0;
    }

    int write(std::string_view bytes) override {
        return std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) == bytes.size() ? 0 : errno;
    }

    int sync() override {
#if defined(__unix__)
        return ::fsync(::fileno(file_.get())) == 0 ? 0 : errno;
#else
        return std::fflush(file_.get()) == 0 ? 0 : errno;
#endif
    }

    int close() override {
        return std::fclose(file_.release()) == 0 ? 0 : errno;
    }

    int rename(const std::string& from, const std::string& to) override {
        std::error_code error;
        fs::rename(from, to, error);
        return error.default_error_condition().value();
    }

    void remove(const std::string& path) noexcept override {
        std::remove(path.c_str());
    }

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
};

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

// The new contents until they have their final name; removed again when they never get it.
class TemporaryFile {
  public:
    TemporaryFile(FileCalls& calls, const fs::path& folder, const std::string& subject)
        : calls_(calls), subject_(subject) {
        constexpr int attempts = 100;
        int error = EEXIST;
        for (int i = 0; i < attempts && error == EEXIST; ++i) {
            path_ = (folder / (".kestrel-" + std::to_string(std::random_device()()))).string();
            error = calls_.create(path_);
        }
        check(error, subject_);
    }
    ~TemporaryFile() {
        if (open_)
            calls_.close();
        if (!renamed_)
            calls_.remove(path_);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void setPermissions(fs::perms permissions) {
        // A file system without permissions has none to keep.
        std::error_code ignored;
        fs::permissions(path_, permissions, ignored);
    }

    void write(std::string_view contents) {
        check(calls_.write(contents), subject_);
        check(calls_.sync(), subject_);
        open_ = false;
        check(calls_.close(), subject_);
    }

    void renameTo(const fs::path& target) {
        check(calls_.rename(path_, target.string()), subject_);
        renamed_ = true;
    }

  private:
    FileCalls& calls_;
    const std::string& subject_;
    std::string path_;
    bool open_ = true;
    bool renamed_ = false;
};

}  // namespace

std::unique_ptr<FileCalls> systemFileCalls() {
    return std::make_unique<SystemFileCalls>();
}

void replaceFile(const std::string& path, std::string_view contents) {
    SystemFileCalls calls;
    replaceFile(path, contents, calls);
}

void replaceFile(const std::string& path, std::string_view contents, FileCalls& calls) {
    const fs::path target = followLinks(path);
    const fs::perms permissions = checkOldFile(target, path);
    TemporaryFile temporary(calls, target.parent_path(), path);
    if (permissions != fs::perms::unknown)
        temporary.setPermissions(permissions);
    temporary.write(contents);
    temporary.renameTo(target);
}

}  // namespace kestrel
