#include "base/input_file.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>

#include "base/runtime_fault.h"
#include "base/text.h"

#if defined(__unix__)
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace kestrel {
namespace {

namespace fs = std::filesystem;

constexpr char carriageReturn = '\r';
constexpr char lineFeed = '\n';
constexpr std::size_t blockSize = 65536;
// Where the file stands after a failed read: nowhere that a read could ask for.
constexpr std::uint64_t unknownPosition = std::numeric_limits<std::uint64_t>::max();

Fault openFault(int error, const std::string& path) {
    switch (error) {
        case ENOENT: {
            const fs::path folder = fs::path(path).parent_path();
            std::error_code ignored;
            return folder.empty() || fs::is_directory(folder, ignored) ? Fault::FileNotFound
                                                                       : Fault::PathNotFound;
        }
        case ENOTDIR:
            return Fault::PathNotFound;
        case EIO:
            return Fault::DeviceError;
        default:
            return Fault::PathAccess;
    }
}

struct OpenedFile {
    std::FILE* file = nullptr;
    std::uint64_t size = 0;
};

#if defined(__unix__)
OpenedFile openRegular(const std::string& path) {
    // Not blocking, because the path may name a pipe that nobody writes to.
    const int handle = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (handle < 0)
        throw RuntimeFault(openFault(errno, path), path);
    struct stat status {};
    std::FILE* file = nullptr;
    if (::fstat(handle, &status) == 0 && S_ISREG(status.st_mode))
        file = ::fdopen(handle, "rb");
    if (file == nullptr) {
        ::close(handle);
        throw RuntimeFault(Fault::PathAccess, path);
    }
    return {file, static_cast<std::uint64_t>(status.st_size)};
}
#else
OpenedFile openRegular(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        throw RuntimeFault(Fault::PathAccess, path);
    std::FILE* const file = std::fopen(path.c_str(), "rb");
    if (file == nullptr)
        throw RuntimeFault(openFault(errno, path), path);
    const std::uintmax_t size = fs::file_size(path, error);
    return {file, error ? 0 : size};
}
#endif

}  // namespace

InputFile::InputFile(const std::string& path) : path_(path) {
    const OpenedFile opened = openRegular(path);
    file_.reset(opened.file);
    size_ = opened.size;
    // Every caller reads large blocks: a buffer in between would only copy them once more.
    std::setvbuf(opened.file, nullptr, _IONBF, 0);
}

std::size_t InputFile::read(std::uint64_t offset, std::span<std::byte> into) {
    if (offset >= size_ || into.empty())
        return 0;
    const auto wanted =
        static_cast<std::size_t>(std::min<std::uint64_t>(into.size(), size_ - offset));
    if (offset != position_ &&
        (offset > static_cast<std::uint64_t>(std::numeric_limits<long>::max()) ||
         std::fseek(file_.get(), static_cast<long>(offset), SEEK_SET) != 0)) {
        position_ = unknownPosition;
        throw RuntimeFault(Fault::DeviceError, path_);
    }
    const std::size_t count = std::fread(into.data(), 1, wanted, file_.get());
    position_ = offset + count;
    if (count < wanted && std::ferror(file_.get()) != 0) {
        std::clearerr(file_.get());
        position_ = unknownPosition;
        throw RuntimeFault(Fault::DeviceError, path_);
    }
    return count;
}

std::vector<std::byte> InputFile::readFront(std::size_t limit) {
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(limit, size_)));
    bytes.resize(read(0, bytes));
    return bytes;
}

LineReader::LineReader(InputFile& file) : file_(file), block_(blockSize) {
    if (file_.size() > largestFile)
        throw RuntimeFault(Fault::PathAccess, file_.path());
}

bool LineReader::fill() {
    end_ = file_.read(fileOffset_, block_);
    fileOffset_ += end_;
    begin_ = 0;
    nextReturn_ = find(carriageReturn);
    nextFeed_ = find(lineFeed);
    return end_ > 0;
}

std::size_t LineReader::find(char c) const {
    const std::byte* const from = block_.data() + begin_;
    const void* const found = std::memchr(from, c, end_ - begin_);
    return found == nullptr
               ? end_
               : static_cast<std::size_t>(static_cast<const std::byte*>(found) - block_.data());
}

std::string_view LineReader::takeUpToLineEnd() {
    if (nextReturn_ < begin_)
        nextReturn_ = find(carriageReturn);
    if (nextFeed_ < begin_)
        nextFeed_ = find(lineFeed);
    const std::size_t stop = std::min(nextReturn_, nextFeed_);
    const std::string_view part(reinterpret_cast<const char*>(block_.data()) + begin_,
                                stop - begin_);
    begin_ = stop;
    return part;
}

bool LineReader::findLineStart() {
    if (begin_ == end_ && !fill())
        return false;
    if (afterCarriageReturn_ && block_[begin_] == std::byte{lineFeed})
        ++begin_;
    afterCarriageReturn_ = false;
    return begin_ < end_ || fill();
}

bool LineReader::next(std::string_view& line) {
    if (!findLineStart())
        return false;
    ++lineNumber_;
    line = takeUpToLineEnd();
    if (begin_ == end_) {
        line_ = line;
        while (begin_ == end_ && fill())
            line_ += takeUpToLineEnd().substr(0, longestLine - line_.size());
        line = line_;
    }
    if (begin_ < end_)
        afterCarriageReturn_ = block_[begin_++] == std::byte{carriageReturn};
    return true;
}

std::string_view LineReader::require() {
    std::string_view line;
    if (!next(line))
        throw RuntimeFault(Fault::InputPastEnd, file_.path());
    return line;
}

void LineReader::rewind() {
    fileOffset_ = 0;
    lineNumber_ = 0;
    begin_ = 0;
    end_ = 0;
    afterCarriageReturn_ = false;
}

bool fileExists(const std::string& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

std::string currentDirectory() {
    std::error_code failed;
    return fs::current_path(failed).string();
}

std::string pathIgnoringCase(const std::string& folder, std::string_view name) {
    const fs::path exact = fs::path(folder) / name;
    std::error_code error;
    if (fs::exists(exact, error))
        return exact.string();
    fs::path found;
    fs::directory_iterator entry(folder.empty() ? fs::path(".") : fs::path(folder), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path candidate = entry->path().filename();
        if (equalIgnoringCase(candidate.string(), name) && (found.empty() || candidate < found))
            found = candidate;
    }
    return found.empty() ? exact.string() : (fs::path(folder) / found).string();
}

}  // namespace kestrel
