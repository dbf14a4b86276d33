#include "base/file_replacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <random>

#include "base/file_place.h"
#include "base/runtime_fault.h"

namespace kestrel {
namespace {

constexpr mode_t privateMode = S_IRUSR | S_IWUSR;
constexpr mode_t publicMode = privateMode | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
constexpr mode_t anyPermission = S_IRWXU | S_IRWXG | S_IRWXO;

bool isWriteProtected(const FilePlace& place) {
    // The bits count for the superuser as well, whom the system would let through.
    if ((place.file->st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0)
        return true;
    return ::faccessat(place.folder.get(), place.name.c_str(), W_OK, 0) != 0 &&
           (errno == EACCES || errno == EPERM);
}

void checkOldFile(const FilePlace& place, const std::string& subject) {
    if (!place.file)
        return;
    if (!S_ISREG(place.file->st_mode))
        throw RuntimeFault(Fault::PathAccess, subject);
    if (isWriteProtected(place))
        throw RuntimeFault(Fault::PermissionDenied, subject);
}

// The new contents until they have their final name; removed again when they never get it. Until
// then they are the user's alone.
class TemporaryFile {
  public:
    TemporaryFile(const FilePlace& place, const std::string& subject)
        : place_(place), subject_(subject) {
        constexpr int attempts = 100;
        for (int i = 0; i < attempts && !file_.isOpen(); ++i) {
            name_ = ".kestrel-" + std::to_string(std::random_device()());
            file_ = create();
            if (!file_.isOpen() && errno != EEXIST)
                break;
        }
        require(file_.isOpen());
    }
    ~TemporaryFile() {
        if (file_.isOpen())
            file_.close();
        if (!renamed_)
            ::unlinkat(folder(), name_.c_str(), 0);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    void write(std::string_view contents) {
        struct stat created {};
        require(::fstat(file_.get(), &created) == 0);
        setMode(privateMode);
        writeAll(contents);
        setMode((place_.file ? *place_.file : created).st_mode & anyPermission);
        require(::fsync(file_.get()) == 0);
        require(file_.close() == 0);
    }

    void takeName() {
        require(::renameat(folder(), name_.c_str(), folder(), place_.name.c_str()) == 0);
        renamed_ = true;
    }

  private:
    int folder() const { return place_.folder.get(); }
    void require(bool succeeded) const { requireCall(succeeded, subject_); }

    // Where there is no old file, the system gives the permissions that new files have there.
    Handle create() const {
        return Handle(::openat(folder(), name_.c_str(),
                               O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                               place_.file ? privateMode : publicMode));
    }

    void setMode(mode_t mode) {
        // A file system without permissions has none to keep.
        static_cast<void>(::fchmod(file_.get(), mode));
    }

    void writeAll(std::string_view contents) {
        while (!contents.empty()) {
            const ssize_t count = ::write(file_.get(), contents.data(), contents.size());
            if (count < 0 && errno == EINTR)
                continue;
            require(count > 0);
            contents.remove_prefix(static_cast<std::size_t>(count));
        }
    }

    const FilePlace& place_;
    const std::string& subject_;
    std::string name_;
    Handle file_{-1};
    bool renamed_ = false;
};

}  // namespace

void replaceFile(const std::string& path, std::string_view contents) {
    const FilePlace place = findFilePlace(path);
    checkOldFile(place, path);
    TemporaryFile temporary(place, path);
    temporary.write(contents);
    temporary.takeName();
}

}  // namespace kestrel
